#include "base/timer.h"

#include "platform/clock.h"

f32 g_fLastFrameSeconds = 0.0f;

static bool g_bReadingHeld = false;
static i64 g_iHeldReading = 0;

i64 g_fnTimerReading() noexcept { return g_bReadingHeld ? g_iHeldReading : platform::CounterNow(); }

CTimerReading::CTimerReading() noexcept : m_bOuter(!g_bReadingHeld) {
    if (m_bOuter) g_iHeldReading = platform::CounterNow();
    g_bReadingHeld = true;
}

CTimerReading::~CTimerReading() {
    if (m_bOuter) g_bReadingHeld = false;
}

CTimer::CTimer() noexcept : m_fTotal(0.0f), m_bStopped(1), m_iFrequency(platform::CounterFrequency()) {}

f32 CTimer::Tick() noexcept {
    const i64 iNow = g_fnTimerReading();
    f32 fDelta = 0.0f;
    if (!m_bStopped) {
        // One rounding only: the division runs in double precision, the total in single.
        fDelta = static_cast<f32>(static_cast<f64>(iNow - m_iLast) / static_cast<f64>(m_iFrequency));
        m_fTotal += fDelta;
    }
    m_iLast = iNow;
    return fDelta;
}

f32 CTimer::Elapsed() noexcept {
    Tick();
    return m_fTotal;
}

void CTimer::Reset() noexcept {
    m_fTotal = 0.0f;
    m_bStopped = 1;
    m_iLast = g_fnTimerReading();
}

void CTimer::Restart() noexcept {
    m_fTotal = 0.0f;
    m_bStopped = 0;
    m_iLast = g_fnTimerReading();
}

f32 CTimer::Start() noexcept {
    m_bStopped = 0;
    m_iLast = g_fnTimerReading();
    return m_fTotal;
}

f32 CTimer::Stop() noexcept {
    Tick();
    m_bStopped = 1;
    return m_fTotal;
}
