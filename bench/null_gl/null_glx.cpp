// The GLX side of the null GL library: one frame-buffer configuration over the screen's default visual,
// contexts that are mere numbers, a swap that counts. No X request is made but those that find the visual.
#include "null_answers.h"
#include <GL/glx.h>
#include <GL/glxext.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* g_szExtensions =
    "GLX_ARB_get_proc_address GLX_ARB_create_context GLX_ARB_create_context_profile";
int g_iConfigTag = 1;
thread_local Display* t_pDisplay = nullptr;
thread_local GLXDrawable t_uDrawable = 0;
thread_local GLXContext t_pContext = nullptr;
std::uintptr_t g_uNextContext = 0x1000;

GLXContext MakeContext() { return reinterpret_cast<GLXContext>(g_uNextContext += 16); }

GLXFBConfig* OneConfig(int* piCount) {
    auto** pList = static_cast<GLXFBConfig*>(std::malloc(sizeof(GLXFBConfig)));
    pList[0] = reinterpret_cast<GLXFBConfig>(&g_iConfigTag);
    *piCount = 1;
    return pList;
}

XVisualInfo* DefaultVisualInfo(Display* pDisplay, int iScreen) {
    XVisualInfo stWanted{};
    int iCount = 0;
    stWanted.visualid = XVisualIDFromVisual(DefaultVisual(pDisplay, iScreen));
    return XGetVisualInfo(pDisplay, VisualIDMask, &stWanted, &iCount);
}

