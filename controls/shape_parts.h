#pragma once
// What controls that draw one shape are made of: its vertices, its mesh, and the entity that places it.
#include "draw/entity.h"
#include "draw/mesh.h"
#include "draw/shape_meshes.h"

#include <memory>

class CShapeParts {
  public:
    std::unique_ptr<stShapeVertex[]> m_pVertices;
    std::unique_ptr<u16[]> m_pIndices;
    f32 m_afColor[4] = {};
    std::unique_ptr<CEntity_Base> m_pEntity;
    std::unique_ptr<CMesh_Base> m_pMesh;
    const void* m_pDrawKey = nullptr;

  protected:
    void StoreColor(f32 r, f32 g, f32 b, f32 a);
    bool MakeEntity();
    bool MakeMesh(u32 uVertexBytes, u32 uIndexBytes);
    bool FillMesh();
    void PlaceEntity(f32 x, f32 y, f32 z);
    void ReleaseShape();
};
