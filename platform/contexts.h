#pragma once
// Notice of the end of GL contexts. A context that is made later may get the handle of one that is gone, so
// comparing handles does not tell them apart.
#include "platform/surface.h"

namespace platform {

/// Called ahead of the destruction of a context, on the thread that asks for it; null: of every context of a
/// display. It may outlive the call where it is current on a thread.
using ContextGoneFunction = void (*)(ContextHandle hContext);

/// From now on fnGone is called; null ends it. Where the end of contexts can't be noticed, nothing happens.
/// The detour engine has to be initialised.
void WatchContexts(ContextGoneFunction fnGone) noexcept;

} // namespace platform
