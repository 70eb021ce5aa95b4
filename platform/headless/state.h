#pragma once
// The one state behind the headless services and their test controls.
#include "platform/contexts.h"
#include "platform/headless/test_controls.h"
#include "platform/settings_tree.h"
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace platform::headless {

struct ThreadRecord {
    ThreadFunction m_fnThread = nullptr;
    void* m_pArgument = nullptr;
    std::thread m_thread;
    bool m_bStop = false;
};

struct Block {
    std::vector<u8> m_vecBytes;
};

/// Asked for the real current surface; filled by the off-screen context maker where that is built.
struct RealSurfaceSource {
    SurfaceHandle (*m_fnSurface)() = nullptr;
    ContextHandle (*m_fnContext)() = nullptr;
    bool (*m_fnSize)(SurfaceHandle hSurface, u32* puWidth, u32* puHeight) = nullptr;
};
extern RealSurfaceSource g_stRealSurface;

struct State {
    std::mutex m_lock;

    u32 m_uPid = 4242;
    u32 m_uTid = 4343;
    std::map<u32, u32> m_mapStamps; ///< process id to stamp, 0: gone
    std::string m_strPath = "/headless/host.exe";

    std::vector<std::string> m_vecModules;
    std::atomic<u32> m_uModuleWalks{0};
    bool m_bGlModule = true;
    bool m_bLoadSucceeds = true;
    u32 m_uLoadCalls = 0;
    std::vector<std::string> m_vecMissingProcs;
    std::vector<std::string> m_vecAskedProcs;

    MH_STATUS m_aeHookStatus[6] = {MH_OK, MH_OK, MH_OK, MH_OK, MH_OK, MH_OK};
    std::vector<HookRecord> m_vecHookCalls;
    bool m_bTrampoline = true;
    bool m_bEngineReady = false;
    std::map<void*, bool> m_mapHooks; // target -> enabled

    u32 m_uRealSwaps = 0;
    u32 m_uImportedSwaps = 0;
    u32 m_uDeletes = 0;
    void* m_hLastSwap = nullptr;
    void* m_hLastDelete = nullptr;
    i32 m_iSwapResult = 1;
    i32 m_iDeleteResult = 1;
    void (*m_fnSwap)(void*) = nullptr;

    std::intptr_t m_iNextHookResult = 0;
    u32 m_uNextHookError = 0;
    std::vector<NextHookRecord> m_vecNextHooks;
    bool m_bUnhookResult = true;
    std::vector<void*> m_vecUnhooked;
    std::vector<std::pair<u32, std::uintptr_t>> m_vecBroadcasts;

    bool m_bVirtualClock = false;
    i64 m_iClock = 0;
    i64 m_iClockStep = 0;
    u32 m_uJumpIn = 0; ///< readings until the jump
    i64 m_iClockJump = 0;
    i64 m_iFrequency = 1000000000;
    u64 m_uClockReads = 0;
    stLocalTime m_stLocalTime = {2024, 2, 29, 13, 5, 9};
    u32 m_uLocalTimeReads = 0;
    i64 m_iUnixMilliseconds = 1709211909123;
    u32 m_uSleeps = 0;
    u64 m_uSlept = 0;

    std::map<std::string, std::shared_ptr<Block>> m_mapBlocks;
    std::map<void*, std::shared_ptr<Block>> m_mapHandles;
    std::uintptr_t m_uNextHandle = 0x10000;
    u32 m_uViews = 0;
    std::map<void*, std::shared_ptr<Block>> m_mapWatched;
    u32 m_uCreates = 0;
    u32 m_uWatchedReads = 0;
    bool m_bWatchedReadIsCall = false;
    bool m_bCreateFails = false;
    bool m_bOpenFails = false;
    bool m_bViewFails = false;

    bool m_bSurfaceSet = false;
    bool m_bContextSet = false;
    bool m_bWindowSet = false;
    bool m_bSizeSet = false;
    bool m_bSizeFails = false;
    SurfaceHandle m_hSurface = reinterpret_cast<void*>(0x1000);
    ContextHandle m_hContext = reinterpret_cast<void*>(0x2000);
    ContextGoneFunction m_fnContextGone = nullptr;
    WindowHandle m_hWindow = reinterpret_cast<void*>(0x3000);
    u32 m_uWidth = 1280;
    u32 m_uHeight = 720;
    i32 m_iPixelFormat = 1;
    bool m_bDesktopSizeFails = true;
    u32 m_uDesktopWidth = 0;
    u32 m_uDesktopHeight = 0;
    u32 m_uSizeCalls = 0;

    ThreadMode m_eThreadMode = ThreadMode::Real;
    std::vector<std::shared_ptr<ThreadRecord>> m_vecThreads;
    std::vector<std::shared_ptr<ThreadRecord>> m_vecHeld;
    u32 m_uStarted = 0;
    u32 m_uKilled = 0;
    u32 m_uKilledStrangers = 0;
    std::function<void()> m_fnStartStep;
    u32 m_uSpinCount = 0;
    bool m_bGlewFails = false;
    u32 m_uGlewCalls = 0;
    void (*m_fnAfterGlew)() = nullptr;
    u32 m_uSections = 0;

    std::vector<std::string> m_vecLog;
    std::vector<std::pair<std::u16string, std::string>> m_vecBoxes;
    std::u16string m_wstrFolder = u"/headless/data";
    std::vector<std::string> m_vecOpened;

    std::shared_ptr<CSettingsTree> m_pSettings = std::make_shared<CSettingsTree>();
    std::vector<std::u16string> m_vecAskedKeys;
    u32 m_uOpenKeys = 0;
};

/// The sleep that g_fnSleepMilliseconds starts with.
extern void (*const g_fnDefaultSleep)(u32 uMilliseconds) noexcept;

/// The state; made on first use and never destroyed, so that late threads still find it.
State& Get();

} // namespace platform::headless
