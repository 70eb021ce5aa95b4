// The settings file, read anew when it has changed.
#include "platform/settings_store.h"
#include "platform/folders.h"
#include "platform/settings_tree.h"

#include <mutex>
#include <string>
#include <sys/stat.h>

namespace platform {
namespace {

/// What tells one state of a file from another; all zero for no file.
struct FileState {
    dev_t uDevice = 0;
    ino_t uNode = 0;
    off_t iSize = 0;
    timespec stWritten = {}, stChanged = {};

    bool operator==(const FileState& st) const noexcept {
        const auto same = [](const timespec& a, const timespec& b) {
            return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
        };
        return uDevice == st.uDevice && uNode == st.uNode && iSize == st.iSize &&
               same(stWritten, st.stWritten) && same(stChanged, st.stChanged);
    }
};

struct Cache {
    std::mutex m_lock;
    std::u16string m_wstrPath;
    FileState m_stState;
    std::shared_ptr<const CSettingsTree> m_pTree;
};

/// Never destroyed: a host's thread may still draw while the process ends.
Cache& TheCache() {
    static Cache* const pCache = new Cache;
    return *pCache;
}

bool SettingsPath(std::u16string& wstrPath) {
    std::u16string wstrFolder(4095, u'\0'); // a host's thread may have a small stack
    if (!CommonDataFolder(wstrFolder.data(), 4096)) return false;
    wstrPath = std::u16string(wstrFolder.c_str()) + u"/ZARN/Orvin Deck/ORVIN-OSD/Settings/settings.ini";
    return true;
}

FileState StateOf(const std::u16string& wstrPath) {
    std::string strPath(8191, '\0');
    struct stat st {};
    if (!NarrowPath(wstrPath.c_str(), strPath.data(), static_cast<u32>(strPath.size() + 1)) ||
        stat(strPath.c_str(), &st) != 0)
        return {};
    return {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
}

std::shared_ptr<const CSettingsTree> CurrentTree() {
    std::u16string wstrPath;
    if (!SettingsPath(wstrPath)) return nullptr;
    Cache& cache = TheCache();
    std::lock_guard lock(cache.m_lock);
    // The state comes first: a file that changes while it is read is read again the next time.
    const FileState stState = StateOf(wstrPath);
    if (!cache.m_pTree || cache.m_wstrPath != wstrPath || !(cache.m_stState == stState)) {
        cache.m_pTree = std::make_shared<const CSettingsTree>(CSettingsTree::Load(wstrPath.c_str()));
        cache.m_wstrPath = wstrPath;
        cache.m_stState = stState;
    }
    return cache.m_pTree;
}

} // namespace

SettingsKey OpenSettingsKey(const char16_t* wzPath) noexcept {
    try {
        return COpenSettingsKey::Open(CurrentTree(), wzPath);
    } catch (...) { // no memory
        return nullptr;
    }
}

void CloseSettingsKey(SettingsKey hKey) noexcept { delete static_cast<COpenSettingsKey*>(hKey); }

} // namespace platform
