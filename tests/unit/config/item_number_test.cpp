#include "config/items/interner.h"
#include "tests/unit/config/item_fixture.h"

namespace {

class ItemNumber : public ItemTest {
  protected:
    void ReadData(const char* szData) {
        ReadNumbers("<NumBox Name='a' IsShow='1' FontName='Sans' DataFullName='" + std::string(szData) +
                    "'/>");
    }
};

TEST_F(ItemNumber, ANewRecordIsANumBox) {
    const CItemProperty_NumBox item;
    EXPECT_EQ(item.m_pComplete, &item);
    EXPECT_EQ(item.m_uItemType, 2u);
    EXPECT_STREQ(item.m_szItemType, "NUMBOX");
}

TEST_F(ItemNumber, EveryMissingKeyGivesItsDefault) {
    ReadData("FPS"); // without font and data name there is no record
    const auto* p = Number("a");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_fTextSize, 0.0f);
    EXPECT_EQ(p->m_fTextSpacingX, 0.0f);
    EXPECT_EQ(p->m_u8TextR, 255);
    EXPECT_EQ(p->m_u8TextG, 255);
    EXPECT_EQ(p->m_u8TextB, 255);
    EXPECT_EQ(p->m_u8TextA, 255);
    EXPECT_EQ(p->m_u8TextOpacity, 100);
    EXPECT_EQ(p->m_u8ShadowR, 0);
    EXPECT_EQ(p->m_u8ShadowG, 0);
    EXPECT_EQ(p->m_u8ShadowB, 0);
    EXPECT_EQ(p->m_u8ShadowA, 255);
    EXPECT_EQ(p->m_u8ShadowOpacity, 100);
}

TEST_F(ItemNumber, EachAttributeReachesItsField) {
    ReadNumbers("<NumBox Name='n' IsShow='1' FontName='Mono' DataFullName='GPU_CLK#0' TextSize='32' "
                "TextSpacingX='2.5' TextColorR='1' TextColorG='2' TextColorB='3' TextColorA='128' "
                "ShadowColorR='5' ShadowColorG='6' ShadowColorB='7' ShadowColorA='1' ContentAnchor='9'/>");
    const auto* p = Number("n");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_uItemType, 2u);
    EXPECT_EQ(p->m_iContentAnchor, 9);
    EXPECT_EQ(std::u16string(p->m_wzFontName), u"Mono");
    EXPECT_STREQ(p->m_szDataFullName, "GPU_CLK#0");
    EXPECT_EQ(p->m_fTextSize, 32.0f);
    EXPECT_EQ(p->m_fTextSpacingX, 2.5f);
    EXPECT_EQ(p->m_u8TextR, 1);
    EXPECT_EQ(p->m_u8TextG, 2);
    EXPECT_EQ(p->m_u8TextB, 3);
    EXPECT_EQ(p->m_u8TextOpacity, 50);
    EXPECT_EQ(p->m_u8TextA, 127);
    EXPECT_EQ(p->m_u8ShadowR, 5);
    EXPECT_EQ(p->m_u8ShadowG, 6);
    EXPECT_EQ(p->m_u8ShadowB, 7);
    EXPECT_EQ(p->m_u8ShadowOpacity, 0);
    EXPECT_EQ(p->m_u8ShadowA, 0);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemNumber, SystemTimeAndResolutionBecomeMixed) {
    for (const char* sz : {"SYSTEM_TIME", "RESOLUTION"}) {
        g_fnClearItems();
        ReadData(sz);
        ASSERT_NE(Number("a"), nullptr);
        EXPECT_EQ(Number("a")->m_uItemType, 7u);
        EXPECT_STREQ(Number("a")->m_szItemType, "MIXED");
        EXPECT_EQ(Number("a")->m_u8TextA, 255);
    }
}

TEST_F(ItemNumber, OtherDataNamesStayPlainNumbers) {
    for (const char* sz : {"FPS", "SYSTEM_TIME#0", "system_time", "RESOLUTION ", "GPU_TEMP#1"}) {
        g_fnClearItems();
        ReadData(sz);
        ASSERT_NE(Number("a"), nullptr) << sz;
        EXPECT_EQ(Number("a")->m_uItemType, 2u) << sz;
    }
}

