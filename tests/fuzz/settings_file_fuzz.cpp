// The input as a settings file and as the settings store made of one. What is found holds together.
#include "platform/ini_file.h"
#include "platform/settings_tree.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>

namespace {

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

void CheckIni(std::string_view bytes) {
    const platform::CIniFile file = platform::CIniFile::Parse(bytes);
    u32 uEntries = 0;
    for (u32 uSection = 0; uSection < file.Sections(); ++uSection) {
        Require(file.FirstEntry(uSection) == uEntries && file.EndEntry(uSection) >= uEntries);
        for (u32 u = uEntries; u < file.EndEntry(uSection); ++u) {
            const platform::IniEntry& entry = file.Entry(u);
            Require(entry.m_wzKey.size() + entry.m_wzValue.size() < bytes.size());
            const platform::IniEntry* const pFound = file.Find(file.SectionName(uSection), entry.m_wzKey);
            Require(!pFound || platform::EqualNoCase(pFound->m_wzKey, entry.m_wzKey));
        }
        uEntries = file.EndEntry(uSection);
    }
}

/// A key and one below it, all names and values of both.
void WalkKey(const std::shared_ptr<const platform::CSettingsTree>& pTree, const std::u16string& wstrPath,
             u32 uDepth) {
    const std::unique_ptr<platform::COpenSettingsKey> pKey(
        platform::COpenSettingsKey::Open(pTree, wstrPath.c_str()));
    if (!pKey) return; // a name with an end mark in it cannot be asked for
    char16_t wzName[256], wzValue[128];
    for (u32 i = 0; pKey->Value(i, wzName, std::size(wzName)); ++i) {
        platform::SettingsType eType{};
        u32 uBytes = sizeof wzValue;
        if (!pKey->Query(wzName, eType, wzValue, uBytes)) continue;
        Require(uBytes <= sizeof wzValue && (eType != platform::SettingsType::Number || uBytes == 4));
    }
    for (u32 i = 0; uDepth < 3 && i < 8 && pKey->Subkey(i, wzName, std::size(wzName)); ++i)
        WalkKey(pTree, wstrPath.empty() ? std::u16string(wzName) : wstrPath + u"\\" + wzName, uDepth + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uSize) {
    const std::string_view bytes(reinterpret_cast<const char*>(pData), std::min<std::size_t>(uSize, 4096));
    CheckIni(bytes);
    WalkKey(std::make_shared<const platform::CSettingsTree>(platform::CSettingsTree::Parse(bytes)), u"", 0);
    return 0;
}
