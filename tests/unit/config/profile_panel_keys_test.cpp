// Looks of a profile's parts, key by key.
#include "batch/draw_text.h"
#include "config/settings/settings.h"
#include "profile_fixture.h"

namespace {

struct ProfilePanelKeys : ProfileTest {
    void Read(const std::string& strSettings) {
        ReadCustom(strSettings);
        g_fnReadProfilePanelKeys();
    }
};

constexpr const char* c_szPanel =
    " PanelColorR='1' PanelColorG='2' PanelColorB='3' PanelOpacity='50' PanelType='2'"
    " PanelScattering='12' PanelThick='1.5'";
constexpr const char* c_szColors =
    " TextColorR='11' TextColorG='12' TextColorB='13' TextOpacity='20'"
    " ShadowColorR='14' ShadowColorG='15' ShadowColorB='16' ShadowOpacity='40'";
constexpr const char* c_szPlace = " Anchor='-5' PositionX='-20' PositionY='30'";

void ExpectPanel(const stPanelKeys& st) {
    EXPECT_EQ(st.u8R, 1);
    EXPECT_EQ(st.u8G, 2);
    EXPECT_EQ(st.u8B, 3);
    EXPECT_EQ(st.u8Opacity, 50);
    EXPECT_EQ(st.u8A, 127); // 50 * 255 / 100 = 127.5
    EXPECT_EQ(st.uType, 2u);
    EXPECT_EQ(st.uScattering, 12u);
    EXPECT_EQ(st.fThick, 1.5f);
}

void ExpectDefaultPanel(const stPanelKeys& st) {
    EXPECT_EQ(st.u8R | st.u8G | st.u8B | st.u8Opacity | st.u8A, 0);
    EXPECT_EQ(st.uType, 0u);
    EXPECT_EQ(st.uScattering, 30u);
    EXPECT_EQ(st.fThick, 0.0f);
}

void ExpectColors(const stTextColors& st) {
    EXPECT_EQ(st.m_u8TextR, 11);
    EXPECT_EQ(st.m_u8TextG, 12);
    EXPECT_EQ(st.m_u8TextB, 13);
    EXPECT_EQ(st.m_u8TextOpacity, 20);
    EXPECT_EQ(st.m_u8TextA, 51);
    EXPECT_EQ(st.m_u8ShadowR, 14);
    EXPECT_EQ(st.m_u8ShadowG, 15);
    EXPECT_EQ(st.m_u8ShadowB, 16);
    EXPECT_EQ(st.m_u8ShadowOpacity, 40);
    EXPECT_EQ(st.m_u8ShadowA, 102);
}

void ExpectDefaultColors(const stTextColors& st) {
    EXPECT_EQ(st.m_u8TextR | st.m_u8TextG | st.m_u8TextB | st.m_u8ShadowR | st.m_u8ShadowG | st.m_u8ShadowB,
              0);
    EXPECT_EQ(st.m_u8TextOpacity | st.m_u8TextA | st.m_u8ShadowOpacity | st.m_u8ShadowA, 0);
}

void ExpectPlace(const stPartPlace& st, i32 iAnchor, i32 iX, i32 iY) {
    EXPECT_EQ(st.iAnchor, iAnchor);
    EXPECT_EQ(st.iX, iX);
    EXPECT_EQ(st.iY, iY);
}

std::u16string Wide(const char16_t* wz) { return wz; }

} // namespace

TEST_F(ProfilePanelKeys, InfoTakesItsKeys) {
    Read(std::string("<Info IsShow='1' FontScale='150'") + c_szPanel + c_szPlace + "/>");
    EXPECT_EQ(g_stLooks.stInfo.uIsShow, 1u);
    EXPECT_EQ(g_stLooks.stInfo.uFontScale, 150u);
    ExpectPanel(g_stLooks.stInfo.stPanel);
    ExpectPlace(g_stLooks.stInfo.stPlace, -5, -20, 30);
}

TEST_F(ProfilePanelKeys, MemoTakesItsKeys) {
    Read(std::string("<Memo IsShow='1' Title='T' Filename='m\xC3\xA9.txt' FontScale='7' FrameSizeW='300'") +
         c_szPanel + c_szColors + c_szPlace + "/>");
    EXPECT_EQ(g_stLooks.stMemo.uIsShow, 1u);
    EXPECT_STREQ(g_stLooks.stMemo.szTitle, "T");
    EXPECT_EQ(Wide(g_stLooks.stMemo.wzFilename), u"m\u00e9.txt");
    EXPECT_EQ(g_stLooks.stMemo.uFontScale, 7u);
    EXPECT_EQ(g_stLooks.stMemo.uFrameSizeW, 300u);
    ExpectPanel(g_stLooks.stMemo.stPanel);
    ExpectColors(g_stLooks.stMemo.stColors);
    ExpectPlace(g_stLooks.stMemo.stPlace, -5, -20, 30);
}

