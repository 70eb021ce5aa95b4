#pragma once
// The lines that the overlay's own code logs while this program runs it.
#include <cstddef>
#include <string>
#include <vector>

namespace companion {

/// Takes the diagnostic log over for its life; the former receiver comes back.
class LogCatcher {
  public:
    /// Hostile profiles log a line for each of a million items.
    static constexpr std::size_t c_uLinesMost = 100000;

    /// Keeps the first uMost lines. bPrint: all lines go to standard error too.
    explicit LogCatcher(bool bPrint = false, std::size_t uMost = c_uLinesMost);
    ~LogCatcher();
    LogCatcher(const LogCatcher&) = delete;
    LogCatcher& operator=(const LogCatcher&) = delete;

    /// What was kept, without line ends; none is kept any more.
    std::vector<std::string> Take();
    /// The last one that was kept; empty if there is none.
    std::string Last() const { return m_listLines.empty() ? std::string() : m_listLines.back(); }

  private:
    static void Receive(const char* szLine);

    static LogCatcher* s_pCurrent;
    LogCatcher* m_pFormer;
    void (*m_fnFormer)(const char*);
    std::vector<std::string> m_listLines;
    std::size_t m_uMost;
    bool m_bPrint;
};

} // namespace companion
