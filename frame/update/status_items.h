#pragma once
// The status panels 1, 3 and 5: moving them on command, and their pulse. Entries that do not exist are
// skipped.
#include "base/slots.h"
#include "base/timer.h"
#include "platform/types.h"

extern CTimer g_timerStatus;
/// The status display of a slot is due, and the value it shows.
extern u8 g_abStatusDue[g_uManagerSlots];
extern u32 g_auStatus[g_uManagerSlots];
/// Style panel 5 of a slot was moved.
extern u8 g_abShutterMove[g_uManagerSlots];

/// One position entry of a command.
struct stStatusPosition {
    u8 bChanged;
    i32 iAlign; ///< anchor code
    i32 iX, iY; ///< canvas units
};

/// Applies the three entries, for every manager, to the style panels 1, 3 and 5, only where alignment, X or Y
/// truly differ. A move of panel 5 raises the slot's shutter-move flag.
void g_fnMoveStatusItems(const stStatusPosition aPositions[3]);
/// One step of the status animation, fSeconds after the last one: hides the three panels when the display is
/// due, else pulses the one that the slot's status names.
void g_fnStatusStep(f32 fSeconds);
