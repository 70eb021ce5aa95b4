// The ends of contexts, which the library is told of. The real functions run in any case.
#include "platform/linux/preload_real.h"
#include "platform/linux/preload_swap.h"

using namespace platform::preload;

namespace {

void Tell(void* hContext) noexcept {
    if (const auto fnGone = Link().m_fnContextGone.load(std::memory_order_acquire)) fnGone(hContext);
}

} // namespace

void glXDestroyContext(void* hDisplay, void* hContext) {
    const auto fnReal = reinterpret_cast<void (*)(void*, void*)>(Real(Name::GlxDestroyContext));
    if (hContext) Tell(hContext);
    if (fnReal) fnReal(hDisplay, hContext);
}

u32 eglDestroyContext(void* hDisplay, void* hContext) {
    const auto fnReal = reinterpret_cast<u32 (*)(void*, void*)>(Real(Name::EglDestroyContext));
    if (hContext) Tell(hContext);
    return fnReal ? fnReal(hDisplay, hContext) : 0;
}

u32 eglTerminate(void* hDisplay) {
    const auto fnReal = reinterpret_cast<u32 (*)(void*)>(Real(Name::EglTerminate));
    Tell(nullptr);
    return fnReal ? fnReal(hDisplay) : 0;
}
