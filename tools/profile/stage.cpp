#include "tools/profile/stage.h"
#include "platform/tool.h"
#include <algorithm>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

/// Limits of what is copied: a folder beyond them is no profile, but perhaps somebody's home.
constexpr u64 kMostFiles = 2000;
constexpr u64 kMostBytes = 512u << 20;

struct Budget {
    u64 uFiles = 0, uBytes = 0;

    bool Take(u64 uSize) {
        ++uFiles;
        uBytes += uSize;
        return uFiles <= kMostFiles && uBytes <= kMostBytes;
    }
};

Result CopyFile(const fs::path& pathFrom, const fs::path& pathTo) {
    std::error_code error;
    fs::create_directories(pathTo.parent_path(), error);
    if (fs::copy_file(pathFrom, pathTo, fs::copy_options::overwrite_existing, error)) return {};
    return Result::Fail("cannot copy " + TextOfPath(pathFrom) + ": " + error.message());
}

Result CopyWithin(Budget& stBudget, const fs::path& pathFrom, const fs::path& pathTo) {
    std::error_code error;
    const u64 uSize = fs::file_size(pathFrom, error);
    if (!error && !stBudget.Take(uSize))
        return Result::Fail("the folder " + TextOfPath(pathFrom.parent_path()) +
                            " holds too much for a profile");
    return CopyFile(pathFrom, pathTo);
}

/// Files of a folder; with bDeep those of the folders in it too. Only those that fnWanted takes.
template <class Wanted>
Result CopyFiles(const fs::path& pathFrom, const fs::path& pathTo, bool bDeep, Wanted fnWanted) {
    Budget stBudget;
    std::error_code error;
    for (fs::recursive_directory_iterator it(pathFrom, error), end; !error && it != end;
         it.increment(error)) {
        if (!bDeep) it.disable_recursion_pending();
        std::error_code ignored;
        if (!it->is_regular_file(ignored) || !fnWanted(it->path())) continue;
        const Result stCopied =
            CopyWithin(stBudget, it->path(), pathTo / it->path().lexically_relative(pathFrom));
        if (!stCopied) return stCopied;
    }
    return {};
}

bool IsMissing(const fs::path& path) {
    std::error_code error;
    return !fs::exists(path, error);
}

bool IsFontFile(const fs::path& path) { return path.extension() == ".fnt"; }

} // namespace

fs::path Stage::DataFolder() const { return m_folder.Path() / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Data"; }

Result Stage::MakeEmpty() {
    const Result stMade = m_folder.Path().empty() ? m_folder.Make() : Result{};
    if (!stMade) return stMade;
    std::error_code error;
    fs::remove_all(DataFolder(), error);
    fs::create_directories(DataFolder(), error);
    return {};
}

Result Stage::Prepare(const fs::path& pathData, const ProfilePlace& stProfile, FontFiles eFontFiles) {
    Result stResult = MakeEmpty();
    if (!stResult) return stResult;
    const fs::path pathStage = DataFolder();
    const auto fnAll = [](const fs::path&) { return true; };
    const bool bFonts = eFontFiles == FontFiles::Copied;
    const auto fnFont = [&](const fs::path& path) { return bFonts && IsFontFile(path); };
    const auto fnPart = [&](const fs::path& path) { return bFonts || !IsFontFile(path); };
    const auto fnMissing = [&](const fs::path& path) { return IsMissing(pathStage / path.filename()); };
    stResult = CopyFiles(pathData, pathStage, false, fnAll);
    if (stResult) stResult = CopyFiles(pathData / "Languages", pathStage / "Languages", false, fnAll);
    const fs::path pathOwn = PathOfText(platform::tool::OwnFolder());
    for (const char* szFolder : {"shaders", "data"}) {
        for (const fs::path& pathBeside : {pathOwn / szFolder, pathOwn.parent_path() / szFolder})
            if (stResult) stResult = CopyFiles(pathBeside, pathStage, false, fnMissing);
    }
    if (stResult) {
        const fs::path pathDefault = fs::path("Profiles") / "Default";
        stResult = CopyFiles(pathData / pathDefault, pathStage / pathDefault, false, fnFont);
    }
    if (!stResult) return stResult;
    return CopyFiles(stProfile.pathFolder, ProfileFolder(pathStage, stProfile.strName), true, fnPart);
}

Result Stage::PrepareLayout(const fs::path& pathData, const ProfilePlace& stProfile,
                            const std::vector<fs::path>& listFiles) {
    constexpr const char *szDocument = "OSD.xml", *szReference = "OSD_Ref.xml";
    const Result stMade = MakeEmpty();
    if (!stMade) return stMade;
    const fs::path pathProfile = ProfileFolder(DataFolder(), stProfile.strName);
    const Result stCopied = CopyFile(stProfile.pathFolder / szDocument, pathProfile / szDocument);
    if (!stCopied) return stCopied;
    // The least document that opens stands in for one that is not there.
    if (!CopyFile(pathData / szReference, DataFolder() / szReference))
        std::ofstream(DataFolder() / szReference, std::ios::binary) << "<OSD/>\n";
    std::error_code ignored;
    for (const fs::path& path : listFiles) {
        if (fs::is_regular_file(stProfile.pathFolder / path, ignored) && IsMissing(pathProfile / path))
            CopyFile(stProfile.pathFolder / path, pathProfile / path);
    }
    return {};
}

std::vector<FileStamp> LookAt(const fs::path& pathFolder) {
    std::vector<FileStamp> listStamps;
    std::error_code error;
    for (fs::recursive_directory_iterator it(pathFolder, error), end;
         !error && it != end && listStamps.size() < kMostFiles; it.increment(error)) {
        std::error_code ignored;
        if (!it->is_regular_file(ignored)) continue;
        listStamps.push_back({TextOfPath(it->path()), it->last_write_time(ignored), it->file_size(ignored)});
    }
    std::sort(listStamps.begin(), listStamps.end(),
              [](const FileStamp& a, const FileStamp& b) { return a.strName < b.strName; });
    return listStamps;
}

} // namespace companion
