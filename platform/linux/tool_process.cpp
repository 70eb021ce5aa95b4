// Linux: what /proc tells of a program.
#include "platform/tool_process.h"
#include "platform/tool.h"
#include <algorithm>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::tool {
namespace {

constexpr size_t kMostBytes = 8 * 1024 * 1024; ///< of any file here, which another program may have written

std::string ProcPath(u32 uProcessId, const std::string& strEntry) {
    return "/proc/" + std::to_string(uProcessId) + "/" + strEntry;
}

/// What a file holds, up to a bound; nothing of what is no plain file, at which opening might wait.
std::string Contents(const std::string& strPath, size_t uMost = kMostBytes) {
    std::string strAll;
    const int iFile = open(strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (iFile < 0) return strAll;
    struct stat st {};
    char acPiece[4096];
    ssize_t iRead = fstat(iFile, &st) == 0 && S_ISREG(st.st_mode) ? 1 : 0;
    while (iRead > 0 && strAll.size() < uMost) {
        iRead = read(iFile, acPiece, std::min(sizeof acPiece, uMost - strAll.size()));
        if (iRead > 0) strAll.append(acPiece, static_cast<size_t>(iRead));
    }
    close(iFile);
    return strAll;
}

/// Rights that the loader does not trust: what the kernel told the program when it started.
bool IsSecure(u32 uProcessId) {
    const std::string strVector = Contents(ProcPath(uProcessId, "auxv"));
    Elf64_auxv_t st{};
    for (size_t u = 0; u + sizeof st <= strVector.size(); u += sizeof st) {
        std::memcpy(&st, strVector.data() + u, sizeof st);
        if (st.a_type == AT_SECURE) return st.a_un.a_val != 0;
    }
    return false;
}

bool IsSamePlace(const std::string& strA, const std::string& strB) {
    struct stat stA {
    }, stB{};
    if (stat(strA.c_str(), &stA) != 0 || stat(strB.c_str(), &stB) != 0) return true; // not to be told
    return stA.st_dev == stB.st_dev && stA.st_ino == stB.st_ino;
}

bool HasFileOfItsOwn(u32 uProcessId, const char* szPath) {
    const std::string strThere = ProcPath(uProcessId, "root") + szPath;
    return FileExists(strThere) && !(FileExists(szPath) && IsSamePlace(strThere, szPath));
}

std::string SandboxOf(u32 uProcessId, const std::string& strEnvironment) {
    std::string strName;
    if (HasFileOfItsOwn(uProcessId, "/.flatpak-info")) {
        strName = FlatpakName(Contents(ProcPath(uProcessId, "root/.flatpak-info")));
        return strName.empty() ? "Flatpak" : "Flatpak (" + strName + ")";
    }
    if (VariableIn(strEnvironment, "SNAP_INSTANCE_NAME", strName)) return "Snap (" + strName + ")";
    const bool bContainer =
        HasFileOfItsOwn(uProcessId, "/run/.containerenv") || HasFileOfItsOwn(uProcessId, "/.dockerenv");
    return bContainer ? "a container" : "";
}

bool HasLoader(const std::vector<std::string>& listModules) {
    return std::any_of(listModules.begin(), listModules.end(), [](const std::string& strPath) {
        return strPath.compare(strPath.rfind('/') + 1, 3, "ld-") == 0;
    });
}

/// The folder of shared memory may be the program's own, also where nothing else tells of a sandbox.
bool IsMemoryApart(u32 uProcessId) { return !IsSamePlace(ProcPath(uProcessId, "root/dev/shm"), "/dev/shm"); }

bool IsSegmentApart(const std::string& strEnvironment) {
    constexpr const char* szName = "ORVIN_OSD_SEGMENT";
    std::string strTheirs;
    const char* const szOurs = secure_getenv(szName);
    return !strEnvironment.empty() &&
           (VariableIn(strEnvironment, szName, strTheirs) ? strTheirs : "") != (szOurs ? szOurs : "");
}

} // namespace

ProcessTraits InspectTraits(u32 uProcessId) {
    ProcessTraits st;
    const std::string strStatus = Contents(ProcPath(uProcessId, "status"));
    const std::string strEnvironment = Contents(ProcPath(uProcessId, "environ"));
    u32 uUser = 0;
    st.listModules = ModulePaths(Contents(ProcPath(uProcessId, "maps")));
    st.b32Bit = Is32BitElf(Contents(ProcPath(uProcessId, "exe"), 8));
    st.bOtherUser = UserOfStatus(strStatus, uUser) && uUser != getuid();
    st.bPrivileged = HasBorrowedRights(strStatus) || IsSecure(uProcessId);
    st.bStatic = !st.listModules.empty() && !HasLoader(st.listModules);
    st.strSandbox = SandboxOf(uProcessId, strEnvironment);
    st.bOtherMemory = IsMemoryApart(uProcessId);
    st.bOtherSegment = IsSegmentApart(strEnvironment);
    return st;
}

} // namespace platform::tool
