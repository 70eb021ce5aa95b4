#pragma once
// Number box of the OpenGL flavour.
#include "controls/num_box.h"

class CNumBox_GL : public virtual CControl, public virtual CNumBox_Base {
  public:
    /// One small indexed draw a cell, through the text batcher.
    void m_fnDrawDigits(CDraw_Base* pBatcher, CEntity_Base** ppEntities, const f32* pColor) override;
};

/// Entry of the creation table; null when out of memory.
CNumBox_Base* CreateNumBox_GL();
