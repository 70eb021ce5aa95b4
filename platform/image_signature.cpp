#include "platform/image_signature.h"

#include "platform/image_decoder.h"

#include <cstdlib>
#include <cstring>

namespace platform {
namespace {

struct stSignature {
    ImageKind m_eKind;
    u32 m_uOffset;
    std::size_t m_uBytes;
    const char* m_pBytes;
};
constexpr stSignature g_astSignature[] = {
    {ImageKind::Png, 0, 8, "\x89PNG\r\n\x1A\n"},
    {ImageKind::Jpeg, 0, 3, "\xFF\xD8\xFF"},
    {ImageKind::Gif, 0, 6, "GIF87a"},
    {ImageKind::Gif, 0, 6, "GIF89a"},
    {ImageKind::Bmp, 0, 2, "BM"},
    {ImageKind::Tiff, 0, 4, "II*\0"},
    {ImageKind::Tiff, 0, 4, "MM\0*"},
    {ImageKind::Heif, 4, 8, "ftypheic"},
    {ImageKind::Heif, 4, 8, "ftypheix"},
    {ImageKind::Heif, 4, 8, "ftypheim"},
    {ImageKind::Heif, 4, 8, "ftypheis"},
    {ImageKind::Heif, 4, 8, "ftypmif1"},
};

struct stSize {
    u64 m_uWidth = 0, m_uHeight = 0;
};

u32 Little(const u8* p, u32 uCount) {
    u32 uValue = 0;
    while (uCount--) uValue = uValue << 8 | p[uCount];
    return uValue;
}

u32 Big(const u8* p, u32 uCount) {
    u32 uValue = 0;
    for (u32 i = 0; i < uCount; ++i) uValue = uValue << 8 | p[i];
    return uValue;
}

stSize BmpSize(const u8* p) {
    if (Little(p + 14, 4) == 12) return {Little(p + 18, 2), Little(p + 20, 2)};
    return {static_cast<u64>(std::llabs(static_cast<i32>(Little(p + 18, 4)))),
            static_cast<u64>(std::llabs(static_cast<i32>(Little(p + 22, 4))))};
}

/// A start of frame; C4, C8 and CC are other tables among its codes.
bool IsFrameMarker(u8 u8Code) {
    return u8Code >= 0xC0 && u8Code <= 0xCF && u8Code != 0xC4 && u8Code != 0xC8 && u8Code != 0xCC;
}

stSize JpegSize(const u8* p, std::size_t uBytes) {
    std::size_t u = 2;
    while (u + 9 <= uBytes && p[u] == 0xFF) {
        const u8 u8Code = p[u + 1];
        if (IsFrameMarker(u8Code)) return {Big(p + u + 7, 2), Big(p + u + 5, 2)};
        if (u8Code == 0xFF)
            ++u; // fill byte
        else if (u8Code == 0x01 || (u8Code >= 0xD0 && u8Code <= 0xD8))
            u += 2;
        else
            u += 2 + Big(p + u + 2, 2);
    }
    return {};
}

stSize HeadSize(const u8* p, std::size_t uBytes) {
    const ImageKind eKind = ImageKindOf(p, uBytes);
    if (eKind == ImageKind::Jpeg) return JpegSize(p, uBytes);
    if (uBytes < 26) return {};
    if (eKind == ImageKind::Png) return {Big(p + 16, 4), Big(p + 20, 4)};
    if (eKind == ImageKind::Gif) return {Little(p + 6, 2), Little(p + 8, 2)};
    return eKind == ImageKind::Bmp ? BmpSize(p) : stSize{};
}

} // namespace

ImageKind ImageKindOf(const u8* pBytes, std::size_t uBytes) noexcept {
    for (const stSignature& st : g_astSignature)
        if (uBytes >= st.m_uOffset + st.m_uBytes &&
            std::memcmp(pBytes + st.m_uOffset, st.m_pBytes, st.m_uBytes) == 0)
            return st.m_eKind;
    return ImageKind::Unknown;
}

bool ImageSizeAllowed(u64 uWidth, u64 uHeight) noexcept {
    return uWidth && uHeight && uWidth <= g_uMaxImagePixels && uHeight <= g_uMaxImagePixels / uWidth;
}

bool ImageHeadTooLarge(const u8* pBytes, std::size_t uBytes) noexcept {
    const stSize st = HeadSize(pBytes, uBytes);
    return st.m_uWidth && st.m_uHeight && !ImageSizeAllowed(st.m_uWidth, st.m_uHeight);
}

} // namespace platform
