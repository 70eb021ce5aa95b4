#include "companion/readiness.h"
#include "companion/choices.h"
#include "companion/profile_folder.h"
#include "companion/shader_check.h"
#include "companion/user_data.h"
#include "platform/tool.h"
#include <vector>

namespace companion {
namespace {

constexpr const char* kTool = "orvin-profile";

/// The command that lays the data folder out.
std::string Remedy() {
    return InstalledData().empty() ? "'./orvin install' lays it out" : "'orvin-osd setup' lays it out";
}

Result NeedDataFolder() {
    std::filesystem::path pathData;
    const Result stFound = FindDataFolder("", pathData);
    if (!stFound) return stFound;
    std::error_code error;
    if (std::filesystem::is_directory(pathData, error)) return {};
    return Result::NotFound("there is no data folder " + TextOfPath(pathData) + "; " + Remedy());
}

/// A failed result with more behind its reason.
Result With(Result stResult, const std::string& strMore) {
    if (!stResult) stResult.strError += "; " + strMore;
    return stResult;
}

} // namespace

Result NeedGoodProfile(const std::string& strProfile, const std::string& strData, bool bSilent) {
    std::vector<std::string> listWords{"profile", "check", strProfile, bSilent ? "--silent" : "--quiet"};
    if (!strData.empty()) listWords.insert(listWords.end(), {"--data", strData});
    int iExitCode = kOk;
    const Result stRun = platform::tool::RunBeside(kTool, listWords, iExitCode);
    if (!stRun || iExitCode == kOk) return stRun;
    if (iExitCode == kNotFound) return Result::NotFound("there is no profile " + strProfile);
    return Result::Fail("the profile " + strProfile + " does not pass");
}

Result NeedGoodShaders(const std::string& strData) {
    std::filesystem::path pathData;
    if (!FindDataFolder(strData, pathData)) return {};
    const std::vector<std::string> listFaults = ShaderFaults(pathData);
    return listFaults.empty() ? Result{} : Result::Fail(listFaults.front());
}

Result NeedReady(const ControlLibrary& stLibrary, const std::string& strProgram) {
    Result stReady = NeedDataFolder();
    if (stReady) stReady = With(NeedGoodShaders(""), Remedy());
    if (!stReady) return stReady;
    const std::string strProfile = ProfileFor(stLibrary, strProgram);
    return With(NeedGoodProfile(strProfile, "", true),
                "'orvin-osd profile check " + strProfile + "' tells why");
}

} // namespace companion
