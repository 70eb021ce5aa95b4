#include "platform/profile_sensors.h"

namespace platform::tool {

void TakeSensorsOfSystem() {}

} // namespace platform::tool
