#include "draw/own_context.h"
#include "entry/attach.h"
#include "entry/exports.h"
#include "entry/hooking.h"
#include "frame/api_claim.h"
#include "frame/frame_driver.h"
#include "frame/real_swap.h"
#include "platform/foreign_overlays.h"
#include "platform/last_error.h"
#include "platform/process.h"
#include "tests/support/headless/shared_fixture.h"
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

using namespace platform::headless;

class Hooking : public SharedTest {
  protected:
    void SetUp() override {
        SharedTest::SetUp();
        SetClock(0); // sleeps return at once and are counted
        SetThreadMode(ThreadMode::Held);
    }
    static void Attach() {
        OnEntry();
        OnProcessAttach(nullptr);
    }
    static long Count(const std::string& strLine) {
        return std::count(Lines().begin(), Lines().end(), strLine);
    }
};

TEST_F(Hooking, EntryRegistersBothMessages) {
    OnEntry();
    EXPECT_EQ(Segment().uMsgFromGWexe, platform::RegisterMessage("ZARN_ORVIN_OSD_WM_MSG_FROM_GWEXE_GWDLL"));
    EXPECT_EQ(Segment().uMsgUnhookThread, platform::RegisterMessage("Unhook Thread ID data From GWDll_GL"));
    InitialSharedSegmentData_GL();
    OnEntry(); // the next attach of any thread brings the ids back
    EXPECT_NE(Segment().uMsgFromGWexe, 0u);
}

TEST_F(Hooking, AttachRegistersAndLaysTheDetour) {
    SetProcessPath("/Some/HOST.exe");
    Attach();
    EXPECT_EQ(Segment().bSegmentReady, 1);
    EXPECT_EQ(CommandSlot(0).uProcessId, c_uPid);
    EXPECT_EQ(StatusSlot(0).uThreadId, c_uTid);
    EXPECT_STREQ(g_szProcessPath, "/some/host.exe");
    EXPECT_EQ(LastSpinCount(), 1024u);
    EXPECT_TRUE(g_bHooked);
    EXPECT_EQ(g_pHookTarget, pOrg_GL_wglSwapBuffers);
    EXPECT_NE(g_pTrampoline, nullptr);
    EXPECT_TRUE(Logged("[TrelisDebug] Hook_graph: start"));
    EXPECT_TRUE(Logged("[TrelisDebug] CMiniHook(): MH_Initialize() SUCCESS"));
    EXPECT_TRUE(Logged("[TrelisDebug] GetAllGlFuncs: HookFunctions GetProcAddress Success!"));
    EXPECT_EQ(StartedThreads(), 0u);
    for (const HookRecord& st : HookCalls()) {
        if (st.m_eCall != HookCall::Create) continue;
        EXPECT_EQ(st.m_pDetour, reinterpret_cast<void*>(&GL_wglSwapBuffers));
    }
}

TEST_F(Hooking, TheEndOfTheOverlaysContextIsNoticedWhileTheDetourStands) {
    g_fnTakeContext();
    platform::headless::DestroyContext(platform::CurrentContext());
    EXPECT_FALSE(g_fnIsContextGone()) << "nobody watches yet";
    Attach();
    platform::headless::DestroyContext(&g_bHooked);
    EXPECT_FALSE(g_fnIsContextGone()) << "another one";
    platform::headless::DestroyContext(platform::CurrentContext());
    EXPECT_TRUE(g_fnIsContextGone());
    EXPECT_FALSE(g_fnMayDeleteNames());
    g_fnTakeContext();
    EXPECT_TRUE(g_fnMayDeleteNames());
    UnHook_openGL(0);
    platform::headless::DestroyContext(platform::CurrentContext());
    EXPECT_FALSE(g_fnIsContextGone());
    g_fnLeaveContext();
}

TEST_F(Hooking, ExcludedPathIsAdmittedLikeAnyOther) {
    SetProcessPath("C:\\Windows\\NOTEPAD.exe");
    Attach();
    EXPECT_FALSE(g_bProcessExcluded);
    EXPECT_EQ(CommandSlot(0).uProcessId, c_uPid);
    EXPECT_TRUE(g_bHooked);
}

