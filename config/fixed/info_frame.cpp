#include "config/fixed/info_frame.h"

#include "config/fixed/info_place.h"
#include "config/fixed/style_panels.h"
#include "config/make/image_records.h"
#include "config/profile/profile_panel_keys.h"
#include "controls/anchor.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"
#include "draw/canvas.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

namespace {

// --- the parts of the block --------------------------------------------------------------------------------

/// Words of the texts that the settings bring along: no part of the block.
constexpr const char* c_aszSettings[] = {"MEMO0", "WATERMARK", "SYSTEMINFO"};

CTextBox_Base* SettingsText(const stStyleItems& style, const char* szWord) {
    const u32 uBID = g_fnItemBID(style, eItem::Text, szWord, "");
    return g_fnFindCtrlById(g_fnMakeLB_ID(0, uBID), g_fnKind<KIND_TEXTBOX>());
}

template <eControlKind eKind> void AddAll(std::set<CControl*>& set) {
    const auto& kind = g_fnKind<eKind>();
    for (u32 u = 0; u < kind.uEntries; ++u)
        if (CControl* p = (*kind.pppCurrent)[u]) set.insert(p);
}

/// The parts that hang on the root, in the root's order.
ControlList BlockRoots(const stStyleItems& style) {
    std::set<CControl*> parts;
    AddAll<KIND_TEXTBOX>(parts);
    AddAll<KIND_NUMBOX>(parts);
    AddAll<KIND_FLIPBOX>(parts);
    AddAll<KIND_PANEL>(parts);
    for (const char* szWord : c_aszSettings) parts.erase(SettingsText(style, szWord));
    ControlList roots;
    const ControlList* const pAll = g_pOSDManager->m_fnGetChildren(nullptr);
    if (pAll)
        std::copy_if(pAll->begin(), pAll->end(), std::back_inserter(roots),
                     [&](CControl* p) { return parts.contains(p); });
    return roots;
}

struct stEdges {
    f32 fLeft, fTop, fRight, fBottom;
};

stEdges EdgesOf(CControl* p) {
    f32 fX, fY, fWidth, fHeight;
    p->m_fnGetPosition(&fX, &fY, nullptr);
    p->m_fnGetSize(&fWidth, &fHeight);
    return {fX, fY, fX + fWidth, fY + fHeight};
}

/// Right and lower edge of a control with all that hangs in it.
void Extend(CControl* pControl, f32& fRight, f32& fBottom) {
    ControlList list{pControl};
    g_pOSDManager->m_fnCollectSubtree(pControl, list);
    for (CControl* p : list) {
        const stEdges st = EdgesOf(p);
        fRight = std::max(fRight, st.fRight);
        fBottom = std::max(fBottom, st.fBottom);
    }
}

void MoveBy(CControl* pControl, f32 fX, f32 fY) {
    const stEdges st = EdgesOf(pControl);
    pControl->m_fnSetAnchor(1, st.fLeft + fX, st.fTop + fY);
}

// --- columns -----------------------------------------------------------------------------------------------

struct stRow {
    CControl* pControl;
    stEdges edges;
};

/// Panels on the root from fTop on, from top to bottom.
std::vector<stRow> RowsFrom(f32 fTop, const CControl* pFooter) {
    std::vector<stRow> rows;
    for (u32 u = 0; u < g_uPanelEntries; ++u) {
        CControl* const p = g_ppPanel[u];
        if (!p || p == pFooter || !g_pOSDManager->m_fnIsChildOf(nullptr, p)) continue;
        if (const stEdges st = EdgesOf(p); st.fTop >= fTop) rows.push_back({p, st});
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const stRow& a, const stRow& b) { return a.edges.fTop < b.edges.fTop; });
    return rows;
}

/// Canvas height that the block may take; the same distance stays free at the other end.
f32 RoomBelow(f32 fTop) {
    const f32 fFree = static_cast<f32>(std::abs(static_cast<f64>(g_stLooks.stInfo.stPlace.iY)) * 2);
    return static_cast<f32>(g_uCanvasH) - fFree - fTop;
}

/// Height of each column, if so many rows share as few columns as they need.
f32 ColumnHeight(const std::vector<stRow>& rows, f32 fRoom) {
    const f32 fTotal = rows.back().edges.fBottom - rows.front().edges.fTop;
    f32 fTallest = 0;
    for (const stRow& row : rows) fTallest = std::max(fTallest, row.edges.fBottom - row.edges.fTop);
    const f32 fColumns = std::ceil(fTotal / std::max(fRoom, fTallest));
    return std::min(std::ceil(fTotal / fColumns / fTallest) * fTallest, std::max(fRoom, fTallest));
}

