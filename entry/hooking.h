#pragma once
// Lays and lifts the detour over wglSwapBuffers. Run by the thread that loads the library, by at most one
// delay thread and at most one retry thread.
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
/// 0, or -1 if not hooked. deInitCase is only logged.
i32 UnHook_openGL(u32 deInitCase) noexcept;
void UnHook_graph_GL(u32 deInitCase) noexcept;
/// 0; -1 without a hook handle; -2 if the hook could not be removed.
i32 Uninstall_HookFunc_GetMSGOfGL() noexcept;
/// As before the first attach. For tests and simulated processes; no thread of the hooking may live.
void g_fnResetHooking() noexcept;
