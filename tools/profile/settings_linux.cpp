#include "tools/profile/settings.h"

namespace companion {

void TakeSensorsOfSystem() {}

} // namespace companion
