#include "draw/image_save.h"

#include "draw/texture.h"
#include "platform/utf.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

namespace {

using platform::ImageContainer;
using platform::ImagePixels;

constexpr u32 g_uWidth = 5, g_uHeight = 3, g_uStride = 24; // odd rows with room behind them

struct ImageSave : ::testing::Test {
    void SetUp() override {
        for (u32 i = 0; i < sizeof m_au8; ++i) m_au8[i] = static_cast<u8>(i * 7 + 3);
    }
    std::u16string Path(const std::string& strName) const {
        char16_t wz[1024] = {};
        platform::Utf8ToUtf16(m_data.Path(strName).c_str(), wz, 1024);
        return wz;
    }
    bool Exists(const std::string& strName) const { return std::filesystem::exists(m_data.Path(strName)); }
    i32 Save(const std::string& strName, ImageContainer eContainer, ImagePixels ePixels,
             u32 uWidth = g_uWidth, u32 uHeight = g_uHeight) {
        return g_fnSaveImage(uWidth, uHeight, g_uStride, m_au8, Path(strName).c_str(), eContainer, ePixels);
    }
    /// Largest difference of a byte between what was saved and what is read back.
    u32 Difference(const std::string& strName, u32 uBytes) {
        CTexture_Base texture;
        EXPECT_TRUE(texture.m_fnLoadTexture(Path(strName).c_str()));
        EXPECT_EQ(texture.m_uWidth, g_uWidth);
        EXPECT_EQ(texture.m_uHeight, g_uHeight);
        u8* pPixels = nullptr;
        texture.m_fnGetLevel(&pPixels, 0, 0);
        u32 uMost = pPixels ? 0 : 999;
        for (u32 u = 0; pPixels && u < g_uWidth * g_uHeight * 4; ++u) {
            const u32 uPixel = u / 4,
                      c = u % 4 == 3 || texture.m_uFormat == g_uFormatBGRA8 ? u % 4 : 2 - u % 4;
            const u8* const pFrom = m_au8 + uPixel / g_uWidth * g_uStride + uPixel % g_uWidth * uBytes;
            const int iWanted = c == 3 && uBytes == 3 ? 255 : pFrom[c];
            uMost = std::max(uMost, static_cast<u32>(std::abs(iWanted - pPixels[u])));
        }
        return uMost;
    }
    CTestDataFolder m_data{false};
    u8 m_au8[g_uStride * g_uHeight];
};

} // namespace

TEST_F(ImageSave, PngReadsBackEqualInBothFormats) {
    EXPECT_EQ(Save("a.png", ImageContainer::Png, ImagePixels::Bgra32), 0);
    EXPECT_EQ(Difference("a.png", 4), 0u);
    EXPECT_EQ(Save("b.png", ImageContainer::Png, ImagePixels::Bgr24), 0);
    EXPECT_EQ(Difference("b.png", 3), 0u);
}

TEST_F(ImageSave, BmpReadsBackEqual) {
    EXPECT_EQ(Save("a.bmp", ImageContainer::Bmp, ImagePixels::Bgr24), 0);
    EXPECT_EQ(Difference("a.bmp", 3), 0u);
}

TEST_F(ImageSave, JpegReadsBackAlikeWhereColourIsEven) {
    for (u32 i = 0; i < sizeof m_au8; ++i) m_au8[i] = static_cast<u8>(60 * (i % 3) + 40);
    EXPECT_EQ(Save("a.jpg", ImageContainer::Jpeg, ImagePixels::Bgr24), 0);
    EXPECT_LE(Difference("a.jpg", 3), 4u);
}

TEST_F(ImageSave, BmpTakesNoAlphaAndLeavesNoFile) {
    EXPECT_EQ(Save("a.bmp", ImageContainer::Bmp, ImagePixels::Bgra32), 9);
    EXPECT_FALSE(Exists("a.bmp"));
}

