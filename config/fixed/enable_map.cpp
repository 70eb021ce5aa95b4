#include "config/fixed/enable_map.h"

#include "controls/control_ids.h"

#include <algorithm>
#include <map>

namespace {

/// By kind: from the id of an item's instance to its switch.
std::map<u64, bool> g_amapItemEnable[g_uEnableKinds];

} // namespace

void g_fnSetItemEnable(eEnableKind uKind, u32 uInstance, u32 uBID, bool bEnable) {
    if (uKind >= g_uEnableKinds || uInstance >= g_uInstances) return;
    g_amapItemEnable[uKind][g_fnMakeLB_ID(uInstance, uBID)] = bEnable;
}

bool g_fnIsItemEnabled(eEnableKind uKind, u32 uInstance, u32 uBID) {
    if (uKind >= g_uEnableKinds) return false;
    const auto& map = g_amapItemEnable[uKind];
    const auto it = map.find(g_fnMakeLB_ID(uInstance, uBID));
    return it != map.end() && it->second;
}

bool g_fnIsItemEnabledAnywhere(eEnableKind uKind, u32 uBID) {
    for (u32 u = 0; u < g_uInstances; ++u)
        if (g_fnIsItemEnabled(uKind, u, uBID)) return true;
    return false;
}

void g_fnClearItemEnable() {
    for (auto& map : g_amapItemEnable) map.clear();
}
