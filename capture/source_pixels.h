#pragma once
// Pixels of a frame in the orders that encoders take. Format codes are those that the overlay's flavours for
// all graphics APIs share; OpenGL has 11.
#include "platform/types.h"

#include <memory>

using ChannelBuffer = std::unique_ptr<u8[]>;

/// Pixels whose channels are one byte each, in the order of the letters: R, G, B, A, and X for one that
/// counts for nothing.
struct stChannelPixels {
    const u8* pPixels = nullptr; ///< null: the format is unknown, or there was no memory
    const char* szOrder = "";
    ChannelBuffer pOwn; ///< where they had to be converted
};

/// Bytes of a pixel; 0 for a code that is none of these.
u32 g_fnSourceBytes(u32 uFormatCode) noexcept;
/// Pixels of a frame by their code, rows packed. Those of one byte a channel stay where they are.
stChannelPixels g_fnPrepareSource(const void* pPixels, u32 uWidth, u32 uHeight, u32 uFormatCode) noexcept;

/// New pixels in another order: channels go to the letter that they have, those without a source are 255. X
/// in szTo takes no room. Null without memory.
ChannelBuffer g_fnConvertChannels(const u8* pFrom, u32 uWidth, u32 uHeight, const char* szFrom,
                                  const char* szTo) noexcept;
