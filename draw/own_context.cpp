#include "draw/own_context.h"

#include "draw/kept_programs.h"
#include "draw/left_names.h"

std::atomic<platform::ContextHandle> g_hGLRC = nullptr;

static std::atomic<bool> g_bContextGone = false;

// Without a current context, at unload, there is nothing left to delete in, and some drivers crash on trying.
// Where no context was taken the caller is no program's frame and has only his own context.
bool g_fnMayDeleteNames() noexcept {
    const platform::ContextHandle hCurrent = platform::CurrentContext();
    return hCurrent && !g_fnIsContextGone() && (!g_hGLRC || hCurrent == g_hGLRC);
}

void g_fnTakeContext() noexcept {
    g_bContextGone = false;
    g_hGLRC = platform::CurrentContext();
}

void g_fnLeaveContext() noexcept {
    g_fnGiveLeftNames(g_fnIsContextGone() ? nullptr : g_hGLRC.load());
    g_hGLRC = nullptr;
    g_bContextGone = false;
}

bool g_fnHasContextChanged() noexcept {
    return g_hGLRC && (g_fnIsContextGone() || platform::CurrentContext() != g_hGLRC);
}

bool g_fnIsContextGone() noexcept { return g_bContextGone; }

// Whoever destroys a context that is current on another thread leaves it alive until that thread lets it go.
// Forgetting its names costs it one set of objects; taking them for alive could cost the program its own.
void g_fnNoteContextGone(platform::ContextHandle hContext) noexcept {
    if (g_hGLRC && (!hContext || hContext == g_hGLRC)) g_bContextGone = true;
    g_fnForgetLeftNames(hContext);
    g_fnForgetKeptPrograms(hContext);
}
