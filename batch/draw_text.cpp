#include "batch/draw_text.h"

#include "controls/num_box.h"
#include "controls/osd_manager.h"
#include "controls/text_box.h"
#include "font/font_unicode.h"
#include "platform/pages.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <set>
#include <utility>

bool g_bTextGlow = false;

/// Fonts that stay in the lists without controls.
static std::set<const CFontUniCode*>& FontsToStay() {
    static std::set<const CFontUniCode*> fonts;
    return fonts;
}

void g_fnSetFontToStay(CFontUniCode* pFont) {
    if (pFont) FontsToStay().insert(pFont);
}

bool g_fnIsFontToStay(const CFontUniCode* pFont) noexcept { return FontsToStay().contains(pFont); }

void g_fnClearFontsToStay() noexcept { FontsToStay().clear(); }

static constexpr std::size_t g_uListBytes =
    std::size_t{g_uMaxTextFonts} * g_uMaxFontControls * sizeof(CControl*);

CDrawText_Base::CDrawText_Base()
    : m_pControls(
          reinterpret_cast<CControl* (*)[g_uMaxFontControls]>(platform::AllocatePages(g_uListBytes))) {
    CDrawText_Base::m_fnResetFontLists();
}

CDrawText_Base::~CDrawText_Base() {
    CDrawText_Base::m_fnFreeMergedBuffers();
    CDrawText_Base::m_fnResetFontLists();
    platform::FreePages(reinterpret_cast<u8*>(m_pControls), g_uListBytes);
}

void CDrawText_Base::m_fnReserved0Text() {}

void CDrawText_Base::m_fnReserved5Text() {}

void CDrawText_Base::m_fnReserved8Text() {}

void CDrawText_Base::m_fnResetFontLists() {
    std::memset(m_pFonts, 0, sizeof m_pFonts);
    std::memset(m_uControlCounts, 0, sizeof m_uControlCounts);
    for (u32 u = 0; u < g_uMaxTextFonts; ++u)
        if (m_auControlsHad[u]) std::fill_n(m_pControls[u], std::exchange(m_auControlsHad[u], 0), nullptr);
}

void CDrawText_Base::m_fnBuildFontLists() {
    m_uFontCount = 0;
    m_fnBuildFontListsIfAny();
}

void CDrawText_Base::m_fnBuildFontListsIfAny() {
    if (!g_pOSDManager) return;
    m_uFontCount = 0;
    // By index: a query for the list of a key may enter keys.
    const KeyList& fonts = g_pOSDManager->m_fnGetLayer(g_uLayerFont);
    for (std::size_t i = 0; i < fonts.size(); ++i)
        AddFont(static_cast<CFontUniCode*>(const_cast<void*>(fonts[i])));
}

/// A font without controls that may go leaves its place to the next one.
void CDrawText_Base::AddFont(CFontUniCode* pFont) {
    if (!pFont || !m_pControls || m_uFontCount >= g_uMaxTextFonts) return;
    m_pFonts[m_uFontCount] = pFont;
    u32 uCount = 0;
    if (const ControlList* pList = g_pOSDManager->m_fnGetDrawList(pFont))
        for (CControl* pControl : *pList)
            if (pControl && uCount < g_uMaxFontControls) m_pControls[m_uFontCount][uCount++] = pControl;
    m_auControlsHad[m_uFontCount] = std::max(m_auControlsHad[m_uFontCount], uCount);
    if (uCount == 0 && !g_fnIsFontToStay(pFont)) return;
    m_uControlCounts[m_uFontCount++] = uCount;
}

void CDrawText_Base::m_fnDrawFont(CFontUniCode* pFont) {
    if (!pFont || m_uFontIndex >= g_uMaxTextFonts) return;
    pFont->m_fnBindTexture(m_uTextureUnit);
    m_fnOnTextureBound(nullptr);
    m_uControlIndex = 0;
    for (u32 i = 0; i < m_uControlCounts[m_uFontIndex]; ++i) {
        m_pControls[m_uFontIndex][i]->m_fnRender(this);
        ++m_uControlIndex;
    }
}

void CDrawText_Base::Walk() {
    // KEEP(profiles): the lists are taken once. What is attached or detached later neither shows nor vanishes
    // until there is another batcher.
    if (!m_pFonts[0]) m_fnBuildFontLists();
    m_uFontIndex = 0;
    for (u32 i = 0; i < m_uFontCount; ++i) {
        m_fnDrawFont(m_pFonts[i]);
        ++m_uFontIndex;
    }
}

