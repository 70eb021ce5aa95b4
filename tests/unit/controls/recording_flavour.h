#pragma once
// A flavour without a graphics interface: what panels do to entities, meshes and batchers is written down.
#include "controls/panel.h"
#include "draw/creation_table.h"
#include "draw/draw_base.h"
#include "draw/entity.h"
#include "draw/mesh.h"

#include <cstring>
#include <string>
#include <vector>

namespace recording {

/// Events in order, such as "constants", "bind", "layout", "draw 24".
inline std::vector<std::string> g_aEvents;
inline i32 g_iLiveMeshes, g_iLiveEntities, g_iLivePanels;
inline i32 g_iUploads;
/// Creations from this one on fail; negative: none does.
inline i32 g_iMeshesLeft = -1, g_iEntitiesLeft = -1, g_iPanelsLeft = -1;

inline bool Spend(i32& iLeft) {
    if (iLeft == 0) return false;
    if (iLeft > 0) --iLeft;
    return true;
}

class CMesh : public virtual CMesh_Base {
  public:
    CMesh() { ++g_iLiveMeshes; }
    ~CMesh() override { --g_iLiveMeshes; }
    bool m_fnUpload(const void* pVertices, const void*) override {
        ++g_iUploads;
        if (pVertices) std::memcpy(m_afFirstVertices, pVertices, sizeof m_afFirstVertices);
        return true;
    }
    void m_fnBind() override { g_aEvents.push_back("bind"); }
    void m_fnDraw(u32 uIndexCount, u32, u32) override {
        g_aEvents.push_back("draw " + std::to_string(uIndexCount));
    }
    f32 m_afFirstVertices[16] = {};
};

class CEntity : public virtual CEntity_Base {
  public:
    CEntity() { ++g_iLiveEntities; }
    ~CEntity() override { --g_iLiveEntities; }
    const f32* m_fnGetWorldForDraw() override { return m_afWorld; }
    f32 m_afWorld[16] = {};
};

class CPanel : public CPanel_Base {
  public:
    CPanel() { ++g_iLivePanels; }
    ~CPanel() override { --g_iLivePanels; }
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

/// Installs the flavour and clears what was written down.
inline void Install() {
    g_stCreationTable.m_fnCreateMesh = []() -> CMesh_Base* {
        return Spend(g_iMeshesLeft) ? new CMesh : nullptr;
    };
    g_stCreationTable.m_fnCreateEntity = []() -> CEntity_Base* {
        return Spend(g_iEntitiesLeft) ? new CEntity : nullptr;
    };
    g_stCreationTable.m_fnCreatePanel = []() -> CPanel_Base* {
        return Spend(g_iPanelsLeft) ? new CPanel : nullptr;
    };
    g_aEvents.clear();
    g_iUploads = 0;
    g_iMeshesLeft = g_iEntitiesLeft = g_iPanelsLeft = -1;
}

} // namespace recording
