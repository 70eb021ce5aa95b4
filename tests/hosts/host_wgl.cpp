// The host program over WGL: plain Win32 windows, legacy or attribute-made contexts.
#include "tests/hosts/host_gl.h"
#include <GL/wglext.h>
#include <cstring>

namespace {

constexpr const char* g_szWindowClass = "OrvinHostWindow";
using SwapFunction = BOOL(WINAPI*)(HDC);

struct stWglWindow {
    HWND hWindow = nullptr;
    HDC hDc = nullptr;
};

class CWglSystem final : public CWindowSystem {
  public:
    bool m_fnOpen(const stHostOptions& stOptions) override;
    WindowRef m_fnMakeWindow(u32 uWidth, u32 uHeight) override;
    void m_fnDestroyWindow(WindowRef pWindow) override;
    void m_fnResize(WindowRef pWindow, u32 uWidth, u32 uHeight) override;
    ContextRef m_fnMakeContext(WindowRef pWindow) override;
    void m_fnDestroyContext(ContextRef pContext) override { wglDeleteContext(static_cast<HGLRC>(pContext)); }
    bool m_fnMakeCurrent(WindowRef pWindow, ContextRef pContext) override;
    bool m_fnSwap(WindowRef pWindow) override;
    void m_fnPump() override;
    void m_fnFreshSurface(WindowRef pWindow) override;
    stPicture m_fnReadPresented(WindowRef pWindow) override;
    const char* m_fnPresentedFrom() const override { return "front buffer (glReadPixels)"; }
    void* m_fnGetProc(const char* szName) override;

