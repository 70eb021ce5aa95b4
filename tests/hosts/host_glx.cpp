// The host program over GLX: X11 windows, contexts with or without asked-for version and profile.
#include "tests/hosts/host_x11.h"
#include <GL/glx.h>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using MakeContextWithAttributes = GLXContext (*)(Display*, GLXFBConfig, GLXContext, Bool, const int*);
using SwapFunction = void (*)(Display*, GLXDrawable);

/// As programs do that choose their own fonts: the library that all of a process share.
void CallFontconfig(const char* szName) {
    if (void* pFunction = LookupInLibrary("libfontconfig.so.1", szName))
        reinterpret_cast<void (*)()>(pFunction)();
}

class CGlxSystem final : public CWindowSystem {
  public:
    ~CGlxSystem() override {
        if (m_stOptions.bEndFontconfig) CallFontconfig("FcFini");
    }
    bool m_fnOpen(const stHostOptions& stOptions) override;
    WindowRef m_fnMakeWindow(u32 uWidth, u32 uHeight) override;
    void m_fnDestroyWindow(WindowRef pWindow) override { m_clWindows.m_fnDestroy(Window(pWindow)); }
    void m_fnResize(WindowRef pWindow, u32 uWidth, u32 uHeight) override {
        m_clWindows.m_fnResize(Window(pWindow), uWidth, uHeight);
    }
    void m_fnHide(WindowRef pWindow) override { m_clWindows.m_fnHide(Window(pWindow)); }
    ContextRef m_fnMakeContext(WindowRef, ContextRef pShare) override;
    void m_fnDestroyContext(ContextRef pContext) override {
        glXDestroyContext(m_clWindows.m_pDisplay, static_cast<GLXContext>(pContext));
    }
    bool m_fnMakeCurrent(WindowRef pWindow, ContextRef pContext) override {
        return glXMakeCurrent(m_clWindows.m_pDisplay, GLXDrawable(pWindow),
                              static_cast<GLXContext>(pContext));
    }
    bool m_fnSwap(WindowRef pWindow) override;
    void m_fnPump() override { m_clWindows.m_fnPump(); }
    stPicture m_fnReadPresented(WindowRef pWindow) override;
    const char* m_fnPresentedFrom() const override { return "window (XGetImage)"; }
    void* m_fnGetProc(const char* szName) override {
        return reinterpret_cast<void*>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(szName)));
    }
    void (*m_fnFrameHook())() override { return FindFrameHook(); }

  private:
    CX11Windows m_clWindows;
    stHostOptions m_stOptions;
    GLXFBConfig m_pConfig = nullptr;
    SwapFunction m_fnSwapBuffers = nullptr;
};

bool CGlxSystem::m_fnOpen(const stHostOptions& stOptions) {
    m_stOptions = stOptions;
    if (!m_clWindows.m_pDisplay) return false;
    if (stOptions.bEndFontconfig) CallFontconfig("FcInit");
    void* pSwap = nullptr;
    if (stOptions.strSwapThrough == "getproc") pSwap = m_fnGetProc("glXSwapBuffers");
    if (stOptions.strSwapThrough == "dlsym") pSwap = LookupInLibrary("libGL.so.1", "glXSwapBuffers");
    if (stOptions.strSwapThrough != "import" && !pSwap) return false;
    std::memcpy(&m_fnSwapBuffers, &pSwap, sizeof pSwap);

    const int iWanted[] = {GLX_RENDER_TYPE,
                           GLX_RGBA_BIT,
                           GLX_DRAWABLE_TYPE,
                           GLX_WINDOW_BIT,
                           GLX_DOUBLEBUFFER,
                           True,
                           GLX_RED_SIZE,
                           8,
                           GLX_GREEN_SIZE,
                           8,
                           GLX_BLUE_SIZE,
                           8,
                           GLX_DEPTH_SIZE,
                           16,
                           None};
    int iCount = 0;
    GLXFBConfig* pConfigs =
        glXChooseFBConfig(m_clWindows.m_pDisplay, DefaultScreen(m_clWindows.m_pDisplay), iWanted, &iCount);
    if (!pConfigs || iCount == 0) return false;
    m_pConfig = pConfigs[0];
    XFree(pConfigs);
    return true;
}

WindowRef CGlxSystem::m_fnMakeWindow(u32 uWidth, u32 uHeight) {
    XVisualInfo* pInfo = glXGetVisualFromFBConfig(m_clWindows.m_pDisplay, m_pConfig);
    if (!pInfo) return nullptr;
    const Window uWindow = m_clWindows.m_fnMake(pInfo->visual, pInfo->depth, uWidth, uHeight);
    XFree(pInfo);
    return WindowRef(uWindow);
}

ContextRef CGlxSystem::m_fnMakeContext(WindowRef, ContextRef pShare) {
    const auto pShared = static_cast<GLXContext>(pShare);
    Display* pDisplay = m_clWindows.m_pDisplay;
    if (!m_stOptions.bCore && !m_stOptions.iMajor)
        return glXCreateNewContext(pDisplay, m_pConfig, GLX_RGBA_TYPE, pShared, True);
    MakeContextWithAttributes fnMake = nullptr;
    void* pMake = m_fnGetProc("glXCreateContextAttribsARB");
    std::memcpy(&fnMake, &pMake, sizeof pMake);
    if (!fnMake) return nullptr;
    std::vector<int> iWanted;
    if (m_stOptions.iMajor)
        iWanted = {GLX_CONTEXT_MAJOR_VERSION_ARB, m_stOptions.iMajor, GLX_CONTEXT_MINOR_VERSION_ARB,
                   m_stOptions.iMinor};
    else
        iWanted = {GLX_CONTEXT_MAJOR_VERSION_ARB, 3, GLX_CONTEXT_MINOR_VERSION_ARB, 2};
    const int iProfile =
        m_stOptions.bCore ? GLX_CONTEXT_CORE_PROFILE_BIT_ARB : GLX_CONTEXT_COMPATIBILITY_PROFILE_BIT_ARB;
    iWanted.insert(iWanted.end(), {GLX_CONTEXT_PROFILE_MASK_ARB, iProfile, None});
    return fnMake(pDisplay, m_pConfig, pShared, True, iWanted.data());
}

bool CGlxSystem::m_fnSwap(WindowRef pWindow) {
    if (m_fnSwapBuffers)
        m_fnSwapBuffers(m_clWindows.m_pDisplay, GLXDrawable(pWindow));
    else
        glXSwapBuffers(m_clWindows.m_pDisplay, GLXDrawable(pWindow));
    return true;
}

stPicture CGlxSystem::m_fnReadPresented(WindowRef pWindow) {
    glXWaitGL();
    return m_clWindows.m_fnRead(Window(pWindow));
}

} // namespace

std::unique_ptr<CWindowSystem> MakeWindowSystem() { return std::make_unique<CGlxSystem>(); }

int main(int iCount, char** pszArguments) { return RunHost(iCount, pszArguments); }
