#pragma once
// Pictures in memory, and their files. Reading and writing files has one implementation a system; the build
// chooses.
#include "platform/tool_result.h"
#include "platform/types.h"
#include <string>
#include <vector>

namespace platform::tool {

struct Picture {
    u32 uWidth = 0, uHeight = 0;
    std::vector<u8> aPixels; ///< red, green, blue, opacity; top row first

    Picture() = default;
    Picture(u32 uW, u32 uH) : uWidth(uW), uHeight(uH), aPixels(static_cast<size_t>(uW) * uH * 4, 255) {}
    u8* At(u32 uX, u32 uY) { return &aPixels[(static_cast<size_t>(uY) * uWidth + uX) * 4]; }
    const u8* At(u32 uX, u32 uY) const { return &aPixels[(static_cast<size_t>(uY) * uWidth + uX) * 4]; }
};

constexpr u32 g_uPictureSideMost = 16384; ///< larger files are refused

/// Reads a PNG (Windows: also what the system's own codecs read).
Result ReadPicture(const std::string& strPath, Picture& picture);
/// Writes a PNG of red, green and blue. An existing file is replaced whole or not at all.
Result WritePicture(const std::string& strPath, const Picture& picture);

} // namespace platform::tool
