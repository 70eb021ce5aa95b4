#include "platform/linux/host_gl.h"
#include <array>
#include <cstring>
#include <dlfcn.h>

namespace platform::host {
namespace {

constexpr const char* g_aszLibraries[] = {"libGL.so.1", "libOpenGL.so.0", "libGLX.so.0", "libEGL.so.1"};
constexpr u32 g_uLibraries = std::size(g_aszLibraries);

// Handles of mapped libraries. A handle counts as a use, so the functions taken from it stay mapped.
std::atomic<void*> g_ahLibraries[g_uLibraries];

void* RealSymbol(void* hModule, const char* szName) noexcept {
    preload::SwapLink* const pLink = Link();
    return pLink ? pLink->m_fnRealSymbol(hModule, szName) : dlsym(hModule, szName);
}

/// Takes a use of every library mapped by now. True if there was a new one.
bool PinLibraries() noexcept {
    bool bNew = false;
    for (u32 i = 0; i < g_uLibraries; ++i) {
        if (g_ahLibraries[i].load(std::memory_order_acquire)) continue;
        if (void* const hModule = dlopen(g_aszLibraries[i], RTLD_LAZY | RTLD_LOCAL | RTLD_NOLOAD)) {
            g_ahLibraries[i].store(hModule, std::memory_order_release);
            bNew = true;
        }
    }
    return bNew;
}

void* SymbolInLibraries(const char* szName) noexcept {
    for (const auto& hLibrary : g_ahLibraries)
        if (void* const hModule = hLibrary.load(std::memory_order_acquire))
            if (void* const pSymbol = RealSymbol(hModule, szName)) return pSymbol;
    return nullptr;
}

template <class F> void Take(F& fnTarget, const char* szName) noexcept {
    if (!fnTarget) fnTarget = reinterpret_cast<F>(SymbolInLibraries(szName));
}

WindowSystem g_stFunctions;

void TakeGlx(WindowSystem& st) noexcept {
    Take(st.glXGetCurrentContext, "glXGetCurrentContext");
    Take(st.glXGetCurrentDrawable, "glXGetCurrentDrawable");
    Take(st.glXGetCurrentDisplay, "glXGetCurrentDisplay");
    Take(st.glXSwapBuffers, "glXSwapBuffers");
    Take(st.glXDestroyContext, "glXDestroyContext");
    Take(st.glXQueryDrawable, "glXQueryDrawable");
    Take(st.glXQueryContext, "glXQueryContext");
    Take(st.glXGetProcAddressARB, "glXGetProcAddressARB");
    Take(st.glXQueryVersion, "glXQueryVersion");
    Take(st.glXGetClientString, "glXGetClientString");
}

void TakeEgl(WindowSystem& st) noexcept {
    Take(st.eglGetCurrentContext, "eglGetCurrentContext");
    Take(st.eglGetCurrentSurface, "eglGetCurrentSurface");
    Take(st.eglGetCurrentDisplay, "eglGetCurrentDisplay");
    Take(st.eglSwapBuffers, "eglSwapBuffers");
    Take(st.eglDestroyContext, "eglDestroyContext");
    Take(st.eglQuerySurface, "eglQuerySurface");
    Take(st.eglGetProcAddress, "eglGetProcAddress");
}

void TakeFunctions() noexcept {
    TakeGlx(g_stFunctions);
    TakeEgl(g_stFunctions);
}

} // namespace

preload::SwapLink* Link() noexcept {
    static preload::SwapLink* const pLink =
        static_cast<preload::SwapLink*>(dlsym(RTLD_DEFAULT, preload::g_szLinkName));
    return pLink;
}

void* FindGl() noexcept {
    if (PinLibraries()) TakeFunctions();
    for (const auto& hLibrary : g_ahLibraries)
        if (void* const hModule = hLibrary.load(std::memory_order_acquire)) return hModule;
    return nullptr;
}

void* LoadGl() noexcept {
    if (void* const hModule = FindGl()) return hModule;
    // Kept open for good, like everything that the library takes hold of.
    if (!dlopen("libGL.so.1", RTLD_LAZY | RTLD_LOCAL)) return nullptr;
    return FindGl();
}

void* Symbol(const char* szName) noexcept {
    if (void* const pSymbol = SymbolInLibraries(szName)) return pSymbol;
    const WindowSystem& st = g_stFunctions;
    if (st.eglGetProcAddress)
        if (void* const pSymbol = st.eglGetProcAddress(szName)) return pSymbol;
    return st.glXGetProcAddressARB ? st.glXGetProcAddressARB(reinterpret_cast<const unsigned char*>(szName))
                                   : nullptr;
}

const WindowSystem& Functions() noexcept {
    static const bool bFirst = (FindGl(), true);
    (void)bFirst;
    return g_stFunctions;
}

bool EglIsCurrent() noexcept {
    preload::SwapLink* const pLink = Link();
    if (const preload::SwapCall* const pCall = pLink ? pLink->m_fnCurrentCall() : nullptr)
        return pCall->m_eApi == preload::SwapApi::Egl;
    const WindowSystem& st = Functions();
    if (st.glXGetCurrentContext && st.glXGetCurrentContext()) return false;
    return st.eglGetCurrentContext && st.eglGetCurrentContext();
}

} // namespace platform::host
