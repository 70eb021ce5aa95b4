#include "companion/utf.h"
#include "platform/utf.h"
#include <cstdio>

namespace companion {
namespace {

constexpr u32 kReplacement = 0xFFFD;

void AppendUtf8(std::string& strOut, u32 uCode) {
    char szBytes[4];
    strOut.append(szBytes, platform::EncodeUtf8(uCode, szBytes));
}

struct Decoded {
    u32 uCode = kReplacement;
    size_t uBytes = 1;
    bool bValid = false;
};

/// One code point at uAt; overlong forms, surrogates and cut sequences are not valid, byte by byte.
Decoded DecodeAt(std::string_view strText, size_t uAt) {
    const u32 uLength = platform::Utf8Length(static_cast<u8>(strText[uAt]));
    u32 uCode = 0;
    if (uLength == 0 || uLength > strText.size() - uAt) return {};
    if (!platform::JoinUtf8(&strText[uAt], uLength, uCode) || !platform::IsUtf8Code(uCode, uLength))
        return {};
    return {uCode, uLength, true};
}

/// Control characters, and what tears a table apart: line separators, marks and overrides of direction.
bool IsUnprintable(u32 uCode) {
    return uCode < 0x20 || (uCode >= 0x7F && uCode < 0xA0) || uCode == 0x61C ||
           (uCode >= 0x200E && uCode <= 0x200F) || (uCode >= 0x2028 && uCode <= 0x202E) ||
           (uCode >= 0x2066 && uCode <= 0x2069);
}

void AppendEscape(std::string& strOut, const char* szForm, u32 uCode) {
    char szEscape[16];
    std::snprintf(szEscape, sizeof(szEscape), szForm, static_cast<unsigned>(uCode));
    strOut += szEscape;
}

} // namespace

std::string Utf8FromUnits(const char16_t* pwzText, size_t uUnits) {
    std::string strOut;
    for (size_t i = 0; i < uUnits && pwzText[i] != 0; ++i) {
        const u32 uCode = platform::CodeOfUtf16(pwzText[i], i + 1 < uUnits ? pwzText[i + 1] : u'\0');
        if (uCode >= 0x10000) ++i;
        AppendUtf8(strOut, uCode);
    }
    return strOut;
}

bool UnitsFromUtf8(std::string_view strText, std::u16string& wzOut) {
    wzOut.clear();
    for (size_t i = 0; i < strText.size();) {
        const Decoded stCode = DecodeAt(strText, i);
        if (!stCode.bValid) return false;
        char16_t wzUnits[2];
        wzOut.append(wzUnits, platform::EncodeUtf16(stCode.uCode, wzUnits));
        i += stCode.uBytes;
    }
    return true;
}

std::string Printable(std::string_view strText) {
    std::string strOut;
    for (size_t i = 0; i < strText.size();) {
        const Decoded stCode = DecodeAt(strText, i);
        if (!IsUnprintable(stCode.uCode))
            AppendUtf8(strOut, stCode.uCode);
        else
            AppendEscape(strOut, stCode.uCode < 0x100 ? "\\x%02X" : "\\u%04X", stCode.uCode);
        i += stCode.uBytes;
    }
    return strOut;
}

std::string PrintableJson(std::string_view strJson) {
    std::string strOut;
    for (size_t i = 0; i < strJson.size();) {
        const Decoded stCode = DecodeAt(strJson, i);
        // Below a blank there are only the ends of lines between the values.
        if (stCode.uCode < 0x20 || !IsUnprintable(stCode.uCode))
            AppendUtf8(strOut, stCode.uCode);
        else
            AppendEscape(strOut, "\\u%04x", stCode.uCode);
        i += stCode.uBytes;
    }
    return strOut;
}

} // namespace companion
