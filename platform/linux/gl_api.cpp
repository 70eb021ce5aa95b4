#include "platform/gl_api.h"
#include "platform/linux/exit_order.h"
#include "platform/linux/host_gl.h"

namespace platform {

bool InitGlew() noexcept {
    host::EndAheadOfOthers(); // those of the driver, which stands by now
    host::ResolveForwarders();
    glewExperimental = GL_TRUE;
    const unsigned uResult = glewInit();
    // In an EGL context a GLEW built for GLX loads every entry point and then misses its display (4).
    constexpr unsigned uNoGlxDisplay = 4;
    return uResult == GLEW_OK || uResult == uNoGlxDisplay;
}

} // namespace platform
