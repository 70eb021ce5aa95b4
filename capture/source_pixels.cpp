#include "capture/source_pixels.h"

#include <cstring>
#include <limits>
#include <new>

namespace {

/// Writes one pixel as blue, green, red and a byte that counts for nothing.
using ToBgrx = void (*)(const u8* pFrom, u8* pTo);

u32 Low16(const u8* p) { return p[0] | static_cast<u32>(p[1]) << 8; }
u32 Low32(const u8* p) { return Low16(p) | Low16(p + 2) << 16; }

/// Some bits of a pixel, as a byte: all ones are 255.
u8 Field(u32 uPixel, u32 uShift, u32 uBits) {
    const u32 uMost = (1u << uBits) - 1;
    return static_cast<u8>(((uPixel >> uShift & uMost) * 255 + uMost / 2) / uMost);
}

void Put(u8* pTo, u8 uRed, u8 uGreen, u8 uBlue) {
    pTo[0] = uBlue;
    pTo[1] = uGreen;
    pTo[2] = uRed;
    pTo[3] = 255;
}

/// A number of 16 bits: sign, 5 of exponent, 10 of fraction. 0 to 1 becomes a byte, what lies outside is held
/// there.
u8 FromHalf(u32 uHalf) {
    const u32 uExponent = uHalf >> 10 & 0x1F, uFraction = uHalf & 0x3FF;
    if (uHalf & 0x8000) return 0;
    if (uExponent == 31) return uFraction ? 0 : 255;
    if (uExponent >= 15) return 255;
    // In steps of 2 to the -24, where the smallest numbers stand.
    const u32 uSteps = uExponent ? (uFraction | 0x400) << (uExponent - 1) : uFraction;
    return static_cast<u8>((static_cast<u64>(uSteps) * 255 + (1u << 23)) >> 24);
}

void FromHalves(const u8* p, u8* pTo) {
    Put(pTo, FromHalf(Low16(p)), FromHalf(Low16(p + 2)), FromHalf(Low16(p + 4)));
}
void From565(const u8* p, u8* pTo) {
    const u32 u = Low16(p);
    Put(pTo, Field(u, 11, 5), Field(u, 5, 6), Field(u, 0, 5));
}
void From1555(const u8* p, u8* pTo) {
    const u32 u = Low16(p);
    Put(pTo, Field(u, 10, 5), Field(u, 5, 5), Field(u, 0, 5));
}
void From4444(const u8* p, u8* pTo) {
    const u32 u = Low16(p);
    Put(pTo, Field(u, 8, 4), Field(u, 4, 4), Field(u, 0, 4));
}
void FromRed10(const u8* p, u8* pTo) {
    const u32 u = Low32(p);
    Put(pTo, Field(u, 0, 10), Field(u, 10, 10), Field(u, 20, 10));
}
void FromBlue10(const u8* p, u8* pTo) {
    const u32 u = Low32(p);
    Put(pTo, Field(u, 20, 10), Field(u, 10, 10), Field(u, 0, 10));
}

struct stSourceRow {
    u32 uFirst, uLast; ///< codes
    u32 uBytes;        ///< of a pixel
    const char* szOrder;
    ToBgrx fnConvert; ///< null: the bytes are channels already
};
// KEEP(flavours): code 13 counts as "RGBX", although its red comes last.
constexpr stSourceRow g_aRows[] = {
    {11, 11, 4, "RGBX", nullptr},    {13, 13, 4, "RGBX", nullptr},  {14, 14, 4, "RGBX", nullptr},
    {29, 29, 8, "BGRX", FromHalves}, {47, 50, 4, "BGRX", nullptr},  {51, 52, 2, "BGRX", From565},
    {53, 53, 2, "BGRX", From1555},   {54, 54, 2, "BGRX", From4444}, {55, 55, 4, "BGRX", FromRed10},
    {56, 56, 4, "BGRX", FromBlue10},
};

const stSourceRow* FindRow(u32 uCode) {
    for (const stSourceRow& row : g_aRows)
        if (uCode >= row.uFirst && uCode <= row.uLast) return &row;
    return nullptr;
}

ChannelBuffer Allocate(u32 uWidth, u32 uHeight, u32 uBytes) {
    const u64 uPixels = static_cast<u64>(uWidth) * uHeight;
    if (uPixels == 0 || uBytes == 0 || uPixels > std::numeric_limits<u32>::max() / uBytes) return nullptr;
    return ChannelBuffer(new (std::nothrow) u8[uPixels * uBytes]);
}

void CopyChannel(const u8* pFrom, u32 uFrom, u8* pTo, u32 uTo, u64 uPixels) {
    for (; uPixels > 0; --uPixels, pFrom += uFrom, pTo += uTo) *pTo = *pFrom;
}

} // namespace

u32 g_fnSourceBytes(u32 uFormatCode) noexcept {
    const stSourceRow* const pRow = FindRow(uFormatCode);
    return pRow ? pRow->uBytes : 0;
}

stChannelPixels g_fnPrepareSource(const void* pPixels, u32 uWidth, u32 uHeight, u32 uFormatCode) noexcept {
    stChannelPixels st;
    const stSourceRow* const pRow = FindRow(uFormatCode);
    if (!pRow || !pPixels) return st;
    const u8* pFrom = static_cast<const u8*>(pPixels);
    st.szOrder = pRow->szOrder;
    st.pPixels = pFrom;
    if (!pRow->fnConvert) return st;
    st.pOwn = Allocate(uWidth, uHeight, 4);
    st.pPixels = st.pOwn.get();
    if (!st.pOwn) return st;
    u8* pTo = st.pOwn.get();
    for (u64 u = static_cast<u64>(uWidth) * uHeight; u > 0; --u, pFrom += pRow->uBytes, pTo += 4)
        pRow->fnConvert(pFrom, pTo);
    return st;
}

ChannelBuffer g_fnConvertChannels(const u8* pFrom, u32 uWidth, u32 uHeight, const char* szFrom,
                                  const char* szTo) noexcept {
    const u32 uFrom = static_cast<u32>(std::strlen(szFrom));
    u32 uTo = 0;
    for (const char* p = szTo; *p; ++p) uTo += *p != 'X';
    ChannelBuffer pTo = Allocate(uWidth, uHeight, uTo);
    if (!pTo) return nullptr;
    const u64 uPixels = static_cast<u64>(uWidth) * uHeight;
    std::memset(pTo.get(), 255, uPixels * uTo);
    u32 uAt = 0;
    for (const char* p = szTo; *p; ++p) {
        if (*p == 'X') continue;
        if (const char* pFound = std::strchr(szFrom, *p))
            CopyChannel(pFrom + (pFound - szFrom), uFrom, pTo.get() + uAt, uTo, uPixels);
        ++uAt;
    }
    return pTo;
}
