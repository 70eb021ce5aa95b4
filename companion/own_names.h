#pragma once
// What each program measures itself: the names, and what a custom layout must know of some of them.
#include <span>
#include <string_view>

namespace companion {

struct OwnName {
    const char* szName;
    const char*
        szRemark; ///< what such a value does in a custom layout where it is not what its name says; or empty
};

std::span<const OwnName> ProgramNames();
/// Null for any other name.
const OwnName* FindProgramName(std::string_view szName);

} // namespace companion
