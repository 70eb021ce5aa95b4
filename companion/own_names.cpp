#include "companion/own_names.h"

#include "shared/own_names.h"

#include <algorithm>
#include <iterator>

namespace companion {
namespace {

/// These figures are worked out for the built-in layouts only.
constexpr const char* g_szZero = "stays 0 in a custom layout";

constexpr OwnName Name(eOwnName eName, const char* szRemark = "") { return {g_aszOwnNames[eName], szRemark}; }

constexpr OwnName g_aNames[] = {
    Name(OWN_FPS),
    Name(OWN_FPS_AVG, g_szZero),
    Name(OWN_FPS_MAX),
    Name(OWN_FPS_MIN, "keeps its first sample, taken before a second was over"),
    Name(OWN_FPS_50P, g_szZero),
    Name(OWN_FPS_1P, g_szZero),
    Name(OWN_FPS_01P, g_szZero),
    Name(OWN_FRAME_TIME),
    Name(OWN_FRAME_CNT, "stays 0"),
    Name(OWN_PID),
    Name(OWN_TID),
};
static_assert(std::size(g_aNames) == OWN_NAMES);

} // namespace

std::span<const OwnName> ProgramNames() { return g_aNames; }

const OwnName* FindProgramName(std::string_view szName) {
    const auto it = std::find_if(std::begin(g_aNames), std::end(g_aNames),
                                 [&](const OwnName& st) { return szName == st.szName; });
    return it != std::end(g_aNames) ? it : nullptr;
}

} // namespace companion
