#include "platform/profile_context.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <GL/wglew.h>
#include <windows.h>

namespace platform::tool {
namespace {

constexpr const wchar_t* kWindowClass = L"OrvinProfile";

template <class T> T Entry(const char* szName) {
    return reinterpret_cast<T>(reinterpret_cast<void*>(wglGetProcAddress(szName)));
}

/// What a plain context tells of the driver's extensions.
struct Entries {
    PFNWGLCHOOSEPIXELFORMATARBPROC fnChoose =
        Entry<PFNWGLCHOOSEPIXELFORMATARBPROC>("wglChoosePixelFormatARB");
    PFNWGLCREATEPBUFFERARBPROC fnCreate = Entry<PFNWGLCREATEPBUFFERARBPROC>("wglCreatePbufferARB");
    PFNWGLGETPBUFFERDCARBPROC fnGetDC = Entry<PFNWGLGETPBUFFERDCARBPROC>("wglGetPbufferDCARB");
    PFNWGLRELEASEPBUFFERDCARBPROC fnReleaseDC =
        Entry<PFNWGLRELEASEPBUFFERDCARBPROC>("wglReleasePbufferDCARB");
    PFNWGLDESTROYPBUFFERARBPROC fnDestroy = Entry<PFNWGLDESTROYPBUFFERARBPROC>("wglDestroyPbufferARB");
    PFNWGLCREATECONTEXTATTRIBSARBPROC fnContext =
        Entry<PFNWGLCREATECONTEXTATTRIBSARBPROC>("wglCreateContextAttribsARB");

    bool AreComplete() const {
        return fnChoose && fnCreate && fnGetDC && fnReleaseDC && fnDestroy && fnContext;
    }
};

/// A window that is never shown, with a plain context: the way to the driver's extensions.
class HiddenWindow {
  public:
    HiddenWindow() = default;
    ~HiddenWindow() {
        if (m_hContext) wglDeleteContext(m_hContext);
        if (m_hDC) ReleaseDC(m_hWindow, m_hDC);
        if (m_hWindow) DestroyWindow(m_hWindow);
    }
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;

    bool Create() {
        WNDCLASSW st{};
        st.style = CS_OWNDC;
        st.lpfnWndProc = DefWindowProcW;
        st.hInstance = GetModuleHandleW(nullptr);
        st.lpszClassName = kWindowClass;
        RegisterClassW(&st);
        m_hWindow =
            CreateWindowW(kWindowClass, L"", WS_POPUP, 0, 0, 16, 16, nullptr, nullptr, st.hInstance, nullptr);
        m_hDC = m_hWindow ? GetDC(m_hWindow) : nullptr;
        PIXELFORMATDESCRIPTOR stFormat{};
        stFormat.nSize = sizeof stFormat;
        stFormat.nVersion = 1;
        stFormat.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
        stFormat.cColorBits = 24;
        const int iFormat = m_hDC ? ChoosePixelFormat(m_hDC, &stFormat) : 0;
        if (iFormat == 0 || !SetPixelFormat(m_hDC, iFormat, &stFormat)) return false;
        m_hContext = wglCreateContext(m_hDC);
        return m_hContext && wglMakeCurrent(m_hDC, m_hContext);
    }
    HDC DC() const { return m_hDC; }

  private:
    HWND m_hWindow = nullptr;
    HDC m_hDC = nullptr;
    HGLRC m_hContext = nullptr;
};

} // namespace

struct OffscreenContext::Parts {
    HiddenWindow window;
    Entries stEntries{};
    HPBUFFERARB hBuffer = nullptr;
    HDC hDC = nullptr;
    HGLRC hContext = nullptr;

    bool MakeBuffer(u32 uWidth, u32 uHeight) {
        const int aiFormat[] = {WGL_DRAW_TO_PBUFFER_ARB,
                                TRUE,
                                WGL_SUPPORT_OPENGL_ARB,
                                TRUE,
                                WGL_DOUBLE_BUFFER_ARB,
                                TRUE,
                                WGL_PIXEL_TYPE_ARB,
                                WGL_TYPE_RGBA_ARB,
                                WGL_RED_BITS_ARB,
                                8,
                                WGL_GREEN_BITS_ARB,
                                8,
                                WGL_BLUE_BITS_ARB,
                                8,
                                WGL_ALPHA_BITS_ARB,
                                8,
                                WGL_DEPTH_BITS_ARB,
                                24,
                                WGL_STENCIL_BITS_ARB,
                                8,
                                0};
        const int aiBuffer[] = {0};
        int iFormat = 0;
        UINT uFound = 0;
        if (!stEntries.fnChoose(window.DC(), aiFormat, nullptr, 1, &iFormat, &uFound) || uFound == 0)
            return false;
        hBuffer = stEntries.fnCreate(window.DC(), iFormat, static_cast<int>(uWidth),
                                     static_cast<int>(uHeight), aiBuffer);
        hDC = hBuffer ? stEntries.fnGetDC(hBuffer) : nullptr;
        return hDC != nullptr;
    }

    bool MakeContext() {
        const int aiContext[] = {WGL_CONTEXT_MAJOR_VERSION_ARB,
                                 3,
                                 WGL_CONTEXT_MINOR_VERSION_ARB,
                                 2,
                                 WGL_CONTEXT_PROFILE_MASK_ARB,
                                 WGL_CONTEXT_CORE_PROFILE_BIT_ARB,
                                 0};
        hContext = stEntries.fnContext(hDC, nullptr, aiContext);
        return hContext && wglMakeCurrent(hDC, hContext);
    }
};

OffscreenContext::OffscreenContext() : m_pParts(std::make_unique<Parts>()) {}
OffscreenContext::~OffscreenContext() { Destroy(); }

Result OffscreenContext::Create(u32 uWidth, u32 uHeight) {
    Parts& st = *m_pParts;
    if (!st.window.Create()) return Result::Fail("no graphics context can be made on this system");
    st.stEntries = {};
    if (!st.stEntries.AreComplete() || !st.MakeBuffer(uWidth, uHeight) || !st.MakeContext()) {
        Destroy();
        return Result::Fail("the graphics driver offers no off-screen context of " + std::to_string(uWidth) +
                            " x " + std::to_string(uHeight) + " pixels with OpenGL 3.2");
    }
    headless::SetCurrentSurface(st.hDC);
    headless::SetCurrentContext(st.hContext);
    headless::SetWindow(st.hDC);
    headless::SetClientSize(uWidth, uHeight);
    return {};
}

void* OffscreenContext::Surface() const { return m_pParts->hDC; }

void OffscreenContext::Destroy() {
    Parts& st = *m_pParts;
    wglMakeCurrent(nullptr, nullptr);
    if (st.hContext) wglDeleteContext(st.hContext);
    if (st.hDC) st.stEntries.fnReleaseDC(st.hBuffer, st.hDC);
    if (st.hBuffer) st.stEntries.fnDestroy(st.hBuffer);
    st.hContext = nullptr;
    st.hDC = nullptr;
    st.hBuffer = nullptr;
    headless::UseRealSurface();
}

} // namespace platform::tool
