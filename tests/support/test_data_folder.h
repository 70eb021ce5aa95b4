#pragma once
// A data folder of a test's own, which the headless back-end names as the common one while it lives.
#include "platform/headless/test_controls.h"

#include <string>

/// Lays a data folder out: the files of data/, the profiles of the tests beside the shipped ones, and the
/// shaders if they are asked for.
void InstallTestData(const std::string& strFolder, bool bWithShaders);

class CTestDataFolder {
  public:
    /// A whole data folder, or an empty one.
    explicit CTestDataFolder(bool bWhole = true) {
        Make(bWhole);
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
    void Make(bool bWhole);

    std::string m_strRoot;
    std::string m_strData;
};
