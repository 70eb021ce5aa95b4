#include "config/items/item_pie.h"
#include "tests/unit/config/item_fixture.h"

namespace {

class ItemPie : public ItemTest {
  protected:
    /// One chart with a size and a data name.
    const CItemProperty_PieChart* Read(const std::string& szAttributes) {
        return ReadWhole("ContentSizeW='100' ContentSizeH='50' DataFullName='GPU_USAGE#0' " + szAttributes);
    }
    const CItemProperty_PieChart* ReadWhole(const std::string& szAttributes) {
        g_fnClearItems();
        s_aLines.clear();
        ReadCharts("<PieChart Name='c' IsShow='1' " + szAttributes + "/>");
        return Chart("c");
    }
    void ReadCharts(const std::string& szItems) { EXPECT_TRUE(g_fnReadPieChartItems(Info(szItems))); }
    static const CItemProperty_PieChart* Chart(const char* szName) { return g_fnAsPieChart(Find(szName)); }
    static Lines Error(const char* szField) { return {"error ! item \"c\" " + std::string(szField)}; }
};

TEST_F(ItemPie, ANewRecordHas16SegmentsThoughParsingGives3) {
    const CItemProperty_PieChart item;
    EXPECT_EQ(item.m_pComplete, &item);
    EXPECT_EQ(item.m_uItemType, 9u);
    EXPECT_STREQ(item.m_szItemType, "PIECHART");
    EXPECT_EQ(item.m_uSlotNum, 1u);
    EXPECT_EQ(item.m_uShapeSegNum, 16u);
    EXPECT_EQ(item.m_fSlotFillRatio, 100.0f);
    EXPECT_EQ(Read("")->m_uShapeSegNum, 3u);
}

TEST_F(ItemPie, EveryMissingKeyGivesItsDefault) {
    const auto* p = Read("");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_u8ChartR, 0);
    EXPECT_EQ(p->m_u8ChartG, 0);
    EXPECT_EQ(p->m_u8ChartB, 0);
    EXPECT_EQ(p->m_u8ChartA, 255);
    EXPECT_EQ(p->m_u8ChartOpacity, 100);
    EXPECT_EQ(p->m_uChartType, 0u);
    EXPECT_EQ(p->m_uSlotNum, 1u);
    EXPECT_EQ(p->m_uShapeSegNum, 3u);
    EXPECT_EQ(p->m_fSlotFillRatio, 100.0f);
    EXPECT_EQ(p->m_fChartFillRatio, 50.0f);
    EXPECT_EQ(p->m_fMinValue, 0.0f);
    EXPECT_EQ(p->m_fMaxValue, 100.0f);
    EXPECT_EQ(p->m_fStartDeg, 0.0f);
    EXPECT_EQ(p->m_fEndDeg, 0.0f);
    EXPECT_EQ(p->m_bClockwise, 0u);
    EXPECT_STREQ(p->m_szZIndex, "");
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemPie, EachAttributeReachesItsField) {
    const auto* p =
        Read("ChartColorR='1' ChartColorG='2' ChartColorB='3' ChartColorA='102' ChartType='1' "
             "SlotNum='24' ShapeSegNum='5' SlotFillRatio='80.5' ChartFillRatio='70' MinValue='-5' "
             "MaxValue='95.5' StartDegree='90' EndDegree='45.5' Clockwise='1' ZIndex='7'");
    ASSERT_NE(p, nullptr);
    EXPECT_STREQ(p->m_szDataFullName, "GPU_USAGE#0");
    EXPECT_EQ(p->m_u8ChartR, 1);
    EXPECT_EQ(p->m_u8ChartG, 2);
    EXPECT_EQ(p->m_u8ChartB, 3);
    EXPECT_EQ(p->m_u8ChartOpacity, 40);
    EXPECT_EQ(p->m_u8ChartA, 102);
    EXPECT_EQ(p->m_uChartType, 1u);
    EXPECT_EQ(p->m_uSlotNum, 24u);
    EXPECT_EQ(p->m_uShapeSegNum, 5u);
    EXPECT_EQ(p->m_fSlotFillRatio, 80.5f);
    EXPECT_EQ(p->m_fChartFillRatio, 70.0f);
    EXPECT_EQ(p->m_fMinValue, -5.0f);
    EXPECT_EQ(p->m_fMaxValue, 95.5f);
    EXPECT_EQ(p->m_fStartDeg, 90.0f);
    EXPECT_EQ(p->m_fEndDeg, 45.5f);
    EXPECT_EQ(p->m_bClockwise, 1u);
    EXPECT_STREQ(p->m_szZIndex, "7");
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemPie, AnUnknownTypeIsReportedAndBecomesAFan) {
    EXPECT_EQ(Read("ChartType='2'")->m_uChartType, 0u);
    EXPECT_EQ(s_aLines, Error("ChartType"));
}