  private:
    HGLRC m_fnMakeWithAttributes(HDC hDc);
    stHostOptions m_stOptions;
    SwapFunction m_fnSwapBuffers = nullptr;
};

void* ToAddress(PROC fnProc) {
    void* pAddress = nullptr;
    std::memcpy(&pAddress, &fnProc, sizeof fnProc);
    return pAddress;
}

bool CWglSystem::m_fnOpen(const stHostOptions& stOptions) {
    m_stOptions = stOptions;
    if (!stOptions.strLoadLibrary.empty()) {
        const bool bLoaded = LoadLibraryA(stOptions.strLoadLibrary.c_str()) != nullptr;
        PrintLine("loaded_library", bLoaded ? "1" : "0");
    }
    m_fnSwapBuffers = SwapBuffers; // gdi32, as most programs do
    void* pSwap = ToAddress(GetProcAddress(GetModuleHandleA("opengl32.dll"), "wglSwapBuffers"));
    if (stOptions.strSwapThrough != "import") std::memcpy(&m_fnSwapBuffers, &pSwap, sizeof pSwap);
    WNDCLASSA stClass{};
    stClass.lpfnWndProc = DefWindowProcA;
    stClass.hInstance = GetModuleHandleA(nullptr);
    stClass.lpszClassName = g_szWindowClass;
    stClass.style = stOptions.bFreshSurface ? 0 : CS_OWNDC;
    return (RegisterClassA(&stClass) || GetLastError() == ERROR_CLASS_ALREADY_EXISTS) && m_fnSwapBuffers;
}

bool ChoosePixels(HDC hDc) {
    PIXELFORMATDESCRIPTOR stWanted{};
    stWanted.nSize = sizeof stWanted;
    stWanted.nVersion = 1;
    stWanted.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    stWanted.iPixelType = PFD_TYPE_RGBA;
    stWanted.cColorBits = 24;
    stWanted.cDepthBits = 24;
    stWanted.cStencilBits = 8;
    const int iFormat = ChoosePixelFormat(hDc, &stWanted);
    return iFormat && SetPixelFormat(hDc, iFormat, &stWanted);
}

WindowRef CWglSystem::m_fnMakeWindow(u32 uWidth, u32 uHeight) {
    auto pWindow = std::make_unique<stWglWindow>();
    pWindow->hWindow =
        CreateWindowExA(0, g_szWindowClass, "orvin host", WS_POPUP | WS_VISIBLE, 0, 0, int(uWidth),
                        int(uHeight), nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!pWindow->hWindow) return nullptr;
    pWindow->hDc = GetDC(pWindow->hWindow);
    return ChoosePixels(pWindow->hDc) ? pWindow.release() : nullptr;
}

void CWglSystem::m_fnDestroyWindow(WindowRef pWindow) {
    const std::unique_ptr<stWglWindow> pOwned(static_cast<stWglWindow*>(pWindow));
    ReleaseDC(pOwned->hWindow, pOwned->hDc);
    DestroyWindow(pOwned->hWindow);
}

void CWglSystem::m_fnResize(WindowRef pWindow, u32 uWidth, u32 uHeight) {
    SetWindowPos(static_cast<stWglWindow*>(pWindow)->hWindow, nullptr, 0, 0, int(uWidth), int(uHeight),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HGLRC CWglSystem::m_fnMakeWithAttributes(HDC hDc) {
    PFNWGLCREATECONTEXTATTRIBSARBPROC fnMake = nullptr;
    void* pMake = ToAddress(wglGetProcAddress("wglCreateContextAttribsARB"));
    std::memcpy(&fnMake, &pMake, sizeof pMake);
    const int iWanted[] = {WGL_CONTEXT_MAJOR_VERSION_ARB,
                           m_stOptions.iMajor ? m_stOptions.iMajor : 3,
                           WGL_CONTEXT_MINOR_VERSION_ARB,
                           m_stOptions.iMajor ? m_stOptions.iMinor : 2,
                           WGL_CONTEXT_PROFILE_MASK_ARB,
                           m_stOptions.bCore ? WGL_CONTEXT_CORE_PROFILE_BIT_ARB
                                             : WGL_CONTEXT_COMPATIBILITY_PROFILE_BIT_ARB,
                           0};
    return fnMake ? fnMake(hDc, nullptr, iWanted) : nullptr;
}

ContextRef CWglSystem::m_fnMakeContext(WindowRef pWindow) {
    HDC hDc = static_cast<stWglWindow*>(pWindow)->hDc;
    HGLRC hPlain = wglCreateContext(hDc);
    if (!hPlain || (!m_stOptions.bCore && !m_stOptions.iMajor)) return hPlain;
    wglMakeCurrent(hDc, hPlain);
    HGLRC hAsked = m_fnMakeWithAttributes(hDc);
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(hPlain);
    return hAsked;
}

bool CWglSystem::m_fnMakeCurrent(WindowRef pWindow, ContextRef pContext) {
    HDC hDc = pWindow ? static_cast<stWglWindow*>(pWindow)->hDc : nullptr;
    return wglMakeCurrent(hDc, static_cast<HGLRC>(pContext));
}

bool CWglSystem::m_fnSwap(WindowRef pWindow) {
    return m_fnSwapBuffers(static_cast<stWglWindow*>(pWindow)->hDc);
}

void CWglSystem::m_fnPump() {
    MSG stMessage;
    while (PeekMessageA(&stMessage, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&stMessage);
        DispatchMessageA(&stMessage);
    }
}

void CWglSystem::m_fnFreshSurface(WindowRef pWindow) {
    auto* pOwned = static_cast<stWglWindow*>(pWindow);
    HDC hOld = pOwned->hDc;
    pOwned->hDc = GetDC(pOwned->hWindow); // before the old one goes, so that it is another handle
    ReleaseDC(pOwned->hWindow, hOld);
}

stPicture CWglSystem::m_fnReadPresented(WindowRef pWindow) {
    RECT stArea;
    stHostGl stGl;
    if (!GetClientRect(static_cast<stWglWindow*>(pWindow)->hWindow, &stArea) || !LoadHostGl(*this, stGl))
        return {};
    stGl.Finish();
    return ReadBufferPicture(stGl, GL_FRONT, u32(stArea.right), u32(stArea.bottom));
}

void* CWglSystem::m_fnGetProc(const char* szName) {
    void* pAddress = ToAddress(wglGetProcAddress(szName));
    return pAddress ? pAddress : ToAddress(GetProcAddress(GetModuleHandleA("opengl32.dll"), szName));
}

} // namespace

std::unique_ptr<CWindowSystem> MakeWindowSystem() { return std::make_unique<CWglSystem>(); }

int main(int iCount, char** pszArguments) { return RunHost(iCount, pszArguments); }
