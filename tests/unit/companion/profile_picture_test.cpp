#include "companion/profile_folder.h"
#include "platform/tool.h"
#include "tools/profile/background.h"
#include <fstream>
#include <gtest/gtest.h>

using namespace companion;
namespace fs = std::filesystem;

namespace {

using Colour = std::vector<u8>;

Colour At(const Picture& picture, u32 uX, u32 uY) { return {picture.At(uX, uY), picture.At(uX, uY) + 3}; }

class CompanionPictures : public ::testing::Test {
  protected:
    void SetUp() override {
        m_path = PathOfText(platform::tool::TempFolder()) /
                 ("orvin-pictures-" + std::to_string(platform::tool::OwnProcessId()));
        fs::create_directories(m_path);
    }
    void TearDown() override { fs::remove_all(m_path); }
    std::string File(const char* szName) const { return TextOfPath(m_path / szName); }

    fs::path m_path;
};

/// Red, green / blue, white.
Picture FourColours() {
    Picture picture(2, 2);
    const Colour aColours[4] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
    for (u32 u = 0; u < 4; ++u) std::copy_n(aColours[u].begin(), 3, picture.At(u % 2, u / 2));
    return picture;
}

} // namespace

TEST_F(CompanionPictures, AFileGivesBackWhatWasWritten) {
    ASSERT_TRUE(WritePicture(File("a.png"), FourColours()));
    Picture picture;
    ASSERT_TRUE(ReadPicture(File("a.png"), picture));
    EXPECT_EQ(picture.uWidth, 2u);
    EXPECT_EQ(picture.uHeight, 2u);
    EXPECT_EQ(picture.aPixels, FourColours().aPixels);
    EXPECT_FALSE(fs::exists(m_path / "a.png.new"));
}

TEST_F(CompanionPictures, AnExistingFileIsReplaced) {
    ASSERT_TRUE(WritePicture(File("a.png"), Picture(5, 7)));
    ASSERT_TRUE(WritePicture(File("a.png"), FourColours()));
    Picture picture;
    ASSERT_TRUE(ReadPicture(File("a.png"), picture));
    EXPECT_EQ(picture.uWidth, 2u);
}

TEST_F(CompanionPictures, FilesThatAreNone) {
    std::ofstream(m_path / "bad.png", std::ios::binary) << "no picture at all";
    Picture picture;
    EXPECT_FALSE(ReadPicture(File("bad.png"), picture));
    EXPECT_FALSE(ReadPicture(File("missing.png"), picture));
    EXPECT_FALSE(WritePicture(File("no folder/a.png"), FourColours()));
}

TEST_F(CompanionPictures, ABackgroundPictureCoversTheWhole) {
    ASSERT_TRUE(WritePicture(File("a.png"), FourColours()));
    Picture picture;
    ASSERT_TRUE(MakeBackground(File("a.png"), 40, 20, picture));
    // Twice as wide as high: of the square, the middle half of its height is left.
    EXPECT_EQ(At(picture, 0, 0), (Colour{255, 0, 0}));
    EXPECT_EQ(At(picture, 39, 0), (Colour{0, 255, 0}));
    EXPECT_EQ(At(picture, 0, 19), (Colour{0, 0, 255}));
    EXPECT_EQ(At(picture, 39, 19), (Colour{255, 255, 255}));
    EXPECT_EQ(At(picture, 19, 9), (Colour{255, 0, 0}));
    EXPECT_EQ(At(picture, 20, 10), (Colour{255, 255, 255}));
}

TEST_F(CompanionPictures, ABackgroundIsShrunkToTheMeanOfItsPixels) {
    ASSERT_TRUE(WritePicture(File("a.png"), FourColours()));
    Picture picture;
    ASSERT_TRUE(MakeBackground(File("a.png"), 1, 1, picture));
    EXPECT_EQ(At(picture, 0, 0), (Colour{128, 128, 128})); // (255 + 0 + 0 + 255) / 4, halves up
}

TEST(CompanionBackground, AColour) {
    Picture picture;
    ASSERT_TRUE(MakeBackground("#1E90ff", 4, 3, picture));
    EXPECT_EQ(At(picture, 0, 0), (Colour{0x1E, 0x90, 0xFF}));
    EXPECT_EQ(At(picture, 3, 2), (Colour{0x1E, 0x90, 0xFF}));
    for (const char* szBad : {"#", "#12345", "#1234567", "#12345g", "#+12345"})
        EXPECT_EQ(MakeBackground(szBad, 4, 3, picture).iCode, kUsage) << szBad;
}

TEST(CompanionBackground, ACheckerOfTwoGreys) {
    Picture picture;
    ASSERT_TRUE(MakeBackground("checker", 64, 64, picture));
    EXPECT_NE(At(picture, 0, 0), At(picture, 16, 0));
    EXPECT_EQ(At(picture, 0, 0), At(picture, 15, 15));
    EXPECT_EQ(At(picture, 0, 0), At(picture, 16, 16));
}

TEST(CompanionBackground, BrightIsBrighterThanDarkAtAnySize) {
    for (const u32 uSide : {16u, 17u, 100u, 2000u}) {
        Picture bright, dark;
        ASSERT_TRUE(MakeBackground("bright", uSide, 16, bright));
        ASSERT_TRUE(MakeBackground("dark", uSide, 16, dark));
        for (size_t u = 0; u < bright.aPixels.size(); u += 4)
            EXPECT_GT(bright.aPixels[u + 1], dark.aPixels[u + 1] + 60);
    }
}