TEST_F(Hooking, ExcludedFlagStopsAttachAndDetach) {
    g_bProcessExcluded = true;
    OnProcessAttach(nullptr);
    EXPECT_EQ(CommandSlot(0).uProcessId, 0u);
    EXPECT_FALSE(g_bHooked);
    OnProcessDetach();
    EXPECT_EQ(LiveCriticalSections(), 0u);
}

TEST_F(Hooking, ProcessEndGivesRecordsAndClaimBackAndLeavesAllElseAsItStands) {
    Attach();
    g_hHookGetMSGOfGL = reinterpret_cast<void*>(0x1234);
    g_bCheckApiMapping = true;
    GL_wglSwapBuffers(reinterpret_cast<void*>(0x1000));
    SetMissingProc("*"); // a retry thread that would be killed
    g_hThreadToTryHookGLAgain = reinterpret_cast<void*>(0x77);
    OnProcessEnd();
    EXPECT_EQ(CommandSlot(0).uThreadId, 0u);
    EXPECT_EQ(StatusSlot(0).uThreadId, 0u);
    EXPECT_EQ(OpenMappingHandles(), 0u);
    EXPECT_EQ(OpenViews(), 1u); // a swap may be writing through it
    EXPECT_EQ(KilledThreads(), 0u);
    EXPECT_EQ(HookCallCount(HookCall::Remove), 0u);
    EXPECT_EQ(HookCallCount(HookCall::Uninitialize), 0u);
    EXPECT_TRUE(UnhookedHooks().empty());
    EXPECT_EQ(LiveCriticalSections(), 1u);
    g_hThreadToTryHookGLAgain = nullptr;
}

TEST_F(Hooking, SwapAfterProcessEndPassesStraightThrough) {
    Attach();
    OnProcessEnd();
    g_bCheckApiMapping = true;
    GL_wglSwapBuffers(reinterpret_cast<void*>(0x1000));
    EXPECT_TRUE(g_bCheckApiMapping);
    EXPECT_EQ(OpenMappingHandles(), 0u);
}

TEST_F(Hooking, PathIsCutAtItsField) {
    SetProcessPath(std::string(1000, 'A').c_str());
    Attach();
    EXPECT_EQ(std::string(g_szProcessPath), std::string(259, 'a'));
}

TEST_F(Hooking, FullTableDoesNotStopTheDetour) {
    Segment().bSegmentReady = 1;
    for (u32 u = 1; u <= 100; ++u) RegisterProcess(1000 + u, 5000 + u);
    Attach();
    EXPECT_TRUE(g_bHooked);
    u8 bChanged = 0;
    EXPECT_FALSE(ReadCommandRecord(c_uPid, c_uTid, 1, &bChanged, nullptr));
}

TEST_F(Hooking, ForeignOverlayDelaysTheDetourByFifteenSeconds) {
    AddLoadedModule("STEAM_API64.DLL");
    Attach();
    EXPECT_FALSE(g_bHooked);
    EXPECT_TRUE(Logged("[TrelisDebug] Hook_graph: g_hThread_DelayHook is NULL"));
    ASSERT_EQ(HeldThreads(), 1u);
    ASSERT_TRUE(RunHeldThread());
    EXPECT_EQ(SleptMilliseconds(), 15000u);
    EXPECT_TRUE(g_bHooked);
    EXPECT_NE(g_hThread_DelayHook.load(), nullptr);
}

TEST_F(Hooking, EveryForeignOverlayDelays) {
    for (u32 u = 0; u < std::size(g_aszForeignOverlays); ++u) {
        ClearLoadedModules();
        AddLoadedModule(g_aszForeignOverlays[u]);
        g_hThread_DelayHook = nullptr;
        EXPECT_EQ(Hook_graph(), -1) << g_aszForeignOverlays[u];
        EXPECT_FALSE(g_bHooked);
    }
}

TEST_F(Hooking, DelayThreadEndsWhenDisabled) {
    AddLoadedModule("IGO64.dll");
    Attach();
    Segment().bGlobalEnable = 0;
    RunHeldThread();
    EXPECT_FALSE(g_bHooked);
}

TEST_F(Hooking, DelayThreadSurvivesDeInitAndHooksAgain) {
    AddLoadedModule("IGO64.dll");
    Attach();
    deInit_GWDll_GL(1);
    EXPECT_EQ(KilledThreads(), 0u);
    EXPECT_EQ(g_pMiniHook.load(), nullptr);
    ASSERT_TRUE(RunHeldThread());
    EXPECT_TRUE(g_bHooked);
}

