// Linux: a program beside this one, run to its end.
#include "platform/tool.h"
#include <cerrno>
#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform::tool {
namespace {

volatile sig_atomic_t g_iChild = 0;

/// A key press reaches the whole group; a signal sent to this process alone has to be passed on.
void PassOn(int iSignal) {
    if (g_iChild > 0) kill(static_cast<pid_t>(g_iChild), iSignal);
}

/// The signals that ask to stop go to the child for as long as this lives.
class StopsPassedOn {
  public:
    StopsPassedOn() {
        struct sigaction stAction {};
        stAction.sa_handler = PassOn;
        for (int i = 0; i < s_iCount; ++i) sigaction(s_aiSignals[i], &stAction, &m_astOld[i]);
    }
    ~StopsPassedOn() {
        g_iChild = 0;
        for (int i = 0; i < s_iCount; ++i) sigaction(s_aiSignals[i], &m_astOld[i], nullptr);
    }
    StopsPassedOn(const StopsPassedOn&) = delete;
    StopsPassedOn& operator=(const StopsPassedOn&) = delete;

  private:
    static constexpr int s_iCount = 3;
    static constexpr int s_aiSignals[s_iCount] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction m_astOld[s_iCount];
};

Result WaitForEnd(pid_t iChild, int& iExitCode) {
    int iStatus = 0;
    pid_t iEnded;
    do iEnded = waitpid(iChild, &iStatus, 0);
    while (iEnded < 0 && errno == EINTR);
    if (iEnded != iChild) return Result::Fail(std::string("cannot wait: ") + std::strerror(errno));
    iExitCode = WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : 128 + WTERMSIG(iStatus);
    return {};
}

} // namespace

Result RunBeside(const std::string& strName, const std::vector<std::string>& listArguments, int& iExitCode) {
    const std::string strFile = JoinPath(OwnFolder(), strName);
    if (!FileExists(strFile)) return Result::NotFound("there is no " + strFile);
    std::vector<char*> listWords{const_cast<char*>(strFile.c_str())};
    for (const std::string& strWord : listArguments) listWords.push_back(const_cast<char*>(strWord.c_str()));
    listWords.push_back(nullptr);
    const StopsPassedOn stops; // caught signals are at their default in the new program
    pid_t iChild = 0;
    const int iError = posix_spawn(&iChild, strFile.c_str(), nullptr, nullptr, listWords.data(), environ);
    if (iError != 0) return Result::Fail("cannot start " + strFile + ": " + std::strerror(iError));
    g_iChild = iChild;
    return WaitForEnd(iChild, iExitCode);
}

} // namespace platform::tool
