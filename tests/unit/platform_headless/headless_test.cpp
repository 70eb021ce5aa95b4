#include "platform/clock.h"
#include "platform/folders.h"
#include "platform/headless/test_controls.h"
#include "platform/log.h"
#include "platform/named_mapping.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/surface.h"
#include "platform/threads.h"
#include "platform/utf.h"
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

namespace headless = platform::headless;

class Headless : public testing::Test {
  protected:
    void SetUp() override { headless::ResetAll(); }
    void TearDown() override { headless::ResetAll(); }
};

void* Address(std::uintptr_t u) { return reinterpret_cast<void*>(u); }

TEST_F(Headless, IdentityIsWhatTheTestSays) {
    EXPECT_EQ(platform::CurrentProcessId(), 4242u);
    headless::SetProcessId(7);
    headless::SetThreadId(8);
    headless::SetProcessPath("/games/long.exe");
    char sz[8];
    platform::ProcessPath(sz, sizeof sz);
    EXPECT_EQ(platform::CurrentProcessId(), 7u);
    EXPECT_EQ(platform::CurrentThreadId(), 8u);
    EXPECT_STREQ(sz, "/games/");
}

TEST_F(Headless, ModulesCompareFoldedAndWhole) {
    headless::AddLoadedModule("steam_api64.dll");
    EXPECT_TRUE(platform::IsModuleLoaded("Steam_API64.DLL"));
    EXPECT_FALSE(platform::IsModuleLoaded("steam_api.dll"));
}

TEST_F(Headless, MissingFunctionsAreTheOnesNamed) {
    void* const hModule = platform::FindModule("opengl32.dll");
    headless::SetMissingProc("glBegin");
    EXPECT_EQ(platform::FindProc(hModule, "glBegin"), nullptr);
    EXPECT_NE(platform::FindProc(hModule, "glEnd"), nullptr);
    headless::SetMissingProc(nullptr);
    EXPECT_NE(platform::FindProc(hModule, "glBegin"), nullptr);
    headless::SetMissingProc("*");
    EXPECT_EQ(platform::FindProc(hModule, "glEnd"), nullptr);
    EXPECT_EQ(headless::AskedProcs().size(), 4u);
}

TEST_F(Headless, TrampolineAndImportCountApart) {
    void* pTrampoline = nullptr;
    void* const pTarget = platform::FindProc(platform::FindModule(""), "wglSwapBuffers");
    ASSERT_EQ(MH_Initialize(), MH_OK);
    ASSERT_EQ(MH_CreateHook(pTarget, Address(1), &pTrampoline), MH_OK);
    headless::SetSwapResult(5);
    EXPECT_EQ(reinterpret_cast<i32 (*)(void*)>(pTrampoline)(Address(9)), 5);
    EXPECT_EQ(platform::ImportedSwapBuffers(Address(10)), 5);
    EXPECT_EQ(headless::RealSwapCalls(), 1u);
    EXPECT_EQ(headless::ImportedSwapCalls(), 1u);
    EXPECT_EQ(headless::LastSwapSurface(), Address(10));
}

