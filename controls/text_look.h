#pragma once
// What boxes of text keep of how they look.
#include "platform/types.h"

/// A setter only stores; what follows from it is the control's. Its slots: controls/text_*_slots.inc.
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
