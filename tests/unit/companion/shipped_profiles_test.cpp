// The check has nothing to say against what is shipped.
#include "companion/profile_check/profile_check.h"

#include <gtest/gtest.h>

#include <filesystem>
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
        st.publishedNames = {"CPU_USAGE#0", "CPU_TEMP#0", "GPU_USAGE#0", "GPU_TEMP#0"};
        companion::Findings findings;
        ASSERT_TRUE(companion::FindProfileFaults(st, findings)) << entry.path();
        for (const companion::Finding& found : findings.All())
            EXPECT_TRUE(found.eSeverity != companion::Severity::Error &&
                        found.strText.starts_with("the face \"Arial\" is not installed here"))
                << companion::FindingsAsText(st.strProfile, findings, false);
    }
    EXPECT_EQ(uProfiles, 5u);
}
