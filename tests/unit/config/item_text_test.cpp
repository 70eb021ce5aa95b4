#include "config/items/item_reader.h"
#include "platform/process.h"
#include "shared/api_code.h"
#include "shared/process_records.h"
#include "tests/unit/config/item_fixture.h"

#include <algorithm>

namespace {

class ItemText : public ItemTest {
  protected:
    void SetUp() override {
        ItemTest::SetUp();
        m_uFormerApi = g_uApiCode;
        std::copy_n(g_wzProfileName, g_uProfileNameUnits, m_awzFormer);
    }
    void TearDown() override {
        g_uApiCode = m_uFormerApi;
        std::copy_n(m_awzFormer, g_uProfileNameUnits, g_wzProfileName);
        ItemTest::TearDown();
    }
    /// Text of the one item with these attributes beside its name, font and visibility.
    std::u16string Shown(const std::string& szAttributes) {
        g_fnClearItems();
        ReadTexts("<TextBox Name='a' IsShow='1' FontName='Sans' " + szAttributes + "/>");
        return Text("a") ? Text("a")->m_wzText : u"(no item)";
    }

  private:
    u32 m_uFormerApi = 0;
    char16_t m_awzFormer[g_uProfileNameUnits];
};

TEST_F(ItemText, ANewRecordIsATextBox) {
    const CItemProperty_TextBox item;
    EXPECT_EQ(item.m_pComplete, &item);
    EXPECT_EQ(item.m_uItemType, 1u);
    EXPECT_STREQ(item.m_szItemType, "TEXTBOX");
}

TEST_F(ItemText, EveryMissingKeyOfATextBoxGivesItsDefault) {
    ReadTexts("<TextBox Name='a' IsShow='1' FontName='Sans'/>"); // without a font there is no record
    const auto* p = Text("a");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::u16string(p->m_wzText), u"");
    EXPECT_STREQ(p->m_szStringFullName, "");
    EXPECT_EQ(p->m_fTextSize, 0.0f);
    EXPECT_EQ(p->m_fTextSpacingX, 0.0f);
    EXPECT_EQ(p->m_fTextSpacingY, 0.0f);
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
    EXPECT_EQ(p->m_bMemoFlagA, 0u);
    EXPECT_EQ(p->m_bMemoFlagB, 0u);
}

TEST_F(ItemText, EveryMissingKeyOfAMemoGivesItsDefault) {
    ReadMemos("<Memo Name='a' IsShow='1' FontName='Sans'/>");
    const auto* p = Text("a");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::u16string(p->m_wzText), u"");
    EXPECT_EQ(p->m_fTextSize, 0.0f);
    EXPECT_EQ(p->m_fTextSpacingX, 0.0f);
    EXPECT_EQ(p->m_fTextSpacingY, 0.0f);
    EXPECT_EQ(p->m_u8TextR, 255);
    EXPECT_EQ(p->m_u8TextA, 255);
    EXPECT_EQ(p->m_u8ShadowR, 0);
    EXPECT_EQ(p->m_u8ShadowA, 255);
}

TEST_F(ItemText, AMissingFontNameIsAnEmptyOne) {
    ReadTexts("<TextBox Name='a' IsShow='1' Text='x'/>");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"a\" m_wzFontName is invalid"});
    EXPECT_TRUE(g_mapItemByName.empty());
}

