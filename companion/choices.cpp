#include "companion/choices.h"
#include "companion/profile_folder.h"
#include "companion/programs.h"
#include "companion/segment_view.h"
#include "companion/utf.h"
#include "companion/whole_file.h"
#include "platform/tool.h"
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

using Json = nlohmann::json;

constexpr u64 kMostBytes = 1024 * 1024;
constexpr const char* kFile = "choices.json";
constexpr const char* kProfile = "profile";
constexpr const char* kPrograms = "programs";
constexpr const char* kSettings = "settings";

fs::path ChoicesFile() {
    const fs::path path = ConfigFolder();
    return path.empty() ? path : path / kFile;
}

/// A profile's name out of a file; empty for what no profile can be called.
std::string NameIn(const Json& js) {
    if (!js.is_string()) return {};
    const auto strName = js.get<std::string>();
    return ProfileNameFault(strName).empty() ? strName : std::string();
}

void TakePrograms(const Json& js, Choices& stChoices) {
    for (const auto& [strProgram, jsName] : js.items())
        if (const std::string strName = NameIn(jsName); !strName.empty())
            stChoices.mapPrograms[PlainProgramName(strProgram)] = strName;
}

void TakeSettings(const Json& js, Choices& stChoices) {
    for (const auto& [strName, jsValue] : js.items())
        if (jsValue.is_string()) stChoices.mapSettings[strName] = jsValue.get<std::string>();
}

/// Reads, changes and writes the file.
template <class Change> Result Remember(Change fnChange) {
    Choices stChoices;
    const Result stRead = ReadChoices(stChoices);
    if (!stRead) return stRead;
    fnChange(stChoices);
    return WriteChoices(stChoices);
}

/// For commands that do without the file.
Choices ChoicesOrNone() {
    Choices stChoices;
    const Result stRead = ReadChoices(stChoices);
    if (!stRead) std::fprintf(stderr, "orvin-osd: %s\n", Printable(stRead.strError).c_str());
    return stChoices;
}

/// The profile of all programs in the segment; empty for none.
std::string GlobalProfile(const stSharedSegment& stSegment) {
    return Utf8FromUnits(stSegment.wzGlobalProfile, std::size(stSegment.wzGlobalProfile));
}

/// Enters a profile for a process that has none of its own. False if it has one, or there is no room.
bool GiveProfile(const ControlLibrary& stLibrary, u32 uProcessId, const std::string& strProfile) {
    const auto pSnapshot = Snapshot(stLibrary.pSegment);
    auto& aTable = pSnapshot->ProcessProfile;
    const bool bHasOne = std::any_of(std::begin(aTable), std::end(aTable),
                                     [&](const stProcessProfile& st) { return st.uProcessId == uProcessId; });
    if (bHasOne || !SetProcessProfile(aTable, uProcessId, &strProfile, IsAlive)) return false;
    stLibrary.fnSetProcessProfiles(aTable);
    return true;
}

} // namespace

std::string PlainProgramName(const std::string& strProgram) {
    std::string strName = strProgram.substr(strProgram.find_last_of("/\\") + 1);
    std::transform(strName.begin(), strName.end(), strName.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (strName.ends_with(".exe")) strName.resize(strName.size() - 4);
    return strName;
}

std::string ChoicesText(const Choices& stChoices) {
    Json js = Json::object();
    if (!stChoices.strProfile.empty()) js[kProfile] = stChoices.strProfile;
    if (!stChoices.mapPrograms.empty()) js[kPrograms] = stChoices.mapPrograms;
    if (!stChoices.mapSettings.empty()) js[kSettings] = stChoices.mapSettings;
    return js.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

bool ParseChoices(const std::string& strText, Choices& stChoices) {
    const Json js = Json::parse(strText, nullptr, false);
    if (!js.is_object()) return false;
    Choices st;
    if (js.contains(kProfile)) st.strProfile = NameIn(js[kProfile]);
    if (js.contains(kPrograms) && js[kPrograms].is_object()) TakePrograms(js[kPrograms], st);
    if (js.contains(kSettings) && js[kSettings].is_object()) TakeSettings(js[kSettings], st);
    stChoices = std::move(st);
    return true;
}

fs::path ConfigFolder() {
    const std::string strFolder = platform::tool::ConfigFolder();
    return strFolder.empty() ? fs::path() : PathOfText(strFolder);
}

Result ReadChoices(Choices& stChoices) {
    stChoices = {};
    const fs::path path = ChoicesFile();
    std::error_code error;
    if (path.empty() || !fs::exists(path, error)) return {};
    std::string strText;
    if (!fs::is_regular_file(path, error) || !ReadFile(path, kMostBytes, strText))
        return Result::Fail("cannot read " + TextOfPath(path));
    if (!ParseChoices(strText, stChoices))
        return Result::Fail(TextOfPath(path) + " is not understood; remove it to choose anew");
    return {};
}

Result WriteChoices(const Choices& stChoices) {
    const fs::path path = ChoicesFile();
    if (path.empty()) return Result::Fail("the system tells no folder for a user's settings");
    return WriteWhole(path, ChoicesText(stChoices));
}

Result RememberForAll(const std::string& strProfile) {
    return Remember([&](Choices& st) { st.strProfile = strProfile; });
}

Result RememberFor(const std::string& strProgram, const std::string& strProfile) {
    return Remember([&](Choices& st) {
        if (strProfile.empty())
            st.mapPrograms.erase(PlainProgramName(strProgram));
        else
            st.mapPrograms[PlainProgramName(strProgram)] = strProfile;
    });
}

Result RememberSetting(const std::string& strName, const std::string& strValue) {
    return Remember([&](Choices& st) {
        if (strValue.empty())
            st.mapSettings.erase(strName);
        else
            st.mapSettings[strName] = strValue;
    });
}

void ApplyChoices(const ControlLibrary& stLibrary) {
    const Choices stChoices = ChoicesOrNone();
    if (!stChoices.strProfile.empty() && GlobalProfile(*Snapshot(stLibrary.pSegment)).empty())
        SetProfileOfAll(stLibrary, stChoices.strProfile);
    if (stChoices.mapPrograms.empty()) return;
    for (const Instance& st : Programs(stLibrary)) {
        const std::string strName = platform::tool::InspectProcess(st.uProcessId).strName;
        const auto it = stChoices.mapPrograms.find(PlainProgramName(strName));
        if (it != stChoices.mapPrograms.end() && GiveProfile(stLibrary, st.uProcessId, it->second))
            ReloadProcess(stLibrary, st.uProcessId);
    }
}

void ApplyChoiceOf(const ControlLibrary& stLibrary, const std::string& strProgram, u32 uProcessId) {
    if (stLibrary.pSegment == nullptr) return;
    const Choices stChoices = ChoicesOrNone();
    const auto it = stChoices.mapPrograms.find(PlainProgramName(strProgram));
    if (it != stChoices.mapPrograms.end()) GiveProfile(stLibrary, uProcessId, it->second);
}

std::string ProfileFor(const ControlLibrary& stLibrary, const std::string& strProgram) {
    Choices stChoices;
    ReadChoices(stChoices);
    const auto it = stChoices.mapPrograms.find(PlainProgramName(strProgram));
    if (it != stChoices.mapPrograms.end()) return it->second;
    const std::string strName =
        stLibrary.pSegment ? GlobalProfile(*Snapshot(stLibrary.pSegment)) : stChoices.strProfile;
    return strName.empty() ? "Default" : strName;
}

} // namespace companion
