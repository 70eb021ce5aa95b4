#include "config/make/profile_fonts.h"

#include "batch/draw_text.h"
#include "config/items/item_map.h"
#include "config/items/item_report.h"
#include "config/make/character_sets.h"
#include "controls/osd_manager.h"
#include "draw/creation_table.h"
#include "draw/data_path.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace {

using Font = std::unique_ptr<CFontUniCode>;

Font NewFont() {
    return Font(g_stCreationTable.m_fnCreateFont ? g_stCreationTable.m_fnCreateFont() : nullptr);
}

/// A grid of uLayout by uLayout cells, drawn.
bool SetUp(CFontUniCode& font, const stFontRecord& st, u32 uLayout, u32 uWidth, u32 uHeight) {
    font.m_fnSetLayout(uLayout, uLayout, 0);
    font.m_fnSetTexSize(uWidth, uHeight);
    font.m_fnSetFontName(st.m_wzFontName);
    font.m_fnSetFontWeight(st.m_iFontWeight);
    return font.m_fnInitialize(false);
}

bool SetUp(CFontUniCode& font, const stFontRecord& st) {
    return SetUp(font, st, st.m_uFontLayoutX, st.m_uFontTexW, st.m_uFontTexH);
}

bool LoadFixed(CFontUniCode& font, u32 uFontId, const stFontRecord& st, const stFontFilePlace& stPlace,
               const u32* pNeeded) {
    char16_t wzPath[g_uDataPathCapacity];
    return g_fnFontFilePath(wzPath, stPlace, uFontId) &&
           g_fnLoadFontFile(&font, wzPath, st.m_wzFontName, pNeeded);
}

bool LoadDynamic(CFontUniCode& font, const stFontRecord& st, std::span<const stFontFilePlace> places) {
    return std::any_of(places.begin(), places.end(), [&](const stFontFilePlace& stPlace) {
        char16_t wzPath[g_uDataPathCapacity];
        return g_fnFontFilePath(wzPath, stPlace, st.m_wzFontName) &&
               g_fnLoadFontFile(&font, wzPath, st.m_wzFontName);
    });
}

bool IsFixedFont(const stFontRecord& st) {
    return st.m_wzFontName[0] != 0 && st.m_uFontTexW != 0 && st.m_uFontLayoutX != 0 && !st.m_bDynamic;
}

std::set<u32>& GivenIds() {
    static std::set<u32> ids;
    return ids;
}

stFontRecord DynamicRecord(std::u16string_view face) {
    stFontRecord st;
    face.copy(st.m_wzFontName, std::size(st.m_wzFontName) - 1);
    st.m_uFontTexW = st.m_uFontTexH = 4096;
    st.m_uFontLayoutX = 32;
    st.m_bDynamic = true;
    return st;
}

bool FindId(const std::vector<stDynamicFont>& fonts, const std::u16string& wzFace, u32* puFontId) {
    const auto it = std::find_if(fonts.begin(), fonts.end(),
                                 [&](const stDynamicFont& st) { return wzFace == st.stRecord.m_wzFontName; });
    if (it == fonts.end()) return g_fnFontIdByName(wzFace.c_str(), puFontId);
    *puFontId = it->uId;
    return true;
}

void EnterFace(std::vector<stDynamicFont>& fonts, const CItemProperty_Base& item) {
    std::u16string wzFace;
    u32 uFontId = 0;
    if (!item.m_fnQueryString("TEXT_FONT", wzFace) || wzFace.empty()) return;
    if (FindId(fonts, wzFace, &uFontId) || !g_fnGiveFontId(&uFontId)) return;
    fonts.push_back({uFontId, DynamicRecord(wzFace)});
    g_fnInsertQueryTextByFontID(uFontId, g_wzPrintableSet);
}

void CollectText(const std::vector<stDynamicFont>& fonts, const CItemProperty_Base& item) {
    std::u16string wzFace, wzText;
    u32 uFontId = 0;
    if (!g_fnItemFontText(item, true, wzFace, wzText) || !FindId(fonts, wzFace, &uFontId)) return;
    if (!g_fnInsertQueryTextByFontID(uFontId, std::move(wzText)))
        g_fnReportError("g_fnInsertQueryTextByFontID() fail");
}

/// KEEP(profiles): at a grid's worth of codes already, blanks and all, though that many would still fit.
void Grow(stDynamicFont& st) {
    std::set<u32> codes;
    g_fnQueryTextByFontID(st.uId, &codes);
    for (u64 uLayout = 32; uLayout * uLayout <= codes.size(); uLayout *= 2) {
        st.stRecord.m_uFontTexW *= 2;
        st.stRecord.m_uFontTexH *= 2;
        st.stRecord.m_uFontLayoutX *= 2;
    }
}

