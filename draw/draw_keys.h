#pragma once
// What the manager groups controls under for a pass of drawing.
#include "platform/types.h"

#include <array>
#include <map>

/// Opaque identity; beside these keys, every font is one.
using DrawKey = const void*;

constexpr u32 g_uMaxBlurDiameter = 100;
/// Diameter of frosted panels where nothing else is configured.
constexpr u32 g_uDefaultBlurDiameter = 30;

extern const DrawKey g_keyColorList;
extern const DrawKey g_keyTextureList;
/// One key a diameter, 0 to 100 window pixels.
extern const std::array<DrawKey, g_uMaxBlurDiameter + 1> g_keyBlurByDiameter;
/// The entry of the default diameter.
extern const DrawKey g_keyBlurList;

/// Diameter (at most 100) to number of frosted panels that use it. A batcher makes one program per entry when
/// it is initialised; later entries wait for the next batcher.
extern std::map<u32, u32> g_mapBlurDiameters;
