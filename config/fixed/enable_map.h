#pragma once
// Which items of a style are shown, by instance: the copy of an item for one card, CPU or sensor group.
#include "platform/types.h"

/// Instances run from 0 to this, without it.
constexpr u32 g_uInstances = 64;

/// Kinds that are switched one by one.
enum eEnableKind : u32 { ENABLE_TEXT, ENABLE_NUMBER, ENABLE_PANEL };
constexpr u32 g_uEnableKinds = 3;

/// Switches one item of one instance. Instances that there are not are left alone.
void g_fnSetItemEnable(eEnableKind uKind, u32 uInstance, u32 uBID, bool bEnable);
/// False also for an item that was never switched.
bool g_fnIsItemEnabled(eEnableKind uKind, u32 uInstance, u32 uBID);
/// True if the item is on in any instance.
bool g_fnIsItemEnabledAnywhere(eEnableKind uKind, u32 uBID);
/// Switches everything off.
void g_fnClearItemEnable();
