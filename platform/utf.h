#pragma once
// Text conversion for the back-ends: UTF-8 against UTF-16. Malformed input becomes U+FFFD, never a failure.
#include "platform/types.h"

namespace platform {

/// Terminated UTF-8 of a terminated UTF-16 text; capacity in bytes. False if it does not fit (or null).
inline bool Utf16ToUtf8(const char16_t* wzIn, char* szOut, u32 uCapacity) noexcept {
    if (!wzIn || uCapacity == 0) return false;
    u32 uUsed = 0;
    while (*wzIn) {
        u32 c = *wzIn++;
        if (c >= 0xD800 && c < 0xDC00 && *wzIn >= 0xDC00 && *wzIn < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (*wzIn++ - 0xDC00u);
        else if (c >= 0xD800 && c < 0xE000)
            c = 0xFFFD;
        const u32 uExtra = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        if (uUsed + uExtra + 1 >= uCapacity) return false;
        static constexpr u8 auLead[4] = {0x00, 0xC0, 0xE0, 0xF0};
        szOut[uUsed++] = static_cast<char>(auLead[uExtra] | (c >> (6 * uExtra)));
        for (u32 i = uExtra; i > 0; --i)
            szOut[uUsed++] = static_cast<char>(0x80 | ((c >> (6 * (i - 1))) & 0x3F));
    }
    szOut[uUsed] = 0;
    return true;
}

/// Takes one code point off a UTF-8 text; U+FFFD for a byte that starts none.
inline u32 NextUtf8(const char*& szIn) noexcept {
    const u8 c = static_cast<u8>(*szIn++);
    if (c < 0x80) return c;
    const u32 uExtra = c >= 0xC2 && c < 0xE0 ? 1 : (c & 0xF0) == 0xE0 ? 2 : c >= 0xF0 && c < 0xF5 ? 3 : 0;
    u32 uCode = c & (0x3Fu >> uExtra);
    for (u32 i = 0; i < uExtra; ++i) {
        if ((static_cast<u8>(szIn[i]) & 0xC0) != 0x80) return 0xFFFD;
        uCode = (uCode << 6) | (static_cast<u8>(szIn[i]) & 0x3F);
    }
    szIn += uExtra;
    static constexpr u32 auLeast[4] = {0x110000, 0x80, 0x800, 0x10000};
    return uCode < auLeast[uExtra] || uCode > 0x10FFFF || (uCode >= 0xD800 && uCode < 0xE000) ? 0xFFFD
                                                                                              : uCode;
}

/// Terminated UTF-16 of a terminated UTF-8 text; capacity in units. False if it does not fit (or null).
inline bool Utf8ToUtf16(const char* szIn, char16_t* wzOut, u32 uCapacity) noexcept {
    if (!szIn || uCapacity == 0) return false;
    u32 uUsed = 0;
    while (*szIn) {
        const u32 c = NextUtf8(szIn);
        const u32 uUnits = c >= 0x10000 ? 2 : 1;
        if (uUsed + uUnits >= uCapacity) return false;
        if (uUnits == 2) {
            wzOut[uUsed++] = static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            wzOut[uUsed++] = static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            wzOut[uUsed++] = static_cast<char16_t>(c);
        }
    }
    wzOut[uUsed] = 0;
    return true;
}

} // namespace platform
