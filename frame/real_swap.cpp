#include "frame/real_swap.h"

#include "frame/frame_trace.h"
#include "platform/gl_api.h"
#include "platform/last_error.h"
#include "platform/process.h"

std::atomic<bool> g_bHooked = false;
void* pOrg_GL_wglSwapBuffers = nullptr;
void* g_pTrampoline = nullptr;

/// Through the trampoline if one was made, else the looked-up entry, else the imported one.
static i32 RealSwap(void* hdc) {
    void* const pEntry = g_pTrampoline ? g_pTrampoline : pOrg_GL_wglSwapBuffers;
    return pEntry ? reinterpret_cast<i32 (*)(void*)>(pEntry)(hdc) : platform::ImportedSwapBuffers(hdc);
}

i32 g_fnSwapAndDrain(void* hdc) {
    const i32 iResult = RealSwap(hdc);
    const platform::ErrorKeeper keeper; // what the real swap left is the host's
    g_fnNoteSwapDone(hdc);
    // KEEP(hosts): with any key. One error of the program's own goes with it; one of ours must not reach it.
    glGetError();
    return iResult;
}
