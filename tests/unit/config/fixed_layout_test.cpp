// Layouts of the two styles with fixed tables, built from the shipped reference file.
#include "config/fixed/fixed_layout.h"

#include "config/fixed/info_place.h"
#include "config/fixed/style_items.h"
#include "config/fixed/style_panels.h"
#include "config/fixed/time_row.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_panel_keys.h"
#include "config/settings/settings.h"
#include "draw/canvas.h"
#include "frame/layout.h"
#include "frame/update/update.h"
#include "frame/update/update_records.h"
#include "platform/headless/test_controls.h"
#include "platform/segment.h"
#include "platform/shared_block.h"
#include "tests/unit/config/custom_fixture.h"

#include <array>
#include <cstring>

namespace headless = platform::headless;

namespace {

constexpr char16_t c_wzOption[] = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\\";

/// What a layout is built of.
struct stWish {
    u32 uStyle = 0;
    std::string strProgram = "<FPS IsShow='1'/><Frametime IsShow='1'/><SystemTime IsShow='1'/><Resolution/>"
                             "<PoweredByOrvinDeck IsShow='0'/>";
    std::string strCard = "<GPUClock IsShow='1'/>";
    std::string strCpu = "<CPUClock IsShow='1'/>";
    std::string strMore = ""; ///< further children of "Info"
    std::string strInfo = ""; ///< further attributes of "Info"
    std::string strSettings = "";
    u32 uCards = 1, uCpus = 1;
    i32 iScale = 100;
};

class FixedLayout : public CustomTest {
  protected:
    void SetUp() override {
        CustomTest::SetUp();
        InstallTestData(m_folder.Path(""), false);
        g_fnStoreSize(1920, 1080);
        for (const auto& row : g_aCpuRows) Support(std::u16string(u"CPU\\") + row.wzRow);
    }
    void TearDown() override {
        g_fnForgetFailedLoad();
        g_fnResetConfiguration();
        g_fnStoreSize(1280, 720);
        CustomTest::TearDown();
        headless::ResetAll();
        g_stSettings.uWowKeys = 1;
        g_fnLoadGlobalSettings();
        g_fnReadFeatureSwitches();
        g_fnReadSettingsBatch(200, 200);
    }
    static void Support(const std::u16string& wstrKey) {
        headless::SetSettingsNumber((c_wzOption + wstrKey).c_str(), u"IsSupport", 1);
    }
    /// All rows of so many cards.
    static void SupportCards(u32 uCards) {
        headless::SetSettingsNumber((std::u16string(c_wzOption) + u"Card").c_str(), u"Card Num", uCards);
        for (u32 u = 0; u < uCards; ++u)
            for (const auto& row : g_aCardRows)
                Support(u"Card\\" + std::u16string(1, static_cast<char16_t>(u'0' + u)) + u"\\" + row.wzRow);
    }
    void Write(const stWish& st) {
        const std::string strLayout = g_fnLayoutElementName(st.uStyle);
        std::string strBlocks = "<Card Title='Card#0'>" + st.strCard + "</Card>";
        for (u32 u = 0; u < st.uCpus; ++u)
            strBlocks += "<CPU Title='CPU#" + std::to_string(u) + "'>" + st.strCpu + "</CPU>";
        m_folder.Write("Profiles/Mine/OSD.xml",
                       "<OSD LayoutStyle='" + std::to_string(st.uStyle) + "'><" + strLayout +
                           "><Settings><Preview AspectRatio='16:9'/>" + st.strSettings +
                           "<Info IsShow='1' CardDisplayNum='20' FontScale='" + std::to_string(st.iScale) +
                           "' " + st.strInfo + ">" + st.strProgram + strBlocks + st.strMore +
                           "</Info></Settings></" + strLayout + "></OSD>");
    }
    bool Load() {
        std::u16string(u"Mine").copy(platform::SharedSegment()->wzGlobalProfile, 5);
        return g_fnMakeLayout();
    }
    bool Build(const stWish& st) {
        SupportCards(st.uCards);
        Write(st);
        return Load();
    }
    static const stStyleItems& Style() { return g_uLayoutStyle == 1 ? g_stRV5Items : g_stClassicItems; }
    template <eControlKind eKind>
    static auto* Find(eItem eOf, const char* szWord, const char* szRole, u32 uInstance = 0) {
        const u32 uBID = g_fnItemBID(Style(), eOf, szWord, szRole);
        EXPECT_NE(uBID, g_uNoBID) << szWord << ' ' << szRole;
        return g_fnFindCtrlById(g_fnMakeLB_ID(uInstance, uBID), g_fnKind<eKind>());
    }
    static CPanel_Base* RowPanel(const char* szWord, const char* szRole, u32 uInstance = 0) {
        return Find<KIND_PANEL>(eItem::Panel, szWord, szRole, uInstance);
    }
    static CTextBox_Base* RowText(const char* szWord, const char* szRole, u32 uInstance = 0) {
        return Find<KIND_TEXTBOX>(eItem::Text, szWord, szRole, uInstance);
    }
    static CNumBox_Base* RowNumber(const char* szWord, const char* szRole, u32 uInstance = 0) {
        return Find<KIND_NUMBOX>(eItem::Number, szWord, szRole, uInstance);
    }
    using Place = std::array<f32, 2>;
    static Place At(CControl* p) {
        f32 x = -1, y = -1;
        EXPECT_NE(p, nullptr);
        if (p) p->m_fnGetPosition(&x, &y, nullptr);
        return {x, y};
    }
    static f32 Top(CControl* p) { return At(p)[1]; }
    static std::u16string TextOf(CTextBox_Base* p) { return p ? p->m_wzText.get() : u"(none)"; }
    /// Words of the title panels that stand in the tree, from top to bottom and then by column.
    static std::vector<std::string> RowOrder() {
        std::vector<std::pair<Place, std::string>> rows;
        g_fnForEachItem(Style(), [&](const stStyleItem& item) {
            if (item.eKind != eItem::Panel || item.szRole != std::string_view("TITLE")) return;
            for (u32 u = 0; u < 64; ++u)
                if (CPanel_Base* p = g_fnFindCtrlById(g_fnMakeLB_ID(u, item.uBID), g_fnKind<KIND_PANEL>()))
                    rows.push_back({At(p), item.szWord + (u ? "@" + std::to_string(u) : "")});
        });
        std::ranges::sort(rows);
        std::vector<std::string> words;
        for (const auto& [at, str] : rows) words.push_back(str);
        return words;
    }
};

using Words = std::vector<std::string>;

// --- Classic -----------------------------------------------------------------------------------------------

TEST_F(FixedLayout, ClassicPutsFiguresOnOneLineAndCardAndCpuBelow) {
    ASSERT_TRUE(Build({}));
    EXPECT_EQ(g_uLayoutStyle, 0u);
    EXPECT_EQ(g_fnUpdateFPS, &g_fnUpdateFPSClassic);
    f32 fWidth = 0;
    const Place fps = At(RowPanel("FPS", "INFO")), time = At(RowPanel("FRAME_TIME", "INFO"));
    RowPanel("FPS", "INFO")->m_fnGetSize(&fWidth, nullptr);
    EXPECT_EQ(time, (Place{fps[0] + fWidth, fps[1]})) << "each begins where the one before ends";
    EXPECT_EQ(Top(RowPanel("SYSTEM_TIME", "INFO")), fps[1]);
    EXPECT_EQ(Top(RowPanel("GPU_FIRST", "INFO")), fps[1] + 24);
    EXPECT_EQ(Top(RowPanel("CPU_FIRST", "INFO")), fps[1] + 48);
    EXPECT_EQ(RowPanel("GPU_SECOND", "INFO", 1), nullptr);
}

TEST_F(FixedLayout, ClassicClosesUpWhereALineOfTheFirstBlockIsOff) {
    stWish st;
    st.strProgram = "<FPS/><Frametime IsShow='1'/><SystemTime/><Resolution/><PoweredByOrvinDeck/>";
    ASSERT_TRUE(Build(st));
    const Place time = At(RowPanel("FRAME_TIME", "INFO"));
    EXPECT_EQ(RowPanel("FPS", "INFO"), nullptr);
    EXPECT_EQ(Top(RowPanel("GPU_FIRST", "INFO")), time[1] + 24) << "frame time alone is a wide line";
    st.strProgram = "<FPS/><SystemTime/><Resolution/>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(Top(RowPanel("GPU_FIRST", "INFO")), time[1]);
    st.strCard = "<GPUClock/>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(Top(RowPanel("CPU_FIRST", "INFO")), time[1]);
}

TEST_F(FixedLayout, ClassicGivesFurtherCardsAndCpusALineEach) {
    stWish st;
    st.strCard = "<GPUClock IsShow='1'/><GPUTemperature IsShow='1'/><VRAMClock IsShow='1'/>";
    st.uCards = 3;
    st.uCpus = 2;
    for (const i32 iScale : {50, 100, 150}) {
        SCOPED_TRACE(iScale);
        st.iScale = iScale;
        ASSERT_TRUE(Build(st));
        const auto Scaled = [iScale](i32 i) { return static_cast<f32>(i * iScale / 100); };
        const Place first = At(RowPanel("GPU_SECOND", "INFO", 1));
        f32 fWidth = 0;
        RowPanel("GPU_SECOND", "INFO", 1)->m_fnGetSize(&fWidth, nullptr);
        EXPECT_EQ(first[1], Top(RowPanel("FPS", "INFO")) + Scaled(76));
        EXPECT_EQ(At(RowPanel("GPU_SECOND", "INFO", 2)), (Place{first[0], first[1] + Scaled(15)}));
        EXPECT_EQ(At(RowPanel("CPU_SECOND", "INFO", 1)), (Place{first[0] + fWidth, first[1]}));
        EXPECT_EQ(RowPanel("GPU_SECOND", "INFO", 0), nullptr);
        // Details: 76 and 34, each cut.
        EXPECT_EQ(Top(RowPanel("VRAM_CLK", "TITLE")), Top(RowPanel("FPS", "INFO")) + Scaled(76) + Scaled(34));
        // A column's number hangs on the title, its unit on the panel.
        EXPECT_EQ(At(RowNumber("GPU_SECOND_TEMP", "VALUE", 1))[0],
                  At(RowText("GPU_SECOND", "TITLE", 1))[0] + Scaled(39) + Scaled(44) + Scaled(3));
        EXPECT_EQ(At(RowText("GPU_SECOND_CLK", "UNIT", 1))[0], first[0] + Scaled(39) + Scaled(44));
    }
}

TEST_F(FixedLayout, ClassicHasOneTitleAndAColumnOfValuesForEachCard) {
    stWish st;
    st.strCard = "<VRAMClock IsShow='1'/><Fan1RPM IsShow='1'/>";
    st.uCards = 2;
    SupportCards(2);
    headless::SetSettingsNumber((std::u16string(c_wzOption) + u"Card\\0\\Fan1 RPM").c_str(), u"IsSupport", 0);
    Write(st);
    ASSERT_TRUE(Load());
    EXPECT_EQ(RowPanel("VRAM_CLK", "TITLE", 1), nullptr);
    EXPECT_NE(RowPanel("FAN1_RPM", "TITLE"), nullptr) << "the second card has the row";
    EXPECT_EQ(RowNumber("FAN1_RPM", "VALUE", 0), nullptr);
    ASSERT_NE(RowNumber("FAN1_RPM", "VALUE", 1), nullptr);
    EXPECT_EQ(At(RowPanel("FAN1_RPM", "DATA", 1))[0], At(RowPanel("VRAM_CLK", "DATA", 1))[0])
        << "its value stays in its column";
    EXPECT_EQ(ParentOf(RowNumber("FAN1_RPM", "VALUE", 1)), RowPanel("FAN1_RPM", "DATA", 1));
    EXPECT_EQ(ParentOf(RowText("FAN1_RPM", "TITLE")), RowPanel("FAN1_RPM", "TITLE"));
}

TEST_F(FixedLayout, ADetailRowWithoutSupportLeavesNoGap) {
    stWish st;
    st.strCard = "<VRAMClock IsShow='1'/><VRAMUsageP IsShow='1'/><VRAMUsageMB IsShow='1'/>";
    SupportCards(1);
    headless::SetSettingsNumber((std::u16string(c_wzOption) + u"Card\\0\\VRAM Usage (%)").c_str(),
                                u"IsSupport", 0);
    Write(st);
    ASSERT_TRUE(Load());
    EXPECT_EQ(RowOrder(), (Words{"VRAM_CLK", "VRAM_USAGE_MB"}));
    EXPECT_EQ(Top(RowPanel("VRAM_USAGE_MB", "TITLE")), Top(RowPanel("VRAM_CLK", "TITLE")) + 15);
}

// --- the shipped groups, worked out by hand ----------------------------------------------------------------
// C, R and A stand in the file's groups, T and N as items alone; there is no I and no T without an item.

TEST_F(FixedLayout, ClassicsGroupsPutTheDetailsWhereTheyAreWorkedOut) {
    stWish st;
    st.strCard = "<GPUClock IsShow='1'/><VRAMClock IsShow='1'/><VRAMUsageP IsShow='1'/>";
    ASSERT_TRUE(Build(st));
    // The first block has three wide lines: 3 * 24 + 4 = 76. A title's margin is 8 and 6, its panel 200
    // by 15.
    EXPECT_EQ(At(RowPanel("VRAM_CLK", "TITLE")), (Place{8, 76 + 6}));
    EXPECT_EQ(At(RowPanel("VRAM_USAGE_P", "TITLE")), (Place{8, 76 + 6 + 15})) << "C: below";
    EXPECT_EQ(At(RowPanel("VRAM_CLK", "DATA")), (Place{8 + 200, 76 + 6})) << "R: the first one anchors";
    st.uCards = 2;
    ASSERT_TRUE(Build(st));
    // The second block has one line: 15 + 4 = 19.
    EXPECT_EQ(At(RowPanel("GPU_SECOND", "INFO", 1))[1], Top(RowPanel("FPS", "INFO")) + 76) << "A: from 1";
    EXPECT_EQ(At(RowPanel("VRAM_CLK", "TITLE")), (Place{8, 76 + 19 + 6}));
    EXPECT_EQ(At(RowPanel("VRAM_CLK", "DATA", 0)), (Place{8 + 200, 76 + 19 + 6})) << "A: round 0";
    EXPECT_EQ(At(RowPanel("VRAM_CLK", "DATA", 1)), (Place{8 + 200 + 78, 76 + 19 + 6})) << "A in R: beside";
}

TEST_F(FixedLayout, RV5sGroupsPutTheRowsWhereTheyAreWorkedOut) {
    stWish st;
    st.uStyle = 1;
    ASSERT_TRUE(Build(st));
    // Titles begin at 14 and 8. Those of figures are 38 high, all others 24; values stand 168 further right.
    EXPECT_EQ(At(RowPanel("FPS", "TITLE")), (Place{14, 8}));
    EXPECT_EQ(At(RowPanel("FRAME_TIME", "TITLE")), (Place{14, 8 + 38})) << "C: below";
    EXPECT_EQ(At(RowPanel("SYSTEM_TIME", "TITLE")), (Place{14, 8 + 2 * 38}));
    EXPECT_EQ(At(RowPanel("GPU_CLK", "TITLE")), (Place{14, 8 + 2 * 38 + 24})) << "A of one round";
    EXPECT_EQ(At(RowPanel("GPU_CLK", "VALUE")), (Place{14 + 168, 8 + 2 * 38 + 24}));
    EXPECT_EQ(At(RowPanel("CPU_CLK", "TITLE")), (Place{14, 8 + 2 * 38 + 2 * 24}));
    st.uCards = 2;
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(At(RowPanel("GPU_CLK", "TITLE", 1)), (Place{14, 8 + 2 * 38 + 2 * 24})) << "A in C: below";
    EXPECT_EQ(At(RowPanel("CPU_CLK", "TITLE")), (Place{14, 8 + 2 * 38 + 3 * 24}));
}

// --- order and words ---------------------------------------------------------------------------------------

TEST_F(FixedLayout, RowsTakeTheProfilesOrderAndTiesTheTables) {
    stWish st;
    st.uStyle = 1;
    st.strProgram = "<FPS IsShow='1'/><FPSMax IsShow='1'/><SystemTime IsShow='1'/><Resolution/>"
                    "<PoweredByOrvinDeck IsShow='1'/>";
    st.strCard = "<GPUClock IsShow='1'/><GPUTemperature IsShow='1'/><Fan1Duty IsShow='1'/>";
    ASSERT_TRUE(Build(st));
    const Words plain = {"FPS",      "FPS_MAX",   "SYSTEM_TIME", "GPU_CLK",
                         "GPU_TEMP", "FAN1_DUTY", "CPU_CLK",     "POWERED_BY_ORVIN_DECK"};
    EXPECT_EQ(RowOrder(), plain);
    st.strMore = "<DisplayIndex><CPUClock DisplayIndex='2'/><GPUTemp DisplayIndex='1'/><SystemTime "
                 "DisplayIndex='2'/><FanDuty DisplayIndex='0'/><VRAMClock DisplayIndex='0'/></DisplayIndex>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(RowOrder(), (Words{"FAN1_DUTY", "GPU_TEMP", "SYSTEM_TIME", "CPU_CLK", "FPS", "FPS_MAX",
                                 "GPU_CLK", "POWERED_BY_ORVIN_DECK"}));
    st.strMore = "<DisplayIndex><FPS DisplayIndex='1'/><FPS DisplayIndex='500'/><GPUClock "
                 "DisplayIndex='98'/></DisplayIndex>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(RowOrder().front(), "GPU_CLK") << "98 is an order, 500 is none";
    EXPECT_EQ(RowOrder()[1], "FPS");
}

