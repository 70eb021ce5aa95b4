#include "companion/profile_commands.h"
#include "companion/choices.h"
#include "companion/profile_folder.h"
#include "companion/readiness.h"
#include "companion/target.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include <algorithm>
#include <cstdio>
#include <iterator>

namespace companion {
namespace {

constexpr const char* kTool = "orvin-profile";

bool IsRemembered(u32 uProcessId) {
    Choices stChoices;
    ReadChoices(stChoices);
    return stChoices.mapPrograms.contains(
        PlainProgramName(platform::tool::InspectProcess(uProcessId).strName));
}

/// Only what passes the checks reaches a program, unless the user insists. No profile shows with a shader
/// that cannot be used, and one of them ends the program.
Result NeedGood(const ProfileOptions& st) {
    if (st.bForce) return {};
    Result stGood = NeedGoodProfile(st.strProfile, st.strData, false);
    if (stGood) stGood = NeedGoodShaders(st.strData);
    if (stGood.iCode == kFailed) stGood.strError += "; --force uses the profile all the same";
    return stGood;
}

Result DoUse(const Options& stOptions) {
    const Result stGood = NeedGood(stOptions.stProfile);
    if (!stGood) return stGood;
    ControlLibrary stLibrary;
    const Result stLoaded = LoadControlLibrary(stOptions.strLibrary, stLibrary);
    return stLoaded ? UseProfile(stLibrary, stOptions.stProfile.strProfile) : stLoaded;
}

/// Running programs with the overlay that have this id or file name.
std::vector<u32> NamedPrograms(const ControlLibrary& stLibrary, const std::string& strProgram) {
    u32 uProcessId = 0;
    std::vector<u32> listIds{0};
    if (ParseProcessId(strProgram, uProcessId))
        listIds[0] = uProcessId;
    else
        listIds = platform::tool::FindProcesses(strProgram);
    const auto listPrograms = Programs(stLibrary);
    std::erase_if(listIds, [&](u32 uId) {
        return std::none_of(listPrograms.begin(), listPrograms.end(),
                            [&](const Instance& st) { return st.uProcessId == uId; });
    });
    return listIds;
}

/// Keeps a process at the profile of all, although one is remembered for its program.
void KeepGlobal(ProfileTable& aTable, u32 uProcessId) {
    const auto it = std::find_if(std::begin(aTable), std::end(aTable), [](const stProcessProfile& st) {
        return st.uProcessId == 0 && st.uThreadId == 0;
    });
    if (it == std::end(aTable)) return;
    it->uProcessId = uProcessId;
    it->bUseGlobal = 1;
}

Result ReloadEach(const ControlLibrary& stLibrary, const std::vector<u32>& listIds) {
    Result stResult;
    for (const u32 uId : listIds) {
        const Result st = ReloadProcess(stLibrary, uId);
        if (!st) stResult = st;
    }
    return stResult;
}

Result DoFor(const Options& stOptions) {
    const ProfileOptions& st = stOptions.stProfile;
    Result stResult = st.bGlobal ? Result{} : NeedGood(st);
    ControlLibrary stLibrary;
    if (stResult) stResult = LoadControlLibrary(stOptions.strLibrary, stLibrary);
    if (!stResult) return stResult;
    u32 uProcessId = 0;
    const bool bNamed = !ParseProcessId(st.strProgram, uProcessId);
    if (bNamed) stResult = RememberFor(st.strProgram, st.bGlobal ? std::string() : st.strProfile);
    if (!stResult) return stResult;
    const std::vector<u32> listIds = NamedPrograms(stLibrary, st.strProgram);
    if (listIds.empty() && !bNamed)
        return Result::NotFound("no running program " + st.strProgram + " carries the overlay");
    if (listIds.empty()) std::puts("no such program carries the overlay now; it holds from its next start");
    const auto pSnapshot = Snapshot(stLibrary.pSegment);
    for (const u32 uId : listIds) {
        if (!SetProcessProfile(pSnapshot->ProcessProfile, uId, st.bGlobal ? nullptr : &st.strProfile,
                               IsAlive))
            return Result::Fail("all records of programs with a profile of their own are taken");
        if (st.bGlobal && !bNamed && IsRemembered(uId)) KeepGlobal(pSnapshot->ProcessProfile, uId);
    }
    stLibrary.fnSetProcessProfiles(pSnapshot->ProcessProfile);
    return ReloadEach(stLibrary, listIds);
}

Result DoNew(const Options& stOptions) {
    const ProfileOptions& st = stOptions.stProfile;
    std::filesystem::path pathData;
    const Result stFound = FindDataFolder(st.strData, pathData);
    if (!stFound) return stFound;
    const std::string strFrom = st.strStyle == "classic" ? "Classic"
                                : st.strStyle == "rv5"   ? "RV5"
                                : st.strStyle.empty()    ? st.strFrom
                                                         : "Default";
    const Result stCopied = CopyProfile(pathData, st.strProfile, strFrom);
    if (stCopied) std::printf("%s\n", Printable(TextOfPath(ProfileFolder(pathData, st.strProfile))).c_str());
    return stCopied;
}

/// Programs see another language with their next layout, so they build one.
Result DoLanguage(const Options& stOptions, const std::vector<std::string>& listWords, int& iExitCode) {
    const Result stDone = platform::tool::RunBeside(kTool, listWords, iExitCode);
    ControlLibrary stLibrary;
    if (stDone && iExitCode == kOk && LoadControlLibrary(stOptions.strLibrary, stLibrary))
        ReloadAll(stLibrary);
    return stDone;
}

} // namespace

Result UseProfile(const ControlLibrary& stLibrary, const std::string& strName) {
    SetProfileOfAll(stLibrary, strName);
    ReloadAll(stLibrary);
    const Result stKept = RememberForAll(strName);
    if (stKept && !NeedHolder(stLibrary))
        std::puts("no program carries the overlay now; it holds from the next start");
    return stKept;
}

Result NeedProfileFolder(const std::string& strName, bool bForce) {
    if (strName.empty() || bForce) return {};
    std::filesystem::path pathData;
    ProfilePlace stPlace;
    Result stFound = FindDataFolder("", pathData);
    if (stFound) stFound = FindProfile(pathData, strName, stPlace);
    return stFound ? stFound : Result::NotFound(stFound.strError + "; --force sets the name all the same");
}

Result PerformProfile(const Options& stOptions, const std::vector<std::string>& listWords, int& iExitCode) {
    switch (stOptions.stProfile.eVerb) {
    case ProfileVerb::Use:
        return DoUse(stOptions);
    case ProfileVerb::For:
        return DoFor(stOptions);
    case ProfileVerb::New:
        return DoNew(stOptions);
    case ProfileVerb::LanguageUse:
    case ProfileVerb::LanguageOff:
        return DoLanguage(stOptions, listWords, iExitCode);
    default:
        return platform::tool::RunBeside(kTool, listWords, iExitCode);
    }
}

} // namespace companion
