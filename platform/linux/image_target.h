#pragma once
// A picture file while it is written: nobody finds it under its name before it is whole, and a process that
// ends meanwhile leaves nothing behind where the file system has files without a name.
#include "platform/types.h"
#include <cstdio>
#include <string>

namespace platform::image {

class CImageTarget {
  public:
    CImageTarget() = default;
    CImageTarget(const CImageTarget&) = delete;
    CImageTarget& operator=(const CImageTarget&) = delete;
    /// What was not finished is taken away.
    ~CImageTarget();

    /// False for a folder that is missing or can't be written to. What lies there and is no plain file, such
    /// as a link or a device, is written to as it is.
    bool Open(const char16_t* wzPath) noexcept;
    std::FILE* File() const noexcept { return m_pFile; }
    /// Lays the file down under its name, over a plain file of that name. False on a full disk, too.
    bool Finish() noexcept;

  private:
    enum class Kind { Nameless, Draft, InPlace };
    bool OpenPlain(const std::string& strFolder);
    bool Take(int iFile, Kind eKind);
    bool Link() noexcept;
    bool Rename() noexcept;
    std::string Draft() const;

    std::FILE* m_pFile = nullptr;
    Kind m_eKind = Kind::InPlace;
    std::string m_strPath;
    std::string m_strDraft; ///< name of the unfinished file, where it has one
};

} // namespace platform::image
