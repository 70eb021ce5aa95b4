#pragma once
// The shapes of the panel family. A shape's origin is its top-left corner, y grows downward, lengths are
// canvas units.
#include "draw/mesh.h"

#include <memory>

/// Position and texture coordinate, 16 bytes.
struct stShapeVertex {
    f32 v2Pos[2];
    f32 v2Tex0[2];
};
static_assert(sizeof(stShapeVertex) == 16);

/// Indices of the three shapes.
constexpr u32 g_uRectIndexCount = 6, g_uFrameIndexCount = 24, g_uBorderIndexCount = 48;
constexpr u32 g_uRectVertexCount = 4, g_uFrameVertexCount = 8, g_uBorderVertexCount = 24;

/// A filled rectangle.
class CRect_Mesh_Base {
  public:
    /// Size w by h, grown by e on each side. False if the mesh could not be made.
    virtual bool m_fnCreateExpanded(f32 w, f32 h, f32 e);
    virtual bool m_fnCreate(f32 w, f32 h);
    virtual bool m_fnAllocMesh(u32 uStride);
    /// 0 without a mesh.
    virtual i32 m_fnUpload(const stShapeVertex* pVertices);
    virtual void m_fnBind();
    virtual void m_fnDraw();
    virtual void m_fnReleaseMesh();
    virtual ~CRect_Mesh_Base() = default;

    f32 m_fW = 0, m_fH = 0, m_fOutset = 0;
    std::unique_ptr<CMesh_Base> m_pMesh;
};

/// A frame with four corner squares of side c.
class CBorder_Mesh_Base {
  public:
    /// Outset e, ring thickness t.
    virtual bool m_fnCreate(f32 w, f32 h, f32 e, f32 t, f32 c);
    virtual bool m_fnAllocMesh(u32 uStride);
    virtual i32 m_fnUpload(const stShapeVertex* pVertices);
    virtual void m_fnBind();
    virtual void m_fnDraw();
    virtual void m_fnReleaseMesh();
    virtual ~CBorder_Mesh_Base() = default;

    f32 m_fW = 0, m_fH = 0, m_fOutset = 0, m_fThickness = 0, m_fCornerSize = 0;
    std::unique_ptr<CMesh_Base> m_pMesh;
};

/// A hollow rectangle.
class CFrame_Mesh_Base {
  public:
    virtual bool m_fnCreate(f32 w, f32 h, f32 e, f32 t);
    virtual bool m_fnAllocMesh(u32 uStride);
    virtual i32 m_fnUpload(const stShapeVertex* pVertices);
    virtual void m_fnBind();
    virtual void m_fnDraw();
    virtual void m_fnReleaseMesh();
    virtual ~CFrame_Mesh_Base() = default;

    f32 m_fW = 0, m_fH = 0, m_fOutset = 0, m_fThickness = 0;
    std::unique_ptr<CMesh_Base> m_pMesh;
};