TEST_F(Headless, HookEngineKeepsItsRulesAndObeysTheTest) {
    EXPECT_EQ(MH_EnableHook(Address(1)), MH_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(MH_Initialize(), MH_OK);
    EXPECT_EQ(MH_CreateHook(Address(1), Address(2), nullptr), MH_OK);
    EXPECT_EQ(MH_CreateHook(Address(1), Address(2), nullptr), MH_ERROR_ALREADY_CREATED);
    EXPECT_EQ(MH_EnableHook(Address(1)), MH_OK);
    EXPECT_EQ(MH_EnableHook(Address(1)), MH_ERROR_ENABLED);
    EXPECT_EQ(MH_RemoveHook(Address(1)), MH_OK);
    headless::SetHookStatus(headless::HookCall::Create, MH_ERROR_MEMORY_ALLOC);
    EXPECT_EQ(MH_CreateHook(Address(1), Address(2), nullptr), MH_ERROR_MEMORY_ALLOC);
    EXPECT_EQ(headless::HookCallCount(headless::HookCall::Create), 3u);
    EXPECT_EQ(headless::HookCalls().front().m_eCall, headless::HookCall::Enable);
}

TEST_F(Headless, VirtualClockMovesOnlyAsTold) {
    headless::SetClock(1000);
    EXPECT_EQ(platform::SteadyNanoseconds(), 1000);
    headless::AdvanceClock(500);
    EXPECT_EQ(platform::CounterNow(), 1500);
    headless::SetClockStepPerRead(10);
    EXPECT_EQ(platform::SteadyNanoseconds(), 1510);
    EXPECT_EQ(headless::ClockReads(), 3u);
    platform::g_fnSleepMilliseconds(2);
    EXPECT_EQ(platform::SteadyNanoseconds(), 2001520);
    EXPECT_EQ(headless::SleptMilliseconds(), 2u);
}

TEST_F(Headless, CounterFollowsItsFrequencyWithoutOverflow) {
    headless::SetClock(9000000000000000000);
    headless::SetCounterFrequency(10000000);
    EXPECT_EQ(platform::CounterNow(), 90000000000000000);
    EXPECT_EQ(platform::CounterFrequency(), 10000000);
}

TEST_F(Headless, MappingsShareByNameAndFailOnDemand) {
    headless::SeedMapping("block", "D3D", 4);
    void* const hFirst = platform::CreateNamedMapping("block", 256);
    void* const hSecond = platform::OpenNamedMapping(u"block");
    EXPECT_STREQ(static_cast<char*>(platform::MapView(hFirst, 4)), "D3D");
    EXPECT_EQ(platform::MapView(hSecond, 4), headless::MappingContents("block"));
    EXPECT_EQ(platform::MapView(hSecond, 5), nullptr);
    EXPECT_EQ(platform::OpenNamedMapping(u"other"), nullptr);
    EXPECT_EQ(headless::OpenMappingHandles(), 2u);
    EXPECT_EQ(headless::OpenViews(), 2u);
    headless::SetMapViewFails(true);
    EXPECT_EQ(platform::MapView(hFirst, 4), nullptr);
    headless::SetCreateMappingFails(true);
    EXPECT_EQ(platform::CreateNamedMapping("third", 4), nullptr);
    platform::CloseMapping(hFirst);
    EXPECT_EQ(headless::OpenMappingHandles(), 1u);
}

TEST_F(Headless, NewMappingIsZero) {
    void* const hMapping = platform::CreateNamedMapping("new", 8);
    const auto* const pView = static_cast<u8*>(platform::MapView(hMapping, 8));
    for (int i = 0; i < 8; ++i) EXPECT_EQ(pView[i], 0);
}

TEST_F(Headless, SurfaceAndSizeAreWhatTheTestSays) {
    headless::SetCurrentSurface(Address(0x11));
    headless::SetCurrentContext(Address(0x22));
    headless::SetWindow(Address(0x33));
    headless::SetClientSize(640, 480);
    u32 uWidth = 0, uHeight = 0;
    EXPECT_EQ(platform::CurrentSurface(), Address(0x11));
    EXPECT_EQ(platform::CurrentContext(), Address(0x22));
    EXPECT_EQ(platform::WindowFromSurface(Address(0x11)), Address(0x33));
    EXPECT_TRUE(platform::ClientSize(Address(0x33), &uWidth, &uHeight));
    EXPECT_EQ(uWidth, 640u);
    EXPECT_EQ(uHeight, 480u);
}

TEST_F(Headless, FailedSizeQueryLeavesItsOutputs) {
    u32 uWidth = 1, uHeight = 2;
    EXPECT_FALSE(platform::ClientSize(nullptr, &uWidth, &uHeight));
    headless::SetClientSizeFails(true);
    EXPECT_FALSE(platform::ClientSize(Address(0x33), &uWidth, &uHeight));
    EXPECT_EQ(uWidth, 1u);
    EXPECT_EQ(uHeight, 2u);
    EXPECT_EQ(headless::ClientSizeCalls(), 2u);
}

TEST_F(Headless, TheDesktopIsUnknownUntilATestTellsItsSize) {
    u32 uWidth = 1, uHeight = 2;
    EXPECT_FALSE(platform::DesktopSize(&uWidth, &uHeight));
    EXPECT_EQ(uWidth, 1u);
    EXPECT_EQ(uHeight, 2u);
    headless::SetDesktopSize(640, 480);
    EXPECT_TRUE(platform::DesktopSize(&uWidth, &uHeight));
    EXPECT_EQ(uWidth, 640u);
    EXPECT_EQ(uHeight, 480u);
}

u32 CountThread(void* pCounter) {
    ++*static_cast<u32*>(pCounter);
    return platform::StopRequested() ? 100 : 7;
}

TEST_F(Headless, ThreadsRunWaitOrAreRefused) {
    u32 uCounter = 0, uResult = 0;
    EXPECT_NE(platform::StartThread(&CountThread, &uCounter), nullptr);
    headless::JoinThreads();
    EXPECT_EQ(uCounter, 1u);
    headless::SetThreadMode(headless::ThreadMode::Held);
    EXPECT_NE(platform::StartThread(&CountThread, &uCounter), nullptr);
    EXPECT_EQ(uCounter, 1u);
    EXPECT_TRUE(headless::RunHeldThread(&uResult));
    EXPECT_EQ(uResult, 7u);
    EXPECT_FALSE(headless::RunHeldThread());
    headless::SetThreadMode(headless::ThreadMode::Refused);
    EXPECT_EQ(platform::StartThread(&CountThread, &uCounter), nullptr);
    EXPECT_EQ(headless::StartedThreads(), 2u);
}

TEST_F(Headless, KilledThreadSeesTheStopRequest) {
    u32 uCounter = 0, uResult = 0;
    headless::SetThreadMode(headless::ThreadMode::Held);
    platform::KillThread(platform::StartThread(&CountThread, &uCounter));
    EXPECT_TRUE(headless::RunHeldThread(&uResult));
    EXPECT_EQ(uResult, 100u);
    EXPECT_EQ(headless::KilledThreads(), 1u);
    EXPECT_FALSE(platform::StopRequested());
}

TEST_F(Headless, CriticalSectionsAreCounted) {
    static platform::CriticalSection section; // its memory stays
    const u32 uBefore = headless::LiveCriticalSections();
    section.Initialize(1024);
    section.Enter();
    section.Leave();
    EXPECT_EQ(headless::LastSpinCount(), 1024u);
    EXPECT_EQ(headless::LiveCriticalSections(), uBefore + 1);
    section.Delete();
    section.Delete();
    EXPECT_EQ(headless::LiveCriticalSections(), uBefore);
}

TEST_F(Headless, MessagesAreRecorded) {
    headless::HookMessage st;
    st.m_uMessage = 1280;
    st.m_lParam = 0x77;
    void* pValue = nullptr;
    EXPECT_TRUE(platform::HookMessageParam(reinterpret_cast<std::intptr_t>(&st), 1280, &pValue));
    EXPECT_EQ(pValue, Address(0x77));
    headless::SetNextHookResult(11);
    EXPECT_EQ(platform::CallNextMessageHook(pValue, 1, 2, 3), 11);
    EXPECT_EQ(headless::NextHookCalls().at(0).m_iCode, 1);
    headless::SetUnhookResult(false);
    EXPECT_FALSE(platform::UnhookMessageHook(pValue));
    platform::BroadcastMessage(0xC000, 5);
    EXPECT_EQ(headless::BroadcastMessages().at(0).second, 5u);
}

TEST_F(Headless, SegmentStartsAgainFromItsImage) {
    stSharedSegment& st = *platform::SharedSegment();
    std::memset(static_cast<void*>(&st), 0xAB, sizeof st);
    headless::ResetSegment();
    u32 uSum = 0;
    for (u32 i = 0; i < sizeof st; ++i) uSum += reinterpret_cast<const u8*>(&st)[i];
    EXPECT_EQ(uSum, 5u);
    EXPECT_EQ(st.bGlobalEnable, 1);
    EXPECT_EQ(st.DefaultCommand.bRelease, 1);
}

TEST_F(Headless, LogAndBoxesAreKept) {
    platform::WriteLogLine("line");
    platform::ShowMessageBox(u"text", "title");
    EXPECT_EQ(headless::LogLines().at(0), "line");
    EXPECT_EQ(headless::MessageBoxes().at(0).first, u"text");
}

TEST_F(Headless, DataFolderIsSettableAndMayBeUnknown) {
    char16_t wz[16];
    EXPECT_TRUE(platform::CommonDataFolder(wz, 16));
    EXPECT_EQ(std::u16string(wz), u"/headless/data");
    EXPECT_FALSE(platform::CommonDataFolder(wz, 14));
    headless::SetCommonDataFolder(std::string("/\xC3\xA4"));
    EXPECT_TRUE(platform::CommonDataFolder(wz, 16));
    EXPECT_EQ(std::u16string(wz), u"/\u00E4");
    headless::SetCommonDataFolder(static_cast<const char16_t*>(nullptr));
    EXPECT_FALSE(platform::CommonDataFolder(wz, 16));
}

std::u16string Wide(const char* sz) {
    char16_t wz[64];
    return platform::Utf8ToUtf16(sz, wz, 64) ? wz : u"failed";
}

std::string Narrow(const char16_t* wz) {
    char sz[64];
    return platform::Utf16ToUtf8(wz, sz, 64) ? sz : "failed";
}

TEST(Utf, ConvertsBothWays) {
    EXPECT_EQ(Wide("a\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80"), u"a\u00E4\u4E2D\U0001F600");
    EXPECT_EQ(Narrow(u"a\u00E4\u4E2D\U0001F600"), "a\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80");
}

TEST(Utf, MalformedInputBecomesTheReplacementCharacter) {
    EXPECT_EQ(Wide("\xC0\x80"), u"\uFFFD\uFFFD");
    EXPECT_EQ(Wide("\xE4\xB8"), u"\uFFFD\uFFFD");
    EXPECT_EQ(Wide("\xED\xA0\x80"), u"\uFFFD");
    EXPECT_EQ(Wide("\xF8"), u"\uFFFD");
    const char16_t wzLoneHigh[] = {0xD800, u'a', 0}, wzLoneLow[] = {0xDC00, 0};
    EXPECT_EQ(Narrow(wzLoneHigh), std::string("\xEF\xBF\xBD") + "a");
    EXPECT_EQ(Narrow(wzLoneLow), "\xEF\xBF\xBD");
}

TEST(Utf, WhatDoesNotFitIsAFailure) {
    char16_t wz[3];
    char sz[3];
    EXPECT_TRUE(platform::Utf8ToUtf16("ab", wz, 3));
    EXPECT_FALSE(platform::Utf8ToUtf16("abc", wz, 3));
    EXPECT_FALSE(platform::Utf8ToUtf16("a\xF0\x9F\x98\x80", wz, 3));
    EXPECT_TRUE(platform::Utf16ToUtf8(u"\u00E4", sz, 3));
    EXPECT_FALSE(platform::Utf16ToUtf8(u"\u00E4a", sz, 3));
    EXPECT_FALSE(platform::Utf16ToUtf8(nullptr, sz, 3));
    EXPECT_FALSE(platform::Utf8ToUtf16("", wz, 0));
}

} // namespace
