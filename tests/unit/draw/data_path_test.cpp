#include "draw/data_path.h"

#include "platform/folders.h"
#include "platform/headless/test_controls.h"

#include <gtest/gtest.h>

#include <string>

namespace headless = platform::headless;

namespace {
struct DataPath : ::testing::Test {
    void SetUp() override { headless::ResetAll(); }
    void TearDown() override { headless::ResetAll(); }
    char m_szPath[g_uDataPathCapacity] = "stale";
    char16_t m_wzPath[g_uDataPathCapacity] = u"stale";
};
} // namespace

TEST_F(DataPath, BothFormsNameTheSameFile) {
    headless::SetCommonDataFolder(u"/common");
    EXPECT_TRUE(g_fnResolveDataPath(m_szPath, "OSD.ini"));
    EXPECT_STREQ(m_szPath, "/common/ZARN/Orvin Deck/ORVIN-OSD/Data/OSD.ini");
    EXPECT_TRUE(g_fnResolveDataPath(m_wzPath, u"OSD.ini"));
    EXPECT_EQ(std::u16string(m_wzPath), u"/common/ZARN/Orvin Deck/ORVIN-OSD/Data/OSD.ini");
}

TEST_F(DataPath, AnUnknownFolderGivesAnEmptyPath) {
    headless::SetCommonDataFolder(u"");
    EXPECT_FALSE(g_fnResolveDataPath(m_szPath, "x"));
    EXPECT_STREQ(m_szPath, "");
    EXPECT_FALSE(g_fnResolveDataPath(m_wzPath, u"x"));
    EXPECT_EQ(m_wzPath[0], 0);
}

TEST_F(DataPath, TheLongestPathFitsAndOneMoreIsRefused) {
    headless::SetCommonDataFolder(u"/c");
    const std::size_t uFolders = std::string("/c/ZARN/Orvin Deck/ORVIN-OSD/Data/").size();
    const std::string strFits(259 - uFolders, 'n');
    EXPECT_TRUE(g_fnResolveDataPath(m_szPath, strFits.c_str()));
    EXPECT_EQ(std::string(m_szPath).size(), 259u);
    EXPECT_FALSE(g_fnResolveDataPath(m_szPath, (strFits + "n").c_str()));
    EXPECT_STREQ(m_szPath, "");
    const std::u16string wstrFits(259 - uFolders, u'n');
    EXPECT_TRUE(g_fnResolveDataPath(m_wzPath, wstrFits.c_str()));
    EXPECT_FALSE(g_fnResolveDataPath(m_wzPath, (wstrFits + u"n").c_str()));
    EXPECT_EQ(m_wzPath[0], 0);
}

TEST_F(DataPath, AFolderThatLeavesNoRoomIsRefused) {
    headless::SetCommonDataFolder(std::u16string(250, u'c').c_str());
    EXPECT_FALSE(g_fnResolveDataPath(m_szPath, "x"));
    EXPECT_FALSE(g_fnResolveDataPath(m_wzPath, u"x"));
}

TEST_F(DataPath, TheNarrowFormIsInTheFileCallsEncoding) {
    headless::SetCommonDataFolder(u"/\u00e9t\u00e9");
    EXPECT_TRUE(g_fnResolveDataPath(m_szPath, "x"));
    EXPECT_STREQ(m_szPath, "/\xc3\xa9t\xc3\xa9/ZARN/Orvin Deck/ORVIN-OSD/Data/x");
}
