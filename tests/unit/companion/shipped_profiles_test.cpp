// The check has nothing to say against what is shipped.
#include "tools/profile/check/profile.h"
#include "tools/profile/settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

namespace fs = std::filesystem;

TEST(ShippedProfilesCheck, FindsNothingButAFaceThatAnotherOneStandsInFor) {
    const fs::path data = fs::path(ORVIN_SOURCE_DIR) / "data";
    unsigned uProfiles = 0;
    for (const auto& entry : fs::directory_iterator(data / "Profiles")) {
        ++uProfiles;
        companion::CheckOptions st;
        st.strProfile = entry.path().generic_string();
        st.strDataFolder = data.generic_string();
        companion::TakeMachineSettings(data, true);
        st.sensorNames = companion::DefinedSensors();
        companion::Findings findings;
        ASSERT_TRUE(companion::FindProfileFaults(st, findings)) << entry.path();
        for (const companion::Finding& found : findings.All())
            EXPECT_TRUE(found.eSeverity != companion::Severity::Error &&
                        (found.strText.starts_with("the face \"Arial\" is not installed here") ||
                         found.strText.starts_with("the face \"Consolas\" is not installed here")))
                << companion::FindingsAsText(st.strProfile, findings, false);
    }
    EXPECT_EQ(uProfiles, 11u);
}

static std::string TextOf(const fs::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Its point takes a digit's cell, which only a face of one width fills.
TEST(ShippedProfilesCheck, ANumberWithDecimalsIsWrittenInAFaceOfOneWidth) {
    static const std::regex s_numBox("<NumBox [^>]*DataFullName=\"FRAME_TIME\"[^>]*>");
    unsigned uBoxes = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(ORVIN_SOURCE_DIR) / "data/Profiles")) {
        const std::string str = TextOf(entry.path() / "OSD.xml");
        for (std::sregex_iterator it(str.begin(), str.end(), s_numBox), end; it != end; ++it, ++uBoxes)
            EXPECT_NE(it->str().find("FontName=\"Consolas\""), std::string::npos) << entry.path();
    }
    EXPECT_EQ(uBoxes, 4u);
}

TEST(ShippedProfilesCheck, NoWritingIsSmallerThanElevenPixelsOnFourHundredAndEightyRows) {
    const fs::path data = fs::path(ORVIN_SOURCE_DIR) / "data";
    for (const auto& entry : fs::directory_iterator(data / "Profiles")) {
        const std::string str = TextOf(entry.path() / "OSD.xml");
        static const std::regex s_size("TextSize=\"(\\d+)\"");
        unsigned uSizes = 0;
        for (std::sregex_iterator it(str.begin(), str.end(), s_size), end; it != end; ++it, ++uSizes)
            EXPECT_GE(std::stoi((*it)[1]) * 480 / 1080.0, 11) << entry.path();
        // The sizes of the two built-in styles stand in OSD_Ref.xml, and people scale them.
        EXPECT_EQ(uSizes > 0, str.find("LayoutStyle=\"2\"") != std::string::npos) << entry.path();
    }
}
