#pragma once
// Lays and lifts the detour over wglSwapBuffers.
//
// How it is laid. OnProcessAttach() (entry/attach.cpp) calls Hook_graph(), which makes the engine and then
// looks for other overlays. If one is loaded, the delay thread is started, which calls Hook_graph() once
// more after 15 seconds; ours then ends up outermost. Otherwise Hook_openGL() runs with g_csHook held: it
// finds opengl32, looks up 44 functions and lays the detour in this order: create it with the closed gate as
// its destination (platform/swap_gate.h), open the gate onto the trampoline, enable it. If that fails, the
// retry thread tries ten times more, 50 milliseconds apart.
//
// How it is lifted. deInit_GWDll_GL() (entry/exports.cpp) calls UnHook_graph_GL(): end the retry thread,
// close the gate and wait for the swaps inside, then take away what those swaps stand on (API claim, notice
// of contexts, detour, resources), last of all the engine.
//
// Traps:
// - Three threads come here: the one that loads or unloads the library, the delay thread and the retry
//   thread. A thread's handle stays set when it has ended by itself, which keeps a second one away.
// - One lock, g_csHook, guards laying, the start of threads, and making and dropping the engine. It is not
//   recursive, and Hook_openGL() does not take it: call that with g_csHook held only.
// - A thread cannot be killed on every system; where it can't, it is only told to stop. So whoever has waited
//   for the lock asks platform::StopRequested() once it has it, or it would lay what was just lifted.
// - Attach and detach run under the loader's lock on Windows. A new thread passes the loader ahead of its
//   first step, so neither may wait for one. Each thread holds a reference of the library until its end; see
//   platform/win32/threads.cpp for what KillThread() does with a thread inside the loader.
// - A swap that loads modules (the build of resources does) holds the library first, by
//   platform::HoldLibraryForSwap(): the unload waits for that swap while it holds the loader's lock.
// - At the end of the process none of this runs, since the holder of the lock may be dead. OnProcessEnd()
//   gives back the records and the API claim, and that is all.
#include "platform/minhook.h"
#include "platform/threads.h"
#include "platform/types.h"
#include <atomic>

/// Thin wrapper of the detour engine: initialised with the object, uninitialised with it.
class CMiniHook {
  public:
    CMiniHook() noexcept;
    ~CMiniHook();
    CMiniHook(const CMiniHook&) = delete;
    CMiniHook& operator=(const CMiniHook&) = delete;

    MH_STATUS CreateHook(void* pTarget, void* pDetour, void** ppTrampoline) noexcept;
    MH_STATUS EnableHook(void* pTarget) noexcept;
    MH_STATUS RemoveHook(void* pTarget) noexcept;
};

extern void* g_hHookGetMSGOfGL;            ///< what CallNextHookEx needs; null until message 1280 was seen
extern platform::CriticalSection g_csHook; ///< guards Hook_openGL
extern std::atomic<CMiniHook*> g_pMiniHook;
extern std::atomic<platform::ThreadHandle> g_hThread_DelayHook;       ///< stays set after the thread ended
extern std::atomic<platform::ThreadHandle> g_hThreadToTryHookGLAgain; ///< stays set after the thread ended
extern void* g_hOpenGL;                                               ///< opengl32.dll
extern void* g_pHookTarget;                                           ///< the target while a hook stands

/// Names that GetAllGlFuncs looks up, and what it found.
constexpr u32 g_uGlFuncCount = 44;
extern const char* const g_aszGlFuncs[];
extern void* g_apGlFuncs[g_uGlFuncCount];
/// Resolves all of g_aszGlFuncs from g_hOpenGL. False if one is missing.
bool GetAllGlFuncs() noexcept;
/// 0: detour laid and enabled; 1: was in place; -1: no g_pMiniHook; -3: GetAllGlFuncs failed; -9: engine
/// failed.
i32 Hook_openGL() noexcept;
/// 0 or 1: the detour is in place; -1: not, a thread may try again later.
i32 Hook_graph() noexcept;
/// 0, or -1 if not hooked. deInitCase is only logged. Does not take g_csHook: a thread that was ended while
/// it held that would stop the detach for good. Callers stop the retry thread first.
i32 UnHook_openGL(u32 deInitCase) noexcept;
void UnHook_graph_GL(u32 deInitCase) noexcept;
/// 0; -1 without a hook handle; -2 if the hook could not be removed.
i32 Uninstall_HookFunc_GetMSGOfGL() noexcept;
/// As before the first attach. For tests and simulated processes; no thread of the hooking may live.
void g_fnResetHooking() noexcept;
