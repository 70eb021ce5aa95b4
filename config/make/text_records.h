#pragma once
// Text boxes from records, and the memo files that some of them show.
#include "config/make/text_look.h"
#include "platform/types.h"

#include <span>

/// One text box to make. Lengths in canvas units.
struct stTextInit {
    u64 u64LB_ID;
    u32 uFont; ///< place in g_ppFont
    stTextLook stLook;
    i32 iAnchorCode;
    i32 iX, iY;
    i32 iWidth, iHeight;    ///< read where the size does not follow the text, or the text is clipped to it
    bool bAutoSize;         ///< the size follows the text; otherwise lines wrap at iWidth
    bool bFitToText;        ///< with bAutoSize: false cuts the text off at a window of iWidth
    bool bMemo;             ///< wzText names a file in the profile folder
    const char16_t* wzText; ///< the text or the file's name; must live during the call only
};

/// Makes and registers one text box per record, in order; a memo without a file is passed over. False if one
/// could not be made, also for want of a text in a memo file; those made before it stay.
bool g_fnCreateTextBoxes(std::span<const stTextInit> records);
