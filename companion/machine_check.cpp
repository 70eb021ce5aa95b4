#include "companion/machine_check.h"
#include "companion/choices.h"
#include "companion/profile_folder.h"
#include "companion/readiness.h"
#include "companion/segment_view.h"
#include "companion/sensors/publisher.h"
#include "companion/shader_check.h"
#include "companion/user_data.h"
#include "platform/tool.h"
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace companion {
namespace {

constexpr const char* kOk = "ok";

std::string Remedy() {
    return InstalledData().empty() ? "'./orvin install' lays it out." : "'orvin-osd setup' lays it out.";
}

MachineCheck Sound(const char* szName, std::string strState = kOk) {
    return {szName, std::move(strState), false, {}};
}

MachineCheck Faulty(const char* szName, Remark stRemark) { return {szName, "", true, {std::move(stRemark)}}; }

MachineCheck CheckSegment(const ControlLibrary& stLibrary) {
    if (stLibrary.strSegmentNote.empty()) return Sound("shared memory");
    MachineCheck st =
        Faulty("shared memory",
               {"Another user has this system's usual place: " + stLibrary.strSegmentNote + ".",
                "Whoever starts the overlay first on a machine gets the plain name.",
                "Nothing has to be done; programs and orvin-osd of one user find each other all the same."});
    st.bFault = false;
    return st;
}

MachineCheck CheckLibrary(const ControlLibrary&) {
    const Result st = platform::tool::CanRunWithOverlay(LibraryPath(""));
    if (st) return Sound("library");
    return Faulty("library", {"Programs cannot be started with the overlay: " + st.strError + ".",
                              "Files of the package are missing, or lie where they cannot be used.",
                              "Install the package anew, into a folder without blanks and colons."});
}

/// What nothing can be said of while the folder itself is missing, which is told once.
constexpr const char* kNotLooked = "not looked at without a data folder";

bool IsDataThere(Result& stFound, fs::path& pathData) {
    std::error_code error;
    stFound = FindDataFolder("", pathData);
    return stFound && fs::is_directory(pathData, error);
}

MachineCheck CheckData(const ControlLibrary&) {
    fs::path pathData;
    Result stFound;
    if (IsDataThere(stFound, pathData)) return Sound("data folder", TextOfPath(pathData));
    return Faulty("data folder", {stFound ? "There is no data folder " + TextOfPath(pathData) + "."
                                          : "The system tells no place for the data folder.",
                                  "It has not been laid out for this user, or was removed.", Remedy()});
}

MachineCheck CheckShaders(const ControlLibrary&) {
    MachineCheck st = Sound("shaders");
    fs::path pathData;
    Result stFound;
    if (!IsDataThere(stFound, pathData)) return Sound("shaders", kNotLooked);
    for (const std::string& strFault : ShaderFaults(pathData))
        st.listRemarks.push_back({"The " + strFault + ".",
                                  "Without its shader files the overlay cannot draw, and stays away.",
                                  Remedy()});
    st.bFault = !st.listRemarks.empty();
    return st;
}

MachineCheck CheckEnabled(const ControlLibrary& stLibrary) {
    if (stLibrary.pSegment->bGlobalEnable != 0) return Sound("switch", "on");
    return Faulty("switch", {"The overlay is switched off for every program.",
                             "Somebody used 'orvin-osd off', or a key that does the same.",
                             "'orvin-osd on' switches it on again."});
}

MachineCheck CheckRecords(const ControlLibrary& stLibrary) {
    const auto pSegment = Snapshot(stLibrary.pSegment);
    if (!IsFull(pSegment->CommandTable) && !IsFull(pSegment->StatusTable)) return Sound("records");
    return Faulty("records", {"All 100 records of programs are taken.",
                              "So many programs carry the overlay, or were killed with it.",
                              "'orvin-osd status' frees those of ended programs."});
}

Remark ProfileRemark(const std::string& strProfile, const Result& stGood, const std::string& strFor) {
    const bool bMissing = stGood.iCode == kNotFound;
    return {bMissing ? "There is no profile " + strProfile + strFor + "."
                     : "The profile " + strProfile + strFor + " cannot be used: " + stGood.strError + ".",
            bMissing ? "Its folder was removed or renamed, or the data folder is not the one that was meant."
                     : "A file of it is missing or damaged.",
            bMissing
                ? "'orvin-osd profile list' lists what there is; 'orvin-osd profile use NAME' takes another."
                : "'orvin-osd profile check " + strProfile + "' tells what is wrong, with file and line."};
}

MachineCheck CheckProfile(const ControlLibrary& stLibrary) {
    const std::string strProfile = ProfileFor(stLibrary, "");
    fs::path pathData;
    Result stFound;
    if (!IsDataThere(stFound, pathData)) return Sound("profile", kNotLooked);
    const Result stGood = NeedGoodProfile(strProfile, "", true);
    return stGood ? Sound("profile", strProfile) : Faulty("profile", ProfileRemark(strProfile, stGood, ""));
}

/// Those that are remembered for single programs: only whether they are there.
MachineCheck CheckChoices(const ControlLibrary&) {
    Choices stChoices;
    fs::path pathData;
    const Result stRead = ReadChoices(stChoices);
    if (!stRead)
        return Faulty("choices", {"What you chose cannot be read: " + stRead.strError + ".",
                                  "The file was edited, or is damaged.",
                                  "Mend the file or remove it, and choose anew."});
    MachineCheck st = Sound("choices");
    if (!FindDataFolder("", pathData)) return st;
    std::error_code error;
    for (const auto& [strProgram, strProfile] : stChoices.mapPrograms)
        if (!fs::exists(ProfileFolder(pathData, strProfile) / "OSD.xml", error))
            st.listRemarks.push_back(ProfileRemark(strProfile, Result::NotFound(""), " for " + strProgram));
    st.bFault = !st.listRemarks.empty();
    return st;
}

MachineCheck CheckFeed(const ControlLibrary& stLibrary) {
    const FeedState stFeed =
        LookAtFeed(*Snapshot(stLibrary.pSegment), sensors::TimeNow(), &platform::tool::IsProcessGone);
    Remark stRemark = JudgeFeed(stFeed);
    if (stRemark.strSeen.empty()) return Sound("feed", "alive");
    return {"feed", "", stFeed.eLife == FeedLife::Dead, {std::move(stRemark)}};
}

/// A file or folder that a setting names; empty if it names none or it is there.
std::string MissingPlace(const SettingRow& row, const StoredValue& stValue) {
    fs::path path = PathOfText(stValue.strText), pathData;
    if (stValue.strText.empty()) return {};
    std::error_code error;
    if (row.eKind == SettingKind::Folder) return fs::is_directory(path, error) ? "" : TextOfPath(path);
    if (row.eKind == SettingKind::Language && FindDataFolder("", pathData))
        path = pathData / "Languages" / path;
    else if (row.eKind != SettingKind::File)
        return {};
    return fs::is_regular_file(path, error) ? "" : TextOfPath(path);
}

void JudgePlace(const SettingRow& row, const StoredValue& stValue, MachineCheck& st) {
    const std::string strMissing = MissingPlace(row, stValue);
    if (strMissing.empty()) return;
    st.listRemarks.push_back(
        {"The setting " + std::string(row.szName) + " names " + strMissing + ", which is not there.",
         "It was moved or removed, or the setting was written by hand.",
         "'orvin-osd config " + std::string(row.szName) + " --default' takes it back."});
}

MachineCheck CheckSettings(const ControlLibrary&) {
    MachineCheck st = Sound("settings");
    std::set<std::string> setFaults; // a file that cannot be read is one fault, not one a setting
    for (const SettingRow& row : SettingRows()) {
        std::optional<StoredValue> stValue;
        const Result stRead = ReadSetting(row, stValue);
        if (!stRead && setFaults.insert(stRead.strError).second)
            st.listRemarks.push_back({"Settings cannot be read: " + stRead.strError + ".",
                                      "The file is damaged, or its data folder is missing.", Remedy()});
        if (!stValue) continue;
        if (Remark stRemark = JudgeSetting(row, *stValue); !stRemark.strSeen.empty())
            st.listRemarks.push_back(std::move(stRemark));
        else
            JudgePlace(row, *stValue, st);
    }
    st.bFault = !st.listRemarks.empty();
    return st;
}

constexpr MachineCheck (*kBasic[])(const ControlLibrary&) = {CheckSegment, CheckData, CheckShaders};
constexpr MachineCheck (*kAll[])(const ControlLibrary&) = {
    CheckLibrary, CheckSegment,  CheckData,    CheckShaders, CheckProfile,
    CheckChoices, CheckSettings, CheckEnabled, CheckRecords, CheckFeed};

} // namespace

Remark JudgeSetting(const SettingRow& row, const StoredValue& stValue) {
    const bool bNumber = row.eKind == SettingKind::Switch || row.eKind == SettingKind::Words ||
                         row.eKind == SettingKind::Number || row.eKind == SettingKind::Color;
    const bool bKind = bNumber == stValue.uNumber.has_value();
    const std::string strText = SettingText(row, stValue);
    StoredValue stAgain;
    if (bKind && (!bNumber || ParseSetting(row, strText, stAgain))) return {};
    const std::string strName = row.szName;
    return {bKind ? "The setting " + strName + " is " + strText + ", but it takes " + RangeText(row) + "."
                  : "The setting " + strName + " is of the wrong kind; it takes " + RangeText(row) + ".",
            "It was written by hand, or by another program.",
            "'orvin-osd config " + strName + " --default' puts back what is shipped."};
}

Remark JudgeFeed(const FeedState& st) {
    if (st.eLife == FeedLife::Alive) return {};
    if (st.eLife == FeedLife::Dead)
        return {"Values of a feed that was killed stand still on the screen, " + AgeText(st.uAge) + " old.",
                "It could not take them back.",
                "'orvin-osd status' takes them back; 'orvin-osd feed' publishes new ones."};
    if (st.uValues > 0)
        return {"No feed is alive; values that somebody published once stand.",
                "'set', 'feed --once' or another program published them.",
                "'orvin-osd feed' publishes those of this machine and keeps them moving."};
    return {"No feed is alive, so temperatures, clocks and loads are not shown.",
            "Programs measure their own frames only; this machine's sensors come from a feed.",
            "'orvin-osd feed' publishes them."};
}

std::vector<MachineCheck> CheckMachine(const ControlLibrary& stLibrary) {
    std::vector<MachineCheck> listChecks;
    for (const auto fnCheck : kAll) listChecks.push_back(fnCheck(stLibrary));
    return listChecks;
}

std::vector<Remark> BasicRemarks(const ControlLibrary& stLibrary) {
    std::vector<Remark> listAll;
    for (const auto fnCheck : kBasic) {
        const MachineCheck st = fnCheck(stLibrary);
        listAll.insert(listAll.end(), st.listRemarks.begin(), st.listRemarks.end());
    }
    return listAll;
}

} // namespace companion
