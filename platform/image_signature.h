#pragma once
// What the first bytes of a picture file tell.
#include "platform/types.h"

namespace platform {

enum class ImageKind : u8 { Unknown, Png, Jpeg, Gif, Bmp, Tiff, Heif };

ImageKind ImageKindOf(const u8* pBytes, std::size_t uBytes) noexcept;

/// True if width times height is a picture within the bounds: neither side 0, and no more pixels than one
/// frame may have.
bool ImageSizeAllowed(u64 uWidth, u64 uHeight) noexcept;

/// True if the head of a PNG, GIF, BMP or JPEG file names a picture beyond the bounds. Some decoders take
/// memory for all of it when they open the file.
bool ImageHeadTooLarge(const u8* pBytes, std::size_t uBytes) noexcept;

} // namespace platform
