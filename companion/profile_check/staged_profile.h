#pragma once
// A copy of what the layout of one profile is built from, in a data folder of its own, so that a profile
// anywhere on disk is read by the library's own code, and nothing is written beside it.
#include "companion/profile_check/profile_items.h"

#include <filesystem>

namespace companion {

class StagedProfile {
  public:
    /// Copies OSD.xml and the files that the items name; OSD_Ref.xml out of the data folder, or a bare one.
    /// While it lives, the library looks into the copy.
    StagedProfile(const std::filesystem::path& pathFolder, const std::filesystem::path& pathData,
                  const std::vector<const ProfileItem*>& items);
    /// Removes the copy.
    ~StagedProfile();
    StagedProfile(const StagedProfile&) = delete;
    StagedProfile& operator=(const StagedProfile&) = delete;

    /// False if the disk took no copy.
    bool IsReady() const { return m_bReady; }
    /// Name of the profile in the copy.
    static constexpr const char16_t* c_wzName = u"Checked";

  private:
    void CopyAll(const std::filesystem::path& pathFolder, const std::filesystem::path& pathData,
                 const std::vector<const ProfileItem*>& items);

    std::filesystem::path m_pathRoot;
    std::u16string m_wzFormerFolder;
    bool m_bReady = false;
};

} // namespace companion
