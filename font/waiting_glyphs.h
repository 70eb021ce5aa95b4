#pragma once
// A layout's fonts begin with whole sets of characters, of which its first picture shows a few. With the key
// OuterGuard those of a set get their cells at once, and are drawn when they are asked for or, a few a frame,
// behind the build. Without it all are drawn as they are added. Render thread only.
#include "font/font_unicode.h"

/// Whether glyphs of sets may wait.
bool g_fnMayGlyphsWait() noexcept;
/// Some wait, or are drawn and not uploaded. Until g_fnTendGlyphs comes, uploads are left to it.
void g_fnNoteWaitingGlyphs() noexcept;
bool g_fnAreUploadsLeft() noexcept;
/// Ahead of what may ask for glyphs outside the drawing.
void g_fnLeaveUploads() noexcept;
/// Draws a few that wait in these fonts (null ones among them), uploads what was drawn since the last time,
/// and packs atlases that are done. To be called on each frame ahead of its drawing.
void g_fnTendGlyphs(CFontUniCode** ppFont, u32 uFonts) noexcept;
void g_fnResetWaitingGlyphs() noexcept;
