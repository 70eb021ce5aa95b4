#include "controls/text_file.h"

#include "base/watched_files.h"
#include "platform/code_page.h"
#include "platform/folders.h"
#include "platform/input_file.h"
#include "platform/utf.h"
#include "shared/process_records.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace {

using Text = std::unique_ptr<char16_t[]>;

Text NewText(u32 uUnits) { return Text(new (std::nothrow) char16_t[uUnits + 1]()); }

/// Whole units only; a byte left over at the end is dropped.
Text FromUtf16(std::string_view bytes, u32 uLowByte) {
    const u32 uUnits = static_cast<u32>(bytes.size() / 2);
    Text wzText = NewText(uUnits);
    for (u32 i = 0; wzText && i < uUnits; ++i) {
        const u32 uLow = static_cast<u8>(bytes[2 * i + uLowByte]);
        wzText[i] = static_cast<char16_t>(uLow | (static_cast<u8>(bytes[2 * i + 1 - uLowByte]) << 8));
    }
    return wzText;
}

/// bytes end at a terminator.
Text FromUtf8(std::string_view bytes) {
    const u32 uUnits = static_cast<u32>(bytes.size());
    Text wzText = NewText(uUnits);
    if (wzText && !platform::Utf8ToUtf16(bytes.data(), wzText.get(), uUnits + 1)) wzText.reset();
    return wzText;
}

Text FromCodePage(std::string_view bytes) {
    const u32 uBytes = static_cast<u32>(bytes.size());
    Text wzText = NewText(uBytes);
    if (wzText) platform::CodePageToUtf16(bytes.data(), uBytes, wzText.get(), uBytes);
    return wzText;
}

/// bytes end at a terminator.
bool IsUtf8(std::string_view bytes) {
    for (const char* pByte = bytes.data(); *pByte;) {
        const bool bReplacement = std::string_view(pByte).starts_with("\xEF\xBF\xBD");
        if (platform::NextUtf8(pByte) == 0xFFFD && !bReplacement) return false;
    }
    return true;
}

Text Decode(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE")) return FromUtf16(bytes.substr(2), 0);
    if (bytes.starts_with("\xFE\xFF")) return FromUtf16(bytes.substr(2), 1);
    if (bytes.starts_with("\xEF\xBB\xBF")) return FromUtf8(bytes.substr(3));
    return IsUtf8(bytes) ? FromUtf8(bytes) : FromCodePage(bytes);
}

/// Bytes at the end of a line that begin a character and don't end it.
u32 TornBytes(std::string_view line) {
    u32 uTail = 0;
    while (uTail < 3 && uTail < line.size() &&
           (static_cast<u8>(line[line.size() - 1 - uTail]) & 0xC0) == 0x80)
        ++uTail;
    const u8 cLead = uTail < line.size() ? static_cast<u8>(line[line.size() - 1 - uTail]) : 0;
    const u32 uWanted = cLead >= 0xF0 ? 3 : cLead >= 0xE0 ? 2 : cLead >= 0xC0 ? 1 : 0;
    return uTail < uWanted ? uTail + 1 : 0;
}

/// Whole lines of a text in bytes that goes on behind them.
std::string_view WholeLines(std::string_view bytes) {
    const std::size_t uEnd = bytes.rfind('\n');
    return bytes.substr(0, uEnd == bytes.npos ? bytes.size() - TornBytes(bytes) : uEnd);
}

/// Whole lines of a text in 16-bit units behind its mark, that goes on behind them; uLowByte is the place of
/// a unit's low byte.
std::string_view WholeLines16(std::string_view bytes, u32 uLowByte) {
    const auto unit = [&](std::size_t i) {
        return static_cast<u8>(bytes[2 * i + uLowByte]) | static_cast<u8>(bytes[2 * i + 1 - uLowByte]) << 8;
    };
    const std::size_t uUnits = bytes.size() / 2;
    for (std::size_t i = uUnits; i > 1; --i)
        if (unit(i - 1) == '\n') return bytes.substr(0, 2 * (i - 1));
    const bool bTorn = uUnits > 1 && unit(uUnits - 1) >= 0xD800 && unit(uUnits - 1) < 0xDC00;
    return bytes.substr(0, 2 * (bTorn ? uUnits - 1 : uUnits));
}

std::string_view Cut(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE")) return WholeLines16(bytes, 0);
    return bytes.starts_with("\xFE\xFF") ? WholeLines16(bytes, 1) : WholeLines(bytes);
}

} // namespace

bool g_fnStaysInFolder(std::u16string_view name) noexcept {
    const auto isStep = [](std::u16string_view part) { // some systems drop blanks and points at the end
        return part.starts_with(u"..") && part.find_first_not_of(u". ") == part.npos;
    };
    if (name.starts_with(u'\\') || name.starts_with(u'/') || name.find(u':') != name.npos) return false;
    while (!name.empty()) {
        const std::size_t uEnd = std::min(name.find_first_of(u"\\/"), name.size());
        if (isStep(name.substr(0, uEnd))) return false;
        name.remove_prefix(std::min(uEnd + 1, name.size()));
    }
    return true;
}

bool g_fnResolveProfilePath(char16_t* wzOut, const char16_t* wzName) noexcept {
    char16_t wzRelative[g_uProfilePathCapacity];
    const std::u16string_view folder(g_wzProfileFolder), name(wzName);
    wzOut[0] = 0;
    if (!g_fnStaysInFolder(name)) return false;
    if (folder.empty() || folder.size() + 1 + name.size() >= g_uProfilePathCapacity) return false;
    char16_t* pEnd = std::copy(folder.begin(), folder.end(), wzRelative);
    *pEnd++ = u'\\';
    pEnd = std::copy(name.begin(), name.end(), pEnd);
    *pEnd = 0;
    std::replace(wzRelative, pEnd, u'\\', platform::g_cPathSeparator);
    return g_fnResolveDataPath(wzOut, wzRelative);
}

bool g_fnCheckMemoFile(const char16_t* wzName, char16_t* wzFullPath) noexcept {
    char16_t wzOwn[g_uProfilePathCapacity];
    char16_t* const wzPath = wzFullPath ? wzFullPath : wzOwn;
    if (!g_fnResolveProfilePath(wzPath, wzName)) return false;
    g_fnWatchFile(wzPath);
    return static_cast<bool>(platform::OpenInput(wzPath));
}

std::unique_ptr<char16_t[]> g_fnLoadTextFromFile(const char16_t* wzFullPath) noexcept {
    g_fnWatchFile(wzFullPath);
    const platform::InputFile pFile = platform::OpenInput(wzFullPath);
    const std::unique_ptr<char[]> pBytes(new (std::nothrow) char[g_uTextFileBytesMax + 1]);
    if (!pFile || !pBytes) return nullptr;
    std::size_t uBytes = std::fread(pBytes.get(), 1, g_uTextFileBytesMax + 1, pFile.get());
    if (uBytes > g_uTextFileBytesMax) uBytes = Cut({pBytes.get(), g_uTextFileBytesMax}).size();
    pBytes[uBytes] = 0;
    Text wzText = Decode({pBytes.get(), uBytes});
    if (wzText && wzText[0] == 0) wzText.reset();
    return wzText;
}
