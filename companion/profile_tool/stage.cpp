#include "companion/profile_tool/stage.h"
#include "companion/os.h"
#include <algorithm>
#include <array>
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

Result CopyFile(const fs::path& pathFrom, const fs::path& pathTo, Budget& stBudget) {
    std::error_code error;
    const u64 uSize = fs::file_size(pathFrom, error);
    if (!error && !stBudget.Take(uSize))
        return Result::Fail("the folder " + TextOfPath(pathFrom.parent_path()) +
                            " holds too much for a profile");
    fs::create_directories(pathTo.parent_path(), error);
    if (fs::copy_file(pathFrom, pathTo, fs::copy_options::overwrite_existing, error)) return {};
    return Result::Fail("cannot copy " + TextOfPath(pathFrom) + ": " + error.message());
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
            CopyFile(it->path(), pathTo / it->path().lexically_relative(pathFrom), stBudget);
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

Stage::~Stage() {
    std::error_code error;
    if (!m_pathRoot.empty()) fs::remove_all(m_pathRoot, error);
}

fs::path Stage::DataFolder() const { return m_pathRoot / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Data"; }

Result Stage::MakeRoot() {
    const fs::path pathTemp = PathOfText(os::TempFolder());
    std::error_code error;
    for (u32 u = 0; u < 100; ++u) {
        m_pathRoot = pathTemp / ("orvin-" + std::to_string(os::OwnProcessId()) + "-" + std::to_string(u));
        if (fs::create_directory(m_pathRoot, error)) return {};
    }
    m_pathRoot.clear();
    return Result::Fail("cannot make a folder in " + TextOfPath(pathTemp) + ": " + error.message());
}

Result Stage::Prepare(const fs::path& pathData, const ProfilePlace& stProfile, FontFiles eFontFiles) {
    std::error_code error;
    Result stResult = m_pathRoot.empty() ? MakeRoot() : Result{};
    if (!stResult) return stResult;
    const fs::path pathStage = DataFolder();
    fs::remove_all(pathStage, error);
    fs::create_directories(pathStage, error);
    const auto fnAll = [](const fs::path&) { return true; };
    const bool bFonts = eFontFiles == FontFiles::Copied;
    const auto fnFont = [&](const fs::path& path) { return bFonts && IsFontFile(path); };
    const auto fnPart = [&](const fs::path& path) { return bFonts || !IsFontFile(path); };
    const auto fnMissing = [&](const fs::path& path) { return IsMissing(pathStage / path.filename()); };
    stResult = CopyFiles(pathData, pathStage, false, fnAll);
    const fs::path pathOwn = PathOfText(os::OwnFolder());
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
