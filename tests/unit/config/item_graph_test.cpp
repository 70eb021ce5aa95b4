#include "config/items/item_graph.h"

#include "config/items/interner.h"
#include "tests/unit/config/item_fixture.h"

namespace {

class ItemGraph : public ItemTest {
  protected:
    /// One graph with a size and a data name.
    const CItemProperty_LineGraph* Read(const std::string& szAttributes) {
        return ReadWhole("ContentSizeW='100' ContentSizeH='50' DataFullName='FPS' " + szAttributes);
    }
    const CItemProperty_LineGraph* ReadWhole(const std::string& szAttributes) {
        g_fnClearItems();
        s_aLines.clear();
        ReadGraphs("<LineGraph Name='g' IsShow='1' " + szAttributes + "/>");
        return Graph("g");
    }
    void ReadGraphs(const std::string& szItems) { EXPECT_TRUE(g_fnReadLineGraphItems(Info(szItems))); }
    static const CItemProperty_LineGraph* Graph(const char* szName) { return g_fnAsLineGraph(Find(szName)); }
};

TEST_F(ItemGraph, ANewRecordIsALineGraph) {
    const CItemProperty_LineGraph item;
    EXPECT_EQ(item.m_pComplete, &item);
    EXPECT_EQ(item.m_uItemType, 3u);
    EXPECT_STREQ(item.m_szItemType, "LINEGRAPH");
}

TEST_F(ItemGraph, EveryMissingKeyGivesItsDefault) {
    const auto* p = Read("DataNum='10'");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_u8LineR, 0);
    EXPECT_EQ(p->m_u8LineG, 0);
    EXPECT_EQ(p->m_u8LineB, 0);
    EXPECT_EQ(p->m_u8LineA, 255);
    EXPECT_EQ(p->m_u8LineOpacity, 100);
    EXPECT_EQ(p->m_uLineType, 0u);
    EXPECT_EQ(p->m_fDataWidth, 1.0f);
    EXPECT_EQ(p->m_fMinValue, 0.0f);
    EXPECT_EQ(p->m_fMaxValue, 100.0f);
    EXPECT_EQ(p->m_uDataStartIdx, 2u);
    EXPECT_STREQ(p->m_szZIndex, "");
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemGraph, EachAttributeReachesItsField) {
    const auto* p = Read("LineColorR='1' LineColorG='2' LineColorB='3' LineColorA='102' DataNum='60' "
                         "LineType='1' DataWidth='2.5' MinValue='-10.5' MaxValue='90' DataStartIdx='7' "
                         "ZIndex='12' ContentAnchor='3'");
    ASSERT_NE(p, nullptr);
    EXPECT_STREQ(p->m_szDataFullName, "FPS");
    EXPECT_EQ(p->m_u8LineR, 1);
    EXPECT_EQ(p->m_u8LineG, 2);
    EXPECT_EQ(p->m_u8LineB, 3);
    EXPECT_EQ(p->m_u8LineOpacity, 40);
    EXPECT_EQ(p->m_u8LineA, 102);
    EXPECT_EQ(p->m_uDataNum, 60u);
    EXPECT_EQ(p->m_uLineType, 1u);
    EXPECT_EQ(p->m_fDataWidth, 2.5f);
    EXPECT_EQ(p->m_fMinValue, -10.5f);
    EXPECT_EQ(p->m_fMaxValue, 90.0f);
    EXPECT_EQ(p->m_uDataStartIdx, 7u);
    EXPECT_STREQ(p->m_szZIndex, "12");
    EXPECT_EQ(p->m_uContentSizeW, 100u);
    EXPECT_EQ(p->m_iContentAnchor, 3);
}

TEST_F(ItemGraph, AMissingNumberOfColumnsIsReportedAndBecomes2) {
    for (const char* szType : {"LineType='0'", "LineType='1'", "LineType='1' DataNum='0'"}) {
        const auto* p = Read(szType);
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(p->m_uDataNum, 2u);
        EXPECT_EQ(s_aLines, Lines{"error ! item \"g\" m_uDataNum"});
    }
}

