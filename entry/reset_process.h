#pragma once

/// The whole library as it is when it has just been loaded. For tests and for programs that run one simulated
/// process after another; nothing in a program's process calls it. What was built must have been released and
/// no thread may be inside.
void g_fnResetProcess();
