#include "platform/own_block.h"
#include "platform/headless/state.h"

namespace platform {
namespace {

using headless::Block;
using headless::Get;
using headless::State;

} // namespace

stOwnBlock MakeOwnBlock(const char* szName, u32 uBytes) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    auto& pBlock = st.m_mapBlocks[szName];
    if (st.m_bCreateFails || pBlock) return {};
    pBlock = std::make_shared<Block>();
    pBlock->m_vecBytes.assign(uBytes, 0);
    ++st.m_uViews;
    return {pBlock->m_vecBytes.data(), 1, uBytes};
}

void CloseOwnBlock(stOwnBlock& stBlock) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    if (stBlock.m_pView && st.m_uViews > 0) --st.m_uViews; // the contents stay for those who look
    stBlock = {};
}

} // namespace platform
