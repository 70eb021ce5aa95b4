#include "child.h"
#include "entry/hooking.h"
#include "platform/clock.h"
#include "platform/folders.h"
#include "platform/linux/host_gl.h"
#include "platform/linux/identity.h"
#include "platform/linux/swap.h"
#include "platform/linux/thread_sleep.h"
#include "platform/minhook.h"
#include "platform/process.h"
#include "platform/surface.h"
#include "platform/threads.h"
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

extern "C" unsigned glGetError();
extern "C" const unsigned char* glGetString(unsigned);

namespace {

TEST(LinuxClock, CountsNanosecondsUpwards) {
    EXPECT_EQ(platform::CounterFrequency(), 1000000000);
    const i64 iFirst = platform::CounterNow();
    EXPECT_GE(platform::SteadyNanoseconds(), iFirst);
}

TEST(LinuxProcess, KnowsItselfAndFollowsAFork) {
    EXPECT_EQ(platform::CurrentProcessId(), static_cast<u32>(getpid()));
    EXPECT_EQ(platform::CurrentThreadId(), static_cast<u32>(gettid()));
    EXPECT_EQ(RunInChild([] {
                  platform::host::ForgetIdentity();
                  return platform::CurrentProcessId() == static_cast<u32>(getpid()) &&
                                 platform::CurrentThreadId() == static_cast<u32>(gettid())
                             ? 0
                             : 1;
              }),
              0);
}

TEST(LinuxProcess, PathIsTheExecutableCutToTheBuffer) {
    char szPath[4096], szShort[5];
    platform::ProcessPath(szPath, sizeof szPath);
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/exe").string(), szPath);
    platform::ProcessPath(szShort, sizeof szShort);
    EXPECT_EQ(std::string(szPath, 4), szShort);
}

TEST(LinuxProcess, FindsModulesByFilePartWhateverTheCase) {
    EXPECT_TRUE(platform::IsModuleLoaded("LIBC.so.6"));
    EXPECT_FALSE(platform::IsModuleLoaded("c.so.6"));
    EXPECT_FALSE(platform::IsModuleLoaded("DiscordHook64.dll"));
    EXPECT_FALSE(platform::IsModuleLoaded(""));
}

TEST(LinuxProcess, MessageIdsAreFixedDistinctAndInTheRegisteredRange) {
    const u32 uFirst = platform::RegisterMessage("ZARN_ORVIN_OSD_WM_MSG_FROM_GWEXE_GWDLL");
    const u32 uSecond = platform::RegisterMessage("Unhook Thread ID data From GWDll_GL");
    EXPECT_NE(uFirst, uSecond);
    EXPECT_EQ(uFirst, platform::RegisterMessage("ZARN_ORVIN_OSD_WM_MSG_FROM_GWEXE_GWDLL"));
    for (const u32 uId : {uFirst, uSecond}) EXPECT_TRUE(uId >= 0xC000 && uId <= 0xFFFF);
}

TEST(LinuxProcess, HookMessageIsReadOnlyForItsNumber) {
    struct {
        void* hWindow;
        u32 uMessage;
        std::uintptr_t wParam;
        std::intptr_t lParam;
    } st{nullptr, 1280, 0, 0x1234};
    void* pValue = nullptr;
    const auto lParam = reinterpret_cast<std::intptr_t>(&st);
    EXPECT_FALSE(platform::HookMessageParam(lParam, 1281, &pValue));
    EXPECT_FALSE(platform::HookMessageParam(0, 1280, &pValue));
    EXPECT_TRUE(platform::HookMessageParam(lParam, 1280, &pValue));
    EXPECT_EQ(pValue, reinterpret_cast<void*>(0x1234));
    EXPECT_FALSE(platform::UnhookMessageHook(pValue));
    EXPECT_EQ(platform::CallNextMessageHook(pValue, 0, 0, 0), 0);
}

TEST(LinuxThreads, KilledSleeperWakesAndSeesTheRequest) {
    static std::atomic<int> iState{0};
    const auto hThread = platform::StartThread(
        [](void*) -> u32 {
            platform::g_fnSleepMilliseconds(3600000);
            iState = platform::StopRequested() ? 1 : 2;
            return 0;
        },
        nullptr);
    ASSERT_NE(hThread, nullptr);
    platform::KillThread(hThread);
    while (iState == 0) std::this_thread::yield();
    EXPECT_EQ(iState, 1);
    EXPECT_FALSE(platform::StopRequested());
}

TEST(LinuxThreads, HandleOfAnEndedThreadStopsNobodyElse) {
    static std::atomic<bool> bDone{false}, bGo{false}, bStopped{false};
    const auto hOld = platform::StartThread([](void*) -> u32 { return 0; }, nullptr);
    ASSERT_NE(hOld, nullptr);
    const auto hNew = platform::StartThread(
        [](void*) -> u32 {
            while (!bGo) std::this_thread::yield();
            bStopped = platform::StopRequested();
            bDone = true;
            return 0;
        },
        nullptr);
    EXPECT_NE(hOld, hNew);
    platform::KillThread(hOld);
    platform::KillThread(nullptr);
    bGo = true;
    while (!bDone) std::this_thread::yield();
    EXPECT_FALSE(bStopped);
}

TEST(LinuxThreads, NullFunctionIsRefused) { EXPECT_EQ(platform::StartThread(nullptr, nullptr), nullptr); }

TEST(LinuxThreads, LockHeldAtAForkIsFreeInTheChild) {
    platform::CriticalSection section;
    section.Initialize(1024);
    section.Enter();
    EXPECT_EQ(RunInChild([&] {
                  platform::host::RenewLocksInChild();
                  section.Enter();
                  section.Leave();
                  return 0;
              }),
              0);
    section.Leave();
    section.Delete();
}

TEST(LinuxThreads, ThreadThatComesLateToADeletedLockFindsItWhole) {
    platform::CriticalSection section;
    section.Initialize(1024);
    section.Enter();
    std::atomic<bool> bPassed{false};
    std::thread late([&] {
        section.Enter();
        bPassed = true;
        section.Leave();
    });
    section.Delete(); // as the library does at its end, while a thread that was told to stop is on its way
    EXPECT_FALSE(bPassed);
    section.Leave();
    late.join();
    EXPECT_TRUE(bPassed);
    section.Initialize(1024);
    section.Enter();
    section.Leave();
}

class LinuxFolders : public testing::Test {
  protected:
    static std::string Folder() {
        char16_t wz[512];
        char sz[512];
        return platform::CommonDataFolder(wz, 512) && platform::NarrowPath(wz, sz, sizeof sz) ? sz : "";
    }
    static std::string FolderWith(const char* szOwn, const char* szData, const char* szHome) {
        const auto set = [](const char* szName, const char* szValue) {
            szValue ? setenv(szName, szValue, 1) : unsetenv(szName);
        };
        const char* const szOldHome = std::getenv("HOME");
        const std::string strHome = szOldHome ? szOldHome : "";
        set("ORVIN_OSD_APPDATA", szOwn);
        set("XDG_DATA_HOME", szData);
        set("HOME", szHome);
        const std::string str = Folder();
        set("ORVIN_OSD_APPDATA", nullptr);
        set("XDG_DATA_HOME", nullptr);
        set("HOME", szOldHome ? strHome.c_str() : nullptr);
        return str;
    }
};

TEST_F(LinuxFolders, OwnVariableThenDataHomeThenHome) {
    EXPECT_EQ(FolderWith("/own/", "/data", "/home/me"), "/own");
    EXPECT_EQ(FolderWith(nullptr, "/data", "/home/me"), "/data");
    EXPECT_EQ(FolderWith("", "", "/home/me"), "/home/me/.local/share");
    EXPECT_EQ(FolderWith(nullptr, nullptr, nullptr), "");
    EXPECT_EQ(FolderWith("/d\xC3\xA4ten", nullptr, nullptr), "/d\xC3\xA4ten");
}

TEST_F(LinuxFolders, TooSmallBufferIsAFailure) {
    setenv("ORVIN_OSD_APPDATA", "/folder", 1);
    char16_t wz[8];
    EXPECT_FALSE(platform::CommonDataFolder(wz, 7));
    EXPECT_TRUE(platform::CommonDataFolder(wz, 8));
    unsetenv("ORVIN_OSD_APPDATA");
}

TEST_F(LinuxFolders, OnlyPlainFilesOpen) {
    const auto path = std::filesystem::temp_directory_path() / ("orvin-unit-" + std::to_string(getpid()));
    std::filesystem::create_directory(path);
    std::ofstream(path / "file") << "text";
    ASSERT_EQ(mkfifo((path / "pipe").c_str(), 0600), 0);
    const auto open = [&](const char* szName) {
        std::FILE* const pFile = platform::OpenFileForRead((path / szName).u16string().c_str());
        if (pFile) std::fclose(pFile);
        return pFile != nullptr;
    };
    EXPECT_TRUE(open("file"));
    EXPECT_FALSE(open("pipe"));
    EXPECT_FALSE(open("."));
    EXPECT_FALSE(open("missing"));
    std::filesystem::remove_all(path);
}

TEST(LinuxGl, ForwardersAreSafeBeforeAnythingIsResolved) {
    EXPECT_EQ(RunInChild([] { return glGetError() == 0 && glGetString(0x1F02) == nullptr ? 0 : 1; }), 0);
}

TEST(LinuxGl, EveryFunctionOfTheTableIsFoundAfterTheLibraryLoads) {
    EXPECT_EQ(RunInChild([] {
                  void* const hModule = platform::LoadModule("opengl32.dll");
                  if (!hModule || !platform::FindModule("opengl32.dll")) return 1;
                  for (u32 i = 0; i < g_uGlFuncCount; ++i)
                      if (!platform::FindProc(hModule, g_aszGlFuncs[i])) return 2;
                  return 0;
              }),
              0);
}

TEST(LinuxGl, NoModuleFindsNothing) { EXPECT_EQ(platform::FindProc(nullptr, "glBegin"), nullptr); }

TEST(LinuxGl, WithoutAContextThereIsNoSurface) {
    EXPECT_EQ(RunInChild([] {
                  platform::LoadModule("opengl32.dll");
                  u32 uWidth = 3, uHeight = 4;
                  const bool bNone = !platform::CurrentSurface() && !platform::CurrentContext() &&
                                     !platform::ClientSize(nullptr, &uWidth, &uHeight) &&
                                     !platform::ClientSize(&uWidth, &uWidth, &uHeight) &&
                                     !platform::DesktopSize(&uWidth, &uHeight);
                  return bNone && uWidth == 3 && uHeight == 4 && platform::ImportedSwapBuffers(&uWidth) == 0
                             ? 0
                             : 1;
              }),
              0);
}

TEST(LinuxMinHook, FollowsTheEnginesRules) {
    void* const pSwap = reinterpret_cast<void*>(&platform::host::RealSwap);
    void* const pDetour = reinterpret_cast<void*>(+[](void*) -> i32 { return 0; });
    void* pTrampoline = nullptr;
    EXPECT_EQ(MH_CreateHook(pSwap, pDetour, &pTrampoline), MH_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(MH_Initialize(), MH_OK);
    EXPECT_EQ(MH_Initialize(), MH_ERROR_ALREADY_INITIALIZED);
    EXPECT_EQ(MH_EnableHook(pSwap), MH_ERROR_NOT_CREATED);
    EXPECT_EQ(MH_CreateHook(&pTrampoline, pDetour, &pTrampoline), MH_ERROR_UNSUPPORTED_FUNCTION);
    EXPECT_EQ(MH_CreateHook(nullptr, pDetour, &pTrampoline), MH_ERROR_NOT_EXECUTABLE);
    EXPECT_EQ(MH_CreateHook(pSwap, pDetour, &pTrampoline), MH_OK);
    EXPECT_EQ(pTrampoline, pSwap);
    EXPECT_EQ(MH_CreateHook(pSwap, pDetour, &pTrampoline), MH_ERROR_ALREADY_CREATED);
    EXPECT_EQ(MH_DisableHook(pSwap), MH_ERROR_DISABLED);
    EXPECT_EQ(MH_EnableHook(pSwap), MH_OK);
    EXPECT_EQ(MH_EnableHook(pSwap), MH_ERROR_ENABLED);
    EXPECT_EQ(MH_RemoveHook(pSwap), MH_OK);
    EXPECT_EQ(MH_RemoveHook(pSwap), MH_ERROR_NOT_CREATED);
    EXPECT_EQ(MH_Uninitialize(), MH_OK);
    EXPECT_EQ(MH_Uninitialize(), MH_ERROR_NOT_INITIALIZED);
}

} // namespace
