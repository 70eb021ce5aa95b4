#pragma once
// Words about a profile's items. They go to the diagnostic log and stop nothing.

/// "error ! ", "Info ", "warning ! " and the formatted text, which is cut at 259 characters.
void g_fnReportError(const char* szFormat, ...) noexcept __attribute__((format(printf, 1, 2)));
void g_fnReportInfo(const char* szFormat, ...) noexcept __attribute__((format(printf, 1, 2)));
void g_fnReportWarning(const char* szFormat, ...) noexcept __attribute__((format(printf, 1, 2)));
