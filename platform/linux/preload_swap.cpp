// What the host's swaps meet. Without a detour, inside another swap (EGL may stand on GLX) and without a GL
// context on the thread, the call goes straight to the real function.
#include "platform/linux/preload_swap.h"
#include "platform/linux/preload_real.h"
#include <cerrno>
#include <ctime>

namespace platform::preload {
namespace {

constexpr i32 g_iEglContextClientType = 0x3097, g_iEglOpenGlApi = 0x30A2;
constexpr i32 g_iNoRects = -1;

struct ThreadState {
    SwapCall* m_pCall = nullptr;
    u32 m_uDepth = 0;
};
thread_local ThreadState t_st __attribute__((tls_model("initial-exec")));

void RunReal(SwapCall& st) noexcept {
    ++t_st.m_uDepth;
    if (st.m_eApi == SwapApi::Glx) {
        reinterpret_cast<void (*)(void*, unsigned long)>(st.m_fnReal)(
            st.m_hDisplay, reinterpret_cast<unsigned long>(st.m_hDrawable));
        st.m_iResult = 1;
    } else if (st.m_iRects == g_iNoRects) {
        st.m_iResult = static_cast<i32>(
            reinterpret_cast<u32 (*)(void*, void*)>(st.m_fnReal)(st.m_hDisplay, st.m_hDrawable));
    } else {
        st.m_iResult = static_cast<i32>(reinterpret_cast<u32 (*)(void*, void*, const i32*, i32)>(st.m_fnReal)(
            st.m_hDisplay, st.m_hDrawable, st.m_piRects, st.m_iRects));
    }
    --t_st.m_uDepth;
    st.m_bDone = true;
}

const SwapCall* CurrentCall() noexcept { return t_st.m_pCall; }

bool RunRealSwap(i32* piResult) noexcept {
    SwapCall* const pCall = t_st.m_pCall;
    if (!pCall) return false;
    if (!pCall->m_bDone) RunReal(*pCall);
    *piResult = pCall->m_iResult;
    return true;
}

constinit SwapLink g_stLink{nullptr, &CurrentCall, &RunRealSwap, nullptr, &RealSymbol};

void* GlxFunction(const char* szName) noexcept {
    const auto fnLookUp = reinterpret_cast<void* (*)(const unsigned char*)>(Real(Name::GlxGetProcAddressArb));
    return fnLookUp ? fnLookUp(reinterpret_cast<const unsigned char*>(szName)) : nullptr;
}

bool GlxContextHere() noexcept {
    static const auto fnCurrent = reinterpret_cast<void* (*)()>(GlxFunction("glXGetCurrentContext"));
    return fnCurrent && fnCurrent();
}

void* EglFunction(const char* szName) noexcept {
    const auto fnLookUp = reinterpret_cast<void* (*)(const char*)>(Real(Name::EglGetProcAddress));
    return fnLookUp ? fnLookUp(szName) : nullptr;
}

/// A context of desktop GL: an ES context answers the version gate too, but knows neither the state calls nor
/// the shaders.
bool EglContextHere(void* hDisplay) noexcept {
    static const auto fnCurrent = reinterpret_cast<void* (*)()>(EglFunction("eglGetCurrentContext"));
    static const auto fnQuery =
        reinterpret_cast<u32 (*)(void*, void*, i32, i32*)>(EglFunction("eglQueryContext"));
    void* const hContext = fnCurrent && fnQuery ? fnCurrent() : nullptr;
    i32 iType = 0;
    return hContext && fnQuery(hDisplay, hContext, g_iEglContextClientType, &iType) &&
           iType == g_iEglOpenGlApi;
}

bool ContextHere(const SwapCall& st) noexcept {
    return st.m_eApi == SwapApi::Glx ? GlxContextHere() : EglContextHere(st.m_hDisplay);
}

/// The thread whose exit() has come to the destructors of libraries; null before.
std::atomic<const ThreadState*> g_pEnding{nullptr};

/// The window system's library frees what a swap writes to, and a thread that goes on swapping meanwhile may
/// crash in it, at the program's very end. Such a swap stands still for a while, and then is none: nobody
/// will see its picture. Only for a while, as somebody may wait for this thread after all.
bool HasEndCome() noexcept {
    constexpr timespec stWhile{0, 100'000'000};
    const ThreadState* const pEnding = g_pEnding.load(std::memory_order_acquire);
    if (!pEnding || pEnding == &t_st) return false;
    nanosleep(&stWhile, nullptr);
    return true;
}

i32 Present(SwapCall& st) noexcept {
    const int iError = errno;
    if (HasEndCome()) return 1;
    AttachOnce();
    const auto fnDetour = t_st.m_uDepth == 0 ? g_stLink.m_fnDetour.load(std::memory_order_acquire) : nullptr;
    if (fnDetour && ContextHere(st)) {
        ++t_st.m_uDepth;
        t_st.m_pCall = &st;
        fnDetour(st.m_hDrawable);
        t_st.m_pCall = nullptr;
        --t_st.m_uDepth;
    }
    if (!st.m_bDone) RunReal(st);
    errno = iError;
    return st.m_iResult;
}

u32 PresentEgl(Name eName, void* hDisplay, void* hSurface, const i32* piRects, i32 iRects) noexcept {
    void* const fnReal = Real(eName);
    SwapCall st{SwapApi::Egl, hDisplay, hSurface, fnReal, piRects, iRects, 0, false};
    return fnReal ? static_cast<u32>(Present(st)) : 0;
}

/// What a look-up function of the window system answers for an interposed name: ours, where there is a real
/// one.
void* Substitute(const char* szName, void* pReal) noexcept {
    const Name eName = pReal ? Find(szName) : Name::Count;
    if (eName == Name::Count) return pReal;
    AttachOnce();
    Remember(eName, pReal);
    return Interposer(eName);
}

void* LookUpGlx(Name eSelf, const unsigned char* puName) noexcept {
    const auto fnReal = reinterpret_cast<void* (*)(const unsigned char*)>(Real(eSelf));
    return fnReal ? Substitute(reinterpret_cast<const char*>(puName), fnReal(puName)) : nullptr;
}

/// Programs that link to GL are attached at their start. Others are when they first ask for a swap.
__attribute__((constructor)) void OnLoad() {
    const int iError = errno;
    if (GlxIsMapped()) AttachOnce();
    errno = iError;
}

/// Exit handlers are through by now, and a preloaded library comes ahead of those that the program needs.
__attribute__((destructor)) void OnEnd() { g_pEnding.store(&t_st, std::memory_order_release); }

} // namespace

SwapLink& Link() noexcept { return g_stLink; }

void* Interposer(Name eName) noexcept {
    switch (eName) {
    case Name::GlxSwapBuffers:
        return reinterpret_cast<void*>(&glXSwapBuffers);
    case Name::GlxGetProcAddress:
        return reinterpret_cast<void*>(&glXGetProcAddress);
    case Name::GlxGetProcAddressArb:
        return reinterpret_cast<void*>(&glXGetProcAddressARB);
    case Name::EglSwapBuffers:
        return reinterpret_cast<void*>(&eglSwapBuffers);
    case Name::EglSwapBuffersWithDamageKhr:
        return reinterpret_cast<void*>(&eglSwapBuffersWithDamageKHR);
    case Name::EglSwapBuffersWithDamageExt:
        return reinterpret_cast<void*>(&eglSwapBuffersWithDamageEXT);
    case Name::EglGetProcAddress:
        return reinterpret_cast<void*>(&eglGetProcAddress);
    case Name::GlxDestroyContext:
        return reinterpret_cast<void*>(&glXDestroyContext);
    case Name::EglDestroyContext:
        return reinterpret_cast<void*>(&eglDestroyContext);
    case Name::EglTerminate:
        return reinterpret_cast<void*>(&eglTerminate);
    case Name::Count:
        break;
    }
    return nullptr;
}

} // namespace platform::preload

