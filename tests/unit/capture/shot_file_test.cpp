// One screenshot as one file: types, names and what keeps one from being written.
#include "capture/shot_file.h"

#include "draw/texture.h"
#include "platform/utf.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr u32 c_uWidth = 7, c_uHeight = 5;

struct ShotFile : ::testing::Test {
    void SetUp() override {
        for (u32 i = 0; i < sizeof m_au8; ++i) m_au8[i] = static_cast<u8>(i * 11 + 5);
        m_folder = fs::path(m_data.Path("x")).parent_path() / "shots";
        fs::create_directory(m_folder);
    }
    static std::u16string Wide(const std::string& str) {
        char16_t wz[1024] = {};
        platform::Utf8ToUtf16(str.c_str(), wz, 1024);
        return wz;
    }
    bool Save(u32 uType, const std::string& strFolder, u32 uWidth = c_uWidth) {
        return g_fnSaveImage(uWidth, c_uHeight, m_au8, 11, uType, Wide(strFolder).c_str(), u"a shot");
    }
    bool Save(u32 uType) { return Save(uType, m_folder.string()); }
    std::vector<std::string> Files() const {
        std::vector<std::string> vec;
        for (const auto& entry : fs::directory_iterator(m_folder))
            vec.push_back(entry.path().filename().string());
        return vec;
    }
    /// Largest difference of a colour between what was saved and what is read back.
    u32 Difference(const fs::path& path) const {
        CTexture_Base texture;
        EXPECT_TRUE(texture.m_fnLoadTexture(Wide(path.string()).c_str())) << path;
        EXPECT_EQ(texture.m_uWidth, c_uWidth);
        EXPECT_EQ(texture.m_uHeight, c_uHeight);
        u8* p = nullptr;
        texture.m_fnGetLevel(&p, 0, 0);
        u32 uMost = p ? 0 : 999;
        for (u32 u = 0; p && u < c_uWidth * c_uHeight * 4; ++u) {
            const u32 c = u % 4, uFrom = texture.m_uFormat == g_uFormatBGRA8 && c != 3 ? u - c + 2 - c : u;
            const int iWanted = c == 3 ? 255 : m_au8[uFrom];
            uMost = std::max(uMost, static_cast<u32>(std::abs(iWanted - p[u])));
        }
        return uMost;
    }
    CTestDataFolder m_data{false};
    fs::path m_folder;
    u8 m_au8[c_uWidth * c_uHeight * 4];
};

} // namespace

TEST_F(ShotFile, EachTypeHasItsExtensionAndReadsBack) {
    for (u32 uType = SHOT_BMP; uType <= SHOT_PNG; ++uType) EXPECT_TRUE(Save(uType));
    EXPECT_EQ(Difference(m_folder / "a shot.bmp"), 0u);
    EXPECT_EQ(Difference(m_folder / "a shot.png"), 0u) << "and it is opaque";
    EXPECT_EQ(Files().size(), 3u);
}

TEST_F(ShotFile, JpegReadsBackAlikeWhereColourIsEven) {
    for (u32 i = 0; i < sizeof m_au8; ++i) m_au8[i] = static_cast<u8>(60 * (i % 4) + 20);
    EXPECT_TRUE(Save(SHOT_JPEG));
    EXPECT_LE(Difference(m_folder / "a shot.jpg"), 4u);
}

/// A system without an encoder leaves no file.
TEST_F(ShotFile, HeifIsWrittenWholeOrNotAtAll) {
    for (u32 i = 0; i < sizeof m_au8; ++i) m_au8[i] = static_cast<u8>(60 * (i % 4) + 20);
    EXPECT_TRUE(Save(SHOT_HEIF));
    for (const std::string& strFile : Files()) {
        EXPECT_EQ(strFile, "a shot.heic");
        EXPECT_LE(Difference(m_folder / strFile), 8u);
    }
}

TEST_F(ShotFile, TypesBeyondTheTableSaveNothing) {
    EXPECT_TRUE(Save(SHOT_TYPES));
    EXPECT_TRUE(Save(~0u));
    EXPECT_TRUE(Files().empty());
}

TEST_F(ShotFile, AnEmptyFolderStandsForTheDataFolder) {
    EXPECT_TRUE(Save(SHOT_PNG, ""));
    EXPECT_TRUE(fs::exists(m_data.Path("a shot.png")));
}

TEST_F(ShotFile, AMissingFolderSavesNothingAndSaysNothing) {
    EXPECT_TRUE(Save(SHOT_PNG, (m_folder / "gone").string()));
    EXPECT_FALSE(fs::exists(m_folder / "gone"));
}

TEST_F(ShotFile, NothingToSaveIsNoFailure) {
    EXPECT_TRUE(Save(SHOT_PNG, m_folder.string(), 0));
    EXPECT_TRUE(g_fnSaveImage(1, 1, nullptr, 11, SHOT_PNG, Wide(m_folder.string()).c_str(), u"a"));
    EXPECT_TRUE(g_fnSaveImage(1, 1, m_au8, 11, SHOT_PNG, nullptr, u"a"));
    EXPECT_TRUE(g_fnSaveImage(1, 1, m_au8, 11, SHOT_PNG, u"", nullptr));
    EXPECT_TRUE(g_fnSaveImage(1, 1, m_au8, 99, SHOT_PNG, Wide(m_folder.string()).c_str(), u"a"));
    EXPECT_TRUE(Files().empty());
}

TEST_F(ShotFile, APictureOfTheSameNameIsReplaced) {
    EXPECT_TRUE(Save(SHOT_PNG));
    m_au8[0] ^= 0xFF;
    EXPECT_TRUE(Save(SHOT_PNG));
    EXPECT_EQ(Difference(m_folder / "a shot.png"), 0u);
    EXPECT_EQ(Files().size(), 1u) << "no draft is left";
}
