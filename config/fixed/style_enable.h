#pragma once
// Which items of a style a layout shows, by the switches of the profile and what the machine supports.

/// Switches every item of a style on or off, after the info block was read.
void g_fnEnableClassicItems();
void g_fnEnableRV5Items();
