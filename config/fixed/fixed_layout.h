#pragma once
// The two styles with fixed tables, from the open documents to controls in their places.

/// The whole chain of a style. False, with a word to the user where he asked for it, if a step fails.
bool g_fnCreate_Tavo_ResourceByClassicStyle();
bool g_fnCreate_Tavo_ResourceByRV5Style();
