#pragma once
// Which data a profile shows, for the companion, which publishes no more than that.
#include "platform/types.h"

#include <set>
#include <string>

namespace tinyxml2 {
class XMLElement;
}

/// Adds the data names that a profile would show, and answers 1; 0, with the set as it was, if either
/// argument is null or the profile can't be read. Works on a document of its own, on the companion's thread;
/// besides, only the view of the settings store and the sensor maps change.
i32 g_fnGetDataFullNames(const char16_t* wzProfile, std::set<std::string>* psetNames);
/// Adds the data names of a document that is open already, by its root. False if it names no style or lacks
/// parts.
bool g_fnCollectDataNames(const tinyxml2::XMLElement& root, std::set<std::string>& setNames);
