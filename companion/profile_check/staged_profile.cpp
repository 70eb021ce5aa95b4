#include "companion/profile_check/staged_profile.h"

#include "companion/profile_check/text_check.h"
#include "companion/profile_folder.h"
#include "platform/folders.h"
#include "platform/headless/test_controls.h"

#include <chrono>
#include <fstream>

namespace companion {
namespace {

namespace fs = std::filesystem;

/// Not there yet: made of the clock and a number.
fs::path FreshFolder() {
    static unsigned s_uNumber = 0;
    const auto iNow = std::chrono::steady_clock::now().time_since_epoch().count();
    return fs::temp_directory_path() /
           ("orvin-check-" + std::to_string(iNow) + '-' + std::to_string(++s_uNumber));
}

std::u16string CommonFolder() {
    char16_t wz[260] = u"";
    platform::CommonDataFolder(wz, 260);
    return wz;
}

std::string Narrow(const std::u16string& wz) { return TextOfPath(fs::path(wz)); }

/// The least document that opens.
void WriteBareReference(const fs::path& path) { std::ofstream(path, std::ios::binary) << "<OSD/>\n"; }

} // namespace

StagedProfile::StagedProfile(const fs::path& pathFolder, const fs::path& pathData,
                             const std::vector<const ProfileItem*>& items)
    : m_wzFormerFolder(CommonFolder()) {
    try {
        m_pathRoot = FreshFolder();
        CopyAll(pathFolder, pathData, items);
        platform::headless::SetCommonDataFolder(TextOfPath(m_pathRoot));
        m_bReady = true;
    } catch (const fs::filesystem_error&) {
        m_bReady = false;
    }
}

void StagedProfile::CopyAll(const fs::path& pathFolder, const fs::path& pathData,
                            const std::vector<const ProfileItem*>& items) {
    const fs::path pathCopy = m_pathRoot / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Data";
    const fs::path pathProfile = pathCopy / "Profiles" / fs::path(c_wzName);
    fs::create_directories(pathProfile);
    fs::copy_file(pathFolder / "OSD.xml", pathProfile / "OSD.xml");
    std::error_code ignored;
    if (!fs::copy_file(pathData / "OSD_Ref.xml", pathCopy / "OSD_Ref.xml", ignored))
        WriteBareReference(pathCopy / "OSD_Ref.xml");
    for (const ProfileItem* p : items) {
        if (!FindAttribute(*p->pKind, "FileName")) continue;
        const std::string strName = AttributeText(*p, "FileName");
        const fs::path pathFile = FileInProfile(pathFolder, strName);
        if (strName.empty() || pathFile.empty() || !fs::is_regular_file(pathFile, ignored)) continue;
        const fs::path pathTo = FileInProfile(pathProfile, strName);
        fs::create_directories(pathTo.parent_path(), ignored);
        fs::copy_file(pathFile, pathTo, fs::copy_options::skip_existing, ignored);
    }
}

StagedProfile::~StagedProfile() {
    platform::headless::SetCommonDataFolder(Narrow(m_wzFormerFolder));
    std::error_code ignored;
    if (!m_pathRoot.empty()) fs::remove_all(m_pathRoot, ignored);
}

} // namespace companion
