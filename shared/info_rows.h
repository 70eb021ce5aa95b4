#pragma once
// The rows of cards and CPUs by their names.
#include "platform/types.h"

/// A row of a card or CPU: its element in a profile, its name in the settings store, its data name.
struct stInfoRow {
    const char* szElement;
    const char16_t* wzRow;
    const char* szDataName;
};
constexpr u32 g_uCardRows = 39;
constexpr u32 g_uCpuRows = 3;
extern const stInfoRow g_aCardRows[g_uCardRows];
extern const stInfoRow g_aCpuRows[g_uCpuRows];
