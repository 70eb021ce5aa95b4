#include "config/fixed_layout.h"

#include "config/fixed_text.h"
#include "config/load.h"
#include "controls/control_ids.h"
#include "controls/link_controls.h"
#include "controls/panel.h"
#include "draw/draw_keys.h"
#include "frame/frame_driver.h"
#include "frame/update.h"
#include "shared/overlay_state.h"
#include "shared/process_records.h"

#include <array>

namespace {

constexpr u32 g_uStyleClassic = 0, g_uStyleCustom = 2;

struct stColor {
    u8 r, g, b, a;
};
constexpr stColor g_stDark{14, 17, 23, 184}, g_stDeep{10, 12, 17, 208}, g_stAccent{64, 176, 255, 255},
    g_stWarm{255, 168, 64, 255}, g_stLine{255, 255, 255, 104}, g_stGlass{18, 24, 34, 88},
    g_stBlueGlass{36, 92, 168, 96};

struct stBox {
    i32 iCode, x, y, w, h;
};

constexpr stPanelInit Flat(u64 id, stBox b, stColor c, u32 uShape = g_uShapeRect) {
    return {id, b.iCode, b.x, b.y, b.w, b.h, c.r, c.g, c.b, c.a, PANEL_TYPE_GELLOPHANE, 30, uShape, false};
}
constexpr stPanelInit Frosted(u64 id, stBox b, stColor c, u32 uScatter) {
    return {id,       b.iCode,      b.x,  b.y, b.w, b.h, c.r, c.g, c.b, c.a, PANEL_TYPE_FROSTED,
            uScatter, g_uShapeRect, false};
}
constexpr stPanelInit Unseen(u64 id, stBox b) {
    return {id, b.iCode, b.x, b.y, b.w, b.h, 0, 0, 0, 0, PANEL_TYPE_INVISIBLE, 0, g_uShapeRect, false};
}

// Margins of 24 on all sides; the width is counted on a canvas of 1440, the narrowest in use, where nothing
// overlaps that isn't meant to. Coordinates are multiples of 3, so that the one-unit lines fall on whole
// pixel rows at a height of 720 too.
constexpr stPanelInit g_aDefault[] = {
    // Header, top left: strip over panel.
    Flat(1, {1, 24, 24, 6, 72}, g_stAccent),
    Flat(2, {1, 24, 24, 420, 72}, g_stDark),
    // Glass below it, with a hairline around.
    Flat(3, {1, 24, 120, 420, 264}, g_stLine, g_uShapeFrame),
    Frosted(4, {1, 24, 120, 420, 264}, g_stGlass, 30),
    // Tinted glass, top right, under a strip.
    Flat(5, {3, 24, 24, 360, 6}, g_stAccent),
    Frosted(6, {3, 24, 24, 360, 168}, g_stBlueGlass, 12),
    // Top centre.
    Flat(7, {2, 0, 24, 240, 48}, g_stDark),
    // Sides.
    Flat(8, {4, 24, 0, 6, 168}, g_stWarm),
    Flat(9, {6, 24, 0, 216, 216}, g_stLine, g_uShapeBorder),
    // Bottom left: a frame with a filled middle.
    Flat(10, {7, 24, 24, 288, 168}, g_stLine, g_uShapeFrame),
    Flat(11, {7, 36, 36, 264, 144}, g_stDark),
    // Bottom centre: a bar with a strip along its foot.
    Flat(12, {8, 0, 24, 720, 6}, g_stAccent),
    Flat(13, {8, 0, 24, 720, 60}, g_stDeep),
    // Bottom right.
    Flat(14, {9, 24, 24, 6, 168}, g_stWarm),
    Flat(15, {9, 24, 24, 288, 168}, g_stDark),
    // Frames of clock and resolution, on the tinted glass.
    Unseen(16, {3, 24, 42, 360, 84}),
    Unseen(17, {3, 24, 132, 360, 42}),
};
/// The shapes alone.
constexpr std::span<const stPanelInit> g_aShapes{g_aDefault, 15};

/// Twenty equal panels, five in a row.
constexpr std::array<stPanelInit, 20> MakeGrid(u32 uPanelType) {
    std::array<stPanelInit, 20> aGrid{};
    for (u32 i = 0; i < aGrid.size(); ++i) {
        const i32 iColumn = static_cast<i32>(i % 5), iRow = static_cast<i32>(i / 5);
        const stBox box{1, 24 + iColumn * 264, 24 + iRow * 264, 240, 240};
        const stColor color{static_cast<u8>(40 + 40 * iColumn), static_cast<u8>(60 + 48 * iRow), 160, 144};
        aGrid[i] =
            uPanelType == PANEL_TYPE_FROSTED ? Frosted(i + 1, box, color, 30) : Flat(i + 1, box, color);
    }
    return aGrid;
}
constexpr auto g_aPanels20 = MakeGrid(PANEL_TYPE_GELLOPHANE);
constexpr auto g_aFrosted20 = MakeGrid(PANEL_TYPE_FROSTED);

constexpr stPanelInit g_aStatus[] = {
    Flat(1, {1, 24, 24, 6, 72}, g_stAccent),
    Flat(2, {1, 24, 24, 420, 72}, g_stDark),
};
/// Shown by commands only; alpha 0 until then.
constexpr stPanelInit g_aStatusStylePanels[] = {
    Flat(1, {2, 0, 24, 96, 96}, {255, 255, 255, 0}),
    Flat(3, {3, 24, 24, 96, 96}, {255, 255, 255, 0}),
    Flat(5, {9, 24, 24, 96, 96}, {255, 255, 255, 0}),
};

/// One panel behind all writing.
constexpr stPanelInit g_aSheet[] = {Flat(1, {1, 24, 24, 1392, 720}, g_stDeep)};
constexpr stPanelInit g_aWritingA[] = {Flat(1, {1, 24, 24, 264, 144}, g_stDark)};
constexpr stPanelInit g_aWritingB[] = {Flat(1, {1, 24, 24, 264, 564}, g_stDark)};

constexpr stFixedLayout g_aLayouts[] = {
    {u"Default", g_uStyleCustom, g_aDefault, {}, &g_stDefaultWriting},
    {u"Shapes", g_uStyleCustom, g_aShapes, {}, nullptr},
    {u"Panels20", g_uStyleCustom, g_aPanels20, {}, nullptr},
    {u"Frosted20", g_uStyleCustom, g_aFrosted20, {}, nullptr},
    {u"Boxes8", g_uStyleCustom, g_aWritingA, {}, &g_stWritingA},
    {u"Boxes37", g_uStyleCustom, g_aWritingB, {}, &g_stWritingB},
    {u"Boxes80", g_uStyleCustom, g_aPanels20, {}, &g_stBoxes80Writing},
    {u"TextSheet", g_uStyleCustom, g_aSheet, {}, &g_stTextSheetWriting},
    {u"Status", g_uStyleClassic, g_aStatus, g_aStatusStylePanels, nullptr},
    {u"Empty", g_uStyleCustom, {}, {}, nullptr},
};

/// A build that failed later on leaves its controls; the next try must not stand on them.
bool EmptyManager() {
    if (!g_pOSDManager || !g_pOSDManager->m_fnStartOver()) return false;
    g_fnSelectManager();
    return true;
}

/// Style panels hang in the tree, so that commands move them, and stand in no draw list at first.
bool MakeStylePanels(std::span<const stPanelInit> records) {
    for (const stPanelInit& st : records) {
        std::unique_ptr<CPanel_Base> pPanel;
        if (!g_fnMakePanel(st, pPanel)) return false;
        if (!pPanel || st.u64LB_ID >= g_uStylePanelEntries) continue;
        CPanel_Base* p = g_ppStylePanel[st.u64LB_ID] = pPanel.release();
        g_pOSDManager->m_fnAddChild(nullptr, p);
    }
    return true;
}

void BuildUpdateLists(u32 uLayoutStyle) {
    if (uLayoutStyle == g_uStyleCustom)
        g_fnBuildUpdateCustom();
    else
        g_fnBuildUpdateClassic();
}

/// The panels of these layouts have no owner, so each hangs from the root.
void HangFromRoot(std::span<const stPanelInit> records) {
    for (const stPanelInit& st : records)
        if (CPanel_Base* p = g_fnFindCtrlById(st.u64LB_ID, g_stPanelIds, g_ppPanel))
            g_pOSDManager->m_fnAddChild(nullptr, p);
}

} // namespace

const stFixedLayout& g_fnFindFixedLayout(std::u16string_view wzProfile) {
    for (const stFixedLayout& st : g_aLayouts)
        if (st.wzProfile == wzProfile) return st;
    return g_aLayouts[0];
}

bool g_fnBuildFixedLayout() {
    g_fnClearConfiguration();
    if (!EmptyManager()) return false;
    const stFixedLayout& st = g_fnFindFixedLayout(g_wzProfileName);
    g_uLayoutStyle = st.uLayoutStyle;
    if (!g_fnCreatePanels(st.panels) || !MakeStylePanels(st.stylePanels)) return false;
    if (st.pWriting && !g_fnMakeFixedWriting(*st.pWriting)) return false;
    if (st.uLayoutStyle == g_uStyleCustom) HangFromRoot(st.panels);
    if (st.pWriting) g_fnHangFixedWriting(*st.pWriting);
    g_fnLinkControls();
    BuildUpdateLists(st.uLayoutStyle);
    return true;
}
