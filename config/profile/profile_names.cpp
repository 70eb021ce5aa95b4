#include "config/profile/profile_names.h"

#include "base/layout_style.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/settings/setting_binding.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"
#include "shared/monitor_data.h"
#include "shared/own_names.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include <tinyxml2.h>

using tinyxml2::XMLElement;

namespace {

using Names = std::set<std::string>;

void AddIndexed(Names& names, const char* szBase, i32 iIndex) {
    char szName[g_uSettingText + 16];
    if (g_fnGetDataFullName(iIndex, szBase, szName)) names.insert(szName);
}

void AddCards(Names& names, const stCardBlock& st) {
    for (u32 uPosition = 0; uPosition < st.uDisplayCount; ++uPosition)
        for (u32 uRow = 0; uRow < g_uCardRows; ++uRow)
            if (g_fnIsCardRowVisible(st, uPosition, uRow))
                AddIndexed(names, g_aCardRows[uRow].szDataName, st.aiCardOfDisplay[uPosition]);
}

void AddCpus(Names& names, const stCpuBlock& st) {
    for (u32 uCpu = 0; uCpu < st.uDisplayCount; ++uCpu)
        for (u32 uRow = 0; uRow < g_uCpuRows; ++uRow)
            if (g_fnIsCpuRowVisible(st, uCpu, uRow))
                AddIndexed(names, g_aCpuRows[uRow].szDataName, static_cast<i32>(uCpu));
}

/// The styles with fixed tables. Records of its own, so that nothing of a layout changes.
bool CollectRows(const XMLElement* pInfo, Names& names) {
    stCardBlock stCards{};
    stCpuBlock stCpu{};
    std::vector<stSensorRow> listSensors;
    g_fnProbeWowKeys();
    g_fnReadSensorDefinitions();
    if (!g_fnReadCardOrder(pInfo, g_fnReadCardNum(), stCards, nullptr) ||
        !g_fnReadCardFlags(pInfo, stCards, nullptr) || !g_fnReadCpuBlock(pInfo, stCpu, nullptr))
        return false;
    g_fnReadSensorBlock(pInfo, listSensors);
    AddCards(names, stCards);
    AddCpus(names, stCpu);
    for (const stSensorRow& row : listSensors)
        AddIndexed(names, row.szBaseName.c_str(), static_cast<i32>(row.uGroup));
    return true;
}

/// What the overlay measures by itself; its list stands also where no layout was ever built.
bool IsOwnData(std::string_view szName) {
    return std::any_of(std::begin(g_aszOwnNames), std::end(g_aszOwnNames),
                       [szName](const char* szOwn) { return szName == szOwn; });
}

void AddItem(const XMLElement& item, Names& names) {
    u32 uIsShow = 0;
    char szName[g_uSettingText];
    const stSettingRow aRows[] = {
        {"IsShow", "0", SETTING_DECIMAL, TARGET_U32, &uIsShow},
        {"DataFullName", "", SETTING_TEXT, TARGET_TEXT, szName, std::size(szName)},
    };
    g_fnReadXmlSettings(&item, aRows);
    if (uIsShow != 0 && *szName && !IsOwnData(szName)) names.insert(szName);
}

void CollectItems(const XMLElement* pInfo, Names& names) {
    for (const char* szElement : {"NumBox", "LineGraph"}) {
        const XMLElement* p = pInfo ? pInfo->FirstChildElement(szElement) : nullptr;
        for (; p; p = p->NextSiblingElement(szElement)) AddItem(*p, names);
    }
}

} // namespace

bool g_fnCollectDataNames(const XMLElement& root, Names& setNames) {
    const u32 uStyle = g_fnLayoutStyleOf(root);
    // KEEP(profiles): a load takes any other number for Classic.
    if (uStyle > STYLE_CUSTOM) return false;
    const XMLElement* const pLayout = root.FirstChildElement(g_fnLayoutElementName(uStyle));
    const XMLElement* const pSettings = pLayout ? pLayout->FirstChildElement("Settings") : nullptr;
    if (!pSettings) return false;
    const XMLElement* const pInfo = pSettings->FirstChildElement("Info");
    Names found;
    if (uStyle == STYLE_CUSTOM)
        CollectItems(pInfo, found);
    else if (!CollectRows(pInfo, found))
        return false;
    setNames.merge(found);
    return true;
}

i32 g_fnGetDataFullNames(const char16_t* wzProfile, Names* psetNames) {
    if (!wzProfile || !psetNames) return 0;
    char16_t wzPath[g_uDataPathCapacity];
    tinyxml2::XMLDocument document;
    if (!g_fnResolveProfileDocument(wzProfile, wzPath) || !g_fnOpenProfileDocument(wzPath, document, nullptr))
        return 0;
    return g_fnCollectDataNames(*document.FirstChildElement("OSD"), *psetNames) ? 1 : 0;
}
