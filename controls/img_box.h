#pragma once
// A picture file, or a frame of its animation, in a box: fitted with its proportion kept, or turned. Which
// frame shows is the texture's matter.
#include "controls/control.h"
#include "controls/picture_parts.h"
#include "draw/data_path.h"

/// Lengths in canvas units; the origin is the box's top-left corner, y grows downward. Setters only store,
/// but for m_fnSetBoxSize, which re-places the control, and m_fnSetImageFile; m_fnRebuild brings them to the
/// screen. Render thread only.
class CImgBox_Base : public virtual CControl, public CPictureParts {
  public:
    CImgBox_Base();

    /// False for want of memory.
    virtual bool m_fnAllocBuffers();
    /// The quad that is asked for, in memory.
    virtual void m_fnBuildQuad();
    /// The picture, turned, as large as the box lets it be. False without buffers, or without a picture.
    virtual bool m_fnBuildTiltedQuad();
    /// The picture, upright, as large as the box lets it be, at the side that the control's own anchor code
    /// names. False without buffers, or without a picture.
    virtual bool m_fnBuildFittedQuad();
    virtual bool m_fnCreateEntity();
    /// Makes the mesh, and loads the picture unless there is one.
    virtual bool m_fnCreateMesh();
    /// At once true where a texture exists. No file name: a blank texture of the box's size. A file that
    /// can't be read leaves none.
    virtual bool m_fnLoadTexture();
    virtual bool m_fnUploadMesh();
    virtual void m_fnRebuild();
    /// Replaces the texture by one of zeros, in pixels. Without memory there is none.
    virtual void m_fnCreateBlankTexture(u32 uWidth, u32 uHeight);
    /// Pixels for the first frame, packed, as many as the texture has and of its format.
    virtual void m_fnWriteTexture(const void* pPixels);
    virtual void m_fnSetTilted(bool bTilted);
    /// Degrees, clockwise; stored by whole turns as 0 up to 360. What is not finite counts as 0.
    virtual void m_fnSetTiltDegree(f32 fDegrees);
#include "controls/color_slots.inc"
    virtual void m_fnSetBoxSize(f32 w, f32 h);
    /// A name in the data folder, or a whole path; one that does not fit counts as none. Where a picture
    /// shows already, the new one is loaded in its place.
    virtual void m_fnSetImageFile(const char16_t* wzName, bool bFullPath);
    /// Stores only; the caller attaches the box afterwards.
    virtual void m_fnSetDrawKey(const void* pKey);
    /// World matrix of 16 floats, colour of 4.
    virtual void m_fnDrawImage(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    virtual void m_fnReserved20();
    virtual void m_fnReserved21();
    virtual void m_fnRelease();
    virtual ~CImgBox_Base();

    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Buffers, entity, mesh with the picture, quad and upload, in this order; at once true where nothing is
    /// to be drawn.
    bool m_fnInitialize();

    char16_t m_wzFileName[g_uDataPathCapacity];
    bool m_bFullPath;
    bool m_bTilted;
    f32 m_fTiltDegree; ///< 0 up to 360

  private:
    bool m_fnReadPicture(CTexture_Base& texture) const;
};
