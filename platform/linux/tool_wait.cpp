// Linux: being asked to stop, standard input, the terminal, and the driver's library.
#include "platform/tool.h"
#include "platform/tool_input.h"
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace platform::tool {
namespace {

/// The handler writes a byte; whoever waits sees it, however early it came.
int g_aiStopPipe[2] = {-1, -1};

void OnSignal(int) {
    const char cByte = 1;
    [[maybe_unused]] const ssize_t iWritten = write(g_aiStopPipe[1], &cByte, 1);
}

i64 Milliseconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

} // namespace

void CatchStop() {
    if (g_aiStopPipe[0] < 0 && pipe2(g_aiStopPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    struct sigaction stAction {};
    stAction.sa_handler = OnSignal;
    // A reader of the output that has gone is a reason to stop too, with everything put back.
    for (const int iSignal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) sigaction(iSignal, &stAction, nullptr);
}

bool WaitForStop(u32 uMilliseconds) {
    const i64 iEnd = Milliseconds() + uMilliseconds;
    pollfd stPipe{g_aiStopPipe[0], POLLIN, 0};
    for (i64 iLeft = uMilliseconds; iLeft >= 0; iLeft = iEnd - Milliseconds()) {
        if (poll(&stPipe, 1, static_cast<int>(iLeft)) > 0) return true; // the byte stays: later waits end too
    }
    return false;
}

bool IsInputTerminal() { return isatty(STDIN_FILENO) != 0; }

u32 ReadInput(void* pTo, u32 uBytes) {
    u32 uDone = 0;
    while (uDone < uBytes) {
        // A read alone would not end when the signal comes just ahead of it.
        pollfd ast[] = {{STDIN_FILENO, POLLIN, 0}, {g_aiStopPipe[0], POLLIN, 0}};
        if (poll(ast, 2, -1) < 0 && errno != EINTR) break;
        if (ast[1].revents != 0) break;
        if (ast[0].revents == 0) continue;
        const ssize_t iGot = read(STDIN_FILENO, static_cast<u8*>(pTo) + uDone, uBytes - uDone);
        if (iGot < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (iGot <= 0) break;
        uDone += static_cast<u32>(iGot);
    }
    return uDone;
}

bool IsTerminal() { return isatty(STDOUT_FILENO) != 0; }

void* OpenNvmlLibrary() { return dlopen("libnvidia-ml.so.1", RTLD_NOW | RTLD_LOCAL); }

} // namespace platform::tool