TEST_F(Hooking, AllForeignOverlaysAreSoughtInOneWalk) {
    Attach();
    EXPECT_EQ(ModuleWalks(), 1u);
}

TEST_F(Hooking, RetryThreadThatIsJustBeingStartedIsNotTakenForAThread) {
    SetMissingProc("*");
    OnEntry();
    std::thread clEnding;
    std::atomic<bool> bOver{false};
    SetStartStep([&] {
        clEnding = std::thread([&] {
            UnHook_graph_GL(0);
            bOver = true;
        });
        // Room for the other thread to get ahead of the start; behind the lock it can't.
        for (u32 u = 0; u < 20 && !bOver; ++u) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    });
    OnProcessAttach(nullptr);
    clEnding.join();
    EXPECT_EQ(KilledStrangers(), 0u);
    EXPECT_EQ(KilledThreads(), 1u);
    EXPECT_EQ(g_hThreadToTryHookGLAgain.load(), nullptr);
}

TEST_F(Hooking, CallbackKeepsTheLastError) {
    HookMessage stMessage;
    platform::SetLastErrorOfThread(1234);
    SetNextHookError(87);
    Hook_CB_ProcGetMSGOfGL(0, 1, reinterpret_cast<std::intptr_t>(&stMessage));
    EXPECT_EQ(platform::LastError(), 1234u);
}

TEST_F(Hooking, DelayIsStartedOnce) {
    AddLoadedModule("IGO64.dll");
    EXPECT_EQ(Hook_graph(), -1);
    EXPECT_EQ(Hook_graph(), 0); // the handle is set now: nothing delays any more
    EXPECT_EQ(StartedThreads(), 1u);
}

TEST_F(Hooking, MissingGlFunctionGivesMinusThreeAndTenRetries) {
    SetMissingProc("glGetError");
    Attach();
    EXPECT_FALSE(g_bHooked);
    EXPECT_EQ(Hook_openGL(), -3);
    EXPECT_TRUE(Logged("[TrelisDebug] GetAllGlFuncs: HookFunctions GetProcAddress FAIL!"));
    EXPECT_TRUE(Logged("[TrelisDebug] Hook_graph: g_hThreadToTryHookGLAgain is NULL"));
    ASSERT_EQ(HeldThreads(), 1u);
    RunHeldThread();
    EXPECT_EQ(SleepCalls(), 10u);
    EXPECT_EQ(SleptMilliseconds(), 500u);
    EXPECT_FALSE(g_bHooked);
    EXPECT_EQ(StartedThreads(), 1u); // the handle stays set, so no second start
    EXPECT_EQ(Hook_graph(), -1);
    EXPECT_EQ(StartedThreads(), 1u);
    EXPECT_EQ(Count("[TrelisDebug] HookGraph: ToTryHookGLAgain_ThreadProc - cnt=9, iret=-1"), 1);
}

TEST_F(Hooking, RetrySucceedsOnceTheFunctionsAppear) {
    SetMissingProc("*");
    Attach();
    SetMissingProc(nullptr);
    RunHeldThread();
    EXPECT_TRUE(g_bHooked);
    EXPECT_EQ(SleepCalls(), 1u);
    EXPECT_TRUE(Logged("[TrelisDebug] HookGraph: ToTryHookGLAgain_ThreadProc - cnt=0"));
    EXPECT_TRUE(Logged("[TrelisDebug] HookGraph: ToTryHookGLAgain_ThreadProc - cnt=0, iret=0"));
    EXPECT_TRUE(Logged("[TrelisDebug] HookGraph: ToTryHookGLAgain_ThreadProc - cnt=0 => sucess"));
}

TEST_F(Hooking, RetryEndsWhenDisabled) {
    SetMissingProc("*");
    Attach();
    Segment().bGlobalEnable = 0;
    RunHeldThread();
    EXPECT_EQ(SleepCalls(), 1u);
}

TEST_F(Hooking, RetryOnItsOwnThreadEndsAfterTenTries) {
    SetThreadMode(ThreadMode::Real);
    SetMissingProc("*");
    Attach();
    JoinThreads();
    EXPECT_EQ(StartedThreads(), 1u);
    EXPECT_EQ(SleepCalls(), 10u);
    EXPECT_FALSE(g_bHooked);
}

