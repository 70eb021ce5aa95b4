// The host program over WGL: plain Win32 windows, legacy or attribute-made contexts.
#include "tests/hosts/host_gl.h"
#include <GL/wglext.h>
#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <random>
#include <thread>

namespace {

constexpr const char* g_szWindowClass = "OrvinHostWindow";
using SwapFunction = BOOL(WINAPI*)(HDC);

struct stWglWindow {
    HWND hWindow = nullptr;
    HDC hDc = nullptr;
};

/// Loads and frees a library again and again beside the frames of another thread.
class CReloader {
  public:
    ~CReloader() {
        if (m_clThread.joinable()) m_clThread.join();
    }
    void m_fnStart(const std::string& strLibrary, u32 uTimes) {
        if (!uTimes) return;
        m_bDone = false;
        m_clThread = std::thread([this, strLibrary, uTimes] { m_fnRun(strLibrary, uTimes); });
    }
    bool m_fnIsDone() const { return m_bDone && m_clThread.joinable(); }

  private:
    void m_fnRun(const std::string& strLibrary, u32 uTimes);
    std::thread m_clThread;
    std::atomic<bool> m_bDone{false};
};

constexpr u32 g_uJumpBytes = 5;

/// The code of the swap as the first thread found it, before any message was taken: a later one may find the
/// detour.
const std::array<u8, g_uJumpBytes>& FirstBytes(const void* pSwap) {
    static const auto s_aBytes = [pSwap] {
        std::array<u8, g_uJumpBytes> aBytes;
        std::memcpy(aBytes.data(), pSwap, aBytes.size());
        return aBytes;
    }();
    return s_aBytes;
}

class CWglSystem final : public CWindowSystem {
  public:
    bool m_fnOpen(const stHostOptions& stOptions) override;
    WindowRef m_fnMakeWindow(u32 uWidth, u32 uHeight) override;
    void m_fnDestroyWindow(WindowRef pWindow) override;
    void m_fnResize(WindowRef pWindow, u32 uWidth, u32 uHeight) override;
    void m_fnHide(WindowRef pWindow) override {
        ShowWindow(static_cast<stWglWindow*>(pWindow)->hWindow, SW_MINIMIZE);
    }
    ContextRef m_fnMakeContext(WindowRef pWindow, ContextRef pShare) override;
    void m_fnDestroyContext(ContextRef pContext) override { wglDeleteContext(static_cast<HGLRC>(pContext)); }
    bool m_fnMakeCurrent(WindowRef pWindow, ContextRef pContext) override;
    bool m_fnSwap(WindowRef pWindow) override;
    void m_fnPump() override;
    void m_fnFreshSurface(WindowRef pWindow) override;
    stPicture m_fnReadPresented(WindowRef pWindow) override;
    const char* m_fnPresentedFrom() const override { return "screen (BitBlt)"; }
    bool m_fnIsDone() override { return m_clReloader.m_fnIsDone(); }
    void* m_fnGetProc(const char* szName) override;
    void m_fnScribble(const std::string& strModule, u32 uFrame) override;
    bool m_fnIsDetoured() override {
        return std::memcmp(m_pSwapCode, FirstBytes(m_pSwapCode).data(), g_uJumpBytes) != 0;
    }

