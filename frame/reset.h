#pragma once
// The state of all that runs at a swap, as it is when the library has just been loaded.

/// For tests and for programs that run one simulated process after another; nothing in a program's process
/// calls it. What was built must have been released; no GL object is deleted. Commands, figures, settings of
/// the limiter and all hooks of parts go.
void g_fnResetFrame();
