#pragma once
// Combinations of keys as text: "Ctrl+Shift+F10".
#include "platform/tool_keys.h"
#include <string>

namespace companion::keys {

using platform::tool::KeyCombination;

/// Reads words with '+' between: Ctrl, Alt, Shift, Super, and one key at the end: F1 to F24, a letter, a
/// digit, or Home, End, PageUp, PageDown, Insert, Delete, Pause, ScrollLock, Print. Case does not matter. A
/// letter or digit needs Ctrl, Alt or Super, or it could not be typed any more.
bool ParseCombination(const std::string& strText, KeyCombination& stOut);
/// The combination as ParseCombination takes it, its words in one order.
std::string CombinationText(const KeyCombination& st);

} // namespace companion::keys
