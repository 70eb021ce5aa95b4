// Windows: a named section of this session.
#include "platform/tool_view.h"
#include "platform/win32/windows_api.h"

namespace platform::tool {
namespace {

/// Pages that their maker has only reserved would fault here.
bool IsReadable(const void* pView, std::size_t uBytes) {
    MEMORY_BASIC_INFORMATION st{};
    return VirtualQuery(pView, &st, sizeof st) == sizeof st && st.State == MEM_COMMIT &&
           st.RegionSize >= uBytes;
}

} // namespace

ForeignBlock OpenForeignBlock(u32, const std::string& strName, std::size_t uBytes) {
    const HANDLE hMapping = OpenFileMappingA(FILE_MAP_READ, FALSE, strName.c_str());
    if (!hMapping) return {};
    const void* const pView = MapViewOfFile(hMapping, FILE_MAP_READ, 0, 0, uBytes);
    CloseHandle(hMapping); // the view keeps the section
    if (!pView) return {};
    if (IsReadable(pView, uBytes)) return {static_cast<const u8*>(pView), uBytes};
    UnmapViewOfFile(pView);
    return {};
}

void CloseForeignBlock(ForeignBlock& st) {
    if (st.pView) UnmapViewOfFile(st.pView);
    st = {};
}

} // namespace platform::tool
