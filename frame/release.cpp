#include "frame/release.h"

#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/first_draws.h"
#include "draw/own_context.h"
#include "frame/context_state.h"
#include "frame/outer_guard.h"
#include "frame/resources.h"
#include "frame/surface_owner.h"

/// What is kept for one context goes with it.
void g_fnLeaveOwnContext() noexcept {
    g_fnReleaseOuterGuard();
    g_bInitGLEW = false;
    g_fnLeaveSurface();
    g_fnLeaveContext();
}

void g_fnTavo_GL_Release() noexcept {
    if (!g_bInitGL) return;
    g_fnForgetFirstDraws();
    g_fnReleaseBackdrop();
    g_fnReleaseResources();
    g_iInitFailCount = 0;
    g_bInitGL = false;
    g_fnLeaveOwnContext();
    g_bNeedOnResize = true;
    g_hDC = nullptr;
}
