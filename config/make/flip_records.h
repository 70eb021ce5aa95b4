#pragma once
// Flip boxes from records.
#include "config/make/text_look.h"
#include "platform/types.h"

#include <span>

/// Texts of a flip box.
constexpr u32 g_uFlipTexts = 3;

/// One flip box to make. Lengths in canvas units.
struct stFlipInit {
    u64 u64LB_ID;
    u32 uFont;         ///< place in g_ppFont
    stTextLook stLook; ///< all texts have its colour
    i32 iAnchorCode;
    i32 iX, iY;
    u32 uDataArg;
    const char16_t* awzText[g_uFlipTexts]; ///< must live during creation only
};

/// Makes and registers one flip box per record, in order. False if one could not be made; those made before
/// it stay.
bool g_fnCreateFlipBoxes(std::span<const stFlipInit> records);
