#pragma once
// A picture of the merged flavour. Its parameters are set after an upload, not at each bind, and it is bound,
// and an animation goes on, only while it is drawn: controls are also asked for their shapes alone.
#include "draw/texture_gl.h"

class CTexture_Merged final : public virtual CTexture2D_GL {
  public:
    /// Unit 0 must be the active one.
    void m_fnBindUnit(u32 uUnit) override;
};

/// Entry of the creation table; null when out of memory.
CTexture_Base* CreateTexture_Merged();
