#include "companion/keys/key_recording.h"
#include "companion/choices.h"
#include "companion/config.h"
#include "companion/keys/pick_program.h"
#include "companion/profile_folder.h"
#include "companion/programs.h"
#include "companion/recording/record.h"
#include "companion/target.h"
#include "companion/utf.h"
#include "companion/whole_file.h"
#include "platform/tool_again.h"
#include <cstdio>
#include <functional>

namespace companion::keys {
namespace {

namespace fs = std::filesystem;

constexpr u32 c_uPause = 20;   ///< milliseconds between two looks
constexpr u32 c_uLooks = 1000; ///< longer than a recorder waits for a program's answer
constexpr u64 c_uMostBytes = 64 * 1024;
constexpr const char* c_szError = "orvin-osd: "; ///< how a failed recorder's line begins

/// While this file is there, the recorder whose process id it holds goes on.
fs::path MarkFile() { return ConfigFolder() / "recording"; }
/// What the recorder prints.
fs::path TextFile() { return ConfigFolder() / "recording.log"; }

/// 0 if there is none.
u32 Recorder() {
    std::string strText;
    u32 uProcessId = 0;
    if (!ReadFile(MarkFile(), c_uMostBytes, strText) || !ParseProcessId(strText, uProcessId)) return 0;
    return uProcessId;
}

bool WaitFor(const std::function<bool()>& fnHolds) {
    for (u32 u = 0; u < c_uLooks; ++u) {
        if (fnHolds()) return true;
        platform::tool::SleepMilliseconds(c_uPause); // a stop of this program waits for the file too
    }
    return fnHolds();
}

void RemoveMark() {
    std::error_code error;
    fs::remove(MarkFile(), error);
}

Result FolderOfRecordings(fs::path& path) {
    const std::string strChosen = SettingNow("record-folder");
    path = strChosen != "none" ? PathOfText(strChosen) : ConfigFolder() / "recordings";
    std::error_code error;
    if (strChosen == "none") fs::create_directories(path, error);
    return fs::is_directory(path, error) ? Result{} : Result::Fail("there is no folder " + TextOfPath(path));
}

/// A file that is not there yet.
fs::path NewFile(const fs::path& pathFolder, const std::string& strProgram) {
    const std::string strName = RecordingName(strProgram);
    std::error_code error;
    fs::path path = pathFolder / PathOfText(strName + ".csv");
    for (u32 u = 2; fs::exists(path, error); ++u)
        path = pathFolder / PathOfText(strName + "-" + std::to_string(u) + ".csv");
    return path;
}

/// A recorder that has ended told why.
Result Outcome() {
    const std::string strText = LastRecordingText();
    if (strText.starts_with(c_szError)) return Result::Fail(strText.substr(std::string(c_szError).size()));
    return strText.empty() ? Result::Fail("the recording has ended without a word") : Result{};
}

Result Start(u32 uProcessId, const fs::path& pathFile, const std::string& strLibrary, u32& uRecorder) {
    std::vector<std::string> listWords{"record",  std::to_string(uProcessId), "-o", TextOfPath(pathFile),
                                       "--while", TextOfPath(MarkFile())};
    if (!strLibrary.empty()) listWords.insert(listWords.end(), {"--library", strLibrary});
    Result st = WriteWhole(MarkFile(), "0"); // ahead of who looks for it
    if (st) st = platform::tool::StartApart(listWords, TextOfPath(TextFile()), uRecorder);
    if (st) st = WriteWhole(MarkFile(), std::to_string(uRecorder));
    if (!st) RemoveMark();
    return st;
}

void Say(const std::string& strText) {
    std::printf("%s\n", Printable(strText).c_str());
    std::fflush(stdout);
}

} // namespace

bool IsRecording() {
    const u32 uRecorder = Recorder();
    return uRecorder != 0 && IsAlive(uRecorder) && IsCompanion(uRecorder);
}

std::string LastRecordingText() {
    std::string strText;
    ReadFile(TextFile(), c_uMostBytes, strText);
    while (!strText.empty() && (strText.back() == '\n' || strText.back() == '\r')) strText.pop_back();
    const size_t uLine = strText.find_last_of('\n');
    return uLine == std::string::npos ? strText : strText.substr(uLine + 1);
}

Result BeginRecording(const ControlLibrary& stLibrary, const std::string& strLibrary) {
    u32 uProcessId = 0, uRecorder = 0;
    fs::path path;
    Result st = PickProgram(stLibrary, uProcessId);
    if (st) st = FolderOfRecordings(path);
    if (!st) return st;
    const std::string strProgram = platform::tool::InspectProcess(uProcessId).strName;
    path = NewFile(path, strProgram);
    st = Start(uProcessId, path, strLibrary, uRecorder);
    if (!st) return st;
    std::error_code error;
    bool bBegun = false;
    WaitFor([&] {
        bBegun = fs::exists(path, error);
        return bBegun || platform::tool::IsProcessGone(uRecorder, 0);
    });
    if (bBegun) {
        Say("recording " + strProgram + " (" + std::to_string(uProcessId) + ") to " + TextOfPath(path));
        return {};
    }
    RemoveMark();
    return Outcome();
}

Result EndRecording() {
    const u32 uRecorder = Recorder();
    RemoveMark();
    if (!WaitFor([&] { return platform::tool::IsProcessGone(uRecorder, 0); }))
        return Result::Fail("the recording does not end (process " + std::to_string(uRecorder) + ")");
    const Result st = Outcome();
    if (st) Say(LastRecordingText());
    return st;
}

} // namespace companion::keys
