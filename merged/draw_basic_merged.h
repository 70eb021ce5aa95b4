#pragma once
// The batcher of flat, textured and frosted shapes in the merged flavour. The shapes of all lists lie in one
// stream, in the order of drawing; each list is one draw. Controls are asked again only when they have
// changed.
#include "batch/draw_basic.h"
#include "draw/kept_programs.h"
#include "merged/merged_stream.h"
#include "merged/mesh_merged.h"

#include <memory>
#include <vector>

class CDrawBasic_Merged final : public CDrawBasic_Base, private CMergedSink {
  public:
    ~CDrawBasic_Merged() override;

    /// Builds the programs. Throws std::runtime_error.
    bool m_fnInitialize() override;
    void m_fnOnResize() override;
    void m_fnSetDrawConstants(const stDrawConstants* pConstants) override;
    void m_fnSetWorld(const stDrawConstants* pConstants) override;
    void m_fnSetColor(const stDrawConstants* pConstants) override;
    /// Frosted shapes below flat ones below pictures.
    void m_fnRender() override;
    void m_fnRelease() override;

  private:
    /// A control and its room in the stream.
    struct stEntry {
        CControl* pControl;
        u32 uVertex, uVertexEnd, uIndex, uIndexEnd;
    };
    /// The entries of one list.
    struct stRun {
        const GLProgram* pProgram;
        u32 uPass;
        u32 uEntry, uEntryEnd, uIndex, uIndexEnd;
        bool bPictures; ///< animations go on also while nothing of them is seen
    };
    void m_fnTakeDraw(const CMesh_Merged& mesh, u32 uCount, u32 uFirst) override;
    bool m_fnIsDrawing() const override;
    void m_fnNotePicture() override;
    void BuildBlurPrograms();
    void Ask(CControl& control);
    void LayOut();
    void AddRun(DrawKey pKey, u32 uPass, const GLProgram* pProgram);
    void Write(stEntry& entry);
    void WriteChanged();
    void Update();
    void BindBackdrop();
    void Draw(const stRun& run, bool& bBackdropBound);
    void DrawPictures(const stRun& run);

    KeptProgram m_pProgramColor, m_pProgramTexture;
    KeptProgram m_pProgramBlur[g_uMaxBlurDiameter + 1];
    CMergedStream m_stream{g_uMergedShapeFloats};
    std::vector<stEntry> m_aEntries;
    std::vector<stRun> m_aRuns;
    stDrawConstants m_stConstants{};
    u32 m_uPass = g_uPassColor;
    bool m_bMeasure = false; ///< draws are counted, not written
    bool m_bPassOn = false;  ///< a picture's draw goes on to the driver
    bool m_bOverflow = false;
    bool m_bPicture = false; ///< noted since a walk of a list began
    stEntry m_stPlace{};     ///< where the next draw goes, and the end of the room
    u32 m_uListsSeen = 0, m_uChangesSeen = 0;
    bool m_bLaidOut = false;
    u32 m_uSampledCopy = 0; ///< name of the backdrop whose parameters are set
};

/// Entry of the creation table; null when out of memory.
CDrawBasic_Base* CreateDrawBasic_Merged();
