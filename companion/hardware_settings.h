#pragma once
// What a machine's sensors mean for the settings that overlays read: which rows cards and CPUs have, and the
// definitions of sensors beyond those rows.
#include "companion/sensors/reading.h"
#include "platform/tool_settings.h"
#include <vector>

namespace companion {

/// The settings that make an overlay show what is there, by key and name. A sensor without a value at present
/// counts: its row stays, empty.
std::vector<platform::tool::Setting> HardwareSettings(const std::vector<sensors::Reading>& listReadings,
                                                      const std::vector<sensors::Hardware>& listHardware);

} // namespace companion