TEST_F(ProfilePanelKeys, WatermarkAndSystemInfoTakeTheirKeys) {
    for (const bool bWatermark : {true, false}) {
        Read(std::string(bWatermark ? "<Watermark" : "<SystemInfo") +
             " IsShow='1' Title='T' FontName='F\xC3\xA9' Text='X\xC2\xB0' FontScale='7'" + c_szPanel +
             c_szColors + c_szPlace + "/>");
        const stCaptionKeys& st = bWatermark ? g_stLooks.stWatermark : g_stLooks.stSystemInfo;
        EXPECT_EQ(st.uIsShow, 1u);
        EXPECT_STREQ(st.szTitle, "T");
        EXPECT_EQ(Wide(st.wzFontName), u"F\u00e9");
        EXPECT_EQ(Wide(st.wzText), u"X\u00b0");
        EXPECT_EQ(st.uFontScale, 7u);
        ExpectPanel(st.stPanel);
        ExpectColors(st.stColors);
        ExpectPlace(st.stPlace, -5, -20, 30);
        EXPECT_EQ((bWatermark ? g_stLooks.stSystemInfo : g_stLooks.stWatermark).uIsShow, 0u);
    }
}

TEST_F(ProfilePanelKeys, PhotoTakesItsKeys) {
    Read(std::string("<Photo IsShow='1' Title='T' Filename='p.png' FrameSizeW='300' FrameSizeH='400'"
                     " PhotoOpacity='80'") +
         c_szPanel + c_szPlace + "/>");
    EXPECT_EQ(g_stLooks.stPhoto.uIsShow, 1u);
    EXPECT_STREQ(g_stLooks.stPhoto.szTitle, "T");
    EXPECT_EQ(Wide(g_stLooks.stPhoto.wzFilename), u"p.png");
    EXPECT_EQ(g_stLooks.stPhoto.uFrameSizeW, 300u);
    EXPECT_EQ(g_stLooks.stPhoto.uFrameSizeH, 400u);
    EXPECT_EQ(g_stLooks.stPhoto.u8Opacity, 80);
    EXPECT_EQ(g_stLooks.stPhoto.u8A, 204);
    ExpectPanel(g_stLooks.stPhoto.stPanel);
    ExpectPlace(g_stLooks.stPhoto.stPlace, -5, -20, 30);
}

/// Elements without attributes, no elements, and no profile at all: the same.
TEST_F(ProfilePanelKeys, DefaultsOfKeysThatAreLeftOut) {
    for (const char* szSettings : {"<Info/><Memo/><Watermark/><SystemInfo/><Photo/><Camera/>", "", "none"}) {
        Read(std::string("<Info IsShow='1' FontScale='1'") + c_szPanel +
             "/><Camera TextGlow='1' TextShadow='1'/>");
        if (std::string_view(szSettings) == "none") {
            g_fnClearProfileDocuments();
            g_fnReadProfilePanelKeys();
        } else {
            Read(szSettings);
        }
        EXPECT_EQ(g_stLooks.stInfo.uIsShow, 0u);
        EXPECT_EQ(g_stLooks.stInfo.uFontScale, 100u);
        ExpectPlace(g_stLooks.stInfo.stPlace, 1, 0, 0);
        EXPECT_EQ(g_stLooks.stMemo.uIsShow, 0u);
        EXPECT_STREQ(g_stLooks.stMemo.szTitle, "");
        EXPECT_EQ(Wide(g_stLooks.stMemo.wzFilename), u"");
        EXPECT_EQ(g_stLooks.stMemo.uFontScale, 5u);
        EXPECT_EQ(g_stLooks.stMemo.uFrameSizeW, 200u);
        ExpectDefaultColors(g_stLooks.stMemo.stColors);
        ExpectPlace(g_stLooks.stMemo.stPlace, 1, 0, 0);
        for (const stCaptionKeys* p : {&g_stLooks.stWatermark, &g_stLooks.stSystemInfo}) {
            EXPECT_EQ(p->uIsShow, 0u);
            EXPECT_STREQ(p->szTitle, "");
            EXPECT_EQ(Wide(p->wzFontName), u"");
            EXPECT_EQ(Wide(p->wzText), u"");
            EXPECT_EQ(p->uFontScale, 5u);
            ExpectDefaultColors(p->stColors);
            ExpectPlace(p->stPlace, 7, 0, 0);
        }
        EXPECT_EQ(g_stLooks.stPhoto.uIsShow, 0u);
        EXPECT_STREQ(g_stLooks.stPhoto.szTitle, "");
        EXPECT_EQ(Wide(g_stLooks.stPhoto.wzFilename), u"");
        EXPECT_EQ(g_stLooks.stPhoto.uFrameSizeW, 200u);
        EXPECT_EQ(g_stLooks.stPhoto.uFrameSizeH, 200u);
        EXPECT_EQ(g_stLooks.stPhoto.u8Opacity | g_stLooks.stPhoto.u8A, 0);
        ExpectPlace(g_stLooks.stPhoto.stPlace, 1, 0, 0);
        for (const stPanelKeys* p :
             {&g_stLooks.stInfo.stPanel, &g_stLooks.stMemo.stPanel, &g_stLooks.stWatermark.stPanel,
              &g_stLooks.stSystemInfo.stPanel, &g_stLooks.stPhoto.stPanel})
            ExpectDefaultPanel(*p);
        EXPECT_FALSE(g_bTextGlow);
        EXPECT_FALSE(g_stLooks.bTextShadow);
    }
}

