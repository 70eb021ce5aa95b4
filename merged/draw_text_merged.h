#pragma once
// The text batcher of the merged flavour. The quads of all fonts lie in one stream, in the order of drawing;
// each font is one draw. Controls are asked again only when they have changed.
#include "batch/draw_text.h"
#include "draw/kept_programs.h"
#include "merged/merged_stream.h"
#include "merged/mesh_merged.h"

#include <memory>
#include <vector>

class CDrawText_Merged final : public CDrawText_Base, private CMergedSink {
  public:
    // Operations as in CDrawBasic_Merged: both batchers fill the slots of CDraw_Base.
    ~CDrawText_Merged() override;

    /// Builds the programs. Throws std::runtime_error.
    bool m_fnInitialize() override;
    void m_fnOnResize() override;
    void m_fnSetDrawConstants(const stDrawConstants* pConstants) override;
    void m_fnSetWorld(const stDrawConstants* pConstants) override;
    void m_fnSetColor(const stDrawConstants* pConstants) override;
    /// With the glow program where g_bTextGlow says so.
    void m_fnRender() override;
    void m_fnRelease() override;
    void m_fnResetFontLists() override;

  private:
    /// A control and its room in the stream, in quads.
    struct stEntry {
        CControl* pControl;
        u32 uQuad, uQuadEnd;
    };
    /// The entries of one font.
    struct stRun {
        CFontUniCode* pFont;
        u32 uQuad, uQuadEnd;
    };
    void m_fnTakeDraw(const CMesh_Merged& mesh, u32 uCount, u32 uFirst) override;
    void TakeQuad(const void* pQuad);
    void Ask(CControl& control);
    void LayOut();
    void AddRun(u32 uFont);
    void Write(stEntry& entry);
    void WriteChanged();
    void Update();
    const GLProgram& ProgramInUse();

    KeptProgram m_pProgramText, m_pProgramGlow;
    CMergedStream m_stream{g_uMergedTextFloats};
    std::vector<stEntry> m_aEntries;
    std::vector<stRun> m_aRuns;
    stDrawConstants m_stConstants{};
    bool m_bMeasure = false; ///< quads are counted, not written
    bool m_bOverflow = false;
    stEntry m_stPlace{}; ///< where the next quad goes, and the end of the room
    u32 m_uMeasuredQuads = 0;
    u32 m_uChangesSeen = 0;
    bool m_bLaidOut = false;
};

/// Entry of the creation table; null when out of memory.
CDrawText_Base* CreateDrawText_Merged();
