#include "controls/align_row.h"

#include "controls/control.h"

f32 g_fGlyphGapUnit = 1.0f;

static f32 Width(CControl* pItem) {
    f32 fWidth = 0.0f;
    pItem->m_fnGetSize(&fWidth, nullptr);
    return fWidth;
}

/// Widths of the items that exist, with a gap after each.
static f32 TotalWidth(std::span<CControl* const> items, f32 fGap) {
    f32 fTotal = 0.0f;
    for (CControl* pItem : items)
        if (pItem) fTotal += Width(pItem) + fGap;
    return fTotal;
}

/// Anchor offset that puts an item's left edge fStart into the panel, for codes 7, 8 and 9.
static f32 OffsetX(i32 iMode, f32 fStart, f32 fWidth, f32 fPanelWidth) {
    if (iMode == 8) return fStart + fWidth * 0.5f - fPanelWidth * 0.5f;
    if (iMode == 9) return fPanelWidth - fStart - fWidth;
    return fStart;
}

/// Anchor offset that leaves an item where it stands once it hangs on the panel's lower edge. The items of a
/// row hang there already but for their first alignment.
static f32 OffsetY(CControl* pPanel, CControl* pItem) {
    i32 iCode = 0;
    f32 fAnchorY = 0.0f, fPanelY = 0.0f, fPanelH = 0.0f, fY = 0.0f, fH = 0.0f;
    pItem->m_fnGetAnchor(&iCode, nullptr, &fAnchorY);
    if (iCode >= 7 && iCode <= 9) return fAnchorY;
    pPanel->m_fnGetPosition(nullptr, &fPanelY, nullptr);
    pPanel->m_fnGetSize(nullptr, &fPanelH);
    pItem->m_fnGetPosition(nullptr, &fY, nullptr);
    pItem->m_fnGetSize(nullptr, &fH);
    return fPanelH - fH - (fY - fPanelY);
}

static f32 LeftEdge(CControl* pPanel, CControl* pItem) {
    f32 fPanelX = 0.0f, fX = 0.0f;
    pPanel->m_fnGetPosition(&fPanelX, nullptr, nullptr);
    pItem->m_fnGetPosition(&fX, nullptr, nullptr);
    return fX - fPanelX;
}

void g_fnAlignRow(CControl* pPanel, std::span<CControl* const> items, i32 iMode, f32 fGapFactor) {
    if (!pPanel) return;
    const f32 fPanelWidth = Width(pPanel);
    const f32 fGap = fGapFactor * g_fGlyphGapUnit;
    const f32 fTotal = TotalWidth(items, fGap) - fGap;
    f32 fStart = iMode == 7 ? 0.0f : (fPanelWidth - fTotal) * 0.5f;
    for (CControl* pItem : items) {
        if (!pItem) continue;
        const f32 fWidth = Width(pItem);
        if (LeftEdge(pPanel, pItem) != fStart)
            pItem->m_fnSetAnchor(iMode, OffsetX(iMode, fStart, fWidth, fPanelWidth), OffsetY(pPanel, pItem));
        fStart += fWidth + fGap;
    }
}

static void AlignForward(std::span<CControl* const> items, i32 iMode, f32 fX, f32 fTop, f32 fGap) {
    for (CControl* pItem : items) {
        if (!pItem) continue;
        const f32 fWidth = Width(pItem);
        // Offsets of code 8 count from middle to middle.
        pItem->m_fnSetAnchor(iMode, iMode == 8 ? fX + fWidth * 0.5f : fX, fTop);
        fX += fWidth + fGap;
    }
}

static void AlignBackward(std::span<CControl* const> items, f32 fX, f32 fTop, f32 fGap) {
    for (std::size_t u = items.size(); u-- > 0;) {
        if (!items[u]) continue;
        items[u]->m_fnSetAnchor(9, fX, fTop);
        fX += Width(items[u]) + fGap;
    }
}

void g_fnAlignCustom(CControl* pPanel, std::span<CControl* const> items, i32 iMode, f32 fLeft, f32 fTop,
                     f32 fGap) {
    if (!pPanel) return;
    if (iMode == 7) AlignForward(items, 7, fLeft, fTop, fGap);
    if (iMode == 8) AlignForward(items, 8, (TotalWidth(items, fGap) - fGap) * -0.5f + fLeft, fTop, fGap);
    if (iMode == 9) AlignBackward(items, fLeft, fTop, fGap);
}
