#include "companion/shot.h"
#include "companion/profile_folder.h"
#include "companion/programs.h"
#include "companion/segment_view.h"
#include "companion/target.h"
#include "companion/utf.h"
#include "platform/tool_settings.h"
#include "platform/tool_shot.h"
#include "shared/commands.h"
#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <set>

namespace companion {
namespace {

namespace fs = std::filesystem;

constexpr u32 c_uPause = 20;                 ///< milliseconds between two looks
constexpr u32 c_uFolderUnits = 127;          ///< longest folder that programs read
constexpr i64 c_iReloadCamera = 16;          ///< bit of the command for positions
constexpr u32 c_uTypes = 4, c_uTypeHeif = 3; ///< single types
constexpr const char* c_aszWords[] = {"bmp", "jpg", "png", "heic", "all"};

bool g_bStopped = false;

/// Looks again and again until the condition holds, for so many seconds at most.
bool WaitFor(u32 uSeconds, const std::function<bool()>& fnHolds) {
    for (u32 u = 0; u <= uSeconds * 1000 / c_uPause; ++u) {
        if (fnHolds()) return true;
        if (platform::tool::WaitForStop(c_uPause)) {
            g_bStopped = true;
            return false;
        }
    }
    return fnHolds();
}

/// Settings of screenshots; a value that is missing has its default.
struct ShotSettings {
    std::string strFolder; ///< empty: the data folder
    u32 uMode = 2;         ///< 1 without the overlay, 2 with it, anything else saves nothing
    u32 uType = 2;         ///< 0 BMP, 1 JPEG, 2 PNG, 3 HEIF, 4 and above BMP, JPEG and PNG
};

struct Target {
    u32 uProcessId = 0;
    std::set<fs::path> setBefore; ///< files of its name that lay there
};

/// Files of a process's screenshots, by all their extensions.
std::set<fs::path> FilesOf(const fs::path& pathFolder, u32 uProcessId, u32 uType) {
    std::set<fs::path> setFiles;
    std::error_code error;
    const std::string strBegin = "Screenshot(" + std::to_string(uProcessId) + ")-";
    const auto listExtensions = ShotExtensions(uType);
    for (fs::directory_iterator it(pathFolder, error), itEnd; !error && it != itEnd; it.increment(error)) {
        const std::string strExtension = TextOfPath(it->path().extension());
        if (TextOfPath(it->path().filename()).starts_with(strBegin) &&
            std::find(listExtensions.begin(), listExtensions.end(), strExtension) != listExtensions.end())
            setFiles.insert(it->path());
    }
    return setFiles;
}

const stProcessRecord* RecordOf(const stSharedSegment& stSegment, u32 uProcessId) {
    const auto uSlot = FindRecord(stSegment.CommandTable, uProcessId);
    return uSlot ? &stSegment.CommandTable[*uSlot] : nullptr;
}

/// A reason that is easily overlooked: a picture takes up to a few dozen megabytes.
std::string SpaceText(const fs::path& pathFolder) {
    constexpr u64 kEnough = u64{64} << 20;
    std::error_code error;
    const fs::space_info st = fs::space(pathFolder, error);
    if (error || st.available >= kEnough) return "";
    return "; the disk there has " + std::to_string(st.available >> 10) + " KB left";
}

std::string Name(u32 uProcessId) { return "process " + std::to_string(uProcessId); }

/// Sends a command to one process and waits until it has taken it.
Result Tell(const ControlLibrary& stLibrary, u32 uProcessId, u32 uCommand, i64 iArgument, u32 uSeconds) {
    u32 uTid = 0;
    {
        const auto pSegment = Snapshot(stLibrary.pSegment);
        const stProcessRecord* const pRecord = RecordOf(*pSegment, uProcessId);
        if (!pRecord) return Result::Fail(Name(uProcessId) + " carries the overlay no more");
        uTid = pRecord->uThreadId;
    }
    WriteFilter(stLibrary, 0, 0, "");
    stLibrary.fnSendCommand(uCommand, uProcessId, uTid, iArgument);
    bool bGone = false;
    const bool bTaken = WaitFor(uSeconds, [&] {
        const auto pSegment = Snapshot(stLibrary.pSegment);
        const stProcessRecord* const pRecord = RecordOf(*pSegment, uProcessId);
        bGone = !pRecord;
        return bGone ||
               (!pRecord->bChanged && !pRecord->Command.bReloadCamera && !pRecord->Command.u8Screenshot);
    });
    if (g_bStopped) return Result::Fail("stopped");
    if (bGone) return Result::Fail(Name(uProcessId) + " ended before it took the command");
    return bTaken ? Result{}
                  : Result::Fail(Name(uProcessId) + " took no command within " + std::to_string(uSeconds) +
                                 " seconds: it presents no frames, or none that the overlay sees");
}

/// Programs that are meant.
Result FindTargets(const ControlLibrary& stLibrary, const Options& stOptions,
                   std::vector<Target>& listTargets) {
    const auto listPrograms = Programs(stLibrary);
    if (listPrograms.empty()) return Result::Fail("no running program carries the overlay");
    if (stOptions.bAll) {
        for (const Instance& st : listPrograms) listTargets.push_back({st.uProcessId, {}});
        return {};
    }
    if (stOptions.strTarget.empty()) {
        if (listPrograms.size() > 1)
            return Result::Fail("several programs carry the overlay: name one, or --all");
        listTargets.push_back({listPrograms.front().uProcessId, {}});
        return {};
    }
    u32 uWanted = 0;
    std::vector<u32> listIds{0};
    if (ParseProcessId(stOptions.strTarget, uWanted))
        listIds[0] = uWanted;
    else
        listIds = platform::tool::FindProcesses(stOptions.strTarget);
    for (const Instance& st : listPrograms)
        if (std::find(listIds.begin(), listIds.end(), st.uProcessId) != listIds.end())
            listTargets.push_back({st.uProcessId, {}});
    if (!listTargets.empty()) return {};
    return Result::Fail("no running program " + stOptions.strTarget + " carries the overlay");
}

constexpr const char *c_szKey = "Camera", *c_szFolder = "DirPath", *c_szMode = "CapMode",
                     *c_szType = "CapType";

/// As programs read them: a value of another kind is as none.
ShotSettings ReadShotSettings() {
    using namespace platform::tool;
    ShotSettings st;
    st.strFolder = SettingText(c_szKey, c_szFolder).value_or(st.strFolder);
    st.uMode = SettingNumber(c_szKey, c_szMode).value_or(st.uMode);
    st.uType = SettingNumber(c_szKey, c_szType).value_or(st.uType);
    return st;
}

std::vector<platform::tool::Setting> SettingsOf(const ShotSettings& st) {
    return {{c_szKey, c_szFolder, {}, st.strFolder, false},
            {c_szKey, c_szMode, st.uMode, "", false},
            {c_szKey, c_szType, st.uType, "", false}};
}

/// The settings that are wanted, and whether they differ from what stands.
ShotSettings Wanted(const Options& stOptions, const ShotSettings& stNow) {
    ShotSettings st = stNow;
    if (!stOptions.strFolder.empty()) {
        std::error_code error;
        st.strFolder = TextOfPath(fs::absolute(PathOfText(stOptions.strFolder), error).lexically_normal());
    }
    if (stOptions.uShotType != g_uNoShotType) st.uType = stOptions.uShotType;
    if (stOptions.bWithoutOverlay) st.uMode = 1;
    return st;
}

bool Differ(const ShotSettings& a, const ShotSettings& b) {
    return a.strFolder != b.strFolder || a.uMode != b.uMode || a.uType != b.uType;
}

Result FolderOf(const ShotSettings& st, fs::path& pathFolder) {
    pathFolder = PathOfText(st.strFolder);
    if (!st.strFolder.empty()) return {};
    const Result stFound = FindDataFolder("", pathFolder);
    return stFound ? stFound : Result::Fail(stFound.strError);
}

/// What keeps a file from being written, as far as it can be seen from here.
Result Check(const ShotSettings& st, const fs::path& pathFolder) {
    const std::string strFolder = TextOfPath(pathFolder);
    std::u16string wstrFolder;
    if (st.uMode != 1 && st.uMode != 2)
        return Result::Fail("the settings say capture mode " + std::to_string(st.uMode) +
                            ", which saves nothing (Camera\\CapMode; --without-overlay is mode 1)");
    if (UnitsFromUtf8(strFolder, wstrFolder) && !st.strFolder.empty() && wstrFolder.size() > c_uFolderUnits)
        return Result::Fail("the folder's path is longer than " + std::to_string(c_uFolderUnits) + " units");
    if (!platform::tool::IsFolder(strFolder)) return Result::Fail("there is no folder " + strFolder);
    if (!platform::tool::CanWriteTo(strFolder)) return Result::Fail("nothing can be written to " + strFolder);
    if (st.uType == c_uTypeHeif && !platform::tool::HasHeifEncoder())
        return Result::Fail("this system has no encoder for HEIC");
    return {};
}

/// Asks one program and waits for its files.
Result ShootOne(const ControlLibrary& stLibrary, const Options& stOptions, const ShotSettings& stSettings,
                const fs::path& pathFolder, Target& stTarget) {
    Result st = Tell(stLibrary, stTarget.uProcessId, COMMAND_POSITIONS, c_iReloadCamera, stOptions.uTimeout);
    if (!st) return st;
    const u8 uByte = 1;
    stTarget.setBefore = FilesOf(pathFolder, stTarget.uProcessId, stSettings.uType);
    stLibrary.fnSetScreenshot(&uByte);
    st = Tell(stLibrary, stTarget.uProcessId, COMMAND_SCREENSHOT, 0, stOptions.uTimeout);
    if (!st) return st;
    std::set<fs::path> setNew;
    const size_t uWanted = ShotExtensions(stSettings.uType).size();
    WaitFor(stOptions.uTimeout, [&] {
        setNew = FilesOf(pathFolder, stTarget.uProcessId, stSettings.uType);
        for (const fs::path& path : stTarget.setBefore) setNew.erase(path);
        return setNew.size() >= uWanted;
    });
    for (const fs::path& path : setNew) std::printf("%s\n", Printable(TextOfPath(path)).c_str());
    std::fflush(stdout);
    if (setNew.size() >= uWanted) return {};
    if (g_bStopped) return Result::Fail("stopped");
    return Result::Fail("no finished file of " + Name(stTarget.uProcessId) + " appeared in " +
                        TextOfPath(pathFolder) + " within " + std::to_string(stOptions.uTimeout) +
                        " seconds" + SpaceText(pathFolder));
}

Result ShootAll(const ControlLibrary& stLibrary, const Options& stOptions, const ShotSettings& stSettings,
                const fs::path& pathFolder, std::vector<Target>& listTargets) {
    Result stResult;
    for (Target& stTarget : listTargets) {
        const Result st = ShootOne(stLibrary, stOptions, stSettings, pathFolder, stTarget);
        if (!st && stResult) stResult = st;
        if (!st && stResult.strError != st.strError)
            std::fprintf(stderr, "orvin-osd: %s\n", Printable(st.strError).c_str());
    }
    return stResult;
}

/// Programs go back to what stands in the store now; one that is gone need not.
void ReloadSettings(const ControlLibrary& stLibrary, const std::vector<Target>& listTargets) {
    for (const Target& st : listTargets) {
        const auto pSegment = Snapshot(stLibrary.pSegment);
        const stProcessRecord* const pRecord = RecordOf(*pSegment, st.uProcessId);
        if (!pRecord) continue;
        WriteFilter(stLibrary, 0, 0, "");
        stLibrary.fnSendCommand(COMMAND_POSITIONS, st.uProcessId, pRecord->uThreadId, c_iReloadCamera);
    }
}

} // namespace

u32 ShotTypeOf(const std::string& strWord) {
    for (u32 u = 0; u < std::size(c_aszWords); ++u)
        if (strWord == c_aszWords[u]) return u;
    return g_uNoShotType;
}

std::vector<std::string> ShotExtensions(u32 uType) {
    if (uType >= c_uTypes) return {".bmp", ".jpg", ".png"};
    return {std::string(".") + c_aszWords[uType]};
}

Result TakeShots(const ControlLibrary& stLibrary, const Options& stOptions) {
    platform::tool::CatchStop();
    ForgetDead(stLibrary);
    std::vector<Target> listTargets;
    Result st = FindTargets(stLibrary, stOptions, listTargets);
    if (!st) return st;
    if (!Snapshot(stLibrary.pSegment)->bGlobalEnable)
        return Result::Fail("the overlay is switched off (orvin-osd on)");
    const auto stNow = ReadShotSettings();
    const auto stWanted = Wanted(stOptions, stNow);
    fs::path pathFolder;
    st = FolderOf(stWanted, pathFolder);
    if (st) st = Check(stWanted, pathFolder);
    if (!st) return st;
    platform::tool::TemporarySettings change;
    const bool bChange = Differ(stNow, stWanted);
    if (bChange) st = change.Set(SettingsOf(stWanted));
    if (st) st = ShootAll(stLibrary, stOptions, stWanted, pathFolder, listTargets);
    const Result stBack = change.Restore();
    if (bChange) ReloadSettings(stLibrary, listTargets);
    return st ? stBack : st;
}

} // namespace companion
