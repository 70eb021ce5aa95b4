#include "capture/control_block.h"
#include "companion/video.h"
#include "platform/tool_block.h"
#include <algorithm>
#include <chrono>
#include <cstddef>

namespace companion {
namespace {

using platform::tool::BlockWriter;

constexpr u32 kBlockBytes = 256;

template <class Value> bool WriteField(BlockWriter& block, std::size_t uAt, const Value& value) {
    return block.Write(static_cast<u32>(uAt), &value, sizeof value);
}

/// Another number than the one that stands there, and than any that was asked with before: the block goes
/// with the last program, also when that one rebuilds, and programs remember their last number beyond it. 0
/// is what a new program remembers.
u32 NextGeneration(u32 uStands) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    u32 uNext = static_cast<u32>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
    while (uNext == uStands || uNext == 0) ++uNext;
    return uNext;
}

/// The operation comes last: what it is about stands by then.
bool WriteRequest(const VideoOptions& st, stControlBlock stBlock, BlockWriter& block) {
    if (st.eControl == ControlVerb::Rebuild) {
        stBlock.uGeneration = NextGeneration(stBlock.uGeneration);
        return WriteField(block, offsetof(stControlBlock, uGeneration), stBlock.uGeneration) &&
               WriteField(block, 0, CONTROL_REBUILD);
    }
    if (st.eControl == ControlVerb::Off) return WriteField(block, 0, CONTROL_NOTHING);
    std::copy(std::begin(st.au8Color), std::end(st.au8Color), stBlock.aau8Color[st.uIndex]);
    return WriteField(block, offsetof(stControlBlock, aau8Color), stBlock.aau8Color) &&
           WriteField(block, offsetof(stControlBlock, uIndex), st.uIndex) &&
           WriteField(block, 0, CONTROL_RECOLOUR);
}

} // namespace

Result SendControl(const VideoOptions& st) {
    const std::string strName(std::begin(g_wzControlBlock), std::end(g_wzControlBlock) - 1);
    BlockWriter block;
    const Result stOpened = block.Open(strName, kBlockBytes);
    if (!stOpened) return stOpened;
    if (!block.IsWatched()) return Result::NotFound("no program watches the control block");
    stControlBlock stBlock{};
    if (block.Read(0, &stBlock, sizeof stBlock) && WriteRequest(st, stBlock, block)) return {};
    return Result::Fail("the control block has become too small");
}

} // namespace companion
