#pragma once
// A file that is written to its end, or fails with one line that says why.
#include "companion/result.h"
#include <fstream>
#include <string>

namespace companion::recording {

class OutputFile {
  public:
    /// A file that exists is written over only with bForce; what is no file, such as a device, always.
    Result Open(const std::string& strPath, bool bForce);
    /// All of it has left this program when this returns. A file that has no room for its first piece is
    /// taken away again; what a later piece has no room for ends there.
    Result Write(const std::string& strText);
    Result Close();

  private:
    Result Why() const;
    Result Abandon();

    std::ofstream m_file;
    std::string m_strPath;
    bool m_bBegun = false; ///< a piece has been written
};

/// A program's name as a part of a file's; "program" where it has none.
std::string PlainFileName(const std::string& strProgram);

} // namespace companion::recording
