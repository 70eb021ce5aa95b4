#include "platform/clock.h"
#include "platform/win32/clock_conversion.h"
#include "platform/win32/windows_api.h"

namespace platform {

namespace {

void SleepMilliseconds(u32 uMilliseconds) noexcept { Sleep(uMilliseconds); }

i64 ReadFrequency() noexcept {
    LARGE_INTEGER value{};
    return QueryPerformanceFrequency(&value) && value.QuadPart > 0 ? value.QuadPart : 1;
}

} // namespace

void (*g_fnSleepMilliseconds)(u32 uMilliseconds) noexcept = SleepMilliseconds;

i64 CounterNow() noexcept {
    LARGE_INTEGER value{};
    QueryPerformanceCounter(&value);
    return value.QuadPart;
}

i64 CounterFrequency() noexcept {
    static const i64 iFrequency = ReadFrequency();
    return iFrequency;
}

stLocalTime LocalTime() noexcept {
    SYSTEMTIME st{};
    GetLocalTime(&st);
    return {st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond};
}

i64 UnixMilliseconds() noexcept {
    FILETIME st{};
    GetSystemTimeAsFileTime(&st);
    const u64 uTicks = (static_cast<u64>(st.dwHighDateTime) << 32) | st.dwLowDateTime;
    // Ticks of 100 ns since 1601, which is 11644473600 seconds before 1970.
    return static_cast<i64>(uTicks / 10000) - 11644473600000;
}

i64 SteadyNanoseconds() noexcept { return TicksToNanoseconds(CounterNow(), CounterFrequency()); }

} // namespace platform
