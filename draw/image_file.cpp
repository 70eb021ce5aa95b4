#include "draw/image_file.h"

#include "base/log.h"
#include "draw/image_frames.h"
#include "platform/image_signature.h"

#include <cstring>

namespace {

using platform::stImageFile;
using platform::stImageFrame;

constexpr u32 g_uDefaultDelayMs = 90;

/// Alive as long as the load: what it opened is closed on every way out.
class CImageSession {
  public:
    explicit CImageSession(CTexture_Base& texture) : m_texture(texture) {}
    CImageSession(const CImageSession&) = delete;
    CImageSession& operator=(const CImageSession&) = delete;
    ~CImageSession() {
        platform::CloseImage(static_cast<platform::ImageDecoder*>(m_texture.m_pDecoder));
        platform::DestroyImageFactory(static_cast<platform::ImageFactory*>(m_texture.m_pDecoderFactory));
        m_texture.m_pDecoder = m_texture.m_pDecoderFactory = nullptr;
    }
    bool Open(const char16_t* wzPath, const char** pszReason) {
        platform::ImageFactory* const pFactory = platform::CreateImageFactory();
        m_texture.m_pDecoderFactory = pFactory;
        m_texture.m_pDecoder = pFactory ? platform::OpenImage(pFactory, wzPath, pszReason) : nullptr;
        return m_texture.m_pDecoder != nullptr;
    }

  private:
    CTexture_Base& m_texture;
};

void ReadBackground(const stImageFile& st, f32* pfColor) {
    const u32 uIndex = st.m_stBackgroundIndex.m_uValue;
    if (!st.m_stGlobalTable.m_bGiven || !st.m_stGlobalTable.m_uValue) return;
    if (!st.m_stBackgroundIndex.m_bGiven || uIndex >= st.m_uPaletteColors) return;
    const u32 uColor = st.m_auPalette[uIndex];
    for (u32 i = 0; i < 4; ++i) pfColor[i] = static_cast<f32>(uColor >> (i == 3 ? 24 : 16 - 8 * i) & 0xFF);
}

/// A ratio byte of 49 stands for square pixels.
void ReadDisplaySize(const stImageFile& st, stImageContainer& stOut) {
    stOut.m_uDisplayW = stOut.m_uWidth;
    stOut.m_uDisplayH = stOut.m_uHeight;
    if (!st.m_stPixelAspect.m_bGiven || !st.m_stPixelAspect.m_uValue) return;
    const f32 fRatio = static_cast<f32>(st.m_stPixelAspect.m_uValue + 15) * 0.015625f;
    if (fRatio > 1.0f)
        stOut.m_uDisplayH = static_cast<u32>(static_cast<f32>(stOut.m_uHeight) / fRatio);
    else
        stOut.m_uDisplayW = static_cast<u32>(static_cast<f32>(stOut.m_uWidth) * fRatio);
}

bool IsLoopBlock(const platform::stImageBytes& st) {
    return st.m_uBytes == 11 &&
           (std::memcmp(st.m_au8, "NETSCAPE2.0", 11) == 0 || std::memcmp(st.m_au8, "ANIMEXTS1.0", 11) == 0);
}

/// False for a block that is there and can't be read. One of somebody else, or none, only leaves the count.
bool ReadLoopCount(const stImageFile& st, u32& uCount) {
    if (!st.m_stApplication.m_bPresent) return true;
    if (!st.m_stApplication.m_bReadable) return false;
    if (!IsLoopBlock(st.m_stApplication)) return true;
    const platform::stImageBytes& stData = st.m_stLoopData;
    if (!stData.m_bReadable || stData.m_uBytes < 4) return false;
    if (stData.m_au8[0] > 0 && stData.m_au8[1] == 1) uCount = stData.m_au8[2] + stData.m_au8[3] * 256u;
    return true;
}

bool Refuse(const char* szReason) {
    g_fnLog("pTexture_Base: m_fnLoadTexture() refused: %s\n", szReason);
    return false;
}

bool LoadFrames(CTexture_Base& texture) {
    CImageFrames frames(texture);
    stImageFile stFile;
    platform::DescribeImage(static_cast<platform::ImageDecoder*>(texture.m_pDecoder), &stFile);
    texture.m_uFileFrames = stFile.m_uFrames ? stFile.m_uFrames : 1;
    if (const char* const szReason = frames.Measure(g_fnReadImageContainer(stFile))) return Refuse(szReason);
    if (!frames.CreateTexture()) return Refuse("no memory for its frames");
    return frames.Compose() || Refuse("no frame can be decoded");
}

bool Load(CTexture_Base& texture, const char16_t* wzPath) {
    const char* szReason = "no decoder on this system";
    CImageSession session(texture);
    g_fnForgetImage(texture);
    if (!session.Open(wzPath, &szReason)) return Refuse(szReason);
    return LoadFrames(texture);
}

} // namespace

stImageContainer g_fnReadImageContainer(const stImageFile& stFile) noexcept {
    stImageContainer st;
    ReadBackground(stFile, st.m_fBackground);
    const bool bSize = stFile.m_stWidth.m_bGiven && stFile.m_stHeight.m_bGiven && stFile.m_stWidth.m_uValue &&
                       stFile.m_stHeight.m_uValue;
    if (!bSize || !ReadLoopCount(stFile, st.m_uLoopCount)) return st;
    st.m_uWidth = stFile.m_stWidth.m_uValue;
    st.m_uHeight = stFile.m_stHeight.m_uValue;
    ReadDisplaySize(stFile, st);
    return st;
}

void g_fnForgetImage(CTexture_Base& texture) noexcept {
    texture.m_mapFrameDelay.clear();
    texture.m_uCurrentFrame = texture.m_uFileFrameIndex = texture.m_uLoopCount = texture.m_uStoredFrames = 0;
    texture.m_fFrameTime = 0.0f;
    texture.m_bSwapRB = texture.m_bLoops = false;
}

u32 g_fnFrameDelayMs(const stImageFrame& stFrame) noexcept {
    const u32 uHundredths = stFrame.m_stDelay.m_bGiven ? stFrame.m_stDelay.m_uValue : 0;
    return uHundredths ? uHundredths * 10 : g_uDefaultDelayMs;
}

bool g_fnLoadImageFile(CTexture_Base& texture, const char16_t* wzPath) noexcept {
    bool bLoaded = false;
    g_fnLog("pTexture_Base: m_fnLoadTexture() Start\n");
    try {
        bLoaded = Load(texture, wzPath);
    } catch (...) {
        Refuse("out of memory");
    }
    g_fnLog("Texture_Base: m_fnLoadTexture() End\n");
    return bLoaded;
}
