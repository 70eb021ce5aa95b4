#pragma once
// The process, its modules and its window messages.
#include "platform/types.h"

namespace platform {

u32 CurrentProcessId() noexcept;
u32 CurrentThreadId() noexcept;
/// What tells a process from a later one with its id, as far as the system says; 0 if it says nothing.
u32 ProcessStamp(u32 uProcessId) noexcept;
/// True if no process has that id, or another one than that of the stamp (0: unknown). False in doubt.
bool IsProcessGone(u32 uProcessId, u32 uStamp) noexcept;
/// Image path of this process in narrow text, at most uCapacity - 1 characters and terminated.
void ProcessPath(char* szOut, u32 uCapacity) noexcept;
/// Duplicates the current thread's handle with synchronise access and drops it (Win32); nothing elsewhere.
void DuplicateCurrentThreadHandle() noexcept;

/// True if a module whose file part equals one of the names (case folded) is mapped here. All names are
/// sought in one walk. Win32: at most 2048 modules; the process handle opened for the walk stays open on a
/// hit.
bool IsAnyModuleLoaded(const char* const* aszNames, u32 uCount) noexcept;
/// IsAnyModuleLoaded for one name.
inline bool IsModuleLoaded(const char* szName) noexcept { return IsAnyModuleLoaded(&szName, 1); }
/// Handle of a mapped GL library ("opengl32.dll" and its stand-ins), null if not mapped.
void* FindModule(const char* szName) noexcept;
void* LoadModule(const char* szName) noexcept;
/// Address of an exported function, null if missing. Linux maps wgl names to the window system's own.
void* FindProc(void* hModule, const char* szName) noexcept;
/// The swap as linked in (the import); the way out when no trampoline was made. Argument: the surface.
i32 ImportedSwapBuffers(void* hSurface) noexcept;
i32 ImportedDeleteContext(void* hContext) noexcept;

/// Registered window message id. Linux: fixed numbers in 0xC000-0xFFFF.
u32 RegisterMessage(const char* szName) noexcept;
std::intptr_t CallNextMessageHook(void* hHook, i32 iCode, std::uintptr_t wParam,
                                  std::intptr_t lParam) noexcept;
bool UnhookMessageHook(void* hHook) noexcept;
void BroadcastMessage(u32 uMessage, std::uintptr_t wParam) noexcept;
/// If lParam of a message-hook callback carries message uNumber, true and its lParam in *ppValue.
bool HookMessageParam(std::intptr_t lParam, u32 uNumber, void** ppValue) noexcept;

} // namespace platform
