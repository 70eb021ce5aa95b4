// The registry as tools write it.
#include "tests/support/settings_round_trip.h"

TEST(ToolSettingsRegistry, WhatIsWrittenIsRead) { settings_round_trip::Run(); }

TEST(ToolSettingsRegistry, WhatIsWrittenForAWhileGoesAgain) { settings_round_trip::RunForAWhile(); }