TEST_F(FixedLayout, ClassicOrdersItsDetailsAlone) {
    stWish st;
    st.strCard = "<GPUClock IsShow='1'/><VRAMClock IsShow='1'/><Fan1RPM IsShow='1'/>";
    st.strMore = "<DisplayIndex><Fan1RPM DisplayIndex='1'/></DisplayIndex>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(RowOrder(), (Words{"FAN1_RPM", "VRAM_CLK"}));
    EXPECT_LT(Top(RowPanel("GPU_FIRST", "INFO")), Top(RowPanel("FAN1_RPM", "TITLE")));
}

TEST_F(FixedLayout, TitlesAreTheRowsNamesOrTheProfilesWords) {
    stWish st;
    st.uStyle = 1;
    st.strCard = "<GPUTemperature IsShow='1'/><Fan1Duty IsShow='1' DisplayText='Lüfter (vorn)'/>";
    st.strProgram = "<FPS IsShow='1' DisplayText='Bilder'/><SystemTime/><Resolution IsShow='1'/>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(TextOf(RowText("GPU_TEMP", "TITLE")), u"GPU Temperature");
    EXPECT_EQ(TextOf(RowText("FAN1_DUTY", "TITLE")), u"Lüfter (vorn)");
    EXPECT_EQ(TextOf(RowText("FPS", "TITLE")), u"Bilder");
    EXPECT_EQ(TextOf(RowText("RESOLUTION", "TITLE")), u"Resolution");
    EXPECT_EQ(TextOf(RowText("CPU_CLK", "TITLE")), u"CPU Clock");
}

