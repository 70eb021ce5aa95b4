// The detour over wglDeleteContext, and threads on their way through it while the library goes.
#include "platform/contexts.h"
#include "platform/minhook.h"
#include "platform/process.h"
#include "tests/unit/platform_win32/image_file.h"
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace {

std::atomic<void*> g_hGone{nullptr};
std::atomic<bool> g_bStay{false}, g_bInside{false};

void Stay(platform::ContextHandle hContext) {
    g_hGone = hContext;
    SetLastError(1);
    g_bInside = true;
    while (g_bStay) Sleep(1);
    g_bInside = false;
}

using DeleteContext = BOOL(WINAPI*)(HGLRC);

/// By look-up: no detour is laid over an import.
DeleteContext Function() {
    return reinterpret_cast<DeleteContext>(
        platform::FindProc(platform::LoadModule("opengl32.dll"), "wglDeleteContext"));
}

const HGLRC kNoContext = reinterpret_cast<HGLRC>(0x7531);

} // namespace

TEST(Contexts, TheEndOfAContextIsToldOfUntilNobodyListens) {
    const DeleteContext fnDelete = Function();
    ASSERT_NE(fnDelete, nullptr);
    SetLastError(77);
    const BOOL bBare = fnDelete(kNoContext);
    const DWORD uBareError = GetLastError();
    ASSERT_EQ(MH_Initialize(), MH_OK);
    for (u32 i = 0; i < 3; ++i) {
        platform::WatchContexts(&Stay);
        g_hGone = nullptr;
        SetLastError(77);
        EXPECT_EQ(fnDelete(kNoContext), bBare);
        EXPECT_EQ(GetLastError(), uBareError);
        EXPECT_EQ(g_hGone.exchange(nullptr), kNoContext);
        fnDelete(nullptr);
        EXPECT_EQ(g_hGone, nullptr) << "no context was named";
        platform::WatchContexts(nullptr);
        fnDelete(kNoContext);
        EXPECT_EQ(g_hGone, nullptr);
    }
    MH_Uninitialize();
}

TEST(Contexts, TheWatchEndsWhenNobodyIsInsideAnyMore) {
    const DeleteContext fnDelete = Function();
    ASSERT_EQ(MH_Initialize(), MH_OK);
    platform::WatchContexts(&Stay);
    g_bStay = true;
    std::thread clDeleting([&] { fnDelete(kNoContext); });
    while (!g_bInside) Sleep(1);
    std::atomic<bool> bEnding{false}, bEnded{false};
    std::thread clEnding([&] {
        bEnding = true;
        platform::WatchContexts(nullptr);
        EXPECT_FALSE(g_bInside);
        bEnded = true;
    });
    while (!bEnding) Sleep(1);
    Sleep(50); // long enough for one that does not wait
    EXPECT_FALSE(bEnded);
    g_bStay = false;
    clEnding.join();
    clDeleting.join();
    MH_Uninitialize();
}

TEST(Contexts, TheLibraryMayGoWhileThreadsDeleteContexts) {
    const DeleteContext fnDelete = Function();
    std::atomic<bool> bStop{false};
    std::atomic<u32> uDeleted{0};
    std::thread listThreads[3];
    for (std::thread& clThread : listThreads)
        clThread = std::thread([&] {
            while (!bStop) fnDelete(kNoContext), ++uDeleted;
        });
    while (!uDeleted) Sleep(1);
    for (u32 i = 0; i < 15; ++i) {
        const HMODULE hLibrary = LoadLibraryA(LibraryPath().c_str());
        ASSERT_NE(hLibrary, nullptr);
        const u32 uBefore = uDeleted;
        while (uDeleted < uBefore + 10) Sleep(0);
        EXPECT_TRUE(FreeLibrary(hLibrary));
        ASSERT_EQ(GetModuleHandleA("ORVIN-OSD64-GL.dll"), nullptr);
    }
    bStop = true;
    for (std::thread& clThread : listThreads) clThread.join();
}
