#pragma once
// The key StayWithSurface: the overlay belongs to the surface and the context that it was built on. What
// other surfaces swap passes untouched (no command is taken, nothing limited, nothing counted or reported)
// until the owner has not swapped for a second or its context is gone; then the next swap takes the overlay
// over. Without the key nobody owns it.
#include "platform/surface.h"
#include <atomic>

/// Swaps that passed so, all threads together; for those who ask what happens in this process.
extern std::atomic<u32> g_uPassedSwaps;

/// Whether a swap is to pass untouched. From any thread, without the pipeline's turn, which belongs to the
/// owner.
bool g_fnIsForeignSwap(platform::SurfaceHandle hdc) noexcept;
/// Whether this is the owner's surface under whatever handle: a window may have many device contexts.
bool g_fnIsOwnSurface(platform::SurfaceHandle hdc) noexcept;
/// After each drawn frame: its surface has the overlay for another second.
void g_fnKeepSurface() noexcept;
void g_fnLeaveSurface() noexcept;