TEST_F(FixedLayout, TheLanguageGoesAheadOfTheRowsNamesAndTheProfileAheadOfBoth) {
    headless::SetSettingsText(u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option", u"LanguageXMLFileName",
                              u"German.xml");
    for (const auto& row : g_aCardRows)
        headless::SetSettingsText(
            (std::u16string(c_wzOption) + u"Card\\Default\\" + row.wzRow).c_str(), u"LanguageXMLTagName",
            std::u16string(row.szElement, row.szElement + std::strlen(row.szElement)).c_str());
    m_folder.Write("OSD.ini", "[Info]\nUseLanguageXMLString=1\n");
    stWish st;
    st.uStyle = 1;
    st.strCard = "<GPUTemperature IsShow='1'/><Fan1Duty IsShow='1' DisplayText='Vorn'/>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(TextOf(RowText("GPU_TEMP", "TITLE")), u"GPU-Temperatur");
    EXPECT_EQ(TextOf(RowText("FAN1_DUTY", "TITLE")), u"Vorn");
    EXPECT_EQ(TextOf(RowText("CPU_CLK", "TITLE")), u"CPU Clock") << "a row without a tag";
    m_folder.Write("OSD.ini", "");
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(TextOf(RowText("GPU_TEMP", "TITLE")), u"GPU Temperature");
}

