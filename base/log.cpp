#include "base/log.h"

#include <cstdarg>
#include <cstdio>

#ifdef ORVIN_DIAGNOSTIC_LOG
#include "platform/log.h"
static void WriteToPlatform(const char* szLine) { platform::WriteLogLine(szLine); }
void (*g_fnLogSink)(const char* szLine) = WriteToPlatform;
#else
void (*g_fnLogSink)(const char* szLine) = nullptr;
#endif

void g_fnLog(const char* szFormat, ...) noexcept {
    if (!g_fnLogSink) return;
    char szLine[1024];
    va_list args;
    va_start(args, szFormat);
    std::vsnprintf(szLine, sizeof szLine, szFormat, args);
    va_end(args);
    g_fnLogSink(szLine);
}
