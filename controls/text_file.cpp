#include "controls/text_file.h"

#include "platform/code_page.h"
#include "platform/folders.h"
#include "platform/utf.h"
#include "shared/process_records.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
using Text = std::unique_ptr<char16_t[]>;

File Open(const char16_t* wzFullPath) { return {platform::OpenFileForRead(wzFullPath), std::fclose}; }

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

} // namespace

bool g_fnResolveProfilePath(char16_t* wzOut, const char16_t* wzName) noexcept {
    char16_t wzRelative[g_uProfilePathCapacity];
    const std::u16string_view folder(g_wzProfileFolder), name(wzName);
    wzOut[0] = 0;
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
    return g_fnResolveProfilePath(wzPath, wzName) && Open(wzPath);
}

std::unique_ptr<char16_t[]> g_fnLoadTextFromFile(const char16_t* wzFullPath) noexcept {
    const File pFile = Open(wzFullPath);
    const std::unique_ptr<char[]> pBytes(new (std::nothrow) char[g_uTextFileBytesMax + 1]);
    if (!pFile || !pBytes) return nullptr;
    const std::size_t uBytes = std::fread(pBytes.get(), 1, g_uTextFileBytesMax + 1, pFile.get());
    if (uBytes > g_uTextFileBytesMax) return nullptr;
    pBytes[uBytes] = 0;
    Text wzText = Decode({pBytes.get(), uBytes});
    if (wzText && wzText[0] == 0) wzText.reset();
    return wzText;
}
