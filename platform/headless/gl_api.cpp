#include "platform/gl_api.h"

namespace platform {

bool InitGlew() noexcept {
    glewExperimental = GL_TRUE;
    const unsigned uResult = glewInit();
    // A GLEW built for GLX loads every entry point before it looks for a GLX display (4, which older headers
    // have no name for); an EGL context has none and needs none.
    constexpr unsigned uNoGlxDisplay = 4;
    return uResult == GLEW_OK || uResult == uNoGlxDisplay;
}

} // namespace platform
