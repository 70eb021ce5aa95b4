// Memory without a name in any folder. Its size is sealed: a view of a plain shared object would fault in the
// host at the first store after somebody has cut it.
#include "platform/own_block.h"
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr int g_iSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;

/// Allocated, not only sized: missing memory must fail here and not at a store.
bool SetUp(int iFile, u32 uBytes) noexcept {
    return posix_fallocate(iFile, 0, static_cast<off_t>(uBytes)) == 0 &&
           fcntl(iFile, F_ADD_SEALS, g_iSeals) == 0;
}

} // namespace

stOwnBlock MakeOwnBlock(const char* szName, u32 uBytes) noexcept {
    const int iFile = memfd_create(szName, MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (iFile < 0) return {};
    void* const pView = SetUp(iFile, uBytes) ? mmap(nullptr, uBytes, PROT_READ | PROT_WRITE,
                                                    MAP_SHARED | MAP_POPULATE, iFile, 0)
                                             : MAP_FAILED;
    if (pView != MAP_FAILED) return {pView, iFile, uBytes};
    close(iFile);
    return {};
}

void CloseOwnBlock(stOwnBlock& st) noexcept {
    if (!st.m_pView) return;
    munmap(st.m_pView, st.m_uBytes);
    close(static_cast<int>(st.m_iHandle));
    st = {};
}

} // namespace platform
