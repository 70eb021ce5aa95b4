#include "config/items/item_image.h"
#include "config/items/item_reader.h"
#include "tests/unit/config/item_fixture.h"

namespace {

class ItemImage : public ItemTest {
  protected:
    void ReadImages(const std::string& szItems) { EXPECT_TRUE(g_fnReadImgBoxItems(Info(szItems))); }
    const CItemProperty_ImgBox* Read(const std::string& szAttributes) {
        g_fnClearItems();
        s_aLines.clear();
        ReadImages("<Image Name='i' IsShow='1' " + szAttributes + "/>");
        return Image("i");
    }
    static const CItemProperty_ImgBox* Image(const char* szName) { return g_fnAsImgBox(Find(szName)); }
};

TEST_F(ItemImage, ANewRecordIsAnImage) {
    const CItemProperty_ImgBox item;
    EXPECT_EQ(item.m_pComplete, &item);
    EXPECT_EQ(item.m_uItemType, 5u);
    EXPECT_STREQ(item.m_szItemType, "IMAGE");
    std::u16string wzOut = u"kept";
    EXPECT_FALSE(item.m_fnQueryString("TEXT_FONT", wzOut));
    EXPECT_EQ(wzOut, u"kept");
}

TEST_F(ItemImage, EveryMissingKeyGivesItsDefault) {
    const auto* p = Read("");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::u16string(p->m_wzImageFilename), u"X");
    EXPECT_EQ(p->m_u8ImageA, 255);
    EXPECT_EQ(p->m_u8ImageOpacity, 100);
    EXPECT_EQ(p->m_fTiltDegree, 0);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemImage, EachAttributeReachesItsField) {
    const auto* p = Read("ImageFileName='&#228;.png' ImageColorA='102' TiltDegree='-12.5' FrameSizeW='9'");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::u16string(p->m_wzImageFilename), u"\u00E4.png");
    EXPECT_EQ(p->m_u8ImageOpacity, 40);
    EXPECT_EQ(p->m_u8ImageA, 102);
    EXPECT_EQ(p->m_fTiltDegree, -12.5f);
    EXPECT_EQ(p->m_uFrameSizeW, 9u);
}

TEST_F(ItemImage, AnAlphaGoesThroughWholePercent) {
    EXPECT_EQ(Read("ImageColorA='128'")->m_u8ImageA, 127);
    EXPECT_EQ(Read("ImageColorA='1'")->m_u8ImageA, 0);
}

TEST_F(ItemImage, APercentageAbove100IsReported) {
    CItemProperty_ImgBox item;
    std::snprintf(item.m_szItemName, sizeof item.m_szItemName, "i");
    g_fnCheckImageOpacity(item, 100);
    EXPECT_EQ(s_aLines, Lines{});
    g_fnCheckImageOpacity(item, 101);
    EXPECT_EQ(s_aLines, Lines{"error ! item \"i\" m_u8ImageOpacity"});
}

TEST_F(ItemImage, AnEmptyFileNameDropsTheItemAndAllLaterOnes) {
    ReadImages("<Image Name='a' IsShow='1'/><Image Name='b' IsShow='1' ImageFileName=''/>"
               "<Image Name='c' IsShow='1' ImageFileName=''/><Image Name='d' IsShow='1'/>");
    EXPECT_NE(Image("a"), nullptr);
    EXPECT_EQ(Image("b"), nullptr);
    EXPECT_EQ(Image("d"), nullptr);
    EXPECT_EQ(s_aLines, (Lines{"error ! item \"b\" m_wzImageFilename is invalid",
                               "error ! item \"c\" m_wzImageFilename is invalid"}));
}

TEST_F(ItemImage, HiddenOnesAreLeftOutSilently) {
    ReadImages("<Image Name='a'/><Image Name='a' IsShow='1'/>");
    EXPECT_NE(Image("a"), nullptr);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemImage, TheDumpNamesFileFrameAndTilt) {
    const auto* p = Read("ImageFileName='a.png' FrameSizeW='1' FrameSizeH='2' FrameAnchor='3' "
                         "FrameAnchorX='4' FrameAnchorY='5' TiltDegree='45'");
    p->m_fnPrintData();
    EXPECT_EQ(std::count(s_aLines.begin(), s_aLines.end(), "a.png"), 1);
    EXPECT_EQ(std::count(s_aLines.begin(), s_aLines.end(), "IMAGE_FRAME: 1 2 3 4 5\n"), 1);
    EXPECT_EQ(std::count(s_aLines.begin(), s_aLines.end(), "IMAGE_TILT_DEGREE: 45.000000\n"), 1);
}

} // namespace
