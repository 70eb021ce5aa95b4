#include "frame/build_ahead.h"

#include "base/host_care.h"
#include "config/load.h"
#include "config/profile/profile_document.h"
#include "font/kept_glyphs.h"
#include "platform/glyph_rasterizer.h"

static bool g_bPrepared = false;

/// Fonts out of files open the system's only for what they lack, and so do those that come again.
static void HoldFonts() noexcept {
    if (!g_fnHasFontFiles() && !g_fnHasKeptGlyphs()) platform::HoldGlyphSystem();
}

bool g_fnIsBuildPrepared() noexcept {
    if (!g_stHostCare.bOuterGuard || g_bPrepared) return true;
    g_bPrepared = true;
    HoldFonts();
    g_fnReadReferenceAhead();
    return false;
}

void g_fnEndPreparation() noexcept {
    g_bPrepared = false;
    platform::LetGlyphSystemGo();
    g_fnDropReferenceAhead();
}
