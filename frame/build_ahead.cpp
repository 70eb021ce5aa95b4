#include "frame/build_ahead.h"

#include "base/host_care.h"
#include "platform/glyph_rasterizer.h"

static bool g_bPrepared = false;

bool g_fnIsBuildPrepared() noexcept {
    if (!g_stHostCare.bOuterGuard || g_bPrepared) return true;
    g_bPrepared = true;
    return !platform::HoldGlyphSystem();
}

void g_fnEndPreparation() noexcept {
    g_bPrepared = false;
    platform::LetGlyphSystemGo();
}
