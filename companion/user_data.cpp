#include "companion/user_data.h"
#include "companion/profile_folder.h"
#include "platform/tool.h"
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace companion {
namespace {

/// Folders that are made in the user's place; what lies in them is linked, folders (profiles) too.
const char* const g_aszFolders[] = {"Data", "Data/Profiles", "Settings"};

constexpr u64 kMostBytes = 1024 * 1024; ///< of settings

bool IsMadeFolder(const fs::path& path) {
    for (const char* szFolder : g_aszFolders)
        if (path == fs::path(szFolder)) return true;
    return false;
}

std::vector<fs::path> NamesIn(const fs::path& pathFolder) {
    std::vector<fs::path> listNames;
    std::error_code error;
    for (fs::directory_iterator it(pathFolder, error), end; !error && it != end; it.increment(error))
        listNames.push_back(it->path().filename());
    return listNames;
}

bool LeadsInto(const fs::path& pathLink, const fs::path& pathInstalled) {
    std::error_code error;
    const fs::path pathTarget = fs::read_symlink(pathLink, error);
    if (error) return false;
    const fs::path pathInside = pathTarget.lexically_relative(pathInstalled);
    return !pathInside.empty() && *pathInside.begin() != "..";
}

/// Links out of one folder into the installed data: all of them, or those that lead nowhere.
void RemoveLinks(const fs::path& pathFolder, const fs::path& pathInstalled, bool bAll) {
    std::error_code error;
    for (const fs::path& pathName : NamesIn(pathFolder)) {
        const fs::path path = pathFolder / pathName;
        if (LeadsInto(path, pathInstalled) && (bAll || !fs::exists(path, error))) fs::remove(path, error);
    }
}

Result LinkFolder(const fs::path& pathInstalled, const fs::path& pathUser, const char* szFolder) {
    std::error_code error;
    for (const fs::path& pathName : NamesIn(pathInstalled / szFolder)) {
        const fs::path pathLink = pathUser / szFolder / pathName;
        if (IsMadeFolder(fs::path(szFolder) / pathName)) continue;
        if (fs::symlink_status(pathLink, error).type() != fs::file_type::not_found) continue;
        fs::create_symlink(pathInstalled / szFolder / pathName, pathLink, error);
        if (error && error != std::errc::file_exists) // another companion may do the same now
            return Result::Fail("cannot lay " + TextOfPath(pathLink) + " out: " + error.message());
    }
    return {};
}

/// The user's folder; empty if the system tells none.
fs::path UserFolder() {
    fs::path pathData;
    return FindDataFolder("", pathData) ? pathData.parent_path() : fs::path();
}

} // namespace

fs::path InstalledData() {
    const std::string strInstalled = ORVIN_INSTALLED_DATA; // seen from the program's folder
    if (strInstalled.empty()) return {};
    const fs::path path = (PathOfText(platform::tool::OwnFolder()) / strInstalled).lexically_normal();
    std::error_code error;
    return fs::is_directory(path / "Data", error) ? path : fs::path();
}

Result LinkUserData(const fs::path& pathInstalled, const fs::path& pathUser) {
    for (const char* szFolder : g_aszFolders) {
        std::error_code error;
        fs::create_directories(pathUser / szFolder, error);
        if (error)
            return Result::Fail("cannot make " + TextOfPath(pathUser / szFolder) + ": " + error.message());
        RemoveLinks(pathUser / szFolder, pathInstalled, false);
        const Result stLinked = LinkFolder(pathInstalled, pathUser, szFolder);
        if (!stLinked) return stLinked;
    }
    return {};
}

Result UnlinkUserData(const fs::path& pathInstalled, const fs::path& pathUser) {
    std::error_code error;
    for (const char* szFolder : {"Data/Profiles", "Data", "Settings", "", "..", "../.."}) {
        const fs::path pathFolder = (pathUser / szFolder).lexically_normal();
        RemoveLinks(pathFolder, pathInstalled, true);
        fs::remove(pathFolder.has_filename() ? pathFolder : pathFolder.parent_path(),
                   error); // an empty one only
    }
    return {};
}

void RelinkSettings(const fs::path& pathInstalled, const fs::path& pathUser) {
    const fs::path pathFile = fs::path("Settings") / "settings.ini";
    std::string strInstalled, strUser;
    std::error_code error;
    const bool bRead = !fs::is_symlink(pathUser / pathFile, error) &&
                       ReadFile(pathInstalled / pathFile, kMostBytes, strInstalled) &&
                       ReadFile(pathUser / pathFile, kMostBytes, strUser);
    if (!bRead || strInstalled != strUser) return;
    fs::remove(pathUser / pathFile, error);
    LinkUserData(pathInstalled, pathUser);
}

Result LayOutUserData() {
    const fs::path pathInstalled = InstalledData(), pathUser = UserFolder();
    return pathInstalled.empty() || pathUser.empty() ? Result{} : LinkUserData(pathInstalled, pathUser);
}

Result RemoveUserData() {
    const fs::path pathInstalled = InstalledData(), pathUser = UserFolder();
    return pathInstalled.empty() || pathUser.empty() ? Result{} : UnlinkUserData(pathInstalled, pathUser);
}

void RelinkUserSettings() {
    const fs::path pathInstalled = InstalledData(), pathUser = UserFolder();
    if (!pathInstalled.empty() && !pathUser.empty()) RelinkSettings(pathInstalled, pathUser);
}

} // namespace companion
