#include "platform/settings_tree.h"

#include "platform/ini_file.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>
#include <utility>

namespace platform {
namespace {

/// Takes the first part off a path.
std::u16string_view NextPart(std::u16string_view& wzPath) {
    const std::size_t uEnd = std::min(wzPath.find(u'\\'), wzPath.size());
    const std::u16string_view part = wzPath.substr(0, uEnd);
    wzPath.remove_prefix(std::min(uEnd + 1, wzPath.size()));
    return part;
}

std::optional<u32> DigitOf(char16_t c) {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    return std::nullopt;
}

/// All of the text must be digits of the base, and the number below 2^32.
std::optional<u32> Digits(std::u16string_view text, u32 uBase) {
    u64 uValue = 0;
    for (const char16_t c : text) {
        const std::optional<u32> uDigit = DigitOf(c);
        if (!uDigit || *uDigit >= uBase) return std::nullopt;
        uValue = uValue * uBase + *uDigit;
        if (uValue > 0xFFFFFFFF) return std::nullopt;
    }
    return text.empty() ? std::nullopt : std::optional<u32>(static_cast<u32>(uValue));
}

std::optional<u32> WholeNumber(std::u16string_view text) {
    if (text.starts_with(u"0x") || text.starts_with(u"0X")) return Digits(text.substr(2), 16);
    const bool bNegative = text.starts_with(u"-");
    const std::optional<u32> uValue = Digits(text.substr(bNegative ? 1 : 0), 10);
    if (!bNegative || !uValue) return uValue;
    return *uValue <= 0x80000000 ? std::optional<u32>(0 - *uValue) : std::nullopt;
}

SettingsValue ValueOf(const IniEntry& entry) {
    const std::optional<u32> uNumber = entry.m_bQuoted ? std::nullopt : WholeNumber(entry.m_wzValue);
    return uNumber ? MakeSettingsNumber(*uNumber) : MakeSettingsText(entry.m_wzValue);
}

} // namespace

bool LessWithoutCase::operator()(std::u16string_view a, std::u16string_view b) const noexcept {
    return LessNoCase(a, b);
}

SettingsValue MakeSettingsNumber(u32 uValue) {
    SettingsValue value{SettingsType::Number, std::vector<u8>(sizeof uValue)};
    std::memcpy(value.m_vecBytes.data(), &uValue, sizeof uValue);
    return value;
}

SettingsValue MakeSettingsText(std::u16string_view wzText) {
    SettingsValue value{SettingsType::Text, std::vector<u8>((wzText.size() + 1) * sizeof(char16_t))};
    std::memcpy(value.m_vecBytes.data(), wzText.data(), wzText.size() * sizeof(char16_t));
    return value;
}

CSettingsTree CSettingsTree::Load(const char16_t* wzPath) {
    CSettingsTree tree;
    tree.Take(CIniFile::Load(wzPath));
    return tree;
}

CSettingsTree CSettingsTree::Parse(std::string_view bytes) {
    CSettingsTree tree;
    tree.Take(CIniFile::Parse(bytes));
    return tree;
}

void CSettingsTree::Take(const CIniFile& file) {
    for (u32 uSection = 0; uSection < file.Sections(); ++uSection) {
        SettingsNode* const pNode = AddKey(file.SectionName(uSection));
        if (!pNode) continue;
        for (u32 u = file.FirstEntry(uSection); u < file.EndEntry(uSection); ++u)
            if (file.Entry(u).m_bHasValue) AddValue(*pNode, file.Entry(u).m_wzKey, ValueOf(file.Entry(u)));
    }
}

SettingsNode* CSettingsTree::AddKey(std::u16string_view wzPath) {
    SettingsNode* pNode = &m_root;
    for (u32 uDepth = 0; uDepth == 0 || !wzPath.empty(); ++uDepth) {
        const std::u16string_view part = NextPart(wzPath);
        if (uDepth == g_uSettingsDepthMax || part.empty() || part.size() > g_uSettingsKeyNameMax)
            return nullptr;
        auto it = pNode->m_mapSubkeys.find(part);
        if (it == pNode->m_mapSubkeys.end()) {
            if (m_uEntries == g_uSettingsEntriesMax) return nullptr;
            ++m_uEntries;
            it = pNode->m_mapSubkeys.try_emplace(std::u16string(part)).first;
        }
        pNode = &it->second;
    }
    return pNode;
}

void CSettingsTree::AddValue(SettingsNode& node, std::u16string_view wzName, SettingsValue value) {
    if (m_uEntries == g_uSettingsEntriesMax || wzName.size() > g_uSettingsValueNameMax) return;
    m_uEntries += node.m_mapValues.try_emplace(std::u16string(wzName), std::move(value)).second;
}

const SettingsNode* CSettingsTree::FindKey(std::u16string_view wzPath) const noexcept {
    const SettingsNode* pNode = &m_root;
    while (!wzPath.empty()) {
        const auto it = pNode->m_mapSubkeys.find(NextPart(wzPath));
        if (it == pNode->m_mapSubkeys.end()) return nullptr;
        pNode = &it->second;
    }
    return pNode;
}

COpenSettingsKey::COpenSettingsKey(std::shared_ptr<const CSettingsTree> pTree,
                                   const SettingsNode* pNode) noexcept
    : m_pTree(std::move(pTree)),
      m_pNode(pNode), m_subkeys{pNode->m_mapSubkeys.begin()}, m_values{pNode->m_mapValues.begin()} {}

COpenSettingsKey* COpenSettingsKey::Open(std::shared_ptr<const CSettingsTree> pTree,
                                         const char16_t* wzPath) noexcept {
    const SettingsNode* const pNode = pTree && wzPath ? pTree->FindKey(wzPath) : nullptr;
    return pNode ? new (std::nothrow) COpenSettingsKey(std::move(pTree), pNode) : nullptr;
}

bool COpenSettingsKey::Query(const char16_t* wzName, SettingsType& eType, void* pOut,
                             u32& uBytes) const noexcept {
    const auto it = m_pNode->m_mapValues.find(std::u16string_view(wzName));
    if (it == m_pNode->m_mapValues.end() || it->second.m_vecBytes.size() > uBytes) return false;
    eType = it->second.m_eType;
    uBytes = static_cast<u32>(it->second.m_vecBytes.size());
    if (uBytes > 0) std::memcpy(pOut, it->second.m_vecBytes.data(), uBytes);
    return true;
}

template <class Map>
bool COpenSettingsKey::Name(const Map& map, Walk<Map>& walk, u32 uIndex, char16_t* wzOut,
                            u32 uCapacity) noexcept {
    if (uIndex >= map.size()) return false;
    if (uIndex < walk.m_uIndex) walk = {map.begin()};
    std::advance(walk.m_it, uIndex - walk.m_uIndex);
    walk.m_uIndex = uIndex;
    const std::u16string& wstrName = walk.m_it->first;
    if (wstrName.size() >= uCapacity) return false;
    wzOut[wstrName.copy(wzOut, wstrName.size())] = 0;
    return true;
}

bool COpenSettingsKey::Subkey(u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept {
    return Name(m_pNode->m_mapSubkeys, m_subkeys, uIndex, wzOut, uCapacity);
}

bool COpenSettingsKey::Value(u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept {
    return Name(m_pNode->m_mapValues, m_values, uIndex, wzOut, uCapacity);
}

} // namespace platform
