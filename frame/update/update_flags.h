#pragma once
// What is to be shown anew.
#include "base/slots.h"
#include "platform/types.h"

/// Update flags, one byte per manager slot. Raising sets all bytes; consuming clears the current slot's.
extern u8 g_bUpdateFPS[g_uManagerSlots], g_bUpdateTime[g_uManagerSlots], g_bUpdateData[g_uManagerSlots],
    g_bUpdateFrameTime[g_uManagerSlots];

/// Raises all four flags for all slots.
void g_fnRaiseUpdateFlags() noexcept;
/// Raises one flag for all slots.
void g_fnRaiseUpdateFlag(u8 (&abFlags)[g_uManagerSlots]) noexcept;
