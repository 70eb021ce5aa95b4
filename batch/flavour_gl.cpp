#include "batch/flavour_gl.h"

#include "batch/draw_basic_gl.h"
#include "batch/draw_text_gl.h"
#include "controls/flip_box_gl.h"
#include "controls/num_box_gl.h"
#include "controls/panel.h"
#include "controls/text_box_gl.h"
#include "draw/creation_table.h"
#include "draw/entity_gl.h"
#include "draw/mesh_gl.h"
#include "draw/texture_gl.h"
#include "font/font_uc_gl.h"

/// Panels have no half that belongs to an API.
static CPanel_Base* CreatePanel() { return new CPanel_Base; }

void g_fnFillCreationTable_GL() noexcept {
    g_stCreationTable = {};
    g_stCreationTable.m_fnCreateMesh = CreateMesh_GL;
    g_stCreationTable.m_fnCreateEntity = CreateEntity_GL;
    g_stCreationTable.m_fnCreateTexture = CreateTexture_GL;
    g_stCreationTable.m_fnCreateFont = CreateFontUC_GL;
    g_stCreationTable.m_fnCreateTextBox = CreateTextBox_GL;
    g_stCreationTable.m_fnCreateNumBox = CreateNumBox_GL;
    g_stCreationTable.m_fnCreateFlipBox = CreateFlipBox_GL;
    g_stCreationTable.m_fnCreatePanel = CreatePanel;
    g_stCreationTable.m_fnCreateDrawBasic = CreateDrawBasic_GL;
    g_stCreationTable.m_fnCreateDrawText = CreateDrawText_GL;
}
