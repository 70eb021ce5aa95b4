// Clock, process, modules, messages, mappings, folders and threads.
#include "platform/clock.h"
#include "platform/folders.h"
#include "platform/log.h"
#include "platform/named_mapping.h"
#include "platform/process.h"
#include "platform/threads.h"
#include "platform/win32/clock_conversion.h"
#include "platform/win32/shutdown.h"
#include "platform/win32/windows_api.h"
#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

std::atomic<u32> g_uThreadRuns{0};
std::atomic<bool> g_bThreadEnd{false};

u32 SpinUntilEnd(void* pArgument) {
    ++*static_cast<std::atomic<u32>*>(pArgument);
    while (!g_bThreadEnd) Sleep(1);
    ++*static_cast<std::atomic<u32>*>(pArgument);
    return 0;
}

u32 ReturnAtOnce(void* pArgument) {
    ++*static_cast<std::atomic<u32>*>(pArgument);
    return 5;
}

void WaitFor(const std::atomic<u32>& uValue, u32 uWanted) {
    while (uValue < uWanted) Sleep(1);
}

} // namespace

TEST(Clock, TicksConvertWithoutOverflow) {
    EXPECT_EQ(platform::TicksToNanoseconds(10000000, 10000000), 1000000000);
    EXPECT_EQ(platform::TicksToNanoseconds(1, 10000000), 100);
    EXPECT_EQ(platform::TicksToNanoseconds(7, 3), 2333333333);
    // 250 years at 10 MHz: the product of ticks and 10^9 would need 94 bits
    const i64 iSeconds = 250LL * 365 * 86400;
    EXPECT_EQ(platform::TicksToNanoseconds(iSeconds * 10000000 + 1, 10000000), iSeconds * 1000000000 + 100);
}

TEST(Clock, CounterAndSteadyClockMoveForward) {
    EXPECT_GT(platform::CounterFrequency(), 0);
    const i64 iTicks = platform::CounterNow(), iNanoseconds = platform::SteadyNanoseconds();
    platform::g_fnSleepMilliseconds(2);
    EXPECT_GT(platform::CounterNow(), iTicks);
    EXPECT_GT(platform::SteadyNanoseconds(), iNanoseconds);
}

TEST(Process, IdsAndPath) {
    EXPECT_EQ(platform::CurrentProcessId(), GetCurrentProcessId());
    EXPECT_EQ(platform::CurrentThreadId(), GetCurrentThreadId());
    char szPath[260] = {};
    platform::ProcessPath(szPath, sizeof(szPath));
    EXPECT_NE(std::strstr(szPath, "unit_platform_win32"), nullptr);
    char szShort[5] = {'x', 'x', 'x', 'x', 'x'};
    platform::ProcessPath(szShort, sizeof(szShort));
    EXPECT_EQ(std::strlen(szShort), 4u);
    EXPECT_EQ(std::strncmp(szShort, szPath, 4), 0);
}

TEST(Process, DuplicatedThreadHandleStaysOpen) {
    // The freed value is the next one given out, so it tells whether a handle was left behind.
    HANDLE hProbe = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(hProbe);
    DWORD uFlags = 0;
    ASSERT_FALSE(GetHandleInformation(hProbe, &uFlags));
    platform::DuplicateCurrentThreadHandle();
    EXPECT_TRUE(GetHandleInformation(hProbe, &uFlags));
}

TEST(Process, FoundModuleLeavesAProcessHandleOpenAMissedOneDoesNot) {
    HANDLE hProbe = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(hProbe);
    DWORD uFlags = 0;
    EXPECT_FALSE(platform::IsModuleLoaded("no-such-module.dll"));
    EXPECT_FALSE(GetHandleInformation(hProbe, &uFlags));
    EXPECT_TRUE(platform::IsModuleLoaded("kernel32.dll"));
    EXPECT_TRUE(GetHandleInformation(hProbe, &uFlags));
}

TEST(Modules, CheckGoesByFilePartWithoutCase) {
    EXPECT_TRUE(platform::IsModuleLoaded("kernel32.dll"));
    EXPECT_TRUE(platform::IsModuleLoaded("KERNEL32.DLL"));
    EXPECT_FALSE(platform::IsModuleLoaded("kernel32"));
    EXPECT_FALSE(platform::IsModuleLoaded("GameOverlayRenderer64.dll"));
    EXPECT_FALSE(platform::IsModuleLoaded(std::string(600, 'a').c_str()));
    EXPECT_FALSE(platform::IsModuleLoaded(""));
}

TEST(Modules, FindLoadAndProc) {
    void* hModule = platform::FindModule("kernel32.dll");
    ASSERT_NE(hModule, nullptr);
    EXPECT_NE(platform::FindProc(hModule, "GetTickCount"), nullptr);
    EXPECT_EQ(platform::FindProc(hModule, "NoSuchFunctionAnywhere"), nullptr);
    EXPECT_EQ(platform::FindProc(nullptr, "main"), nullptr);
    EXPECT_EQ(platform::FindModule("no-such-module.dll"), nullptr);
    EXPECT_EQ(platform::LoadModule("no-such-module.dll"), nullptr);
    EXPECT_NE(platform::LoadModule("opengl32.dll"), nullptr);
}

