#include "config/fixed/name_maps.h"

#include "base/log.h"

stNameMaps g_stNameMaps;

std::string g_fnItemFullName(std::string_view szPrefix, std::string_view szEntry, std::string_view szKind) {
    std::string szName(szPrefix);
    szName.append("_").append(szEntry).append("_").append(szKind);
    return szName;
}

std::string g_fnItemFullName(std::string_view szPrefix, std::string_view szWord, std::string_view szRole,
                             std::string_view szKind) {
    std::string szEntry(szWord);
    szEntry.append("_").append(szRole);
    return g_fnItemFullName(szPrefix, szEntry, szKind);
}

void g_fnEnterNames(NameMap& map, std::string_view szPrefix, std::string_view szKind, const stNameRow* pRows,
                    std::size_t uCount) {
    for (std::size_t u = 0; u < uCount; ++u)
        map.insert_or_assign(g_fnItemFullName(szPrefix, pRows[u].szEntry, szKind), pRows[u].uBID);
}

u32 g_fnFindBID(const NameMap& map, std::string_view szName) {
    const auto it = map.find(szName);
    return it != map.end() ? it->second : g_uNoBID;
}

u32 g_fnGetTextBoxBIDByName(std::string_view szName) {
    const u32 uBID = g_fnFindBID(g_stNameMaps.mapTextBox, szName);
    if (uBID == g_uNoBID) g_fnLog("g_fnGetTextBoxBIDByName() fail\n");
    return uBID;
}

u32 g_fnGetNumBoxBIDByName(std::string_view szName) {
    const u32 uBID = g_fnFindBID(g_stNameMaps.mapNumBox, szName);
    if (uBID == g_uNoBID) g_fnLog("g_fnGetNumBoxBIDByName() fail\n");
    return uBID;
}

u32 g_fnGetPanelBIDByName(std::string_view szName) {
    const u32 uBID = g_fnFindBID(g_stNameMaps.mapPanel, szName);
    if (uBID == g_uNoBID) g_fnLog("g_fnGetPanelBIDByName() fail\n");
    return uBID;
}

void g_fnClearNameMaps() {
    for (NameMap* p : {&g_stNameMaps.mapTextBox, &g_stNameMaps.mapNumBox, &g_stNameMaps.mapFlipBox,
                       &g_stNameMaps.mapPanel})
        p->clear();
    g_stNameMaps.mapCaptionTitle.clear();
}
