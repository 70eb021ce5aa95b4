// The only thing in this file is the pair that the loader calls: constructors run in link order, and this one
// comes last, after those of the library's own objects; destructors run in the opposite order.
#include "entry/linux/entry.h"

namespace {

__attribute__((constructor)) void OnLoad() { platform::host::OnLibraryLoad(); }
__attribute__((destructor)) void OnUnload() { platform::host::OnLibraryUnload(); }

} // namespace
