#include "platform/linux/x_errors.h"
#include "platform/linux/host_gl.h"
#include <dlfcn.h>
#include <mutex>

namespace platform::host {
namespace {

/// The X library's error event, as its interface fixes it.
struct XErrorEvent {
    int m_iType;
    void* m_hDisplay;
    unsigned long m_uResource;
    unsigned long m_uSerial;
    unsigned char m_uErrorCode;
    unsigned char m_uRequestCode;
    unsigned char m_uMinorCode;
};
using XHandler = int (*)(void* hDisplay, XErrorEvent* pEvent);
using XSetErrorHandlerFunction = XHandler (*)(XHandler);

// The X library has one handler a process, so one trap stands at a time.
constinit std::mutex g_lock;
XHandler g_fnOld = nullptr;
void* g_hTrapDisplay = nullptr;
unsigned long g_uTrapDrawable = 0;
std::atomic<bool> g_bFailed{false};

int OnError(void* hDisplay, XErrorEvent* pEvent) {
    if (hDisplay == g_hTrapDisplay && pEvent->m_uResource == g_uTrapDrawable) {
        g_bFailed = true;
        return 0;
    }
    return g_fnOld ? g_fnOld(hDisplay, pEvent) : 0;
}

XSetErrorHandlerFunction SetHandler() noexcept {
    static void* const hX11 = dlopen("libX11.so.6", RTLD_LAZY | RTLD_LOCAL | RTLD_NOLOAD);
    static const auto fnSet =
        hX11 ? reinterpret_cast<XSetErrorHandlerFunction>(dlsym(hX11, "XSetErrorHandler")) : nullptr;
    return fnSet;
}

} // namespace

XErrorTrap::XErrorTrap(void* hDisplay, unsigned long uDrawable) noexcept {
    g_lock.lock();
    g_hTrapDisplay = hDisplay;
    g_uTrapDrawable = uDrawable;
    g_bFailed = false;
    if (const auto fnSet = SetHandler()) g_fnOld = fnSet(&OnError);
}

XErrorTrap::~XErrorTrap() {
    if (const auto fnSet = SetHandler()) fnSet(g_fnOld);
    g_lock.unlock();
}

bool XErrorTrap::Failed() const noexcept { return g_bFailed; }

} // namespace platform::host