void PlaceColumns(const std::vector<stRow>& rows, f32 fHeight, f32 fStep) {
    const f32 fTop = rows.front().edges.fTop;
    f32 fColumnTop = fTop, fX = 0;
    for (const stRow& row : rows) {
        // Half a unit is no row's height.
        if (row.edges.fBottom - fColumnTop > fHeight + 0.5f) {
            fColumnTop = row.edges.fTop;
            fX += fStep;
        }
        MoveBy(row.pControl, fX, fTop - fColumnTop);
    }
}

// --- the block ---------------------------------------------------------------------------------------------

struct stSize {
    f32 fWidth = 0, fHeight = 0;
};

/// An anchor code beyond the nine counts as the first.
stPartPlace InfoPlace() {
    stPartPlace st = g_stLooks.stInfo.stPlace;
    if (st.iAnchor < 1 || st.iAnchor > 9) st.iAnchor = 1;
    return st;
}

void Hang(CControl* pControl, f32 fX, f32 fY, i32 iCode) {
    const stEdges st = EdgesOf(pControl);
    f32 fAnchorX = 0, fAnchorY = 0;
    g_fnReanchorOnCanvas(1, st.fLeft + fX, st.fTop + fY, st.fRight - st.fLeft, st.fBottom - st.fTop, iCode,
                         &fAnchorX, &fAnchorY);
    pControl->m_fnSetAnchor(iCode, fAnchorX, fAnchorY);
}

stSize PlaceBlock(const stStyleItems& style, const stPartPlace& stPlace) {
    const ControlList roots = BlockRoots(style);
    stSize size;
    for (CControl* p : roots) Extend(p, size.fWidth, size.fHeight);
    f32 fX = 0, fY = 0;
    g_fnAnchorToPosition(stPlace.iAnchor, static_cast<f32>(stPlace.iX), static_cast<f32>(stPlace.iY),
                         size.fWidth, size.fHeight, 0, 0, static_cast<f32>(g_uCanvasW),
                         static_cast<f32>(g_uCanvasH), &fX, &fY);
    for (CControl* p : roots) Hang(p, fX, fY, stPlace.iAnchor);
    return size;
}

bool MakeBackgrounds(const stStyleItems& style) {
    const stProfileLooks& st = g_stLooks;
    return g_fnMakeBackgroundOf(STYLE_PANEL_MEMO, st.stMemo.stPanel, SettingsText(style, "MEMO0")) &&
           g_fnMakeBackgroundOf(STYLE_PANEL_WATERMARK, st.stWatermark.stPanel,
                                SettingsText(style, "WATERMARK")) &&
           g_fnMakeBackgroundOf(STYLE_PANEL_SYSTEM_INFO, st.stSystemInfo.stPanel,
                                SettingsText(style, "SYSTEMINFO")) &&
           g_fnMakeBackgroundOf(STYLE_PANEL_PHOTO, st.stPhoto.stPanel,
                                g_fnFindCtrlById(g_u64PhotoId, g_fnKind<KIND_IMGBOX>()));
}

} // namespace

void g_fnWrapInfoRows(f32 fTop, CControl* pFooter) {
    if (!g_pOSDManager) return;
    const std::vector<stRow> rows = RowsFrom(fTop, pFooter);
    const f32 fRoom = RoomBelow(fTop);
    if (rows.empty() || rows.back().edges.fBottom - fTop <= fRoom) return;
    f32 fRight = 0, fBottom = 0;
    for (const stRow& row : rows) Extend(row.pControl, fRight, fBottom);
    PlaceColumns(rows, ColumnHeight(rows, fRoom), fRight);
    if (!pFooter) return;
    f32 fNewBottom = 0;
    for (const stRow& row : rows) Extend(row.pControl, fRight, fNewBottom);
    MoveBy(pFooter, 0, fNewBottom - fBottom);
}

bool g_fnFrameInfo(const stStyleItems& style) {
    if (!g_pOSDManager) return true;
    for (const char* szWord : c_aszSettings)
        if (CControl* p = SettingsText(style, szWord)) g_pOSDManager->m_fnAddChild(nullptr, p);
    const stPartPlace stPlace = InfoPlace();
    g_stInfoPlace.iAnchor = stPlace.iAnchor;
    g_stInfoPlace.iX = stPlace.iX;
    g_stInfoPlace.iY = stPlace.iY;
    const stSize size = PlaceBlock(style, stPlace);
    return g_fnMakeBackground(STYLE_PANEL_INFO, g_stLooks.stInfo.stPanel, stPlace, size.fWidth,
                              size.fHeight) &&
           MakeBackgrounds(style) && g_fnMakeStatusPanels();
}
