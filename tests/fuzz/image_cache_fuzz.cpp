// The input as a raw picture: it loads whole or is refused, and pixels that it does not have are 0.
#include "draw/image_cache.h"

#include <cstdlib>
#include <cstring>

namespace {

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

/// Small pictures only are made; larger ones are held by the reader's own bounds.
class CSmallTexture : public CTexture_Base {
  public:
    bool m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) override {
        const bool bSmall = static_cast<u64>(uWidth) * uHeight * uFrames <= 1u << 18;
        return bSmall && CTexture_Base::m_fnCreate(uWidth, uHeight, uFormat, uFrames, bMipmap);
    }
    bool m_fnUploadLevel(const void* pPixels, u32 uFrame, u32) override {
        Require(uFrame == 0);
        u8* pOwn = nullptr;
        m_fnGetLevel(&pOwn, 0, 0);
        std::memcpy(pOwn, pPixels, m_uFrameBytes); // reads all of it
        return true;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uSize) {
    std::FILE* const pFile = uSize ? fmemopen(const_cast<u8*>(pData), uSize, "rb") : nullptr;
    if (!pFile) return 0;
    CSmallTexture texture;
    if (g_fnReadImageCache(texture, pFile)) {
        Require(texture.m_uFrameCount >= 1 && texture.m_uFrameCount <= static_cast<i32>(g_uMaxTextureFrames));
        u8* pPixels = nullptr;
        texture.m_fnGetLevel(&pPixels, 0, 0);
        for (std::size_t u = 0; u < texture.m_uFrameBytes; ++u)
            Require(pPixels[u] == (u + 16 < uSize ? pData[u + 16] : 0));
    }
    std::fclose(pFile);
    return 0;
}
