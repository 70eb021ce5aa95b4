// The host program over EGL: X11 windows, pbuffers, or no surface at all with a framebuffer of its own.
#include "tests/hosts/host_x11.h"
#define EGL_EGLEXT_PROTOTYPES
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <cstring>
#include <vector>

namespace {

using SwapFunction = EGLBoolean (*)(EGLDisplay, EGLSurface);
using DamageFunction = EGLBoolean (*)(EGLDisplay, EGLSurface, const EGLint*, EGLint);

/// An EGL surface with its X window; the window is 0 for a pbuffer, the surface null without surfaces.
struct stEglWindow {
    Window uWindow = 0;
    EGLSurface pSurface = EGL_NO_SURFACE;
};

class CEglSystem final : public CWindowSystem {
  public:
    ~CEglSystem() override {
        if (m_pDisplay) eglReleaseThread();
    }
    bool m_fnOpen(const stHostOptions& stOptions) override;
    WindowRef m_fnMakeWindow(u32 uWidth, u32 uHeight) override;
    void m_fnDestroyWindow(WindowRef pWindow) override;
    void m_fnResize(WindowRef pWindow, u32 uWidth, u32 uHeight) override;
    ContextRef m_fnMakeContext(WindowRef, ContextRef pShare) override;
    void m_fnDestroyContext(ContextRef pContext) override { eglDestroyContext(m_pDisplay, pContext); }
    bool m_fnMakeCurrent(WindowRef pWindow, ContextRef pContext) override;
    bool m_fnSwap(WindowRef pWindow) override;
    void m_fnPump() override {
        if (m_pWindows) m_pWindows->m_fnPump();
    }
    void m_fnFreshSurface(WindowRef pWindow) override;
    stPicture m_fnReadPresented(WindowRef pWindow) override;
    const char* m_fnPresentedFrom() const override { return m_bOnWindows ? "window (XGetImage)" : "nothing"; }
    void* m_fnGetProc(const char* szName) override {
        return reinterpret_cast<void*>(eglGetProcAddress(szName));
    }
    void (*m_fnFrameHook())() override { return FindFrameHook(); }

