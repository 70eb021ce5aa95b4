#pragma once
// What controls that draw glyphs are made of: arrays of quads, and the mesh that takes them to the driver.
#include "draw/entity.h"
#include "draw/glyph_quads.h"
#include "draw/mesh.h"
#include "platform/pages.h"

#include <memory>

class CFontUniCode;

class CGlyphParts {
  public:
    std::unique_ptr<f32[]> m_pVertices; ///< quads relative to the control's corner
    std::unique_ptr<u32[]> m_pIndices;
    /// Those quads at the control's position. Few controls ever ask for them, and until then they take no
    /// memory.
    std::unique_ptr<f32[], platform::PagesDeleter> m_pVerticesOut;
    CFontUniCode* m_pFont = nullptr; ///< the manager's; also the draw key
    std::unique_ptr<CMesh_Base> m_pMesh;

  protected:
    /// Arrays for so many quads, with the indices written. False without memory.
    bool MakeArrays(u32 uQuads);
    bool MakeMesh(u32 uVertexBytes, u32 uIndexBytes);
    bool FillMesh();
    CFontUniCode* LoadFont(CFontUniCode** ppOut) const;
    void ReleaseGlyphs();
};

/// One entity, and lines of text.
class CTextParts : public CGlyphParts {
  public:
    std::unique_ptr<u32[]> m_pIndicesOut;
    u32 m_uTextSet = 0;                                              ///< 1 once a text was accepted
    u32 m_uIndexCount = 0, m_uVertexCount = 0, m_uTriangleCount = 0; ///< of what shows
    f32 m_fTextWidth = 0, m_fTextHeight = 0;
    std::unique_ptr<CEntity_Base> m_pEntity;
    std::unique_ptr<CEntity_Base> m_pShadowEntity; ///< nobody makes one
    f32 m_fLineStep = 0;

  protected:
    bool MakeTextArrays(u32 uQuads);
    bool HasArrays() const { return m_pVertices && m_pVerticesOut; }
    bool MakeEntity();
    /// Copies the quads to where the control stands.
    void MoveOut(u32 uVertexBytes, f32 x, f32 y);
    void CopyColorsOut(u32 uVertexBytes);
    void ReleaseText();
};
