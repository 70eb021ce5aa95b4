// The grid of Classic against values that were worked out by hand.
#include "config/fixed/classic_grid.h"

#include "config/fixed/enable_map.h"
#include "config/settings/sensor_table.h"

#include <gtest/gtest.h>

#include <array>

namespace {

struct stCase {
    const char* szWhat;
    stClassicRows rows;
    i32 iScale;
    std::array<i32, 3> aiBlocks; ///< second block, third block, end
};

/// Rows: wide lines, further cards or CPUs, detail rows, whether there is a second block.
constexpr stCase c_aCases[] = {
    // 3 lines: 24 * 3 + 4 = 76; nothing between; 10 rows: 15 * 10 + 8 = 158.
    {"1 card 1 CPU at 100", {3, 0, 10, false}, 100, {76, 76, 234}},
    {"1 card 1 CPU at 50", {3, 0, 10, false}, 50, {38, 38, 117}},
    {"1 card 1 CPU at 150", {3, 0, 10, false}, 150, {114, 114, 351}},
    // One further line: 15 + 4 = 19, halved and cut 9, half as much again and cut 28.
    {"2 cards 2 CPUs at 100", {3, 1, 10, true}, 100, {76, 95, 253}},
    {"2 cards 2 CPUs at 50", {3, 1, 10, true}, 50, {38, 47, 126}},
    {"2 cards 2 CPUs at 150", {3, 1, 10, true}, 150, {114, 142, 379}},
    // Three further lines: 49; 24 and 73 when scaled and cut.
    {"4 cards 1 CPU at 100", {3, 3, 7, true}, 100, {76, 125, 238}},
    {"4 cards 1 CPU at 50", {3, 3, 7, true}, 50, {38, 62, 118}},
    {"4 cards 1 CPU at 150", {3, 3, 7, true}, 150, {114, 187, 356}},
    // A line of the first block less: 24 * 2 + 4 = 52.
    {"a missing line at 100", {2, 0, 10, false}, 100, {52, 52, 210}},
    {"a missing line at 50", {2, 0, 10, false}, 50, {26, 26, 105}},
    {"a missing line at 150", {2, 0, 10, false}, 150, {78, 78, 315}},
    {"one line and nothing else", {1, 0, 0, false}, 100, {28, 28, 36}},
    {"nothing at all", {}, 100, {4, 4, 12}},
};

TEST(ClassicGrid, BlocksStandWhereTheyShould) {
    for (const stCase& st : c_aCases) {
        const stClassicGrid grid = g_fnMakeClassicGrid(st.rows, st.iScale);
        EXPECT_EQ((std::array{grid.iSecondY, grid.iThirdY, grid.iEndY}), st.aiBlocks) << st.szWhat;
    }
}

TEST(ClassicGrid, AFontScaleOf50HalvesTheRowPitchTo12) {
    EXPECT_EQ(g_fnMakeClassicGrid({}, 50).iWideStep, 12);
    EXPECT_EQ(g_fnMakeClassicGrid({}, 50).iStep, 7);
    EXPECT_EQ(g_fnMakeClassicGrid({}, 150).iWideStep, 36);
    EXPECT_EQ(g_fnMakeClassicGrid({}, 150).iStep, 22);
}

TEST(ClassicGrid, ColumnsAreScaledAndCutOneByOne) {
    const stClassicGrid whole = g_fnMakeClassicGrid({}, 100);
    EXPECT_EQ((std::array{whole.aiValueX[0], whole.aiValueX[1], whole.aiValueX[2]}),
              (std::array{39, 86, 119}));
    EXPECT_EQ((std::array{whole.aiUnitX[0], whole.aiUnitX[1], whole.aiUnitX[2]}), (std::array{83, 130, 163}));
    // 19, 22, 1, 15, 1
    const stClassicGrid half = g_fnMakeClassicGrid({}, 50);
    EXPECT_EQ((std::array{half.aiValueX[0], half.aiValueX[1], half.aiValueX[2]}), (std::array{19, 42, 58}));
    EXPECT_EQ((std::array{half.aiUnitX[0], half.aiUnitX[1], half.aiUnitX[2]}), (std::array{41, 64, 80}));
    // 58, 66, 4, 45, 4
    const stClassicGrid large = g_fnMakeClassicGrid({}, 150);
    EXPECT_EQ((std::array{large.aiValueX[0], large.aiValueX[1], large.aiValueX[2]}),
              (std::array{58, 128, 177}));
    EXPECT_EQ((std::array{large.aiUnitX[0], large.aiUnitX[1], large.aiUnitX[2]}),
              (std::array{124, 194, 243}));
}

TEST(ClassicGrid, OnlyValuesAndUnitsOfTheSecondBlockStandInColumns) {
    const stClassicGrid grid = g_fnMakeClassicGrid({}, 100);
    i32 iX = -1;
    u32 uFound = 0;
    g_fnForEachItem(g_stClassicItems, [&](const stStyleItem& item) {
        if (!g_fnClassicColumn(grid, item, iX)) return;
        ++uFound;
        EXPECT_TRUE(item.uBID >= 1084 && item.uBID <= 1098) << item.szWord;
    });
    EXPECT_EQ(uFound, 12u);
    EXPECT_TRUE(g_fnClassicColumn(grid, {eItem::Number, 1088, "CPU_SECOND_TEMP", "VALUE"}, iX));
    EXPECT_EQ(iX, 86);
    EXPECT_TRUE(g_fnClassicColumn(grid, {eItem::Text, 1094, "GPU_SECOND_USAGE", "UNIT"}, iX));
    EXPECT_EQ(iX, 163);
}

class ClassicRows : public testing::Test {
  protected:
    void SetUp() override { Clear(); }
    void TearDown() override { Clear(); }
    static void Clear() {
        g_fnClearItemEnable();
        g_stDisplay.listSensorRows.clear();
    }
    static void On(u32 uPanel, u32 uInstance = 0) {
        g_fnSetItemEnable(ENABLE_PANEL, uInstance, uPanel, true);
    }
};

TEST_F(ClassicRows, FiguresShareOneLine) {
    EXPECT_EQ(g_fnCountClassicRows(1, 1).uWide, 0u);
    On(1); // frame time alone
    EXPECT_EQ(g_fnCountClassicRows(1, 1).uWide, 1u);
    On(0);
    On(2);
    EXPECT_EQ(g_fnCountClassicRows(1, 1).uWide, 1u);
    On(3);
    EXPECT_EQ(g_fnCountClassicRows(1, 1).uWide, 2u);
    On(4);
    EXPECT_EQ(g_fnCountClassicRows(1, 1).uWide, 3u);
}

TEST_F(ClassicRows, TheSecondBlockIsAsHighAsTheMoreOfCardsAndCpus) {
    EXPECT_FALSE(g_fnCountClassicRows(4, 2).bSecond) << "no row is on";
    EXPECT_EQ(g_fnCountClassicRows(4, 2).uFurther, 0u);
    On(1080, 2);
    EXPECT_TRUE(g_fnCountClassicRows(4, 2).bSecond);
    EXPECT_EQ(g_fnCountClassicRows(4, 2).uFurther, 3u);
    EXPECT_EQ(g_fnCountClassicRows(2, 3).uFurther, 2u);
}

TEST_F(ClassicRows, DetailRowsAreTitlesOfTheThirdBlockAndSensors) {
    for (const u32 uPanel : {5u, 52u, 1077u}) On(uPanel);
    On(1079); // the foot
    On(1082); // data
    EXPECT_EQ(g_fnCountClassicRows(1, 1).uDetails, 3u);
    g_stDisplay.listSensorRows = {{"A", 0, 0}, {"B", 1, 0}, {"A", 0, 2}};
    On(53, 0);
    On(54, 0);
    On(53, 2);
    EXPECT_EQ(g_fnCountClassicRows(1, 1).uDetails, 6u);
}

} // namespace