TEST_F(ItemText, EachAttributeOfATextBoxReachesItsField) {
    ReadTexts("<TextBox Name='a' IsShow='1' FontName='DejaVu Sans' Text='Frames' StringFullName='none' "
              "TextSize='24.5' TextSpacingX='-1.25' TextSpacingY='9' TextColorR='1' TextColorG='2' "
              "TextColorB='3' TextColorA='51' ShadowColorR='5' ShadowColorG='6' ShadowColorB='7' "
              "ShadowColorA='102' FrameSizeW='640' FileName='memo.txt'/>");
    const auto* p = Text("a");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_uItemType, 1u);
    EXPECT_EQ(p->m_uFrameSizeW, 640u);
    EXPECT_EQ(std::u16string(p->m_wzFontName), u"DejaVu Sans");
    EXPECT_EQ(std::u16string(p->m_wzText), u"Frames");
    EXPECT_STREQ(p->m_szStringFullName, "none");
    EXPECT_EQ(p->m_fTextSize, 24.5f);
    EXPECT_EQ(p->m_fTextSpacingX, -1.25f);
    EXPECT_EQ(p->m_fTextSpacingY, 0.0f) << "only memos have it";
    EXPECT_EQ(p->m_u8TextR, 1);
    EXPECT_EQ(p->m_u8TextG, 2);
    EXPECT_EQ(p->m_u8TextB, 3);
    EXPECT_EQ(p->m_u8TextA, 51);
    EXPECT_EQ(p->m_u8TextOpacity, 20);
    EXPECT_EQ(p->m_u8ShadowR, 5);
    EXPECT_EQ(p->m_u8ShadowG, 6);
    EXPECT_EQ(p->m_u8ShadowB, 7);
    EXPECT_EQ(p->m_u8ShadowA, 102);
    EXPECT_EQ(p->m_u8ShadowOpacity, 40);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemText, AMemoTakesItsFileNameAndItsLineGap) {
    ReadMemos("<Memo Name='m' IsShow='1' FontName='Sans' FileName='note.txt' Text='no' TextSpacingY='4' "
              "StringFullName='ARCH'/>");
    const auto* p = Text("m");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_uItemType, 6u);
    EXPECT_STREQ(p->m_szItemType, "MEMO");
    EXPECT_EQ(p->m_bMemoFlagA, 1u);
    EXPECT_EQ(p->m_bMemoFlagB, 1u);
    EXPECT_EQ(std::u16string(p->m_wzText), u"note.txt") << "a memo shows no program value";
    EXPECT_STREQ(p->m_szStringFullName, "");
    EXPECT_EQ(p->m_fTextSpacingY, 4.0f);
}

TEST_F(ItemText, TextBoxesAndMemosAreReadApart) {
    const std::string szBoth = "<TextBox Name='t' IsShow='1' FontName='Sans' Text='x'/>"
                               "<Memo Name='m' IsShow='1' FontName='Sans' FileName='x'/>";
    ReadTexts(szBoth);
    EXPECT_EQ(g_mapItemByName.size(), 1u);
    ReadMemos(szBoth);
    EXPECT_EQ(g_mapItemByName.size(), 2u);
}

TEST_F(ItemText, AlphaGoesThroughWholePercentAndBack) {
    const struct {
        const char* szAlpha;
        u8 uOpacity, uAlpha;
    } aCases[] = {{"255", 100, 255}, {"128", 50, 127}, {"1", 0, 0},
                  {"254", 99, 252},  {"3", 1, 2},      {"0", 0, 0}};
    for (const auto& st : aCases) {
        Shown("Text='x' TextColorA='" + std::string(st.szAlpha) + "' ShadowColorA='" + st.szAlpha + "'");
        EXPECT_EQ(Text("a")->m_u8TextOpacity, st.uOpacity) << st.szAlpha;
        EXPECT_EQ(Text("a")->m_u8TextA, st.uAlpha) << st.szAlpha;
        EXPECT_EQ(Text("a")->m_u8ShadowOpacity, st.uOpacity) << st.szAlpha;
        EXPECT_EQ(Text("a")->m_u8ShadowA, st.uAlpha) << st.szAlpha;
    }
}

TEST_F(ItemText, ColoursKeepTheirLowByte) {
    Shown("Text='x' TextColorR='256' TextColorG='-1' TextColorB='1000'");
    EXPECT_EQ(Text("a")->m_u8TextR, 0);
    EXPECT_EQ(Text("a")->m_u8TextG, 255);
    EXPECT_EQ(Text("a")->m_u8TextB, 232);
}

TEST_F(ItemText, AnEmptyTextIsReportedAndKept) {
    EXPECT_EQ(Shown("Text=''"), u"");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"a\" m_wzText"});
}

TEST_F(ItemText, AProgramValueWithoutTextIsReportedAllTheSame) {
    EXPECT_EQ(Shown("StringFullName='ARCH'"), u"64 bit");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"a\" m_wzText"});
}

