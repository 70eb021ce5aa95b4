#include "config/fixed/style_rows.h"

#include "config/profile/profile_cards.h"
#include "config/settings/sensor_table.h"
#include "config/settings/setting_binding.h"

#include <algorithm>
#include <map>
#include <string>

#include <tinyxml2.h>

namespace {

/// By eProgramRow.
constexpr const char* c_aProgramWords[ROW_COUNT] = {
    "FPS",     "FPS_AVG",   "FPS_MAX",    "FPS_MIN",     "FPS_50P",    "FPS_1P",
    "FPS_01P", "FRAME_CNT", "FRAME_TIME", "SYSTEM_TIME", "RESOLUTION", "POWERED_BY_ORVIN_DECK"};
constexpr stDisplayRow c_aDebugRows[] = {{"PID", nullptr, "DEBUG_PID", eRowOf::Debug, 0},
                                         {"TID", nullptr, "DEBUG_TID", eRowOf::Debug, 1},
                                         {"Anchor", nullptr, "DEBUG_ANCHOR", eRowOf::Debug, 2},
                                         {"AnchorX", nullptr, "DEBUG_ANCHOR_X", eRowOf::Debug, 3},
                                         {"AnchorY", nullptr, "DEBUG_ANCHOR_Y", eRowOf::Debug, 4}};

/// Other names of rows: one fan for all is the first one.
struct stOtherName {
    std::string_view szElement;
    const char* szOther;
};
constexpr stOtherName c_aOtherNames[] = {{"GPUTemperature", "GPUTemp"},
                                         {"CPUTemperature", "CPUTemp"},
                                         {"Fan1Duty", "FanDuty"},
                                         {"Fan1RPM", "FanRPM"}};

const char* OtherName(std::string_view szElement) {
    for (const stOtherName& st : c_aOtherNames)
        if (st.szElement == szElement) return st.szOther;
    return nullptr;
}

void AddRows(std::vector<stDisplayRow>& rows, std::span<const stInfoRow> from, eRowOf eOf) {
    for (u32 u = 0; u < from.size(); ++u)
        rows.push_back({from[u].szElement, OtherName(from[u].szElement), from[u].szDataName, eOf, u});
}

std::vector<stDisplayRow> MakeRows() {
    std::vector<stDisplayRow> rows;
    for (u32 u = 0; u < ROW_POWERED_BY; ++u)
        rows.push_back({g_fnProgramRowElement(u), nullptr, c_aProgramWords[u], eRowOf::Program, u});
    AddRows(rows, g_aCardRows, eRowOf::Card);
    AddRows(rows, g_aCpuRows, eRowOf::Cpu);
    rows.insert(rows.end(), std::begin(c_aDebugRows), std::end(c_aDebugRows));
    return rows;
}

bool IsRow(const stDisplayRow& row, std::string_view szElement) {
    return szElement == row.szElement || (row.szOtherElement && szElement == row.szOtherElement);
}

/// Index of each row as the profile says; a later child overrides an earlier one.
std::vector<u32> ReadIndexes(const tinyxml2::XMLElement* pInfo) {
    const std::vector<stDisplayRow>& rows = g_fnDisplayRows();
    std::vector<u32> indexes(rows.size(), g_uNoDisplayIndex);
    const tinyxml2::XMLElement* const pList = pInfo ? pInfo->FirstChildElement("DisplayIndex") : nullptr;
    for (auto* p = pList ? pList->FirstChildElement() : nullptr; p; p = p->NextSiblingElement())
        for (std::size_t u = 0; u < rows.size(); ++u)
            if (IsRow(rows[u], p->Name()))
                indexes[u] = std::min(g_fnReadXmlDecimal(p, "DisplayIndex", "99"), g_uNoDisplayIndex);
    return indexes;
}

using Ranks = std::map<std::string, i32, std::less<>>;

Ranks RanksByWord(const tinyxml2::XMLElement* pInfo) {
    const std::vector<stDisplayRow>& rows = g_fnDisplayRows();
    const std::vector<u32> indexes = ReadIndexes(pInfo);
    std::vector<u32> order(rows.size());
    for (u32 u = 0; u < order.size(); ++u) order[u] = u;
    std::stable_sort(order.begin(), order.end(), [&](u32 a, u32 b) { return indexes[a] < indexes[b]; });
    Ranks ranks;
    i32 iRank = 0;
    for (const u32 u : order) ranks[rows[u].szWord] = iRank++;
    for (const stSensorRow& st : g_stDisplay.listSensorRows)
        ranks.try_emplace(st.szBaseName, iRank + static_cast<i32>(st.uOrdinal));
    ranks[g_szExtensionWord] = iRank + static_cast<i32>(g_uExtensionRows);
    return ranks;
}

/// Ranks of the full names of all items that belong to a row.
Ranks RanksByName(const stStyleItems& style, const tinyxml2::XMLElement* pInfo) {
    const Ranks words = RanksByWord(pInfo);
    Ranks names;
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        if (const auto it = words.find(item.szWord); it != words.end())
            names[g_fnItemName(style, item)] = it->second;
    });
    for (const stSensorRow& st : g_stDisplay.listSensorRows)
        g_fnForEachSensorItem(style, st.szBaseName, st.uOrdinal, [&](const stStyleItem& item) {
            names.try_emplace(g_fnItemName(style, item), words.at(st.szBaseName));
        });
    return names;
}

} // namespace

const std::vector<stDisplayRow>& g_fnDisplayRows() {
    static const std::vector<stDisplayRow> s_rows = MakeRows();
    return s_rows;
}

const char* g_fnProgramRowWord(u32 uRow) { return c_aProgramWords[uRow]; }

GroupRank g_fnRankRows(const stStyleItems& style, const tinyxml2::XMLElement* pInfo) {
    return [names = RanksByName(style, pInfo)](const char* szItem) {
        const auto it = names.find(std::string_view(szItem));
        return it != names.end() ? it->second : g_iNoRank;
    };
}

void g_fnApplyDisplayOrder(const stStyleItems& style, const tinyxml2::XMLElement* pInfo,
                           tinyxml2::XMLElement* pGroup) {
    g_fnReorderGroup(pGroup, g_fnRankRows(style, pInfo));
}
