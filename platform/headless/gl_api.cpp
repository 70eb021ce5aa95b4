#include "platform/gl_api.h"

#include "platform/headless/state.h"
#include "platform/headless/test_controls.h"

namespace platform {

bool InitGlew() noexcept {
    headless::State& st = headless::Get();
    ++st.m_uGlewCalls;
    if (st.m_bGlewFails) return false;
    glewExperimental = GL_TRUE;
    const unsigned uResult = glewInit();
    // A GLEW built for GLX loads every entry point before it looks for a GLX display (4, which older headers
    // have no name for); an EGL context has none and needs none.
    constexpr unsigned uNoGlxDisplay = 4;
    if (uResult != GLEW_OK && uResult != uNoGlxDisplay) return false;
    if (st.m_fnAfterGlew) st.m_fnAfterGlew();
    return true;
}

namespace headless {

void SetGlewInitFails(bool bFails) { Get().m_bGlewFails = bFails; }
u32 GlewInitCalls() { return Get().m_uGlewCalls; }
void SetAfterGlewInit(void (*fnCallback)()) { Get().m_fnAfterGlew = fnCallback; }

} // namespace headless

} // namespace platform
