#include "platform/gl_api.h"

namespace platform {

bool InitGlew() noexcept {
    glewExperimental = GL_TRUE;
    return glewInit() == GLEW_OK;
}

} // namespace platform
