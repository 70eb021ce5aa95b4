// Linux: this program once more.
#include "platform/tool_again.h"
#include "platform/linux/tool_child.h"
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace platform::tool {
namespace {

/// The new program's files and session.
class Manner {
  public:
    Manner() {
        posix_spawn_file_actions_init(&m_stFiles);
        posix_spawnattr_init(&m_stAttributes);
        posix_spawn_file_actions_addopen(&m_stFiles, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    ~Manner() {
        posix_spawn_file_actions_destroy(&m_stFiles);
        posix_spawnattr_destroy(&m_stAttributes);
    }
    Manner(const Manner&) = delete;
    Manner& operator=(const Manner&) = delete;
    void Apart(const std::string& strOutput) {
        constexpr int c_iFlags = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&m_stFiles, STDOUT_FILENO, strOutput.c_str(), c_iFlags, 0600);
        posix_spawn_file_actions_adddup2(&m_stFiles, STDOUT_FILENO, STDERR_FILENO);
        posix_spawnattr_setflags(&m_stAttributes, POSIX_SPAWN_SETSID);
    }
    Result Start(const std::vector<std::string>& listArguments, pid_t& iChild) const {
        const std::string strFile = JoinPath(OwnFolder(), OwnName());
        std::vector<char*> listWords{const_cast<char*>(strFile.c_str())};
        for (const std::string& str : listArguments) listWords.push_back(const_cast<char*>(str.c_str()));
        listWords.push_back(nullptr);
        const int iError =
            posix_spawn(&iChild, strFile.c_str(), &m_stFiles, &m_stAttributes, listWords.data(), environ);
        return iError == 0 ? Result{}
                           : Result::Fail("cannot start " + strFile + ": " + std::strerror(iError));
    }

  private:
    posix_spawn_file_actions_t m_stFiles;
    posix_spawnattr_t m_stAttributes;
};

} // namespace

Result RunAgain(const std::vector<std::string>& listArguments, int& iExitCode) {
    pid_t iChild = 0;
    const Result st = Manner().Start(listArguments, iChild);
    return st ? WaitForEnd(iChild, iExitCode) : st;
}

Result StartApart(const std::vector<std::string>& listArguments, const std::string& strOutput,
                  u32& uProcessId) {
    Manner manner;
    manner.Apart(strOutput);
    pid_t iChild = 0;
    const Result st = manner.Start(listArguments, iChild);
    uProcessId = static_cast<u32>(iChild);
    return st;
}

} // namespace platform::tool
