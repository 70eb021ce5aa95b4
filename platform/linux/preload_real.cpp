#include "platform/linux/preload_real.h"
#include "platform/linux/data_folder.h"
#include "platform/linux/preload_swap.h"
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace platform::preload {
namespace {

constexpr u32 g_uNames = static_cast<u32>(Name::Count);
constexpr const char* g_aszNames[g_uNames] = {
    "glXSwapBuffers",    "glXGetProcAddress",           "glXGetProcAddressARB",
    "eglSwapBuffers",    "eglSwapBuffersWithDamageKHR", "eglSwapBuffersWithDamageEXT",
    "eglGetProcAddress", "glXDestroyContext",           "eglDestroyContext",
    "eglTerminate",
};
constexpr const char* g_aszGlxLibraries[] = {"libGL.so.1", "libGLX.so.0"};
constexpr const char* g_aszEglLibraries[] = {"libEGL.so.1"};
constexpr char g_szLibrary[] = "libORVIN-OSD64-GL.so";

std::atomic<void*> g_apReal[g_uNames];

using DlsymFunction = void* (*)(void*, const char*);

DlsymFunction LookUpDlsym() noexcept {
    // By version, since the plain name is ours. The newer version stands in the C library since threads and
    // loader moved into it.
    for (const char* const szVersion : {"GLIBC_2.34", "GLIBC_2.2.5"})
        if (void* const pSymbol = dlvsym(RTLD_NEXT, "dlsym", szVersion))
            return reinterpret_cast<DlsymFunction>(pSymbol);
    return nullptr;
}

bool IsOurs(void* pSymbol) noexcept {
    for (u32 i = 0; i < g_uNames; ++i)
        if (Interposer(static_cast<Name>(i)) == pSymbol) return true;
    return false;
}

void* InMapped(const char* szLibrary, const char* szName) noexcept {
    void* const hModule = dlopen(szLibrary, RTLD_LAZY | RTLD_LOCAL | RTLD_NOLOAD);
    return hModule ? RealSymbol(hModule, szName) : nullptr;
}

void* LookUpReal(Name eName) noexcept {
    const char* const szName = g_aszNames[static_cast<u32>(eName)];
    if (void* const pSymbol = RealSymbol(RTLD_NEXT, szName)) return pSymbol;
    if (szName[0] == 'e') return InMapped(g_aszEglLibraries[0], szName);
    for (const char* const szLibrary : g_aszGlxLibraries)
        if (void* const pSymbol = InMapped(szLibrary, szName)) return pSymbol;
    return nullptr;
}

/// Extensions of EGL are reached by its look-up function only.
void* LookUpExtension(Name eName) noexcept {
    if (eName != Name::EglSwapBuffersWithDamageKhr && eName != Name::EglSwapBuffersWithDamageExt)
        return nullptr;
    const auto fnLookUp = reinterpret_cast<void* (*)(const char*)>(Real(Name::EglGetProcAddress));
    return fnLookUp ? fnLookUp(g_aszNames[static_cast<u32>(eName)]) : nullptr;
}

/// Path of the library in the folder of this file.
bool LibraryPath(char* szPath, std::size_t uCapacity) noexcept {
    Dl_info stSelf{};
    if (!dladdr(reinterpret_cast<void*>(&LibraryPath), &stSelf) || !stSelf.dli_fname) return false;
    const char* const szSlash = std::strrchr(stSelf.dli_fname, '/');
    const std::size_t uFolder = szSlash ? static_cast<std::size_t>(szSlash - stSelf.dli_fname) + 1 : 0;
    if (uFolder + sizeof g_szLibrary > uCapacity) return false;
    std::memcpy(szPath, stSelf.dli_fname, uFolder);
    std::memcpy(szPath + uFolder, g_szLibrary, sizeof g_szLibrary);
    return true;
}

} // namespace

void* RealDlsym() noexcept {
    static std::atomic<void*> pReal{nullptr};
    void* pKnown = pReal.load(std::memory_order_relaxed);
    if (!pKnown) pReal = pKnown = reinterpret_cast<void*>(LookUpDlsym());
    return pKnown;
}

void* RealSymbol(void* hModule, const char* szName) noexcept {
    return reinterpret_cast<DlsymFunction>(RealDlsym())(hModule, szName);
}

void* Real(Name eName) noexcept {
    std::atomic<void*>& pKnown = g_apReal[static_cast<u32>(eName)];
    if (void* const pReal = pKnown.load(std::memory_order_acquire)) return pReal;
    void* pReal = LookUpReal(eName);
    if (!pReal) pReal = LookUpExtension(eName);
    Remember(eName, pReal);
    return pKnown.load(std::memory_order_acquire);
}

void Remember(Name eName, void* pReal) noexcept {
    void* pNone = nullptr;
    if (pReal && !IsOurs(pReal))
        g_apReal[static_cast<u32>(eName)].compare_exchange_strong(pNone, pReal, std::memory_order_acq_rel);
}

Name Find(const char* szName) noexcept {
    // Nearly every look-up of a program is of another name: two letters tell.
    const bool bPossible = szName && ((szName[0] == 'g' && szName[1] == 'l' && szName[2] == 'X') ||
                                      (szName[0] == 'e' && szName[1] == 'g' && szName[2] == 'l'));
    for (u32 i = 0; bPossible && i < g_uNames; ++i)
        if (!std::strcmp(szName, g_aszNames[i])) return static_cast<Name>(i);
    return Name::Count;
}

/// Without the shaders nothing can be drawn, and a try may harm the host.
static bool HasShaders(char* szPath, u32 uCapacity) noexcept {
    constexpr char c_szShader[] = "/ZARN/Orvin Deck/ORVIN-OSD/Data/DrawBasic_GL_C.vs";
    if (!host::DataFolder(szPath, uCapacity)) return false;
    const std::size_t uLength = std::strlen(szPath);
    if (uLength + sizeof c_szShader > uCapacity) return false;
    std::memcpy(szPath + uLength, c_szShader, sizeof c_szShader);
    return access(szPath, R_OK) == 0;
}

void AttachOnce() noexcept {
    static std::atomic<bool> bDone{false};
    if (bDone.load(std::memory_order_relaxed) || bDone.exchange(true)) return;
    const int iError = errno;
    static char szPath[PATH_MAX]; // the stack may be small
    if (HasShaders(szPath, sizeof szPath) && LibraryPath(szPath, sizeof szPath))
        dlopen(szPath, RTLD_NOW | RTLD_LOCAL);
    errno = iError;
}

bool GlxIsMapped() noexcept {
    for (const char* const szLibrary : g_aszGlxLibraries)
        if (dlopen(szLibrary, RTLD_LAZY | RTLD_LOCAL | RTLD_NOLOAD)) return true;
    return false;
}

} // namespace platform::preload
