#pragma once
// The one way to the GL entry points: GLEW for everything above version 1.1.
#ifndef GLEW_STATIC
#define GLEW_STATIC
#endif
#ifndef GLEW_NO_GLU
#define GLEW_NO_GLU
#endif
#include <GL/glew.h>

namespace platform {

/// Sets glewExperimental and runs glewInit on the current context. True when the entry points are loaded.
/// A GLX-built GLEW answers 4 (no GLX display) in an EGL context although all entry points are loaded; that
/// counts as success.
bool InitGlew() noexcept;

} // namespace platform
