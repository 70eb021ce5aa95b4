#pragma once
// Reads picture files: the Windows Imaging Component (Win32), or libpng, libjpeg, giflib, libtiff, libheif
// and own code for BMP (elsewhere). The kind of a file is told by its first bytes, never by its name, and
// nothing that a file says is believed. What the frames of an animation make together is not known here.
//
// A factory is what all decoders share; it is made and destroyed on one thread, and goes last. Null handles
// do nothing. No call throws.
#include "platform/types.h"

namespace platform {

/// Bounds of what is opened. They are tested before memory is taken for pixels.
constexpr u32 g_uMaxImagePixels = 1u << 25;    ///< of one frame: 8K fits
constexpr u32 g_uMaxImageSumPixels = 1u << 27; ///< of all frames together
constexpr u32 g_uMaxImageFrames = 65536;       ///< frames that are looked at; later ones are not there
constexpr u64 g_uMaxImageFileBytes = 160u << 20;

/// Formats that pixels come in; codes of draw/texture.h.
constexpr u32 g_uImageAlpha8 = 1, g_uImageRGBA8 = 11, g_uImageBGRA8 = 47;

struct ImageFactory;
struct ImageDecoder;

/// A number that a file may hold.
struct stImageValue {
    bool m_bGiven = false; ///< present, and of the type that it must have
    u32 m_uValue = 0;
};

/// Bytes that a file may hold.
struct stImageBytes {
    bool m_bPresent = false;
    bool m_bReadable = false; ///< of the type that it must have
    u32 m_uBytes = 0;         ///< in the file; no more than the room here are kept
    u8 m_au8[16] = {};
};

/// What a file says of itself as a whole. Only GIF files have more than the count.
struct stImageFile {
    u32 m_uFrames = 0; ///< 0 if the decoder does not know
    stImageValue m_stWidth, m_stHeight, m_stPixelAspect;
    stImageValue m_stGlobalTable, m_stBackgroundIndex;
    u32 m_uPaletteColors = 0;     ///< of the file's palette, at most 256
    u32 m_auPalette[256] = {};    ///< 0xAARRGGBB
    stImageBytes m_stApplication; ///< name of the first application block
    stImageBytes m_stLoopData;    ///< its first data, with the length byte ahead
};

/// What a file says of one frame.
struct stImageFrame {
    u32 m_uWidth = 0, m_uHeight = 0; ///< of its pixels
    u32 m_uFormat = 0;               ///< that CopyImageFrame gives
    stImageValue m_stLeft, m_stTop, m_stPlaceWidth, m_stPlaceHeight;
    stImageValue m_stDelay; ///< hundredths of a second
    stImageValue m_stDisposal;
};

/// Null when the system has no such thing.
ImageFactory* CreateImageFactory() noexcept;
void DestroyImageFactory(ImageFactory* pFactory) noexcept;
/// Null, with the reason in words, for a file that can't be read, is of no known kind, is damaged at its
/// start, or is beyond the bounds.
ImageDecoder* OpenImage(ImageFactory* pFactory, const char16_t* wzPath, const char** pszReason) noexcept;
void CloseImage(ImageDecoder* pDecoder) noexcept;
void DescribeImage(ImageDecoder* pDecoder, stImageFile* pOut) noexcept;
/// False for a frame that can't be read, or has a format without a way to one of ours.
bool DescribeImageFrame(ImageDecoder* pDecoder, u32 uFrame, stImageFrame* pOut) noexcept;
/// Pixels of a frame, straight alpha, at the top left of a picture of uWidth by uHeight pixels whose rows
/// are packed. False for a frame that is larger than the picture or beyond the bounds, or is damaged; the
/// picture's contents are not known then.
bool CopyImageFrame(ImageDecoder* pDecoder, u32 uFrame, u32 uWidth, u32 uHeight, u8* pPixels) noexcept;

} // namespace platform
