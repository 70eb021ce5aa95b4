#pragma once
// From a picture file to the frames of a texture: what the file says of itself, and how the frames of an
// animation are laid over each other.
#include "draw/texture.h"
#include "platform/image_decoder.h"

/// What a file as a whole gives to a texture.
struct stImageContainer {
    u32 m_uWidth = 0, m_uHeight = 0; ///< 0: the file does not say, its first frame decides
    u32 m_uDisplayW = 0, m_uDisplayH = 0;
    f32 m_fBackground[4] = {}; ///< red, green, blue, alpha, each 0 to 255
    u32 m_uLoopCount = 0;      ///< 0: for ever, or not said
};

stImageContainer g_fnReadImageContainer(const platform::stImageFile& stFile) noexcept;

/// Milliseconds that a frame stays; a missing or zero delay becomes 90.
u32 g_fnFrameDelayMs(const platform::stImageFrame& stFrame) noexcept;

/// Clears what an earlier load left in a texture: delays, the frame shown and its time, loops, and the swap.
void g_fnForgetImage(CTexture_Base& texture) noexcept;

/// Work of CTexture_Base::m_fnLoadTexture.
bool g_fnLoadImageFile(CTexture_Base& texture, const char16_t* wzPath) noexcept;
