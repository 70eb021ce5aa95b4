// A named section. One that is there already is somebody else's: it may be smaller, or only reserved.
#include "platform/own_block.h"
#include "platform/win32/windows_api.h"

namespace platform {

stOwnBlock MakeOwnBlock(const char* szName, u32 uBytes) noexcept {
    SetLastError(0);
    const HANDLE hMapping =
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, uBytes, szName);
    const bool bOwn = hMapping && GetLastError() != ERROR_ALREADY_EXISTS;
    void* const pView = bOwn ? MapViewOfFile(hMapping, FILE_MAP_ALL_ACCESS, 0, 0, uBytes) : nullptr;
    if (pView) return {pView, reinterpret_cast<std::intptr_t>(hMapping), uBytes};
    if (hMapping) CloseHandle(hMapping);
    return {};
}

void CloseOwnBlock(stOwnBlock& st) noexcept {
    if (!st.m_pView) return;
    UnmapViewOfFile(st.m_pView);
    CloseHandle(reinterpret_cast<HANDLE>(st.m_iHandle));
    st = {};
}

} // namespace platform
