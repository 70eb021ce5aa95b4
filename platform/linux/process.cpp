#include "platform/process.h"
#include "platform/linux/host_gl.h"
#include "platform/linux/identity.h"
#include "platform/linux/process_stamp.h"
#include "platform/linux/swap.h"
#include <cstring>
#include <link.h>
#include <strings.h>
#include <unistd.h>

namespace platform {
namespace {

// Both ids are asked of the kernel once: the frame path reads them at every swap.
std::atomic<u32> g_uPid{0};
thread_local u32 t_uTid __attribute__((tls_model("initial-exec"))) = 0;

struct NameList {
    const char* const* m_aszNames;
    u32 m_uCount;
};

int CompareModule(dl_phdr_info* pInfo, std::size_t, void* pList) {
    const char* const szPath = pInfo->dlpi_name ? pInfo->dlpi_name : "";
    const char* const szSlash = std::strrchr(szPath, '/');
    const NameList& stList = *static_cast<const NameList*>(pList);
    for (u32 i = 0; i < stList.m_uCount; ++i) {
        const char* const szName = stList.m_aszNames[i];
        if (szName && *szName && strcasecmp(szSlash ? szSlash + 1 : szPath, szName) == 0) return 1;
    }
    return 0;
}

// The names of the other window system and what stands for them here.
struct NamePair {
    const char* m_szWgl;
    const char* m_szGlx;
    const char* m_szEgl;
};
constexpr NamePair g_astNames[] = {
    {"wglGetCurrentDC", "glXGetCurrentDrawable", "eglGetCurrentSurface"},
    {"wglGetCurrentContext", "glXGetCurrentContext", "eglGetCurrentContext"},
    {"wglGetProcAddress", "glXGetProcAddressARB", "eglGetProcAddress"},
};

void* FindWgl(const char* szName) noexcept {
    if (!std::strcmp(szName, "wglSwapBuffers")) return reinterpret_cast<void*>(&host::RealSwap);
    if (!std::strcmp(szName, "wglDeleteContext")) return reinterpret_cast<void*>(&host::RealDeleteContext);
    for (const NamePair& st : g_astNames)
        if (!std::strcmp(szName, st.m_szWgl)) {
            void* const pSymbol = host::Symbol(st.m_szGlx);
            return pSymbol ? pSymbol : host::Symbol(st.m_szEgl);
        }
    return nullptr;
}

} // namespace

void host::ForgetIdentity() noexcept {
    g_uPid = 0;
    t_uTid = 0;
}

u32 CurrentProcessId() noexcept {
    u32 uPid = g_uPid.load(std::memory_order_relaxed);
    if (uPid == 0) g_uPid = uPid = static_cast<u32>(getpid());
    return uPid;
}

u32 CurrentThreadId() noexcept {
    if (t_uTid == 0) t_uTid = static_cast<u32>(gettid());
    return t_uTid;
}

u32 ProcessStamp(u32 uProcessId) noexcept { return host::StampOf(uProcessId); }
bool IsProcessGone(u32 uProcessId, u32 uStamp) noexcept { return host::IsGone(uProcessId, uStamp); }

void ProcessPath(char* szOut, u32 uCapacity) noexcept {
    if (uCapacity == 0) return;
    const ssize_t iLength = readlink("/proc/self/exe", szOut, uCapacity - 1);
    szOut[iLength > 0 ? iLength : 0] = 0;
}

void DuplicateCurrentThreadHandle() noexcept {}

bool IsAnyModuleLoaded(const char* const* aszNames, u32 uCount) noexcept {
    NameList stList{aszNames, uCount};
    return dl_iterate_phdr(&CompareModule, &stList) != 0;
}

void* FindModule(const char*) noexcept {
    void* const hModule = host::FindGl();
    if (hModule) host::ResolveForwarders();
    return hModule;
}

void* LoadModule(const char*) noexcept {
    void* const hModule = host::LoadGl();
    if (hModule) host::ResolveForwarders();
    return hModule;
}

void* FindProc(void* hModule, const char* szName) noexcept {
    if (!hModule) return nullptr;
    return std::strncmp(szName, "wgl", 3) ? host::Symbol(szName) : FindWgl(szName);
}

u32 RegisterMessage(const char* szName) noexcept {
    u32 uHash = 2166136261u;
    for (; *szName; ++szName) uHash = (uHash ^ static_cast<u8>(*szName)) * 16777619u;
    return 0xC000u | (uHash & 0x3FFFu);
}

std::intptr_t CallNextMessageHook(void*, i32, std::uintptr_t, std::intptr_t) noexcept { return 0; }
bool UnhookMessageHook(void*) noexcept { return false; }
void BroadcastMessage(u32, std::uintptr_t) noexcept {}

bool HookMessageParam(std::intptr_t lParam, u32 uNumber, void** ppValue) noexcept {
    // As a message of Windows is laid out.
    struct Message {
        void* m_hWindow;
        u32 m_uMessage;
        std::uintptr_t m_wParam;
        std::intptr_t m_lParam;
    };
    const auto* const pMessage = reinterpret_cast<const Message*>(lParam);
    if (!pMessage || pMessage->m_uMessage != uNumber) return false;
    *ppValue = reinterpret_cast<void*>(pMessage->m_lParam);
    return true;
}

} // namespace platform