TEST_F(ItemPie, CountsOf0AreReportedAndReplaced) {
    EXPECT_EQ(Read("SlotNum='0'")->m_uSlotNum, 1u);
    EXPECT_EQ(s_aLines, Error("m_uSlotNum"));
    EXPECT_EQ(Read("ShapeSegNum='0'")->m_uShapeSegNum, 3u);
    EXPECT_EQ(s_aLines, Error("m_uShapeSegNum"));
}

TEST_F(ItemPie, ASlotRatioOf0OrAbove100IsReportedAndBecomes100) {
    for (const char* sz : {"SlotFillRatio='0'", "SlotFillRatio='100.5'", "SlotFillRatio='-20'"}) {
        EXPECT_EQ(Read(sz)->m_fSlotFillRatio, 100.0f) << sz;
        EXPECT_EQ(s_aLines, Error("m_fSlotFillRatio")) << sz;
    }
    EXPECT_EQ(Read("SlotFillRatio='0.5'")->m_fSlotFillRatio, 0.5f);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemPie, AChartRatioOf0Becomes50AndAbove100Becomes100) {
    EXPECT_EQ(Read("ChartFillRatio='0'")->m_fChartFillRatio, 50.0f);
    EXPECT_EQ(s_aLines, Error("m_fChartFillRatio"));
    EXPECT_EQ(Read("ChartFillRatio='-1'")->m_fChartFillRatio, 50.0f);
    EXPECT_EQ(s_aLines, Error("m_fChartFillRatio"));
    EXPECT_EQ(Read("ChartFillRatio='101'")->m_fChartFillRatio, 100.0f);
    EXPECT_EQ(s_aLines, Error("m_fChartFillRatio"));
    EXPECT_EQ(Read("ChartFillRatio='100'")->m_fChartFillRatio, 100.0f);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemPie, MissingSizesAreReportedAndStopNothing) {
    const auto* p = ReadWhole("DataFullName='FPS'");
    EXPECT_EQ(s_aLines, (Lines{"error ! item \"c\" m_uContentSizeW", "error ! item \"c\" m_uContentSizeH"}));
    EXPECT_NE(p, nullptr);
}

TEST_F(ItemPie, AnglesOutsideATurnAreReportedAndKeptAnd360Passes) {
    EXPECT_EQ(Read("StartDegree='-1'")->m_fStartDeg, -1.0f);
    EXPECT_EQ(s_aLines, Error("m_fStartDeg"));
    EXPECT_EQ(Read("EndDegree='360.5'")->m_fEndDeg, 360.5f);
    EXPECT_EQ(s_aLines, Error("m_fEndDeg"));
    const auto* p = Read("StartDegree='360' EndDegree='360'");
    EXPECT_EQ(p->m_fStartDeg, 360.0f);
    EXPECT_EQ(p->m_fEndDeg, 360.0f);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemPie, ReportsComeInTheirOrder) {
    ReadWhole(
        "ChartType='9' SlotNum='0' ShapeSegNum='0' SlotFillRatio='0' ChartFillRatio='0' StartDegree='-1' "
        "EndDegree='-1'");
    Lines aExpected;
    for (const char* sz :
         {"ChartType", "m_uSlotNum", "m_uShapeSegNum", "m_fSlotFillRatio", "m_fChartFillRatio",
          "m_uContentSizeW", "m_uContentSizeH", "m_fStartDeg", "m_fEndDeg", "m_szDataFullName is invalid"})
        aExpected.push_back(Error(sz)[0]);
    EXPECT_EQ(s_aLines, aExpected);
    EXPECT_EQ(Chart("c"), nullptr);
}

