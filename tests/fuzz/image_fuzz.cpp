// The input as a picture file of one kind each: what the decoder opens can be described and copied without a
// step outside its bounds, and loading it into a texture ends, with as many frames as it says.
#include "draw/texture.h"
#include "platform/linux/image_reader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace platform;

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

/// Pictures of this size are quick to decode; larger ones are held by the decoders' own bounds.
bool IsQuick(u64 uWidth, u64 uHeight) { return uWidth * uHeight <= 1u << 14; }
constexpr u32 c_uQuickFrames = 40;

u32 Crc(const char* p, std::size_t uBytes) {
    u32 uCrc = 0xFFFFFFFF;
    for (; uBytes; --uBytes) {
        uCrc ^= static_cast<u8>(*p++);
        for (int i = 0; i < 8; ++i) uCrc = uCrc >> 1 ^ (uCrc & 1 ? 0xEDB88320u : 0);
    }
    return ~uCrc;
}

u32 Big(const char* p) {
    u32 uValue = 0;
    for (int i = 0; i < 4; ++i) uValue = uValue << 8 | static_cast<u8>(p[i]);
    return uValue;
}

/// Sums of a PNG file's blocks made right, since the library looks no further at a wrong one.
void MendSums(std::string& str) {
    for (std::size_t u = 8; u + 12 <= str.size();) {
        const u32 uBytes = Big(&str[u]);
        if (uBytes > str.size() - u - 12) return;
        const u32 uCrc = Crc(&str[u + 4], uBytes + 4);
        for (int i = 0; i < 4; ++i)
            str[u + 8 + uBytes + static_cast<u32>(i)] = static_cast<char>(uCrc >> (24 - 8 * i));
        u += uBytes + 12ul;
    }
}

/// True if all frames are quick.
bool UseFrames(ImageDecoder* pDecoder, u32 uFrames) {
    bool bQuick = uFrames <= c_uQuickFrames;
    for (u32 i = 0; i < std::min(uFrames, c_uQuickFrames); ++i) {
        stImageFrame st;
        if (!DescribeImageFrame(pDecoder, i, &st)) continue;
        Require(st.m_uWidth && st.m_uHeight);
        Require(st.m_uFormat == g_uImageRGBA8 || st.m_uFormat == g_uImageBGRA8);
        if (!IsQuick(st.m_uWidth, st.m_uHeight)) {
            bQuick = false;
            continue;
        }
        std::vector<u8> vecPixels((st.m_uWidth + 1) * st.m_uHeight * 4);
        CopyImageFrame(pDecoder, i, st.m_uWidth + 1, st.m_uHeight, vecPixels.data());
        Require(!CopyImageFrame(pDecoder, i, st.m_uWidth - 1, st.m_uHeight, vecPixels.data()));
    }
    Require(!CopyImageFrame(pDecoder, uFrames, 1, 1, nullptr));
    return bQuick;
}

bool UseDecoder(const std::string& strFile) {
    const char* szReason = nullptr;
    ImageDecoder* const pDecoder = image::OpenImageBytes(strFile, &szReason);
    if (!pDecoder) {
        Require(szReason && *szReason);
        return false;
    }
    stImageFile st;
    DescribeImage(pDecoder, &st);
    Require(st.m_uFrames >= 1 && st.m_uFrames <= g_uMaxImageFrames && st.m_uPaletteColors <= 256);
    const bool bQuick = UseFrames(pDecoder, st.m_uFrames);
    CloseImage(pDecoder);
    return bQuick && IsQuick(st.m_stWidth.m_uValue, st.m_stHeight.m_uValue);
}

void LoadTexture(const std::string& strFile) {
    const int iFile = memfd_create("picture", MFD_CLOEXEC);
    Require(iFile >= 0 &&
            write(iFile, strFile.data(), strFile.size()) == static_cast<ssize_t>(strFile.size()));
    const std::string strPath = "/proc/self/fd/" + std::to_string(iFile);
    CTexture_Base texture;
    if (texture.m_fnLoadTexture(std::u16string(strPath.begin(), strPath.end()).c_str())) {
        Require(texture.m_uFrameCount >= 1 &&
                texture.m_uStoredFrames <= static_cast<u32>(texture.m_uFrameCount));
        Require(texture.m_uFileFrames < 2 ||
                texture.m_mapFrameDelay.size() == static_cast<u32>(texture.m_uFrameCount));
    }
    Require(!texture.m_pDecoder && !texture.m_pDecoderFactory);
    close(iFile);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uSize) {
    std::string strFile(reinterpret_cast<const char*>(pData), uSize);
    if (ImageKindOf(pData, uSize) == ImageKind::Png) MendSums(strFile);
    if (UseDecoder(strFile)) LoadTexture(strFile);
    return 0;
}
