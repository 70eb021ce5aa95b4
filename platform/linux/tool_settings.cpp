// Linux: the settings are a file beside the data folder. A changed one takes its place whole, also that of a
// link to an installed file.
#include "platform/linux/tool_settings_file.h"
#include "platform/settings_tree.h"
#include "platform/tool.h"
#include "platform/utf.h"
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::tool {
namespace {

constexpr char kRoot[] = "SOFTWARE\\Zarn\\ORVIN-OSD";
constexpr char kWowRoot[] = "SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD";
constexpr std::size_t kLongestFile = 1 << 20; ///< overlays read no further

std::u16string ToUtf16(const std::string& str) {
    std::u16string wstr(str.size() + 1, u'\0');
    Utf8ToUtf16(str.c_str(), wstr.data(), static_cast<u32>(wstr.size()));
    return wstr.c_str();
}

std::string FromUtf16(std::u16string_view wstr) {
    std::string str(wstr.size() * 3 + 1, '\0');
    Utf16ToUtf8(std::u16string(wstr).c_str(), str.data(), static_cast<u32>(str.size()));
    return str.c_str();
}

/// The overlay looks below the second root where it exists.
const char* RootOf(const CSettingsTree& tree) { return tree.FindKey(ToUtf16(kWowRoot)) ? kWowRoot : kRoot; }

std::string PathIn(const CSettingsTree& tree, const std::string& strKey) {
    const std::string strRoot = RootOf(tree);
    if (strKey.starts_with('\\')) return strRoot.substr(0, strRoot.rfind('\\')) + strKey;
    return strRoot + "\\" + strKey;
}

const SettingsNode* FindKey(const CSettingsTree& tree, const std::string& strKey) {
    return tree.FindKey(ToUtf16(PathIn(tree, strKey)));
}

using Change = std::function<std::string(std::string strFile, const CSettingsTree& tree)>;

bool IsUtf16(const std::string& str) { return str.starts_with("\xFF\xFE") || str.starts_with("\xFE\xFF"); }

Result ChangeText(std::string& strFile, const Change& fnChange) {
    if (IsUtf16(strFile)) return Result::Fail(SettingsFile() + " is UTF-16; save it as UTF-8 first");
    strFile = fnChange(strFile, CSettingsTree::Parse(strFile));
    if (strFile.size() <= kLongestFile) return {};
    return Result::Fail(SettingsFile() + " would be longer than 1 MiB, which overlays do not read");
}

Result ChangeFile(const Change& fnChange) {
    const std::string strFolder = SettingsFolder();
    if (strFolder.empty()) return Result::Fail("this system has no data folder");
    mkdir(strFolder.c_str(), 0755);
    const FolderLock lock(strFolder);
    const std::string strFile = ReadSettingsFile();
    std::string strChanged = strFile;
    const Result stResult = ChangeText(strChanged, fnChange);
    return stResult && strChanged != strFile ? ReplaceSettingsFile(strChanged) : stResult;
}

Change StoreAll(const std::vector<Setting>& listSettings) {
    return [&listSettings](std::string strFile, const CSettingsTree& tree) {
        for (const Setting& st : listSettings)
            strFile = WithSetting(std::move(strFile), PathIn(tree, st.strKey), st);
        return strFile;
    };
}

Result CheckAll(const std::vector<Setting>& listSettings) {
    for (const Setting& st : listSettings)
        if (Result stResult = CheckSetting(st); !stResult) return stResult;
    return {};
}

} // namespace

std::string SettingsFolder() {
    const std::string strCommon = CommonDataFolder();
    return strCommon.empty() ? strCommon : strCommon + "/ZARN/Orvin Deck/ORVIN-OSD/Settings";
}

std::string SettingsFile() { return SettingsFolder() + "/settings.ini"; }

std::string ReadSettingsFile() {
    struct stat st;
    if (stat(SettingsFile().c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return {};
    std::stringstream text;
    text << std::ifstream(SettingsFile(), std::ios::binary).rdbuf();
    return text.str();
}

Result ReplaceSettingsFile(const std::string& strText) {
    const std::string strPath = SettingsFile(), strNew = strPath + "." + std::to_string(getpid());
    std::ofstream file(strNew, std::ios::binary | std::ios::trunc);
    file << strText;
    file.close();
    if (file.good() && rename(strNew.c_str(), strPath.c_str()) == 0) return {};
    const std::string strWhy = std::strerror(errno);
    unlink(strNew.c_str());
    return Result::Fail("cannot write " + strPath + ": " + strWhy);
}

Result ChangeSettingsText(std::string& strFile, const std::vector<Setting>& listSettings) {
    const Result stResult = CheckAll(listSettings);
    return stResult ? ChangeText(strFile, StoreAll(listSettings)) : stResult;
}

FolderLock::FolderLock(const std::string& strFolder)
    : m_iFile(open(strFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (m_iFile >= 0) flock(m_iFile, LOCK_EX);
}

FolderLock::~FolderLock() {
    if (m_iFile >= 0) close(m_iFile);
}

Setting CurrentSetting(const std::string& strKey, const std::string& strName) {
    const CSettingsTree tree = CSettingsTree::Parse(ReadSettingsFile());
    const SettingsNode* const pNode = FindKey(tree, strKey);
    Setting st{strKey, strName, {}, {}, true};
    if (!pNode) return st;
    const auto it = pNode->m_mapValues.find(ToUtf16(strName));
    if (it == pNode->m_mapValues.end()) return st;
    const std::vector<u8>& vecBytes = it->second.m_vecBytes;
    st.bRemoved = false;
    if (it->second.m_eType == SettingsType::Number) {
        u32 uNumber = 0;
        std::memcpy(&uNumber, vecBytes.data(), sizeof uNumber);
        st.uNumber = uNumber;
        return st;
    }
    std::u16string wstr(vecBytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(wstr.data(), vecBytes.data(), wstr.size() * sizeof(char16_t));
    st.strText = FromUtf16(wstr.substr(0, wstr.find(u'\0')));
    return st;
}

std::vector<std::string> SettingKeys(const std::string& strKey) {
    const CSettingsTree tree = CSettingsTree::Parse(ReadSettingsFile());
    const SettingsNode* const pNode = FindKey(tree, strKey);
    std::vector<std::string> list;
    if (pNode)
        for (const auto& [wstrName, node] : pNode->m_mapSubkeys) list.push_back(FromUtf16(wstrName));
    return list;
}

Result StoreSettings(const std::vector<Setting>& listSettings) {
    const Result stResult = CheckAll(listSettings);
    return stResult ? ChangeFile(StoreAll(listSettings)) : stResult;
}

Result RemoveSettingKeys(const std::vector<std::string>& listKeys) {
    return ChangeFile([&](std::string strFile, const CSettingsTree& tree) {
        for (const std::string& strKey : listKeys) strFile = WithoutSettingKey(strFile, PathIn(tree, strKey));
        return strFile;
    });
}

} // namespace platform::tool