TEST_F(ItemPie, AnEmptyDataNameTakesAllLaterChartsAlong) {
    const std::string szSize = " IsShow='1' ContentSizeW='9' ContentSizeH='9' ";
    ReadCharts("<PieChart Name='a'" + szSize + "DataFullName='FPS'/><PieChart Name='b'" + szSize +
               "/><PieChart Name='c'" + szSize + "DataFullName='FPS' SlotNum='0'/>");
    EXPECT_NE(Chart("a"), nullptr);
    EXPECT_EQ(Chart("b"), nullptr);
    EXPECT_EQ(Chart("c"), nullptr);
    EXPECT_EQ(s_aLines,
              (Lines{"error ! item \"b\" m_szDataFullName is invalid", "error ! item \"c\" m_uSlotNum"}))
        << "later ones are still read and reported";
    EXPECT_FALSE(g_fnIsItemNameTaken("c"));
}

TEST_F(ItemPie, AnAlphaOf128Becomes127AndAnAlphaOf1Becomes0) {
    EXPECT_EQ(Read("ChartColorA='128'")->m_u8ChartA, 127);
    const auto* p = Read("ChartColorA='1'");
    EXPECT_EQ(p->m_u8ChartOpacity, 0);
    EXPECT_EQ(p->m_u8ChartA, 0);
}

TEST_F(ItemPie, TheDataNameIsKnownToTheItem) {
    const auto* p = Read("");
    EXPECT_STREQ(g_fnItemDataName(*p), "GPU_USAGE#0");
    EXPECT_EQ(g_fnAsPieChart(nullptr), nullptr);
    EXPECT_EQ(g_fnAsLineGraph(p), nullptr);
}

TEST_F(ItemPie, QueriesAnswerNothing) {
    std::u16string wz = u"old";
    EXPECT_FALSE(Read("")->m_fnQueryString("TEXT_STRING", wz));
    EXPECT_EQ(wz, u"old");
}

TEST_F(ItemPie, NoParentNoItems) { EXPECT_TRUE(g_fnReadPieChartItems(nullptr)); }

TEST_F(ItemPie, TheDumpHasItsOwnLinesAndNoContentPlace) {
    const auto* p = Read("SlotNum='8' ShapeSegNum='2' StartDegree='90' EndDegree='45.5' Clockwise='1' "
                         "ChartColorG='9' MinValue='1' MaxValue='2.5'");
    p->m_fnPrintData();
    ASSERT_EQ(s_aLines.size(), 18u);
    EXPECT_EQ(s_aLines[2], "ITEM_TYPE: PIECHART\n");
    EXPECT_EQ(Lines(s_aLines.begin() + 9, s_aLines.end()),
              (Lines{"PIECHART_SLOT: 8\n", "PIECHART_SHAPE_SEG: 2\n", "PIECHART_START_DEG: 90.0\n",
                     "PIECHART_END_DEG: 45.5\n", "PIECHART_CLOCKWISE: 1\n", "PIECHART_COLOR:",
                     "RGBA 0 9 0 255", "PIECHART_MAX: 2.500000\n", "PIECHART_MIN: 1.000000\n"}));
}

} // namespace
