#include "companion/diagnosis.h"
#include "companion/utf.h"
#include <cstdlib>
#include <iterator>

namespace companion {
namespace {

constexpr u32 kApiOpenGL = 1024;
constexpr u32 kApiNotSeen = 9527;

using State = PipelineState;

/// What is true of the evidence, and the three sentences. {words} in braces are filled in.
struct Row {
    bool (*fnApplies)(const Evidence&);
    const char* szSeen;
    const char* szWhy;
    const char* szNext;
};

struct Verdict {
    State eState;
    Row stRow;
};

bool HasRecord(const Evidence& st) { return st.bCommandRecord || st.bStatusRecord; }
bool HasNoDetour(const Evidence& st) { return st.stProcess.eDetour == Detour::NotLaid; }
/// Looked into, and without the library.
bool IsOutside(const Evidence& st) { return st.stProcess.bReadable && !st.stProcess.bLibraryMapped; }
/// In it, but apart from what this companion sees.
bool IsApart(const Evidence& st) { return st.stProcess.bLibraryMapped && !HasRecord(st); }
bool IsLocked(const Evidence& st) { return !st.stTraits.strSandbox.empty() || st.stTraits.bOtherMemory; }

bool HasGivenUp(const Evidence& st) {
    return st.stTrace.bAnswered && st.stTrace.stHead.uOverlay == TRACE_OVERLAY_GAVE_UP;
}
bool HasFailed(const Evidence& st, u32 uOverlay) {
    return st.stTrace.bAnswered && st.stTrace.stHead.uOverlay == uOverlay;
}
bool IsGles(const Evidence& st) { return st.stTrace.stHead.strVersion.starts_with("OpenGL ES"); }

/// "3.1 Mesa ..." is below 3.2; a text without a number is not judged.
bool IsOldVersion(const Evidence& st) {
    const std::string& strVersion = st.stTrace.stHead.strVersion;
    char* pEnd = nullptr;
    const long iMajor = std::strtol(strVersion.c_str(), &pEnd, 10);
    if (pEnd == strVersion.c_str() || *pEnd != '.') return false;
    return iMajor < 3 || (iMajor == 3 && std::strtol(pEnd + 1, nullptr, 10) < 2);
}

/// In order of decision: the first line that applies gives the state.
constexpr Verdict kVerdicts[] = {
    {State::NoProcess,
     {[](const Evidence& st) { return !st.stProcess.bExists; }, "No program runs under this number.",
      "It has ended, or the number belongs to an earlier run.",
      "'orvin-osd status' lists the programs that carry the overlay."}},
    {State::OtherUser,
     {[](const Evidence& st) { return st.stTraits.bOtherUser && !st.stProcess.bReadable && !HasRecord(st); },
      "The program runs for another user, or with higher rights, and cannot be looked into.",
      "Each user has an overlay of his own, so that nobody draws into the programs of others.",
      "Start the program and orvin-osd as the same user, with the same rights."}},
    {State::Unknown,
     {[](const Evidence& st) { return !st.stProcess.bReadable && !HasRecord(st); },
      "The program cannot be looked into and has not reported to the overlay.",
      "The system protects it, as it does with some games that guard against cheating.",
      "Leave such a program alone; without access nothing can be shown in it."}},
    {State::Bits32,
     {[](const Evidence& st) { return IsOutside(st) && st.stTraits.b32Bit; }, "This is a 32-bit program.",
      "The overlay is made for 64-bit programs and cannot enter others.",
      "Look in the program's folder or settings for a 64-bit version of it."}},
    {State::Privileged,
     {[](const Evidence& st) { return IsOutside(st) && st.stTraits.bPrivileged; },
      "This program was started with more rights than its user has.",
      "For such programs (set-user-id, capabilities) the system ignores what is to be preloaded.",
      "Start a copy of it without those rights by 'orvin-osd run -- PROGRAM'."}},
    {State::Sandboxed,
     {[](const Evidence& st) { return IsOutside(st) && IsLocked(st); },
      "This program runs in a sandbox ({sandbox}), and the overlay is not in it.",
      "A sandbox has files and shared memory of its own, so neither the library nor the values reach it.",
      "Use the program as an ordinary package, outside of the sandbox."}},
    {State::WindowsProgram,
     {[](const Evidence& st) { return IsOutside(st) && st.stModules.bWine; },
      "This is a Windows program that runs under Wine.",
      "The Linux library does not draw in Windows programs.",
      "Ask orvin-osd.exe of the Windows package, in the same Wine prefix: 'orvin-osd.exe run -- PROGRAM'."}},
    {State::Static,
     {[](const Evidence& st) { return IsOutside(st) && st.stTraits.bStatic; },
      "This program is linked statically.", "It has no dynamic loader, so no library can be brought into it.",
      "There is no way to show the overlay in it; look for another build of the program."}},
    {State::Vulkan,
     {[](const Evidence& st) { return IsOutside(st) && st.stModules.bVulkan && !st.stModules.bOpenGl; },
      "This program draws with Vulkan.", "The overlay serves OpenGL only.",
      "If the program's settings offer OpenGL, choose it and start it with the overlay."}},
    {State::Direct3D,
     {[](const Evidence& st) { return IsOutside(st) && st.stModules.bDirect3D && !st.stModules.bOpenGl; },
      "This program draws with Direct3D.", "The overlay serves OpenGL only.",
      "If the program's settings offer OpenGL, choose it and start it with the overlay."}},
    {State::NotOpened,
     {[](const Evidence& st) { return IsOutside(st) && st.stModules.bPreload; },
      "The program was started with the overlay, but the library is not in it yet.",
      "It comes with the program's first picture in OpenGL, and stays away without a data folder and "
      "shaders.",
      "Wait for the program's window; then 'orvin-osd doctor' without a name checks the data folder."}},
    {State::NotAdmitted,
     {[](const Evidence& st) { return IsOutside(st) && st.bCanEnter; }, "The overlay is not in this program.",
      "Nobody has let it in, or the program handles no messages.",
      "'orvin-osd attach {pid}' lets it in; 'orvin-osd run -- PROGRAM' starts a program with it."}},
    {State::NotAdmitted,
     {IsOutside, "The overlay is not in this program.",
      "It comes in when a program is started with it; a running one cannot be entered on this system.",
      "End the program and start it with 'orvin-osd run -- PROGRAM'."}},
    {State::Passive,
     {[](const Evidence& st) { return !st.bGlobalEnable; }, "The overlay is switched off for every program.",
      "Somebody used 'orvin-osd off', or a key that does the same.", "'orvin-osd on' switches it on again."}},
    {State::OtherSegment,
     {[](const Evidence& st) { return IsApart(st) && st.stTraits.bOtherSegment; },
      "The overlay is in this program, but talks to another set of programs than this orvin-osd.",
      "ORVIN_OSD_SEGMENT has another value for the program than here.",
      "Set ORVIN_OSD_SEGMENT alike for the program and for orvin-osd, or not at all."}},
    {State::Sandboxed,
     {[](const Evidence& st) { return IsApart(st) && IsLocked(st); },
      "The overlay is in this program, but a sandbox ({sandbox}) keeps it apart from the others.",
      "A sandbox has shared memory of its own, so values and commands do not reach the program.",
      "Use the program as an ordinary package, outside of the sandbox."}},
    {State::OtherUser,
     {[](const Evidence& st) { return IsApart(st) && st.stTraits.bOtherUser; },
      "The overlay is in this program, but the program is another user's.",
      "Each user has an overlay of his own.", "Use orvin-osd as the user that started the program."}},
    {State::WaitingForOverlay,
     {[](const Evidence& st) { return HasNoDetour(st) && !st.stProcess.listOverlays.empty(); },
      "The overlay waits for another one in the same program ({overlays}).",
      "It lets others take their place first, up to 15 seconds, since two at once may harm the program.",
      "Wait 15 seconds; if it stays so, switch the other overlay off in its own settings."}},
    {State::NoDetour,
     {HasNoDetour, "The overlay is in this program, but not in the way of its pictures.",
      "The program has not opened OpenGL yet, or another program undid it.",
      "Wait for the program's picture; if it stays so, start the program anew."}},
    {State::Foreign,
     {[](const Evidence& st) { return st.eClaim == ApiClaim::Direct3D; },
      "Another overlay of this family, for Direct3D, draws in this program; nothing is drawn here.",
      "A program has one of them at a time, and that one came first.",
      "Nothing has to be done; close the other one to see this one."}},
    {State::Unknown,
     {[](const Evidence& st) { return !st.bStatusRecord && st.bTablesFull; },
      "The program has no record, as all 100 are taken.",
      "So many programs carry the overlay, or many were killed and left their records.",
      "'orvin-osd status' frees the records of ended programs; then start the program anew."}},
    {State::Unknown,
     {[](const Evidence& st) { return !st.bStatusRecord; },
      "The program has no record, so its pictures cannot be seen from here.",
      "'init' was used while it ran, or it has not shown a picture since it began.",
      "Start the program anew."}},
    {State::Gles,
     {[](const Evidence& st) { return HasGivenUp(st) && IsGles(st); },
      "This program draws with OpenGL ES ({version}).", "The overlay draws with OpenGL 3.2 or later only.",
      "If the program's settings offer OpenGL (desktop), choose it."}},
    {State::OldContext,
     {[](const Evidence& st) { return HasGivenUp(st) && IsOldVersion(st); },
      "This program's OpenGL is too old for the overlay ({version}).",
      "The overlay needs OpenGL 3.2; the program asks for less, or the driver offers no more.",
      "Choose a newer renderer in the program's settings, and update the graphics driver."}},
    {State::BadContext,
     {HasGivenUp, "The overlay cannot use this program's OpenGL and has given up on it ({version}).",
      "The driver does not offer the functions that it says it has.",
      "Update the graphics driver and start the program anew; 'orvin-osd report-problem {pid}' writes down "
      "what is known."}},
    {State::LayoutFailed,
     {[](const Evidence& st) { return HasFailed(st, TRACE_OVERLAY_LAYOUT_FAILED); },
      "The overlay could not be built from the profile {profile}.",
      "The profile or a file that it names is missing or damaged.",
      "'orvin-osd profile check {profile}' tells what is wrong; 'orvin-osd profile use Default' takes "
      "another "
      "one."}},
    {State::ShadersFailed,
     {[](const Evidence& st) { return HasFailed(st, TRACE_OVERLAY_SHADERS_FAILED); },
      "The overlay could not be built, since its shaders cannot be used.",
      "Shader files of the data folder are missing or damaged, or the driver refuses them.",
      "'orvin-osd doctor' without a name checks the files; installing anew brings them back."}},
    {State::ManyWindows,
     {[](const Evidence& st) { return st.stTrace.uSurfaces >= g_uManySurfaces; },
      "This program swaps several windows in turn, and the overlay is built anew for each of them.",
      "It belongs to one window at a time unless it is told to stay with one.",
      "'orvin-osd config care-window on' keeps it in one window."}},
    {State::NoFrame,
     {[](const Evidence& st) { return !st.bFramesSeen && st.stModules.bGles; },
      "The overlay is in place, but no picture of OpenGL passed while watching.",
      "The program has OpenGL ES loaded and may draw with that, which the overlay does not serve; or it "
      "stands still.",
      "Bring the program to the front and ask again; if its settings offer OpenGL (desktop), choose it."}},
    {State::NoFrame,
     {[](const Evidence& st) { return !st.bFramesSeen && st.stModules.bVulkan; },
      "The overlay is in place, but no picture of OpenGL passed while watching.",
      "The program has Vulkan loaded and may draw with that, which the overlay does not serve; or it stands "
      "still.",
      "Bring the program to the front and ask again; if its settings offer OpenGL, choose it."}},
    {State::NoFrame,
     {[](const Evidence& st) { return !st.bFramesSeen; },
      "The overlay is in place, but no picture passed while watching.",
      "The program is minimised, loading or waiting, or draws its pictures without OpenGL.",
      "Bring the program to the front and ask again."}},
    {State::Running,
     {[](const Evidence& st) { return st.uApiCode == kApiOpenGL; }, "Pictures pass, and the overlay draws.",
      "", ""}},
    {State::AwaitingGL,
     {[](const Evidence& st) { return st.uApiCode == 0; }, "Pictures pass, but the overlay is not built.",
      "It waits for a context that it can use, or the program has just started.",
      "Ask again in some seconds; if it stays so, 'orvin-osd report-problem {pid}' writes down what is "
      "known."}},
};

constexpr Row kNotOurs = {nullptr, "The program reports an API number that this library never writes.",
                          "Something else writes into the shared segment, or the versions differ.",
                          "Use library and orvin-osd of one package, and start the program anew."};

constexpr Row kNotes[] = {
    {[](const Evidence& st) { return !st.stProcess.bExists && HasRecord(st); }, "A record is left behind.",
     "The program was killed and could not give it back.",
     "'orvin-osd status' frees it; nothing else has to be done."},
    {[](const Evidence& st) { return st.stProcess.bExists && IsApart(st); },
     "The program holds no record, so commands do not reach it.",
     "'init' was used while it ran, or it uses another segment.", "Start the program anew."},
    {[](const Evidence& st) { return st.stProcess.bExists && !HasRecord(st) && st.bTablesFull; },
     "All 100 records are taken.", "So many programs carry the overlay, or were killed with it.",
     "'orvin-osd status' frees those of ended programs."},
    {[](const Evidence& st) { return st.bCommandRecord && st.bCommandWaiting; },
     "A command waits for the next picture.", "The program has not shown one since.",
     "Bring the program to the front."},
    {[](const Evidence& st) { return st.stProcess.bLibraryMapped && !st.stProcess.bGlMapped; },
     "The program has no OpenGL library loaded.", "It has not opened OpenGL yet, or draws without it.",
     "Wait for its picture; the overlay serves OpenGL only."},
    {[](const Evidence& st) { return st.stProcess.eDetour == Detour::Other; },
     "Something else stands in the way of this program's pictures, too.",
     "Another overlay or recorder redirects the same function.",
     "If pictures flicker or are missing, switch the other one off."},
    {[](const Evidence& st) { return !st.stModules.listOverlays.empty(); },
     "Others sit in the same program: {overlays}.",
     "Overlays and recorders enter programs as this one does, and each costs some time.",
     "If pictures flicker, stutter or are missing, switch them off one by one."},
    {[](const Evidence& st) { return st.stTrace.uPassed > 0; },
     "The program draws other windows too, which the overlay leaves alone.",
     "It stays with the window that it was built in.",
     "If it sits in the wrong one, close and open the right one, or 'orvin-osd reload'."},
    {[](const Evidence& st) {
         return st.stTrace.uSurfaces > 0 && st.stTrace.uSurfaces < g_uManySurfaces && st.bFramesSeen;
     },
     "The overlay came to another window or context while it was watched.",
     "The program opened its window anew, or changed its mode.",
     "Ask again; if it stays so, see care-window in "
     "'orvin-osd config'."},
    {[](const Evidence& st) { return st.stProcess.bLibraryMapped && st.stTraits.bOtherUser; },
     "The program is another user's.", "It was started so.", "Use orvin-osd as that user."},
    {[](const Evidence& st) { return st.bStatusRecord && !st.bQueryFrameTime; },
     "Frame times are not reported.", "The report is off, as it is at first.",
     "'orvin-osd frametime on' switches it on."},
    {[](const Evidence& st) { return st.eClaim == ApiClaim::Unreadable; },
     "The block that names the program's graphics API could not be read.",
     "It belongs to another user, or something else lies in its place.",
     "Nothing has to be done unless the overlay is missing."},
};

std::string Listed(const std::vector<std::string>& listWords) {
    std::string strAll;
    for (const std::string& str : listWords) strAll += (strAll.empty() ? "" : ", ") + Printable(str);
    return strAll;
}

/// Waiting is for a file of the table; a name for people is better where there is one.
std::string OverlaysOf(const Evidence& st) {
    return Listed(st.stModules.listOverlays.empty() ? st.stProcess.listOverlays : st.stModules.listOverlays);
}

std::string SandboxOf(const Evidence& st) {
    return st.stTraits.strSandbox.empty() ? "shared memory of its own" : Printable(st.stTraits.strSandbox);
}

std::string VersionOf(const Evidence& st) {
    const std::string& strVersion = st.stTrace.stHead.strVersion;
    return strVersion.empty() ? "no version told" : Printable(strVersion);
}

std::string ProfileOf(const Evidence& st) {
    return st.strProfile.empty() ? "Default" : Printable(st.strProfile);
}

std::string PidOf(const Evidence& st) { return std::to_string(st.uProcessId); }

struct Blank {
    const char* szWord;
    std::string (*fnText)(const Evidence&);
};
constexpr Blank kBlanks[] = {{"{pid}", PidOf},
                             {"{profile}", ProfileOf},
                             {"{version}", VersionOf},
                             {"{sandbox}", SandboxOf},
                             {"{overlays}", OverlaysOf}};

std::string Filled(const char* szText, const Evidence& st) {
    std::string strText = szText;
    for (const Blank& stBlank : kBlanks) {
        const size_t uAt = strText.find(stBlank.szWord);
        if (uAt != std::string::npos)
            strText.replace(uAt, std::string_view(stBlank.szWord).size(), stBlank.fnText(st));
    }
    return strText;
}

Remark RemarkOf(const Row& stRow, const Evidence& st) {
    return {Filled(stRow.szSeen, st), Filled(stRow.szWhy, st), Filled(stRow.szNext, st)};
}

} // namespace

Diagnosis Diagnose(const Evidence& stEvidence) {
    Diagnosis stResult{State::Unknown, RemarkOf(kNotOurs, stEvidence), {}};
    for (const Verdict& stVerdict : kVerdicts) {
        if (!stVerdict.stRow.fnApplies(stEvidence)) continue;
        stResult.eState = stVerdict.eState;
        stResult.stState = RemarkOf(stVerdict.stRow, stEvidence);
        break;
    }
    for (const Row& stNote : kNotes)
        if (stNote.fnApplies(stEvidence)) stResult.listNotes.push_back(RemarkOf(stNote, stEvidence));
    return stResult;
}

const char* StateName(PipelineState eState) {
    constexpr const char* aszNames[] = {
        "no process",     "not admitted",  "unknown",         "passive",     "waiting",     "no detour",
        "foreign",        "no frame",      "awaiting GL",     "running",     "other user",  "32-bit",
        "privileged",     "sandboxed",     "Windows program", "static",      "Vulkan",      "Direct3D",
        "not opened",     "other segment", "OpenGL ES",       "old context", "bad context", "layout failed",
        "shaders failed", "many windows"};
    static_assert(std::size(aszNames) == static_cast<size_t>(State::ManyWindows) + 1);
    const size_t uIndex = static_cast<size_t>(eState);
    return uIndex < std::size(aszNames) ? aszNames[uIndex] : "unknown";
}

const char* DetourName(Detour eDetour) {
    constexpr const char* aszNames[] = {"unknown", "not laid", "laid", "other", "preloaded"};
    const size_t uIndex = static_cast<size_t>(eDetour);
    return uIndex < std::size(aszNames) ? aszNames[uIndex] : "unknown";
}

const char* ClaimName(ApiClaim eClaim) {
    constexpr const char* aszNames[] = {"none", "OpenGL", "Direct3D", "unreadable"};
    const size_t uIndex = static_cast<size_t>(eClaim);
    return uIndex < std::size(aszNames) ? aszNames[uIndex] : "unknown";
}

std::string ApiName(u32 uApiCode) {
    if (uApiCode == kApiOpenGL) return "OpenGL";
    if (uApiCode == kApiNotSeen) return "not seen";
    if (uApiCode == 0) return "none";
    return std::to_string(uApiCode);
}

} // namespace companion
