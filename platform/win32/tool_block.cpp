// Windows: the blocks are named sections. A mutex beside a block tells that somebody writes it, and the count
// of the section's handles whether somebody else has it open.
#include "platform/tool_block.h"
#include "platform/win32/tool.h"
#include "platform/win32/windows_api.h"
#include <cstring>
#include <winternl.h>

namespace platform::tool {

struct BlockWriter::State {
    HANDLE hWriter = nullptr, hMapping = nullptr;
    u8* pView = nullptr;
    ~State() {
        if (pView) UnmapViewOfFile(pView);
        if (hMapping) CloseHandle(hMapping);
        if (hWriter) CloseHandle(hWriter);
    }
};

namespace {

/// Pages that their maker has only reserved would be a fault here.
bool IsWritable(const void* pView, u32 uBytes) {
    MEMORY_BASIC_INFORMATION st{};
    return VirtualQuery(pView, &st, sizeof st) == sizeof st && st.State == MEM_COMMIT &&
           st.Protect == PAGE_READWRITE && st.RegionSize >= uBytes;
}

std::wstring WriterName(const std::string& strName) { return ToWide(strName) + L".writer"; }

/// 0 where it cannot be told.
u32 HandlesOf(HANDLE hObject) {
    PUBLIC_OBJECT_BASIC_INFORMATION st{};
    const NTSTATUS iStatus = NtQueryObject(hObject, ObjectBasicInformation, &st, sizeof st, nullptr);
    return iStatus < 0 ? 0 : st.HandleCount;
}

} // namespace

BlockWriter::~BlockWriter() { delete m_pState; }

Result BlockWriter::Open(const std::string& strName, u32 uBytes) {
    if (strName.empty()) return Result::Fail("the block's name is empty");
    auto* const pState = m_pState = new State;
    pState->hWriter = CreateMutexW(nullptr, FALSE, WriterName(strName).c_str());
    if (!pState->hWriter || GetLastError() == ERROR_ALREADY_EXISTS)
        return Result::Fail("another program writes " + strName);
    pState->hMapping =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, uBytes, ToWide(strName).c_str());
    if (pState->hMapping)
        pState->pView = static_cast<u8*>(MapViewOfFile(pState->hMapping, FILE_MAP_ALL_ACCESS, 0, 0, uBytes));
    if (pState->pView && IsWritable(pState->pView, uBytes)) return {};
    return Result::Fail(strName + " cannot be opened, or is smaller than " + std::to_string(uBytes) +
                        " bytes");
}

bool BlockWriter::Write(u32 uAt, const void* pFrom, u32 uBytes) {
    std::memcpy(m_pState->pView + uAt, pFrom, uBytes);
    return true;
}

bool BlockWriter::Read(u32 uAt, void* pTo, u32 uBytes) const {
    std::memcpy(pTo, m_pState->pView + uAt, uBytes);
    return true;
}

bool BlockWriter::IsWatched() const { return HandlesOf(m_pState->hMapping) > 1; }

BlockUsers UsersOfBlock(const std::string& strName) {
    BlockUsers st;
    const HANDLE hWriter = OpenMutexW(SYNCHRONIZE, FALSE, WriterName(strName).c_str());
    st.bWritten = hWriter != nullptr;
    if (hWriter) CloseHandle(hWriter);
    const HANDLE hMapping = OpenFileMappingW(FILE_MAP_READ, FALSE, ToWide(strName).c_str());
    if (!hMapping) return st;
    const u32 uOwn = st.bWritten ? 2 : 1; // the one just opened, and the writer's
    st.bWatched = HandlesOf(hMapping) > uOwn;
    CloseHandle(hMapping);
    return st;
}

} // namespace platform::tool