Font MakeDynamic(const stDynamicFont& st, std::span<const stFontFilePlace> places) {
    Font pFont = NewFont();
    // KEEP(profiles): a font from a file stays as it is; what its text lacks comes in when it is first drawn.
    if (!pFont || LoadDynamic(*pFont, st.stRecord, places)) return pFont;
    if (!SetUp(*pFont, st.stRecord)) return nullptr;
    std::set<u32> codes;
    g_fnQueryTextByFontID(st.uId, &codes);
    g_fnFontAddSet(pFont.get(), codes);
    return pFont;
}

} // namespace

bool g_fnMakeFixedFonts(std::span<const stFontRecord> records, const stFontFilePlace& stPlace,
                        FontIdsByName& ids) {
    const u32 uRecords = static_cast<u32>(std::min<std::size_t>(records.size(), g_uFixedFonts));
    if (!g_ppFont) return false;
    for (u32 u = 0; u < uRecords; ++u) {
        if (!IsFixedFont(records[u]) || g_ppFont[u]) continue;
        Font pFont = NewFont();
        if (!pFont) return false;
        if (!LoadFixed(*pFont, u, records[u], stPlace, nullptr) && !SetUp(*pFont, records[u])) return false;
        g_ppFont[u] = pFont.release();
        ids[records[u].m_wzFontName] = u;
    }
    for (u32 u = 0; u < g_uFixedFonts; ++u)
        if (g_ppFont[u]) g_fnFontAddText(g_ppFont[u], g_wzPrintableSet);
    return true;
}

u32 g_fnTextFontLayout(u32 uCodes) {
    u32 uLayout = 2;
    while (static_cast<u64>(uLayout) * uLayout <= uCodes) uLayout *= 2;
    return uLayout;
}

bool g_fnMakeTextFont(u32 uFontId, const stFontRecord& stRecord, const char16_t* wzText,
                      const stFontFilePlace& stPlace) {
    constexpr u32 uSideMost = 0x8000; // of any atlas; keeps the products below in range
    if (!g_ppFont || uFontId >= g_uFontEntries || stRecord.m_uFontLayoutX == 0) return false;
    std::u32string text;
    std::set<u32> codes;
    g_fnToCodes(wzText, text);
    std::copy_if(text.begin(), text.end(), std::inserter(codes, codes.end()),
                 [](u32 uCode) { return !g_fnIsBlankCode(uCode); });
    const u32 uCodes = static_cast<u32>(codes.size()), uLayout = g_fnTextFontLayout(uCodes);
    const u64 uWidth = static_cast<u64>(stRecord.m_uFontTexW / stRecord.m_uFontLayoutX) * uLayout;
    const u64 uHeight = static_cast<u64>(stRecord.m_uFontTexH / stRecord.m_uFontLayoutX) * uLayout;
    delete g_ppFont[uFontId];
    g_ppFont[uFontId] = nullptr;
    Font pFont = NewFont();
    if (!pFont || uWidth > uSideMost || uHeight > uSideMost) return false;
    if (!LoadFixed(*pFont, uFontId, stRecord, stPlace, &uCodes) &&
        !SetUp(*pFont, stRecord, uLayout, static_cast<u32>(uWidth), static_cast<u32>(uHeight)))
        return false;
    g_fnFontAddSet(pFont.get(), codes);
    g_ppFont[uFontId] = pFont.release();
    return true;
}

bool g_fnGiveFontId(u32* puFontId) {
    for (u32 u = 0; g_ppFont && u < g_uFontEntries; ++u) {
        if (g_ppFont[u] || !GivenIds().insert(u).second) continue;
        *puFontId = u;
        return true;
    }
    return false;
}

void g_fnCollectDynamicFonts(std::vector<stDynamicFont>& fonts) {
    for (const auto& [szName, pItem] : g_mapItemByName) EnterFace(fonts, *pItem);
    for (const auto& [szName, pItem] : g_mapItemByName) CollectText(fonts, *pItem);
    g_fnFixFontCharSet();
    for (stDynamicFont& st : fonts) Grow(st);
}

bool g_fnMakeDynamicFonts(std::span<const stDynamicFont> fonts, std::span<const stFontFilePlace> places) {
    for (const stDynamicFont& st : fonts) {
        Font pFont = g_ppFont && st.uId < g_uFontEntries ? MakeDynamic(st, places) : nullptr;
        if (!pFont) {
            g_fnClearFontsToStay();
            return false;
        }
        delete g_ppFont[st.uId];
        g_ppFont[st.uId] = pFont.release();
        g_fnSetFontToStay(g_ppFont[st.uId]);
    }
    return true;
}

void g_fnEndFontAssembly() {
    g_mapQueryTextByFontID.clear();
    GivenIds().clear();
}
