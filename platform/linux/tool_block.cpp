// Linux: the blocks are files in memory. They are written as files too, so that a full memory file system is
// an error here and no fault.
#include "platform/tool_block.h"
#include "platform/linux/block_file.h"

namespace platform::tool {

struct BlockWriter::State {
    int iFile = -1;
    char szPath[host::g_uShmPathBytes] = {};
};

BlockWriter::~BlockWriter() {
    if (m_pState) host::CloseBlockFile(m_pState->iFile, m_pState->szPath);
    delete m_pState;
}

Result BlockWriter::Open(const std::string& strName, u32 uBytes) {
    State st;
    if (!host::BlockPath(strName.c_str(), st.szPath))
        return Result::Fail("the block's name is empty or too long");
    st.iFile = host::OpenBlockFile(st.szPath, uBytes, host::BLOCK_WRITTEN);
    if (st.iFile < 0) {
        const std::string strPath = st.szPath;
        if (UsersOfBlock(strName).bWritten) return Result::Fail("another program writes " + strPath);
        return Result::Fail(strPath + " cannot be opened, or is smaller than " + std::to_string(uBytes) +
                            " bytes");
    }
    m_pState = new State(st);
    return {};
}

bool BlockWriter::Write(u32 uAt, const void* pFrom, u32 uBytes) {
    const auto* p = static_cast<const u8*>(pFrom);
    while (uBytes > 0) {
        const ssize_t iDone = pwrite(m_pState->iFile, p, uBytes, uAt);
        if (iDone < 0 && errno == EINTR) continue;
        if (iDone <= 0) return false;
        p += iDone;
        uAt += static_cast<u32>(iDone);
        uBytes -= static_cast<u32>(iDone);
    }
    return true;
}

bool BlockWriter::Read(u32 uAt, void* pTo, u32 uBytes) const {
    return pread(m_pState->iFile, pTo, uBytes, uAt) == static_cast<ssize_t>(uBytes);
}

bool BlockWriter::IsWatched() const { return host::IsByteHeld(m_pState->iFile, host::BLOCK_WATCHED); }

BlockUsers UsersOfBlock(const std::string& strName) {
    char szPath[host::g_uShmPathBytes];
    const int iFile = host::BlockPath(strName.c_str(), szPath) ? host::OpenShm(szPath, 0) : -1;
    if (iFile < 0) return {};
    const BlockUsers st{host::IsByteHeld(iFile, host::BLOCK_WRITTEN),
                        host::IsByteHeld(iFile, host::BLOCK_WATCHED)};
    close(iFile);
    return st;
}

} // namespace platform::tool
