#pragma once
// Number boxes from records.
#include "config/make/text_look.h"
#include "platform/types.h"

#include <span>

/// One number box to make. Lengths in canvas units.
struct stNumInit {
    u64 u64LB_ID;
    u32 uFont; ///< place in g_ppFont
    stTextLook stLook;
    i32 iAnchorCode;
    i32 iX, iY;
    i32 iWidth, iHeight; ///< until the first value only: the size then follows the number
    u32 uPadDigits;
    u32 uHidePad;  ///< 0 pads with zeros, anything else with blanks
    u32 uDataKind; ///< 0 or 1: where the value comes from is handed on; anything else: it is not
    u8 u8DataFlag; ///< of kind 0
    u64 pDataSource;
    u32 uDataArg;
};

/// Data kind of a box that nothing is bound to at creation.
constexpr u32 g_uDataKindNone = 7;

/// Makes and registers one number box per record, in order. False if one could not be made; those made before
/// it stay.
bool g_fnCreateNumBoxes(std::span<const stNumInit> records);
