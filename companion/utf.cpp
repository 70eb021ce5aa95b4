#include "companion/utf.h"
#include <cstdio>

namespace companion {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHigh(char32_t uCode) { return uCode >= 0xD800 && uCode <= 0xDBFF; }
bool IsLow(char32_t uCode) { return uCode >= 0xDC00 && uCode <= 0xDFFF; }

void AppendUtf8(std::string& strOut, char32_t uCode) {
    if (uCode < 0x80) {
        strOut += static_cast<char>(uCode);
    } else if (uCode < 0x800) {
        strOut += static_cast<char>(0xC0 | (uCode >> 6));
        strOut += static_cast<char>(0x80 | (uCode & 0x3F));
    } else if (uCode < 0x10000) {
        strOut += static_cast<char>(0xE0 | (uCode >> 12));
        strOut += static_cast<char>(0x80 | ((uCode >> 6) & 0x3F));
        strOut += static_cast<char>(0x80 | (uCode & 0x3F));
    } else {
        strOut += static_cast<char>(0xF0 | (uCode >> 18));
        strOut += static_cast<char>(0x80 | ((uCode >> 12) & 0x3F));
        strOut += static_cast<char>(0x80 | ((uCode >> 6) & 0x3F));
        strOut += static_cast<char>(0x80 | (uCode & 0x3F));
    }
}

struct Decoded {
    char32_t uCode = kReplacement;
    size_t uBytes = 1;
    bool bValid = false;
};

size_t SequenceLength(u8 uLead) {
    if (uLead < 0x80) return 1;
    if (uLead >= 0xC2 && uLead <= 0xDF) return 2;
    if (uLead >= 0xE0 && uLead <= 0xEF) return 3;
    if (uLead >= 0xF0 && uLead <= 0xF4) return 4;
    return 0;
}

/// One code point at uAt; overlong forms, surrogates and cut sequences are not valid.
Decoded DecodeAt(std::string_view strText, size_t uAt) {
    const u8 uLead = static_cast<u8>(strText[uAt]);
    const size_t uLength = SequenceLength(uLead);
    if (uLength == 0 || uLength > strText.size() - uAt) return {};
    if (uLength == 1) return {uLead, 1, true};
    char32_t uCode = uLead & (0x7Fu >> uLength);
    for (size_t i = 1; i < uLength; ++i) {
        const u8 uNext = static_cast<u8>(strText[uAt + i]);
        if ((uNext & 0xC0) != 0x80) return {};
        uCode = (uCode << 6) | (uNext & 0x3Fu);
    }
    constexpr char32_t auLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (uCode < auLeast[uLength] || uCode > 0x10FFFF || IsHigh(uCode) || IsLow(uCode)) return {};
    return {uCode, uLength, true};
}

/// Control characters, and what tears a table apart: line separators, marks and overrides of direction.
bool IsUnprintable(char32_t uCode) {
    return uCode < 0x20 || (uCode >= 0x7F && uCode < 0xA0) || uCode == 0x61C ||
           (uCode >= 0x200E && uCode <= 0x200F) || (uCode >= 0x2028 && uCode <= 0x202E) ||
           (uCode >= 0x2066 && uCode <= 0x2069);
}

void AppendEscape(std::string& strOut, const char* szForm, char32_t uCode) {
    char szEscape[16];
    std::snprintf(szEscape, sizeof(szEscape), szForm, static_cast<unsigned>(uCode));
    strOut += szEscape;
}

} // namespace

std::string Utf8FromUnits(const char16_t* pwzText, size_t uUnits) {
    std::string strOut;
    for (size_t i = 0; i < uUnits && pwzText[i] != 0; ++i) {
        char32_t uCode = pwzText[i];
        if (IsHigh(uCode) && i + 1 < uUnits && IsLow(pwzText[i + 1])) {
            uCode = 0x10000 + ((uCode - 0xD800) << 10) + (pwzText[++i] - 0xDC00u);
        } else if (IsHigh(uCode) || IsLow(uCode)) {
            uCode = kReplacement;
        }
        AppendUtf8(strOut, uCode);
    }
    return strOut;
}

bool UnitsFromUtf8(std::string_view strText, std::u16string& wzOut) {
    wzOut.clear();
    for (size_t i = 0; i < strText.size();) {
        const Decoded stCode = DecodeAt(strText, i);
        if (!stCode.bValid) return false;
        if (stCode.uCode < 0x10000) {
            wzOut += static_cast<char16_t>(stCode.uCode);
        } else {
            wzOut += static_cast<char16_t>(0xD800 + ((stCode.uCode - 0x10000) >> 10));
            wzOut += static_cast<char16_t>(0xDC00 + (stCode.uCode & 0x3FF));
        }
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