TEST(Messages, RegisteredIdsAreStableAndInTheSystemsRange) {
    const char* aszNames[] = {"ZARN_ORVIN_OSD_WM_MSG_FROM_GWEXE_GWDLL",
                              "Unhook Thread ID data From GWDll_GL"};
    const u32 uFirst = platform::RegisterMessage(aszNames[0]),
              uSecond = platform::RegisterMessage(aszNames[1]);
    EXPECT_NE(uFirst, uSecond);
    for (const u32 uId : {uFirst, uSecond}) {
        EXPECT_GE(uId, 0xC000u);
        EXPECT_LE(uId, 0xFFFFu);
    }
    EXPECT_EQ(platform::RegisterMessage(aszNames[0]), uFirst);
}

TEST(Messages, HookParameterIsReadFromItsOwnMessageOnly) {
    MSG message{};
    message.message = 1280;
    message.lParam = 0x1234567890;
    void* pValue = nullptr;
    EXPECT_TRUE(platform::HookMessageParam(reinterpret_cast<LPARAM>(&message), 1280, &pValue));
    EXPECT_EQ(pValue, reinterpret_cast<void*>(0x1234567890));
    message.message = 1281;
    pValue = nullptr;
    EXPECT_FALSE(platform::HookMessageParam(reinterpret_cast<LPARAM>(&message), 1280, &pValue));
    EXPECT_EQ(pValue, nullptr);
    EXPECT_FALSE(platform::HookMessageParam(0, 1280, &pValue));
}

TEST(Messages, NullHookHandleIsAllowed) {
    EXPECT_EQ(platform::CallNextMessageHook(nullptr, 0, 0, 0), 0);
    EXPECT_FALSE(platform::UnhookMessageHook(nullptr));
}

TEST(Mapping, SecondCreatorSharesTheBlockAndTheLastCloseRemovesIt) {
    const char* szName = "[RV5-OSD][PID:4711]";
    void* hFirst = platform::CreateNamedMapping(szName, 256);
    ASSERT_NE(hFirst, nullptr);
    char* pFirst = static_cast<char*>(platform::MapView(hFirst, 256));
    ASSERT_NE(pFirst, nullptr);
    EXPECT_EQ(pFirst[0], 0);
    std::strcpy(pFirst, "OGL");
    void* hSecond = platform::CreateNamedMapping(szName, 256);
    ASSERT_NE(hSecond, nullptr);
    const char* pSecond = static_cast<const char*>(platform::MapView(hSecond, 256));
    ASSERT_NE(pSecond, nullptr);
    EXPECT_STREQ(pSecond, "OGL");
    void* hOpened = platform::OpenNamedMapping(u"[RV5-OSD][PID:4711]");
    EXPECT_NE(hOpened, nullptr);
    platform::UnmapView(pFirst);
    platform::UnmapView(const_cast<char*>(pSecond));
    for (void* hMapping : {hFirst, hSecond, hOpened}) platform::CloseMapping(hMapping);
    EXPECT_EQ(platform::OpenNamedMapping(u"[RV5-OSD][PID:4711]"), nullptr);
}

TEST(Mapping, FailuresAreNullAndNullIsHarmless) {
    EXPECT_EQ(platform::OpenNamedMapping(u"no such block"), nullptr);
    EXPECT_EQ(platform::MapView(nullptr, 256), nullptr);
    platform::UnmapView(nullptr);
    platform::CloseMapping(nullptr);
}

TEST(Folders, CommonDataFolderFitsOrIsRefused) {
    char16_t wzFolder[260] = {};
    ASSERT_TRUE(platform::CommonDataFolder(wzFolder, 260));
    const std::u16string wzText = wzFolder;
    EXPECT_FALSE(wzText.empty());
    EXPECT_NE(wzText.back(), u'\\');
    char16_t wzTight[4] = {};
    EXPECT_FALSE(platform::CommonDataFolder(wzTight, 4));
    const u32 uExact = static_cast<u32>(wzText.size()) + 1;
    EXPECT_TRUE(platform::CommonDataFolder(wzFolder, uExact));
    EXPECT_FALSE(platform::CommonDataFolder(wzFolder, uExact - 1));
}

