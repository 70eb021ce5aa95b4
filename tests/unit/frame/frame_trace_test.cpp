// Frame times for a companion that asks: who is answered, what is written, and that nothing happens unasked.
#include "base/host_care.h"
#include "config/load.h"
#include "config/settings/limiter_settings.h"
#include "entry/hooking.h"
#include "entry/reset_process.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/frame_trace.h"
#include "frame/real_swap.h"
#include "frame/surface_owner.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/api_code.h"
#include "shared/process_records.h"
#include <cstring>
#include <gtest/gtest.h>

namespace headless = platform::headless;

namespace {

constexpr u32 g_uPid = 4242, g_uTid = 4343;
constexpr i64 g_iMillisecond = 1'000'000;

void* Surface() { return reinterpret_cast<void*>(0x1000); }

class FrameTrace : public testing::Test {
  protected:
    void SetUp() override {
        headless::ResetAll();
        headless::SetClock(1'000'000'000);
        g_fnResetProcess();
        Requests() = {};
        RegisterProcess(g_uPid, g_uTid);
        g_bHooked = true;
        g_iInitFailCount = g_uInitFailForGood; // nothing is drawn
    }
    void TearDown() override {
        Requests() = {};
        g_fnResetProcess();
        headless::ResetAll();
    }
    static stTraceRequests& Requests() { return platform::SharedSegment()->TraceRequests; }
    static void Ask(u32 uPlace = 3, u32 uPid = g_uPid) {
        Requests().aRequest[uPlace].uProcessId = uPid;
        ++Requests().aRequest[uPlace].uBeat;
        ++Requests().uChanges;
    }
    static void Swap(i64 iAfterwards = 16 * g_iMillisecond) {
        GL_wglSwapBuffers(Surface());
        headless::AdvanceClock(iAfterwards);
    }
    static const u8* Block(u32 uSerial = 1, u32* puBytes = nullptr) {
        char szName[64];
        std::snprintf(szName, sizeof szName, g_szTraceBlockFormat, g_uPid, uSerial);
        return headless::MappingContents(szName, puBytes);
    }
    static const stTraceHeader& Header(u32 uSerial = 1) {
        return *reinterpret_cast<const stTraceHeader*>(Block(uSerial));
    }
    static const stTraceFrame& Frame(u32 uNumber, u32 uSerial = 1) {
        return reinterpret_cast<const stTraceFrame*>(Block(uSerial) +
                                                     g_uTraceHeaderBytes)[(uNumber - 1) % g_uTraceFrames];
    }
};

} // namespace

TEST_F(FrameTrace, UnaskedNothingIsMadeOrTimed) {
    Swap();
    const u64 uReads = headless::ClockReads();
    const u32 uViews = headless::OpenViews();
    for (u32 u = 0; u < 10; ++u) Swap();
    EXPECT_EQ(headless::ClockReads(), uReads);
    EXPECT_EQ(headless::OpenViews(), uViews);
    EXPECT_EQ(Block(), nullptr);
}

TEST_F(FrameTrace, ARequestForAnotherProcessIsNotOurs) {
    Ask(0, g_uPid + 1);
    Swap();
    EXPECT_EQ(Block(), nullptr);
    EXPECT_EQ(Requests().aRequest[0].uSerial, 0u);
}

TEST_F(FrameTrace, AnswersWithABlockThatDescribesItself) {
    EnableFPSLimiter = 0;
    Ask();
    Swap();
    u32 uBytes = 0;
    ASSERT_NE(Block(1, &uBytes), nullptr);
    EXPECT_EQ(uBytes, g_uTraceBlockBytes);
    EXPECT_EQ(Requests().aRequest[3].uSerial, 1u);
    const stTraceHeader& st = Header();
    EXPECT_EQ(std::memcmp(st.acTag, g_szTraceTag, sizeof st.acTag), 0);
    EXPECT_EQ(st.uVersion, g_uTraceVersion);
    EXPECT_EQ(st.uFrames, g_uTraceFrames);
    EXPECT_EQ(st.uFrameBytes, 32u);
    EXPECT_EQ(st.uProcessId, g_uPid);
    EXPECT_EQ(st.iFrequency, 1'000'000'000);
    EXPECT_EQ(st.uLimit, 0u);
    EXPECT_EQ(st.uEnded, 0u);
    EXPECT_TRUE(std::u16string(st.wzProfile) == u"Default");
    EXPECT_EQ(st.uWritten, 1u);
}

TEST_F(FrameTrace, EachBeatTellsWhatHasBecomeOfTheOverlay) {
    const auto fnAsk = [] {
        ++Requests().aRequest[3].uBeat;
        Swap();
        return Header().uOverlay;
    };
    Ask();
    Swap();
    EXPECT_EQ(Header().uOverlay, TRACE_OVERLAY_GAVE_UP);
    g_iInitFailCount = 0;
    g_uApiCode = 1; // nothing is drawn for that either
    Swap();
    EXPECT_EQ(Header().uOverlay, TRACE_OVERLAY_GAVE_UP) << "nobody asked again";
    EXPECT_EQ(fnAsk(), TRACE_OVERLAY_BUILDS);
    g_fnNoteFailedLoad(0);
    EXPECT_EQ(fnAsk(), TRACE_OVERLAY_LAYOUT_FAILED);
    g_bInitGL = true;
    EXPECT_EQ(fnAsk(), TRACE_OVERLAY_DRAWS);
    g_bInitGL = false;
}

TEST_F(FrameTrace, SwapsOfOtherSurfacesAreCounted) {
    Ask();
    Swap();
    EXPECT_EQ(Header().uPassed, 0u);
    g_stHostCare.bStayWithSurface = true;
    g_hDC = Surface();
    g_fnKeepSurface();
    for (u32 u = 0; u < 3; ++u) GL_wglSwapBuffers(reinterpret_cast<void*>(0x5000));
    EXPECT_EQ(Header().uWritten, 1u) << "they pass untouched";
    g_fnLeaveSurface();
    ++Requests().aRequest[3].uBeat;
    Swap();
    EXPECT_EQ(Header().uPassed, 3u);
}

TEST_F(FrameTrace, AFrameHasItsMomentItsCostAndTheSwapBehindIt) {
    Ask();
    headless::SetSwapCallback([](void*) { headless::AdvanceClock(3 * g_iMillisecond); });
    headless::SetClockStepPerRead(1000); // between two looks at the clock
    Swap(10 * g_iMillisecond);
    EXPECT_EQ(Frame(1).uSwap, 0u) << "known at the next swap";
    Swap(10 * g_iMillisecond);
    Swap();
    EXPECT_EQ(Frame(1).uNumber, 1u);
    EXPECT_EQ(Frame(2).uNumber, 2u);
    EXPECT_EQ(Frame(1).uThreadId, g_uTid);
    EXPECT_EQ(Frame(2).uCost, 1000u);
    EXPECT_EQ(Frame(2).uWait, 1000u);
    EXPECT_NEAR(Frame(2).uSwap, 3 * g_iMillisecond, 2000);
    EXPECT_NEAR(static_cast<f64>(Frame(3).iBefore - Frame(2).iBefore), 13 * g_iMillisecond, 10000);
    EXPECT_EQ(Header().uWritten, 3u);
}

TEST_F(FrameTrace, TheLimitersWaitIsNoCostOfTheOverlay) {
    EnableFPSLimiter = 1;
    FPS_Target = 10;
    g_fnTavo_Setup_FPS_Limiter();
    Ask();
    headless::SetClockStepPerRead(1000);
    for (u32 u = 0; u < 70; ++u) Swap(g_iMillisecond);
    EXPECT_GT(Frame(68).uWait, 90 * g_iMillisecond);
    EXPECT_LT(Frame(68).uCost, 100'000u);
    EXPECT_EQ(Header().uLimit, 10u);
}

TEST_F(FrameTrace, AFrameTooLongForItsFieldsIsTheLongest) {
    Ask();
    Swap();
    headless::SetClockStepPerRead(5000 * g_iMillisecond);
    ++Requests().aRequest[3].uBeat;
    Swap(0);
    headless::SetClockStepPerRead(1000);
    ++Requests().aRequest[3].uBeat;
    Swap(0);
    EXPECT_EQ(Frame(2).uCost, g_uTraceLongest);
    EXPECT_EQ(Frame(2).uWait, g_uTraceLongest);
    EXPECT_EQ(Frame(2).uSwap, g_uTraceLongest);
    EXPECT_EQ(Frame(3).uCost, 1000u);
}

TEST_F(FrameTrace, FourLooksAtTheClockAFrame) {
    Ask();
    Swap();
    const u64 uReads = headless::ClockReads();
    for (u32 u = 0; u < 100; ++u) GL_wglSwapBuffers(Surface());
    EXPECT_EQ(headless::ClockReads(), uReads + 400);
}

TEST_F(FrameTrace, TheRingGoesRound) {
    Ask();
    for (u32 u = 0; u < g_uTraceFrames + 5; ++u) {
        ++Requests().aRequest[3].uBeat;
        Swap(1000);
    }
    EXPECT_EQ(Header().uWritten, g_uTraceFrames + 5);
    EXPECT_EQ(Frame(1).uNumber, g_uTraceFrames + 1);
    EXPECT_EQ(Frame(6).uNumber, 6u);
}

TEST_F(FrameTrace, EndsWhenTheBeatStandsStillAndGivesThePlaceBack) {
    Ask();
    for (u32 u = 0; u < g_uTraceSilence - 1; ++u) Swap(1000 * g_iMillisecond);
    EXPECT_EQ(Header().uEnded, 0u);
    ++Requests().aRequest[3].uBeat; // a sign of life: as long again
    for (u32 u = 0; u < g_uTraceSilence; ++u) Swap(1000 * g_iMillisecond);
    EXPECT_EQ(Header().uEnded, 0u);
    for (u32 u = 0; u < 3; ++u) Swap(1000 * g_iMillisecond);
    EXPECT_EQ(Header().uEnded, 1u);
    EXPECT_EQ(Requests().aRequest[3].uProcessId, 0u);
    const u64 uReads = headless::ClockReads();
    Swap();
    EXPECT_EQ(headless::ClockReads(), uReads);
    EXPECT_EQ(g_stFrameTrace.m_stBlock.m_pView, nullptr);
}

TEST_F(FrameTrace, ALaterReaderGetsABlockOfItsOwn) {
    Ask();
    for (u32 u = 0; u < g_uTraceSilence + 3; ++u) Swap(1000 * g_iMillisecond);
    ASSERT_EQ(Header().uEnded, 1u);
    Ask(7);
    Swap();
    ASSERT_NE(Block(2), nullptr);
    EXPECT_EQ(Requests().aRequest[7].uSerial, 2u);
    EXPECT_EQ(Header(2).uWritten, 1u);
}

TEST_F(FrameTrace, ASecondReaderOfARunningTraceIsToldWhereItIs) {
    Ask(3);
    Swap();
    Ask(3);
    Swap();
    EXPECT_EQ(Requests().aRequest[3].uSerial, 1u);
    EXPECT_EQ(Header().uWritten, 2u);
    EXPECT_EQ(Block(2), nullptr);
}

TEST_F(FrameTrace, AStrangersBlockOfThatNameIsLeftAlone) {
    const u8 auStranger[64] = {1, 2, 3};
    char szName[64];
    std::snprintf(szName, sizeof szName, g_szTraceBlockFormat, g_uPid, 1u);
    headless::SeedMapping(szName, auStranger, sizeof auStranger);
    Ask();
    Swap();
    Swap();
    EXPECT_EQ(Requests().aRequest[3].uSerial, 2u);
    EXPECT_EQ(std::memcmp(Block(1), auStranger, sizeof auStranger), 0);
    EXPECT_EQ(Header(2).uWritten, 2u);
}

TEST_F(FrameTrace, WithoutMemoryTheFrameGoesOnAndTheReaderIsTold) {
    headless::SetCreateMappingFails(true);
    Ask();
    Swap();
    Swap();
    EXPECT_EQ(Requests().aRequest[3].uSerial, ~0u);
    EXPECT_EQ(g_stFrameTrace.m_pHeader, nullptr);
    EXPECT_EQ(headless::ImportedSwapCalls(), 2u);
}

TEST_F(FrameTrace, ACopyOfTheProcessDoesNotWriteIntoItsParentsBlock) {
    Ask();
    Swap();
    headless::SetProcessId(g_uPid + 1);
    Swap();
    EXPECT_EQ(Header().uWritten, 1u);
    EXPECT_EQ(Header().uEnded, 0u) << "the parent goes on";
    EXPECT_EQ(g_stFrameTrace.m_pHeader, nullptr);
}

TEST_F(FrameTrace, AnySegmentIsTakenAsItIs) {
    std::memset(&Requests(), 0xA5, sizeof(stTraceRequests));
    for (u32 u = 0; u < 3; ++u) Swap();
    EXPECT_EQ(g_stFrameTrace.m_pHeader, nullptr);
    Ask();
    Swap();
    std::memset(&Requests(), 0, sizeof(stTraceRequests)); // a companion that clears everything
    ++Requests().uChanges;
    for (u32 u = 0; u < g_uTraceSilence + 3; ++u) Swap(1000 * g_iMillisecond);
    EXPECT_EQ(g_stFrameTrace.m_pHeader, nullptr);
}

TEST_F(FrameTrace, TheSwitchedOffOverlayRecordsNothing) {
    Ask();
    platform::SharedSegment()->bGlobalEnable = 0;
    Swap();
    EXPECT_EQ(Block(), nullptr);
    platform::SharedSegment()->bGlobalEnable = 1;
}

TEST_F(FrameTrace, UnhookingEndsIt) {
    Ask();
    Swap();
    UnHook_openGL(1);
    EXPECT_EQ(Header().uEnded, 1u);
    EXPECT_EQ(g_stFrameTrace.m_pHeader, nullptr);
}