TEST_F(FixedLayout, TitlesOfSeveralCardsEndInTheirNumbers) {
    stWish st;
    st.uStyle = 1;
    st.uCards = 2;
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(TextOf(RowText("GPU_CLK", "TITLE", 0)), u"GPU Clock #0");
    EXPECT_EQ(TextOf(RowText("GPU_CLK", "TITLE", 1)), u"GPU Clock #1");
    EXPECT_EQ(TextOf(RowText("CPU_CLK", "TITLE")), u"CPU Clock");
}

TEST_F(FixedLayout, SensorRowsStandLastWithTheirOwnWords) {
    const std::u16string wstrSensor = std::u16string(c_wzOption) + u"Config\\Sensor\\PUMP_RPM";
    headless::SetSettingsText(wstrSensor.c_str(), u"Title", u"Pump");
    headless::SetSettingsText(wstrSensor.c_str(), u"Unit", u"RPM");
    Support(u"Sensor\\0\\PUMP_RPM");
    Support(u"Sensor\\2\\PUMP_RPM");
    for (const u32 uStyle : {0u, 1u}) {
        SCOPED_TRACE(uStyle);
        stWish st;
        st.uStyle = uStyle;
        st.strCard = "<VRAMClock IsShow='1'/>";
        st.strMore = "<Sensor Title='Group#2' IsShow='1'><PUMP_RPM IsShow='1'/></Sensor>";
        ASSERT_TRUE(Build(st));
        EXPECT_EQ(RowOrder().back(), "GROUP_EXTENSION_FIRST@2");
        CTextBox_Base* const pTitle = RowText("GROUP_EXTENSION_FIRST", "TITLE", 2);
        EXPECT_EQ(TextOf(pTitle), u"Pump");
        EXPECT_EQ(ParentOf(pTitle), RowPanel("GROUP_EXTENSION_FIRST", "TITLE", 2));
        EXPECT_EQ(ParentOf(RowNumber("GROUP_EXTENSION_FIRST", "VALUE", 2)),
                  RowPanel("GROUP_EXTENSION_FIRST", uStyle ? "VALUE" : "DATA", 2));
        EXPECT_EQ(TextOf(RowText("GROUP_EXTENSION_FIRST", "UNIT", 2)),
                  TextOf(RowText("FAN1_RPM", "UNIT")) == u"(none)" ? u" RPM" : u"");
    }
}

