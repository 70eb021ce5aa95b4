// Linux: the file itself waits under another name, so that a link to an installed one stays a link.
#include "platform/linux/tool_settings_file.h"
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <unistd.h>
#include <utility>

namespace platform::tool {
namespace {

namespace fs = std::filesystem;

constexpr char kKept[] = ".kept";

Result CannotGiveBack() {
    return Result::Fail(SettingsFile() + " could not be given back: " + std::strerror(errno));
}

bool Rename(const fs::path& pathFrom, const fs::path& pathTo) {
    return std::rename(pathFrom.c_str(), pathTo.c_str()) == 0;
}

/// What a killed one left is the truth. Only the holder of the lock asks.
void HealLeftOver() {
    std::error_code error;
    const std::string strBegin = fs::path(SettingsFile()).filename().string() + ".";
    for (const fs::directory_entry& entry : fs::directory_iterator(SettingsFolder(), error)) {
        const std::string strName = entry.path().filename().string();
        if (strName.starts_with(strBegin) && strName.ends_with(kKept)) Rename(entry.path(), SettingsFile());
    }
}

} // namespace

struct TemporarySettings::Memory {
    std::optional<FolderLock> lock;
    bool bChanged = false, bHadFile = false, bMadeFolder = false;
    fs::path pathKept;
    std::string strWritten;
    std::vector<Setting> listFormer;
};

TemporarySettings::TemporarySettings() : m_pMemory(std::make_unique<Memory>()) {}

TemporarySettings::~TemporarySettings() { Restore(); }

Result TemporarySettings::Set(const std::vector<Setting>& listSettings) {
    Memory& st = *m_pMemory;
    if (SettingsFolder().empty()) return Result::Fail("this system has no data folder");
    std::error_code error;
    st.bMadeFolder = fs::create_directories(SettingsFolder(), error);
    // Not the lock of the settings' folder: that one is for single changes, and they go on meanwhile.
    st.lock.emplace(fs::path(SettingsFolder()).parent_path());
    HealLeftOver();
    st.pathKept = SettingsFile() + "." + std::to_string(getpid()) + kKept;
    st.strWritten = ReadSettingsFile();
    for (const Setting& setting : listSettings)
        st.listFormer.push_back(CurrentSetting(setting.strKey, setting.strName));
    const Result stResult = ChangeSettingsText(st.strWritten, listSettings);
    if (!stResult) return stResult;
    st.bHadFile = fs::exists(fs::symlink_status(SettingsFile(), error));
    st.bChanged = true;
    if (st.bHadFile && !Rename(SettingsFile(), st.pathKept))
        return Result::Fail("cannot write " + SettingsFile() + ": " + std::strerror(errno));
    return ReplaceSettingsFile(st.strWritten);
}

Result TemporarySettings::Restore() {
    Memory& st = *m_pMemory;
    std::error_code error;
    const bool bChanged = std::exchange(st.bChanged, false);
    // Somebody's change meanwhile stays, without what was put there for a while.
    if (bChanged && fs::exists(SettingsFile(), error) && ReadSettingsFile() != st.strWritten) {
        fs::remove(st.pathKept, error);
        return StoreSettings(st.listFormer);
    }
    if (bChanged && st.bHadFile && !Rename(st.pathKept, SettingsFile())) return CannotGiveBack();
    if (bChanged && !st.bHadFile) fs::remove(SettingsFile(), error);
    if (std::exchange(st.bMadeFolder, false)) fs::remove(SettingsFolder(), error);
    st.lock.reset();
    return {};
}

} // namespace platform::tool
