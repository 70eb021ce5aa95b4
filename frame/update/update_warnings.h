#pragma once
// Watched values that show a mark, and the banner that stands while any of them does.
#include "platform/types.h"

class CControl;
class CTextBox_Base;

/// A value that shows a mark in the layer uLayer while it is not 0. Null: not watched.
struct stWarningSlot {
    const u32* m_pWatched = nullptr;
    u32 m_uState = 0; ///< last state, 0 or 1
    CControl* m_pMark = nullptr;
    u32 m_uLayer = 0;
};

/// No layout fills a slot or makes a banner yet: the check finds nothing to watch.
struct stWarnings {
    stWarningSlot aSlots[20];
    CTextBox_Base* apBanner[2] = {};
};
extern stWarnings g_stWarnings;
