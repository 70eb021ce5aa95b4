// The GL functions of version 1.1 and the three GLX functions that the core and GLEW call by name. Linking to
// libGL would pull it into every process that loads the library, so each name is a hidden jump through a
// table that is filled from the host's own libraries. Before that, and for a missing function, a jump ends in
// a function that does nothing and answers 0.
#include "platform/linux/host_gl.h"
#include <cstring>

#if !defined(__x86_64__)
#error "the forwarders are written for x86-64"
#endif

#define GL_NAME(name) +1
constexpr u32 g_uGlNames = 0
#include "platform/linux/gl_names.inc"
    ;
#undef GL_NAME

extern "C" {
__attribute__((visibility("hidden"))) void OrvinGlNothing();
extern __attribute__((visibility("hidden"))) void* g_apOrvinGl[g_uGlNames];
}

#define GL_NAME(name) reinterpret_cast<void*>(&OrvinGlNothing),
void* g_apOrvinGl[g_uGlNames] = {
#include "platform/linux/gl_names.inc"
};
#undef GL_NAME

#define GL_NAME(name) #name,
static const char* const g_aszGlNames[g_uGlNames] = {
#include "platform/linux/gl_names.inc"
};
#undef GL_NAME

#define GL_NAME(name)                                                                                        \
    ".globl " #name "\n.hidden " #name "\n.type " #name ",@function\n" #name                                 \
    ":\n\tjmp *g_apOrvinGl+8*orvin_gl_index(%rip)\n.size " #name ",.-" #name                                 \
    "\n.set orvin_gl_index, orvin_gl_index+1\n"
asm(".pushsection .text\n"
    ".globl OrvinGlNothing\n.hidden OrvinGlNothing\n.type OrvinGlNothing,@function\n"
    "OrvinGlNothing:\n\txorl %eax, %eax\n\tret\n.size OrvinGlNothing,.-OrvinGlNothing\n"
    ".set orvin_gl_index, 0\n"
#include "platform/linux/gl_names.inc"
    ".popsection\n");
#undef GL_NAME

namespace platform::host {

void ResolveForwarders() noexcept {
    FindGl();
    void* const pNothing = reinterpret_cast<void*>(&OrvinGlNothing);
    for (u32 i = 0; i < g_uGlNames; ++i) {
        if (__atomic_load_n(&g_apOrvinGl[i], __ATOMIC_RELAXED) != pNothing) continue;
        if (void* const pReal = Symbol(g_aszGlNames[i]))
            __atomic_store_n(&g_apOrvinGl[i], pReal, __ATOMIC_RELEASE);
    }
}

} // namespace platform::host

namespace {

void* NoGlxDisplay() { return nullptr; }

} // namespace

extern "C" {

__attribute__((visibility("hidden"))) void* glXGetProcAddressARB(const unsigned char* puName) {
    const auto& st = platform::host::Functions();
    const char* const szName = reinterpret_cast<const char*>(puName);
    if (!platform::host::EglIsCurrent())
        return st.glXGetProcAddressARB ? st.glXGetProcAddressARB(puName) : nullptr;
    // A dispatching libEGL may answer any name that begins with "gl", GLX ones too; in an EGL context there
    // is no GLX display.
    if (!std::strcmp(szName, "glXGetCurrentDisplay")) return reinterpret_cast<void*>(&NoGlxDisplay);
    if (!std::strncmp(szName, "glX", 3)) return nullptr;
    void* const pSymbol = st.eglGetProcAddress ? st.eglGetProcAddress(szName) : nullptr;
    return pSymbol ? pSymbol : platform::host::Symbol(szName);
}

__attribute__((visibility("hidden"))) int glXQueryVersion(void* hDisplay, int* piMajor, int* piMinor) {
    const auto& st = platform::host::Functions();
    return st.glXQueryVersion ? st.glXQueryVersion(hDisplay, piMajor, piMinor) : 0;
}

__attribute__((visibility("hidden"))) const char* glXGetClientString(void* hDisplay, int iName) {
    const auto& st = platform::host::Functions();
    return st.glXGetClientString ? st.glXGetClientString(hDisplay, iName) : "";
}

} // extern "C"
