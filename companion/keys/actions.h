#pragma once
// What keys do. Each action is a command too, 'keys do', for desktops that keep keys to themselves.
#include "companion/control_library.h"
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace companion::keys {

struct Action {
    const char* szName;
    const char* szSetting; ///< that has its keys
    const char* szHelp;
    Result (*fnDo)(const ControlLibrary& stLibrary, const std::string& strLibrary);
};

std::span<const Action> Actions();
/// Null if there is none of that name.
const Action* FindAction(std::string_view strName);
/// The command line that does the same.
std::string CommandOf(const Action& stAction);
/// "overlay|profile|...", for the help.
std::string ActionNames();

/// The profile behind the shown one that fnIsGood takes, from the first again behind the last; empty if no
/// other is good.
std::string NextProfile(const std::vector<std::string>& listNames, const std::string& strShown,
                        const std::function<bool(const std::string&)>& fnIsGood);

} // namespace companion::keys
