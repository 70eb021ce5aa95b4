#pragma once
// Work in a forked child, so that once-per-process state (the segment, forwarders) stays fresh in the parent.
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

/// A child that runs the function and ends with its value as exit status.
class Child {
  public:
    explicit Child(const std::function<int()>& fn) : m_iPid(fork()) {
        if (m_iPid == 0) _exit(fn());
    }
    int Wait() {
        int iStatus = 0;
        if (m_iPid <= 0 || waitpid(m_iPid, &iStatus, 0) != m_iPid) return -1;
        m_iPid = 0;
        return WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : 1000 + WTERMSIG(iStatus);
    }
    ~Child() {
        if (m_iPid > 0) Wait();
    }
    pid_t Pid() const { return m_iPid; }

  private:
    pid_t m_iPid;
};

inline int RunInChild(const std::function<int()>& fn) { return Child(fn).Wait(); }

/// One step that one process waits for and another one takes.
class Signal {
  public:
    Signal() { m_bOpen = pipe(m_aiEnds) == 0; }
    ~Signal() {
        close(m_aiEnds[0]);
        close(m_aiEnds[1]);
    }
    void Give() { [[maybe_unused]] const ssize_t iWritten = write(m_aiEnds[1], "x", 1); }
    void Take() {
        char c;
        [[maybe_unused]] const ssize_t iRead = read(m_aiEnds[0], &c, 1);
    }

  private:
    int m_aiEnds[2] = {-1, -1};
    bool m_bOpen = false;
};