TEST_F(ItemGraph, AnUnknownTypeIsReportedAndBecomesALine) {
    const auto* p = Read("LineType='4' DataNum='9'");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"g\" LineType"});
    EXPECT_EQ(p->m_uLineType, 0u);
    EXPECT_EQ(p->m_uDataNum, 9u) << "the number of a line is read";
    EXPECT_EQ(Read("LineType='-1' DataNum='9'")->m_uLineType, 0u);
}

TEST_F(ItemGraph, MissingSizesAreReportedAndStopNothing) {
    const auto* p = ReadWhole("DataFullName='FPS' DataNum='5'");
    EXPECT_EQ(s_aLines, (Lines{"error ! item \"g\" m_uContentSizeW", "error ! item \"g\" m_uContentSizeH"}));
    EXPECT_NE(p, nullptr);
}

TEST_F(ItemGraph, BarsOf4In100Make17Columns) {
    // 100 / 6 is 16; 16 columns take 96 and leave 4, which is room for one more without its gap.
    EXPECT_EQ(Read("LineType='3' DataWidth='4'")->m_uDataNum, 17u);
    EXPECT_EQ(Read("LineType='2' DataWidth='4' DataNum='50'")->m_uDataNum, 17u) << "computed, not read";
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemGraph, ColumnsFollowFromTheSizes) {
    EXPECT_EQ(g_fnGraphColumns(99, 4), 16u) << "99 - 96 is no room";
    EXPECT_EQ(g_fnGraphColumns(150, 1), 100u);
    EXPECT_EQ(g_fnGraphColumns(151, 1), 101u);
    EXPECT_EQ(g_fnGraphColumns(4, 4), 1u) << "one that just fits";
    EXPECT_EQ(g_fnGraphColumns(3, 4), 2u) << "none fits";
    EXPECT_EQ(g_fnGraphColumns(0, 4), 2u);
    EXPECT_GT(g_fnGraphColumns(0xFFFFFFFF, 1e-40f), 65536u) << "more than a graph takes, and no overflow";
}

TEST_F(ItemGraph, AWidthOf0IsReportedForBarsAndStairsAndGives2Columns) {
    for (const char* szType : {"LineType='2' DataWidth='0'", "LineType='3' DataWidth='-4'"}) {
        const auto* p = Read(szType);
        EXPECT_EQ(s_aLines, Lines{"error ! item \"g\" m_fDataWidth"});
        EXPECT_EQ(p->m_uDataNum, 2u);
    }
    Read("LineType='0' DataWidth='0' DataNum='5'");
    EXPECT_EQ(s_aLines, Lines{}) << "a line makes its own width";
}

TEST_F(ItemGraph, ReportsComeInTheirOrder) {
    ReadWhole("LineType='9'");
    EXPECT_EQ(s_aLines, (Lines{"error ! item \"g\" LineType", "error ! item \"g\" m_uContentSizeW",
                               "error ! item \"g\" m_uContentSizeH", "error ! item \"g\" m_uDataNum",
                               "error ! item \"g\" m_szDataFullName is invalid"}));
    EXPECT_EQ(Graph("g"), nullptr);
}

TEST_F(ItemGraph, AnEmptyDataNameTakesAllLaterGraphsAlong) {
    const std::string szGood =
        " IsShow='1' ContentSizeW='9' ContentSizeH='9' DataNum='5' DataFullName='FPS'/>";
    ReadGraphs("<LineGraph Name='a'" + szGood +
               "<LineGraph Name='b' IsShow='1' ContentSizeW='9' ContentSizeH='9' DataNum='5'/>" +
               "<LineGraph Name='c'" + szGood +
               "<LineGraph Name='d' IsShow='1' DataNum='5' DataFullName='FPS' "
               "ContentSizeW='9'/>");
    EXPECT_NE(Graph("a"), nullptr);
    EXPECT_EQ(Graph("b"), nullptr);
    EXPECT_EQ(Graph("c"), nullptr);
    EXPECT_EQ(s_aLines,
              (Lines{"error ! item \"b\" m_szDataFullName is invalid", "error ! item \"d\" m_uContentSizeH"}))
        << "later ones are still read and reported";
    EXPECT_FALSE(g_fnIsItemNameTaken("c"));
}

