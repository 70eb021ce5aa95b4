#include "companion/keys/pick_program.h"
#include "companion/programs.h"
#include "platform/tool_keys.h"
#include <algorithm>

namespace companion::keys {
namespace {

constexpr u32 c_uPause = 20; ///< milliseconds between two looks
constexpr u32 c_uLooks = 50;

/// Those of which a frame has come since their code was taken away.
std::vector<Instance> Presenting(const ControlLibrary& stLibrary) {
    auto listPrograms = Programs(stLibrary);
    std::erase_if(listPrograms,
                  [](const Instance& st) { return !st.uStatusSlot || st.uApiCode == g_uApiCodeUnseen; });
    return listPrograms;
}

/// Frame times are known while somebody asks for them; unknown ones come last.
bool IsFaster(const Instance& a, const Instance& b) {
    const auto fnTime = [](const Instance& st) { return st.fFrameTime > 0.0f ? st.fFrameTime : 1e9f; };
    return fnTime(a) < fnTime(b);
}

u32 MostActive(const ControlLibrary& stLibrary, const std::vector<Instance>& listPrograms) {
    for (const Instance& st : listPrograms)
        if (st.uStatusSlot) stLibrary.fnRearmApiCode(st.uThreadId);
    std::vector<Instance> listNow;
    for (u32 u = 0; u < c_uLooks && listNow.empty(); ++u) {
        if (platform::tool::WaitForStop(c_uPause)) break;
        listNow = Presenting(stLibrary);
    }
    const auto& listAmong = listNow.empty() ? listPrograms : listNow;
    return std::min_element(listAmong.begin(), listAmong.end(), IsFaster)->uProcessId;
}

} // namespace

Result PickProgram(const ControlLibrary& stLibrary, u32& uProcessId) {
    ForgetDead(stLibrary);
    const auto listPrograms = Programs(stLibrary);
    if (listPrograms.empty()) return Result::NotFound("no running program carries the overlay");
    uProcessId = platform::tool::FocusedProcess();
    const bool bCarries = std::any_of(listPrograms.begin(), listPrograms.end(),
                                      [&](const Instance& st) { return st.uProcessId == uProcessId; });
    if (!bCarries && listPrograms.size() == 1) uProcessId = listPrograms.front().uProcessId;
    if (!bCarries && listPrograms.size() > 1) uProcessId = MostActive(stLibrary, listPrograms);
    return {};
}

} // namespace companion::keys
