#include "companion/profile_folder.h"
#include "companion/utf.h"
#include "platform/segment.h"
#include "platform/tool.h"
#include <algorithm>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

constexpr const char* kDocument = "OSD.xml";

bool HasDocument(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path / kDocument, error);
}

/// The place of a path that names a folder, or a document in it.
fs::path FolderOfPath(const std::string& strProfile) {
    std::error_code error;
    fs::path path = fs::absolute(PathOfText(strProfile), error).lexically_normal();
    if (fs::is_regular_file(path, error)) path = path.parent_path();
    return path.has_filename() ? path : path.parent_path();
}

/// Whether a place lies inside a folder; a copy would then go into itself for ever.
bool Contains(const fs::path& pathFolder, const fs::path& path) {
    std::error_code error;
    const fs::path pathRelative =
        fs::weakly_canonical(path, error).lexically_relative(fs::weakly_canonical(pathFolder, error));
    return !pathRelative.empty() && *pathRelative.begin() != "..";
}

} // namespace

fs::path PathOfText(const std::string& strUtf8) {
    return fs::path(std::u8string(strUtf8.begin(), strUtf8.end()));
}

std::string TextOfPath(const fs::path& path) {
    const std::u8string strText = path.u8string();
    return {strText.begin(), strText.end()};
}

bool ReadFile(const fs::path& path, u64 uMost, std::string& strBytes) {
    strBytes.clear();
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return false; // another kind may never end, or never begin
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    std::string strPiece(static_cast<size_t>(std::min<u64>(uMost, 64 * 1024)), '\0');
    while (file && strBytes.size() < uMost) {
        const u64 uWanted = std::min<u64>(uMost - strBytes.size(), strPiece.size());
        file.read(strPiece.data(), static_cast<std::streamsize>(uWanted));
        strBytes.append(strPiece, 0, static_cast<size_t>(file.gcount()));
    }
    return true;
}

std::string ProfileNameFault(const std::string& strName) {
    std::u16string wzName;
    if (!UnitsFromUtf8(strName, wzName)) return "is not valid text";
    if (wzName.empty()) return "is empty";
    if (wzName.size() >= g_uProfileNameUnits)
        return "is longer than " + std::to_string(g_uProfileNameUnits - 1) + " units";
    constexpr std::u16string_view wzRefused = u"\\/:*?\"<>|";
    const bool bRefused = std::any_of(wzName.begin(), wzName.end(), [&](char16_t c) {
        return c < 0x20 || (c >= 0x7F && c < 0xA0) || wzRefused.find(c) != std::u16string_view::npos;
    });
    // Windows drops dots and blanks at the end of a folder's name, so another folder would be meant.
    const bool bOddEnd = wzName.back() == u'.' || wzName.back() == u' ' || wzName.front() == u' ';
    return bRefused || bOddEnd ? "must be one plain folder name" : "";
}

Result FindDataFolder(const std::string& strChosen, fs::path& pathOut) {
    if (!strChosen.empty()) {
        pathOut = PathOfText(strChosen);
        std::error_code error;
        if (fs::is_directory(pathOut, error)) return {};
        return Result::NotFound("there is no folder " + strChosen);
    }
    const std::string strCommon = platform::tool::CommonDataFolder();
    if (strCommon.empty()) return Result::NotFound("the system tells no folder for application data");
    pathOut = PathOfText(strCommon) / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Data";
    return {};
}

fs::path ProfileFolder(const fs::path& pathData, const std::string& strName) {
    return pathData / "Profiles" / PathOfText(strName);
}

std::vector<std::string> ProfileNames(const fs::path& pathData) {
    std::vector<std::string> listNames;
    std::error_code error;
    for (fs::directory_iterator it(pathData / "Profiles", error), end; !error && it != end;
         it.increment(error)) {
        if (HasDocument(it->path())) listNames.push_back(TextOfPath(it->path().filename()));
    }
    std::sort(listNames.begin(), listNames.end());
    return listNames;
}

bool IsProfilePath(const std::string& strProfile) {
    return strProfile == "." || strProfile == ".." || strProfile.find_first_of("/\\") != std::string::npos;
}

Result FindProfile(const fs::path& pathData, const std::string& strProfile, ProfilePlace& stPlace) {
    if (IsProfilePath(strProfile)) {
        stPlace.pathFolder = FolderOfPath(strProfile);
        stPlace.strName = TextOfPath(stPlace.pathFolder.filename());
    } else {
        const std::string strFault = ProfileNameFault(strProfile);
        if (!strFault.empty()) return Result::NotFound("the profile name " + strProfile + " " + strFault);
        stPlace.pathFolder = ProfileFolder(pathData, strProfile);
        stPlace.strName = strProfile;
    }
    if (HasDocument(stPlace.pathFolder)) return {};
    return Result::NotFound("there is no " + TextOfPath(stPlace.pathFolder / kDocument));
}

Result CopyProfile(const fs::path& pathData, const std::string& strName, const std::string& strFrom) {
    const std::string strFault = ProfileNameFault(strName);
    if (!strFault.empty()) return Result::Usage("the profile name " + strName + " " + strFault);
    ProfilePlace stFrom;
    const Result stFound = FindProfile(pathData, strFrom, stFrom);
    if (!stFound) return stFound;
    const fs::path pathNew = ProfileFolder(pathData, strName);
    std::error_code error;
    if (fs::exists(fs::symlink_status(pathNew, error)))
        return Result::Fail("the profile " + strName + " exists already: " + TextOfPath(pathNew));
    if (Contains(stFrom.pathFolder, pathNew))
        return Result::Fail("the folder " + TextOfPath(stFrom.pathFolder) + " holds the new profile");
    fs::create_directories(pathNew.parent_path(), error);
    fs::copy(stFrom.pathFolder, pathNew, fs::copy_options::recursive, error);
    if (!error) return {};
    const std::string strWhy = error.message();
    fs::remove_all(pathNew, error);
    return Result::Fail("cannot copy to " + TextOfPath(pathNew) + ": " + strWhy);
}

} // namespace companion
