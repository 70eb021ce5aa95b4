// The detour on the real function: opengl32's wglSwapBuffers, reached through gdi32's SwapBuffers too.
#include "platform/gl_api.h"
#include "platform/minhook.h"
#include "platform/process.h"
#include "platform/surface.h"
#include "tests/unit/platform_win32/code_block.h"
#include <gtest/gtest.h>

namespace {

using SwapFunction = BOOL(WINAPI*)(HDC);

SwapFunction g_fnRealSwap = nullptr;
u32 g_uSwaps = 0;

BOOL WINAPI CountSwap(HDC hdc) {
    ++g_uSwaps;
    return g_fnRealSwap(hdc);
}

/// A small window with a GL context, made current; m_hContext is null where there is no display.
class GlWindow {
  public:
    GlWindow() {
        m_hWindow = CreateWindowA("STATIC", "detour", WS_POPUP | WS_VISIBLE, 0, 0, 64, 48, nullptr, nullptr,
                                  nullptr, nullptr);
        if (!m_hWindow) return;
        m_hDc = GetDC(m_hWindow);
        PIXELFORMATDESCRIPTOR format{};
        format.nSize = sizeof(format);
        format.nVersion = 1;
        format.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
        format.cColorBits = 24;
        SetPixelFormat(m_hDc, ChoosePixelFormat(m_hDc, &format), &format);
        m_hContext = wglCreateContext(m_hDc);
        if (m_hContext) wglMakeCurrent(m_hDc, m_hContext);
    }
    ~GlWindow() {
        wglMakeCurrent(nullptr, nullptr);
        if (m_hContext) wglDeleteContext(m_hContext);
        if (m_hWindow) DestroyWindow(m_hWindow);
    }
    GlWindow(const GlWindow&) = delete;
    GlWindow& operator=(const GlWindow&) = delete;
    HWND m_hWindow = nullptr;
    HDC m_hDc = nullptr;
    HGLRC m_hContext = nullptr;
};

u8* SwapAddress() {
    return static_cast<u8*>(platform::FindProc(platform::LoadModule("opengl32.dll"), "wglSwapBuffers"));
}

} // namespace

TEST(SwapDetour, BytesOfTheRealFunctionComeBack) {
    u8* pTarget = SwapAddress();
    ASSERT_NE(pTarget, nullptr);
    const std::vector<u8> abBefore = BytesAt(pTarget, 64);
    ASSERT_EQ(MH_Initialize(), MH_OK);
    for (u32 i = 0; i < 100; ++i) {
        ASSERT_EQ(MH_CreateHook(pTarget, reinterpret_cast<void*>(&CountSwap), nullptr), MH_OK);
        ASSERT_EQ(MH_EnableHook(pTarget), MH_OK);
        ASSERT_NE(BytesAt(pTarget, 64), abBefore);
        ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
        ASSERT_EQ(BytesAt(pTarget, 64), abBefore);
    }
    EXPECT_EQ(MH_Uninitialize(), MH_OK);
}

TEST(SwapDetour, EveryWayToSwapIsCaught) {
    GlWindow window;
    if (!window.m_hContext) GTEST_SKIP() << "no display";
    u8* pTarget = SwapAddress();
    ASSERT_EQ(MH_Initialize(), MH_OK);
    void* pTrampoline = nullptr;
    ASSERT_EQ(MH_CreateHook(pTarget, reinterpret_cast<void*>(&CountSwap), &pTrampoline), MH_OK);
    g_fnRealSwap = reinterpret_cast<SwapFunction>(pTrampoline);
    ASSERT_EQ(MH_EnableHook(pTarget), MH_OK);
    g_uSwaps = 0;
    for (u32 i = 0; i < 1000; ++i) EXPECT_TRUE(SwapBuffers(window.m_hDc));
    EXPECT_TRUE(platform::ImportedSwapBuffers(window.m_hDc));
    EXPECT_EQ(g_uSwaps, 1001u);
    EXPECT_EQ(MH_RemoveHook(pTarget), MH_OK);
    EXPECT_TRUE(SwapBuffers(window.m_hDc));
    EXPECT_EQ(g_uSwaps, 1001u);
    EXPECT_EQ(MH_Uninitialize(), MH_OK);
}

TEST(Surface, CurrentContextAndWindowAreSeen) {
    EXPECT_EQ(platform::CurrentContext(), nullptr);
    GlWindow window;
    if (!window.m_hContext) GTEST_SKIP() << "no display";
    EXPECT_EQ(platform::CurrentSurface(), window.m_hDc);
    EXPECT_EQ(platform::CurrentContext(), window.m_hContext);
    EXPECT_EQ(platform::WindowFromSurface(window.m_hDc), window.m_hWindow);
    EXPECT_GT(platform::PixelFormat(window.m_hDc), 0);
    u32 uWidth = 0, uHeight = 0;
    ASSERT_TRUE(platform::ClientSize(window.m_hWindow, &uWidth, &uHeight));
    EXPECT_EQ(uWidth, 64u);
    EXPECT_EQ(uHeight, 48u);
    SetWindowPos(window.m_hWindow, nullptr, 0, 0, 320, 200, SWP_NOZORDER | SWP_NOACTIVATE);
    ASSERT_TRUE(platform::ClientSize(window.m_hWindow, &uWidth, &uHeight));
    EXPECT_EQ(uWidth, 320u);
    EXPECT_EQ(uHeight, 200u);
}

TEST(Surface, SizeOfNoWindowLeavesTheOutputsUntouched) {
    u32 uWidth = 11, uHeight = 22;
    EXPECT_FALSE(platform::ClientSize(nullptr, &uWidth, &uHeight));
    EXPECT_EQ(uWidth, 11u);
    EXPECT_EQ(uHeight, 22u);
}

TEST(Surface, TheDesktopIsThatOfTheScreen) {
    if (!GetSystemMetrics(SM_CXSCREEN)) GTEST_SKIP() << "no display";
    u32 uWidth = 0, uHeight = 0;
    ASSERT_TRUE(platform::DesktopSize(&uWidth, &uHeight));
    EXPECT_EQ(uWidth, static_cast<u32>(GetSystemMetrics(SM_CXSCREEN)));
    EXPECT_EQ(uHeight, static_cast<u32>(GetSystemMetrics(SM_CYSCREEN)));
}

TEST(Surface, GlewLoadsTheEntryPointsOfTheContext) {
    GlWindow window;
    if (!window.m_hContext) GTEST_SKIP() << "no display";
    EXPECT_TRUE(platform::InitGlew());
    EXPECT_NE(glGenVertexArrays, nullptr);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}
