#include "capture/screenshot.h"

#include "platform/headless/test_controls.h"
#include "platform/utf.h"

#include <gtest/gtest.h>

#include <string>

namespace {

namespace headless = platform::headless;

std::string ShotName() {
    char16_t wz[g_uShotNameUnits];
    g_fnMakeShotName(wz);
    char sz[g_uShotNameUnits * 3];
    platform::Utf16ToUtf8(wz, sz, sizeof sz);
    return sz;
}

struct ShotName : ::testing::Test {
    void SetUp() override { headless::ResetAll(); }
    void TearDown() override { headless::ResetAll(); }
};

} // namespace

TEST_F(ShotName, IsProcessLocalTimeAndHundredths) {
    EXPECT_EQ(::ShotName(), "Screenshot(4242)-20240229-1305-0912");
}

TEST_F(ShotName, ShortNumbersAreFilledUp) {
    headless::SetLocalTime({987, 1, 2, 3, 4, 5});
    headless::SetUnixMilliseconds(1'000'009);
    EXPECT_EQ(::ShotName(), "Screenshot(4242)-09870102-0304-0500");
}

TEST_F(ShotName, HundredthsAreOfTheOtherClock) {
    headless::SetUnixMilliseconds(1'709'211'909'999);
    EXPECT_EQ(::ShotName(), "Screenshot(4242)-20240229-1305-0999");
}

TEST_F(ShotName, LargeProcessIdsAreSigned) {
    headless::SetProcessId(0xFFFFFFFF);
    EXPECT_EQ(::ShotName(), "Screenshot(-1)-20240229-1305-0912");
}
