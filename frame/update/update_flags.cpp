#include "frame/update/update_flags.h"

#include <cstring>

u8 g_bUpdateFPS[g_uManagerSlots], g_bUpdateTime[g_uManagerSlots], g_bUpdateData[g_uManagerSlots],
    g_bUpdateFrameTime[g_uManagerSlots];

void g_fnRaiseUpdateFlag(u8 (&abFlags)[g_uManagerSlots]) noexcept { std::memset(abFlags, 1, sizeof abFlags); }

void g_fnRaiseUpdateFlags() noexcept {
    g_fnRaiseUpdateFlag(g_bUpdateFPS);
    g_fnRaiseUpdateFlag(g_bUpdateTime);
    g_fnRaiseUpdateFlag(g_bUpdateData);
    g_fnRaiseUpdateFlag(g_bUpdateFrameTime);
}