TEST_F(FixedLayout, AUnitIsWrittenAsARowOrTheExtensionShowsAndElseStandsOffItsNumber) {
    const auto Define = [](const std::u16string& wstrName, const char16_t* wzUnit) {
        const std::u16string wstrKey = std::u16string(c_wzOption) + u"Config\\Sensor\\" + wstrName;
        headless::SetSettingsText(wstrKey.c_str(), u"Unit", wzUnit);
        Support(u"Sensor\\0\\" + wstrName);
    };
    Define(u"A_LEVEL", u"dB");
    Define(u"B_TEMP", u"\u00B0C");
    stWish st;
    // The first one stands in the extension's own items.
    st.strMore = "<Sensor Title='Group#0' IsShow='1'><A_LEVEL IsShow='1'/><B_TEMP IsShow='1'/></Sensor>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(TextOf(RowText("GROUP_EXTENSION_FIRST", "UNIT")), u" dB");
    const u32 uUnit = g_fnItemBID(g_stClassicItems, eItem::Text, "GROUP_EXTENSION_FIRST", "UNIT");
    EXPECT_EQ(TextOf(g_fnFindCtrlById(g_fnMakeLB_ID(0, uUnit + 1), g_fnKind<KIND_TEXTBOX>())),
              u" \u00B0C    ");
}

