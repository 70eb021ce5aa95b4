// Blocks that others write, read through their files. A view would fault in the host at the first access
// after somebody has cut the object; reading a file only comes up short.
#include "platform/watched_block.h"
#include "platform/linux/block_file.h"
#include "platform/linux/watched_end.h"
#include "platform/utf.h"
#include <atomic>
#include <new>

namespace platform {
namespace {

struct Watched {
    int m_iFile = -1;
    u32 m_uBytes = 0;
    pid_t m_iProcess = 0; ///< that opened it: in a copy of the process the locks are still the first one's
    char m_szPath[host::g_uShmPathBytes] = {};
};

/// Blocks that are open, for the end of the process. One that finds no room only stays behind then.
std::atomic<Watched*> g_apOpen[16];
std::atomic<bool> g_bLeft{false}; ///< they belong to the end of the process from now on

bool Replace(Watched* pFrom, Watched* pTo) noexcept {
    for (auto& pOpen : g_apOpen) {
        Watched* pExpected = pFrom;
        if (pOpen.compare_exchange_strong(pExpected, pTo)) return true;
    }
    return false;
}

} // namespace

/// Another thread may be reading meanwhile, so the files stay open, and who takes a block out of the list is
/// the one who closes it.
void host::LeaveWatchedBlocks() noexcept {
    g_bLeft = true;
    for (auto& pOpen : g_apOpen) {
        const Watched* const pBlock = pOpen.exchange(nullptr);
        if (!pBlock || pBlock->m_iProcess != getpid() || !LockGuard(pBlock->m_iFile)) continue;
        LockByte(pBlock->m_iFile, BLOCK_WATCHED, F_UNLCK);
        UnlinkUnlessHeld(pBlock->m_iFile, pBlock->m_szPath);
        LockByte(pBlock->m_iFile, BLOCK_GUARD, F_UNLCK);
    }
}

void* OpenWatchedBlock(const char16_t* wzName, u32 uBytes) noexcept {
    char szName[host::g_uShmPathBytes];
    auto* const pBlock = new (std::nothrow) Watched;
    if (!pBlock) return nullptr;
    pBlock->m_uBytes = uBytes;
    pBlock->m_iProcess = getpid();
    if (uBytes > 0 && wzName && Utf16ToUtf8(wzName, szName, sizeof szName) &&
        host::BlockPath(szName, pBlock->m_szPath))
        pBlock->m_iFile = host::OpenBlockFile(pBlock->m_szPath, uBytes, host::BLOCK_WATCHED);
    if (pBlock->m_iFile >= 0) {
        Replace(nullptr, pBlock);
        return pBlock;
    }
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
    const bool bOurs = Replace(pBlock, nullptr) || !g_bLeft;
    if (!bOurs) return;
    if (pBlock->m_iProcess == getpid())
        host::CloseBlockFile(pBlock->m_iFile, pBlock->m_szPath);
    else
        close(pBlock->m_iFile);
    delete pBlock;
}

} // namespace platform
