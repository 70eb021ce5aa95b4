// From the text of a value to the field that holds it.
#include "base/numbers.h"
#include "config/settings/setting_binding.h"
#include "platform/utf.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

namespace {

constexpr u32 g_uByteOrderMark = 0xFEFF;

/// Sign of a number; moves past it.
bool TakeSign(const char*& szText) {
    const bool bNegative = *szText == '-';
    if (bNegative || *szText == '+') ++szText;
    return bNegative;
}

/// Digits up to the first other character. KEEP(files): leading blanks are other characters too; authors of
/// profiles are told so.
u64 ParseWhole(const char* szText, int iBase, bool bNegative) {
    u64 uValue = 0;
    const auto result = std::from_chars(szText, szText + std::strlen(szText), uValue, iBase);
    constexpr u64 uLowest = u64{1} << 63;
    if (result.ec == std::errc::result_out_of_range) uValue = ~u64{0};
    if (!bNegative) return uValue;
    return ~std::min(uValue, uLowest) + 1;
}

/// What stands for a number that no double holds: 0 if it is too small, else the greatest double.
f64 ParseBeyondRange(const char* szBegin, const char* szEnd) {
    const char* szStop = std::find_if(szBegin, szEnd, [](char c) { return c == 'e' || c == 'E'; });
    const char* szPoint = std::find(szBegin, szStop, '.');
    const bool bWhole = std::any_of(szBegin, szPoint, [](char c) { return c != '0'; });
    const bool bTiny = szStop + 1 < szEnd ? szStop[1] == '-' : !bWhole;
    return bTiny ? 0.0 : std::numeric_limits<f64>::max();
}

/// The 64-bit slot between text and target.
u64 ToSlot(u16 uKind, const char* szText) {
    switch (uKind) {
    case SETTING_DECIMAL:
        return g_fnParseDecimal(szText);
    case SETTING_HEX:
        return g_fnParseHex(szText);
    case SETTING_FLOAT:
        return std::bit_cast<u64>(g_fnParseFloat(szText));
    default:
        return 0;
    }
}

template <class T> void Put(void* pTarget, T value) { std::memcpy(pTarget, &value, sizeof value); }

void StoreNumber(void* pTarget, u8 uType, u64 uSlot) {
    switch (uType) {
    case TARGET_I8:
    case TARGET_U8:
        Put(pTarget, static_cast<u8>(uSlot));
        break;
    case TARGET_I16:
    case TARGET_U16:
        Put(pTarget, static_cast<u16>(uSlot));
        break;
    case TARGET_I32:
    case TARGET_U32:
        Put(pTarget, static_cast<u32>(uSlot));
        break;
    case TARGET_F32:
        Put(pTarget, g_fnNarrow(std::bit_cast<f64>(uSlot)));
        break;
    case TARGET_U64:
        Put(pTarget, uSlot);
        break;
    default:
        break;
    }
}

template <class T> void StoreText(void* pTarget, u32 uUnits, const T* text) {
    if (uUnits == 0) return;
    T* out = static_cast<T*>(pTarget);
    const std::size_t u = std::min<std::size_t>(std::char_traits<T>::length(text), uUnits - 1);
    std::copy_n(text, u, out);
    out[u] = 0;
    if constexpr (sizeof(T) == sizeof(char16_t)) // a cut leaves no half of a pair
        if (text[u] && u > 0 && (out[u - 1] & 0xFC00) == 0xD800) out[u - 1] = 0;
}

/// KEEP(files): the bytes of a default text are taken for wide text as they stand, so that only an empty or a
/// one-character default reads as written.
void StoreDefaultAsWide(char16_t* wzOut, u32 uUnits, const char (&szDefault)[g_uSettingText]) {
    char16_t wzText[g_uSettingText / 2 + 1] = {};
    for (u32 i = 0; i < g_uSettingText / 2; ++i)
        wzText[i] = static_cast<char16_t>(static_cast<u8>(szDefault[2 * i]) |
                                          static_cast<u8>(szDefault[2 * i + 1]) << 8);
    StoreText(wzOut, uUnits, wzText);
}

/// Numbers are ASCII: any other unit ends them.
void ToAscii(const char16_t* wzText, char (&szOut)[g_uSettingText + 4]) {
    std::size_t u = 0;
    for (; u + 1 < sizeof szOut && wzText[u] > 0 && wzText[u] < 0x80; ++u)
        szOut[u] = static_cast<char>(wzText[u]);
    szOut[u] = 0;
}

} // namespace

u64 g_fnParseDecimal(const char* szText) {
    const bool bNegative = TakeSign(szText);
    return ParseWhole(szText, 10, bNegative);
}

u64 g_fnParseHex(const char* szText) {
    const bool bNegative = TakeSign(szText);
    if (szText[0] == '0' && (szText[1] == 'x' || szText[1] == 'X')) szText += 2;
    return ParseWhole(szText, 16, bNegative);
}

f64 g_fnParseFloat(const char* szText) {
    const bool bNegative = TakeSign(szText);
    if ((*szText < '0' || *szText > '9') && *szText != '.') return 0;
    f64 fValue = 0;
    const auto result = std::from_chars(szText, szText + std::strlen(szText), fValue);
    if (result.ec == std::errc::result_out_of_range) fValue = ParseBeyondRange(szText, result.ptr);
    return bNegative ? -fValue : fValue;
}

void g_fnDecodeUtf8(const char* szText, char16_t* wzOut, u32 uUnits) {
    if (uUnits == 0) return;
    u32 uUsed = 0;
    while (*szText) {
        const u32 c = platform::NextUtf8(szText);
        if (c == g_uByteOrderMark) continue;
        const u32 uNeeded = c >= 0x10000 ? 2 : 1;
        if (uUsed + uNeeded >= uUnits) break;
        if (uNeeded == 2) wzOut[uUsed++] = static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
        wzOut[uUsed++] = static_cast<char16_t>(uNeeded == 2 ? 0xDC00 + ((c - 0x10000) & 0x3FF) : c);
    }
    wzOut[uUsed] = 0;
}

void g_fnStoreSetting(stSettingBinding& row, const char* szText) {
    row.uFound = szText != nullptr;
    if (!row.pTarget) return;
    const char* szUsed = szText ? szText : row.szDefault;
    if (row.uTargetType == TARGET_TEXT)
        StoreText(row.pTarget, row.uTargetUnits, szUsed);
    else if (row.uTargetType != TARGET_WIDE)
        StoreNumber(row.pTarget, row.uTargetType, ToSlot(row.uKind, szUsed));
    else if (szText)
        g_fnDecodeUtf8(szText, static_cast<char16_t*>(row.pTarget), row.uTargetUnits);
    else
        StoreDefaultAsWide(static_cast<char16_t*>(row.pTarget), row.uTargetUnits, row.szDefault);
}

void g_fnStoreSettingW(stSettingBindingW& row, const char16_t* wzText) {
    row.uFound = wzText != nullptr;
    if (!row.pTarget) return;
    const char16_t* wzUsed = wzText ? wzText : row.wzDefault;
    char szAscii[g_uSettingText + 4];
    ToAscii(wzUsed, szAscii);
    if (row.uTargetType == TARGET_TEXT)
        StoreText(row.pTarget, row.uTargetUnits, szAscii);
    else if (row.uTargetType == TARGET_WIDE)
        StoreText(row.pTarget, row.uTargetUnits, wzUsed);
    else
        StoreNumber(row.pTarget, row.uTargetType, ToSlot(row.uKind, szAscii));
}
