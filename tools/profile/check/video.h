#pragma once
// The video sources of the machine: every layout shows them, whichever profile it is of.
#include "tools/profile/check/findings.h"

namespace companion {

/// What keeps a source that is turned on from being seen, and what its frames look like in its box. Under the
/// name of the settings, as no file of the profile has a part in it.
void CheckVideoSources(Findings& findings);

} // namespace companion
