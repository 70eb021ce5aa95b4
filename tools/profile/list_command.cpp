#include "tools/profile/list_command.h"
#include "companion/profile_commands.h"
#include "companion/profile_folder.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "config/profile/profile_document.h"
#include "platform/tool.h"
#include "tools/profile/program.h"
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <tinyxml2.h>

namespace companion {
namespace {

constexpr const char* kDefaultProfile = "Default";
constexpr const char* kAllPrograms = "all programs";

/// Name of a style for people.
const char* StyleText(u32 uStyle) {
    constexpr const char* aszTexts[] = {"Classic", "RV5", "Custom"};
    return uStyle < 3 ? aszTexts[uStyle] : "Classic (unknown number)";
}

std::string StyleOf(const std::filesystem::path& pathDocument) {
    tinyxml2::XMLDocument document;
    i32 iCode = PROFILE_OK;
    const std::u16string wzPath = pathDocument.u16string();
    if (!g_fnOpenProfileDocument(wzPath.c_str(), document, &iCode)) return "unreadable";
    return StyleText(g_fnLayoutStyleOf(*document.RootElement()));
}

std::string Joined(const std::vector<std::string>& listTexts) {
    std::string strAll;
    for (const std::string& str : listTexts) strAll += (strAll.empty() ? "" : ", ") + str;
    return strAll;
}

/// The row of a profile, made where it has no folder; no name means the default one.
ProfileRow& RowOf(std::vector<ProfileRow>& listRows, const std::string& strName) {
    const std::string strWanted = strName.empty() ? kDefaultProfile : strName;
    const auto it = std::find_if(listRows.begin(), listRows.end(),
                                 [&](const ProfileRow& st) { return st.strName == strWanted; });
    if (it != listRows.end()) return *it;
    return listRows.emplace_back(ProfileRow{strWanted, "missing", {}});
}

} // namespace

void AddUses(const stSharedSegment& stSegment, const std::vector<NamedInstance>& listPrograms,
             std::vector<ProfileRow>& listRows) {
    if (listPrograms.empty()) return;
    const std::string strGlobal = Utf8FromUnits(stSegment.wzGlobalProfile, g_uProfileNameUnits);
    RowOf(listRows, strGlobal).listUses.push_back(kAllPrograms);
    for (const NamedInstance& st : listPrograms) {
        const stProcessProfile* pOwn =
            FindProcessProfile(stSegment.ProcessProfile, st.uProcessId, st.uThreadId);
        if (pOwn == nullptr) continue;
        const std::string strOwn = Utf8FromUnits(pOwn->wzProfileName, g_uProfileNameUnits);
        RowOf(listRows, strOwn).listUses.push_back(st.strName + " (" + std::to_string(st.uProcessId) + ")");
    }
}

void AddChoices(const Choices& stChoices, std::vector<ProfileRow>& listRows) {
    if (!stChoices.strProfile.empty()) {
        std::vector<std::string>& listUses = RowOf(listRows, stChoices.strProfile).listUses;
        if (std::find(listUses.begin(), listUses.end(), kAllPrograms) == listUses.end())
            listUses.push_back("all programs from their next start");
    }
    for (const auto& [strProgram, strProfile] : stChoices.mapPrograms)
        RowOf(listRows, strProfile).listUses.push_back(strProgram);
}

std::string ProfileTableText(const std::vector<ProfileRow>& listRows) {
    std::vector<std::vector<std::string>> listCells;
    for (const ProfileRow& st : listRows) listCells.push_back({st.strName, st.strStyle, Joined(st.listUses)});
    return FormatTable({{"PROFILE"}, {"STYLE"}, {"SHOWN IN"}}, listCells);
}

std::string ProfileJson(const std::vector<ProfileRow>& listRows) {
    auto json = nlohmann::ordered_json::array();
    for (const ProfileRow& st : listRows)
        json.push_back({{"name", st.strName}, {"style", st.strStyle}, {"shownIn", st.listUses}});
    return PrintableJson(json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) + "\n";
}

std::vector<ProfileRow> ReadProfileRows(const std::filesystem::path& pathData) {
    std::vector<ProfileRow> listRows;
    for (const std::string& strName : ProfileNames(pathData))
        listRows.push_back({strName, StyleOf(ProfileFolder(pathData, strName) / "OSD.xml"), {}});
    return listRows;
}

Result ListProfiles(const Options& stOptions, int&) {
    std::filesystem::path pathData;
    const Result stFound = FindDataFolder(stOptions.stProfile.strData, pathData);
    if (!stFound) return stFound;
    std::vector<ProfileRow> listRows = ReadProfileRows(pathData);
    ControlLibrary stLibrary;
    if (LoadControlLibrary(stOptions.strLibrary, stLibrary)) {
        std::vector<NamedInstance> listPrograms;
        for (const Instance& st : Programs(stLibrary))
            listPrograms.push_back(
                {st.uProcessId, st.uThreadId, platform::tool::InspectProcess(st.uProcessId).strName});
        AddUses(*Snapshot(stLibrary.pSegment), listPrograms, listRows);
    }
    Choices stChoices;
    if (ReadChoices(stChoices)) AddChoices(stChoices, listRows);
    if (listRows.empty()) return Result::NotFound("no profiles in " + TextOfPath(pathData / "Profiles"));
    const bool bJson = stOptions.stProfile.bJson;
    std::fputs((bJson ? ProfileJson(listRows) : ProfileTableText(listRows)).c_str(), stdout);
    return {};
}

} // namespace companion
