#pragma once
// How a text or a number looks: the record that a profile's items and the init records of controls hand on as
// a whole, and what a control keeps of it.
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

/// What text boxes and number boxes have in common. A setter only stores; what follows from it is the
/// control's.
class CTextLook {
  public:
    f32 m_fTextSize = 0;
    f32 m_fSpacingX = 0, m_fSpacingY = 0;
    bool m_bShadow = false;
    f32 m_afTextColor[4] = {0.5f, 0.5f, 0.5f, 1};
    f32 m_afShadowColor[4] = {0, 0, 0, 1};
    bool m_bColorDirty = true, m_bPositionDirty = true, m_bLayoutDirty = true;

  protected:
    bool IsDirty() const { return m_bColorDirty || m_bPositionDirty || m_bLayoutDirty; }
    void MarkLayoutDirty() { m_bPositionDirty = m_bLayoutDirty = true; }
    void StoreTextSize(f32 fSize);
    f32 LoadTextSize(f32* pOut) const;
    void StoreSpacing(f32 x, f32 y);
    void LoadSpacing(f32* pX, f32* pY) const;
};

/// Gives a control the whole look of a record. The control's own size is to be set before, its buffers are to
/// be made after.
template <class Box> void g_fnGiveLook(Box& box, const stTextLook& st) {
    box.m_fnSetTextSize(st.m_fTextSize);
    box.m_fnSetSpacing(st.m_fTextSpacingX, st.m_fTextSpacingY);
    box.m_fnSetShadow(st.m_bShadow);
    box.m_fnSetTextColorB(st.m_u8TextR, st.m_u8TextG, st.m_u8TextB, st.m_u8TextA);
    box.m_fnSetShadowColorB(st.m_u8ShadowR, st.m_u8ShadowG, st.m_u8ShadowB, st.m_u8ShadowA);
}