TEST_F(ProfilePanelKeys, GlowAndShadowAreTwoSwitches) {
    Read("<Camera TextGlow='2'/>");
    EXPECT_TRUE(g_bTextGlow);
    EXPECT_FALSE(g_stLooks.bTextShadow);
    Read("<Camera TextShadow='1'/>");
    EXPECT_FALSE(g_bTextGlow);
    EXPECT_TRUE(g_stLooks.bTextShadow);
}

TEST_F(ProfilePanelKeys, ScatteringAndPercentsAreHeldTo100) {
    Read("<Info PanelScattering='101' PanelOpacity='101'/>"
         "<Memo PanelScattering='4294967295' TextOpacity='300' ShadowOpacity='-1'/><Photo "
         "PhotoOpacity='255'/>");
    EXPECT_EQ(g_stLooks.stInfo.stPanel.uScattering, 100u);
    EXPECT_EQ(g_stLooks.stInfo.stPanel.u8Opacity, 100);
    EXPECT_EQ(g_stLooks.stInfo.stPanel.u8A, 255);
    EXPECT_EQ(g_stLooks.stMemo.stPanel.uScattering, 100u);
    EXPECT_EQ(g_stLooks.stMemo.stColors.m_u8TextOpacity, 100);
    EXPECT_EQ(g_stLooks.stMemo.stColors.m_u8ShadowOpacity, 100);
    EXPECT_EQ(g_stLooks.stMemo.stColors.m_u8ShadowA, 255);
    EXPECT_EQ(g_stLooks.stPhoto.u8A, 255);
}

TEST_F(ProfilePanelKeys, LongTextsAreCutTo255Bytes) {
    Read("<Memo Title='" + std::string(300, 't') + "' Filename='" + std::string(300, 'f') + "'/>");
    EXPECT_EQ(std::string(g_stLooks.stMemo.szTitle), std::string(255, 't'));
    EXPECT_EQ(Wide(g_stLooks.stMemo.wzFilename), std::u16string(255, u'f'));
}

TEST_F(ProfilePanelKeys, TheBatchReadsThePanelKeysAndTheSettingsWithThePhotosSize) {
    ReadCustom("<Photo FrameSizeW='321' FrameSizeH='123'/><Info FontScale='42'/>");
    Number(u"Debug", u"Debug Num", 7);
    g_fnReadProfileBatch();
    EXPECT_EQ(g_stLooks.stInfo.uFontScale, 42u);
    EXPECT_EQ(g_stSettings.stDebugRows.uRows, 7u);
    EXPECT_EQ(g_stSettings.stPhoto.uFrameSizeW, 321u);
    EXPECT_EQ(g_stSettings.stPhoto.uFrameSizeH, 123u);
}

// --- styles

namespace {

struct ProfileTextStyles : ProfileTest {
    void Read(const std::string& strStyles) {
        ReadCustom("<Info><CustomSettings>" + strStyles + "</CustomSettings></Info>");
        g_fnReadProfileTextStyles();
    }
};

} // namespace

