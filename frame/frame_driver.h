#pragma once
// What runs on the application's render thread at every swap. Flat state, one set per process.
#include "platform/export.h"
#include "platform/surface.h"
#include "platform/types.h"
#include <atomic>

/// Cleared by the one swap that runs the pipeline and set again on its every way out. A swap that comes in
/// between, on another thread or inside the pipeline, goes straight through.
extern std::atomic<bool> g_bPipelineIdle;
extern u32 g_uCallCount;     ///< pipeline entries
extern u32 g_uSurfacesTaken; ///< times that the overlay came to another surface or context

extern "C" {
/// The detour over the application's swap. Returns what the real swap returned; throws nothing.
ORVIN_EXPORT i32 GL_wglSwapBuffers(void* hdc);
/// Pass-through to the real context deletion; releases nothing.
ORVIN_EXPORT i32 GL_wglDeleteContext(void* hglrc);
}

/// All that GL_wglSwapBuffers does ahead of the real swap.
void g_fnAheadOfSwap(void* hdc) noexcept;
/// The right to run the pipeline, while it lives; taken only where nobody has it. Takes commands, draws,
/// limits and reports only with it.
class CPipelineTurn {
  public:
    CPipelineTurn() noexcept : m_bTaken(g_bPipelineIdle.exchange(false, std::memory_order_acquire)) {}
    ~CPipelineTurn() {
        if (m_bTaken) g_bPipelineIdle.store(true, std::memory_order_release);
    }
    CPipelineTurn(const CPipelineTurn&) = delete;
    CPipelineTurn& operator=(const CPipelineTurn&) = delete;
    explicit operator bool() const noexcept { return m_bTaken; }

  private:
    const bool m_bTaken;
};

/// Steps before drawing, then one drawn frame, for whoever has the pipeline's turn. Throws nothing.
void g_fnTavo_GL_PrewglSwapBuffers(platform::SurfaceHandle hdc) noexcept;
