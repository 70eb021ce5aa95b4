#include "platform/headless/state.h"
#include <new>

namespace platform::headless {

RealSurfaceSource g_stRealSurface;

State& Get() {
    static State* pState = new State;
    return *pState;
}

void ResetAll() {
    JoinThreads();
    State& st = Get();
    // Live critical sections survive a reset: their owners still hold pointers to them.
    const u32 uSections = st.m_uSections;
    st.~State();
    new (&st) State;
    st.m_uSections = uSections;
    ResetSegment();
    g_fnSleepMilliseconds = g_fnDefaultSleep;
}

} // namespace platform::headless
