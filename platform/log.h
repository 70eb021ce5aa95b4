#pragma once
// Where diagnostic lines and the one message box go.
#include "platform/types.h"

namespace platform {

/// Debugger output (Win32) or standard error (Linux). Used only by diagnostic builds.
void WriteLogLine(const char* szLine) noexcept;
/// Message box (Win32) or standard error (Linux); only when the debug message-box option asks for it.
void ShowMessageBox(const char16_t* wzText, const char* szTitle) noexcept;

} // namespace platform