TEST_F(FixedLayout, TheOnlyFurtherCardIsNumberedToo) {
    stWish st;
    st.uCards = 2;
    st.uCpus = 2;
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(TextOf(RowText("GPU_FIRST", "TITLE", 0)), u"GPU");
    EXPECT_EQ(TextOf(RowText("GPU_SECOND", "TITLE", 1)), u"GPU #1");
    EXPECT_EQ(TextOf(RowText("CPU_SECOND", "TITLE", 1)), u"CPU #1");
}

// --- RV5 ---------------------------------------------------------------------------------------------------

TEST_F(FixedLayout, RV5HasARowForEveryValueOfEveryCard) {
    stWish st;
    st.uStyle = 1;
    st.uCards = 2;
    st.uCpus = 2;
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(g_fnUpdateFPS, &g_fnUpdateFPSRV5);
    EXPECT_EQ(RowOrder(),
              (Words{"FPS", "FRAME_TIME", "SYSTEM_TIME", "GPU_CLK", "GPU_CLK@1", "CPU_CLK", "CPU_CLK@1"}));
    for (const u32 u : {0u, 1u}) {
        EXPECT_EQ(ParentOf(RowPanel("GPU_CLK", "VALUE", u)), RowPanel("GPU_CLK", "TITLE", u));
        EXPECT_EQ(ParentOf(RowNumber("GPU_CLK", "VALUE", u)), RowPanel("GPU_CLK", "VALUE", u));
        EXPECT_EQ(ParentOf(RowText("GPU_CLK", "UNIT", u)), RowPanel("GPU_CLK", "VALUE", u));
    }
}

TEST_F(FixedLayout, ARowWhoseFlagsAreAllOffTakesNoPlace) {
    stWish st;
    st.uStyle = 1;
    ASSERT_TRUE(Build(st));
    const f32 fStep = Top(RowPanel("CPU_CLK", "TITLE")) - Top(RowPanel("GPU_CLK", "TITLE"));
    st.strCard = "<GPUClock/>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(Top(RowPanel("CPU_CLK", "TITLE")), Top(RowPanel("SYSTEM_TIME", "TITLE")) + fStep);
}

TEST_F(FixedLayout, TheClockIsMeasuredAndJoined) {
    stWish st;
    st.uStyle = 1;
    ASSERT_TRUE(Build(st));
    CControl* const apParts[] = {RowNumber("SYSTEM_TIME", "VALUE1"), RowText("SYSTEM_TIME", "VALUE1"),
                                 RowNumber("SYSTEM_TIME", "VALUE2"), RowText("SYSTEM_TIME", "VALUE2"),
                                 RowNumber("SYSTEM_TIME", "VALUE3")};
    for (CControl* p : apParts) EXPECT_EQ(ParentOf(p), RowPanel("SYSTEM_TIME", "VALUE"));
    for (u32 u = 0; u + 1 < 5; ++u) {
        f32 fWidth = 0;
        apParts[u]->m_fnGetSize(&fWidth, nullptr);
        EXPECT_NEAR(At(apParts[u + 1])[0], At(apParts[u])[0] + fWidth + 1, 0.01) << u;
    }
    EXPECT_EQ(RowNumber("SYSTEM_TIME", "VALUE1")->m_iDrawCount, 2);
    EXPECT_TRUE(g_listUpdateMixed.empty());
}

TEST(TimeRow, IsMeasuredFromTheWidthOfADigit) {
    // A digit of half the size 20: fields of 20 and a spacing of 2, gaps of 7.5.
    const stTimeRow row = g_fnMeasureTimeRow(0.5f, 20, 2);
    EXPECT_FLOAT_EQ(row.fFirst, 22 + 3.75f);
    EXPECT_FLOAT_EQ(row.fSecond, 44 + 11.25f);
    EXPECT_FLOAT_EQ(row.fWidth, 66 + 15);
}

TEST_F(FixedLayout, TextAlignReplacesTheAnchorsOfItsStyleInRV5Alone) {
    stWish st;
    st.uStyle = 1;
    st.strMore = "<CustomSettings><TextAlign Title='Style#1' Anchor='9'/></CustomSettings>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(RowNumber("GPU_CLK", "VALUE")->m_iAnchorCode, 9);
    EXPECT_EQ(RowText("GPU_CLK", "TITLE")->m_iAnchorCode, 7);
    EXPECT_EQ(g_stInfoPlace.iSizeRowAlignRV5, 7) << "the row is off";
    st.uStyle = 0;
    st.strCard = "<VRAMClock IsShow='1'/>";
    ASSERT_TRUE(Build(st));
    EXPECT_EQ(RowNumber("VRAM_CLK", "VALUE")->m_iAnchorCode, 7);
}

