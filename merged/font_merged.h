#pragma once
// A font of the merged flavour: its texture's parameters are set after an upload, not at each bind,
// and an upload takes only the rows along that have glyphs.
#include "font/font_uc_gl.h"

class CFontUC_Merged final : public virtual CFontUC_GL {
  public:
    /// Unit 0 must be the active one.
    void m_fnBindTexture(u32 uUnit) override;

  protected:
    /// The rows that have glyphs, and so many more as a halo reaches into.
    bool m_fnUploadChain() override;
};

/// Entry of the creation table; null when out of memory.
CFontUniCode* CreateFontUC_Merged();