TEST(Folders, PathsNarrowAndOpen) {
    char szPath[16] = {};
    EXPECT_TRUE(platform::NarrowPath(u"C:\\a b\\c.txt", szPath, sizeof(szPath)));
    EXPECT_STREQ(szPath, "C:\\a b\\c.txt");
    EXPECT_FALSE(platform::NarrowPath(u"C:\\a b\\c.txt", szPath, 5));
    EXPECT_FALSE(platform::NarrowPath(u"C:\\a b\\c.txt", szPath, 0));
    EXPECT_EQ(platform::OpenFileForRead(u"C:\\no such folder\\no such file"), nullptr);
    wchar_t wzProgram[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, wzProgram, MAX_PATH);
    std::FILE* pFile = platform::OpenFileForRead(reinterpret_cast<const char16_t*>(wzProgram));
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(std::fgetc(pFile), 'M');
    std::fclose(pFile);
}

TEST(Threads, RunsAndEndsByItself) {
    g_uThreadRuns = 0;
    platform::ThreadHandle hThread = platform::StartThread(ReturnAtOnce, &g_uThreadRuns);
    ASSERT_NE(hThread, nullptr);
    WaitFor(g_uThreadRuns, 1);
    Sleep(20);
    platform::KillThread(hThread); // the handle of a thread that has ended
    EXPECT_EQ(g_uThreadRuns, 1u);
}

TEST(Threads, KilledThreadNeverComesBack) {
    g_uThreadRuns = 0;
    g_bThreadEnd = false;
    platform::ThreadHandle hThread = platform::StartThread(SpinUntilEnd, &g_uThreadRuns);
    ASSERT_NE(hThread, nullptr);
    WaitFor(g_uThreadRuns, 1);
    platform::KillThread(hThread);
    g_bThreadEnd = true;
    Sleep(50);
    EXPECT_EQ(g_uThreadRuns, 1u);
    platform::KillThread(hThread);
    platform::KillThread(nullptr);
    EXPECT_FALSE(platform::StopRequested());
}

TEST(Threads, ADetachedOneRunsBelowTheHostAndLeavesNoHandle) {
    static std::atomic<int> s_iPriority;
    s_iPriority = THREAD_PRIORITY_ERROR_RETURN;
    ASSERT_TRUE(platform::StartDetachedThread(
        [](void*) -> u32 {
            s_iPriority = GetThreadPriority(GetCurrentThread());
            return 0;
        },
        nullptr));
    while (s_iPriority == THREAD_PRIORITY_ERROR_RETURN) Sleep(1);
    EXPECT_EQ(s_iPriority, THREAD_PRIORITY_BELOW_NORMAL);
    EXPECT_FALSE(platform::StartDetachedThread(nullptr, nullptr));
    DWORD uBefore = 0, uAfter = 0;
    GetProcessHandleCount(GetCurrentProcess(), &uBefore);
    for (u32 u = 0; u < 50; ++u) {
        g_uThreadRuns = 0;
        ASSERT_TRUE(platform::StartDetachedThread(ReturnAtOnce, &g_uThreadRuns));
        WaitFor(g_uThreadRuns, 1);
    }
    GetProcessHandleCount(GetCurrentProcess(), &uAfter);
    EXPECT_LT(uAfter, uBefore + 25);
}

TEST(Threads, KilledWhileItIsLeaving) {
    for (u32 i = 0; i < 200; ++i) {
        g_uThreadRuns = 0;
        platform::ThreadHandle hThread = platform::StartThread(ReturnAtOnce, &g_uThreadRuns);
        ASSERT_NE(hThread, nullptr);
        WaitFor(g_uThreadRuns, 1);
        platform::KillThread(hThread);
        // A loader lock taken along would show here.
        EXPECT_NE(LoadLibraryA("opengl32.dll"), nullptr);
    }
}

TEST(CriticalSection, KeepsOthersOutUntilLeft) {
    platform::CriticalSection section;
    section.Enter(); // before its life begins: nothing to wait for
    section.Leave();
    section.Initialize(1024);
    ASSERT_NE(section.m_pImpl.load(), nullptr);
    std::atomic<bool> bInside{false};
    section.Enter();
    std::thread other([&] {
        section.Enter();
        bInside = true;
        section.Leave();
    });
    Sleep(20);
    EXPECT_FALSE(bInside);
    section.Leave();
    other.join();
    EXPECT_TRUE(bInside);
    section.Delete();
    EXPECT_EQ(section.m_pImpl.load(), nullptr);
    section.Delete();
}

TEST(CriticalSection, CountsExactlyUnderContention) {
    platform::CriticalSection section;
    section.Initialize(1024);
    u32 uCount = 0;
    const auto fnAdd = [&] {
        for (u32 i = 0; i < 20000; ++i) {
            section.Enter();
            ++uCount;
            section.Leave();
        }
    };
    std::thread first(fnAdd), second(fnAdd);
    first.join();
    second.join();
    EXPECT_EQ(uCount, 40000u);
    section.Delete();
}

TEST(Shutdown, RunningProcessIsNotEnding) { EXPECT_FALSE(platform::IsProcessEnding()); }

TEST(Log, LineGoesToTheDebugger) { platform::WriteLogLine("[TrelisDebug] a line of the test\n"); }
