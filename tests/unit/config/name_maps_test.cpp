#include "config/fixed/name_maps.h"

#include "base/log.h"
#include "config/fixed/enable_map.h"

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

namespace {

std::vector<std::string> g_aLines;

class NameMaps : public testing::Test {
  protected:
    void SetUp() override {
        g_fnClearNameMaps();
        g_fnClearItemEnable();
        g_aLines.clear();
        g_fnLogSink = [](const char* sz) { g_aLines.emplace_back(sz); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormer;
        g_fnClearNameMaps();
        g_fnClearItemEnable();
    }
    using Lines = std::vector<std::string>;

  private:
    void (*m_fnFormer)(const char*) = g_fnLogSink;
};

TEST_F(NameMaps, FullNamesJoinTheirWords) {
    EXPECT_EQ(g_fnItemFullName(g_szClassicPrefix, "FPS_INFO", g_szPanelKind),
              "CLASSIC_STYLE_FPS_INFO_PANELID");
    EXPECT_EQ(g_fnItemFullName(g_szRV5Prefix, "MEMO0", g_szTextBoxKind), "RV5_STYLE_MEMO0_TEXTBOXID");
    EXPECT_EQ(g_fnItemFullName(g_szClassicPrefix, "SYSTEM_TIME_VALUE1", g_szNumBoxKind),
              "CLASSIC_STYLE_SYSTEM_TIME_VALUE1_NUMBOXID");
    EXPECT_EQ(g_fnItemFullName(g_szRV5Prefix, "POWER_DETECTOR", "TITLE", g_szFlipBoxKind),
              "RV5_STYLE_POWER_DETECTOR_TITLE_FLIPBOXID");
}

TEST_F(NameMaps, ATableFillsAMap) {
    constexpr stNameRow aRows[] = {{"VRAM_CLK_TITLE", 12}, {"MEMO0", 1087}};
    g_fnEnterNames(g_stNameMaps.mapTextBox, g_szClassicPrefix, g_szTextBoxKind, aRows, std::size(aRows));
    EXPECT_EQ(g_stNameMaps.mapTextBox, (NameMap{{"CLASSIC_STYLE_MEMO0_TEXTBOXID", 1087},
                                                {"CLASSIC_STYLE_VRAM_CLK_TITLE_TEXTBOXID", 12}}));
}

TEST_F(NameMaps, LookupsAtRunTimeFindTheirNumbersAndSayNothing) {
    g_stNameMaps.mapTextBox["a"] = 1;
    g_stNameMaps.mapNumBox["a"] = 2;
    g_stNameMaps.mapPanel["a"] = 0;
    EXPECT_EQ(g_fnGetTextBoxBIDByName("a"), 1u);
    EXPECT_EQ(g_fnGetNumBoxBIDByName("a"), 2u);
    EXPECT_EQ(g_fnGetPanelBIDByName("a"), 0u);
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(NameMaps, AnAbsentTextBoxLeavesItsLine) {
    g_stNameMaps.mapNumBox["a"] = g_stNameMaps.mapPanel["a"] = 1;
    EXPECT_EQ(g_fnGetTextBoxBIDByName("a"), g_uNoBID);
    EXPECT_EQ(g_aLines, Lines{"g_fnGetTextBoxBIDByName() fail\n"});
}

TEST_F(NameMaps, AnAbsentNumBoxLeavesItsLine) {
    g_stNameMaps.mapTextBox["a"] = g_stNameMaps.mapPanel["a"] = 1;
    EXPECT_EQ(g_fnGetNumBoxBIDByName("a"), g_uNoBID);
    EXPECT_EQ(g_aLines, Lines{"g_fnGetNumBoxBIDByName() fail\n"});
}

TEST_F(NameMaps, AnAbsentPanelLeavesItsLine) {
    g_stNameMaps.mapTextBox["a"] = g_stNameMaps.mapNumBox["a"] = 1;
    EXPECT_EQ(g_fnGetPanelBIDByName("a"), g_uNoBID);
    EXPECT_EQ(g_aLines, Lines{"g_fnGetPanelBIDByName() fail\n"});
}

TEST_F(NameMaps, LookupsWithoutALineAreForTheAssembly) {
    g_stNameMaps.mapFlipBox["a"] = 3;
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapFlipBox, "a"), 3u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapFlipBox, "A"), g_uNoBID); // compared exactly
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapFlipBox, ""), g_uNoBID);
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(NameMaps, CaptionsLeadToTitles) {
    g_stNameMaps.mapCaptionTitle[u"VRAM Clock"] = "CLASSIC_STYLE_VRAM_CLK_TITLE_TEXTBOXID";
    g_stNameMaps.mapTextBox[g_stNameMaps.mapCaptionTitle[u"VRAM Clock"]] = 12;
    EXPECT_EQ(g_fnGetTextBoxBIDByName(
                  g_stNameMaps.mapCaptionTitle.find(std::u16string_view(u"VRAM Clock"))->second),
              12u);
    g_fnClearNameMaps();
    EXPECT_TRUE(g_stNameMaps.mapCaptionTitle.empty());
    EXPECT_TRUE(g_stNameMaps.mapTextBox.empty());
}

// --- items switched on and off -----------------------------------------------------------------------------

TEST_F(NameMaps, AnItemNeverSwitchedIsOff) {
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_TEXT, 0, 0));
    EXPECT_FALSE(g_fnIsItemEnabledAnywhere(ENABLE_TEXT, 0));
}

TEST_F(NameMaps, ItemsAreSwitchedByKindAndInstance) {
    g_fnSetItemEnable(ENABLE_NUMBER, 5, 1084, true);
    EXPECT_TRUE(g_fnIsItemEnabled(ENABLE_NUMBER, 5, 1084));
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_NUMBER, 4, 1084));
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_NUMBER, 5, 1085));
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_TEXT, 5, 1084));
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_PANEL, 5, 1084));
    EXPECT_TRUE(g_fnIsItemEnabledAnywhere(ENABLE_NUMBER, 1084));
    g_fnSetItemEnable(ENABLE_NUMBER, 5, 1084, false);
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_NUMBER, 5, 1084));
    EXPECT_FALSE(g_fnIsItemEnabledAnywhere(ENABLE_NUMBER, 1084));
}

TEST_F(NameMaps, InstancesRunFrom0To63) {
    g_fnSetItemEnable(ENABLE_PANEL, 63, 1, true);
    g_fnSetItemEnable(ENABLE_PANEL, 64, 1, true);
    g_fnSetItemEnable(ENABLE_PANEL, 0xFFFFFFFF, 1, true);
    EXPECT_TRUE(g_fnIsItemEnabled(ENABLE_PANEL, 63, 1));
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_PANEL, 64, 1));
    EXPECT_FALSE(g_fnIsItemEnabled(ENABLE_PANEL, 0xFFFFFFFF, 1));
}

TEST_F(NameMaps, ClearingSwitchesAllOff) {
    for (const eEnableKind uKind : {ENABLE_TEXT, ENABLE_NUMBER, ENABLE_PANEL})
        g_fnSetItemEnable(uKind, 1, 2, true);
    g_fnClearItemEnable();
    for (const eEnableKind uKind : {ENABLE_TEXT, ENABLE_NUMBER, ENABLE_PANEL})
        EXPECT_FALSE(g_fnIsItemEnabled(uKind, 1, 2));
}

} // namespace