TEST_F(ProfileTextStyles, AStyleHasColours) {
    Read(std::string("<TextColor ID='3'") + c_szColors + "/>");
    ASSERT_EQ(g_stLooks.mapTextColors.size(), 1u);
    ExpectColors(g_fnTextColorsOf(3));
}

TEST_F(ProfileTextStyles, ColoursThatAreLeftOutAre0) {
    Read("<TextColor ID='0'/>");
    ASSERT_EQ(g_stLooks.mapTextColors.size(), 1u);
    ExpectDefaultColors(g_fnTextColorsOf(0));
}

TEST_F(ProfileTextStyles, AStyleWithoutColoursIsWhiteOverBlack) {
    Read("");
    const stTextColors& st = g_fnTextColorsOf(5);
    EXPECT_EQ(st.m_u8TextR & st.m_u8TextG & st.m_u8TextB, 255);
    EXPECT_EQ(st.m_u8ShadowR | st.m_u8ShadowG | st.m_u8ShadowB, 0);
    EXPECT_EQ(st.m_u8TextOpacity, 100);
    EXPECT_EQ(st.m_u8ShadowOpacity, 100);
    EXPECT_EQ(st.m_u8TextA & st.m_u8ShadowA, 255);
}

TEST_F(ProfileTextStyles, TheIdOrElseTheDigitsOfTheTitleNameTheStyle) {
    Read("<TextColor ID='3' Title='Style#7' TextColorR='1'/><TextColor Title='Text Color #12b34' "
         "TextColorR='2'/>"
         "<TextColor Title='5' TextColorR='3'/>");
    ASSERT_EQ(g_stLooks.mapTextColors.size(), 3u);
    EXPECT_EQ(g_fnTextColorsOf(3).m_u8TextR, 1);
    EXPECT_EQ(g_fnTextColorsOf(12).m_u8TextR, 2);
    EXPECT_EQ(g_fnTextColorsOf(5).m_u8TextR, 3);
}

TEST_F(ProfileTextStyles, NamelessStylesAndThoseAbove63ArePassedOver) {
    Read("<TextColor/><TextColor Title='none'/><TextColor ID='64'/><TextColor Title='#64'/>"
         "<TextColor Title='99999999999999999999'/><TextColor ID='63' TextColorR='9'/>");
    ASSERT_EQ(g_stLooks.mapTextColors.size(), 1u);
    EXPECT_EQ(g_fnTextColorsOf(63).m_u8TextR, 9);
}

TEST_F(ProfileTextStyles, ALaterRecordOfAStyleCounts) {
    Read("<TextColor ID='1' TextColorR='1' TextColorG='1'/><TextColor ID='1' TextColorR='2'/>");
    EXPECT_EQ(g_fnTextColorsOf(1).m_u8TextR, 2);
    EXPECT_EQ(g_fnTextColorsOf(1).m_u8TextG, 0);
}

TEST_F(ProfileTextStyles, AlignsAre7Or8Or9) {
    Read("<TextAlign Title='#1' Anchor='8'/><TextAlign Title='#2' Anchor='9'/><TextAlign Title='#3'/>"
         "<TextAlign Title='#4' Anchor='5'/><TextAlign Title='#5' Anchor='-8'/><TextAlign ID='6' Anchor='8'/>"
         "<TextAlign Title='#7' Anchor='10'/>");
    const i32 aiExpected[] = {7, 8, 9, 7, 7, 7, 8, 7, 7};
    for (u32 u = 0; u < std::size(aiExpected); ++u) EXPECT_EQ(g_fnTextAlignOf(u), aiExpected[u]) << u;
}

TEST_F(ProfileTextStyles, StylesOfAnEarlierProfileGo) {
    Read("<TextColor ID='1'/><TextAlign ID='1' Anchor='9'/>");
    ReadCustom("");
    g_fnReadProfileTextStyles();
    EXPECT_TRUE(g_stLooks.mapTextColors.empty());
    EXPECT_TRUE(g_stLooks.mapTextAligns.empty());
}

TEST_F(ProfileTextStyles, DigitsOfATitle) {
    EXPECT_EQ(g_fnTitleNumber(""), g_uNoTitleNumber);
    EXPECT_EQ(g_fnTitleNumber("abc"), g_uNoTitleNumber);
    EXPECT_EQ(g_fnTitleNumber("Font#12"), 12u);
    EXPECT_EQ(g_fnTitleNumber("a-3.5"), 3u);
    EXPECT_EQ(g_fnTitleNumber("99999999999"), g_uNoTitleNumber);
}
