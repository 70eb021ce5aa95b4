#pragma once
// A flavour whose meshes keep what they were given, and short forms of vertices.
#include "draw/creation_table.h"
#include "draw/draw_base.h"
#include "draw/entity.h"
#include "draw/mesh.h"
#include "draw/shape_meshes.h"
#include "tests/unit/controls/manager_fixture.h"

#include <string>
#include <vector>

namespace graphs {

/// Events in order, such as "constants", "bind", "layout", "draw 24 from 0".
inline std::vector<std::string> g_aEvents;
inline i32 g_iLiveMeshes, g_iLiveEntities;
inline bool g_bMeshes = true, g_bEntities = true; ///< whether any can be made

class CMesh : public virtual CMesh_Base {
  public:
    CMesh() { ++g_iLiveMeshes; }
    ~CMesh() override { --g_iLiveMeshes; }
    /// Reads all it is promised, so that a sanitizer sees a promise that isn't kept.
    bool m_fnUpload(const void* pVertices, const void* pIndices) override {
        if (pVertices) Copy(m_aVertices, pVertices, m_uVertexBytes);
        if (pIndices) Copy(m_auIndices, pIndices, m_uIndexBytes);
        (pIndices ? m_uFullUploads : m_uVertexUploads)++;
        return true;
    }
    void m_fnBind() override { g_aEvents.push_back("bind"); }
    void m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32) override {
        g_aEvents.push_back("draw " + std::to_string(uIndexCount) + " from " + std::to_string(uFirstIndex));
    }
    std::vector<stShapeVertex> m_aVertices;
    std::vector<u16> m_auIndices;
    u32 m_uFullUploads = 0, m_uVertexUploads = 0;

  private:
    /// Keeps its room, so that an upload of the same size allocates nothing.
    template <class T> static void Copy(std::vector<T>& a, const void* p, u32 uBytes) {
        const T* pFirst = static_cast<const T*>(p);
        a.assign(pFirst, pFirst + uBytes / sizeof(T));
    }
};

class CEntity : public virtual CEntity_Base {
  public:
    CEntity() { ++g_iLiveEntities; }
    ~CEntity() override { --g_iLiveEntities; }
    const f32* m_fnGetWorldForDraw() override { return m_afWorld; }
    f32 m_afWorld[16] = {};
};

class CBatcher : public virtual CDraw_Base {
  public:
    void m_fnBindVertexLayout(void*) override { g_aEvents.push_back("layout"); }
    void m_fnSetDrawConstants(const stDrawConstants* p) override {
        g_aEvents.push_back("constants");
        m_stLast = *p;
    }
    stDrawConstants m_stLast{};
};

using Events = std::vector<std::string>;
using Indices = std::vector<u16>;

struct stPoint {
    f32 x, y;
};
using Points = std::vector<stPoint>;

/// The uCount vertices from uFirst on lie at the points, and have no texture place.
inline void ExpectVertices(const stShapeVertex* pVertices, u32 uFirst, const Points& points,
                           f32 fSlack = 1e-4f) {
    for (u32 i = 0; i < points.size(); ++i) {
        const stShapeVertex& st = pVertices[uFirst + i];
        EXPECT_NEAR(st.m_afPos[0], points[i].x, fSlack) << "x of vertex " << uFirst + i;
        EXPECT_NEAR(st.m_afPos[1], points[i].y, fSlack) << "y of vertex " << uFirst + i;
        EXPECT_EQ(st.m_afTex[0], 0);
        EXPECT_EQ(st.m_afTex[1], 0);
    }
}

} // namespace graphs

class GraphTest : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        graphs::g_aEvents.clear();
        graphs::g_bMeshes = graphs::g_bEntities = true;
        g_stCreationTable.m_fnCreateMesh = []() -> CMesh_Base* {
            return graphs::g_bMeshes ? new graphs::CMesh : nullptr;
        };
        g_stCreationTable.m_fnCreateEntity = []() -> CEntity_Base* {
            return graphs::g_bEntities ? new graphs::CEntity : nullptr;
        };
    }
    void TearDown() override {
        ManagerTest::TearDown();
        g_stCreationTable = {};
    }
    graphs::CBatcher m_batcher;
};
