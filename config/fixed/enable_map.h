#pragma once
// Which items of a style are shown, by instance: the copy of an item for one card, CPU or sensor group.
#include "platform/types.h"

/// Instances run from 0 to this, without it.
constexpr u32 g_uInstances = 64;

/// Kinds that are switched one by one.
enum eItemKind : u32 { ITEM_TEXT, ITEM_NUMBER, ITEM_PANEL };
constexpr u32 g_uItemKinds = 3;

/// Switches one item of one instance. Instances that there are not are left alone.
void g_fnSetItemEnable(eItemKind uKind, u32 uInstance, u32 uBID, bool bEnable);
/// False also for an item that was never switched.
bool g_fnIsItemEnabled(eItemKind uKind, u32 uInstance, u32 uBID);
/// True if the item is on in any instance.
bool g_fnIsItemEnabledAnywhere(eItemKind uKind, u32 uBID);
/// Switches everything off.
void g_fnClearItemEnable();
