#pragma once
// Geometry of the panel family: rectangle, frame (a hollow rectangle), border (a frame with four corner
// squares). Lengths in canvas units; a shape's origin is its top-left corner, y grows downward.
#include "draw/mesh.h"

#include <memory>

/// Vertex of a shape, a graph or a chart.
struct stShapeVertex {
    f32 m_afPos[2];
    f32 m_afTex[2];
};
static_assert(sizeof(stShapeVertex) == 16);

class CRect_Mesh_Base {
  public:
    CRect_Mesh_Base() = default;
    CRect_Mesh_Base(const CRect_Mesh_Base&) = delete;
    CRect_Mesh_Base& operator=(const CRect_Mesh_Base&) = delete;

    /// Grown by e on every side. False if no mesh could be made.
    virtual bool m_fnCreateExpanded(f32 w, f32 h, f32 e);
    virtual bool m_fnCreate(f32 w, f32 h);
    /// At once true where a mesh exists.
    virtual bool m_fnAllocMesh(u32 uStride);
    /// Four vertices; false without a mesh.
    virtual bool m_fnUpload(const void* pVertices);
    /// The mesh must exist.
    virtual void m_fnBind();
    virtual void m_fnDraw();
    virtual void m_fnReleaseMesh();
    virtual ~CRect_Mesh_Base() = default;

    f32 m_fWidth = 0.0f, m_fHeight = 0.0f, m_fOutset = 0.0f;
    std::unique_ptr<CMesh_Base> m_pMesh;
};

class CBorder_Mesh_Base {
  public:
    CBorder_Mesh_Base() = default;
    CBorder_Mesh_Base(const CBorder_Mesh_Base&) = delete;
    CBorder_Mesh_Base& operator=(const CBorder_Mesh_Base&) = delete;

    /// Outset e, ring thickness t, corner side c. False if no mesh could be made.
    virtual bool m_fnCreate(f32 w, f32 h, f32 e, f32 t, f32 c);
    virtual bool m_fnAllocMesh(u32 uStride);
    /// 24 vertices; false without a mesh.
    virtual bool m_fnUpload(const void* pVertices);
    virtual void m_fnBind();
    virtual void m_fnDraw();
    virtual void m_fnReleaseMesh();
    virtual ~CBorder_Mesh_Base() = default;

    f32 m_fWidth = 0.0f, m_fHeight = 0.0f, m_fOutset = 0.0f, m_fThickness = 0.0f, m_fCornerSize = 0.0f;
    std::unique_ptr<CMesh_Base> m_pMesh;
};

class CFrame_Mesh_Base {
  public:
    CFrame_Mesh_Base() = default;
    CFrame_Mesh_Base(const CFrame_Mesh_Base&) = delete;
    CFrame_Mesh_Base& operator=(const CFrame_Mesh_Base&) = delete;

    /// Outset e, ring thickness t. A ring thicker than half the shape crosses over and is not refused.
    virtual bool m_fnCreate(f32 w, f32 h, f32 e, f32 t);
    virtual bool m_fnAllocMesh(u32 uStride);
    /// Eight vertices; false without a mesh.
    virtual bool m_fnUpload(const void* pVertices);
    virtual void m_fnBind();
    virtual void m_fnDraw();
    virtual void m_fnReleaseMesh();
    virtual ~CFrame_Mesh_Base() = default;

    f32 m_fWidth = 0.0f, m_fHeight = 0.0f, m_fOutset = 0.0f, m_fThickness = 0.0f;
    std::unique_ptr<CMesh_Base> m_pMesh;
};
