#include "companion/own_names.h"

#include <algorithm>
#include <iterator>

namespace companion {
namespace {

/// These figures are worked out for the built-in layouts only.
constexpr const char* g_szZero = "stays 0 in a custom layout";

constexpr OwnName g_aNames[] = {
    {"FPS", ""},
    {"FPS_AVG", g_szZero},
    {"FPS_MAX", ""},
    {"FPS_MIN", "keeps its first sample, taken before a second was over"},
    {"FPS_50P", g_szZero},
    {"FPS_1P", g_szZero},
    {"FPS_01P", g_szZero},
    {"FRAME_TIME", ""},
    {"FRAME_CNT", "stays 0"},
    {"PID", ""},
    {"TID", ""},
};

} // namespace

std::span<const OwnName> ProgramNames() { return g_aNames; }

const OwnName* FindProgramName(std::string_view szName) {
    const auto it = std::find_if(std::begin(g_aNames), std::end(g_aNames),
                                 [&](const OwnName& st) { return szName == st.szName; });
    return it != std::end(g_aNames) ? it : nullptr;
}

} // namespace companion
