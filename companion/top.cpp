#include "companion/top.h"
#include "companion/frame_time_report.h"
#include "companion/programs.h"
#include "companion/segment_view.h"
#include "companion/table.h"
#include "platform/tool.h"
#include <cstdio>

namespace companion {
namespace {

constexpr u32 kTopInterval = 1000; ///< milliseconds
constexpr const char* kHomeAndClear = "\x1b[H\x1b[J";
constexpr const char* kNobody = "No running program carries the overlay.\n";

std::vector<StatusRow> Programs(const stSharedSegment& stSegment) {
    std::vector<StatusRow> listRows;
    for (const Instance& st : Instances(stSegment)) {
        ProcessFacts stProcess = platform::tool::InspectProcess(st.uProcessId);
        // Programs that ended without warning leave their records behind.
        if (stProcess.bExists && !IsCompanion(st.uProcessId)) listRows.push_back({st, std::move(stProcess)});
    }
    return listRows;
}

/// Resets the programs' API codes: a code that is back at the next look tells that frames have passed, and
/// that the frame time beside it is not an old one.
void ResetCodes(const ControlLibrary& stLibrary) {
    for (const Instance& st : Instances(*Snapshot(stLibrary.pSegment))) {
        if (st.uStatusSlot) stLibrary.fnRearmApiCode(st.uThreadId);
    }
}

} // namespace

std::string RateText(f32 fMilliseconds) {
    if (FrameTimeText(fMilliseconds) == "-") return "-";
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%.1f", 1000.0 / static_cast<f64>(fMilliseconds));
    return szText;
}

std::string TopTable(const std::vector<StatusRow>& listRows) {
    std::vector<std::vector<std::string>> listCells;
    for (const StatusRow& st : listRows) {
        const std::string& strName = st.stProcess.strName;
        const bool bFrames = st.stInstance.uApiCode != g_uApiCodeUnseen;
        const f32 fTime = bFrames ? st.stInstance.fFrameTime : 0.0f;
        listCells.push_back({strName.empty() ? "?" : strName, std::to_string(st.stInstance.uProcessId),
                             bFrames ? ApiName(st.stInstance.uApiCode) : "-", FrameTimeText(fTime),
                             RateText(fTime)});
    }
    return FormatTable(
        {{"PROCESS"}, {"PID", Align::Right}, {"API"}, {"FRAME MS", Align::Right}, {"FPS", Align::Right}},
        listCells);
}

void Watch(const ControlLibrary& stLibrary, const Options& stOptions) {
    const u32 uInterval = stOptions.uInterval != 0 ? stOptions.uInterval : kTopInterval;
    const bool bInPlace = !stOptions.bOnce && platform::tool::IsTerminal();
    platform::tool::CatchStop();
    FrameTimeReport report(stLibrary);
    for (bool bDone = false; !bDone; bDone = stOptions.bOnce) {
        report.Keep();
        ResetCodes(stLibrary);
        if (platform::tool::WaitForStop(uInterval) || platform::tool::SegmentWasCut()) return;
        const auto listRows = Programs(*Snapshot(stLibrary.pSegment));
        std::string strText = (bInPlace ? kHomeAndClear : "") + TopTable(listRows);
        if (listRows.empty()) strText += kNobody;
        std::fwrite(strText.data(), 1, strText.size(), stdout);
        std::fflush(stdout);
    }
}

} // namespace companion
