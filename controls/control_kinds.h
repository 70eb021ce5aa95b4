#pragma once
// All kinds of objects that the manager owns, in one table: what tells a kind's name, letter, code of
// registration, array and ids.
#include "controls/control.h"
#include "controls/control_id_table.h"
#include "controls/flip_box.h"
#include "controls/img_box.h"
#include "controls/line_graph.h"
#include "controls/num_box.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "controls/pie_chart.h"
#include "controls/text_box.h"
#include "controls/video_box.h"
#include "font/font_unicode.h"

#include <tuple>

/// Places in the table of kinds.
enum eControlKind : u8 {
    KIND_FONT,
    KIND_TEXTBOX,
    KIND_NUMBOX,
    KIND_FLIPBOX,
    KIND_PANEL,
    KIND_STYLE_PANEL,
    KIND_IMGBOX,
    KIND_LINEGRAPH,
    KIND_VIDEOBOX,
    KIND_PIECHART
};

/// One kind of objects.
template <class T> struct stControlKind {
    const char* szName;
    char cLetter;                   ///< in names and in the elements of a style's group; 0 for none
    bool bNamed;                    ///< controls are found by name too
    u32 uIdType;                    ///< code of registration; 0 for none
    u32 uEntries;                   ///< of the array
    T** stManagerArrays::*pppArray; ///< the array of a manager
    T*** pppCurrent;                ///< that of the current manager
    stControlIdTable* pIds;         ///< null for a kind without ids
};

/// The kinds in the order in which a manager allocates and frees their arrays.
inline constexpr std::tuple g_aControlKinds{
    stControlKind<CFontUniCode>{"Font", 0, false, 0, g_uFontEntries, &stManagerArrays::m_ppFont, &g_ppFont,
                                nullptr},
    stControlKind<CTextBox_Base>{"TextBox", 'T', true, IdTextBox, g_uTextBoxEntries,
                                 &stManagerArrays::m_ppTextBox, &g_ppTextBox, &g_stTextBoxIds},
    stControlKind<CNumBox_Base>{"NumBox", 'N', true, IdNumBox, g_uNumBoxEntries, &stManagerArrays::m_ppNumBox,
                                &g_ppNumBox, &g_stNumBoxIds},
    stControlKind<CFlipBox_Base>{"FlipBox", 'F', false, IdFlipBox, g_uFlipBoxEntries,
                                 &stManagerArrays::m_ppFlipBox, &g_ppFlipBox, &g_stFlipBoxIds},
    stControlKind<CPanel_Base>{"Panel", 'P', true, IdPanel, g_uPanelEntries, &stManagerArrays::m_ppPanel,
                               &g_ppPanel, &g_stPanelIds},
    stControlKind<CPanel_Base>{"StylePanel", 0, false, 0, g_uStylePanelEntries,
                               &stManagerArrays::m_ppStylePanel, &g_ppStylePanel, nullptr},
    stControlKind<CImgBox_Base>{"ImgBox", 'I', true, IdImgBox, g_uImgBoxEntries, &stManagerArrays::m_ppImgBox,
                                &g_ppImgBox, &g_stImgBoxIds},
    stControlKind<CLineGraph_Base>{"LineGraph", 'L', true, IdLineGraph, g_uLineGraphEntries,
                                   &stManagerArrays::m_ppLineGraph, &g_ppLineGraph, &g_stLineGraphIds},
    stControlKind<CVideoBox_Base>{"VideoBox", 0, false, 0, g_uVideoBoxEntries, &stManagerArrays::m_ppVideoBox,
                                  &g_ppVideoBox, nullptr},
    stControlKind<CPieChart_Base>{"PieChart", 'C', true, IdPieChart, g_uPieChartEntries,
                                  &stManagerArrays::m_ppPieChart, &g_ppPieChart, &g_stPieChartIds},
};

/// Row of a kind.
template <eControlKind eKind> constexpr const auto& g_fnKind() { return std::get<eKind>(g_aControlKinds); }

/// Calls fnDo with each row, in order.
template <class Do> constexpr void g_fnForEachKind(Do fnDo) {
    std::apply([&](const auto&... kind) { (fnDo(kind), ...); }, g_aControlKinds);
}

/// Place of a control in its array, or g_uNoControl, and the control itself, or null.
template <class T> u32 g_fnFindCtrlPlace(u64 u64LB_ID, const stControlKind<T>& kind) {
    const u32 uPtr_ID = kind.pIds->m_fnFind(u64LB_ID);
    T* const* const ppArray = *kind.pppCurrent;
    return ppArray && uPtr_ID != g_uNoControl && ppArray[uPtr_ID] ? uPtr_ID : g_uNoControl;
}
template <class T> T* g_fnFindCtrlById(u64 u64LB_ID, const stControlKind<T>& kind) {
    const u32 uPtr_ID = g_fnFindCtrlPlace(u64LB_ID, kind);
    return uPtr_ID != g_uNoControl ? (*kind.pppCurrent)[uPtr_ID] : nullptr;
}
