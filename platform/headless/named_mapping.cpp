#include "platform/named_mapping.h"
#include "platform/headless/state.h"
#include "platform/last_error.h"
#include <cstring>

namespace platform {
namespace {

using headless::Block;
using headless::Get;
using headless::State;

void* NewHandle(State& st, std::shared_ptr<Block> pBlock) {
    void* hMapping = reinterpret_cast<void*>(st.m_uNextHandle += 0x10);
    st.m_mapHandles.emplace(hMapping, std::move(pBlock));
    return hMapping;
}

} // namespace

void* CreateNamedMapping(const char* szName, u32 uBytes) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    ++st.m_uCreates;
    if (st.m_bCreateFails || !szName || uBytes == 0) return nullptr;
    auto& pBlock = st.m_mapBlocks[szName];
    if (pBlock) SetLastErrorOfThread(183); // as Windows says of one that was there
    if (!pBlock) {
        pBlock = std::make_shared<Block>();
        pBlock->m_vecBytes.assign(uBytes, 0);
    }
    return NewHandle(st, pBlock);
}

void* OpenNamedMapping(const char16_t* wzName) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    std::string strName;
    for (; wzName && *wzName; ++wzName) strName += *wzName < 0x80 ? static_cast<char>(*wzName) : '?';
    const auto it = st.m_mapBlocks.find(strName);
    if (st.m_bOpenFails || it == st.m_mapBlocks.end()) return nullptr;
    return NewHandle(st, it->second);
}

void* MapView(void* hMapping, u32 uBytes) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    const auto it = st.m_mapHandles.find(hMapping);
    if (st.m_bViewFails || it == st.m_mapHandles.end() || uBytes > it->second->m_vecBytes.size())
        return nullptr;
    ++st.m_uViews;
    return it->second->m_vecBytes.data();
}

void UnmapView(void* pView) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    if (pView && st.m_uViews > 0) --st.m_uViews;
}

void CloseMapping(void* hMapping) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    st.m_mapHandles.erase(hMapping);
}

void RemoveDeadMappings() noexcept {}

namespace headless {

void SeedMapping(const char* szName, const void* pContents, u32 uBytes) {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    const auto* pBytes = static_cast<const u8*>(pContents);
    auto pBlock = std::make_shared<Block>();
    pBlock->m_vecBytes.assign(pBytes, pBytes + uBytes);
    st.m_mapBlocks[szName] = std::move(pBlock);
}

u8* MappingContents(const char* szName, u32* puBytes) {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    const auto it = st.m_mapBlocks.find(szName);
    const bool bFound = it != st.m_mapBlocks.end();
    if (puBytes) *puBytes = bFound ? static_cast<u32>(it->second->m_vecBytes.size()) : 0;
    return bFound ? it->second->m_vecBytes.data() : nullptr;
}

void SetCreateMappingFails(bool bFails) { Get().m_bCreateFails = bFails; }
void SetOpenMappingFails(bool bFails) { Get().m_bOpenFails = bFails; }
void SetMapViewFails(bool bFails) { Get().m_bViewFails = bFails; }
u32 OpenMappingHandles() { return static_cast<u32>(Get().m_mapHandles.size()); }
u32 OpenViews() { return Get().m_uViews; }
u32 CreateMappingCalls() { return Get().m_uCreates; }

} // namespace headless
} // namespace platform
