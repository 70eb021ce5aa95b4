#pragma once
// What controls that show a picture in a box are made of: a quad with a texture, as large as the box lets it
// be with the picture's proportion kept.
#include "controls/shape_parts.h"
#include "draw/texture.h"

class CDraw_Base;

class CPictureParts : public CShapeParts {
  public:
    f32 m_fBoxW = 512, m_fBoxH = 512; ///< canvas units
    std::unique_ptr<CTexture_Base> m_pTexture;

  protected:
    /// Sizes of the arrays, in bytes.
    static constexpr u32 c_uVertexBytes = 4 * sizeof(stShapeVertex), c_uIndexBytes = 6 * sizeof(u16);
    CPictureParts();
    bool MakeQuad();
    /// There is something to lay out: arrays, and a texture with a size.
    bool HasPicture() const;
    /// The picture lies at the side of the box that an anchor code from 1 to 9 names, and with any other code
    /// in its top left corner. Needs HasPicture.
    void FitQuad(i32 iAnchorCode);
    /// Nothing without a texture: whatever else the unit has bound must not show in its place.
    void DrawPicture(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    void ReleasePicture();
};
