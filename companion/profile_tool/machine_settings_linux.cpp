#include "companion/profile_tool/machine_settings.h"

namespace companion {

void TakeSensorsOfSystem() {}

} // namespace companion
