#pragma once
// Diagnostic log. In the release configuration it does nothing; the texts stay in the code.

/// printf-style line to the sink. No output while g_fnLogSink is null, which is the release state.
void g_fnLog(const char* szFormat, ...) noexcept __attribute__((format(printf, 1, 2)));

/// Receiver of finished lines (no line end added). Diagnostic builds set it at attach; tests set their own.
extern void (*g_fnLogSink)(const char* szLine);
