#pragma once
// The file of the machine's settings, for the tools.
#include "platform/tool_settings.h"

namespace platform::tool {

/// Empty where the system has no data folder.
std::string SettingsFolder();
std::string SettingsFile();
std::string ReadSettingsFile();
/// The file's text with changes. Fails for what cannot be changed.
Result ChangeSettingsText(std::string& strFile, const std::vector<Setting>& listSettings);
/// A new file in the place of the old one, whole or not at all.
Result ReplaceSettingsFile(const std::string& strText);

/// Keeps others out of a folder that asks too, while it lives; where that cannot be, nobody waits.
class FolderLock {
  public:
    explicit FolderLock(const std::string& strFolder);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

  private:
    int m_iFile;
};

} // namespace platform::tool
