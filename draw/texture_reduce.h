#pragma once
// Halving of pictures for a chain of levels. It weighs pixels in its own way; what it gives is compared to
// pictures made before, so the arithmetic stays as it is, in f32 and in this order.
#include "platform/types.h"

class CTexture_Base;

/// Reduces a picture to half its size, a side of 1 staying 1. pSource holds uWidth * uHeight pixels of
/// uChannels bytes, pOut (never pSource) takes max(1, uWidth / 2) * max(1, uHeight / 2). With gain every
/// value is raised by half, to at most 255. Sides of 0 do nothing.
void g_fnReduceLevel(const u8* pSource, u32 uWidth, u32 uHeight, u32 uChannels, bool bGain, u8* pOut);

/// Fills a frame's levels from pSource, a picture of the texture's size and format: level 0 is a copy, each
/// other is reduced from the one before it, with gain for 1 byte a pixel, without for 4. The walk ends with
/// the chain or at a width of 1: further levels keep what they hold. False, and nothing done, for any other
/// pixel size, a frame that does not exist, or a null source. Whoever knows that a glyph atlas holds zeros
/// from row uRows on, now and in all that the texture was filled from before, says so and saves the work for
/// them; likewise with bBlank that all levels but the first hold zeros.
bool g_fnFillChain(CTexture_Base& texture, const u8* pSource, u32 uFrame, u32 uRows = UINT32_MAX,
                   bool bBlank = false);
