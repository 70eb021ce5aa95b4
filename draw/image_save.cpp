#include "draw/image_save.h"

i32 g_fnSaveImage(u32 uWidth, u32 uHeight, u32 uStride, const void* pPixels, const char16_t* wzPath,
                  platform::ImageContainer eContainer, platform::ImagePixels ePixels) noexcept {
    if (!wzPath || !pPixels) return 99;
    return platform::EncodeImage(
        {uWidth, uHeight, uStride, static_cast<const u8*>(pPixels), wzPath, eContainer, ePixels});
}
