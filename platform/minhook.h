#pragma once
// MinHook's interface. Win32: an installed MinHook or our own engine on the Zydis decoder. Linux and
// headless: those calls over interposition, where laying a detour publishes the real function as the
// trampoline.
#include "platform/types.h"

enum MH_STATUS : i32 {
    MH_UNKNOWN = -1,
    MH_OK = 0,
    MH_ERROR_ALREADY_INITIALIZED = 1,
    MH_ERROR_NOT_INITIALIZED = 2,
    MH_ERROR_ALREADY_CREATED = 3,
    MH_ERROR_NOT_CREATED = 4,
    MH_ERROR_ENABLED = 5,
    MH_ERROR_DISABLED = 6,
    MH_ERROR_NOT_EXECUTABLE = 7,
    MH_ERROR_UNSUPPORTED_FUNCTION = 8,
    MH_ERROR_MEMORY_ALLOC = 9,
    MH_ERROR_MEMORY_PROTECT = 10,
    MH_ERROR_MODULE_NOT_FOUND = 11,
    MH_ERROR_FUNCTION_NOT_FOUND = 12
};

extern "C" {
MH_STATUS MH_Initialize();
MH_STATUS MH_Uninitialize();
MH_STATUS MH_CreateHook(void* pTarget, void* pDetour, void** ppOriginal);
MH_STATUS MH_EnableHook(void* pTarget);
MH_STATUS MH_DisableHook(void* pTarget);
MH_STATUS MH_RemoveHook(void* pTarget);
}
