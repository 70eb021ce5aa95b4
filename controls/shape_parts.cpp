#include "controls/shape_parts.h"

#include "draw/creation_table.h"

void CShapeParts::StoreColor(f32 r, f32 g, f32 b, f32 a) {
    m_afColor[0] = r;
    m_afColor[1] = g;
    m_afColor[2] = b;
    m_afColor[3] = a;
}

bool CShapeParts::MakeEntity() {
    m_pEntity.reset(g_stCreationTable.m_fnCreateEntity ? g_stCreationTable.m_fnCreateEntity() : nullptr);
    return m_pEntity != nullptr;
}

bool CShapeParts::MakeMesh(u32 uVertexBytes, u32 uIndexBytes) {
    m_pMesh.reset(g_stCreationTable.m_fnCreateMesh ? g_stCreationTable.m_fnCreateMesh() : nullptr);
    return m_pMesh && m_pMesh->m_fnCreate(sizeof(stShapeVertex), uVertexBytes, uIndexBytes, sizeof(u16));
}

bool CShapeParts::FillMesh() { return m_pMesh && m_pMesh->m_fnUpload(m_pVertices.get(), m_pIndices.get()); }

void CShapeParts::PlaceEntity(f32 x, f32 y, f32 z) {
    if (m_pEntity) m_pEntity->m_fnSetPosition(x, y, z);
}

void CShapeParts::ReleaseShape() {
    m_pVertices.reset();
    m_pIndices.reset();
    m_pEntity.reset();
    m_pMesh.reset();
}
