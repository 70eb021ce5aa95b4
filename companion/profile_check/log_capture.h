#pragma once
// The lines that the library's own code logs while a check runs it.
#include <string>
#include <vector>

namespace companion {

/// Takes the diagnostic log over for its life. One at a time; the former receiver comes back.
class LogCapture {
  public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// Without the line ends; empties the list.
    std::vector<std::string> Take();

  private:
    void (*m_fnFormer)(const char*);
};

} // namespace companion
