#pragma once
// Flip box of the OpenGL flavour.
#include "controls/flip_box.h"

class CFlipBox_GL : public virtual CControl, public virtual CFlipBox_Base {
  public:
    /// One indexed draw of the current state's range, through the text batcher.
    void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) override;
};

/// Entry of the creation table; null when out of memory.
CFlipBox_Base* CreateFlipBox_GL();
