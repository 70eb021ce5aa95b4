#pragma once
// One screenshot as one file.
#include "draw/image_save.h"

/// File types of screenshots. Types above the last stand for BMP, JPEG and PNG together.
enum eShotType : u32 { SHOT_BMP = 0, SHOT_JPEG = 1, SHOT_PNG = 2, SHOT_HEIF = 3, SHOT_TYPES = 4 };

/// Encodes one file from pixels of a format code (capture/source_pixels.h), rows packed and from the top
/// down. wzName comes without extension; an empty folder stands for the data folder. Any thread. True, also
/// where nothing could be written.
bool g_fnSaveImage(u32 uWidth, u32 uHeight, const void* pPixels, u32 uFormatCode, u32 uFileType,
                   const char16_t* wzFolder, const char16_t* wzName) noexcept;
