#include "merged/flavour_merged.h"

#include "batch/flavour_gl.h"
#include "draw/creation_table.h"
#include "merged/boxes_merged.h"
#include "merged/draw_basic_merged.h"
#include "merged/draw_text_merged.h"
#include "merged/font_merged.h"
#include "merged/merged_programs.h"
#include "merged/mesh_merged.h"
#include "merged/texture_merged.h"

static bool CanDrawMerged() noexcept {
    try {
        return g_fnCanDrawMerged();
    } catch (...) {
        return false;
    }
}

void g_fnFillCreationTable_Merged() noexcept {
    g_fnFillCreationTable_GL();
    if (!CanDrawMerged()) return;
    g_stCreationTable.m_fnCreateMesh = CreateMesh_Merged;
    g_stCreationTable.m_fnCreateTexture = CreateTexture_Merged;
    g_stCreationTable.m_fnCreateFont = CreateFontUC_Merged;
    g_stCreationTable.m_fnCreateTextBox = CreateTextBox_Merged;
    g_stCreationTable.m_fnCreateNumBox = CreateNumBox_Merged;
    g_stCreationTable.m_fnCreateFlipBox = CreateFlipBox_Merged;
    g_stCreationTable.m_fnCreateDrawBasic = CreateDrawBasic_Merged;
    g_stCreationTable.m_fnCreateDrawText = CreateDrawText_Merged;
}
