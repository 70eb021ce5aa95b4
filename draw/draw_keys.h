#pragma once
// What the manager groups controls under for a pass: opaque, stable addresses.
#include "platform/types.h"

#include <map>

using DrawKey = const void*;

/// Diameters 0 to 100.
constexpr u32 g_uBlurKeyCount = 101;
/// Diameter of the settings' default.
constexpr u32 g_uDefaultBlurDiameter = 30;

extern const DrawKey g_keyColorList;
extern const DrawKey g_keyTextureList;
extern const DrawKey (&g_keyBlurByDiameter)[g_uBlurKeyCount];
/// Not a key of its own: the entry of the default diameter.
extern const DrawKey g_keyBlurList;

/// Blur diameter to the number of frosted panels that use it; at most 100. Grows at configuration only.
extern std::map<u32, u32> g_mapBlurDiameters;
