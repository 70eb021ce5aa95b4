#pragma once
// Writes a picture file.
#include "platform/image_encoder.h"

/// 0 if done, 99 for a null path or null pixels, else the step of platform::EncodeImage that failed. uStride
/// in bytes; rows from the top down. Any thread.
i32 g_fnSaveImage(u32 uWidth, u32 uHeight, u32 uStride, const void* pPixels, const char16_t* wzPath,
                  platform::ImageContainer eContainer, platform::ImagePixels ePixels) noexcept;
