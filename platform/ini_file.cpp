#include "platform/ini_file.h"

#include "platform/code_page.h"
#include "platform/input_file.h"
#include "platform/utf.h"

#include <algorithm>
#include <string>

namespace platform {
namespace {

using Text = std::vector<char16_t>;

/// The blanks of the system's profile calls: the end-of-file mark of old editors is one.
bool IsBlank(char16_t c) { return (c >= 0x09 && c <= 0x0D) || c == 0x1A || c == u' '; }

std::u16string_view Trim(std::u16string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

char16_t Fold(char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 0x20) : c; }

/// Whole units only; a byte left over at the end is dropped.
Text FromUtf16(std::string_view bytes, std::size_t uLowByte) {
    Text vecText(bytes.size() / 2);
    for (std::size_t i = 0; i < vecText.size(); ++i) {
        const u32 uLow = static_cast<u8>(bytes[2 * i + uLowByte]);
        vecText[i] = static_cast<char16_t>(uLow | (static_cast<u8>(bytes[2 * i + 1 - uLowByte]) << 8));
    }
    return vecText;
}

void AppendCode(Text& vecText, u32 c) {
    if (c >= 0x10000) vecText.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
    vecText.push_back(static_cast<char16_t>(c >= 0x10000 ? 0xDC00 + ((c - 0x10000) & 0x3FF) : c));
}

/// False, with what was decoded so far, if the bytes are no UTF-8; a mark for wrong bytes may stand in the
/// file itself.
bool FromUtf8(std::string_view bytes, bool bForce, Text& vecText) {
    const std::string strEnded(bytes); // the decoder wants an end mark
    vecText.reserve(bytes.size());
    for (const char *pByte = strEnded.data(), *pEnd = pByte + strEnded.size(); pByte < pEnd;) {
        const bool bReplacement = std::string_view(pByte, pEnd - pByte).starts_with("\xEF\xBF\xBD");
        const u32 c = NextUtf8(pByte);
        if (c == 0xFFFD && !bReplacement && !bForce) return false;
        AppendCode(vecText, c);
    }
    return true;
}

Text FromCodePage(std::string_view bytes) {
    Text vecText(bytes.size());
    const u32 uBytes = static_cast<u32>(bytes.size());
    vecText.resize(CodePageToUtf16(bytes.data(), uBytes, vecText.data(), uBytes));
    return vecText;
}

Text Decode(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE")) return FromUtf16(bytes.substr(2), 0);
    if (bytes.starts_with("\xFE\xFF")) return FromUtf16(bytes.substr(2), 1);
    const bool bMark = bytes.starts_with("\xEF\xBB\xBF");
    Text vecText;
    if (FromUtf8(bytes.substr(bMark ? 3 : 0), bMark, vecText)) return vecText;
    return FromCodePage(bytes);
}

bool IsQuoted(std::u16string_view value) {
    return value.size() >= 2 && value.front() == value.back() &&
           (value.front() == u'"' || value.front() == u'\'');
}

} // namespace

bool EqualNoCase(std::u16string_view a, std::u16string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return Fold(x) == Fold(y); });
}

bool LessNoCase(std::u16string_view a, std::u16string_view b) noexcept {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char16_t x, char16_t y) { return Fold(x) < Fold(y); });
}

CIniFile CIniFile::Load(const char16_t* wzPath) {
    const InputFile pFile = OpenInput(wzPath);
    if (!pFile) return {};
    std::string strBytes;
    AppendBytes(pFile.get(), g_uIniBytesMax, strBytes);
    return Parse(strBytes);
}

CIniFile CIniFile::Parse(std::string_view bytes) {
    CIniFile file;
    file.m_vecText = Decode(bytes);
    std::u16string_view rest(file.m_vecText.data(), file.m_vecText.size());
    while (!rest.empty()) {
        const std::size_t uEnd = std::min(rest.find_first_of(u"\r\n"), rest.size());
        file.AddLine(Trim(rest.substr(0, uEnd)));
        rest.remove_prefix(std::min(uEnd + 1, rest.size()));
    }
    return file;
}

/// False for a line that opens a bracket and never closes it: an ordinary line.
bool CIniFile::AddSection(std::u16string_view line) {
    const std::size_t uClose = line.rfind(u']');
    if (line.front() != u'[' || uClose == line.npos) return false;
    m_vecSections.push_back({Trim(line.substr(1, uClose - 1)), static_cast<u32>(m_vecEntries.size())});
    return true;
}

void CIniFile::AddLine(std::u16string_view line) {
    if (line.empty() || line.front() == u';' || AddSection(line) || m_vecSections.empty()) return;
    const std::size_t uEquals = std::min(line.find(u'='), line.size());
    if (uEquals == 0) return;
    const bool bHasValue = uEquals < line.size();
    std::u16string_view value = bHasValue ? Trim(line.substr(uEquals + 1)) : line.substr(uEquals);
    const bool bQuoted = IsQuoted(value);
    if (bQuoted) value = value.substr(1, value.size() - 2);
    m_vecEntries.push_back({Trim(line.substr(0, uEquals)), value, bHasValue, bQuoted});
}

u32 CIniFile::EndEntry(u32 uSection) const noexcept {
    return uSection + 1 < m_vecSections.size() ? m_vecSections[uSection + 1].m_uFirst
                                               : static_cast<u32>(m_vecEntries.size());
}

const IniEntry* CIniFile::Find(std::u16string_view wzSection, std::u16string_view wzKey) const noexcept {
    for (u32 uSection = 0; uSection < Sections(); ++uSection) {
        if (!EqualNoCase(SectionName(uSection), wzSection)) continue;
        for (u32 u = FirstEntry(uSection); u < EndEntry(uSection); ++u)
            if (EqualNoCase(m_vecEntries[u].m_wzKey, wzKey))
                return m_vecEntries[u].m_bHasValue ? &m_vecEntries[u] : nullptr;
        return nullptr;
    }
    return nullptr;
}

} // namespace platform
