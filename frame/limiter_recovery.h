#pragma once
// The key LimiterRecovery. An overshoot of more than half a frame makes the limiter's correction larger than
// a whole frame, which no later wait ever takes back: the program runs free from there on. With the key the
// correction is held to a quarter of the target time either way, and a frame that it lets pass pays it off.
#include "platform/types.h"

/// The correction to wait with. Without the key it is the one given.
f32 g_fnBoundCorrection(f32 fCorrection, f32 fTargetSeconds) noexcept;
/// To be asked when there was nothing to wait for. True with the key: the correction is paid off, and the
/// next frame is measured by itself.
bool g_fnPayOffCorrection(f32& fCorrection) noexcept;