/// A machine may have an encoder or none.
TEST_F(ImageSave, HeifReadsBackOrIsTheFourthStepAndLeavesNoFile) {
    for (u32 i = 0; i < sizeof m_au8; ++i) m_au8[i] = static_cast<u8>(i % 4 == 3 ? 255 : 60 * (i % 4) + 40);
    const i32 iStep = Save("a.heic", ImageContainer::Heif, ImagePixels::Bgra32);
    EXPECT_TRUE(iStep == 0 || iStep == 4) << iStep;
    EXPECT_EQ(Exists("a.heic"), iStep == 0);
    if (iStep == 0) {
        EXPECT_LE(Difference("a.heic", 4), 8u);
    }
}

TEST_F(ImageSave, HeifKeepsAlphaThatIsNot255) {
    for (u32 i = 0; i < sizeof m_au8; ++i) m_au8[i] = static_cast<u8>(i % 4 == 3 ? 128 : 60 * (i % 4) + 40);
    if (Save("a.heic", ImageContainer::Heif, ImagePixels::Bgra32) != 0) GTEST_SKIP() << "no encoder here";
    EXPECT_LE(Difference("a.heic", 4), 8u);
}

TEST_F(ImageSave, NullsAreRefused) {
    EXPECT_EQ(g_fnSaveImage(1, 1, 4, nullptr, u"a", ImageContainer::Png, ImagePixels::Bgra32), 99);
    EXPECT_EQ(g_fnSaveImage(1, 1, 4, m_au8, nullptr, ImageContainer::Png, ImagePixels::Bgra32), 99);
}

TEST_F(ImageSave, AMissingFolderIsTheThirdStep) {
    EXPECT_EQ(Save("no such folder/a.png", ImageContainer::Png, ImagePixels::Bgra32), 3);
}

TEST_F(ImageSave, APictureWithoutPixelsLeavesNoFile) {
    EXPECT_NE(Save("a.png", ImageContainer::Png, ImagePixels::Bgra32, 0, 0), 0);
    EXPECT_NE(Save("a.jpg", ImageContainer::Jpeg, ImagePixels::Bgr24, 5, 0), 0);
    EXPECT_FALSE(Exists("a.png") || Exists("a.jpg"));
}

/// Files of the folder, drafts too.
static std::size_t FilesBeside(const std::string& strPath) {
    const std::filesystem::directory_iterator it(std::filesystem::path(strPath).parent_path());
    return static_cast<std::size_t>(std::distance(begin(it), end(it)));
}

TEST_F(ImageSave, AFileThatExistsIsReplacedByAWholeOne) {
    m_data.Write("a.png", std::string(100000, 'x'));
    EXPECT_EQ(Save("a.png", ImageContainer::Png, ImagePixels::Bgra32), 0);
    EXPECT_EQ(Difference("a.png", 4), 0u);
    EXPECT_EQ(FilesBeside(m_data.Path("a.png")), 1u) << "no draft is left";
}

TEST_F(ImageSave, AFailureLeavesTheFileThatWasThere) {
    m_data.Write("a.bmp", "mine");
    EXPECT_EQ(Save("a.bmp", ImageContainer::Bmp, ImagePixels::Bgra32), 9);
    EXPECT_EQ(m_data.Read("a.bmp"), "mine");
    EXPECT_EQ(FilesBeside(m_data.Path("a.bmp")), 1u);
}

TEST_F(ImageSave, AFullDiskIsToldAndNothingButOurFileIsTakenAway) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no such device here";
    for (auto [szName, eContainer] :
         {std::pair("a.png", ImageContainer::Png), std::pair("a.jpg", ImageContainer::Jpeg),
          std::pair("a.bmp", ImageContainer::Bmp)}) {
        std::filesystem::create_symlink("/dev/full", m_data.Path(szName));
        EXPECT_NE(Save(szName, eContainer, ImagePixels::Bgr24), 0) << szName;
        EXPECT_TRUE(std::filesystem::is_symlink(m_data.Path(szName))) << szName;
    }
}
