#include "companion/problem_report.h"
#include "companion/config.h"
#include "companion/evidence.h"
#include "companion/machine_check.h"
#include "companion/profile_folder.h"
#include "companion/recording/output_file.h"
#include "companion/reports.h"
#include "companion/target.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include "platform/tool_about.h"
#include "platform/tool_bytes.h"
#include "platform/tool_input.h"
#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <sstream>
#include <string_view>

namespace companion {
namespace {

constexpr const char* kTool = "orvin-profile";
constexpr u32 kLook = 2000; ///< milliseconds
constexpr size_t kMostLines = 400;
constexpr size_t kShortestName = 3;

std::string TimeText(const char* szFormat) {
    const std::time_t tNow = std::time(nullptr);
    std::array<char, 64> acText{};
    if (const std::tm* const pTime = std::gmtime(&tNow))
        std::strftime(acText.data(), acText.size(), szFormat, pTime);
    return acText.data();
}

std::string Section(const char* szTitle, const std::string& strText) {
    return "\n== " + std::string(szTitle) + "\n" + (strText.empty() ? "none\n" : strText);
}

std::string Line(const char* szName, const std::string& strValue) {
    std::string strName = szName;
    strName.resize(std::max<size_t>(strName.size() + 1, 14), ' ');
    return strName + Printable(strValue.empty() ? "not told" : strValue) + "\n";
}

std::string VersionsText() {
    return Line("orvin-osd", ORVIN_VERSION) + Line("library", LibraryPath("")) +
           Line("system", platform::tool::SystemText()) + Line("processor", platform::tool::ProcessorText());
}

std::string OpenGlText(const TraceFacts& st) {
    if (!st.bAnswered) return "the program does not answer, so nothing of its OpenGL is known\n";
    const recording::TraceHead& stHead = st.stHead;
    return Line("vendor", stHead.strVendor) + Line("renderer", stHead.strRenderer) +
           Line("version", stHead.strVersion) +
           Line("size", std::to_string(stHead.uWidth) + "x" + std::to_string(stHead.uHeight)) +
           Line("limit", stHead.uLimit ? std::to_string(stHead.uLimit) + " frames a second" : "none");
}

std::string CostText(const TraceFacts& st) {
    if (st.uFrames == 0) return "no frame was seen\n";
    char szText[128];
    std::snprintf(szText, sizeof szText, "%llu frames in %.1f s: median %.3f ms, worst %.3f ms a frame\n",
                  static_cast<unsigned long long>(st.uFrames), kLook / 1000.0, st.fCostMedian, st.fCostWorst);
    return szText;
}

std::string SettingsText() {
    std::string strText;
    for (const SettingRow& row : SettingRows()) {
        const std::string strNow = SettingNow(row.szName);
        if (strNow != row.Default())
            strText += Line(row.szName, strNow + " (shipped: " + row.Default() + ")");
    }
    return strText;
}

std::string MachineText(const ControlLibrary& stLibrary) {
    std::string strText;
    for (const MachineCheck& st : CheckMachine(stLibrary)) {
        strText += Line(st.strName.c_str(), st.listRemarks.empty() ? st.strState : "see below");
        for (const Remark& stRemark : st.listRemarks) strText += RemarkText(stRemark);
    }
    return strText;
}

/// Lines that others wrote, made printable; not all of very many.
std::string LinesOf(const std::string& strOutput) {
    std::string strText;
    std::istringstream lines(strOutput);
    size_t uLines = 0;
    for (std::string strLine; std::getline(lines, strLine); ++uLines) {
        if (strLine.ends_with('\r')) strLine.pop_back();
        if (uLines < kMostLines) strText += Printable(strLine) + "\n";
    }
    if (uLines > kMostLines) strText += "... and " + std::to_string(uLines - kMostLines) + " lines more\n";
    return strText;
}

std::string OutputOf(const std::vector<std::string>& listWords) {
    std::string strOutput;
    int iExitCode = kOk;
    const Result stRun = platform::tool::RunBeside(kTool, listWords, iExitCode, &strOutput);
    if (!stRun) return stRun.strError + "\n";
    return LinesOf(strOutput) + "exit code " + std::to_string(iExitCode) + "\n";
}

/// The overlay's log stands in no program; the same code builds the same layout off screen.
std::string BuildLog(const std::string& strProfile) {
    const std::string strPicture = platform::tool::JoinPath(
        platform::tool::TempFolder(),
        "orvin-osd-report-" + std::to_string(platform::tool::OwnProcessId()) + ".png");
    const std::string strText = OutputOf({"profile", "render", strProfile, "-o", strPicture, "--size",
                                          "640x360", "--seconds", "1", "--times", "-v"});
    std::error_code error;
    std::filesystem::remove(PathOfText(strPicture), error);
    return strText;
}

std::string ModulesText(const Evidence& st) {
    std::string strText;
    for (const std::string& strPath : st.stTraits.listModules) strText += strPath + "\n";
    return LinesOf(strText);
}

std::string ReportText(const ControlLibrary& stLibrary, u32 uProcessId, const Evidence& st) {
    return "Problem report of ORVIN-OSD, made " + TimeText("%Y-%m-%d %H:%M") + " UTC\n" +
           Section("Versions", VersionsText()) +
           Section("Program", DiagnosisText(uProcessId, st, Diagnose(st))) +
           Section("OpenGL of the program", OpenGlText(st.stTrace)) +
           Section("Cost of the overlay", CostText(st.stTrace)) + Section("Machine", MachineText(stLibrary)) +
           Section("Settings that differ from what is shipped", SettingsText()) +
           Section(("Check of the profile " + Printable(st.strProfile)).c_str(),
                   OutputOf({"profile", "check", st.strProfile})) +
           Section("Log of a build of its layout, made now and off screen", BuildLog(st.strProfile)) +
           Section("Files that the program has mapped", ModulesText(st));
}

bool IsPerson(const std::string& strName) {
    constexpr std::string_view astrNobody[] = {"root", "user", "users", "default", "administrator", "nobody"};
    return strName.size() >= kShortestName &&
           std::none_of(std::begin(astrNobody), std::end(astrNobody), [&](std::string_view strNobody) {
               return platform::tool::EqualFolded(strName, strNobody);
           });
}

bool IsWordPart(char c) {
    return static_cast<unsigned char>(c) >= 0x80 || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
           (c >= 'A' && c <= 'Z');
}

/// Equal without case, either separator for either.
bool IsAt(const std::string& strText, size_t uAt, const std::string& strPiece) {
    if (strText.size() - uAt < strPiece.size()) return false;
    const auto fnPlain = [](char c) {
        return c == '\\' ? '/' : c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    };
    return std::equal(strPiece.begin(), strPiece.end(), strText.begin() + static_cast<std::ptrdiff_t>(uAt),
                      [&](char a, char b) { return fnPlain(a) == fnPlain(b); });
}

/// Replaces a piece where no word goes on beyond it.
void Replace(std::string& strText, const std::string& strPiece, const std::string& strBy, bool bWord) {
    for (size_t u = 0; u < strText.size(); ++u) {
        if (!IsAt(strText, u, strPiece)) continue;
        if (bWord && u > 0 && IsWordPart(strText[u - 1])) continue;
        if (u + strPiece.size() < strText.size() && IsWordPart(strText[u + strPiece.size()])) continue;
        strText.replace(u, strPiece.size(), strBy);
        u += strBy.size() - 1;
    }
}

/// What a person types, up to the end of the line; nothing where a stop is asked for.
std::string TypedLine() {
    std::string strLine;
    for (char c = 0; platform::tool::ReadInput(&c, 1) == 1 && c != '\n';)
        if (strLine.size() < 16 && c != '\r') strLine += c;
    return strLine;
}

/// Whether the text is to be kept in a file; a person has seen it by then.
bool IsToBeKept(const Options& stOptions, const std::string& strText, const std::string& strPath) {
    if (stOptions.bYes) return true;
    std::fwrite(strText.data(), 1, strText.size(), stdout);
    if (!platform::tool::IsInputTerminal() || !platform::tool::IsTerminal()) return false;
    std::printf("\nKeep this in %s? It is sent nowhere. [y/N] ", Printable(strPath).c_str());
    std::fflush(stdout);
    platform::tool::CatchStop();
    const std::string strAnswer = TypedLine();
    return platform::tool::EqualFolded(strAnswer, "y") || platform::tool::EqualFolded(strAnswer, "yes");
}

Result Keep(const Options& stOptions, const std::string& strText, const std::string& strPath) {
    recording::OutputFile file;
    Result st = file.Open(strPath, stOptions.bForce);
    if (!st) return st;
    st = file.Write(strText);
    if (st) st = file.Close();
    if (st) std::printf("%s\n", Printable(strPath).c_str());
    return st;
}

} // namespace

std::string WithoutPerson(std::string strText, const std::string& strHome,
                          const std::vector<std::string>& listNames) {
    if (!strHome.empty()) Replace(strText, strHome, "~", false);
    for (const std::string& strName : listNames)
        if (IsPerson(strName)) Replace(strText, strName, "USER", true);
    return strText;
}

Result ReportProblem(const ControlLibrary& stLibrary, const Options& stOptions) {
    u32 uProcessId = 0;
    const Result stFound = ResolveTarget(stOptions.strTarget, uProcessId);
    if (!stFound) return stFound;
    const Evidence st = CollectEvidence(stLibrary, uProcessId, kLook);
    if (!st.stProcess.bExists)
        return Result::NotFound("no program runs under the number " + std::to_string(uProcessId));
    const std::string strText = WithoutPerson(ReportText(stLibrary, uProcessId, st),
                                              platform::tool::HomeFolder(), platform::tool::PersonNames());
    const std::string strPath = stOptions.strOutput.empty() ? recording::PlainFileName(st.stProcess.strName) +
                                                                  "-problem" + TimeText("-%Y%m%d-%H%M%S.txt")
                                                            : stOptions.strOutput;
    return IsToBeKept(stOptions, strText, strPath) ? Keep(stOptions, strText, strPath) : Result{};
}

} // namespace companion
