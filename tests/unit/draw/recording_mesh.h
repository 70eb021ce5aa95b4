#pragma once
// A mesh flavour without an API: it keeps what it was given.
#include "draw/creation_table.h"
#include "draw/mesh.h"
#include "draw/shape_meshes.h"

#include <cstring>
#include <vector>

class CRecordingMesh : public virtual CMesh_Base {
  public:
    bool m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u8 u8IndexSize) override {
        return s_bAccept && CMesh_Base::m_fnCreate(uStride, uVertexBytes, uIndexBytes, u8IndexSize);
    }
    bool m_fnUpload(const void* pVertices, const void* pIndices) override {
        ++m_uUploads;
        m_aVertices.resize(m_uVertexBytes / sizeof(stShapeVertex));
        std::memcpy(m_aVertices.data(), pVertices, m_uVertexBytes);
        m_auIndices.resize(m_uIndexBytes / sizeof(u16));
        std::memcpy(m_auIndices.data(), pIndices, m_uIndexBytes);
        return true;
    }
    void m_fnBind() override { ++m_uBinds; }
    void m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32) override {
        m_auDraws.push_back(uIndexCount);
        m_auFirst.push_back(uFirstIndex);
    }

    u32 m_uUploads = 0, m_uBinds = 0;
    std::vector<stShapeVertex> m_aVertices;
    std::vector<u16> m_auIndices;
    std::vector<u32> m_auDraws, m_auFirst;

    static inline u32 s_uMade = 0;
    static inline bool s_bAccept = true;
};

/// Installs the flavour, and gives the former table back at the end.
class CRecordingMeshes {
  public:
    CRecordingMeshes() : m_stFormer(g_stCreationTable) {
        CRecordingMesh::s_uMade = 0;
        CRecordingMesh::s_bAccept = true;
        g_stCreationTable.m_fnCreateMesh = []() -> CMesh_Base* {
            ++CRecordingMesh::s_uMade;
            return new CRecordingMesh;
        };
    }
    ~CRecordingMeshes() { g_stCreationTable = m_stFormer; }

  private:
    stCreationTable m_stFormer;
};
