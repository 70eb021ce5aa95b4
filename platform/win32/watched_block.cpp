// Blocks that others write, as read-only views of named sections. A section cannot be made smaller while one
// is mapped.
#include "platform/watched_block.h"
#include "platform/win32/windows_api.h"
#include <cstring>
#include <new>

namespace platform {
namespace {

struct Watched {
    HANDLE m_hMapping = nullptr;
    const void* m_pView = nullptr;
    u32 m_uBytes = 0;
};

HANDLE OpenOrMake(const wchar_t* wzName, u32 uBytes) noexcept {
    const HANDLE hMapping =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, uBytes, wzName);
    if (hMapping || GetLastError() != ERROR_ALREADY_EXISTS) return hMapping;
    return OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, wzName);
}

/// Pages that their maker has only reserved would fault in the host.
bool IsReadable(const void* pView, u32 uBytes) noexcept {
    MEMORY_BASIC_INFORMATION st{};
    return VirtualQuery(pView, &st, sizeof st) == sizeof st && st.State == MEM_COMMIT &&
           st.RegionSize >= uBytes;
}

} // namespace

void* OpenWatchedBlock(const char16_t* wzName, u32 uBytes) noexcept {
    auto* const pBlock = new (std::nothrow) Watched;
    if (!pBlock) return nullptr;
    pBlock->m_uBytes = uBytes;
    if (wzName && *wzName && uBytes > 0)
        pBlock->m_hMapping = OpenOrMake(reinterpret_cast<const wchar_t*>(wzName), uBytes);
    if (pBlock->m_hMapping) pBlock->m_pView = MapViewOfFile(pBlock->m_hMapping, FILE_MAP_READ, 0, 0, uBytes);
    if (pBlock->m_pView && IsReadable(pBlock->m_pView, uBytes)) return pBlock;
    CloseWatchedBlock(pBlock);
    return nullptr;
}

bool ReadWatchedBlock(void* hBlock, void* pTo, u32 uBytes) noexcept {
    const auto* const pBlock = static_cast<const Watched*>(hBlock);
    if (!pBlock || uBytes > pBlock->m_uBytes) return false;
    std::memcpy(pTo, pBlock->m_pView, uBytes);
    return true;
}

bool IsWatchedReadACall() noexcept { return false; }

void CloseWatchedBlock(void* hBlock) noexcept {
    auto* const pBlock = static_cast<Watched*>(hBlock);
    if (!pBlock) return;
    if (pBlock->m_pView) UnmapViewOfFile(pBlock->m_pView);
    if (pBlock->m_hMapping) CloseHandle(pBlock->m_hMapping);
    delete pBlock;
}

} // namespace platform
