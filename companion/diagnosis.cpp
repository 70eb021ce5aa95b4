#include "companion/diagnosis.h"
#include <iterator>

namespace companion {
namespace {

constexpr u32 kApiOpenGL = 1024;
constexpr u32 kApiNotSeen = 9527;

struct Verdict {
    bool (*fnApplies)(const Evidence&);
    PipelineState eState;
    const char* szSummary;
};

bool HasRecord(const Evidence& st) { return st.bCommandRecord || st.bStatusRecord; }
bool HasNoDetour(const Evidence& st) { return st.stProcess.eDetour == Detour::NotLaid; }

/// In order of decision: the first line that applies gives the state.
constexpr Verdict kVerdicts[] = {
    {[](const Evidence& st) { return !st.stProcess.bExists; }, PipelineState::NoProcess, "no such process"},
    {[](const Evidence& st) { return !st.stProcess.bReadable && !HasRecord(st); }, PipelineState::Unknown,
     "the process cannot be inspected and holds no record"},
    {[](const Evidence& st) { return st.stProcess.bReadable && !st.stProcess.bLibraryMapped; },
     PipelineState::NotAdmitted, "the library is not in this process"},
    {[](const Evidence& st) { return !st.bGlobalEnable; }, PipelineState::Passive,
     "the overlay is switched off for every program"},
    {[](const Evidence& st) { return HasNoDetour(st) && !st.stProcess.listOverlays.empty(); },
     PipelineState::WaitingForOverlay,
     "waiting for a foreign overlay before the detour is laid (15 seconds)"},
    {HasNoDetour, PipelineState::NoDetour, "admitted, but the swap function carries no detour"},
    {[](const Evidence& st) { return st.eClaim == ApiClaim::Direct3D; }, PipelineState::Foreign,
     "another graphics API's flavour owns this process; nothing is drawn here"},
    {[](const Evidence& st) { return !st.bStatusRecord; }, PipelineState::Unknown,
     "the process holds no status record, so its frames cannot be seen"},
    {[](const Evidence& st) { return !st.bFramesSeen; }, PipelineState::NoFrame,
     "in place, but no frame passed while watching"},
    {[](const Evidence& st) { return st.uApiCode == kApiOpenGL; }, PipelineState::Running,
     "frames pass and the overlay's resources were asked for"},
    {[](const Evidence& st) { return st.uApiCode == 0; }, PipelineState::AwaitingGL,
     "frames pass without resources: waiting for a usable context, or given up on it"},
};

struct Note {
    bool (*fnApplies)(const Evidence&);
    const char* szText;
};

constexpr Note kNotes[] = {
    {[](const Evidence& st) { return !st.stProcess.bExists && HasRecord(st); },
     "a record is left behind by a process that ended without warning"},
    {[](const Evidence& st) { return st.stProcess.bExists && st.stProcess.bLibraryMapped && !HasRecord(st); },
     "no record is held: commands do not reach this process"},
    {[](const Evidence& st) { return st.stProcess.bExists && !HasRecord(st) && st.bTablesFull; },
     "all 100 records are taken"},
    {[](const Evidence& st) { return st.bCommandRecord && st.bCommandWaiting; },
     "a command waits for the next frame"},
    {[](const Evidence& st) { return st.stProcess.bLibraryMapped && !st.stProcess.bGlMapped; },
     "no OpenGL library is mapped"},
    {[](const Evidence& st) { return st.stProcess.eDetour == Detour::Other; },
     "a jump stands at the swap function that does not lead into the library visibly"},
    {[](const Evidence& st) { return st.bStatusRecord && !st.bQueryFrameTime; },
     "frame times are not reported; switch them on with 'frametime on'"},
    {[](const Evidence& st) { return st.eClaim == ApiClaim::Unreadable; },
     "the block that names the graphics API could not be read"},
};

} // namespace

Diagnosis Diagnose(const Evidence& stEvidence) {
    Diagnosis stResult{PipelineState::Unknown, "the reported API code is not one of this library's", {}};
    for (const Verdict& stVerdict : kVerdicts) {
        if (!stVerdict.fnApplies(stEvidence)) continue;
        stResult.eState = stVerdict.eState;
        stResult.strSummary = stVerdict.szSummary;
        break;
    }
    for (const Note& stNote : kNotes) {
        if (stNote.fnApplies(stEvidence)) stResult.listNotes.emplace_back(stNote.szText);
    }
    return stResult;
}

const char* StateName(PipelineState eState) {
    constexpr const char* aszNames[] = {"no process", "not admitted", "unknown",  "passive",     "waiting",
                                        "no detour",  "foreign",      "no frame", "awaiting GL", "running"};
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
