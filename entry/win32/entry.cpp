// The library's entry point.
#include "entry/attach.h"
#include "platform/last_error.h"
#include "platform/win32/windows_api.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE hModule, DWORD uReason, LPVOID) {
    const platform::ErrorKeeper keeper; // the host may have entered here out of PeekMessage
    OnEntry();
    if (uReason == DLL_PROCESS_ATTACH) OnProcessAttach(hModule);
    if (uReason == DLL_PROCESS_DETACH) OnProcessDetach();
    return TRUE;
}

extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE hModule, DWORD uReason, LPVOID pReserved);

/// Where the image starts, ahead of the C runtime. With the end of the process all other threads were killed
/// wherever they stood, in the heap too; so the runtime's own end, which destroys static objects, is left
/// out.
extern "C" BOOL WINAPI OrvinImageEntry(HINSTANCE hModule, DWORD uReason, LPVOID pReserved) {
    if (uReason != DLL_PROCESS_DETACH || !pReserved) return DllMainCRTStartup(hModule, uReason, pReserved);
    OnProcessEnd();
    return TRUE;
}
