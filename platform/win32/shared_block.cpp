#include "platform/shared_block.h"

namespace {

// The image section that all processes share which have this very file mapped. Its bytes stand in the file,
// so the first process starts from the initial image. The file is compiled without the compiler's extra
// alignment of big objects (see the build files): the section has to end where the object ends.
__attribute__((section("Shared"), shared, used)) constinit stSharedSegment g_stSharedSection =
    g_fnInitialSegmentImage();

} // namespace

namespace platform {

stSharedSegment* SharedSegment() noexcept {
    // Through a volatile pointer: other processes write here, so the compiler may not assume the initial
    // values.
    stSharedSegment* volatile pSegment = &g_stSharedSection;
    return pSegment;
}

} // namespace platform
