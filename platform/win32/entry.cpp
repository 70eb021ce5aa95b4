// The library's entry point.
#include "platform/win32/windows_api.h"
#include "shared/attach.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE hModule, DWORD uReason, LPVOID) {
    OnEntry();
    if (uReason == DLL_PROCESS_ATTACH) OnProcessAttach(hModule);
    if (uReason == DLL_PROCESS_DETACH) OnProcessDetach();
    return TRUE;
}
