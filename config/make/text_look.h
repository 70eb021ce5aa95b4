#pragma once
// How texts and numbers look: the record, the attributes of an item that fill it, and how a control gets it.
// An attribute more of both is a field, a row and a line of this file.
#include "config/settings/setting_binding.h"
#include "platform/types.h"

/// Colours of a text and of its shadow.
struct stTextColors {
    u8 m_u8TextR = 0, m_u8TextG = 0, m_u8TextB = 0;
    u8 m_u8TextOpacity = 0; ///< percent, 0 to 100
    u8 m_u8TextA = 0;       ///< the opacity as a byte
    u8 m_u8ShadowR = 0, m_u8ShadowG = 0, m_u8ShadowB = 0;
    u8 m_u8ShadowOpacity = 0; ///< percent, 0 to 100
    u8 m_u8ShadowA = 0;       ///< the opacity as a byte
};
/// White over black, both solid.
constexpr stTextColors g_stPlainTextColors = {255, 255, 255, 100, 255, 0, 0, 0, 100, 255};

/// Lengths in canvas units.
struct stTextLook : stTextColors {
    f32 m_fTextSize = 0;     ///< line height
    f32 m_fTextSpacingX = 0; ///< gap behind each character; of a mixed item also between its parts
    f32 m_fTextSpacingY = 0; ///< gap between lines
    bool m_bShadow = false;  ///< a setting of the whole profile, so items leave it out
};

/// The attributes that texts and numbers share.
inline void g_fnAddTextSettings(SettingTable& table, stTextLook& look) {
    const stSettingRow aRows[] = {
        {"TextSize", "0", SETTING_FLOAT, TARGET_F32, &look.m_fTextSize},
        {"TextSpacingX", "0", SETTING_FLOAT, TARGET_F32, &look.m_fTextSpacingX},
        {"TextColorR", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8TextR},
        {"TextColorG", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8TextG},
        {"TextColorB", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8TextB},
        {"TextColorA", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8TextA},
        {"ShadowColorR", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8ShadowR},
        {"ShadowColorG", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8ShadowG},
        {"ShadowColorB", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8ShadowB},
        {"ShadowColorA", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8ShadowA},
    };
    g_fnAddSettings(table, aRows);
}

/// Gives a control the whole look of a record. The control's own size is to be set before, its buffers are to
/// be made after.
template <class Box> void g_fnGiveLook(Box& box, const stTextLook& look) {
    box.m_fnSetTextSize(look.m_fTextSize);
    box.m_fnSetSpacing(look.m_fTextSpacingX, look.m_fTextSpacingY);
    box.m_fnSetShadow(look.m_bShadow);
    box.m_fnSetTextColorB(look.m_u8TextR, look.m_u8TextG, look.m_u8TextB, look.m_u8TextA);
    box.m_fnSetShadowColorB(look.m_u8ShadowR, look.m_u8ShadowG, look.m_u8ShadowB, look.m_u8ShadowA);
}
