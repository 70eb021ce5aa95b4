#include "companion/keys/actions.h"
#include "companion/choices.h"
#include "companion/config.h"
#include "companion/keys/key_recording.h"
#include "companion/keys/pick_program.h"
#include "companion/options.h"
#include "companion/profile_commands.h"
#include "companion/profile_folder.h"
#include "companion/programs.h"
#include "companion/readiness.h"
#include "companion/shot.h"
#include "companion/utf.h"
#include "shared/commands.h"
#include <algorithm>
#include <cstdio>

namespace companion::keys {
namespace {

constexpr u32 c_uShotSeconds = 5; ///< for each step; a program that hangs keeps other keys waiting no longer

void Say(const std::string& strText) {
    std::printf("%s\n", Printable(strText).c_str());
    std::fflush(stdout);
}

Result DoOverlay(const ControlLibrary& stLibrary, const std::string&) {
    const bool bOn = Snapshot(stLibrary.pSegment)->bGlobalEnable == 0;
    stLibrary.fnSendCommand(COMMAND_ENABLE, 0, 0, bOn ? 1 : 0);
    const Result st = NeedHolder(stLibrary);
    if (st) Say(bOn ? "overlay on" : "overlay off");
    return st;
}

Result DoProfile(const ControlLibrary& stLibrary, const std::string&) {
    std::filesystem::path pathData;
    Result st = FindDataFolder("", pathData);
    if (st) st = NeedGoodShaders("");
    if (!st) return st;
    const std::string strNext =
        NextProfile(ProfileNames(pathData), ProfileFor(stLibrary, ""), [](const std::string& strName) {
            return static_cast<bool>(NeedGoodProfile(strName, "", true));
        });
    if (strNext.empty()) return Result::NotFound("there is no other profile that can be used");
    st = UseProfile(stLibrary, strNext);
    if (st) Say("profile " + strNext);
    return st;
}

Result DoShot(const ControlLibrary& stLibrary, const std::string&) {
    u32 uProcessId = 0;
    const Result st = PickProgram(stLibrary, uProcessId);
    if (!st) return st;
    Options stOptions;
    stOptions.strTarget = std::to_string(uProcessId);
    stOptions.uTimeout = c_uShotSeconds;
    return TakeShots(stLibrary, stOptions);
}

Result DoRecord(const ControlLibrary& stLibrary, const std::string& strLibrary) {
    return IsRecording() ? EndRecording() : BeginRecording(stLibrary, strLibrary);
}

/// The rate stays in the settings while the limit is off; one that cannot hold anything becomes the default.
Result DoLimit(const ControlLibrary& stLibrary, const std::string&) {
    const bool bOn = !SwitchedOn("limit");
    Result st;
    StoredValue stRate;
    const SettingRow& rate = *FindSetting("limit-rate");
    if (bOn && !ParseSetting(rate, SettingNow(rate.szName), stRate))
        st = SetSetting(rate.szName, rate.szMissing);
    if (st) st = SetSetting("limit", bOn ? "on" : "off");
    if (!st) return st;
    ReloadAll(stLibrary);
    Say(bOn ? "limit on: " + SettingNow(rate.szName) + " frames a second" : "limit off");
    return {};
}

constexpr Action c_astActions[] = {
    {"overlay", "key-overlay", "switch the overlay on or off", DoOverlay},
    {"profile", "key-profile", "show the next profile that can be used", DoProfile},
    {"shot", "key-shot", "take a screenshot", DoShot},
    {"record", "key-record", "begin or end a recording", DoRecord},
    {"limit", "key-limit", "switch the frame limit on or off", DoLimit},
};

} // namespace

std::span<const Action> Actions() { return c_astActions; }

const Action* FindAction(std::string_view strName) {
    const auto it = std::find_if(std::begin(c_astActions), std::end(c_astActions),
                                 [&](const Action& st) { return strName == st.szName; });
    return it != std::end(c_astActions) ? it : nullptr;
}

std::string CommandOf(const Action& stAction) { return std::string("orvin-osd keys do ") + stAction.szName; }

std::string ActionNames() {
    std::string str;
    for (const Action& st : c_astActions) str += (str.empty() ? "" : "|") + std::string(st.szName);
    return str;
}

std::string NextProfile(const std::vector<std::string>& listNames, const std::string& strShown,
                        const std::function<bool(const std::string&)>& fnIsGood) {
    // Behind where the shown one stands, or would stand: its folder may be gone.
    const auto itFrom = std::upper_bound(listNames.begin(), listNames.end(), strShown);
    const size_t uFrom = static_cast<size_t>(itFrom - listNames.begin());
    for (size_t u = 0; u < listNames.size(); ++u) {
        const std::string& strName = listNames[(uFrom + u) % listNames.size()];
        if (strName != strShown && fnIsGood(strName)) return strName;
    }
    return {};
}

} // namespace companion::keys
