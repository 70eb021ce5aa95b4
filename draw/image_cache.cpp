#include "draw/image_cache.h"

#include "base/log.h"
#include "draw/data_path.h"
#include "draw/image_file.h"
#include "platform/folders.h"
#include "platform/image_decoder.h"
#include "platform/image_signature.h"
#include "platform/input_file.h"

#include <vector>

namespace {

struct stCacheHeader {
    u32 m_uWidth = 0, m_uHeight = 0, m_uFormat = 0, m_uFrames = 0;
};

/// A header that ends early has zeros for the rest.
stCacheHeader ReadHeader(std::FILE* pFile) {
    u8 au8[16] = {};
    if (std::fread(au8, 1, sizeof au8, pFile) == 0) return {};
    const auto number = [&](u32 u) {
        return au8[u] | static_cast<u32>(au8[u + 1]) << 8 | static_cast<u32>(au8[u + 2]) << 16 |
               static_cast<u32>(au8[u + 3]) << 24;
    };
    return {number(0), number(4), number(8), number(12)};
}

/// A texture of many frames has memory for all of them, though only the first is read.
bool IsAllowed(const stCacheHeader& st) {
    if (!st.m_uFrames || st.m_uFrames > g_uMaxTextureFrames) return false;
    if (!platform::ImageSizeAllowed(st.m_uWidth, st.m_uHeight)) return false;
    return static_cast<u64>(st.m_uWidth) * st.m_uHeight * st.m_uFrames <= platform::g_uMaxImageSumPixels;
}

bool Create(CTexture_Base& texture, const stCacheHeader& st) {
    if (texture.m_fnCreate(st.m_uWidth, st.m_uHeight, st.m_uFormat, st.m_uFrames, false)) return true;
    return st.m_uFormat == g_uFormatRGBA8 &&
           texture.m_fnCreate(st.m_uWidth, st.m_uHeight, g_uFormatBGRA8, st.m_uFrames, false);
}

/// KEEP(files): one place for all, whichever picture has a raw one beside it.
platform::InputFile OpenCache() {
    char16_t wzPath[g_uDataPathCapacity];
    if (platform::g_wzFixedScreenshotCache) return platform::OpenInput(platform::g_wzFixedScreenshotCache);
    return g_fnResolveDataPath(wzPath, u"Screenshot.png.cache") ? platform::OpenInput(wzPath) : nullptr;
}

} // namespace

bool g_fnReadImageCache(CTexture_Base& texture, std::FILE* pFile) {
    const stCacheHeader st = ReadHeader(pFile);
    g_fnForgetImage(texture);
    if (!IsAllowed(st)) {
        g_fnLog("pTexture_Base: m_fnLoadCache() refused: %u x %u, %u frames\n", st.m_uWidth, st.m_uHeight,
                st.m_uFrames);
        return false;
    }
    // Pixels that the file does not have stay 0.
    const std::size_t uBytes =
        static_cast<std::size_t>(st.m_uWidth) * st.m_uHeight * g_fnBytesPerPixel(st.m_uFormat);
    std::vector<u8> vecPixels;
    platform::AppendBytes(pFile, uBytes, vecPixels);
    vecPixels.resize(uBytes);
    // KEEP(files): frames beyond the first stay empty.
    return Create(texture, st) && texture.m_fnUploadLevel(vecPixels.data(), 0, 0);
}

bool g_fnLoadImageCache(CTexture_Base& texture) noexcept {
    try {
        const platform::InputFile pFile = OpenCache();
        return pFile && g_fnReadImageCache(texture, pFile.get());
    } catch (...) {
        return false;
    }
}
