// Blocks that others write, read through their files. A view would fault in the host at the first access
// after somebody has cut the object; reading a file only comes up short.
#include "platform/watched_block.h"
#include "platform/linux/block_file.h"
#include "platform/utf.h"
#include <new>

namespace platform {
namespace {

struct Watched {
    int m_iFile = -1;
    u32 m_uBytes = 0;
    pid_t m_iProcess = 0; ///< that opened it: in a copy of the process the locks are still the first one's
    char m_szPath[host::g_uShmPathBytes] = {};
};

} // namespace

void* OpenWatchedBlock(const char16_t* wzName, u32 uBytes) noexcept {
    char szName[host::g_uShmPathBytes];
    auto* const pBlock = new (std::nothrow) Watched;
    if (!pBlock) return nullptr;
    pBlock->m_uBytes = uBytes;
    pBlock->m_iProcess = getpid();
    if (uBytes > 0 && wzName && Utf16ToUtf8(wzName, szName, sizeof szName) &&
        host::BlockPath(szName, pBlock->m_szPath))
        pBlock->m_iFile = host::OpenBlockFile(pBlock->m_szPath, uBytes, host::BLOCK_WATCHED);
    if (pBlock->m_iFile >= 0) return pBlock;
    delete pBlock;
    return nullptr;
}

bool ReadWatchedBlock(void* hBlock, void* pTo, u32 uBytes) noexcept {
    const auto* const pBlock = static_cast<const Watched*>(hBlock);
    if (!pBlock || uBytes > pBlock->m_uBytes) return false;
    u32 uDone = 0;
    while (uDone < uBytes) {
        const ssize_t iGot = pread(pBlock->m_iFile, static_cast<u8*>(pTo) + uDone, uBytes - uDone, uDone);
        if (iGot < 0 && errno == EINTR) continue;
        if (iGot <= 0) return false;
        uDone += static_cast<u32>(iGot);
    }
    return true;
}

bool IsWatchedReadACall() noexcept { return true; }

void CloseWatchedBlock(void* hBlock) noexcept {
    auto* const pBlock = static_cast<Watched*>(hBlock);
    if (!pBlock) return;
    if (pBlock->m_iProcess == getpid())
        host::CloseBlockFile(pBlock->m_iFile, pBlock->m_szPath);
    else
        close(pBlock->m_iFile);
    delete pBlock;
}

} // namespace platform
