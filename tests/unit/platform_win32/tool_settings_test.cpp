// The registry as tools write it.
#include "tests/support/settings_round_trip.h"

TEST(ToolSettingsRegistry, WhatIsWrittenIsRead) { settings_round_trip::Run(); }
