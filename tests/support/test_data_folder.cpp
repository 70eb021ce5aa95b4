#include "tests/support/test_data_folder.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

/// Not there yet: made of the clock and a number, so that tests side by side do not meet.
static std::string FreshRoot() {
    static unsigned s_uNumber = 0;
    const auto iNow = std::chrono::steady_clock::now().time_since_epoch().count();
    const std::string strName = "orvin-data-" + std::to_string(iNow) + "-" + std::to_string(++s_uNumber);
    return (fs::temp_directory_path() / strName).generic_string();
}

/// Adds what a folder holds to another. The library's own recursive copy leaves out, under MinGW, folders
/// that exist already.
static void CopyInto(const fs::path& from, const fs::path& to) {
    for (const auto& entry : fs::recursive_directory_iterator(from)) {
        const fs::path target = to / entry.path().lexically_relative(from);
        if (entry.is_directory())
            fs::create_directories(target);
        else
            fs::copy_file(entry.path(), target, fs::copy_options::overwrite_existing);
    }
}

void InstallTestData(const std::string& strFolder, bool bWithShaders) {
    const fs::path source = ORVIN_SOURCE_DIR, profiles = fs::path(strFolder) / "Profiles";
    fs::create_directories(profiles);
    CopyInto(source / "data", strFolder);
    fs::remove(fs::path(strFolder) /
               "OSD.ini"); // it sets the keys of [HostCare]; a test sets those it asks for
    CopyInto(source / "tests/profiles", profiles);
    if (bWithShaders) CopyInto(source / "shaders", strFolder);
}

void CTestDataFolder::Make(bool bWhole) {
    m_strRoot = FreshRoot();
    m_strData = m_strRoot + "/ZARN/Orvin Deck/ORVIN-OSD/Data/";
    fs::create_directories(m_strData);
    if (bWhole) InstallTestData(m_strData, true);
}

CTestDataFolder::~CTestDataFolder() {
    std::error_code ignored;
    fs::remove_all(m_strRoot, ignored);
}

std::string CTestDataFolder::Path(const std::string& strName) const { return m_strData + strName; }

void CTestDataFolder::Write(const std::string& strName, const std::string& strBytes) const {
    std::ofstream file(Path(strName), std::ios::binary | std::ios::trunc);
    file.write(strBytes.data(), static_cast<std::streamsize>(strBytes.size()));
}

std::string CTestDataFolder::Read(const std::string& strName) const {
    std::ifstream file(Path(strName), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void CTestDataFolder::Remove(const std::string& strName) const { fs::remove(Path(strName)); }
