#pragma once
// Text conversion: UTF-8 against UTF-16, and the pieces that it is made of. Malformed input becomes U+FFFD,
// never a failure.
#include "platform/types.h"

namespace platform {

/// The code point of a unit; of the two if the next one completes it, which is then 0x10000 or more. U+FFFD
/// for a half alone.
inline u32 CodeOfUtf16(char16_t cFirst, char16_t cNext) noexcept {
    if (cFirst < 0xD800 || cFirst >= 0xE000) return cFirst;
    if (cFirst >= 0xDC00 || cNext < 0xDC00 || cNext >= 0xE000) return 0xFFFD;
    return 0x10000 + ((cFirst - 0xD800u) << 10) + (cNext - 0xDC00u);
}

/// Writes a code point as 1 or 2 units; how many.
inline u32 EncodeUtf16(u32 c, char16_t* pOut) noexcept {
    pOut[0] = static_cast<char16_t>(c < 0x10000 ? c : 0xD800 + ((c - 0x10000) >> 10));
    if (c < 0x10000) return 1;
    pOut[1] = static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    return 2;
}

/// Bytes that a code point takes, 1 to 4.
inline u32 Utf8Bytes(u32 c) noexcept { return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4; }

/// Writes a code point as 1 to 4 bytes; how many.
inline u32 EncodeUtf8(u32 c, char* pOut) noexcept {
    static constexpr u8 auLead[5] = {0, 0x00, 0xC0, 0xE0, 0xF0};
    const u32 uBytes = Utf8Bytes(c);
    pOut[0] = static_cast<char>(auLead[uBytes] | (c >> (6 * (uBytes - 1))));
    for (u32 i = 1; i < uBytes; ++i)
        pOut[i] = static_cast<char>(0x80 | ((c >> (6 * (uBytes - 1 - i))) & 0x3F));
    return uBytes;
}

/// Bytes of the code point that begins with a byte; 0 for one that begins none.
inline u32 Utf8Length(u8 uLead) noexcept {
    if (uLead < 0x80) return 1;
    if (uLead < 0xC2 || uLead >= 0xF5) return 0;
    return uLead < 0xE0 ? 2 : uLead < 0xF0 ? 3 : 4;
}

/// Joins the bytes of a code point. False at the first one that continues nothing: nothing behind it is read.
inline bool JoinUtf8(const char* pIn, u32 uLength, u32& uCode) noexcept {
    uCode = static_cast<u8>(*pIn) & (uLength == 1 ? 0x7Fu : 0x7Fu >> uLength);
    for (u32 i = 1; i < uLength; ++i) {
        if ((static_cast<u8>(pIn[i]) & 0xC0) != 0x80) return false;
        uCode = (uCode << 6) | (static_cast<u8>(pIn[i]) & 0x3F);
    }
    return true;
}

/// No half of a pair, nothing beyond the last code point, and in no more bytes than it takes.
inline bool IsUtf8Code(u32 uCode, u32 uLength) noexcept {
    return uCode <= 0x10FFFF && (uCode < 0xD800 || uCode >= 0xE000) && Utf8Bytes(uCode) == uLength;
}

/// Terminated UTF-8 of a terminated UTF-16 text; capacity in bytes. False if it does not fit (or null).
inline bool Utf16ToUtf8(const char16_t* wzIn, char* szOut, u32 uCapacity) noexcept {
    if (!wzIn || uCapacity == 0) return false;
    u32 uUsed = 0;
    while (*wzIn) {
        const u32 c = CodeOfUtf16(wzIn[0], wzIn[1]);
        wzIn += c >= 0x10000 ? 2 : 1;
        if (uUsed + Utf8Bytes(c) >= uCapacity) return false;
        uUsed += EncodeUtf8(c, szOut + uUsed);
    }
    szOut[uUsed] = 0;
    return true;
}

/// Takes one code point off a terminated UTF-8 text; U+FFFD for a byte that starts none, and for a whole
/// sequence that means none.
inline u32 NextUtf8(const char*& szIn) noexcept {
    const u32 uLength = Utf8Length(static_cast<u8>(*szIn));
    u32 uCode = 0;
    const bool bWhole = uLength != 0 && JoinUtf8(szIn, uLength, uCode);
    szIn += bWhole ? uLength : 1;
    return bWhole && IsUtf8Code(uCode, uLength) ? uCode : 0xFFFD;
}

/// Terminated UTF-16 of a terminated UTF-8 text; capacity in units. False if it does not fit (or null).
inline bool Utf8ToUtf16(const char* szIn, char16_t* wzOut, u32 uCapacity) noexcept {
    if (!szIn || uCapacity == 0) return false;
    u32 uUsed = 0;
    while (*szIn) {
        const u32 c = NextUtf8(szIn);
        if (uUsed + (c >= 0x10000 ? 2 : 1) >= uCapacity) return false;
        uUsed += EncodeUtf16(c, wzOut + uUsed);
    }
    wzOut[uUsed] = 0;
    return true;
}

} // namespace platform
