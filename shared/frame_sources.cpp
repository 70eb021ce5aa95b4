#include "shared/frame_sources.h"

#include "platform/pages.h"
#include "platform/watched_block.h"

bool g_bLocalPreview = false;

namespace {

struct stSource {
    void* hBlock = nullptr;
    u8* pCopy = nullptr; ///< takes memory as far as frames have reached
};
stSource g_astSource[g_uFrameSources];

void Close(stSource& st) noexcept {
    platform::CloseWatchedBlock(st.hBlock);
    platform::FreePages(st.pCopy, g_uFrameBlockBytes);
    st = {};
}

} // namespace

bool g_fnOpenFrameSource(u32 uSource, const char16_t* wzName) noexcept {
    if (uSource >= g_uFrameSources) return false;
    stSource& st = g_astSource[uSource];
    Close(st);
    if (!g_bLocalPreview) st.hBlock = platform::OpenWatchedBlock(wzName, g_uFrameBlockBytes);
    if (st.hBlock || g_bLocalPreview) st.pCopy = platform::AllocatePages(g_uFrameBlockBytes);
    if (!st.pCopy) Close(st);
    return st.pCopy != nullptr;
}

bool g_fnHasFrameSource(u32 uSource) noexcept {
    return uSource < g_uFrameSources && g_astSource[uSource].pCopy != nullptr;
}

const u8* g_fnTakeFrame(u32 uSource, u32 uBytes) noexcept {
    if (!g_fnHasFrameSource(uSource) || uBytes > g_uFrameBlockBytes) return nullptr;
    const stSource& st = g_astSource[uSource];
    if (g_bLocalPreview) return st.pCopy;
    // What lies behind the frame is nobody's, so it is left where it is.
    return platform::ReadWatchedBlock(st.hBlock, st.pCopy, uBytes) ? st.pCopy : nullptr;
}

void g_fnCloseFrameSources() noexcept {
    for (stSource& st : g_astSource) Close(st);
}
