#pragma once
// Text box of the OpenGL flavour.
#include "controls/text_box.h"

class CTextBox_GL : public virtual CControl, public virtual CTextBox_Base {
  public:
    /// One indexed draw from the control's own mesh, through the text batcher.
    void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) override;
};

/// Entry of the creation table; null when out of memory.
CTextBox_Base* CreateTextBox_GL();
