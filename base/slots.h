#pragma once
// Manager slots: the overlay may live several times in one process, each time in a slot of its own.
#include "platform/types.h"

constexpr u32 g_uManagerSlots = 20;
/// The slot that the current frame works on.
extern u32 g_uManagerSlot;
