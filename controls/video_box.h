#pragma once
// Frames that another program delivers, in a box: fitted with their proportion kept. Nothing shows until the
// first one, and then the last one does.
#include "controls/control.h"
#include "controls/picture_parts.h"

#include <memory>

/// Key of the last source's box: no pass walks it, so whatever stands under it is not drawn.
extern const void* const g_keyVideoLast;

/// The box is a size in canvas units, with the origin in its top left corner; a frame is one in pixels. Both
/// are to be set before m_fnInitialize. Render thread only.
class CVideoBox_Base : public virtual CControl, public CPictureParts {
  public:
    CVideoBox_Base();

    /// False for want of memory.
    virtual bool m_fnAllocBuffers();
    /// False without buffers or texture.
    virtual bool m_fnBuildQuad();
    virtual bool m_fnCreateEntity();
    /// Makes the texture too, of the frame's size.
    virtual bool m_fnCreateMesh();
    virtual bool m_fnUploadMesh();
    /// A clear texture, in pixels; its format is the first of two that can be had.
    virtual bool m_fnCreateTexture(u32 uWidth, u32 uHeight);
    /// Shows a frame, of the frame's size, rows packed and from the top down. One of another format than the
    /// texture's is rewritten first.
    virtual void m_fnWriteFrame(const u8* pPixels, u32 uFormat);
#include "controls/color_slots.inc"
    virtual void m_fnSetBoxSize(f32 w, f32 h);
    /// Stores only.
    virtual void m_fnSetFrameSize(f32 w, f32 h);
    /// Stores only; the caller attaches the box afterwards.
    virtual void m_fnSetDrawKey(const void* pKey);
    /// World matrix of 16 floats, colour of 4.
    virtual void m_fnDrawVideo(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    virtual void m_fnReserved14();
    /// Gives the texture's objects back; the box shows nothing from then on.
    virtual void m_fnReleaseTexture();
    virtual void m_fnRelease();
    virtual ~CVideoBox_Base();

    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Buffers, entity, mesh and texture, geometry and upload, in this order; at once true where nothing is
    /// to be drawn.
    bool m_fnInitialize();

    f32 m_fFrameW, m_fFrameH;
    u32 m_uPixelFormat;                     ///< of the texture
    std::unique_ptr<u8[]> m_pConvertBuffer; ///< made with the first frame that needs it

  private:
    std::size_t m_uConvertBytes;
    std::size_t m_fnFrameBytes() const;
    const u8* m_fnConvert(const u8* pPixels);
};
