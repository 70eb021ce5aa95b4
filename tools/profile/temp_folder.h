#pragma once
// A folder of a moment.
#include "companion/result.h"
#include <filesystem>

namespace companion {

/// Vanishes with the object, and all that is in it.
class TempFolder {
  public:
    TempFolder() = default;
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// Makes a new one in the system's folder for such files.
    Result Make();
    /// Empty before it is made.
    const std::filesystem::path& Path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

} // namespace companion
