// Linux: keeps the shared segment while a program is being entered.
#include "platform/linux/tool_holder.h"
#include "platform/linux/segment_name.h"
#include "platform/tool.h"
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace platform::tool {
namespace {

/// File of a process's program; "self" for this one.
std::string Image(const std::string& strProcess) {
    char szPath[4096];
    const std::string strLink = "/proc/" + strProcess + "/exe";
    const ssize_t iLength = readlink(strLink.c_str(), szPath, sizeof szPath);
    return iLength > 0 ? std::string(szPath, static_cast<size_t>(iLength)) : std::string();
}

/// Whatever the starter of this program waits for the end of: its terminal, its pipes. The segment's own file
/// is closed at exec, and so it is not among them.
void CloseInherited() {
    DIR* const pFolder = opendir("/proc/self/fd");
    if (pFolder == nullptr) return;
    while (const dirent* pEntry = readdir(pFolder)) {
        const int iFile = std::atoi(pEntry->d_name);
        if (pEntry->d_name[0] != '.' && (fcntl(iFile, F_GETFD) & FD_CLOEXEC) == 0) close(iFile);
    }
    closedir(pFolder);
}

void Pause(u32 uRound) {
    constexpr u32 c_uDense = 250; // rounds of 20 ms, while programs start
    const timespec stPause{0, uRound < c_uDense ? 20000000 : 500000000};
    nanosleep(&stPause, nullptr);
}

/// True once another image than ours runs under that id. What is seen of the process behind this answer
/// belongs to that image; seen ahead of it, it may still be ours, which has the segment too.
bool IsReplaced(const std::string& strProcess, const std::string& strOwn) {
    const std::string strImage = Image(strProcess);
    return !strImage.empty() && strImage != strOwn;
}

/// Whether a process has the segment mapped, and so holds the lock on it: that comes first. The library's own
/// mapping would tell it too early.
bool HasSegment(const std::string& strProcess) {
    char szPath[host::g_uSegmentPathBytes];
    host::SegmentPath(host::SegmentOwner::Any, szPath); // what the name of one user begins with, too
    std::ifstream maps("/proc/" + strProcess + "/maps");
    for (std::string strLine; std::getline(maps, strLine);)
        if (strLine.find(szPath) != std::string::npos) return true;
    return false;
}

/// Until another image than ours has the segment, or the process is gone.
void WaitUntilEntered(u32 uProcessId) {
    const std::string strOwn = Image("self"), strProcess = std::to_string(uProcessId);
    for (u32 uRound = 0; InspectProcess(uProcessId).bExists; ++uRound) {
        if (IsReplaced(strProcess, strOwn) && HasSegment(strProcess)) return;
        Pause(uRound);
    }
}

} // namespace

void HoldSegmentFor(u32 uProcessId) {
    const pid_t iChild = fork();
    if (iChild > 0) waitpid(iChild, nullptr, 0);
    if (iChild != 0) return;
    // A child of nobody who might count his children.
    if (fork() != 0) _exit(0);
    setsid();
    CloseInherited();
    WaitUntilEntered(uProcessId);
    _exit(0);
}

} // namespace platform::tool
