#include "platform/headless/egl_context.h"
#include "platform/headless/state.h"
#define EGL_NO_X11
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <cstring>

namespace platform::headless {
namespace {

EGLDisplay MakeDisplay() {
    const EGLDisplay hDisplay =
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (hDisplay == EGL_NO_DISPLAY || !eglInitialize(hDisplay, nullptr, nullptr)) return EGL_NO_DISPLAY;
    return hDisplay;
}

EGLDisplay Display() {
    static const EGLDisplay hDisplay = MakeDisplay();
    return hDisplay;
}

SurfaceHandle RealSurface() { return eglGetCurrentSurface(EGL_DRAW); }
ContextHandle RealContext() { return eglGetCurrentContext(); }

bool RealSize(SurfaceHandle hSurface, u32* puWidth, u32* puHeight) {
    EGLint iWidth = 0, iHeight = 0;
    if (!eglQuerySurface(Display(), hSurface, EGL_WIDTH, &iWidth) ||
        !eglQuerySurface(Display(), hSurface, EGL_HEIGHT, &iHeight))
        return false;
    *puWidth = static_cast<u32>(iWidth);
    *puHeight = static_cast<u32>(iHeight);
    return true;
}

EGLConfig ChooseConfig(u32 uSamples) {
    const EGLint aAttributes[] = {EGL_SURFACE_TYPE,
                                  EGL_PBUFFER_BIT,
                                  EGL_RENDERABLE_TYPE,
                                  EGL_OPENGL_BIT,
                                  EGL_RED_SIZE,
                                  8,
                                  EGL_GREEN_SIZE,
                                  8,
                                  EGL_BLUE_SIZE,
                                  8,
                                  EGL_ALPHA_SIZE,
                                  8,
                                  EGL_DEPTH_SIZE,
                                  24,
                                  EGL_STENCIL_SIZE,
                                  8,
                                  EGL_SAMPLES,
                                  static_cast<EGLint>(uSamples),
                                  EGL_NONE};
    EGLConfig hConfig = nullptr;
    EGLint iCount = 0;
    return eglChooseConfig(Display(), aAttributes, &hConfig, 1, &iCount) && iCount > 0 ? hConfig : nullptr;
}

EGLContext MakeContext(EGLConfig hConfig, const EglOptions& st) {
    const EGLint iProfile =
        st.m_bCore ? EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT : EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT;
    const EGLint aAttributes[] = {EGL_CONTEXT_MAJOR_VERSION,
                                  st.m_iMajor,
                                  EGL_CONTEXT_MINOR_VERSION,
                                  st.m_iMinor,
                                  EGL_CONTEXT_OPENGL_FORWARD_COMPATIBLE,
                                  st.m_bForwardCompatible ? EGL_TRUE : EGL_FALSE,
                                  EGL_CONTEXT_OPENGL_DEBUG,
                                  st.m_bDebug ? EGL_TRUE : EGL_FALSE,
                                  EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                  iProfile,
                                  st.m_bNoError ? EGL_CONTEXT_OPENGL_NO_ERROR_KHR : EGL_NONE,
                                  EGL_TRUE,
                                  EGL_NONE};
    return eglCreateContext(Display(), hConfig, EGL_NO_CONTEXT, aAttributes);
}

/// Pack state and read binding set for a plain read of framebuffer 0, put back at the end.
class PlainRead {
  public:
    PlainRead() {
        for (int i = 0; i < 4; ++i) glGetIntegerv(s_aeNames[i], &m_aiOld[i]);
        for (int i = 0; i < 4; ++i) glPixelStorei(s_aeNames[i], i == 0 ? 1 : 0);
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &m_iFramebuffer);
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &m_iBuffer);
        m_fnBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        m_fnBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    }
    ~PlainRead() {
        m_fnBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<GLuint>(m_iBuffer));
        m_fnBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(m_iFramebuffer));
        for (int i = 0; i < 4; ++i) glPixelStorei(s_aeNames[i], m_aiOld[i]);
    }
    PlainRead(const PlainRead&) = delete;
    PlainRead& operator=(const PlainRead&) = delete;

  private:
    static constexpr GLenum s_aeNames[4] = {GL_PACK_ALIGNMENT, GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS,
                                            GL_PACK_SKIP_PIXELS};
    GLint m_aiOld[4] = {};
    GLint m_iFramebuffer = 0;
    GLint m_iBuffer = 0;
    PFNGLBINDFRAMEBUFFERPROC m_fnBindFramebuffer =
        reinterpret_cast<PFNGLBINDFRAMEBUFFERPROC>(eglGetProcAddress("glBindFramebuffer"));
    PFNGLBINDBUFFERPROC m_fnBindBuffer =
        reinterpret_cast<PFNGLBINDBUFFERPROC>(eglGetProcAddress("glBindBuffer"));
};

} // namespace

