// Linux: a program beside this one, run to its end.
#include "platform/linux/tool_child.h"
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform::tool {
namespace {

volatile sig_atomic_t g_iChild = 0;
volatile sig_atomic_t g_iPassed = 0; ///< the last signal that was passed on

/// A key press reaches the whole group; a signal sent to this process alone has to be passed on.
void PassOn(int iSignal) {
    g_iPassed = iSignal;
    if (g_iChild > 0) kill(static_cast<pid_t>(g_iChild), iSignal);
}

/// The signals that ask to stop go to the child for as long as this lives. Behind it they reach the handler
/// that this program had set for them, if any: what it does with a child in between must not lose a stop.
class StopsPassedOn {
  public:
    StopsPassedOn() {
        g_iPassed = 0;
        struct sigaction stAction {};
        stAction.sa_handler = PassOn;
        for (int i = 0; i < s_iCount; ++i) sigaction(s_aiSignals[i], &stAction, &m_astOld[i]);
    }
    ~StopsPassedOn() {
        g_iChild = 0;
        for (int i = 0; i < s_iCount; ++i) {
            sigaction(s_aiSignals[i], &m_astOld[i], nullptr);
            const auto fnOld = m_astOld[i].sa_handler;
            if (g_iPassed == s_aiSignals[i] && fnOld != SIG_DFL && fnOld != SIG_IGN) raise(s_aiSignals[i]);
        }
    }
    StopsPassedOn(const StopsPassedOn&) = delete;
    StopsPassedOn& operator=(const StopsPassedOn&) = delete;

  private:
    static constexpr int s_iCount = 3;
    static constexpr int s_aiSignals[s_iCount] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction m_astOld[s_iCount];
};

/// A pipe for what a program prints, and the wish of the program to come to print there.
class Output {
  public:
    explicit Output(bool bWanted) {
        posix_spawn_file_actions_init(&m_stActions);
        if (!bWanted || pipe2(m_aiEnds, O_CLOEXEC) != 0) return;
        posix_spawn_file_actions_adddup2(&m_stActions, m_aiEnds[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&m_stActions, m_aiEnds[1], STDERR_FILENO);
    }
    ~Output() {
        posix_spawn_file_actions_destroy(&m_stActions);
        for (const int iEnd : m_aiEnds)
            if (iEnd >= 0) close(iEnd);
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    const posix_spawn_file_actions_t* Actions() const { return &m_stActions; }

    /// Until the program has closed its end; what is too much is read and dropped, so that it never waits.
    void ReadAll(std::string& strAll) {
        close(m_aiEnds[1]);
        m_aiEnds[1] = -1;
        char acPiece[4096];
        for (;;) {
            const ssize_t iRead = read(m_aiEnds[0], acPiece, sizeof acPiece);
            if (iRead < 0 && errno == EINTR) continue;
            if (iRead <= 0) return;
            strAll.append(acPiece, std::min(static_cast<size_t>(iRead), g_uMostOutput - strAll.size()));
        }
    }

  private:
    posix_spawn_file_actions_t m_stActions;
    int m_aiEnds[2] = {-1, -1};
};

} // namespace

Result WaitForEnd(pid_t iChild, int& iExitCode) {
    int iStatus = 0;
    pid_t iEnded;
    do iEnded = waitpid(iChild, &iStatus, 0);
    while (iEnded < 0 && errno == EINTR);
    if (iEnded != iChild) return Result::Fail(std::string("cannot wait: ") + std::strerror(errno));
    iExitCode = WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : 128 + WTERMSIG(iStatus);
    return {};
}

Result RunBeside(const std::string& strName, const std::vector<std::string>& listArguments, int& iExitCode,
                 std::string* pOutput) {
    const std::string strFile = JoinPath(OwnFolder(), strName);
    if (!FileExists(strFile)) return Result::NotFound("there is no " + strFile);
    std::vector<char*> listWords{const_cast<char*>(strFile.c_str())};
    for (const std::string& strWord : listArguments) listWords.push_back(const_cast<char*>(strWord.c_str()));
    listWords.push_back(nullptr);
    const StopsPassedOn stops; // caught signals are at their default in the new program
    Output output(pOutput != nullptr);
    pid_t iChild = 0;
    const int iError =
        posix_spawn(&iChild, strFile.c_str(), output.Actions(), nullptr, listWords.data(), environ);
    if (iError != 0) return Result::Fail("cannot start " + strFile + ": " + std::strerror(iError));
    g_iChild = iChild;
    if (pOutput) output.ReadAll(*pOutput);
    return WaitForEnd(iChild, iExitCode);
}

} // namespace platform::tool
