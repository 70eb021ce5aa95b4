#pragma once
// A layout made ready: its controls by the configuration, its update lists by the frame.

/// Loads the configuration and builds the update lists of its style. False, with a word to the user where he
/// asked for it, if either fails.
bool g_fnMakeLayout();