/// Adds what the controls of one of the manager's arrays take in a merged stream.
template <class Box> static void AddBytes(Box* const* ppBoxes, u32 uEntries, u32* puVertex, u32* puIndex) {
    for (u32 i = 0; ppBoxes && i < uEntries; ++i) {
        if (!ppBoxes[i]) continue;
        *puVertex += ppBoxes[i]->m_fnGetVertexBytes();
        *puIndex += ppBoxes[i]->m_fnGetIndexBytes();
    }
}

static void AllocateOnce(std::unique_ptr<u8[]>& pBytes, u32* puRoom, u32 uBytes) {
    if (pBytes) return;
    pBytes.reset(new (std::nothrow) u8[uBytes]());
    *puRoom = pBytes ? uBytes : 0;
}

void CDrawText_Base::m_fnAllocMergedBuffers() {
    m_uMergedVertexBytes = m_uMergedIndexBytes = 0;
    AddBytes(g_ppTextBox, g_uTextBoxEntries, &m_uMergedVertexBytes, &m_uMergedIndexBytes);
    // KEEP(profiles): of text boxes only, and counted as 16-bit indices, which no text control has.
    m_uMergedIndexCount = m_uMergedIndexBytes / sizeof(u16);
    AddBytes(g_ppNumBox, g_uNumBoxEntries, &m_uMergedVertexBytes, &m_uMergedIndexBytes);
    AllocateOnce(m_pMergedVertices, &m_uVertexRoom, m_uMergedVertexBytes);
    AllocateOnce(m_pMergedIndices, &m_uIndexRoom, m_uMergedIndexBytes);
}

/// 16-bit indices, each raised to where the control's vertices stand.
static void CopyIndices(u8* pTo, const u8* pFrom, u32 uBytes, u32 uBaseVertex) {
    for (u32 i = 0; i + sizeof(u16) <= uBytes; i += sizeof(u16)) {
        u16 uIndex;
        std::memcpy(&uIndex, pFrom + i, sizeof uIndex);
        uIndex = static_cast<u16>(uIndex + uBaseVertex);
        std::memcpy(pTo + i, &uIndex, sizeof uIndex);
    }
}

void CDrawText_Base::MergeControl(CControl* pControl, u32* puBaseVertex, u32* puBaseIndex) {
    const u32 uVertexBytes = pControl->m_fnGetVertexBytes(), uIndexBytes = pControl->m_fnGetIndexBytes();
    const u64 uVertexAt = static_cast<u64>(*puBaseVertex) * sizeof(stTextVertex);
    const u64 uIndexAt = static_cast<u64>(*puBaseIndex) * sizeof(u16);
    pControl->m_fnSetVertexBase(*puBaseVertex);
    pControl->m_fnSetIndexBase(*puBaseIndex);
    const void* pVertices = pControl->m_fnGetVertexData();
    const void* pIndices = pControl->m_fnGetIndexData();
    const bool bFits = uVertexAt + uVertexBytes <= m_uVertexRoom && uIndexAt + uIndexBytes <= m_uIndexRoom;
    if (bFits && pVertices && pIndices) {
        std::memcpy(m_pMergedVertices.get() + uVertexAt, pVertices, uVertexBytes);
        CopyIndices(m_pMergedIndices.get() + uIndexAt, static_cast<const u8*>(pIndices), uIndexBytes,
                    *puBaseVertex);
    }
    *puBaseVertex += uVertexBytes / sizeof(stTextVertex);
    *puBaseIndex += uIndexBytes / sizeof(u16);
}

void CDrawText_Base::m_fnMergeVertices() {
    if (!m_pMergedVertices || !m_pMergedIndices) return;
    u32 uBaseVertex = 0, uBaseIndex = 0;
    for (u32 uFont = 0; uFont < m_uFontCount; ++uFont)
        for (u32 i = 0; i < m_uControlCounts[uFont]; ++i)
            if (m_pControls[uFont][i]->m_fnGetType() == g_uTypeTextBox)
                MergeControl(m_pControls[uFont][i], &uBaseVertex, &uBaseIndex);
}

void CDrawText_Base::m_fnFreeMergedBuffers() {
    m_pMergedVertices.reset();
    m_pMergedIndices.reset();
    m_uVertexRoom = m_uIndexRoom = 0;
}