TEST_F(Hooking, KilledRetryThreadLaysNothing) {
    SetMissingProc("*");
    Attach();
    EXPECT_NE(g_hThreadToTryHookGLAgain.load(), nullptr);
    deInit_GWDll_GL(0);
    EXPECT_EQ(KilledThreads(), 1u);
    EXPECT_EQ(g_hThreadToTryHookGLAgain.load(), nullptr);
    SetMissingProc(nullptr);
    RunHeldThread();
    EXPECT_FALSE(g_bHooked);
}

TEST_F(Hooking, UnhookWhileTheRetryThreadRunsManyTimes) {
    SetThreadMode(ThreadMode::Real);
    for (u32 u = 0; u < 200; ++u) {
        SetMissingProc("glEnd");
        Attach();
        OnProcessDetach();
        JoinThreads();
        EXPECT_FALSE(g_bHooked);
        EXPECT_EQ(g_pMiniHook.load(), nullptr);
        g_hThreadToTryHookGLAgain = nullptr;
    }
    EXPECT_EQ(LiveCriticalSections(), 0u);
}

TEST_F(Hooking, ThreadThatCannotStartLeavesTheProcessWithoutDetour) {
    SetThreadMode(ThreadMode::Refused);
    SetMissingProc("*");
    Attach();
    EXPECT_EQ(g_hThreadToTryHookGLAgain.load(), nullptr);
    OnProcessDetach();
}

TEST_F(Hooking, HookResults) {
    EXPECT_EQ(Hook_openGL(), -1);
    EXPECT_EQ(Hook_graph(), 0);
    EXPECT_EQ(Hook_openGL(), 1);
    EXPECT_EQ(Hook_graph(), 1);
    EXPECT_EQ(HookCallCount(HookCall::Create), 1u);
}

TEST_F(Hooking, OpenGlIsLoadedWhereItIsNot) {
    SetGlModulePresent(false);
    EXPECT_EQ(Hook_graph(), 0);
    EXPECT_EQ(LoadModuleCalls(), 1u);
}

TEST_F(Hooking, FailedLoadShowsAsMissingFunctions) {
    SetGlModulePresent(false);
    SetLoadModuleSucceeds(false);
    EXPECT_EQ(Hook_graph(), -1);
    EXPECT_EQ(Hook_openGL(), -3);
}

TEST_F(Hooking, AllFortyFourFunctionsAreAsked) {
    EXPECT_EQ(Hook_graph(), 0);
    const std::vector<std::string> vecAsked = AskedProcs();
    ASSERT_EQ(vecAsked.size(), 44u);
    EXPECT_EQ(vecAsked.front(), "wglSwapBuffers");
    EXPECT_EQ(vecAsked.back(), "glGetError");
    EXPECT_EQ(HookCallCount(HookCall::Create), 1u);
}

TEST_F(Hooking, EngineFailures) {
    SetHookStatus(HookCall::Create, MH_ERROR_MEMORY_ALLOC);
    Hook_graph();
    EXPECT_EQ(Hook_openGL(), -9);
    EXPECT_EQ(g_pHookTarget, nullptr);
    EXPECT_TRUE(Logged("[TrelisDebug] HookOpenGL: Hook_openGL - CreateHook pOrg_GL_wglSwapBuffers FAIL"));
    SetHookStatus(HookCall::Create, MH_OK);
    SetHookStatus(HookCall::Enable, MH_ERROR_MEMORY_PROTECT);
    EXPECT_EQ(Hook_openGL(), -9);
    EXPECT_EQ(g_pHookTarget, nullptr);
    EXPECT_TRUE(Logged("[TrelisDebug] HookOpenGL: Hook_openGL - EnableHook pOrg_GL_wglSwapBuffers FAIL"));
    SetHookStatus(HookCall::Create, MH_ERROR_ALREADY_CREATED);
    SetHookStatus(HookCall::Enable, MH_ERROR_ENABLED);
    EXPECT_EQ(Hook_openGL(), 0);
}

TEST_F(Hooking, EngineThatDoesNotInitialiseIsLoggedOnly) {
    SetHookStatus(HookCall::Initialize, MH_ERROR_MEMORY_ALLOC);
    EXPECT_EQ(Hook_graph(), -1);
    EXPECT_TRUE(Logged("[TrelisDebug] CMiniHook(): MH_Initialize() FAIL"));
}