using namespace platform::preload;

void glXSwapBuffers(void* hDisplay, unsigned long uDrawable) {
    void* const fnReal = Real(Name::GlxSwapBuffers);
    SwapCall st{SwapApi::Glx, hDisplay, reinterpret_cast<void*>(uDrawable), fnReal, nullptr, g_iNoRects, 0,
                false};
    if (fnReal) Present(st);
}

u32 eglSwapBuffers(void* hDisplay, void* hSurface) {
    return PresentEgl(Name::EglSwapBuffers, hDisplay, hSurface, nullptr, g_iNoRects);
}

u32 eglSwapBuffersWithDamageKHR(void* hDisplay, void* hSurface, const i32* piRects, i32 iRects) {
    return PresentEgl(Name::EglSwapBuffersWithDamageKhr, hDisplay, hSurface, piRects,
                      iRects < 0 ? 0 : iRects);
}

u32 eglSwapBuffersWithDamageEXT(void* hDisplay, void* hSurface, const i32* piRects, i32 iRects) {
    return PresentEgl(Name::EglSwapBuffersWithDamageExt, hDisplay, hSurface, piRects,
                      iRects < 0 ? 0 : iRects);
}

void* glXGetProcAddress(const unsigned char* puName) { return LookUpGlx(Name::GlxGetProcAddress, puName); }
void* glXGetProcAddressARB(const unsigned char* puName) {
    return LookUpGlx(Name::GlxGetProcAddressArb, puName);
}

void* eglGetProcAddress(const char* szName) {
    const auto fnReal = reinterpret_cast<void* (*)(const char*)>(Real(Name::EglGetProcAddress));
    return fnReal ? Substitute(szName, fnReal(szName)) : nullptr;
}
