#pragma once
// Pixels of the frame that is about to be presented.
#include "platform/types.h"

#include <cstdlib>
#include <memory>

struct FreePixels {
    void operator()(u8* p) const noexcept { std::free(p); }
};
using FramePixels = std::unique_ptr<u8, FreePixels>;

/// RGBA, rows packed and from the bottom up, by one glReadPixels. Null for a side of 0, or without memory.
/// Without key CarefulShots of [HostCare] it reads what the program has set to be read, in the way that the
/// program has set; with it the window's own picture, and all state comes back. What the program lets nobody
/// read stays 0.
FramePixels g_fnReadFrame(u32 uWidth, u32 uHeight) noexcept;
/// Exchanges the rows, the first for the last.
void g_fnFlipRows(u8* pPixels, u32 uWidth, u32 uHeight) noexcept;
