#pragma once
// What the companion prints: the table of instances, the dump and the diagnosis.
#include "companion/control_library.h"
#include "companion/diagnosis.h"
#include "companion/options.h"
#include "companion/segment_view.h"
#include <nlohmann/json_fwd.hpp>

namespace companion {

/// One line of the status report.
struct StatusRow {
    Instance stInstance;
    ProcessFacts stProcess;
};

std::string StatusTable(const std::vector<StatusRow>& listRows, bool bQueryFrameTime);
nlohmann::ordered_json StatusJson(const std::vector<StatusRow>& listRows, const stSharedSegment& stSegment);

/// Three lines: what was found, why, what to do next; fewer where a sentence is empty.
std::string RemarkText(const Remark& st);
nlohmann::ordered_json RemarksJson(const std::vector<Remark>& listRemarks);
std::string DiagnosisText(u32 uProcessId, const Evidence& stEvidence, const Diagnosis& stDiagnosis);
nlohmann::ordered_json DiagnosisJson(u32 uProcessId, const Evidence& stEvidence,
                                     const Diagnosis& stDiagnosis);

void PrintStatus(const ControlLibrary& stLibrary, const Options& stOptions);
void PrintDump(const ControlLibrary& stLibrary, const Options& stOptions);
/// This machine, then each program with the overlay. Returns the exit code: kOk if nothing is at fault.
int PrintCheckup(const ControlLibrary& stLibrary, const Options& stOptions);
/// Returns the exit code: kOk if the overlay runs, kNotFound without such a process, else kFailed.
int PrintDiagnosis(const ControlLibrary& stLibrary, u32 uProcessId, const Options& stOptions);

} // namespace companion
