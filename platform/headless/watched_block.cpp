#include "platform/watched_block.h"
#include "platform/headless/state.h"
#include <cstring>

namespace platform {
namespace {

using headless::Block;
using headless::Get;
using headless::State;

std::string NarrowName(const char16_t* wzName) {
    std::string strName;
    for (; wzName && *wzName; ++wzName) strName += *wzName < 0x80 ? static_cast<char>(*wzName) : '?';
    return strName;
}

} // namespace

void* OpenWatchedBlock(const char16_t* wzName, u32 uBytes) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    const std::string strName = NarrowName(wzName);
    if (st.m_bCreateFails || st.m_bViewFails || strName.empty() || uBytes == 0) return nullptr;
    auto& pBlock = st.m_mapBlocks[strName];
    if (!pBlock) {
        pBlock = std::make_shared<Block>();
        pBlock->m_vecBytes.assign(uBytes, 0);
    }
    if (pBlock->m_vecBytes.size() < uBytes) return nullptr;
    void* const hBlock = reinterpret_cast<void*>(st.m_uNextHandle += 0x10);
    st.m_mapWatched.emplace(hBlock, pBlock);
    return hBlock;
}

bool ReadWatchedBlock(void* hBlock, void* pTo, u32 uBytes) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    const auto it = st.m_mapWatched.find(hBlock);
    if (it == st.m_mapWatched.end() || uBytes > it->second->m_vecBytes.size()) return false;
    ++st.m_uWatchedReads;
    std::memcpy(pTo, it->second->m_vecBytes.data(), uBytes);
    return true;
}

bool IsWatchedReadACall() noexcept { return Get().m_bWatchedReadIsCall; }

void CloseWatchedBlock(void* hBlock) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    st.m_mapWatched.erase(hBlock);
}

namespace headless {

void CutMapping(const char* szName, u32 uBytes) {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    const auto it = st.m_mapBlocks.find(szName);
    if (it != st.m_mapBlocks.end()) it->second->m_vecBytes.resize(uBytes);
}

void SetWatchedReadIsCall(bool bIsCall) { Get().m_bWatchedReadIsCall = bIsCall; }
u32 WatchedReads() { return Get().m_uWatchedReads; }
u32 OpenWatchedBlocks() { return static_cast<u32>(Get().m_mapWatched.size()); }

} // namespace headless
} // namespace platform