bool EglContext::MakeSurface(u32 uWidth, u32 uHeight) {
    const EGLint aAttributes[] = {EGL_WIDTH, static_cast<EGLint>(uWidth), EGL_HEIGHT,
                                  static_cast<EGLint>(uHeight), EGL_NONE};
    m_hSurface = eglCreatePbufferSurface(Display(), m_hConfig, aAttributes);
    m_uWidth = uWidth;
    m_uHeight = uHeight;
    return m_hSurface != EGL_NO_SURFACE;
}

bool EglContext::Create(const EglOptions& stOptions) {
    Destroy();
    if (Display() == EGL_NO_DISPLAY || !eglBindAPI(EGL_OPENGL_API)) return false;
    g_stRealSurface = {&RealSurface, &RealContext, &RealSize};
    m_hConfig = ChooseConfig(stOptions.m_uSamples);
    m_hContext = m_hConfig ? MakeContext(m_hConfig, stOptions) : EGL_NO_CONTEXT;
    if (m_hContext == EGL_NO_CONTEXT || !MakeSurface(stOptions.m_uWidth, stOptions.m_uHeight) ||
        !MakeCurrent()) {
        Destroy();
        return false;
    }
    return true;
}

bool EglContext::MakeCurrent() { return eglMakeCurrent(Display(), m_hSurface, m_hSurface, m_hContext); }

void EglContext::MakeNoneCurrent() {
    if (m_hContext && eglGetCurrentContext() == m_hContext)
        eglMakeCurrent(Display(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

bool EglContext::ReplaceSurface(u32 uWidth, u32 uHeight) {
    const EGLSurface hOld = m_hSurface;
    if (!MakeSurface(uWidth, uHeight) || !MakeCurrent()) return false;
    eglDestroySurface(Display(), hOld);
    return true;
}

void EglContext::Destroy() {
    MakeNoneCurrent();
    if (m_hSurface) eglDestroySurface(Display(), m_hSurface);
    if (m_hContext) eglDestroyContext(Display(), m_hContext);
    m_hSurface = m_hContext = nullptr;
    m_uWidth = m_uHeight = 0;
}

bool EglContext::SwapBuffers() { return eglSwapBuffers(Display(), m_hSurface); }

std::vector<u8> EglContext::ReadPixels() const {
    const std::size_t uRow = static_cast<std::size_t>(m_uWidth) * 4;
    std::vector<u8> vecBottomUp(uRow * m_uHeight);
    {
        PlainRead guard;
        glReadPixels(0, 0, static_cast<GLsizei>(m_uWidth), static_cast<GLsizei>(m_uHeight), GL_RGBA,
                     GL_UNSIGNED_BYTE, vecBottomUp.data());
    }
    std::vector<u8> vecTopDown(vecBottomUp.size());
    for (u32 y = 0; y < m_uHeight; ++y)
        std::memcpy(&vecTopDown[y * uRow], &vecBottomUp[(m_uHeight - 1 - y) * uRow], uRow);
    return vecTopDown;
}

} // namespace platform::headless
