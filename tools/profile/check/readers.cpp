#include "tools/profile/check/readers.h"

#include "config/items/item_graph.h"
#include "config/items/item_image.h"
#include "config/items/item_map.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_pie.h"
#include "config/items/item_text.h"
#include "tools/profile/log_catcher.h"

#include <cstring>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <tinyxml2.h>

namespace companion {
namespace {

struct stReader {
    const char* szElement;
    bool (*fnRead)(const tinyxml2::XMLElement* pInfo);
};
constexpr stReader g_aReaders[] = {
    {"TextBox", [](const tinyxml2::XMLElement* p) { return g_fnReadTextBoxItems(p, false); }},
    {"Memo", [](const tinyxml2::XMLElement* p) { return g_fnReadTextBoxItems(p, true); }},
    {"NumBox", g_fnReadNumBoxItems},
    {"Panel", g_fnReadPanelItems},
    {"Image", g_fnReadImgBoxItems},
    {"LineGraph", g_fnReadLineGraphItems},
    {"PieChart", g_fnReadPieChartItems},
};

/// What a report means for the author. An empty text: the value's own check says it better.
struct stMeaning {
    const char* szField; ///< as reported behind the item's name
    const char* szAttribute;
    Severity eSeverity;
    bool bFatal; ///< takes all later items of the kind along
    const char* szText;
};
constexpr stMeaning g_aMeanings[] = {
    {"m_wzFontName is invalid", "FontName", Severity::Error, true,
     "FontName is missing: the item is refused"},
    {"m_szDataFullName is invalid", "DataFullName", Severity::Error, true,
     "DataFullName is missing: the item is refused"},
    {"m_wzImageFilename is invalid", "ImageFileName", Severity::Error, true,
     "ImageFileName is empty: the item is refused"},
    {"m_uContentSizeW", "ContentSizeW", Severity::Error, false, "ContentSizeW is 0: nothing can be seen"},
    {"m_uContentSizeH", "ContentSizeH", Severity::Error, false, "ContentSizeH is 0: nothing can be seen"},
    {"m_uDataNum", "DataNum", Severity::Error, false, "DataNum is 0 and counts as 2, a single line"},
    {"m_fDataWidth", "DataWidth", Severity::Error, false,
     "DataWidth is not above 0: there are two columns only"},
    {"m_wzText", "Text", Severity::Warning, false, nullptr}, // depends on more than the report says
    {"m_uPanelScatter", "PanelScattering", Severity::Error, false, ""},
    {"LineType", "LineType", Severity::Error, false, ""},
    {"ChartType", "ChartType", Severity::Error, false, ""},
    {"m_uSlotNum", "SlotNum", Severity::Error, false, "SlotNum is 0 and counts as 1"},
    {"m_uShapeSegNum", "ShapeSegNum", Severity::Error, false, "ShapeSegNum is 0 and counts as 3"},
    {"m_fSlotFillRatio", "SlotFillRatio", Severity::Error, false, ""},
    {"m_fChartFillRatio", "ChartFillRatio", Severity::Error, false, ""},
    {"m_fStartDeg", "StartDegree", Severity::Error, false, ""},
    {"m_fEndDeg", "EndDegree", Severity::Error, false, ""},
};

const stMeaning* MeaningOf(std::string_view szField) {
    for (const stMeaning& st : g_aMeanings)
        if (szField == st.szField) return &st;
    return nullptr;
}

/// The items of one kind while its reader's reports are sorted out.
struct stKindRun {
    std::span<const ProfileItem> items;
    Findings& findings;
    std::map<std::string, const ProfileItem*> byName; ///< first item of a name that the reader judged
    std::set<const ProfileItem*> refused;
};

/// Items that were taken so far, by name.
using Taken = std::map<std::string, const ProfileItem*>;

void ReportEmptyText(const ProfileItem& item, Findings& findings) {
    const int iLine = item.pElement->GetLineNum();
    if (!std::strcmp(item.pKind->szName, "Memo"))
        return findings.Error(iLine, ItemTitle(item) + ": FileName is missing: there is nothing to show");
    if (AttributeText(item, "StringFullName").empty())
        findings.Warning(iLine, ItemTitle(item) + ": Text is empty: there is nothing to show");
}

void ReportField(stKindRun& run, const ProfileItem& item, std::string_view szField) {
    const stMeaning* pMeaning = MeaningOf(szField);
    if (!pMeaning)
        return run.findings.Warning(item.pElement->GetLineNum(),
                                    ItemTitle(item) + ": " + std::string(szField));
    if (pMeaning->bFatal) run.refused.insert(&item);
    if (!pMeaning->szText) return ReportEmptyText(item, run.findings);
    if (*pMeaning->szText)
        run.findings.Add(pMeaning->eSeverity, AttributeLine(*item.pElement, pMeaning->szAttribute),
                         ItemTitle(item) + ": " + pMeaning->szText);
}

/// "error ! item \"NAME\" FIELD" of an item of this kind. The text may have been cut.
bool ReportOfItem(stKindRun& run, std::string_view szLine) {
    constexpr std::string_view c_szStart = "error ! item \"";
    if (!szLine.starts_with(c_szStart)) return false;
    szLine.remove_prefix(c_szStart.size());
    const std::size_t uQuote = szLine.rfind('"');
    if (uQuote == std::string_view::npos || uQuote + 2 > szLine.size()) return false;
    const auto it = run.byName.find(std::string(szLine.substr(0, uQuote)));
    if (it == run.byName.end()) return false;
    ReportField(run, *it->second, szLine.substr(uQuote + 2));
    return true;
}

bool IsSaidElsewhere(std::string_view szLine) {
    return szLine.starts_with("error ! Invalid Item Name") || szLine.ends_with("already exists");
}

void ReportUnnamed(const ProfileItem& item, Findings& findings) {
    const int iLine = item.pElement->GetLineNum();
    const std::string strKind = item.pKind->szName;
    if (!item.pElement->Attribute("IsShow"))
        findings.Warning(iLine, ItemTitle(item) + " has no IsShow=\"1\" and so does not exist");
    else if (item.strName.empty() && AttributeNumber(item, "IsShow") != 0)
        findings.Error(iLine, strKind + " without a Name: the item is refused");
}

void ReportNameTaken(const ProfileItem& item, const ProfileItem& holder, Findings& findings) {
    findings.Error(AttributeLine(*item.pElement, "Name"),
                   ItemTitle(item) + ": the name is taken by the " + holder.pKind->szName + " in line " +
                       std::to_string(holder.pElement->GetLineNum()) + "; this item is refused");
}

/// Goes through a kind as its reader did. Items behind the first refused one are taken along.
void SettleKind(stKindRun& run, Taken& taken, std::vector<const ProfileItem*>& list) {
    const ProfileItem* pCulprit = nullptr;
    for (const ProfileItem& item : run.items) {
        if (!item.bShown) {
            ReportUnnamed(item, run.findings);
        } else if (const auto it = taken.find(item.strName); it != taken.end()) {
            ReportNameTaken(item, *it->second, run.findings);
        } else if (run.refused.contains(&item)) {
            if (!pCulprit) pCulprit = &item;
        } else if (pCulprit) {
            run.findings.Error(item.pElement->GetLineNum(),
                               ItemTitle(item) + " is dropped as well, since the " + item.pKind->szName +
                                   " in line " + std::to_string(pCulprit->pElement->GetLineNum()) +
                                   " is refused");
        } else {
            taken.emplace(item.strName, &item);
            list.push_back(&item);
        }
    }
}

void ReadKind(const stReader& reader, const tinyxml2::XMLElement& info, stKindRun& run, LogCatcher& log) {
    for (const ProfileItem& item : run.items)
        if (item.bShown && !g_fnIsItemNameTaken(item.strName.c_str()))
            run.byName.emplace(item.strName, &item);
    log.Take();
    reader.fnRead(&info);
    for (const std::string& strLine : log.Take())
        if (!ReportOfItem(run, strLine) && !IsSaidElsewhere(strLine)) run.findings.Note(0, strLine);
}

std::span<const ProfileItem> OfKind(const std::vector<ProfileItem>& items, std::string_view szElement) {
    std::size_t uBegin = 0;
    while (uBegin < items.size() && szElement != items[uBegin].pKind->szName) ++uBegin;
    std::size_t uEnd = uBegin;
    while (uEnd < items.size() && szElement == items[uEnd].pKind->szName) ++uEnd;
    return std::span(items).subspan(uBegin, uEnd - uBegin);
}

} // namespace

std::vector<const ProfileItem*> CheckByReaders(const tinyxml2::XMLElement& info,
                                               const std::vector<ProfileItem>& items, Findings& findings) {
    g_fnClearItems();
    LogCatcher log;
    Taken taken;
    std::vector<const ProfileItem*> list;
    for (const stReader& reader : g_aReaders) {
        stKindRun run{OfKind(items, reader.szElement), findings, {}, {}};
        ReadKind(reader, info, run, log);
        SettleKind(run, taken, list);
    }
    return list;
}

} // namespace companion
