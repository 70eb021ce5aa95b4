#include "config/items/item_report.h"

#include "base/log.h"

#include <cstdarg>
#include <cstdio>

namespace {

constexpr std::size_t g_uReportBytes = 260;

void Report(const char* szPrefix, const char* szFormat, va_list args) noexcept {
    if (!g_fnLogSink) return;
    char szText[g_uReportBytes];
    std::vsnprintf(szText, sizeof szText, szFormat, args);
    g_fnLog("%s%s", szPrefix, szText);
}

} // namespace

void g_fnReportError(const char* szFormat, ...) noexcept {
    va_list args;
    va_start(args, szFormat);
    Report("error ! ", szFormat, args);
    va_end(args);
}

void g_fnReportInfo(const char* szFormat, ...) noexcept {
    va_list args;
    va_start(args, szFormat);
    Report("Info ", szFormat, args);
    va_end(args);
}

void g_fnReportWarning(const char* szFormat, ...) noexcept {
    va_list args;
    va_start(args, szFormat);
    Report("warning ! ", szFormat, args);
    va_end(args);
}
