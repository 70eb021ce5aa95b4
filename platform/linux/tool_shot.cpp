// Linux: settings are a file, which may be a link to the one of a package.
#include "platform/tool_shot.h"
#include "platform/linux/data_folder.h"
#include "platform/tool.h"
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace platform::tool {
namespace {

namespace fs = std::filesystem;

fs::path SettingsFile() {
    return fs::path(CommonDataFolder()) / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Settings" / "settings.ini";
}

std::string ReadText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool WriteText(const fs::path& path, const std::string& strText) {
    std::ofstream file(path, std::ios::binary);
    return static_cast<bool>((file << strText).flush());
}

Result CannotChange(const fs::path& path) {
    return Result::Fail("the settings in " + path.string() + " cannot be changed: " + std::strerror(errno));
}

} // namespace

/// The file as it was: the file itself under another name, so that a link stays one.
struct ShotSettingsChange::Memory {
    bool bChanged = false, bHadFile = false, bMadeFolder = false;
    fs::path pathFile, pathKept;
    std::string strWritten;
};

ShotSettings ReadShotSettings() { return ParseShotSettings(ReadText(SettingsFile())); }

ShotSettingsChange::ShotSettingsChange() : m_pMemory(new Memory) {}

ShotSettingsChange::~ShotSettingsChange() {
    Restore();
    delete m_pMemory;
}

Result ShotSettingsChange::Set(const ShotSettings& stSettings) {
    Memory& st = *m_pMemory;
    std::error_code error;
    st.pathFile = SettingsFile();
    st.pathKept = st.pathFile.string() + "." + std::to_string(OwnProcessId()) + ".kept";
    const fs::path pathNew = st.pathFile.string() + "." + std::to_string(OwnProcessId()) + ".new";
    st.bMadeFolder = fs::create_directories(st.pathFile.parent_path(), error);
    st.bHadFile = fs::exists(fs::symlink_status(st.pathFile, error));
    const auto strText = TextWithShotSettings(ReadText(st.pathFile), stSettings, OwnProcessId());
    if (!strText)
        return Result::Fail("the settings in " + st.pathFile.string() +
                            " are UTF-16, which cannot be changed here");
    st.strWritten = *strText;
    if (!WriteText(pathNew, st.strWritten)) return CannotChange(st.pathFile);
    st.bChanged = true;
    if (st.bHadFile && std::rename(st.pathFile.c_str(), st.pathKept.c_str()) != 0)
        return CannotChange(st.pathFile);
    if (std::rename(pathNew.c_str(), st.pathFile.c_str()) != 0) return CannotChange(st.pathFile);
    return {};
}

Result ShotSettingsChange::Restore() {
    Memory& st = *m_pMemory;
    if (!st.bChanged) return {};
    st.bChanged = false;
    std::error_code error;
    fs::remove(st.pathFile.string() + "." + std::to_string(OwnProcessId()) + ".new", error);
    const std::string strNow = ReadText(st.pathFile);
    // Somebody's change meanwhile stays, without what was put in front of it.
    if (strNow != st.strWritten && fs::exists(st.pathFile, error)) {
        const bool bKept = WriteText(st.pathFile, TextWithoutShotSettings(strNow, OwnProcessId()));
        fs::remove(st.pathKept, error);
        return bKept ? Result{} : CannotChange(st.pathFile);
    }
    if (st.bHadFile && std::rename(st.pathKept.c_str(), st.pathFile.c_str()) != 0)
        return CannotChange(st.pathFile);
    if (!st.bHadFile) fs::remove(st.pathFile, error);
    if (st.bMadeFolder) fs::remove(st.pathFile.parent_path(), error);
    return {};
}

bool HasHeifEncoder() {
    void* const pLibrary = dlopen("libheif.so.1", RTLD_NOW | RTLD_LOCAL);
    const auto fnHas =
        reinterpret_cast<int (*)(int)>(pLibrary ? dlsym(pLibrary, "heif_have_encoder_for_format") : nullptr);
    constexpr int iHevc = 1;
    return fnHas && fnHas(iHevc) != 0;
}

bool IsFolder(const std::string& strPath) {
    std::error_code error;
    return fs::is_directory(strPath, error);
}

bool CanWriteTo(const std::string& strFolder) { return access(strFolder.c_str(), W_OK | X_OK) == 0; }

} // namespace platform::tool
