#pragma once
// Glyphs that outlive their font. A reload destroys fonts and makes them again; those of one face, weight and
// cell come out as they were, so the next font takes its glyphs from the former one in place of drawing them.
// Render thread only.
#include "font/font_unicode.h"

/// To be called ahead of a font's end. Fonts out of font cache files, and blank ones, leave nothing.
void g_fnKeepGlyphs(CFontUniCode& font) noexcept;
void g_fnDropKeptGlyphs() noexcept;
bool g_fnHasKeptGlyphs() noexcept;

/// Whether a font of this one's kind left its glyphs.
bool g_fnIsKindKept(const CFontUniCode& font) noexcept;
/// What a font that begins would measure first; false where none of its kind left it. The font has its face
/// and its sizes.
bool g_fnTakeKeptMeasures(CFontUniCode& font) noexcept;
/// Fills the glyph buffer and the metrics of a record; false for a glyph that was not kept.
bool g_fnTakeKeptGlyph(CFontUniCode& font, u32 uCode, stFontChar& stRecord) noexcept;
