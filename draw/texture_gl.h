#pragma once
// Texture of the OpenGL flavour: one texture object a frame. Every operation that it overrides needs the
// context current.
#include "draw/texture.h"

/// What a format code means to OpenGL; zeros for a code without meaning.
struct stGLFormat {
    u32 m_uFormat, m_uType;
    i32 m_iInternal;
};

/// False, with zeros, for a code that is not in the table.
bool g_fnFindGLFormat(u32 uFormat, stGLFormat* pOut) noexcept;

/// Sets on the texture bound to GL_TEXTURE_2D what drawing relies on: all levels, no comparison, and nothing
/// but black beyond the edge.
void g_fnSetDrawSampling(u32 uMinFilter);

class CTexture2D_GL : public virtual CTexture_Base {
  public:
    /// Deletes former texture objects first. A format unknown to OpenGL does not stop the creation.
    bool m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) override;
    /// Specifies one level anew, or the whole chain; nothing is ever updated in part. False for a frame or
    /// level that does not exist.
    bool m_fnUploadLevel(const void* pPixels, u32 uFrame, u32 uLevel) override;
    /// The chain of frame 0 as far as uRows rows of it reach, for a picture whose other rows nobody looks at:
    /// those hold anything. Only what is handed over costs time, and on some drivers memory.
    bool m_fnUploadTop(u32 uRows);
    /// Steps an animation, binds, and sets every parameter anew: what the application left is not trusted.
    void m_fnBindUnit(u32 uUnit) override;
    /// m_fnBindUnit on the active unit for a picture that stays; its parameters are set once after an upload,
    /// for nobody else knows its name.
    void m_fnBindKept();
    void m_fnRelease() override;
    ~CTexture2D_GL() override;

    u32* m_pNames = nullptr; ///< m_uFrameCount names
    u32 m_uGLFormat = 0;
    u32 m_uGLType = 0;
    i32 m_iGLInternal = 0;

  private:
    u32 m_uNameCount = 0;
    u32 m_uTopRows = 0;              ///< handed over since the chain was specified; 0: it is not
    bool* m_pDrawSampling = nullptr; ///< a frame's parameters are set since its last upload
    u32 ShownFrame() const;
    u32 ShownName() const;
    u32 MinFilter() const;
    void SetUploadSampling() const;
    void UploadTopOf(u32 uLevel, u32 uRows) const;
    void SpecifyLevel(const void* pPixels, u32 uLevel) const;
};

/// Entry of the creation table; null when out of memory.
CTexture_Base* CreateTexture_GL();