  private:
    void m_fnFinish();
    HGLRC m_fnMakeWithAttributes(HDC hDc, HGLRC hShare);
    stHostOptions m_stOptions;
    SwapFunction m_fnSwapBuffers = nullptr;
    CReloader m_clReloader;
    const void* m_pSwapCode = nullptr;
};

void* ToAddress(PROC fnProc) {
    void* pAddress = nullptr;
    std::memcpy(&pAddress, &fnProc, sizeof fnProc);
    return pAddress;
}

constexpr u32 g_uEntryBytes = 16;

/// How long the library stands loaded, in milliseconds: from less than a frame to more than the limiter needs
/// to begin.
constexpr u32 g_uStays[] = {0, 3, 40, 1, 150, 7, 2500, 15};

/// Counts what a load and an unload leave changed: the first bytes of the swap, and the library itself.
void CReloader::m_fnRun(const std::string& strLibrary, u32 uTimes) {
    const void* const pSwap = ToAddress(GetProcAddress(GetModuleHandleA("opengl32.dll"), "wglSwapBuffers"));
    u8 u8Before[g_uEntryBytes], u8Hooked[g_uEntryBytes];
    std::memcpy(u8Before, pSwap, sizeof u8Before);
    u32 uDetours = 0, uChanged = 0, uStayed = 0;
    for (u32 i = 0; i < uTimes; ++i) {
        HMODULE hLibrary = LoadLibraryA(strLibrary.c_str());
        std::memcpy(u8Hooked, pSwap, sizeof u8Hooked);
        uDetours += std::memcmp(u8Before, u8Hooked, sizeof u8Before) != 0;
        Sleep(g_uStays[i % std::size(g_uStays)]);
        FreeLibrary(hLibrary);
        for (u32 uWait = 0; uWait < 500 && GetModuleHandleA(strLibrary.c_str()); ++uWait) Sleep(10);
        uStayed += GetModuleHandleA(strLibrary.c_str()) != nullptr;
        uChanged += std::memcmp(u8Before, pSwap, sizeof u8Before) != 0;
    }
    PrintLine("reload_detours", std::to_string(uDetours));
    PrintLine("reload_stayed", std::to_string(uStayed));
    PrintLine("reload_changed", std::to_string(uChanged));
    m_bDone = true;
}

bool CWglSystem::m_fnOpen(const stHostOptions& stOptions) {
    m_stOptions = stOptions;
    if (!stOptions.strLoadLibrary.empty() && !stOptions.uReloads) {
        const bool bLoaded = LoadLibraryA(stOptions.strLoadLibrary.c_str()) != nullptr;
        PrintLine("loaded_library", bLoaded ? "1" : "0");
    }
    m_fnSwapBuffers = SwapBuffers; // gdi32, as most programs do
    void* pSwap = ToAddress(GetProcAddress(GetModuleHandleA("opengl32.dll"), "wglSwapBuffers"));
    m_pSwapCode = pSwap;
    FirstBytes(pSwap);
    if (stOptions.strSwapThrough != "import") std::memcpy(&m_fnSwapBuffers, &pSwap, sizeof pSwap);
    m_clReloader.m_fnStart(stOptions.strLoadLibrary, stOptions.uReloads);
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
        CreateWindowExA(WS_EX_NOACTIVATE, g_szWindowClass, "orvin host", WS_POPUP, NextWindowX(uWidth), 0,
                        int(uWidth), int(uHeight), nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!pWindow->hWindow) return nullptr;
    ShowWindow(pWindow->hWindow,
               SW_SHOWNOACTIVATE); // an activated window waits for a window manager at its end
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

HGLRC CWglSystem::m_fnMakeWithAttributes(HDC hDc, HGLRC hShare) {
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
    return fnMake ? fnMake(hDc, hShare, iWanted) : nullptr;
}

ContextRef CWglSystem::m_fnMakeContext(WindowRef pWindow, ContextRef pShare) {
    HGLRC hShare = static_cast<HGLRC>(pShare);
    HDC hDc = static_cast<stWglWindow*>(pWindow)->hDc;
    HGLRC hPlain = wglCreateContext(hDc);
    const bool bPlain = !m_stOptions.bCore && !m_stOptions.iMajor;
    if (hPlain && bPlain && hShare) wglShareLists(hShare, hPlain);
    if (!hPlain || bPlain) return hPlain;
    wglMakeCurrent(hDc, hPlain);
    HGLRC hAsked = m_fnMakeWithAttributes(hDc, hShare);
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

/// Copies the area of the screen below a window's client area into a top-down picture.
bool CopyScreen(HWND hWindow, stPicture& stRead) {
    BITMAPINFO stInfo{};
    stInfo.bmiHeader.biSize = sizeof stInfo.bmiHeader;
    stInfo.bmiHeader.biWidth = LONG(stRead.uWidth);
    stInfo.bmiHeader.biHeight = -LONG(stRead.uHeight);
    stInfo.bmiHeader.biPlanes = 1;
    stInfo.bmiHeader.biBitCount = 32;
    POINT stCorner{0, 0};
    ClientToScreen(hWindow, &stCorner);
    void* pBits = nullptr;
    HDC hScreen = GetDC(nullptr), hMemory = CreateCompatibleDC(hScreen);
    HBITMAP hBitmap = CreateDIBSection(hScreen, &stInfo, DIB_RGB_COLORS, &pBits, nullptr, 0);
    HGDIOBJ hOld = SelectObject(hMemory, hBitmap);
    const bool bCopied = hBitmap && BitBlt(hMemory, 0, 0, int(stRead.uWidth), int(stRead.uHeight), hScreen,
                                           stCorner.x, stCorner.y, SRCCOPY);
    GdiFlush();
    const u8* pPixel = static_cast<const u8*>(pBits);
    for (std::size_t i = 0; bCopied && i < std::size_t(stRead.uWidth) * stRead.uHeight; ++i, pPixel += 4)
        for (int iByte : {2, 1, 0}) stRead.u8Rgb.push_back(pPixel[iByte]);
    SelectObject(hMemory, hOld);
    if (hBitmap) DeleteObject(hBitmap);
    DeleteDC(hMemory);
    ReleaseDC(nullptr, hScreen);
    return bCopied;
}

stPicture CWglSystem::m_fnReadPresented(WindowRef pWindow) {
    RECT stArea;
    HWND hWindow = static_cast<stWglWindow*>(pWindow)->hWindow;
    if (!GetClientRect(hWindow, &stArea)) return {};
    m_fnFinish();
    stPicture stRead{u32(stArea.right), u32(stArea.bottom), {}};
    return CopyScreen(hWindow, stRead) ? stRead : stPicture{};
}

void CWglSystem::m_fnFinish() {
    stHostGl stGl;
    if (LoadHostGl(*this, stGl)) stGl.Finish();
}

/// Random bytes over a random part of the block, the whole of it now and then.
void ScribbleOver(u8* pBlock, u32 uBytes, std::mt19937& random) {
    u32 uStart = random() % uBytes, uCount = random() % (uBytes - uStart) + 1;
    if (random() % 16 == 0) uStart = 0, uCount = uBytes;
    if (random() % 2) uCount = std::min(uCount, 64u);
    for (u32 i = 0; i < uCount; ++i) pBlock[uStart + i] = u8(random());
}

void CWglSystem::m_fnScribble(const std::string& strModule, u32 uFrame) {
    auto* pImage = reinterpret_cast<u8*>(GetModuleHandleA(strModule.c_str()));
    if (!pImage) return;
    if (uFrame == 1) PrintLine("scribbles_on", strModule);
    static std::mt19937 s_random(20261121);
    const auto* pHeader =
        reinterpret_cast<IMAGE_NT_HEADERS*>(pImage + reinterpret_cast<IMAGE_DOS_HEADER*>(pImage)->e_lfanew);
    const IMAGE_SECTION_HEADER* pSection = IMAGE_FIRST_SECTION(pHeader);
    for (u32 i = 0; i < pHeader->FileHeader.NumberOfSections; ++i, ++pSection)
        if (pSection->Characteristics & IMAGE_SCN_MEM_SHARED)
            ScribbleOver(pImage + pSection->VirtualAddress, pSection->Misc.VirtualSize, s_random);
}

void* CWglSystem::m_fnGetProc(const char* szName) {
    void* pAddress = ToAddress(wglGetProcAddress(szName));
    return pAddress ? pAddress : ToAddress(GetProcAddress(GetModuleHandleA("opengl32.dll"), szName));
}

} // namespace

std::unique_ptr<CWindowSystem> MakeWindowSystem() { return std::make_unique<CWglSystem>(); }

int main(int iCount, char** pszArguments) { return RunHost(iCount, pszArguments); }