TEST_F(ItemNumber, FontAndDataNameAreBothReported) {
    ReadNumbers("<NumBox Name='a' IsShow='1'/>");
    EXPECT_EQ(s_aLines, (Lines{"error ! item \"a\" m_wzFontName is invalid",
                               "error ! item \"a\" m_szDataFullName is invalid"}));
    EXPECT_TRUE(g_mapItemByName.empty());
}

TEST_F(ItemNumber, EitherErrorTakesAllLaterNumbersAlong) {
    for (const char* szBad : {"FontName='Sans'", "DataFullName='FPS'"}) {
        g_fnClearItems();
        ReadNumbers("<NumBox Name='first' IsShow='1' FontName='Sans' DataFullName='FPS'/>"
                    "<NumBox Name='bad' IsShow='1' " +
                    std::string(szBad) +
                    "/><NumBox Name='later' IsShow='1' FontName='Sans' DataFullName='FPS'/>");
        EXPECT_EQ(g_mapItemByName.size(), 1u);
        EXPECT_NE(Number("first"), nullptr);
    }
}

TEST_F(ItemNumber, LaterCallsRegisterAgain) {
    ReadNumbers("<NumBox Name='bad' IsShow='1'/>");
    ReadNumbers("<NumBox Name='bad' IsShow='1' FontName='Sans' DataFullName='FPS'/>");
    EXPECT_NE(Number("bad"), nullptr);
}

TEST_F(ItemNumber, TheItemNameIsInternedBeforeTheDataName) {
    const u64 u64Before = g_fnInternName("item number before");
    ReadNumbers(
        "<NumBox Name='item number name' IsShow='1' FontName='Sans' DataFullName='item number data'/>");
    EXPECT_EQ(g_fnInternName("item number name"), u64Before + 1);
    EXPECT_EQ(g_fnInternName("item number data"), u64Before + 2);
    EXPECT_EQ(Number("item number name")->m_u64ItemId, u64Before + 1);
}

TEST_F(ItemNumber, ALongDataNameIsCut) {
    ReadData(std::string(200, 'd').c_str());
    EXPECT_EQ(std::string(Number("a")->m_szDataFullName), std::string(63, 'd'));
}

TEST_F(ItemNumber, QueriesAnswerTheFontOnly) {
    ReadData("FPS");
    std::u16string wz = u"old";
    EXPECT_FALSE(Find("a")->m_fnQueryString("TEXT_STRING", wz));
    EXPECT_EQ(wz, u"old");
    EXPECT_TRUE(Find("a")->m_fnQueryString("TEXT_FONT", wz));
    EXPECT_EQ(wz, u"Sans");
}

TEST_F(ItemNumber, TheDumpAddsItsLines) {
    ReadData("FPS");
    Find("a")->m_fnPrintData();
    ASSERT_EQ(s_aLines.size(), 21u);
    EXPECT_EQ(s_aLines[2], "ITEM_TYPE: NUMBOX\n");
    EXPECT_EQ(Lines(s_aLines.begin() + 11, s_aLines.end()),
              (Lines{"--------------------------------\n", "TEXT_FONT: ", "Sans", "TEXT_SIZE: 0.000000\n",
                     "TEXT_SPACING_X: 0.000000\n", "TEXT_COLOR:", "RGBA 255 255 255 255",
                     "SHADOW_COLOR:", "RGBA 0 0 0 255", "DATA_FULLNAME: FPS\n"}));
}

TEST_F(ItemNumber, AMixedItemAlignsByItsContentAnchorAndDigitGap) {
    ReadNumbers("<NumBox Name='t' IsShow='1' FontName='Sans' DataFullName='SYSTEM_TIME' ContentAnchor='8' "
                "ContentAnchorX='-4' ContentAnchorY='6' TextSpacingX='1.5'/>");
    const stItemAlign st = g_fnItemAlign(*Number("t"));
    EXPECT_EQ(st.m_uAlignX, 8u);
    EXPECT_EQ(st.m_uAlignOffsetX, -4);
    EXPECT_EQ(st.m_uAlignOffsetY, 6);
    EXPECT_EQ(st.m_uAlignGap, 1.5f);
}

} // namespace
