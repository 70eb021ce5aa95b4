#include "platform/shared_block.h"
#include "platform/headless/test_controls.h"
#include <cstring>

namespace platform {
namespace {

constinit stSharedSegment g_stSegment = g_fnInitialSegmentImage();

} // namespace

stSharedSegment* SharedSegment() noexcept { return &g_stSegment; }

void headless::ResetSegment() {
    std::memset(static_cast<void*>(&g_stSegment), 0, sizeof g_stSegment);
    g_fnApplyInitialImage(g_stSegment);
}

} // namespace platform
