#include "platform/linux/swap.h"
#include "platform/linux/host_gl.h"
#include "platform/process.h"

namespace platform {
namespace host {

i32 RealSwap(void* hSurface) noexcept {
    preload::SwapLink* const pLink = Link();
    i32 iResult = 0;
    if (pLink && pLink->m_fnRunRealSwap(&iResult)) return iResult;
    const WindowSystem& st = Functions();
    if (EglIsCurrent())
        return st.eglSwapBuffers ? static_cast<i32>(st.eglSwapBuffers(st.eglGetCurrentDisplay(), hSurface))
                                 : 0;
    void* const hDisplay = st.glXGetCurrentDisplay ? st.glXGetCurrentDisplay() : nullptr;
    if (!hDisplay || !st.glXSwapBuffers) return 0;
    st.glXSwapBuffers(hDisplay, reinterpret_cast<unsigned long>(hSurface));
    return 1;
}

i32 RealDeleteContext(void* hContext) noexcept {
    const WindowSystem& st = Functions();
    if (EglIsCurrent())
        return st.eglDestroyContext
                   ? static_cast<i32>(st.eglDestroyContext(st.eglGetCurrentDisplay(), hContext))
                   : 0;
    void* const hDisplay = st.glXGetCurrentDisplay ? st.glXGetCurrentDisplay() : nullptr;
    if (!hDisplay || !st.glXDestroyContext) return 0;
    st.glXDestroyContext(hDisplay, hContext);
    return 1;
}

} // namespace host

i32 ImportedSwapBuffers(void* hSurface) noexcept { return host::RealSwap(hSurface); }
i32 ImportedDeleteContext(void* hContext) noexcept { return host::RealDeleteContext(hContext); }

} // namespace platform
