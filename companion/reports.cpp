#include "companion/reports.h"
#include "companion/evidence.h"
#include "companion/feed_state.h"
#include "companion/machine_check.h"
#include "companion/programs.h"
#include "companion/segment_json.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include "platform/tool_bytes.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace companion {
namespace {

using Json = nlohmann::ordered_json;

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

const char* YesNo(bool bValue) { return bValue ? "yes" : "no"; }

std::string RecordText(const Evidence& st) {
    if (st.bCommandRecord && st.bStatusRecord) return "command and status";
    if (st.bCommandRecord) return "command only";
    return st.bStatusRecord ? "status only" : "none";
}

std::string OverlayText(const std::vector<std::string>& listNames) {
    std::string strText;
    for (const std::string& strName : listNames)
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

std::string RemarkText(const Remark& st) {
    std::string strOut = "found         " + Printable(st.strSeen) + "\n";
    if (!st.strWhy.empty()) strOut += "why           " + Printable(st.strWhy) + "\n";
    if (!st.strNext.empty()) strOut += "next          " + Printable(st.strNext) + "\n";
    return strOut;
}

Json RemarksJson(const std::vector<Remark>& listRemarks) {
    Json jsAll = Json::array();
    for (const Remark& st : listRemarks)
        jsAll.push_back({{"found", st.strSeen}, {"why", st.strWhy}, {"next", st.strNext}});
    return jsAll;
}

std::string DiagnosisText(u32 uProcessId, const Evidence& st, const Diagnosis& stDiagnosis) {
    std::string strOut =
        "process       " + std::to_string(uProcessId) + " " + Printable(NameText(st.stProcess)) + "\n";
    if (st.stProcess.bExists) {
        strOut += "library       " + MappedText(st.stProcess, st.stProcess.bLibraryMapped) + "\n";
        strOut += "OpenGL        " + MappedText(st.stProcess, st.stProcess.bGlMapped) + "\n";
        strOut += std::string("detour        ") + DetourName(st.stProcess.eDetour) + "\n";
        strOut += "overlays      " + OverlayText(st.stModules.listOverlays) + "\n";
        strOut += std::string("claimed by    ") + ClaimName(st.eClaim) + "\n";
        strOut += std::string("frames seen   ") + YesNo(st.bFramesSeen) + "\n";
    }
    strOut += "record        " + RecordText(st) + "\n";
    if (st.bStatusRecord) strOut += "API reported  " + ApiName(st.uApiCode) + "\n";
    if (st.bStatusRecord && st.bQueryFrameTime)
        strOut += "frame time    " + FrameTimeText(st.fFrameTime) + " ms\n";
    if (st.stTrace.bAnswered) strOut += "OpenGL there  " + Printable(st.stTrace.stHead.strVersion) + "\n";
    strOut += std::string("state         ") + StateName(stDiagnosis.eState) + "\n";
    strOut += RemarkText(stDiagnosis.stState);
    for (const Remark& stNote : stDiagnosis.listNotes) strOut += "\n" + RemarkText(stNote);
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
            {"others", st.stModules.listOverlays},
            {"bits", st.stTraits.b32Bit ? 32 : 64},
            {"sandbox", st.stTraits.strSandbox},
            {"profile", st.strProfile},
            {"glVersion", st.stTrace.bAnswered ? Json(st.stTrace.stHead.strVersion) : Json(nullptr)},
            {"commandRecord", st.bCommandRecord},
            {"statusRecord", st.bStatusRecord},
            {"commandWaiting", st.bCommandWaiting},
            {"enabled", st.bGlobalEnable},
            {"claim", ClaimName(st.eClaim)},
            {"framesSeen", st.bFramesSeen},
            {"apiCode", st.bStatusRecord ? Json(st.uApiCode) : Json(nullptr)},
            {"state", StateName(stDiagnosis.eState)},
            {"summary", stDiagnosis.stState.strSeen},
            {"why", stDiagnosis.stState.strWhy},
            {"next", stDiagnosis.stState.strNext},
            {"notes", RemarksJson(stDiagnosis.listNotes)}};
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

std::string ChecksText(const std::vector<MachineCheck>& listChecks) {
    std::string strOut;
    for (const MachineCheck& st : listChecks) {
        std::string strName = st.strName;
        strName.resize(std::max<size_t>(strName.size() + 1, 14), ' ');
        if (st.listRemarks.empty()) strOut += strName + Printable(st.strState) + "\n";
        for (const Remark& stRemark : st.listRemarks)
            strOut += strName + (st.bFault ? "at fault\n" : "worth a look\n") + RemarkText(stRemark);
    }
    return strOut;
}

Json ChecksJson(const std::vector<MachineCheck>& listChecks) {
    Json jsAll = Json::array();
    for (const MachineCheck& st : listChecks)
        jsAll.push_back({{"name", st.strName},
                         {"state", st.strState},
                         {"fault", st.bFault},
                         {"findings", RemarksJson(st.listRemarks)}});
    return jsAll;
}

int PrintCheckup(const ControlLibrary& stLibrary, const Options& stOptions) {
    const std::vector<MachineCheck> listChecks = CheckMachine(stLibrary);
    bool bGood =
        std::none_of(listChecks.begin(), listChecks.end(), [](const MachineCheck& st) { return st.bFault; });
    Json jsPrograms = Json::array();
    std::string strPrograms;
    for (const Instance& stInstance : Programs(stLibrary)) {
        const Evidence stEvidence = CollectEvidence(stLibrary, stInstance.uProcessId);
        const Diagnosis st = Diagnose(stEvidence);
        bGood = bGood && st.eState == PipelineState::Running;
        jsPrograms.push_back(DiagnosisJson(stInstance.uProcessId, stEvidence, st));
        strPrograms += "\n" + DiagnosisText(stInstance.uProcessId, stEvidence, st);
    }
    if (strPrograms.empty()) strPrograms = "programs      none carries the overlay\n";
    Print(stOptions.bJson ? JsonToText({{"machine", ChecksJson(listChecks)}, {"programs", jsPrograms}})
                          : ChecksText(listChecks) + strPrograms);
    return bGood ? kOk : kFailed;
}

int PrintDiagnosis(const ControlLibrary& stLibrary, u32 uProcessId, const Options& stOptions) {
    const Evidence stEvidence = CollectEvidence(stLibrary, uProcessId);
    Diagnosis stDiagnosis = Diagnose(stEvidence);
    for (Remark& st : BasicRemarks(stLibrary)) stDiagnosis.listNotes.push_back(std::move(st));
    Print(stOptions.bJson ? JsonToText(DiagnosisJson(uProcessId, stEvidence, stDiagnosis))
                          : DiagnosisText(uProcessId, stEvidence, stDiagnosis));
    if (stDiagnosis.eState == PipelineState::NoProcess) return kNotFound;
    return stDiagnosis.eState == PipelineState::Running ? kOk : kFailed;
}

} // namespace companion
