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

i64 SteadyNanoseconds() noexcept { return TicksToNanoseconds(CounterNow(), CounterFrequency()); }

} // namespace platform
