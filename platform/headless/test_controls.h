#pragma once
// What a test can set and see of the headless back-end. All of it is plain memory; nothing here touches an
// operating system beyond the C++ library. ResetAll() brings everything back to the state at start.
#include "platform/clock.h"
#include "platform/minhook.h"
#include "platform/settings_store.h"
#include "platform/surface.h"
#include "platform/threads.h"
#include "platform/types.h"
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace platform::headless {

/// Everything below back to its default, including the segment, mappings and records of calls.
void ResetAll();

// --- identity
// -------------------------------------------------------------------------------------------------
/// Defaults: process id 4242, thread id 4343, path "/headless/host.exe".
void SetProcessId(u32 uPid);
void SetThreadId(u32 uTid);
void SetProcessPath(const char* szPath);
/// Stamp of a process; 0: no process has that id any more. Without a call every process lives, unstamped.
void SetProcessStamp(u32 uPid, u32 uStamp);

// --- modules and exported functions
// ---------------------------------------------------------------------------
/// Modules that IsModuleLoaded() finds, by file part. Default: none.
void AddLoadedModule(const char* szName);
/// How often the list of modules was walked.
u32 ModuleWalks();
void ClearLoadedModules();
/// Whether FindModule() finds the GL library at once (default true), and whether LoadModule() succeeds
/// (true).
void SetGlModulePresent(bool bPresent);
void SetLoadModuleSucceeds(bool bSucceeds);
u32 LoadModuleCalls();
/// FindProc() answers null for this name; null clears the list. "*" makes every look-up fail.
void SetMissingProc(const char* szName);
/// Names asked of FindProc() so far.
std::vector<std::string> AskedProcs();

// --- hook engine
// ----------------------------------------------------------------------------------------------
enum class HookCall : u8 { Initialize, Uninitialize, Create, Enable, Disable, Remove };
struct HookRecord {
    HookCall m_eCall;
    void* m_pTarget;
    void* m_pDetour;
};
/// Status of the next calls of that kind, until changed. MH_OK (default) lets the plain engine answer itself.
void SetHookStatus(HookCall eCall, MH_STATUS eStatus);
std::vector<HookRecord> HookCalls();
u32 HookCallCount(HookCall eCall);
/// Whether MH_CreateHook writes the trampoline (default true).
void SetTrampolineGiven(bool bGiven);

// --- swap
// -----------------------------------------------------------------------------------------------------
/// Calls of the swap that FindProc("wglSwapBuffers") names (reached through the trampoline too).
u32 RealSwapCalls();
/// Calls of ImportedSwapBuffers() and ImportedDeleteContext().
u32 ImportedSwapCalls();
u32 DeleteContextCalls();
/// Argument of the last swap by either way, and of the last context deletion.
void* LastSwapSurface();
void* LastDeletedContext();
/// What the swap and the deletion return; default 1.
void SetSwapResult(i32 iResult);
void SetDeleteContextResult(i32 iResult);
/// Called inside every swap (both ways), e.g. to swap real buffers or to nest; null for none.
void SetSwapCallback(void (*fnCallback)(void* hSurface));

// --- window messages
// ------------------------------------------------------------------------------------------
/// The message that a hook callback gets by pointer in lParam.
struct HookMessage {
    void* m_hWindow = nullptr;
    u32 m_uMessage = 0;
    std::uintptr_t m_wParam = 0;
    std::intptr_t m_lParam = 0;
};
struct NextHookRecord {
    void* m_hHook;
    i32 m_iCode;
    std::uintptr_t m_wParam;
    std::intptr_t m_lParam;
};
void SetNextHookResult(std::intptr_t iResult);
/// Last error that the call of the next hook leaves; 0: none.
void SetNextHookError(u32 uError);
std::vector<NextHookRecord> NextHookCalls();
void SetUnhookResult(bool bResult);
std::vector<void*> UnhookedHooks();
std::vector<std::pair<u32, std::uintptr_t>> BroadcastMessages();

// --- clock
// ----------------------------------------------------------------------------------------------------
/// Switches to the virtual clock and sets it, in nanoseconds. Off by default: real time then. Under the
/// virtual clock a sleep advances the clock and returns at once.
void SetClock(i64 iNanoseconds);
void AdvanceClock(i64 iNanoseconds);
/// Every reading moves the virtual clock on by this much first (default 0); needed under loops that wait for
/// it.
void SetClockStepPerRead(i64 iNanoseconds);
/// Once, at the reading of that number from now on: what a program that lost its core for a while reads.
void SetClockJump(u32 uReadings, i64 iNanoseconds);
void UseRealClock();
/// Ticks per second; default 1000000000.
void SetCounterFrequency(i64 iTicksPerSecond);
/// Readings of the counter or of the steady clock since the last reset.
u64 ClockReads();
/// What LocalTime() answers, until changed; default 2024-02-29 13:05:09. Calls of it since the last reset.
void SetLocalTime(const stLocalTime& stTime);
u32 LocalTimeReads();
/// What UnixMilliseconds() answers; default 1709211909123.
void SetUnixMilliseconds(i64 iMilliseconds);
/// Sleeps asked for: how many, and the sum in milliseconds.
u32 SleepCalls();
u64 SleptMilliseconds();

// --- named mappings
// -------------------------------------------------------------------------------------------
/// Makes a named block that exists before anybody creates it. Names compare exactly.
void SeedMapping(const char* szName, const void* pContents, u32 uBytes);
/// Address and size of a block, null and 0 if there is none; stays valid until ResetAll().
u8* MappingContents(const char* szName, u32* puBytes = nullptr);
void SetCreateMappingFails(bool bFails);
void SetOpenMappingFails(bool bFails);
void SetMapViewFails(bool bFails);
/// Handles not yet closed and views not yet unmapped.
u32 OpenMappingHandles();
u32 OpenViews();
u32 CreateMappingCalls();
/// Gives a block another size while it is in use; what a longer one gains is zero.
void CutMapping(const char* szName, u32 uBytes);
/// Watched blocks not yet closed, and how often one was read.
u32 OpenWatchedBlocks();
u32 WatchedReads();
void SetWatchedReadIsCall(bool bIsCall);

// --- surface
// --------------------------------------------------------------------------------------------------
/// Overrides what the calling process reports, even while a real context is current. Without an override a
/// current real context is reported; without either: surface 0x1000, context 0x2000, window 0x3000, 1280x720.
void SetCurrentSurface(SurfaceHandle hSurface);
void SetCurrentContext(ContextHandle hContext);
/// Tells whoever watches (see WatchContexts()) of the end of a context. Nothing is destroyed.
void DestroyContext(ContextHandle hContext);
void SetWindow(WindowHandle hWindow);
void SetClientSize(u32 uWidth, u32 uHeight);
void SetClientSizeFails(bool bFails);
void SetPixelFormat(i32 iFormat);
/// What DesktopSize() answers; unknown by default.
void SetDesktopSize(u32 uWidth, u32 uHeight);
u32 ClientSizeCalls();
/// Drops the overrides above.
void UseRealSurface();

// --- entry points of the GL
/// Makes InitGlew() fail (default false). Calls so far.
void SetGlewInitFails(bool bFails);
u32 GlewInitCalls();
/// Called at the end of every InitGlew() that succeeds, e.g. to take entry points away; null for none.
void SetAfterGlewInit(void (*fnCallback)());

// --- threads
// --------------------------------------------------------------------------------------------------
/// Real: started at once. Held: recorded, run only by RunHeldThread(). Refused: StartThread() answers null.
enum class ThreadMode : u8 { Real, Held, Refused };
void SetThreadMode(ThreadMode eMode);
/// Runs the oldest held thread on the caller's thread; false if there is none. Its result goes to *puResult.
bool RunHeldThread(u32* puResult = nullptr);
u32 HeldThreads();
u32 StartedThreads();
u32 KilledThreads();
/// How many of those calls had a handle that no start gave out.
u32 KilledStrangers();
/// Called inside StartThread, ahead of the start.
void SetStartStep(std::function<void()> fnStep);
/// Waits for every real thread started so far.
void JoinThreads();
/// Spin count of the last CriticalSection::Initialize(), and how many sections exist now.
u32 LastSpinCount();
u32 LiveCriticalSections();

// --- log and folders
// ------------------------------------------------------------------------------------------
std::vector<std::string> LogLines();
std::vector<std::pair<std::u16string, std::string>> MessageBoxes();
/// Folder that CommonDataFolder() answers; default "/headless/data". An empty one makes it fail.
void SetCommonDataFolder(const char16_t* wzFolder);
void SetCommonDataFolder(const std::string& strUtf8);
/// Paths given to OpenFileForRead(), in UTF-8.
std::vector<std::string> OpenedFiles();

// --- settings store
// ---------------------------------------------------------------------------------------------
/// Makes a key, or a value in a key that is made if missing; a value there already is replaced.
void AddSettingsKey(const char16_t* wzPath);
void SetSettingsNumber(const char16_t* wzPath, const char16_t* wzName, u32 uValue);
void SetSettingsText(const char16_t* wzPath, const char16_t* wzName, const char16_t* wzValue);
void SetSettingsBytes(const char16_t* wzPath, const char16_t* wzName, SettingsType eType,
                      std::vector<u8> vecBytes);
void ClearSettings();
/// Paths given to OpenSettingsKey(), found or not; and how many keys are open now.
std::vector<std::u16string> AskedSettingsKeys();
u32 OpenSettingsKeys();

// --- segment
// --------------------------------------------------------------------------------------------------
/// Writes the initial image again.
void ResetSegment();

} // namespace platform::headless
