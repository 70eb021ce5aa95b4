#include "tools/profile/check/data_names.h"

#include "companion/own_names.h"
#include "config/settings/sensor_table.h"

#include <algorithm>
#include <tinyxml2.h>

namespace companion {
namespace {

/// Items of several numbers.
constexpr const char* g_aszMixedNames[] = {"SYSTEM_TIME", "RESOLUTION"};
/// Base names that are offered for a misspelt one.
constexpr const char* g_aszBaseNames[] = {
    "CPU_CLK",  "CPU_TEMP",  "CPU_USAGE", "GPU_CLK",      "GPU_TEMP",      "GPU_USAGE",   "VRAM_CLK",
    "FAN1_RPM", "FAN1_DUTY", "FAN2_RPM",  "VRAM_USAGE_P", "VRAM_USAGE_MB", "GPU_VOLTAGE", "POWER_TARGET",
};
/// What the companion publishes of which the library knows decimals and divisor only by a sensor definition.
constexpr const char* g_aszCompanionNames[] = {
    "RAM_USAGE_MB", "RAM_USAGE_P",  "GPU_POWER",  "GPU_HOTSPOT_TEMP", "VRAM_TEMP",
    "SYS_FAN_RPM",  "SYS_FAN_DUTY", "SYS_TEMP",   "DRIVE_TEMP",       "AVG_FRAME",
    "P1_FRAME",     "P01_FRAME",    "STUTTER_CNT"};

template <class List> bool Holds(const List& list, const std::string& strName) {
    return std::any_of(std::begin(list), std::end(list), [&](const char* sz) { return strName == sz; });
}

bool IsNumber(std::string_view sz) {
    return !sz.empty() && sz.size() <= 3 &&
           std::all_of(sz.begin(), sz.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string BaseOf(const std::string& strName) { return std::string(g_fnDataBaseName(strName)); }

/// "GPU_CLK#0" has an index, "GPU_CLK" none.
bool HasIndex(const std::string& strName) {
    const std::size_t u = strName.rfind('#');
    return u != std::string::npos && IsNumber(std::string_view(strName).substr(u + 1));
}

} // namespace

DataNameCheck::DataNameCheck(const DataNames& names)
    : m_listPublished(names.published.begin(), names.published.end()),
      m_listSensors(names.sensors.begin(), names.sensors.end()) {}

bool DataNameCheck::IsKnown(const std::string& strName) const {
    if (FindProgramName(strName)) return true;
    const std::string strBase = BaseOf(strName);
    return HasIndex(strName) && (g_fnIsBuiltInDataName(strBase) || m_listSensors.contains(strBase));
}

std::string DataNameCheck::Nearest(const std::string& strName) const {
    const std::string strBase = BaseOf(strName);
    unsigned uBest = strBase.size() < 5 ? 2 : 3;
    std::string strFound;
    const auto Offer = [&](const std::string& strKnown, const char* szTail) {
        const unsigned u = strBase.size() <= 63 ? WordDistance(strBase, strKnown) : uBest;
        if (u < uBest) uBest = u, strFound = strKnown + szTail;
    };
    for (const OwnName& st : ProgramNames()) Offer(st.szName, "");
    for (const char* sz : g_aszMixedNames) Offer(sz, "");
    for (const char* sz : g_aszBaseNames) Offer(sz, "#0");
    for (const std::string& str : m_listSensors) Offer(str, "#0");
    return strFound;
}

void DataNameCheck::Check(const ProfileItem& item, Findings& findings) const {
    const std::string strName = AttributeText(item, "DataFullName");
    const int iLine = AttributeLine(*item.pElement, "DataFullName");
    const bool bNumber = std::string_view(item.pKind->szName) == "NumBox";
    if (Holds(g_aszMixedNames, strName)) {
        if (!bNumber)
            findings.Error(iLine, ItemTitle(item) + ": " + strName + " can only be shown by a NumBox");
        return;
    }
    if (const OwnName* const pOwn = FindProgramName(strName)) {
        if (*pOwn->szRemark) findings.Warning(iLine, ItemTitle(item) + ": " + strName + ' ' + pOwn->szRemark);
        return;
    }
    if (IsKnown(strName)) {
        if (!m_listPublished.empty() && !m_listPublished.contains(strName))
            findings.Note(iLine, ItemTitle(item) + ": \"" + strName + "\" is not published at the moment");
        return;
    }
    std::string strText = ItemTitle(item) + ": nobody publishes \"" + strName + '"';
    if (m_listPublished.contains(strName) || Holds(g_aszCompanionNames, BaseOf(strName)))
        strText = ItemTitle(item) + ": \"" + strName + "\" is published, but " +
                  "without a sensor definition in the settings the item stays empty";
    else if (const std::string strNear = Nearest(strName); !strNear.empty())
        strText += "; did you mean \"" + strNear + "\"?";
    findings.Warning(iLine, strText);
}

} // namespace companion
