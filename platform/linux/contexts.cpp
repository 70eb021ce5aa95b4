#include "platform/contexts.h"
#include "platform/linux/host_gl.h"

namespace platform {

void WatchContexts(ContextGoneFunction fnGone) noexcept {
    if (preload::SwapLink* const pLink = host::Link())
        pLink->m_fnContextGone.store(fnGone, std::memory_order_release);
}

} // namespace platform
