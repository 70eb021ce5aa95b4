#include "config/fixed/style_records.h"

#include "config/fixed/enable_map.h"
#include "config/fixed/group_order.h"
#include "config/fixed/style_panels.h"
#include "config/fixed/template_fonts.h"
#include "config/profile/profile_panel_keys.h"
#include "config/settings/sensor_table.h"
#include "controls/text_file.h"

#include <map>
#include <memory>
#include <string>

namespace {

/// One instance of an item.
struct stOccurrence {
    stStyleItem item;
    stItemInstance instance;
};

bool IsCpu(std::string_view szWord) { return szWord.starts_with("CPU_"); }

/// The card, CPU or group that an instance shows.
u32 DataIndex(const stStyleItem& item, u32 uInstance) {
    if (IsCpu(item.szWord) || uInstance >= g_uDisplayMax) return uInstance;
    return static_cast<u32>(g_iCardOfDisplay[uInstance]);
}

bool IsOn(const stStyleItem& item, u32 uInstance, u32 uBID) {
    if (item.eKind == eItem::Text) return g_fnIsItemEnabled(ENABLE_TEXT, uInstance, uBID);
    if (item.eKind == eItem::Number) return g_fnIsItemEnabled(ENABLE_NUMBER, uInstance, uBID);
    return g_fnIsItemEnabled(ENABLE_PANEL, uInstance, uBID);
}

using Occurrences = std::vector<stOccurrence>;

void AddInstances(Occurrences& list, const stStyleItem& item) {
    for (u32 u = 0; u < g_uInstances; ++u)
        if (IsOn(item, u, item.uBID)) list.push_back({item, {u, item.uBID, DataIndex(item, u)}});
}

void AddSensors(Occurrences& list, const stStyleItem& item) {
    for (const stSensorRow& st : g_stDisplay.listSensorRows)
        if (IsOn(item, st.uGroup, item.uBID + st.uOrdinal))
            list.push_back({item, {st.uGroup, item.uBID + st.uOrdinal, st.uGroup, item.uBID}});
}

/// Every instance of a kind's items that is on.
Occurrences Collect(const stStyleItems& style, eItem eKind) {
    Occurrences list;
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        if (item.eKind != eKind) return;
        if (item.szWord == std::string_view(g_szExtensionWord))
            AddSensors(list, item);
        else
            AddInstances(list, item);
    });
    return list;
}

/// Style of an item's template, or of the one that stands in for it.
template <class Pool> u32 StyleOf(const Pool& pool, const stItemInstance& st) {
    const auto* p = pool.m_fnFind(st.uBID);
    if (!p) p = pool.m_fnFind(st.uTemplateBID);
    return p ? p->uStyleID : g_uNoTemplate;
}

/// Only a style that a profile aligns has another anchor code than its template's.
template <class T> void Align(u32 uStyleID, T& st) {
    if (g_stLooks.mapTextAligns.contains(uStyleID)) st.iAnchorCode = g_fnTextAlignOf(uStyleID);
}

template <class T> void Place(const stClassicGrid* pGrid, const stStyleItem& item, u32 uStyleID, T& st) {
    if (pGrid)
        g_fnClassicColumn(*pGrid, item, st.iX);
    else
        Align(uStyleID, st);
}

// --- titles ------------------------------------------------------------------------------------------------

using Counts = std::map<u32, u32>;

/// How often each title is on.
Counts CountTitles(const Occurrences& list) {
    Counts counts;
    for (const auto& [item, instance] : list)
        if (item.szRole == std::string_view("TITLE")) ++counts[instance.uBID];
    return counts;
}

/// Lines of further cards and CPUs are numbered even where there is but one.
bool IsFurther(std::string_view szWord) { return szWord == "GPU_SECOND" || szWord == "CPU_SECOND"; }

std::u16string Numbered(const char16_t* wzTitle, u32 uNumber) {
    std::u16string wzText(wzTitle);
    wzText += u" #";
    for (const char c : std::to_string(uNumber)) wzText += static_cast<char16_t>(c);
    return wzText;
}

// --- texts of the settings ---------------------------------------------------------------------------------

void TakeColors(const stTextColors& stColors, u32 uFontScale, stTextInit& st) {
    static_cast<stTextColors&>(st.stLook) = stColors;
    st.stLook.m_fTextSize = g_fnSettingsTextSize(static_cast<i32>(uFontScale));
}

void TakePlace(const stPartPlace& stPlace, stTextInit& st) {
    st.iAnchorCode = stPlace.iAnchor;
    st.iX = stPlace.iX;
    st.iY = stPlace.iY;
}

void TakeMemo(stTextInit& st) {
    const stMemoKeys& keys = g_stLooks.stMemo;
    TakeColors(keys.stColors, keys.uFontScale, st);
    TakePlace(keys.stPlace, st);
    st.bMemo = true;
    st.bAutoSize = false; // lines end at the frame
    st.iWidth = static_cast<i32>(keys.uFrameSizeW);
    st.iHeight = static_cast<i32>(st.stLook.m_fTextSize);
    st.wzText = keys.wzFilename;
}

