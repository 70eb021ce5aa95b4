#pragma once
// The common interface of the two batchers: the way of the whole overlay to the GPU.
#include "draw/aligned_allocation.h"
#include "platform/types.h"

/// What a control hands to the batcher before it draws.
struct stDrawConstants {
    const f32* m_pWorld; ///< 16 floats, column-major
    const f32* m_pColor; ///< red, green, blue, alpha, each 0 to 1
};

/// A batcher holds no geometry. It binds a program, walks lists of controls and lets each draw itself. Render
/// thread only, with the context current.
class CDraw_Base : public CAlignedAllocationPolicy<int, 16> {
  public:
    CDraw_Base() = default;
    CDraw_Base(const CDraw_Base&) = delete;
    CDraw_Base& operator=(const CDraw_Base&) = delete;

    /// Builds what drawing needs. Failures of shaders leave as std::runtime_error.
    virtual bool m_fnInitialize();
    /// The canvas has changed.
    virtual void m_fnOnResize();
    /// Points the attributes of the running pass at the bound mesh.
    virtual void m_fnBindVertexLayout(void* pIgnored);
    virtual void m_fnSetDrawConstants(const stDrawConstants* pConstants);
    /// Called after a control or the text batcher has bound a texture.
    virtual void m_fnOnTextureBound(void* pIgnored);
    virtual void m_fnSetWorld(const stDrawConstants* pConstants);
    virtual void m_fnSetColor(const stDrawConstants* pConstants);
    /// Draws everything this batcher is for.
    virtual void m_fnRender();
    virtual void m_fnReserved8();
    virtual void m_fnRelease();
    virtual ~CDraw_Base() = default;

    u32 m_uTextureUnit = 0; ///< that controls bind their texture on; never another
};
