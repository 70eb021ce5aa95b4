#include "config/make/character_sets.h"

#include "base/log.h"
#include "config/items/item_report.h"
#include "config/items/item_text.h"
#include "config/items/kinds.h"
#include "controls/osd_manager.h"
#include "controls/text_file.h"
#include "font/font_unicode.h"

#include <algorithm>

const char16_t* const g_wzPrintableSet =
    u"!\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~";
const char16_t* const g_wzNumberSet = u"0123456789.-% ";
const char16_t* const g_wzResolutionSet = u"0123456789:x";

std::map<u32, std::set<u32>> g_mapQueryTextByFontID;

bool g_fnInsertQueryTextByFontID(u32 uFontId, std::u16string wzText) {
    std::u32string text;
    if (!g_fnToCodes(wzText.c_str(), text)) return false;
    // KEEP(profiles): blanks too, which fonts give no cells.
    g_mapQueryTextByFontID[uFontId].insert(text.begin(), text.end());
    return true;
}

void g_fnQueryTextByFontID(u32 uFontId, std::set<u32>* pOut) {
    const auto it = g_mapQueryTextByFontID.find(uFontId);
    *pOut = it == g_mapQueryTextByFontID.end() ? std::set<u32>() : it->second;
}

bool g_fnFontIdByName(const char16_t* wzName, u32* puFontId) {
    std::u16string wzFace;
    for (u32 u = 0; g_ppFont && u < g_uFontEntries; ++u) {
        if (!g_ppFont[u]) continue;
        g_ppFont[u]->m_fnGetFontName(&wzFace);
        if (wzFace != wzName) continue;
        *puFontId = u;
        return true;
    }
    return false;
}

static bool LoadItemText(const std::u16string& wzName, bool bReport, std::u16string& wzText) {
    char16_t wzPath[g_uProfilePathCapacity];
    if (!g_fnCheckMemoFile(wzName.c_str(), wzPath)) {
        if (bReport) g_fnReportError("g_fnLoadTextFromFile() load file fail");
        return false;
    }
    const std::unique_ptr<char16_t[]> pText = g_fnLoadTextFromFile(wzPath);
    if (pText)
        wzText = pText.get();
    else if (bReport)
        g_fnReportError("g_fnLoadTextFromFile() load text fail");
    return pText != nullptr;
}

bool g_fnItemFontText(const CItemProperty_Base& item, bool bReport, std::u16string& wzFace,
                      std::u16string& wzText) {
    if (!item.m_fnQueryString("TEXT_FONT", wzFace) || wzFace.empty()) return false;
    if (item.m_uItemType == ITEM_NUMBOX || item.m_uItemType == ITEM_MIXED) {
        wzText = item.m_uItemType == ITEM_NUMBOX ? g_wzNumberSet : g_wzResolutionSet;
        return true;
    }
    const CItemProperty_TextBox* const pTextBox = g_fnAsTextBox(&item);
    if (!pTextBox || !item.m_fnQueryString("TEXT_STRING", wzText)) return false;
    const std::u16string wzName = wzText;
    return pTextBox->m_bMemoFlagA == 0 || LoadItemText(wzName, bReport, wzText);
}

stFontGrid g_fnLargerGrid(u32 uCodesHeld) {
    constexpr u32 uSmallest = 1024;
    stFontGrid st = {32, 4096};
    if (uCodesHeld < uSmallest) return st;
    // KEEP(profiles): by the codes held, and two doublings of the grid to one of the texture, so that cells
    // shrink.
    do {
        st.uLayout *= 4;
        st.uTexture *= 2;
    } while (static_cast<u64>(st.uLayout) * st.uLayout <= uCodesHeld);
    return st;
}

namespace {

using CharSets = std::map<std::u16string, std::set<u32>>;

/// KEEP(profiles): blanks too. A face whose texts are no UTF-16 keeps an empty set.
void InsertCodes(std::set<u32>& codes, const std::u16string& wzText) {
    std::u32string text;
    if (g_fnToCodes(wzText.c_str(), text)) codes.insert(text.begin(), text.end());
}

CharSets CollectCharSets() {
    CharSets mapFontName2CharSet;
    for (const auto& [szName, pItem] : g_mapItemByName) {
        std::u16string wzFace, wzText;
        u32 uFontId = 0;
        if (g_fnItemFontText(*pItem, false, wzFace, wzText) && g_fnFontIdByName(wzFace.c_str(), &uFontId))
            InsertCodes(mapFontName2CharSet[wzFace], wzText);
    }
    return mapFontName2CharSet;
}

/// KEEP(profiles): the blanks too, unless some text has one; their records keep their data.
void RemoveOthers(CFontUniCode& font, u32 uFontId, const std::set<u32>& needed) {
    const std::map<u32, u32> held = font.m_mapCharIndex;
    for (const auto& [uCode, uIndex] : held) {
        if (needed.contains(uCode)) continue;
        g_fnFontRemoveChar(&font, uCode);
        g_fnLog("remove char %d from font#%d\n", static_cast<i32>(uCode), static_cast<i32>(uFontId));
    }
}

/// Everything goes, buffers and rasteriser fonts too, since all of it has the size of the former grid.
bool StartOver(CFontUniCode& font, u32 uFontId) {
    const stFontGrid st = g_fnLargerGrid(static_cast<u32>(font.m_mapCharIndex.size()));
    font.m_fnRelease();
    font.CFontUniCode::m_fnRelease();
    font.m_bDirty = false;
    font.m_fnSetLayout(st.uLayout, st.uLayout, 0);
    font.m_fnSetTexSize(st.uTexture, st.uTexture);
    g_fnLog("reinit font#%d %d\n", static_cast<i32>(uFontId), static_cast<i32>(st.uLayout));
    if (font.m_fnInitialize(false)) return true;
    g_fnReportError("pFont->m_fnInitialize() fail");
    return false;
}

void FixFont(CFontUniCode& font, u32 uFontId, const std::set<u32>& needed) {
    const auto isMissing = [&font](u32 uCode) { return !font.m_mapCharIndex.contains(uCode); };
    const u64 uMissing = static_cast<u64>(std::count_if(needed.begin(), needed.end(), isMissing));
    if (font.m_mapCharIndex.size() + uMissing <= font.m_uNum_Characters) {
        g_fnFontAddSet(&font, needed);
        g_fnLog("case 0 - no need to modify font layout\n");
    } else if (needed.size() <= font.m_uNum_Characters) {
        g_fnLog("case 1 - need to remove unused char\n");
        RemoveOthers(font, uFontId, needed);
        g_fnFontAddSet(&font, needed);
    } else {
        g_fnLog("case 2 - need to reinit font\n");
        if (StartOver(font, uFontId)) g_fnFontAddSet(&font, needed);
    }
}

} // namespace

void g_fnFixFontCharSet() {
    g_fnLog("g_fnFixFontCharSet() start\n");
    const CharSets mapFontName2CharSet = CollectCharSets();
    g_fnLog("mapFontName2CharSet size: %d\n", static_cast<i32>(mapFontName2CharSet.size()));
    g_fnLog("g_fnFixFontCharSet() pass 0\n");
    for (const auto& [wzFace, needed] : mapFontName2CharSet) {
        u32 uFontId = 0;
        if (g_fnFontIdByName(wzFace.c_str(), &uFontId)) FixFont(*g_ppFont[uFontId], uFontId, needed);
    }
    g_fnLog("g_fnFixFontCharSet() end\n");
}
