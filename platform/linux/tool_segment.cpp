// Linux: the shared segment as the loaded library has it mapped, so that all of the library's own checks hold
// for this program too; and whose processes still live.
#include "platform/linux/dead_claims.h"
#include "platform/linux/process_stamp.h"
#include "platform/linux/segment_name.h"
#include "platform/tool.h"
#include "platform/tool_bytes.h"
#include <csignal>
#include <fstream>
#include <sstream>
#include <sys/mman.h>
#include <sys/sysmacros.h>

namespace platform::tool {
namespace {

using host::SegmentOwner;

volatile sig_atomic_t g_bCut = 0;
u8* g_pSegment = nullptr; ///< for the handler of faults
size_t g_uSegmentBytes = 0;

std::string PathOf(SegmentOwner eOwner) {
    char szPath[host::g_uSegmentPathBytes];
    host::SegmentPath(eOwner, szPath);
    return szPath;
}

/// Pages behind the end of a file that was cut fault at every access. Empty ones of our own take their place.
void OnBusError(int iSignal, siginfo_t* pInfo, void*) {
    const auto uPage = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    u8* const pPage = reinterpret_cast<u8*>(reinterpret_cast<std::uintptr_t>(pInfo->si_addr) & ~(uPage - 1));
    const bool bOurs = pPage >= g_pSegment && pPage < g_pSegment + g_uSegmentBytes;
    constexpr int iFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED;
    if (bOurs && mmap(pPage, uPage, PROT_READ | PROT_WRITE, iFlags, -1, 0) != MAP_FAILED) {
        g_bCut = 1;
        return;
    }
    // Any other access comes again and ends the program, as it would have; a signal that was sent does not.
    signal(iSignal, SIG_DFL);
    if (pInfo->si_code <= 0) raise(iSignal);
}

std::optional<SharedMap> FindMapOf(const std::string& strMaps, const std::string& strPath) {
    struct stat st {};
    if (lstat(strPath.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return std::nullopt;
    return FindSharedMap(strMaps, {major(st.st_dev), minor(st.st_dev), st.st_ino});
}

void SurviveCuts(const SharedMap& st) {
    g_pSegment = reinterpret_cast<u8*>(st.uAddress);
    g_uSegmentBytes = st.uBytes;
    struct sigaction stAction {};
    stAction.sa_sigaction = OnBusError;
    stAction.sa_flags = SA_SIGINFO;
    sigaction(SIGBUS, &stAction, nullptr);
}

std::string OwnerText(const std::string& strPath) {
    uid_t uOwner = 0;
    if (!host::OwnerOf(strPath.c_str(), uOwner)) return strPath + " cannot be made";
    if (uOwner != geteuid()) return strPath + " belongs to user " + std::to_string(uOwner);
    return strPath + " is not what it should be; remove it";
}

/// Why the library shares no segment: both places are somebody else's, or something odd lies there.
std::string WhyNone() {
    const std::string strPlain = PathOf(SegmentOwner::Any);
    if (!host::BelongsToAnother(strPlain.c_str())) return OwnerText(strPlain);
    return OwnerText(strPlain) + ", and " + OwnerText(PathOf(SegmentOwner::User));
}

} // namespace

Segment FindSegment(void*, size_t uBytes, std::string& strError) {
    std::stringstream maps;
    maps << std::ifstream("/proc/self/maps").rdbuf();
    Segment st;
    for (const SegmentOwner eOwner : {SegmentOwner::Any, SegmentOwner::User}) {
        const auto stMap = FindMapOf(maps.str(), PathOf(eOwner));
        if (!stMap || stMap->uBytes < uBytes) continue;
        SurviveCuts(*stMap);
        st.pView = reinterpret_cast<void*>(stMap->uAddress);
        st.strPlace = PathOf(eOwner);
        if (eOwner == SegmentOwner::User)
            st.strNote = OwnerText(PathOf(SegmentOwner::Any)) + "; " + st.strPlace + " is used instead";
        return st;
    }
    strError = WhyNone();
    return st;
}

bool SegmentWasCut() { return g_bCut != 0; }

u32 OwnStamp() { return host::StampOf(OwnProcessId()); }

bool IsProcessGone(u32 uProcessId, u32 uStamp) noexcept { return host::IsGone(uProcessId, uStamp); }

void RemoveDeadClaims() { host::RemoveDeadClaims(); }

} // namespace platform::tool