// --- the block as a whole ----------------------------------------------------------------------------------

TEST_F(FixedLayout, TheBlockStandsWhereTheProfileSaysWithItsGround) {
    for (const u32 uStyle : {0u, 1u})
        for (i32 iCode = 1; iCode <= 9; ++iCode) {
            SCOPED_TRACE(std::to_string(uStyle) + " " + std::to_string(iCode));
            stWish st;
            st.uStyle = uStyle;
            st.strInfo = "Anchor='" + std::to_string(iCode) +
                         "' PositionX='30' PositionY='20' PanelType='1' PanelOpacity='50'";
            ASSERT_TRUE(Build(st));
            CPanel_Base* const pGround = g_ppStylePanel[STYLE_PANEL_INFO];
            ASSERT_NE(pGround, nullptr);
            f32 fW = 0, fH = 0;
            pGround->m_fnGetSize(&fW, &fH);
            const Place at = At(pGround);
            const f32 afX[] = {30, (1920 - fW) / 2 + 30, 1920 - fW - 30};
            const f32 afY[] = {20, (1080 - fH) / 2 + (iCode == 5 ? -20 : 20), 1080 - fH - 20};
            EXPECT_EQ(at, (Place{afX[(iCode - 1) % 3], afY[(iCode - 1) / 3]}));
            EXPECT_TRUE(g_pOSDManager->m_fnIsAttached(pGround, g_uLayerColor));
            // Rows keep their places in the block.
            const Place row = At(uStyle ? RowPanel("FPS", "TITLE") : RowPanel("FPS", "INFO"));
            EXPECT_NEAR(row[0] - at[0], uStyle ? 14 : 8, 0.01);
            EXPECT_NEAR(row[1] - at[1], uStyle ? 8 : 6, 0.01);
            const Place place = {static_cast<f32>(g_stInfoPlace.iX), static_cast<f32>(g_stInfoPlace.iY)};
            EXPECT_EQ(place, (Place{30, 20}));
        }
}

TEST_F(FixedLayout, RowsBelowThePictureGoOnBesideTheOthers) {
    std::string strAll;
    for (const auto& row : g_aCardRows) strAll += std::string("<") + row.szElement + " IsShow='1'/>";
    for (const u32 uStyle : {0u, 1u})
        for (const i32 iScale : {50, 100, 150}) {
            SCOPED_TRACE(std::to_string(uStyle) + " " + std::to_string(iScale));
            stWish st;
            st.uStyle = uStyle;
            st.strCard = strAll;
            st.iScale = iScale;
            st.uCards = 4;
            st.strInfo = "PositionX='10' PositionY='10'";
            ASSERT_TRUE(Build(st));
            f32 fW = 0, fH = 0;
            g_ppStylePanel[STYLE_PANEL_INFO]->m_fnGetSize(&fW, &fH);
            EXPECT_LE(fH, 1080 - 10);
            const u32 uRows = uStyle ? 3 + 39 * 4 + 1 : 36;
            EXPECT_EQ(RowOrder().size(), uRows);
        }
}

TEST_F(FixedLayout, StatusPanelsWaitUnseenAndGroundsNeedAType) {
    stWish st;
    ASSERT_TRUE(Build(st));
    for (const eStylePanel ePanel : {STYLE_PANEL_STATUS1, STYLE_PANEL_STATUS2, STYLE_PANEL_STATUS3}) {
        CPanel_Base* const p = g_ppStylePanel[ePanel];
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(At(p), (Place{0, 0}));
        EXPECT_EQ(p->m_fPanelW, 32);
        EXPECT_EQ(p->m_afColor[3], 0);
        EXPECT_FALSE(g_pOSDManager->m_fnIsAttached(p, g_uLayerColor));
    }
    EXPECT_FALSE(g_pOSDManager->m_fnIsAttached(g_ppStylePanel[STYLE_PANEL_INFO], g_uLayerColor));
    EXPECT_EQ(g_ppStylePanel[STYLE_PANEL_MEMO], nullptr);
}