TEST_F(Hooking, DeInitTwice) {
    Attach();
    EXPECT_EQ(deInit_GWDll_GL(3), -1); // no message hook to remove
    EXPECT_TRUE(Logged("HookOpenGL: UnHook_openGL() deInitCase' 3"));
    EXPECT_FALSE(g_bHooked);
    EXPECT_EQ(g_hOpenGL, nullptr);
    EXPECT_EQ(CommandSlot(0).uThreadId, 0u);
    EXPECT_EQ(HookCallCount(HookCall::Remove), 1u);
    EXPECT_EQ(UnHook_openGL(3), -1);
    EXPECT_EQ(deInit_GWDll_GL(3), -1);
    EXPECT_EQ(HookCallCount(HookCall::Remove), 1u);
    EXPECT_EQ(HookCallCount(HookCall::Uninitialize), 1u);
}

TEST_F(Hooking, LayTwiceUndoTwice) {
    for (u32 u = 0; u < 2; ++u) {
        EXPECT_EQ(Hook_graph(), 0);
        EXPECT_EQ(Hook_graph(), 1);
        UnHook_graph_GL(0);
        UnHook_graph_GL(0);
        EXPECT_FALSE(g_bHooked);
    }
    EXPECT_EQ(HookCallCount(HookCall::Initialize), 2u);
    EXPECT_EQ(HookCallCount(HookCall::Uninitialize), 2u);
}

TEST_F(Hooking, CallbackPassesANullHandleUntilMessage1280) {
    SetNextHookResult(77);
    HookMessage stMessage;
    stMessage.m_uMessage = 15;
    const auto lMessage = reinterpret_cast<std::intptr_t>(&stMessage);
    EXPECT_EQ(Hook_CB_ProcGetMSGOfGL(0, 1, lMessage), 77);
    EXPECT_EQ(NextHookCalls().back().m_hHook, nullptr);
    stMessage.m_uMessage = 1280;
    stMessage.m_lParam = 0x1234;
    EXPECT_EQ(Hook_CB_ProcGetMSGOfGL(0, 1, lMessage), 77);
    EXPECT_EQ(NextHookCalls().back().m_hHook, reinterpret_cast<void*>(0x1234));
    EXPECT_EQ(NextHookCalls().back().m_wParam, 1u);
    EXPECT_EQ(NextHookCalls().back().m_lParam, lMessage);
}

TEST_F(Hooking, DetachLiftsTheMessageHookAndTellsAll) {
    Attach();
    g_hHookGetMSGOfGL = reinterpret_cast<void*>(0x1234);
    EXPECT_EQ(deInit_GWDll_GL(1), 0);
    ASSERT_EQ(UnhookedHooks().size(), 1u);
    ASSERT_EQ(BroadcastMessages().size(), 1u);
    EXPECT_EQ(BroadcastMessages()[0].first, Segment().uMsgUnhookThread);
    EXPECT_EQ(BroadcastMessages()[0].second, c_uTid);
    EXPECT_EQ(g_hHookGetMSGOfGL, nullptr);
    EXPECT_TRUE(
        Logged("[TrelisDebug] Uninstall_HookFunc_GetMSGOfGL: UnhookWindowsHookEx return success, tid = "
               "0x10f7, g_hHookGetMSGOfGL = 0x1234 \n"));
}

TEST_F(Hooking, FailedUnhookClearsTheHandle) {
    g_hHookGetMSGOfGL = reinterpret_cast<void*>(0x1234);
    SetUnhookResult(false);
    EXPECT_EQ(Uninstall_HookFunc_GetMSGOfGL(), -2);
    EXPECT_EQ(g_hHookGetMSGOfGL, nullptr);
    EXPECT_TRUE(BroadcastMessages().empty());
    EXPECT_EQ(Uninstall_HookFunc_GetMSGOfGL(), -1);
}

TEST_F(Hooking, UnhookClosesTheApiMapping) {
    Attach();
    g_bCheckApiMapping = true;
    GL_wglSwapBuffers(reinterpret_cast<void*>(0x1000));
    EXPECT_EQ(OpenViews(), 1u);
    UnHook_openGL(0);
    EXPECT_EQ(OpenViews(), 0u);
    EXPECT_EQ(OpenMappingHandles(), 0u);
}
