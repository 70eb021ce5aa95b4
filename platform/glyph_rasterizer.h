#pragma once
// Turns text into two-level pictures of glyphs: GDI (Win32) or FreeType with fontconfig (elsewhere). A device
// has one bitmap selected and draws white on black, in pixels, the text origin at the left edge and on a
// baseline. Objects belong to whoever made them; a font may be deleted at any time, a device goes before its
// bitmap. Null handles are accepted everywhere and do nothing. One thread at a time for one device and its
// fonts.
#include "platform/types.h"

namespace platform {

struct GlyphDevice;
struct GlyphBitmap;
struct GlyphFont;

/// What a font is made of.
struct stGlyphFontRequest {
    u32 m_uSize;              ///< nominal size; picks the face, the drawn size is the next field
    i32 m_iEmHeight;          ///< pixels of the em, which all glyphs are scaled to
    i32 m_iWeight;            ///< 0 to 1000; 0 is regular, as 400
    const char16_t* m_wzFace; ///< null: the default face, one of fixed pitch
    /// The face may be looked for at the first use; a font without one then draws nothing.
    bool m_bAtFirstUse = false;
};

/// Opens what all fonts share, which takes long, ahead of the first font, and keeps it open until it is let
/// go. True if there was something to open.
bool HoldGlyphSystem() noexcept;
void LetGlyphSystemGo() noexcept;

/// Null when out of memory.
GlyphDevice* CreateGlyphDevice() noexcept;
void DestroyGlyphDevice(GlyphDevice* pDevice) noexcept;
/// Pixels per inch, 96 for a null device.
void GlyphDeviceDpi(GlyphDevice* pDevice, i32* piX, i32* piY) noexcept;

/// Two-level bitmap, selected into the device and black. Null when out of memory or for sides below 1.
GlyphBitmap* CreateGlyphBitmap(GlyphDevice* pDevice, i32 iWidth, i32 iHeight) noexcept;
void DestroyGlyphBitmap(GlyphBitmap* pBitmap) noexcept;
/// Paints the whole bitmap black.
void ClearGlyphBitmap(GlyphDevice* pDevice) noexcept;
/// Rows from one up to another, which is not among them.
struct stGlyphRows {
    i32 m_iTop, m_iEnd;
};
/// Reads iWidth * iHeight pixels from the top left, top row first: three equal bytes a pixel, 0 or 255, each
/// row padded to a multiple of four bytes. pRows holds (iWidth * 3 + 3) / 4 * 4 * iHeight bytes. Gives the
/// rows that it wrote; all others are black and left alone.
stGlyphRows ReadGlyphBitmap(GlyphDevice* pDevice, i32 iWidth, i32 iHeight, u8* pRows) noexcept;

/// Nothing is going to be drawn for a while: memory that the next glyph can take again is given back. The
/// bitmap becomes black, the font stays as good as open.
void RestGlyphDevice(GlyphDevice* pDevice) noexcept;
void RestGlyphFont(GlyphFont* pFont) noexcept;

/// An unknown face gives the nearest one; null only when no face can be opened at all. May search all fonts
/// of the system, which takes long the first time.
GlyphFont* CreateGlyphFont(GlyphDevice* pDevice, const stGlyphFontRequest& stRequest) noexcept;
void DestroyGlyphFont(GlyphFont* pFont) noexcept;
/// Draws uUnits units of UTF-16 at x = 0 over what is there; iBaseline is the row below the feet of letters
/// without descenders.
void DrawGlyphs(GlyphDevice* pDevice, GlyphFont* pFont, const char16_t* wzText, u32 uUnits,
                i32 iBaseline) noexcept;
/// Advance of the text in pixels; 0 for an empty one.
i32 GlyphExtent(GlyphDevice* pDevice, GlyphFont* pFont, const char16_t* wzText, u32 uUnits) noexcept;
/// Family name of the face that the font draws with, which is another than asked for where that is not
/// installed. False, with an empty text, if it is unknown or does not fit.
bool GlyphFontFamily(GlyphDevice* pDevice, GlyphFont* pFont, char16_t* wzOut, u32 uCapacity) noexcept;
/// True if the font's own face has a glyph for the text's first character, without help of other faces.
bool FontHasGlyph(GlyphDevice* pDevice, GlyphFont* pFont, const char16_t* wzText, u32 uUnits) noexcept;
/// True if the code point lies in the ranges that the font's own face names.
bool FontCoversCode(GlyphDevice* pDevice, GlyphFont* pFont, u32 uCode) noexcept;

} // namespace platform
