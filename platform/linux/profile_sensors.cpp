#include "platform/profile_sensors.h"

namespace platform::tool {

bool TakeMachineOfSystem() { return false; }

} // namespace platform::tool
