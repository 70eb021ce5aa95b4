#pragma once
// How panels look: the record, the attributes of an item that fill it, and how a control gets it. An
// attribute more is a field, a row and a line of this file.
#include "config/settings/setting_binding.h"
#include "controls/panel.h"
#include "platform/types.h"

#include <algorithm>

struct stPanelLook {
    u8 m_u8PanelR = 0, m_u8PanelG = 0, m_u8PanelB = 0, m_u8PanelA = 0;
    u32 m_uPanelType = 0;     ///< 0 layout only, 1 flat, 2 frosted
    u32 m_uPanelScatter = 30; ///< blur diameter of a frosted panel; kept as written, above 100 acts as 100
    u32 m_uPanelShape = g_uShapeRect; ///< no attribute sets it
    f32 m_fPanelBorder = 0;  ///< thickness of a border in place of the shape, inside the panel; canvas units
    u8 m_u8PanelOpacity = 0; ///< percent; of items only
};

inline void g_fnAddPanelSettings(SettingTable& table, stPanelLook& look) {
    const stSettingRow aRows[] = {
        {"PanelColorR", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8PanelR},
        {"PanelColorG", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8PanelG},
        {"PanelColorB", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8PanelB},
        {"PanelColorA", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8PanelOpacity}, // a byte until validated
        {"PanelType", "1", SETTING_DECIMAL, TARGET_U32, &look.m_uPanelType},
        {"PanelScattering", "30", SETTING_DECIMAL, TARGET_U32, &look.m_uPanelScatter},
        {"PanelBorder", "0", SETTING_FLOAT, TARGET_F32, &look.m_fPanelBorder},
    };
    g_fnAddSettings(table, aRows);
}

/// Outset, thickness and corner squares of all panels made from records, canvas units.
constexpr f32 g_fRecordOutset = 1, g_fRecordThickness = 1, g_fRecordCorner = 10;

/// With the size in canvas units, which builds the shape. Type and diameter decide where the panel is
/// attached, and so are no matter of the control.
inline void g_fnGiveLook(CPanel_Base& panel, const stPanelLook& look, f32 w, f32 h) {
    const f32 fBorder = std::min(look.m_fPanelBorder, std::min(w, h) / 2);
    panel.m_fnSetShape(fBorder > 0 ? g_uShapeFrame : look.m_uPanelShape);
    panel.m_fnSetColorB(look.m_u8PanelR, look.m_u8PanelG, look.m_u8PanelB, look.m_u8PanelA);
    if (fBorder > 0)
        panel.m_fnSetGeometry5(w, h, 0, fBorder, 0);
    else
        panel.m_fnSetGeometry5(w, h, g_fRecordOutset, g_fRecordThickness, g_fRecordCorner);
}
