#pragma once
// Writes picture files: the Windows Imaging Component (Win32), or libpng, libjpeg, own code for BMP, and
// libheif where it is installed (elsewhere). Any thread. No call throws.
#include "platform/types.h"

namespace platform {

enum class ImageContainer : u8 { Bmp, Jpeg, Png, Heif };
/// Order of a pixel's bytes.
enum class ImagePixels : u8 { Bgr24, Bgra32 };

struct stImageToSave {
    u32 m_uWidth, m_uHeight;
    u32 m_uStride; ///< bytes from row to row
    const u8* m_pPixels;
    const char16_t* m_wzPath;
    ImageContainer m_eContainer;
    ImagePixels m_ePixels;
};

/// 0 if done, else the step that failed: 1 the system's component, 2 a stream, 3 the file, 4 an encoder for
/// the container, 5 and 6 its start and a frame, 7 to 9 the frame's start, size and pixel format, 10 the
/// pixels, 11 and 12 the end of frame and file. No file is left behind then. Nobody finds the file under its
/// name before it is whole.
i32 EncodeImage(const stImageToSave& st) noexcept;

} // namespace platform
