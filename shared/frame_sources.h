#pragma once
// The named blocks from which video boxes get their frames, one a source, and a copy of each, since other
// programs write the blocks at will. A frame has neither header nor lock, so one may show a seam.
#include "platform/types.h"

constexpr u32 g_uFrameSources = 8;
/// Bytes of a block: 3840 by 1080 pixels.
constexpr u32 g_uFrameBlockBytes = 0xFD2000;
/// The largest frame that is taken; no box gets one as large as the block.
constexpr u32 g_uFrameBytesMax = 0xFD1FFF;

/// Whether a frame of that many pixels, of four bytes each, can be taken. One without pixels can't.
constexpr bool g_fnIsFrameSize(u32 uWidth, u32 uHeight) noexcept {
    const u64 uPixels = u64{uWidth} * uHeight;
    return uPixels != 0 && uPixels <= g_uFrameBytesMax / 4;
}

/// The process is the suite's own preview host: frames are put into the copies directly.
extern bool g_bLocalPreview;

/// Opens a source's block, or makes it, in place of a former one. On failure the source has none.
bool g_fnOpenFrameSource(u32 uSource, const char16_t* wzName) noexcept;
bool g_fnHasFrameSource(u32 uSource) noexcept;
/// The first bytes of the block as they are now, copied; the copy stays valid until the source is closed.
/// Null for a source without a block, and where the block has become smaller than that.
const u8* g_fnTakeFrame(u32 uSource, u32 uBytes) noexcept;
void g_fnCloseFrameSources() noexcept;