TEST_F(ItemGraph, AnAlphaOf128Becomes127AndAnAlphaOf1Becomes0) {
    EXPECT_EQ(Read("DataNum='5' LineColorA='128'")->m_u8LineA, 127);
    const auto* p = Read("DataNum='5' LineColorA='1'");
    EXPECT_EQ(p->m_u8LineOpacity, 0);
    EXPECT_EQ(p->m_u8LineA, 0);
}

TEST_F(ItemGraph, LongTextsAreCutToTheirFields) {
    const std::string szLong(300, 'x');
    const auto* p = ReadWhole("ContentSizeW='9' ContentSizeH='9' DataNum='5' DataFullName='" + szLong +
                              "' ZIndex='" + szLong + "'");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::string(p->m_szDataFullName), szLong.substr(0, 63));
    EXPECT_EQ(std::string(p->m_szZIndex), szLong.substr(0, 127));
}

TEST_F(ItemGraph, TheDataNameIsInternedAndKnownToTheItem) {
    const auto* p = Read("DataNum='5'");
    EXPECT_STREQ(g_fnItemDataName(*p), "FPS");
    EXPECT_EQ(g_fnAsLineGraph(nullptr), nullptr);
    EXPECT_EQ(g_fnAsNumBox(p), nullptr);
    EXPECT_EQ(g_fnAsPieChart(p), nullptr);
}

TEST_F(ItemGraph, QueriesAnswerNothing) {
    std::u16string wz = u"old";
    EXPECT_FALSE(Read("DataNum='5'")->m_fnQueryString("TEXT_FONT", wz));
    EXPECT_EQ(wz, u"old");
}

TEST_F(ItemGraph, NoParentNoItems) { EXPECT_TRUE(g_fnReadLineGraphItems(nullptr)); }

TEST_F(ItemGraph, TheDumpSpellsTheTypes) {
    const struct {
        const char* szType;
        const char* szWord;
        const char* szColumns;
    } aCases[] = {{"0", "LINEGRAPH_TYPE_CLASSIC\n", "20"},
                  {"1", "LINEGRAPH_TYPE_MOUNTAIN\n", "20"},
                  {"2", "LINEGRAPH_TYPE_STAIR\n", "17"},
                  {"3", "LINEGRAPH_TYPE_BAR\n", "17"}};
    for (const auto& st : aCases) {
        const auto* p = Read("LineColorG='9' DataNum='20' DataWidth='4' MaxValue='80.5' LineType='" +
                             std::string(st.szType) + "'");
        p->m_fnPrintData();
        ASSERT_EQ(s_aLines.size(), 20u);
        EXPECT_EQ(s_aLines[2], "ITEM_TYPE: LINEGRAPH\n");
        EXPECT_EQ(s_aLines[8], "CONTENT_ANCHOR: 1\n");
        EXPECT_EQ(
            Lines(s_aLines.begin() + 12, s_aLines.end()),
            (Lines{"LINEGRAPH_TYPE: ", st.szWord, "LINEGRAPH_COLUMN: " + std::string(st.szColumns) + "\n",
                   "LINEGRAPH_DATA_WIDTH: 4.0\n", "LINEGRAPH_COLOR:", "RGBA 0 9 0 255",
                   "LINEGRAPH_MAX: 80.500000\n", "LINEGRAPH_MIN: 0.000000\n"}));
    }
}

TEST_F(ItemGraph, TheDumpOfAnUnknownTypeHasNoWord) {
    CItemProperty_LineGraph item;
    item.m_uLineType = 4;
    item.m_fnPrintData();
    EXPECT_EQ(s_aLines[12], "LINEGRAPH_TYPE: ");
    EXPECT_EQ(s_aLines[13], "LINEGRAPH_COLUMN: 0\n");
    EXPECT_EQ(s_aLines.back(), "LINEGRAPH_MIN: 0.000000\n");
}

} // namespace
