// The types of a screenshot's files.
#include "companion/shot.h"

#include <gtest/gtest.h>

TEST(ShotTypes, WordsAreTypesOfTheSettings) {
    EXPECT_EQ(companion::ShotTypeOf("bmp"), 0u);
    EXPECT_EQ(companion::ShotTypeOf("jpg"), 1u);
    EXPECT_EQ(companion::ShotTypeOf("png"), 2u);
    EXPECT_EQ(companion::ShotTypeOf("heic"), 3u);
    EXPECT_EQ(companion::ShotTypeOf("all"), 4u);
    EXPECT_EQ(companion::ShotTypeOf(""), companion::g_uNoShotType);
    EXPECT_EQ(companion::ShotExtensions(2), std::vector<std::string>{".png"});
    EXPECT_EQ(companion::ShotExtensions(77).size(), 3u);
}
