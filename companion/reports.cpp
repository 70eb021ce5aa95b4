#include "companion/reports.h"
#include "companion/feed_state.h"
#include "companion/profile_folder.h"
#include "companion/programs.h"
#include "companion/segment_json.h"
#include "companion/shader_check.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include "platform/tool_bytes.h"
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace companion {
namespace {

using Json = nlohmann::ordered_json;

constexpr u32 kProbeStep = 10;   ///< milliseconds
constexpr u32 kProbeSteps = 100; ///< a second in all: slow programs count as alive too

std::string NameText(const ProcessFacts& st) {
    if (!st.bExists) return "(gone)";
    return st.strName.empty() ? "?" : st.strName;
}

const char* DetourText(const ProcessFacts& st) {
    if (!st.bExists) return "-";
    if (st.bReadable && !st.bLibraryMapped) return "not mapped";
    return DetourName(st.eDetour);
}

void Print(const std::string& strText) { std::fwrite(strText.data(), 1, strText.size(), stdout); }

std::vector<StatusRow> CollectRows(const stSharedSegment& stSegment, bool bAll) {
    std::vector<StatusRow> listRows;
    for (const Instance& stInstance : Instances(stSegment)) {
        if (!bAll && IsCompanion(stInstance.uProcessId)) continue;
        listRows.push_back({stInstance, platform::tool::InspectProcess(stInstance.uProcessId)});
    }
    return listRows;
}

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

Evidence CollectEvidence(const ControlLibrary& stLibrary, u32 uProcessId) {
    Evidence stEvidence;
    stEvidence.stProcess = platform::tool::InspectProcess(uProcessId);
    stEvidence.eClaim = platform::tool::ReadApiClaim(uProcessId);
    stEvidence.bFramesSeen = stEvidence.stProcess.bExists && ProbeFrames(stLibrary, uProcessId);
    AddSegmentEvidence(*Snapshot(stLibrary.pSegment), uProcessId, stEvidence);
    return stEvidence;
}

const char* YesNo(bool bValue) { return bValue ? "yes" : "no"; }

std::string RecordText(const Evidence& st) {
    if (st.bCommandRecord && st.bStatusRecord) return "command and status";
    if (st.bCommandRecord) return "command only";
    return st.bStatusRecord ? "status only" : "none";
}

std::string OverlayText(const ProcessFacts& st) {
    std::string strText;
    for (const std::string& strName : st.listOverlays)
        strText += (strText.empty() ? "" : ", ") + Printable(strName);
    return strText.empty() ? "none" : strText;
}

std::string MappedText(const ProcessFacts& st, bool bMapped) {
    return st.bReadable ? YesNo(bMapped) : "unknown (no access)";
}

} // namespace

std::string StatusTable(const std::vector<StatusRow>& listRows, bool bQueryFrameTime) {
    const std::vector<Column> listColumns{{"PROCESS"}, {"PID", Align::Right},      {"THREAD", Align::Right},
                                          {"API"},     {"FRAME MS", Align::Right}, {"DETOUR"},
                                          {"WAITING"}};
    std::vector<std::vector<std::string>> listCells;
    for (const StatusRow& st : listRows) {
        const Instance& stInstance = st.stInstance;
        listCells.push_back({NameText(st.stProcess), std::to_string(stInstance.uProcessId),
                             std::to_string(stInstance.uThreadId), ApiName(stInstance.uApiCode),
                             bQueryFrameTime ? FrameTimeText(stInstance.fFrameTime) : "-",
                             DetourText(st.stProcess), YesNo(stInstance.bCommandWaiting)});
    }
    return FormatTable(listColumns, listCells);
}

Json StatusJson(const std::vector<StatusRow>& listRows, const stSharedSegment& stSegment) {
    Json jsRows = Json::array();
    for (const StatusRow& st : listRows) {
        const Instance& stInstance = st.stInstance;
        const bool bTime = stSegment.bEnableQueryFrameTime != 0 && std::isfinite(stInstance.fFrameTime);
        jsRows.push_back(
            {{"process", st.stProcess.strName},
             {"alive", st.stProcess.bExists},
             {"pid", stInstance.uProcessId},
             {"tid", stInstance.uThreadId},
             {"apiCode", stInstance.uApiCode},
             {"api", ApiName(stInstance.uApiCode)},
             {"frameTimeMs", bTime ? Json(stInstance.fFrameTime) : Json(nullptr)},
             {"detour", DetourText(st.stProcess)},
             {"commandSlot", stInstance.uCommandSlot ? Json(*stInstance.uCommandSlot) : Json(nullptr)},
             {"statusSlot", stInstance.uStatusSlot ? Json(*stInstance.uStatusSlot) : Json(nullptr)},
             {"commandWaiting", stInstance.bCommandWaiting}});
    }
    return {{"enabled", stSegment.bGlobalEnable != 0},
            {"frameTimeReported", stSegment.bEnableQueryFrameTime != 0},
            {"instances", jsRows}};
}

std::string DiagnosisText(u32 uProcessId, const Evidence& st, const Diagnosis& stDiagnosis) {
    std::string strOut =
        "process       " + std::to_string(uProcessId) + " " + Printable(NameText(st.stProcess)) + "\n";
    if (st.stProcess.bExists) {
        strOut += "library       " + MappedText(st.stProcess, st.stProcess.bLibraryMapped) + "\n";
        strOut += "OpenGL        " + MappedText(st.stProcess, st.stProcess.bGlMapped) + "\n";
        strOut += std::string("detour        ") + DetourName(st.stProcess.eDetour) + "\n";
        strOut += "overlays      " + OverlayText(st.stProcess) + "\n";
        strOut += std::string("claimed by    ") + ClaimName(st.eClaim) + "\n";
        strOut += std::string("frames seen   ") + YesNo(st.bFramesSeen) + "\n";
    }
    strOut += "record        " + RecordText(st) + "\n";
    if (st.bStatusRecord) strOut += "API reported  " + ApiName(st.uApiCode) + "\n";
    if (st.bStatusRecord && st.bQueryFrameTime)
        strOut += "frame time    " + FrameTimeText(st.fFrameTime) + " ms\n";
    strOut +=
        std::string("state         ") + StateName(stDiagnosis.eState) + ": " + stDiagnosis.strSummary + "\n";
    for (const std::string& strNote : stDiagnosis.listNotes)
        strOut += "note          " + Printable(strNote) + "\n";
    return strOut;
}

Json DiagnosisJson(u32 uProcessId, const Evidence& st, const Diagnosis& stDiagnosis) {
    return {{"pid", uProcessId},
            {"process", st.stProcess.strName},
            {"alive", st.stProcess.bExists},
            {"readable", st.stProcess.bReadable},
            {"libraryMapped", st.stProcess.bLibraryMapped},
            {"openglMapped", st.stProcess.bGlMapped},
            {"detour", DetourName(st.stProcess.eDetour)},
            {"foreignOverlays", st.stProcess.listOverlays},
            {"commandRecord", st.bCommandRecord},
            {"statusRecord", st.bStatusRecord},
            {"commandWaiting", st.bCommandWaiting},
            {"enabled", st.bGlobalEnable},
            {"claim", ClaimName(st.eClaim)},
            {"framesSeen", st.bFramesSeen},
            {"apiCode", st.bStatusRecord ? Json(st.uApiCode) : Json(nullptr)},
            {"state", StateName(stDiagnosis.eState)},
            {"summary", stDiagnosis.strSummary},
            {"notes", stDiagnosis.listNotes}};
}

void PrintStatus(const ControlLibrary& stLibrary, const Options& stOptions) {
    const FeedState stFeed = TakeBackDeadValues(stLibrary);
    const auto pSegment = Snapshot(stLibrary.pSegment);
    const auto listRows = CollectRows(*pSegment, stOptions.bAll);
    if (stOptions.bJson) {
        Json jsStatus = StatusJson(listRows, *pSegment);
        jsStatus["feed"] = FeedJson(stFeed);
        return Print(JsonToText(jsStatus));
    }
    Print(StatusTable(listRows, pSegment->bEnableQueryFrameTime != 0));
    if (pSegment->bGlobalEnable == 0) Print("The overlay is switched off for every program.\n");
    if (listRows.empty()) Print("No running program carries the overlay.\n");
    Print(FeedText(stFeed));
}

void PrintDump(const ControlLibrary& stLibrary, const Options& stOptions) {
    const Json jsTree = SegmentToJson(*Snapshot(stLibrary.pSegment), {stOptions.bAll, stOptions.bRaw});
    Print(stOptions.bJson ? JsonToText(jsTree) : TreeToText(jsTree));
}

int PrintDiagnosis(const ControlLibrary& stLibrary, u32 uProcessId, const Options& stOptions) {
    const Evidence stEvidence = CollectEvidence(stLibrary, uProcessId);
    Diagnosis stDiagnosis = Diagnose(stEvidence);
    if (!stLibrary.strSegmentNote.empty()) stDiagnosis.listNotes.push_back(stLibrary.strSegmentNote);
    if (std::filesystem::path pathData; FindDataFolder("", pathData))
        for (std::string& strFault : ShaderFaults(pathData))
            stDiagnosis.listNotes.push_back(std::move(strFault));
    Print(stOptions.bJson ? JsonToText(DiagnosisJson(uProcessId, stEvidence, stDiagnosis))
                          : DiagnosisText(uProcessId, stEvidence, stDiagnosis));
    if (stDiagnosis.eState == PipelineState::NoProcess) return kNotFound;
    return stDiagnosis.eState == PipelineState::Running ? kOk : kFailed;
}

} // namespace companion
