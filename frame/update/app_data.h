#pragma once
// The values that this process measures itself, entered by name for g_fnGetMonitorDataPtr.
#include "platform/types.h"

/// The values of "PID" and "TID".
extern u32 g_uPID, g_uTID;

/// Enters all of g_aszOwnNames, then sets "PID" and "TID" from the current ids. Runs at the head of every
/// list build.
void g_fnRegisterAllAppData();
