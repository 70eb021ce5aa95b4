#pragma once
// A data folder of a moment that holds one profile and what belongs to it, so that a profile can be drawn
// from wherever it lies and nothing of the machine's own folder is touched.
#include "companion/profile_folder.h"
#include "platform/types.h"
#include "tools/profile/temp_folder.h"

namespace companion {

/// The folder vanishes with the object.
class Stage {
  public:
    enum class FontFiles { Copied, Left };
    /// Copies the profile, the files of the data folder itself and the font cache files of the default
    /// profile. What a data folder always has, but this one lacks, comes from beside this program. Can be
    /// repeated.
    Result Prepare(const std::filesystem::path& pathData, const ProfilePlace& stProfile,
                   FontFiles eFontFiles = FontFiles::Copied);

    /// Copies what a layout is built from and no more: the profile's OSD.xml, those of listFiles (paths in
    /// its folder) that can be copied, and the OSD_Ref.xml of the data folder, or a bare one.
    Result PrepareLayout(const std::filesystem::path& pathData, const ProfilePlace& stProfile,
                         const std::vector<std::filesystem::path>& listFiles);

    /// What the overlay takes for the common application data folder.
    std::filesystem::path CommonFolder() const { return m_folder.Path(); }
    std::filesystem::path DataFolder() const;

  private:
    Result MakeEmpty();

    TempFolder m_folder;
};

/// What a file of a folder was when it was looked at; two looks that are equal found nothing changed.
struct FileStamp {
    std::string strName;
    std::filesystem::file_time_type time;
    u64 uBytes = 0;
    bool operator==(const FileStamp&) const = default;
};
/// All files of a folder and of the folders in it, by name.
std::vector<FileStamp> LookAt(const std::filesystem::path& pathFolder);

} // namespace companion