int Attribute(int iName) {
    switch (iName) {
    case GLX_USE_GL:
    case GLX_RGBA:
    case GLX_DOUBLEBUFFER:
    case GLX_X_RENDERABLE:
        return 1;
    case GLX_RED_SIZE:
    case GLX_GREEN_SIZE:
    case GLX_BLUE_SIZE:
    case GLX_STENCIL_SIZE:
        return 8;
    case GLX_BUFFER_SIZE:
    case GLX_DEPTH_SIZE:
        return 24;
    case GLX_DRAWABLE_TYPE:
        return GLX_WINDOW_BIT | GLX_PBUFFER_BIT | GLX_PIXMAP_BIT;
    case GLX_RENDER_TYPE:
        return GLX_RGBA_BIT;
    case GLX_X_VISUAL_TYPE:
        return GLX_TRUE_COLOR;
    case GLX_CONFIG_CAVEAT:
    case GLX_TRANSPARENT_TYPE:
        return GLX_NONE;
    case GLX_FBCONFIG_ID:
        return 1;
    default:
        return 0;
    }
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

XVisualInfo* glXChooseVisual(Display* pDisplay, int iScreen, int*) {
    return DefaultVisualInfo(pDisplay, iScreen);
}
GLXContext glXCreateContext(Display*, XVisualInfo*, GLXContext, Bool) { return MakeContext(); }
GLXContext glXCreateNewContext(Display*, GLXFBConfig, int, GLXContext, Bool) { return MakeContext(); }
GLXContext glXCreateContextAttribsARB(Display*, GLXFBConfig, GLXContext, Bool, const int*) {
    return MakeContext();
}
void glXDestroyContext(Display*, GLXContext) {}
void glXCopyContext(Display*, GLXContext, GLXContext, unsigned long) {}
Bool glXMakeContextCurrent(Display* pDisplay, GLXDrawable uDraw, GLXDrawable, GLXContext pContext) {
    NullWindowCall();
    t_pDisplay = pDisplay, t_uDrawable = uDraw, t_pContext = pContext;
    return True;
}
Bool glXMakeCurrent(Display* pDisplay, GLXDrawable uDraw, GLXContext pContext) {
    return glXMakeContextCurrent(pDisplay, uDraw, uDraw, pContext);
}
void glXSwapBuffers(Display*, GLXDrawable) { NullSwapDone(); }
Display* glXGetCurrentDisplay() { return t_pDisplay; }
GLXContext glXGetCurrentContext() { return t_pContext; }
GLXDrawable glXGetCurrentDrawable() { return t_uDrawable; }
GLXDrawable glXGetCurrentReadDrawable() { return t_uDrawable; }
Bool glXQueryExtension(Display*, int* piError, int* piEvent) {
    if (piError) *piError = 0;
    if (piEvent) *piEvent = 0;
    return True;
}
Bool glXQueryVersion(Display*, int* piMajor, int* piMinor) {
    *piMajor = 1, *piMinor = 4;
    return True;
}
int glXGetConfig(Display*, XVisualInfo*, int iName, int* piOut) {
    *piOut = Attribute(iName);
    return 0;
}
int glXGetFBConfigAttrib(Display* pDisplay, GLXFBConfig, int iName, int* piOut) {
    *piOut = iName == GLX_VISUAL_ID
                 ? int(XVisualIDFromVisual(DefaultVisual(pDisplay, DefaultScreen(pDisplay))))
                 : Attribute(iName);
    return 0;
}
GLXFBConfig* glXChooseFBConfig(Display*, int, const int*, int* piCount) { return OneConfig(piCount); }
GLXFBConfig* glXGetFBConfigs(Display*, int, int* piCount) { return OneConfig(piCount); }
XVisualInfo* glXGetVisualFromFBConfig(Display* pDisplay, GLXFBConfig) {
    return DefaultVisualInfo(pDisplay, DefaultScreen(pDisplay));
}
Bool glXIsDirect(Display*, GLXContext) { return True; }
void glXWaitGL() {}
void glXWaitX() {}
void glXUseXFont(Font, int, int, int) {}
const char* glXQueryExtensionsString(Display*, int) { return g_szExtensions; }
const char* glXQueryServerString(Display*, int, int iName) {
    return iName == GLX_VERSION ? "1.4" : g_szExtensions;
}
const char* glXGetClientString(Display*, int iName) { return iName == GLX_VERSION ? "1.4" : g_szExtensions; }
GLXWindow glXCreateWindow(Display*, GLXFBConfig, Window uWindow, const int*) { return uWindow; }
void glXDestroyWindow(Display*, GLXWindow) {}
GLXPixmap glXCreateGLXPixmap(Display*, XVisualInfo*, Pixmap uPixmap) { return uPixmap; }
void glXDestroyGLXPixmap(Display*, GLXPixmap) {}
GLXPixmap glXCreatePixmap(Display*, GLXFBConfig, Pixmap uPixmap, const int*) { return uPixmap; }
void glXDestroyPixmap(Display*, GLXPixmap) {}
GLXPbuffer glXCreatePbuffer(Display*, GLXFBConfig, const int*) { return 1; }
void glXDestroyPbuffer(Display*, GLXPbuffer) {}
void glXQueryDrawable(Display*, GLXDrawable, int iName, unsigned* puOut) {
    int iWidth = 0, iHeight = 0;
    NullWindowCall();
    NullDrawableSize(iWidth, iHeight);
    *puOut = iName == GLX_WIDTH ? unsigned(iWidth) : iName == GLX_HEIGHT ? unsigned(iHeight) : 1u;
}
int glXQueryContext(Display*, GLXContext, int iName, int* piOut) {
    *piOut = iName == GLX_FBCONFIG_ID ? 1 : 0;
    return 0;
}
void glXSelectEvent(Display*, GLXDrawable, unsigned long) {}
void glXGetSelectedEvent(Display*, GLXDrawable, unsigned long* puMask) { *puMask = 0; }

using VoidFunction = void (*)();
struct stGlxEntry {
    const char* szName;
    VoidFunction fnEntry;
};
static const stGlxEntry g_stGlxEntries[] = {
    {"glXChooseFBConfig", reinterpret_cast<VoidFunction>(&glXChooseFBConfig)},
    {"glXChooseVisual", reinterpret_cast<VoidFunction>(&glXChooseVisual)},
    {"glXCopyContext", reinterpret_cast<VoidFunction>(&glXCopyContext)},
    {"glXCreateContext", reinterpret_cast<VoidFunction>(&glXCreateContext)},
    {"glXCreateContextAttribsARB", reinterpret_cast<VoidFunction>(&glXCreateContextAttribsARB)},
    {"glXCreateGLXPixmap", reinterpret_cast<VoidFunction>(&glXCreateGLXPixmap)},
    {"glXCreateNewContext", reinterpret_cast<VoidFunction>(&glXCreateNewContext)},
    {"glXCreatePbuffer", reinterpret_cast<VoidFunction>(&glXCreatePbuffer)},
    {"glXCreatePixmap", reinterpret_cast<VoidFunction>(&glXCreatePixmap)},
    {"glXCreateWindow", reinterpret_cast<VoidFunction>(&glXCreateWindow)},
    {"glXDestroyContext", reinterpret_cast<VoidFunction>(&glXDestroyContext)},
    {"glXDestroyGLXPixmap", reinterpret_cast<VoidFunction>(&glXDestroyGLXPixmap)},
    {"glXDestroyPbuffer", reinterpret_cast<VoidFunction>(&glXDestroyPbuffer)},
    {"glXDestroyPixmap", reinterpret_cast<VoidFunction>(&glXDestroyPixmap)},
    {"glXDestroyWindow", reinterpret_cast<VoidFunction>(&glXDestroyWindow)},
    {"glXGetClientString", reinterpret_cast<VoidFunction>(&glXGetClientString)},
    {"glXGetConfig", reinterpret_cast<VoidFunction>(&glXGetConfig)},
    {"glXGetCurrentContext", reinterpret_cast<VoidFunction>(&glXGetCurrentContext)},
    {"glXGetCurrentDisplay", reinterpret_cast<VoidFunction>(&glXGetCurrentDisplay)},
    {"glXGetCurrentDrawable", reinterpret_cast<VoidFunction>(&glXGetCurrentDrawable)},
    {"glXGetCurrentReadDrawable", reinterpret_cast<VoidFunction>(&glXGetCurrentReadDrawable)},
    {"glXGetFBConfigAttrib", reinterpret_cast<VoidFunction>(&glXGetFBConfigAttrib)},
    {"glXGetFBConfigs", reinterpret_cast<VoidFunction>(&glXGetFBConfigs)},
    {"glXGetSelectedEvent", reinterpret_cast<VoidFunction>(&glXGetSelectedEvent)},
    {"glXGetVisualFromFBConfig", reinterpret_cast<VoidFunction>(&glXGetVisualFromFBConfig)},
    {"glXIsDirect", reinterpret_cast<VoidFunction>(&glXIsDirect)},
    {"glXMakeContextCurrent", reinterpret_cast<VoidFunction>(&glXMakeContextCurrent)},
    {"glXMakeCurrent", reinterpret_cast<VoidFunction>(&glXMakeCurrent)},
    {"glXQueryContext", reinterpret_cast<VoidFunction>(&glXQueryContext)},
    {"glXQueryDrawable", reinterpret_cast<VoidFunction>(&glXQueryDrawable)},
    {"glXQueryExtension", reinterpret_cast<VoidFunction>(&glXQueryExtension)},
    {"glXQueryExtensionsString", reinterpret_cast<VoidFunction>(&glXQueryExtensionsString)},
    {"glXQueryServerString", reinterpret_cast<VoidFunction>(&glXQueryServerString)},
    {"glXQueryVersion", reinterpret_cast<VoidFunction>(&glXQueryVersion)},
    {"glXSelectEvent", reinterpret_cast<VoidFunction>(&glXSelectEvent)},
    {"glXSwapBuffers", reinterpret_cast<VoidFunction>(&glXSwapBuffers)},
    {"glXUseXFont", reinterpret_cast<VoidFunction>(&glXUseXFont)},
    {"glXWaitGL", reinterpret_cast<VoidFunction>(&glXWaitGL)},
    {"glXWaitX", reinterpret_cast<VoidFunction>(&glXWaitX)},
};

VoidFunction glXGetProcAddressARB(const GLubyte* pName) {
    const char* szName = reinterpret_cast<const char*>(pName);
    const NullEntry* pEnd = g_stNullEntries + g_uNullEntries;
    const NullEntry* pFound =
        std::lower_bound(g_stNullEntries, pEnd, szName,
                         [](const NullEntry& st, const char* sz) { return std::strcmp(st.szName, sz) < 0; });
    if (pFound != pEnd && std::strcmp(pFound->szName, szName) == 0)
        return reinterpret_cast<VoidFunction>(pFound->pAddress);
    for (const stGlxEntry& st : g_stGlxEntries)
        if (std::strcmp(st.szName, szName) == 0) return st.fnEntry;
    return nullptr;
}
VoidFunction glXGetProcAddress(const GLubyte* pName) { return glXGetProcAddressARB(pName); }

} // extern "C"
#pragma GCC visibility pop