void TakeCaption(const stCaptionKeys& keys, stTextInit& st) {
    TakeColors(keys.stColors, keys.uFontScale, st);
    TakePlace(keys.stPlace, st);
    st.wzText = keys.wzText;
}

/// Texts that bring all but their style along; false for an item of a row.
bool TakeSettings(std::string_view szWord, stTextInit& st) {
    if (szWord == "MEMO0")
        TakeMemo(st);
    else if (szWord == "WATERMARK")
        TakeCaption(g_stLooks.stWatermark, st);
    else if (szWord == "SYSTEMINFO")
        TakeCaption(g_stLooks.stSystemInfo, st);
    else
        return false;
    return true;
}

std::u16string MemoText() {
    char16_t wzPath[g_uProfilePathCapacity];
    if (!g_fnCheckMemoFile(g_stLooks.stMemo.wzFilename, wzPath)) return {};
    const std::unique_ptr<char16_t[]> pText = g_fnLoadTextFromFile(wzPath);
    return pText ? pText.get() : std::u16string();
}

} // namespace

stStyleTexts g_fnMakeStyleTexts(const stStyleItems& style, const stClassicGrid* pGrid) {
    stStyleTexts texts;
    const Occurrences list = Collect(style, eItem::Text);
    const Counts counts = CountTitles(list);
    for (const auto& [item, instance] : list) {
        const u32 uStyleID = StyleOf(g_stTemplates.poolTextBox, instance);
        stTextInit st;
        if (!g_fnMakeTextInit(instance, g_fnTextColorsOf(uStyleID), g_stLooks.bTextShadow, st)) continue;
        if (!TakeSettings(item.szWord, st)) Place(pGrid, item, uStyleID, st);
        const auto it = counts.find(instance.uBID);
        if (it != counts.end() && (it->second > 1 || IsFurther(item.szWord)))
            st.wzText = texts.ownTexts.emplace_back(Numbered(st.wzText, instance.uDataIndex)).c_str();
        texts.records.push_back(st);
    }
    return texts;
}

std::vector<stNumInit> g_fnMakeStyleNumbers(const stStyleItems& style, const stClassicGrid* pGrid) {
    std::vector<stNumInit> list;
    for (const auto& [item, instance] : Collect(style, eItem::Number)) {
        const u32 uStyleID = StyleOf(g_stTemplates.poolNumBox, instance);
        stNumInit st;
        if (!g_fnMakeNumInit(instance, g_fnTextColorsOf(uStyleID), g_stLooks.bTextShadow, st)) continue;
        Place(pGrid, item, uStyleID, st);
        list.push_back(st);
    }
    return list;
}

std::vector<stFlipInit> g_fnMakeStyleFlips(const stStyleItems& style) {
    std::vector<stFlipInit> list;
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        if (item.eKind != eItem::Flip) return;
        const bool bTitle = item.szRole == std::string_view("TITLE");
        const u32 uPanel =
            g_fnItemBID(style, eItem::Panel, item.szWord, bTitle ? "TITLE" : style.szValuePanel);
        for (u32 u = 0; u < g_uInstances; ++u) {
            if (!g_fnIsItemEnabled(ENABLE_PANEL, u, uPanel)) continue;
            const stItemInstance instance = {u, item.uBID, DataIndex(item, u)};
            const u32 uStyleID = StyleOf(g_stTemplates.poolFlipBox, instance);
            stFlipInit st;
            if (g_fnMakeFlipInit(instance, g_fnTextColorsOf(uStyleID), g_stLooks.bTextShadow, st))
                list.push_back(st);
        }
    });
    return list;
}

std::vector<stPanelInit> g_fnMakeStylePanels(const stStyleItems& style, const stClassicGrid* pGrid) {
    const stPanelLook look = g_fnLookOf(g_stLooks.stInfo.stPanel);
    std::vector<stPanelInit> list;
    for (const auto& [item, instance] : Collect(style, eItem::Panel)) {
        stPanelInit st;
        if (!g_fnMakePanelInit(instance, look, st)) continue;
        const stOrigin origin = pGrid ? g_fnClassicOrigin(*pGrid, item, instance.uInstance) : stOrigin{};
        st.iX += origin.iX;
        st.iY += origin.iY;
        list.push_back(st);
    }
    return list;
}

bool g_fnMakeSettingsFonts(const stStyleItems& style, const stFontFilePlace& stPlace) {
    const auto Make = [&](const char* szWord, const char16_t* wzText, const char16_t* wzFace) {
        const u32 uBID = g_fnItemBID(style, eItem::Text, szWord, "");
        return !g_fnIsItemEnabled(ENABLE_TEXT, 0, uBID) ||
               g_fnMakeTemplateTextFont(uBID, wzText, wzFace, stPlace);
    };
    const stProfileLooks& looks = g_stLooks;
    return Make("MEMO0", MemoText().c_str(), nullptr) &&
           Make("WATERMARK", looks.stWatermark.wzText, looks.stWatermark.wzFontName) &&
           Make("SYSTEMINFO", looks.stSystemInfo.wzText, looks.stSystemInfo.wzFontName);
}