// A byte alpha never makes more than 100 percent, so the check is asked directly.
TEST_F(ItemText, AShadowPercentageAbove100IsReported) {
    Shown("Text='x'");
    g_fnCheckShadowOpacity(*Text("a"), 100);
    EXPECT_EQ(s_aLines, Lines{});
    g_fnCheckShadowOpacity(*Text("a"), 101);
    EXPECT_EQ(s_aLines, Lines{"error ! item \"a\" m_u8ShadowOpacity"});
}

TEST_F(ItemText, AnItemWithoutAFontTakesAllLaterOnesOfItsCallAlong) {
    ReadTexts("<TextBox Name='first' IsShow='1' FontName='Sans' Text='x'/>"
              "<TextBox Name='bad' IsShow='1' Text='x'/>"
              "<TextBox Name='later' IsShow='1' FontName='Sans' Text='x'/>"
              "<TextBox Name='empty' IsShow='1' FontName='Sans'/>"
              "<TextBox Name='worse' IsShow='1' FontName=''/>"
              "<TextBox IsShow='1'/>");
    EXPECT_EQ(g_mapItemByName.size(), 1u);
    EXPECT_NE(Text("first"), nullptr);
    EXPECT_EQ(s_aLines,
              (Lines{"error ! item \"bad\" m_wzFontName is invalid", "error ! item \"empty\" m_wzText",
                     "error ! item \"worse\" m_wzText", "error ! item \"worse\" m_wzFontName is invalid",
                     "error ! Invalid Item Name: \"\""}));
}

TEST_F(ItemText, NamesOfDroppedItemsStayFree) {
    ReadTexts("<TextBox Name='bad' IsShow='1' Text='x'/>"
              "<TextBox Name='later' IsShow='1' FontName='Sans' Text='x'/>"
              "<TextBox Name='later' IsShow='1' FontName='Sans' Text='x'/>");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"bad\" m_wzFontName is invalid"});
    ReadMemos("<Memo Name='bad' IsShow='1' FontName='Sans' FileName='x'/>"
              "<Memo Name='later' IsShow='1' FontName='Sans' FileName='x'/>");
    EXPECT_EQ(g_mapItemByName.size(), 2u) << "memos are another call";
}

TEST_F(ItemText, TheApiLabelFollowsTheCode) {
    const struct {
        u32 uCode;
        const char16_t* wzLabel;
    } aLabels[] = {{1024, u"OGL"},   {6144, u"D3D8"},  {6400, u"D3D9"},  {6416, u"D3D9E"},
                   {6656, u"D3D10"}, {6912, u"D3D11"}, {7168, u"D3D12"}, {8192, u"VK"}};
    for (const auto& st : aLabels) {
        g_uApiCode = st.uCode;
        EXPECT_EQ(Shown("Text='x' StringFullName='GL'"), st.wzLabel);
    }
    for (const u32 uCode : {0u, 1u, 1025u, 9527u}) {
        g_uApiCode = uCode;
        EXPECT_EQ(Shown("Text='kept' StringFullName='GL'"), u"kept") << uCode;
    }
}

TEST_F(ItemText, ArchOverridesAnyText) { EXPECT_EQ(Shown("Text='32 bit' StringFullName='ARCH'"), u"64 bit"); }

TEST_F(ItemText, ProgramValuesAreCaseSensitiveAndExact) {
    g_uApiCode = 1024;
    for (const char* sz : {"Gl", "gl", "GL ", " GL", "GLX", "arch", "Pid", "PROFILE", "FPS"})
        EXPECT_EQ(Shown("Text='kept' StringFullName='" + std::string(sz) + "'"), u"kept") << sz;
}

TEST_F(ItemText, TheProfileNameIsThatOfTheProcess) {
    std::u16string(u"My pr\u00F6file").copy(g_wzProfileName, 11);
    g_wzProfileName[10] = 0;
    EXPECT_EQ(Shown("Text='x' StringFullName='PROFILE_NAME'"), u"My pr\u00F6file");
}

