#pragma once
// A data folder of a test's own, which the headless back-end names as the common one while it lives.
#include "platform/headless/test_controls.h"

#include <string>

class CTestDataFolder {
  public:
    /// An empty data folder, or one with the shaders of the source tree.
    explicit CTestDataFolder(bool bWithShaders = true) {
        Make(bWithShaders);
        platform::headless::SetCommonDataFolder(m_strRoot);
    }
    CTestDataFolder(const CTestDataFolder&) = delete;
    CTestDataFolder& operator=(const CTestDataFolder&) = delete;
    /// Removes the folder and everything in it.
    ~CTestDataFolder();

    /// Path of a data file in UTF-8, whether it exists or not.
    std::string Path(const std::string& strName) const;
    /// Replaces a file's contents, byte for byte.
    void Write(const std::string& strName, const std::string& strBytes) const;
    std::string Read(const std::string& strName) const;
    void Remove(const std::string& strName) const;

  private:
    void Make(bool bWithShaders);

    std::string m_strRoot;
    std::string m_strData;
};
