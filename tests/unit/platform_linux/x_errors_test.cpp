// Errors of the X server about a window that is gone, on a real server.
#include "platform/linux/x_errors.h"

#include "tests/unit/platform_linux/child.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

constexpr unsigned long g_uGoneWindow = 0x1FFFFFE, g_uOtherWindow = 0x1FFFFFD;

/// The few functions of the X library that the tests need, taken at run time as the library under test does.
struct XLibrary {
    void* (*XOpenDisplay)(const char*) = nullptr;
    int (*XGetGeometry)(void*, unsigned long, unsigned long*, int*, int*, unsigned*, unsigned*, unsigned*,
                        unsigned*) = nullptr;
    int (*XSetErrorHandler)(int (*)(void*, void*)) = nullptr;
    void* m_hDisplay = nullptr;

    bool Open() {
        void* const hX11 = dlopen("libX11.so.6", RTLD_NOW | RTLD_GLOBAL);
        if (!hX11) return false;
        XOpenDisplay = reinterpret_cast<decltype(XOpenDisplay)>(dlsym(hX11, "XOpenDisplay"));
        XGetGeometry = reinterpret_cast<decltype(XGetGeometry)>(dlsym(hX11, "XGetGeometry"));
        XSetErrorHandler = reinterpret_cast<decltype(XSetErrorHandler)>(dlsym(hX11, "XSetErrorHandler"));
        m_hDisplay = XOpenDisplay ? XOpenDisplay(nullptr) : nullptr;
        return m_hDisplay != nullptr;
    }
    void Ask(unsigned long uWindow) const {
        unsigned long uRoot;
        int iX, iY;
        unsigned uW, uH, uBorder, uDepth;
        XGetGeometry(m_hDisplay, uWindow, &uRoot, &iX, &iY, &uW, &uH, &uBorder, &uDepth);
    }
};

int g_iHostErrors = 0;
int CountHostError(void*, void*) { return ++g_iHostErrors; }

/// Exit codes of the children: 0 as wanted, 9 no display, others say which step went wrong.
constexpr int g_iNoDisplay = 9;

} // namespace

TEST(XErrorTrap, SwallowsErrorsAboutItsWindowAndLeavesTheHostsHandlerInPlace) {
    const int iCode = RunInChild([] {
        XLibrary x;
        if (!x.Open()) return g_iNoDisplay;
        x.XSetErrorHandler(CountHostError);
        {
            const platform::host::XErrorTrap trap(x.m_hDisplay, g_uGoneWindow);
            x.Ask(g_uGoneWindow); // without a trap and a handler this ends the program
            if (!trap.Failed() || g_iHostErrors) return 1;
        }
        x.Ask(g_uGoneWindow);
        return g_iHostErrors == 1 ? 0 : 2;
    });
    if (iCode == g_iNoDisplay) GTEST_SKIP() << "no X server";
    EXPECT_EQ(iCode, 0);
}

TEST(XErrorTrap, PassesErrorsAboutOtherWindowsToTheHost) {
    const int iCode = RunInChild([] {
        XLibrary x;
        if (!x.Open()) return g_iNoDisplay;
        x.XSetErrorHandler(CountHostError);
        const platform::host::XErrorTrap trap(x.m_hDisplay, g_uGoneWindow);
        x.Ask(g_uOtherWindow);
        return !trap.Failed() && g_iHostErrors == 1 ? 0 : 1;
    });
    if (iCode == g_iNoDisplay) GTEST_SKIP() << "no X server";
    EXPECT_EQ(iCode, 0);
}