TEST_F(FixedLayout, MemoAndWatermarkStandOnGroundsOfTheirOwn) {
    m_folder.Write("Profiles/Mine/memo.txt", "Hello");
    stWish st;
    st.strSettings =
        "<Memo IsShow='1' Filename='memo.txt' Anchor='9' PositionX='40' PositionY='50' "
        "FrameSizeW='300' PanelType='1'/><Watermark IsShow='1' Text='Mark' Anchor='3' "
        "PositionX='5' PositionY='6' FontScale='2' PanelType='2'/><SystemInfo IsShow='1' Text='PC'/>";
    ASSERT_TRUE(Build(st));
    CTextBox_Base *const pMemo = RowText("MEMO0", ""), *const pMark = RowText("WATERMARK", "");
    ASSERT_TRUE(pMemo && pMark && RowText("SYSTEMINFO", ""));
    EXPECT_EQ(TextOf(pMemo), u"Hello");
    EXPECT_FLOAT_EQ(pMark->m_fTextSize, 21.6f) << "percent of the canvas height";
    EXPECT_EQ(pMemo->m_fSizeW, 300);
    for (const auto& [pText, ePanel] : {std::pair{pMemo, STYLE_PANEL_MEMO}, {pMark, STYLE_PANEL_WATERMARK}}) {
        CPanel_Base* const pGround = g_ppStylePanel[ePanel];
        ASSERT_NE(pGround, nullptr);
        EXPECT_NEAR(At(pGround)[0], At(pText)[0], 1);
        EXPECT_NEAR(pGround->m_fPanelW, pText->m_fSizeW, 1);
    }
    EXPECT_EQ(g_ppStylePanel[STYLE_PANEL_SYSTEM_INFO], nullptr) << "no type, no ground";
    EXPECT_NEAR(At(pMark)[0], 1920 - pMark->m_fSizeW - 5, 0.01);
}

TEST_F(FixedLayout, InfoSwitchedOffLeavesItsRowsOff) {
    stWish st;
    st.strInfo = "Anchor='1'";
    SupportCards(1);
    Write(st);
    std::string str = m_folder.Read("Profiles/Mine/OSD.xml");
    str.replace(str.find("<Info IsShow='1'"), 16, "<Info IsShow='0'");
    m_folder.Write("Profiles/Mine/OSD.xml", str);
    ASSERT_TRUE(Load());
    for (u32 u = 0; u < g_uPanelEntries; ++u) EXPECT_EQ(g_ppPanel[u], nullptr);
}

// --- broken files ------------------------------------------------------------------------------------------

TEST_F(FixedLayout, WithoutItsPartsTheReferenceMakesNoLayout) {
    SupportCards(1);
    Write({});
    const std::string strWhole = m_folder.Read("OSD_Ref.xml");
    for (const std::string& strBroken : {std::string(), strWhole.substr(0, strWhole.size() / 2),
                                         std::string("<OSD/>"), std::string("<OSD><ClassicLayout/></OSD>"),
                                         std::string("<OSD><ClassicLayout><Group/></ClassicLayout></OSD>")}) {
        m_folder.Write("OSD_Ref.xml", strBroken);
        EXPECT_FALSE(Load()) << strBroken.size();
    }
    m_folder.Remove("OSD_Ref.xml");
    EXPECT_FALSE(Load());
    m_folder.Write("OSD_Ref.xml", strWhole);
    EXPECT_TRUE(Load());
}

TEST_F(FixedLayout, AnEmptyReferenceIsALayoutWithoutControls) {
    SupportCards(1);
    Write({});
    m_folder.Write("OSD_Ref.xml", "<OSD><ClassicLayout><Group/><Template/></ClassicLayout></OSD>");
    ASSERT_TRUE(Load());
    for (u32 u = 0; u < g_uPanelEntries; ++u) EXPECT_EQ(g_ppPanel[u], nullptr);
}

TEST_F(FixedLayout, AStyleThatThereIsNotIsClassic) {
    SupportCards(1);
    Write({});
    std::string str = m_folder.Read("Profiles/Mine/OSD.xml");
    str.replace(str.find("LayoutStyle='0'"), 15, "LayoutStyle='7'");
    m_folder.Write("Profiles/Mine/OSD.xml", str);
    ASSERT_TRUE(Load());
    EXPECT_NE(g_fnFindCtrlById(g_fnMakeLB_ID(0, 3), g_fnKind<KIND_PANEL>()), nullptr);
}

TEST_F(FixedLayout, AProfileWithoutADemandedRowFailsWithTheItemsStep) {
    stWish st;
    st.strProgram = "<FPS IsShow='1'/><SystemTime/>";
    s_aLines.clear();
    EXPECT_FALSE(Build(st));
    EXPECT_EQ(Logged("g_fnCreate_Tavo_ResourceByClassicStyle - step 2\n"), 1);
}

TEST_F(FixedLayout, FontsThatCannotBeMadeFailWithTheirStep) {
    CGivenFont::s_bRefuse = true;
    s_aLines.clear();
    stWish st;
    st.uStyle = 1;
    EXPECT_FALSE(Build(st));
    EXPECT_EQ(Logged("g_fnCreate_Tavo_ResourceByRV5Style - step 1\n"), 1);
}

} // namespace