TEST_F(ItemText, ProcessAndThreadIdAreDecimal) {
    const std::string szPid = std::to_string(platform::CurrentProcessId());
    const std::string szTid = std::to_string(platform::CurrentThreadId());
    EXPECT_EQ(Shown("Text='x' StringFullName='PID'"), std::u16string(szPid.begin(), szPid.end()));
    EXPECT_EQ(Shown("Text='x' StringFullName='TID'"), std::u16string(szTid.begin(), szTid.end()));
}

TEST_F(ItemText, AProgramValueNameIsCutToItsRoom) {
    Shown("Text='x' StringFullName='" + std::string(200, 's') + "'");
    EXPECT_EQ(std::string(Text("a")->m_szStringFullName), std::string(63, 's'));
}

TEST_F(ItemText, AFontNameLosesItsByteOrderMark) {
    ReadTexts("<TextBox Name='a' IsShow='1' FontName='\xEF\xBB\xBFSans' Text='x'/>");
    EXPECT_EQ(std::u16string(Text("a")->m_wzFontName), u"Sans");
}

TEST_F(ItemText, AFontNameOfOnlyAByteOrderMarkIsEmpty) {
    ReadTexts("<TextBox Name='a' IsShow='1' FontName='\xEF\xBB\xBF' Text='x'/>");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"a\" m_wzFontName is invalid"});
}

TEST_F(ItemText, ALongFontNameIsCut) {
    ReadTexts("<TextBox Name='a' IsShow='1' FontName='" + std::string(200, 'F') + "' Text='x'/>");
    EXPECT_EQ(std::u16string(Text("a")->m_wzFontName), std::u16string(127, u'F'));
}

TEST_F(ItemText, TextBeyond255BytesIsCut) {
    EXPECT_EQ(Shown("Text='" + std::string(1000, 't') + "'"), std::u16string(255, u't'));
}

TEST_F(ItemText, ReferencesInTextAreCharacters) {
    EXPECT_EQ(Shown("Text='a&amp;b &lt;&#x4E2D;&#128230;'"), u"a&b <\u4E2D\xD83D\xDCE6");
}

TEST_F(ItemText, QueriesAnswerFontAndText) {
    Shown("Text='Frames'");
    std::u16string wz;
    EXPECT_TRUE(Find("a")->m_fnQueryString("TEXT_FONT", wz));
    EXPECT_EQ(wz, u"Sans");
    EXPECT_TRUE(Find("a")->m_fnQueryString("TEXT_STRING", wz));
    EXPECT_EQ(wz, u"Frames");
    EXPECT_FALSE(Find("a")->m_fnQueryString("text_font", wz));
    EXPECT_FALSE(Find("a")->m_fnQueryString("", wz));
    EXPECT_EQ(wz, u"Frames") << "untouched";
}

TEST_F(ItemText, TheDumpAddsItsLines) {
    Shown("Text='Fr\xC3\xA9quence' TextSize='20' TextSpacingX='1.5' TextColorG='7' ShadowColorA='128' "
          "FrameSizeW='-1'");
    Find("a")->m_fnPrintData();
    EXPECT_EQ(s_aLines, (Lines{"--------------------------------\n",
                               "m_fnPrintData()\n",
                               "ITEM_TYPE: TEXTBOX\n",
                               "FRAME_SIZE_W: -1\n",
                               "FRAME_SIZE_H: 0\n",
                               "FRAME_ANCHOR: 1\n",
                               "FRAME_ANCHOR_X: 0\n",
                               "FRAME_ANCHOR_Y: 0\n",
                               "CONTENT_ANCHOR: 1\n",
                               "CONTENT_ANCHOR_X: 0\n",
                               "CONTENT_ANCHOR_Y: 0\n",
                               "--------------------------------\n",
                               "TEXT_STRING: ",
                               "Fr\xC3\xA9quence",
                               "TEXT_FONT: ",
                               "Sans",
                               "STRING_FULLNAME: \n",
                               "TEXT_SIZE: 20.000000\n",
                               "TEXT_SPACING_X: 1.500000\n",
                               "TEXT_SPACING_Y: 0.000000\n",
                               "TEXT_COLOR:",
                               "RGBA 255 7 255 255",
                               "SHADOW_COLOR:",
                               "RGBA 0 0 0 127"}));
}

} // namespace
