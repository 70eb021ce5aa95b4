#include "platform/clock.h"
#include "platform/headless/state.h"
#include <chrono>

namespace platform {
namespace {

using headless::Get;

i64 ReadNanoseconds() noexcept {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    ++st.m_uClockReads;
    if (!st.m_bVirtualClock)
        return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
    st.m_iClock += st.m_iClockStep;
    if (st.m_uJumpIn && --st.m_uJumpIn == 0) st.m_iClock += st.m_iClockJump;
    return st.m_iClock;
}

void Sleep(u32 uMilliseconds) noexcept {
    auto& st = Get();
    {
        std::lock_guard lock(st.m_lock);
        ++st.m_uSleeps;
        st.m_uSlept += uMilliseconds;
        if (st.m_bVirtualClock) {
            st.m_iClock += static_cast<i64>(uMilliseconds) * 1000000;
            return;
        }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(uMilliseconds));
}

} // namespace

i64 CounterNow() noexcept {
    const i64 iNanoseconds = ReadNanoseconds();
    const i64 iFrequency = Get().m_iFrequency;
    const i64 iSeconds = iNanoseconds / 1000000000;
    const i64 iRest = iNanoseconds % 1000000000;
    return iSeconds * iFrequency + iRest * iFrequency / 1000000000;
}

i64 CounterFrequency() noexcept { return Get().m_iFrequency; }

i64 SteadyNanoseconds() noexcept { return ReadNanoseconds(); }

stLocalTime LocalTime() noexcept {
    auto& st = Get();
    ++st.m_uLocalTimeReads;
    return st.m_stLocalTime;
}

i64 UnixMilliseconds() noexcept { return Get().m_iUnixMilliseconds; }

void (*g_fnSleepMilliseconds)(u32) noexcept = &Sleep;

namespace headless {

void (*const g_fnDefaultSleep)(u32) noexcept = &Sleep;

void SetClock(i64 iNanoseconds) {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    st.m_bVirtualClock = true;
    st.m_iClock = iNanoseconds;
}

void AdvanceClock(i64 iNanoseconds) {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    st.m_iClock += iNanoseconds;
}

void SetClockStepPerRead(i64 iNanoseconds) { Get().m_iClockStep = iNanoseconds; }
void SetClockJump(u32 uReadings, i64 iNanoseconds) {
    Get().m_uJumpIn = uReadings;
    Get().m_iClockJump = iNanoseconds;
}
void UseRealClock() { Get().m_bVirtualClock = false; }
void SetCounterFrequency(i64 iTicksPerSecond) {
    Get().m_iFrequency = iTicksPerSecond > 0 ? iTicksPerSecond : 1;
}
void SetLocalTime(const stLocalTime& stTime) { Get().m_stLocalTime = stTime; }
u32 LocalTimeReads() { return Get().m_uLocalTimeReads; }
void SetUnixMilliseconds(i64 iMilliseconds) { Get().m_iUnixMilliseconds = iMilliseconds; }
u64 ClockReads() { return Get().m_uClockReads; }
u32 SleepCalls() { return Get().m_uSleeps; }
u64 SleptMilliseconds() { return Get().m_uSlept; }

} // namespace headless
} // namespace platform
