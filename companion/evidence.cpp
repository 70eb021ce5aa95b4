#include "companion/evidence.h"
#include "companion/choices.h"
#include "companion/recording/trace_reader.h"
#include "companion/segment_view.h"
#include <algorithm>

namespace companion {
namespace {

constexpr u32 kProbeStep = 10;   ///< milliseconds
constexpr u32 kProbeSteps = 100; ///< a second in all: slow programs count as alive too
constexpr u32 kTraceStep = 20;   ///< milliseconds
constexpr u32 kAnswerTime = 1000;
constexpr u32 kMovesTime = 4000; ///< at most, for an overlay that has moved once: each build takes its time

/// Sets the API code of a status record to "not seen" through the library, as it does for each query, and
/// watches whether the process writes its own code again: only a passing frame does that.
bool ProbeFrames(const ControlLibrary& stLibrary, u32 uProcessId) {
    const auto pBefore = Snapshot(stLibrary.pSegment);
    const auto uSlot = FindRecord(pBefore->StatusTable, uProcessId);
    if (!uSlot) return false;
    const stProcessRecord& stLive = stLibrary.pSegment->StatusTable[*uSlot];
    if (stLibrary.fnRearmApiCode(g_fnReadOnce(stLive.uThreadId)) == 0) return false;
    for (u32 i = 0; i < kProbeSteps; ++i) {
        platform::tool::SleepMilliseconds(kProbeStep);
        if (g_fnReadOnce(stLive.Command.uApiCode) != g_uApiCodeUnseen) return true;
    }
    return false;
}

f64 MillisecondsOf(u32 uTicks, i64 iFrequency) {
    return static_cast<f64>(uTicks) * 1000.0 / static_cast<f64>(iFrequency);
}

void AddCosts(std::vector<stTraceFrame>& listFrames, TraceFacts& st) {
    st.uFrames = listFrames.size();
    if (listFrames.empty()) return;
    const auto fnLess = [](const stTraceFrame& a, const stTraceFrame& b) { return a.uCost < b.uCost; };
    const auto itMiddle = listFrames.begin() + static_cast<std::ptrdiff_t>(listFrames.size() / 2);
    std::nth_element(listFrames.begin(), itMiddle, listFrames.end(), fnLess);
    const auto itWorst = std::max_element(listFrames.begin(), listFrames.end(), fnLess);
    st.fCostMedian = MillisecondsOf(itMiddle->uCost, st.stHead.iFrequency);
    st.fCostWorst = MillisecondsOf(itWorst->uCost, st.stHead.iFrequency);
}

/// What a program shows: a profile of its own that was given to this process, else as for any of its name.
std::string ProfileShown(const ControlLibrary& stLibrary, const Evidence& st) {
    const std::string& strTold = st.stTrace.stHead.strProfile;
    return strTold.empty() ? ProfileFor(stLibrary, st.stProcess.strName) : strTold;
}

} // namespace

TraceFacts WatchTrace(const ControlLibrary& stLibrary, u32 uProcessId, u32 uMilliseconds) {
    TraceFacts st;
    recording::TraceReader reader(*stLibrary.pSegment, uProcessId);
    std::vector<stTraceFrame> listFrames;
    u32 uPassed = 0, uSurfaces = 0;
    for (u32 uTime = 0, uAnswered = 0; uTime < kAnswerTime || uAnswered > 0; uTime += kTraceStep) {
        const recording::TraceState eState = reader.Poll(false, listFrames);
        if (eState == recording::TraceState::Full || eState == recording::TraceState::Refused) break;
        if (eState == recording::TraceState::Running && uAnswered == 0) {
            uPassed = reader.Head().uPassed;
            uSurfaces = reader.Head().uSurfaces;
            uAnswered = uTime + 1;
        }
        const u32 uMoves = uAnswered > 0 ? reader.Head().uSurfaces - uSurfaces : 0;
        const u32 uEnough = uMoves > 0 && uMoves < g_uManySurfaces ? kMovesTime : uMilliseconds;
        if (uAnswered > 0 && uTime >= uAnswered + uEnough) break;
        platform::tool::SleepMilliseconds(kTraceStep);
    }
    st.stHead = reader.Head();
    st.bAnswered = st.stHead.uProcessId == uProcessId;
    if (!st.bAnswered) return st;
    st.uPassed = st.stHead.uPassed - uPassed;
    st.uSurfaces = st.stHead.uSurfaces - uSurfaces;
    AddCosts(listFrames, st);
    return st;
}

Evidence CollectEvidence(const ControlLibrary& stLibrary, u32 uProcessId, u32 uLook) {
    Evidence st;
    st.uProcessId = uProcessId;
    st.stProcess = platform::tool::InspectProcess(uProcessId);
    st.eClaim = platform::tool::ReadApiClaim(uProcessId);
    st.bCanEnter = static_cast<bool>(platform::tool::CanEnterRunningPrograms());
    if (st.stProcess.bExists) {
        st.stTraits = platform::tool::InspectTraits(uProcessId);
        st.stModules = FactsOfModules(st.stTraits.listModules);
        st.bFramesSeen = ProbeFrames(stLibrary, uProcessId);
    }
    AddSegmentEvidence(*Snapshot(stLibrary.pSegment), uProcessId, st);
    if (st.bFramesSeen) st.stTrace = WatchTrace(stLibrary, uProcessId, uLook);
    st.strProfile = ProfileShown(stLibrary, st);
    return st;
}

} // namespace companion