  private:
    bool m_fnChooseConfig();
    bool m_fnFindSwap();
    EGLSurface m_fnMakeSurface(Window uWindow, u32 uWidth, u32 uHeight);
    stHostOptions m_stOptions;
    std::unique_ptr<CX11Windows> m_pWindows;
    EGLDisplay m_pDisplay = EGL_NO_DISPLAY;
    EGLConfig m_pConfig = nullptr;
    SwapFunction m_fnSwapBuffers = nullptr;
    DamageFunction m_fnSwapDamage = nullptr;
    bool m_bOnWindows = true;
};

bool CEglSystem::m_fnOpen(const stHostOptions& stOptions) {
    m_stOptions = stOptions;
    m_bOnWindows = stOptions.strSurface == "window";
    if (m_bOnWindows) {
        m_pWindows = std::make_unique<CX11Windows>();
        if (!m_pWindows->m_pDisplay) return false;
        m_pDisplay = eglGetPlatformDisplay(EGL_PLATFORM_X11_KHR, m_pWindows->m_pDisplay, nullptr);
    } else {
        m_pDisplay = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    }
    if (!eglInitialize(m_pDisplay, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API)) return false;
    return m_fnFindSwap() && m_fnChooseConfig();
}

bool CEglSystem::m_fnFindSwap() {
    const std::string& strThrough = m_stOptions.strSwapThrough;
    if (strThrough == "import") return true;
    const bool bDamage = strThrough.starts_with("damage-");
    void* pSwap = nullptr;
    if (strThrough == "getproc") pSwap = m_fnGetProc("eglSwapBuffers");
    if (strThrough == "dlsym") pSwap = LookupInLibrary("libEGL.so.1", "eglSwapBuffers");
    if (strThrough == "damage-khr") pSwap = m_fnGetProc("eglSwapBuffersWithDamageKHR");
    if (strThrough == "damage-ext") pSwap = m_fnGetProc("eglSwapBuffersWithDamageEXT");
    if (bDamage)
        std::memcpy(&m_fnSwapDamage, &pSwap, sizeof pSwap);
    else
        std::memcpy(&m_fnSwapBuffers, &pSwap, sizeof pSwap);
    return pSwap != nullptr;
}

bool CEglSystem::m_fnChooseConfig() {
    const EGLint iWanted[] = {EGL_SURFACE_TYPE,
                              m_bOnWindows ? EGL_WINDOW_BIT : EGL_PBUFFER_BIT,
                              EGL_RENDERABLE_TYPE,
                              EGL_OPENGL_BIT,
                              EGL_RED_SIZE,
                              8,
                              EGL_GREEN_SIZE,
                              8,
                              EGL_BLUE_SIZE,
                              8,
                              EGL_DEPTH_SIZE,
                              16,
                              EGL_NONE};
    EGLint iCount = 0;
    return eglChooseConfig(m_pDisplay, iWanted, &m_pConfig, 1, &iCount) && iCount == 1;
}

EGLSurface CEglSystem::m_fnMakeSurface(Window uWindow, u32 uWidth, u32 uHeight) {
    if (m_bOnWindows) return eglCreatePlatformWindowSurface(m_pDisplay, m_pConfig, &uWindow, nullptr);
    if (m_stOptions.strSurface == "surfaceless") return EGL_NO_SURFACE;
    const EGLint iWanted[] = {EGL_WIDTH, EGLint(uWidth), EGL_HEIGHT, EGLint(uHeight), EGL_NONE};
    return eglCreatePbufferSurface(m_pDisplay, m_pConfig, iWanted);
}

WindowRef CEglSystem::m_fnMakeWindow(u32 uWidth, u32 uHeight) {
    auto pWindow = std::make_unique<stEglWindow>();
    if (m_bOnWindows) {
        Display* pDisplay = m_pWindows->m_pDisplay;
        const int iScreen = DefaultScreen(pDisplay);
        pWindow->uWindow = m_pWindows->m_fnMake(DefaultVisual(pDisplay, iScreen),
                                                DefaultDepth(pDisplay, iScreen), uWidth, uHeight);
    }
    pWindow->pSurface = m_fnMakeSurface(pWindow->uWindow, uWidth, uHeight);
    if (pWindow->pSurface == EGL_NO_SURFACE && m_stOptions.strSurface != "surfaceless") return nullptr;
    return pWindow.release();
}

void CEglSystem::m_fnDestroyWindow(WindowRef pWindow) {
    const std::unique_ptr<stEglWindow> pOwned(static_cast<stEglWindow*>(pWindow));
    if (pOwned->pSurface) eglDestroySurface(m_pDisplay, pOwned->pSurface);
    if (pOwned->uWindow) m_pWindows->m_fnDestroy(pOwned->uWindow);
}

void CEglSystem::m_fnResize(WindowRef pWindow, u32 uWidth, u32 uHeight) {
    if (m_bOnWindows) m_pWindows->m_fnResize(static_cast<stEglWindow*>(pWindow)->uWindow, uWidth, uHeight);
}

void CEglSystem::m_fnFreshSurface(WindowRef pWindow) {
    auto* pOld = static_cast<stEglWindow*>(pWindow);
    if (!pOld->pSurface) return;
    eglMakeCurrent(m_pDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroySurface(m_pDisplay, pOld->pSurface);
    pOld->pSurface = m_fnMakeSurface(pOld->uWindow, m_stOptions.uWidth, m_stOptions.uHeight);
}

ContextRef CEglSystem::m_fnMakeContext(WindowRef, ContextRef pShare) {
    std::vector<EGLint> iWanted;
    if (m_stOptions.bCore || m_stOptions.iMajor)
        iWanted = {EGL_CONTEXT_MAJOR_VERSION, m_stOptions.iMajor ? m_stOptions.iMajor : 3,
                   EGL_CONTEXT_MINOR_VERSION, m_stOptions.iMajor ? m_stOptions.iMinor : 2};
    const EGLint iProfile = m_stOptions.bCore ? EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT
                                              : EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT;
    iWanted.insert(iWanted.end(), {EGL_CONTEXT_OPENGL_PROFILE_MASK, iProfile, EGL_NONE});
    return eglCreateContext(m_pDisplay, m_pConfig, pShare, iWanted.data());
}

bool CEglSystem::m_fnMakeCurrent(WindowRef pWindow, ContextRef pContext) {
    EGLSurface pSurface = pWindow ? static_cast<stEglWindow*>(pWindow)->pSurface : EGL_NO_SURFACE;
    return eglMakeCurrent(m_pDisplay, pSurface, pSurface, pContext);
}

bool CEglSystem::m_fnSwap(WindowRef pWindow) {
    EGLSurface pSurface = static_cast<stEglWindow*>(pWindow)->pSurface;
    // The whole window as damage: what a careful program passes after drawing everything.
    const EGLint iDamage[4] = {0, 0, EGLint(m_stOptions.uWidth), EGLint(m_stOptions.uHeight)};
    if (m_fnSwapDamage) return m_fnSwapDamage(m_pDisplay, pSurface, iDamage, 1);
    return m_fnSwapBuffers ? m_fnSwapBuffers(m_pDisplay, pSurface) : eglSwapBuffers(m_pDisplay, pSurface);
}

stPicture CEglSystem::m_fnReadPresented(WindowRef pWindow) {
    if (!m_bOnWindows) return {};
    eglWaitClient();
    return m_pWindows->m_fnRead(static_cast<stEglWindow*>(pWindow)->uWindow);
}

} // namespace

std::unique_ptr<CWindowSystem> MakeWindowSystem() { return std::make_unique<CEglSystem>(); }

int main(int iCount, char** pszArguments) { return RunHost(iCount, pszArguments); }
