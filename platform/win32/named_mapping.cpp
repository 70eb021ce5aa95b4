#include "platform/named_mapping.h"
#include "platform/win32/windows_api.h"

namespace platform {

void* CreateNamedMapping(const char* szName, u32 uBytes) noexcept {
    // An existing block of that name comes back as a handle as well (last error 183), whoever made it.
    return CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, uBytes, szName);
}

void* OpenNamedMapping(const char16_t* wzName) noexcept {
    return OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, reinterpret_cast<const wchar_t*>(wzName));
}

void* MapView(void* hMapping, u32 uBytes) noexcept {
    return MapViewOfFile(hMapping, FILE_MAP_ALL_ACCESS, 0, 0, uBytes);
}

void UnmapView(void* pView) noexcept {
    if (pView) UnmapViewOfFile(pView);
}

void CloseMapping(void* hMapping) noexcept {
    if (hMapping) CloseHandle(hMapping);
}

void RemoveDeadMappings() noexcept {}

} // namespace platform
