// The driver's states as far as they need no GL context; the drawn frame is tested with a real one.
#include "draw/canvas.h"
#include "draw/own_context.h"
#include "frame/api_claim.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/real_swap.h"
#include "frame/release.h"
#include "shared/api_code.h"

#include "entry/hooking.h"
#include "frame/limiter.h"
#include "frame/update/statistics.h"
#include "platform/headless/test_controls.h"
#include "platform/last_error.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace headless = platform::headless;

static constexpr u32 g_uPid = 4242, g_uTid = 4343;
static constexpr const char* g_szMapping = "[RV5-OSD][PID:4242]";

static void* Handle(std::uintptr_t u) { return reinterpret_cast<void*>(u); }

class Driver : public ::testing::Test {
  protected:
    void SetUp() override {
        headless::ResetAll();
        headless::SetClock(1'000'000'000);
        ResetGlobals();
        RegisterProcess(g_uPid, g_uTid);
        Record().Command.uApiCode = g_uApiCodeUnseen;
        g_bHooked = true;
    }
    void TearDown() override {
        g_fnCloseApiMapping();
        ResetGlobals();
        headless::ResetAll();
    }
    static void ResetGlobals() {
        g_bHooked = false;
        g_pTrampoline = pOrg_GL_wglSwapBuffers = nullptr;
        g_bInitGL = g_bInitGLEW = false;
        g_iInitFailCount = g_uCallCount = g_uApiCode = 0;
        g_bPipelineIdle = true;
        g_hDC = g_hGLRC = hFocusWindow = nullptr;
        g_bCheckApiMapping = true;
        g_bOtherApiOwnsProcess = false;
        bQueryFrameTime = false;
        g_fFrameTimeMs = 0.0f;
        EnableFPSLimiter = 0;
        g_stLimiter = stLimiterState();
    }
    static stProcessRecord& Record() { return platform::SharedSegment()->StatusTable[0]; }
    static stProcessRecord& Mailbox() { return platform::SharedSegment()->CommandTable[0]; }
    static i32 Swap(void* hdc = Handle(0x1000)) { return GL_wglSwapBuffers(hdc); }
};

/// A mapping that another flavour made: 256 bytes that begin with its tag.
static void SeedTag(const char (&szTag)[4]) {
    char aBlock[256] = {};
    std::copy(std::begin(szTag), std::end(szTag), aBlock);
    headless::SeedMapping(g_szMapping, aBlock, sizeof aBlock);
}

TEST_F(Driver, WithoutAHookOnlyTheRealSwapRuns) {
    g_bHooked = false;
    Mailbox().bChanged = 1;
    headless::SetSwapResult(7);
    const u64 uReads = headless::ClockReads();
    EXPECT_EQ(Swap(), 7);
    EXPECT_EQ(headless::ImportedSwapCalls(), 1u);
    EXPECT_EQ(headless::LastSwapSurface(), Handle(0x1000));
    EXPECT_EQ(Mailbox().bChanged, 1);
    EXPECT_EQ(headless::ClockReads(), uReads);
    EXPECT_EQ(headless::CreateMappingCalls(), 0u);
    EXPECT_EQ(Record().Command.uApiCode, g_uApiCodeUnseen);
}

TEST_F(Driver, GlobalEnableOffPassesStraightThrough) {
    platform::SharedSegment()->bGlobalEnable = 0;
    EnableFPSLimiter = 1;
    Mailbox().bChanged = 1;
    const u64 uReads = headless::ClockReads();
    EXPECT_EQ(Swap(), 1);
    EXPECT_EQ(headless::ImportedSwapCalls(), 1u);
    EXPECT_EQ(headless::ClockReads(), uReads);
    EXPECT_FALSE(g_stLimiter.bLimiterStarted);
    EXPECT_EQ(g_uCallCount, 0u);
    EXPECT_EQ(Mailbox().bChanged, 1);
    EXPECT_TRUE(g_bCheckApiMapping);
}

static i32 TrampolineSwap(void*) { return 99; }

TEST_F(Driver, RealSwapGoesThroughTheTrampolineIfThereIsOne) {
    g_iInitFailCount = g_uInitFailForGood;
    g_pTrampoline = reinterpret_cast<void*>(&TrampolineSwap);
    EXPECT_EQ(Swap(), 99);
    EXPECT_EQ(headless::ImportedSwapCalls(), 0u);
}

static i32 PlainEntry(void* hdc) { return hdc == Handle(0x1000) ? 77 : 0; }

TEST_F(Driver, WithoutTrampolineTheLookedUpEntryIsCalled) {
    pOrg_GL_wglSwapBuffers = reinterpret_cast<void*>(&PlainEntry);
    EXPECT_EQ(Swap(), 77);
    EXPECT_EQ(headless::ImportedSwapCalls(), 0u);
}

TEST_F(Driver, WaitingCommandIsHandledAndItsFlagCleared) {
    g_iInitFailCount = g_uInitFailForGood;
    g_uApiCode = g_uApiCodeOpenGL;
    Mailbox().bChanged = 1;
    Mailbox().Command.bRelease = 1;
    Swap();
    EXPECT_EQ(Mailbox().bChanged, 0);
    EXPECT_EQ(Mailbox().Command.bRelease, 0);
    EXPECT_EQ(Record().Command.uApiCode, 0u);
}

TEST_F(Driver, CommandWithoutItsFlagIsLeftAlone) {
    g_iInitFailCount = g_uInitFailForGood;
    Mailbox().Command.bRelease = 1;
    Swap();
    EXPECT_EQ(Mailbox().Command.bRelease, 1);
}

TEST_F(Driver, ClaimsTheProcessForOpenGLOnce) {
    g_iInitFailCount = g_uInitFailForGood;
    Swap();
    u32 uBytes = 0;
    const u8* pBlock = headless::MappingContents(g_szMapping, &uBytes);
    ASSERT_NE(pBlock, nullptr);
    EXPECT_EQ(uBytes, 256u);
    EXPECT_EQ(std::memcmp(pBlock, "OGL", 4), 0);
    EXPECT_FALSE(g_bCheckApiMapping);
    Swap();
    EXPECT_EQ(headless::CreateMappingCalls(), 1u);
    EXPECT_EQ(headless::OpenMappingHandles(), 1u);
    EXPECT_EQ(headless::OpenViews(), 1u);
}

static u32 g_uErrorAtSwap = 0;

TEST_F(Driver, TheRealSwapFindsTheHostsLastErrorAndTheHostFindsTheRealSwaps) {
    SeedTag("OGL"); // to open it changes the last error
    headless::SetSwapCallback([](void*) {
        g_uErrorAtSwap = platform::LastError();
        platform::SetLastErrorOfThread(99);
    });
    platform::SetLastErrorOfThread(77);
    Swap();
    EXPECT_EQ(headless::CreateMappingCalls(), 1u);
    EXPECT_EQ(g_uErrorAtSwap, 77u);
    EXPECT_EQ(platform::LastError(), 99u);
}

TEST_F(Driver, ClosingTheMappingLeavesNothingOpen) {
    g_iInitFailCount = g_uInitFailForGood;
    Swap();
    g_fnCloseApiMapping();
    EXPECT_EQ(headless::OpenMappingHandles(), 0u);
    EXPECT_EQ(headless::OpenViews(), 0u);
    EXPECT_EQ(g_hApiMapping, nullptr);
    EXPECT_EQ(g_pApiView, nullptr);
}

TEST_F(Driver, MappingThatSaysD3DFirstStopsDrawingButNotReporting) {
    SeedTag("D3D");
    EnableFPSLimiter = 1;
    Swap();
    Swap();
    EXPECT_TRUE(g_bOtherApiOwnsProcess);
    EXPECT_EQ(g_uCallCount, 0u);
    EXPECT_EQ(g_iInitFailCount, 0u);
    EXPECT_TRUE(g_stLimiter.bLimiterStarted);
    EXPECT_EQ(Record().Command.uApiCode, 0u) << "reported in place of 9527";
    EXPECT_EQ(std::memcmp(headless::MappingContents(g_szMapping), "D3D", 4), 0);
    EXPECT_EQ(headless::ImportedSwapCalls(), 2u);
}

TEST_F(Driver, OwnedProcessStillTakesCommands) {
    SeedTag("D3D");
    Mailbox().bChanged = 1;
    Swap();
    EXPECT_EQ(Mailbox().bChanged, 0);
}

TEST_F(Driver, AnyOtherTagIsOverwritten) {
    SeedTag("VLK");
    Swap();
    EXPECT_FALSE(g_bOtherApiOwnsProcess);
    EXPECT_EQ(g_uCallCount, 1u);
    EXPECT_EQ(std::memcmp(headless::MappingContents(g_szMapping), "OGL", 4), 0);
}

TEST_F(Driver, FailedMappingChangesNothing) {
    headless::SetCreateMappingFails(true);
    Swap();
    EXPECT_EQ(g_hApiMapping, nullptr);
    EXPECT_FALSE(g_bCheckApiMapping);
    EXPECT_EQ(g_uCallCount, 1u) << "the overlay goes on to draw";
}

TEST_F(Driver, FailedViewClosesTheMapping) {
    headless::SetMapViewFails(true);
    Swap();
    EXPECT_EQ(g_hApiMapping, nullptr);
    EXPECT_EQ(g_pApiView, nullptr);
    EXPECT_EQ(headless::OpenMappingHandles(), 0u);
    EXPECT_EQ(g_uCallCount, 1u);
}

TEST_F(Driver, FiveFailuresKeepThePipelineOut) {
    g_iInitFailCount = 4;
    g_fnTavo_GL_PrewglSwapBuffers(Handle(0x1000));
    EXPECT_EQ(g_uCallCount, 1u);
    g_iInitFailCount = 5;
    g_fnTavo_GL_PrewglSwapBuffers(Handle(0x1000));
    EXPECT_EQ(g_uCallCount, 1u);
}

TEST_F(Driver, GivenUpStillLimitsAndReports) {
    g_iInitFailCount = g_uInitFailForGood;
    EnableFPSLimiter = 1;
    Swap();
    EXPECT_TRUE(g_stLimiter.bLimiterStarted);
    EXPECT_EQ(Record().Command.uApiCode, 0u);
}

TEST_F(Driver, ContextWithoutAVersionIsGivenUpForGoodAndNotTriedAgain) {
    Swap();
    EXPECT_EQ(g_iInitFailCount, g_uInitFailForGood);
    EXPECT_FALSE(g_bInitGLEW);
    EXPECT_TRUE(g_bPipelineIdle);
    EXPECT_EQ(g_uCallCount, 1u);
    g_fnTavo_GL_Release();
    EXPECT_EQ(g_iInitFailCount, g_uInitFailForGood) << "a release without resources does nothing";
    Swap();
    EXPECT_EQ(g_uCallCount, 1u);
}

TEST_F(Driver, BusyPipelineSkipsTheFrameAndStaysBusy) {
    g_bPipelineIdle = false;
    Swap();
    EXPECT_EQ(g_uCallCount, 0u);
    EXPECT_FALSE(g_bPipelineIdle);
    EXPECT_EQ(headless::ImportedSwapCalls(), 1u);
}

TEST_F(Driver, SwapThatComesWhileAnotherRunsThePipelineOnlySwaps) {
    g_bPipelineIdle = false;
    EnableFPSLimiter = 1;
    Mailbox().bChanged = 1;
    Mailbox().Command.bRelease = 1;
    EXPECT_EQ(Swap(), 1);
    EXPECT_EQ(Mailbox().bChanged, 1) << "the command waits for the one who has the turn";
    EXPECT_FALSE(g_stLimiter.bLimiterStarted);
    EXPECT_TRUE(g_bCheckApiMapping);
    EXPECT_EQ(Record().Command.uApiCode, g_uApiCodeUnseen);
    g_bPipelineIdle = true;
    Swap();
    EXPECT_EQ(Mailbox().bChanged, 0);
    EXPECT_TRUE(g_stLimiter.bLimiterStarted);
}

TEST_F(Driver, OneTurnAtATimeAndItIsGivenBack) {
    {
        const CPipelineTurn first;
        EXPECT_TRUE(first);
        const CPipelineTurn second;
        EXPECT_FALSE(second);
    }
    EXPECT_TRUE(g_bPipelineIdle) << "given back by the one who had it, and by nobody else";
    const CPipelineTurn third;
    EXPECT_TRUE(third);
}

TEST_F(Driver, NestedSwapInsideTheRealSwapRunsThrough) {
    static bool s_bNested;
    s_bNested = false;
    headless::SetSwapCallback([](void* hSurface) {
        if (s_bNested) return;
        s_bNested = true;
        GL_wglSwapBuffers(hSurface);
    });
    EXPECT_EQ(Swap(), 1);
    EXPECT_EQ(headless::ImportedSwapCalls(), 2u);
    EXPECT_TRUE(g_bPipelineIdle);
}

TEST_F(Driver, AnotherApiCodeLeavesTheFrameAlone) {
    g_uApiCode = 11;
    Swap();
    EXPECT_EQ(g_uCallCount, 1u);
    EXPECT_EQ(g_hDC, nullptr);
    EXPECT_EQ(Record().Command.uApiCode, 11u);
    EXPECT_TRUE(g_bPipelineIdle);
}

TEST_F(Driver, FirstSwapTakesDeviceContextWindowAndSize) {
    headless::SetCurrentSurface(Handle(0x5000));
    headless::SetCurrentContext(Handle(0x6000));
    headless::SetWindow(Handle(0x7000));
    headless::SetClientSize(1000, 500);
    Swap(Handle(0x1000));
    EXPECT_EQ(g_hDC, Handle(0x5000)) << "what is current, not what was given";
    EXPECT_EQ(g_hGLRC, Handle(0x6000));
    EXPECT_EQ(hFocusWindow, Handle(0x7000));
    EXPECT_EQ(g_uWidth, 1000u);
    EXPECT_EQ(g_uHeight, 500u);
    EXPECT_EQ(g_fAspect, 2.0f);
    EXPECT_TRUE(g_bNeedOnResize);
}

TEST_F(Driver, FailedSizeQueryChangesNothing) {
    g_fnStoreSize(800, 600);
    headless::SetClientSizeFails(true);
    Swap();
    EXPECT_EQ(g_uWidth, 800u);
    EXPECT_EQ(g_uHeight, 600u);
}

TEST_F(Driver, DeviceContextChangeReleasesAndLeavesTheFrameUndrawn) {
    g_hDC = Handle(0x1000);
    g_hGLRC = Handle(0x2000);
    g_bInitGL = g_bInitGLEW = true;
    g_bNeedOnResize = false;
    Swap(Handle(0x1111));
    EXPECT_EQ(g_hDC, nullptr);
    EXPECT_EQ(g_hGLRC, nullptr);
    EXPECT_FALSE(g_bInitGL);
    EXPECT_FALSE(g_bInitGLEW);
    EXPECT_TRUE(g_bNeedOnResize);
    EXPECT_EQ(hFocusWindow, nullptr) << "the frame was left before anything was asked";
}

TEST_F(Driver, AnotherContextOnTheSameDeviceContextReleasesAndLeavesTheFrameUndrawn) {
    g_hDC = Handle(0x1000);
    g_hGLRC = Handle(0x2000);
    headless::SetCurrentContext(Handle(0x2222));
    g_bInitGL = g_bInitGLEW = true;
    Swap(Handle(0x1000));
    EXPECT_FALSE(g_bInitGL);
    EXPECT_EQ(g_hDC, nullptr);
    EXPECT_EQ(g_hGLRC, nullptr);
    EXPECT_EQ(hFocusWindow, nullptr) << "the frame was left before anything was asked";
}

TEST_F(Driver, AnotherContextWithoutResourcesIsAskedForItsVersion) {
    g_hDC = Handle(0x1000);
    g_hGLRC = Handle(0x2000);
    headless::SetCurrentContext(Handle(0x2222));
    g_bInitGLEW = true;
    Swap(Handle(0x1000));
    EXPECT_FALSE(g_bInitGLEW);
    EXPECT_EQ(g_hGLRC, nullptr);
}

TEST_F(Driver, DeviceContextChangeWithoutResourcesKeepsGlewAndStillLeavesTheFrame) {
    g_hDC = Handle(0x1000);
    g_bInitGLEW = true;
    Swap(Handle(0x1111));
    EXPECT_EQ(g_hDC, nullptr);
    EXPECT_TRUE(g_bInitGLEW);
    EXPECT_EQ(hFocusWindow, nullptr);
}

TEST_F(Driver, ReleaseOfWhatWasBuiltResetsTheFailureCount) {
    g_bInitGL = g_bInitGLEW = true;
    g_iInitFailCount = 4;
    g_fnTavo_GL_Release();
    EXPECT_EQ(g_iInitFailCount, 0u);
    EXPECT_FALSE(g_bInitGL);
    EXPECT_FALSE(g_bInitGLEW);
}

TEST_F(Driver, FrameTimeIsReportedOnlyWhileItIsAskedFor) {
    g_iInitFailCount = g_uInitFailForGood;
    g_fFrameTimeMs = 16.67f;
    Swap();
    EXPECT_EQ(Record().Command.fFrameTime, 0.0f);
    EXPECT_FALSE(bQueryFrameTime);
    platform::SharedSegment()->bEnableQueryFrameTime = 1;
    Swap();
    EXPECT_EQ(Record().Command.fFrameTime, 16.67f);
    EXPECT_TRUE(bQueryFrameTime);
}

TEST_F(Driver, SwapOnAnotherThreadOfTheProcessStillFindsItsRecord) {
    g_iInitFailCount = g_uInitFailForGood;
    headless::SetThreadId(9999);
    Mailbox().bChanged = 1;
    Swap();
    EXPECT_EQ(Mailbox().bChanged, 0);
    EXPECT_EQ(Record().Command.uApiCode, 0u);
}

TEST_F(Driver, DeleteContextIsPassedThroughAndReleasesNothing) {
    g_bInitGL = true;
    headless::SetDeleteContextResult(5);
    EXPECT_EQ(GL_wglDeleteContext(Handle(0x77)), 5);
    EXPECT_EQ(headless::LastDeletedContext(), Handle(0x77));
    EXPECT_TRUE(g_bInitGL);
}
