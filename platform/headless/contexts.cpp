#include "platform/contexts.h"
#include "platform/headless/state.h"

namespace platform {

void WatchContexts(ContextGoneFunction fnGone) noexcept { headless::Get().m_fnContextGone = fnGone; }

namespace headless {

void DestroyContext(ContextHandle hContext) {
    if (const ContextGoneFunction fnGone = Get().m_fnContextGone) fnGone(hContext);
}

} // namespace headless
} // namespace platform
