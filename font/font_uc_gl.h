#pragma once
// A font whose atlas is a texture of the OpenGL flavour.
#include "font/font_unicode.h"

class CTexture2D_GL;

/// Every operation that it overrides needs the context current.
class CFontUC_GL : public virtual CFontUniCode {
  public:
    bool m_fnCreateTexture() override;
    bool m_fnUploadAtlasAll(const u8* const* ppLevels) override;
    bool m_fnUploadAtlas() override;
    void m_fnBindTexture(u32 uUnit) override;
    /// Deletes the texture only: glyphs, atlas and fonts stay.
    void m_fnRelease() override;
    ~CFontUC_GL() override;

    CTexture2D_GL* m_pTexture = nullptr; ///< owned

  protected:
    /// The texture has all levels in memory.
    virtual bool m_fnUploadChain();
};

/// Entry of the creation table; null when out of memory.
CFontUniCode* CreateFontUC_GL();
