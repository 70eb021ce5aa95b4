// List builders and FPS updaters of the styles whose boxes have fixed ids.
#include "base/layout_style.h"
#include "config/fixed/info_place.h"
#include "config/settings/settings.h"
#include "draw/canvas.h"
#include "frame/update/update_flags.h"
#include "tests/unit/frame/update_fixture.h"

#include "platform/process.h"

#include <limits>

namespace {

class UpdateFixed : public UpdateTest {
  protected:
    static u64 Id(u32 uInstance, u32 uBID) { return g_fnMakeLB_ID(uInstance, uBID); }
    void SetUp() override {
        UpdateTest::SetUp();
        g_uLayoutStyle = 0;
    }
    static void Rebuild() {
        g_fnResetUpdate();
        Frame(1);
    }
    /// The record of a number box, or null.
    static const CUpdateDataFuncN* RecordOf(const std::list<CUpdateDataFuncN>& list, u64 u64LB_ID) {
        const auto it = std::find_if(list.begin(), list.end(),
                                     [u64LB_ID](const auto& st) { return st.m_uNumBoxBID == u64LB_ID; });
        return it == list.end() ? nullptr : &*it;
    }
    /// What the box of a style shows after a rebuild, when only that name is published.
    std::string ShownBy(u32 uStyle, u32 uInstance, u32 uBID, const std::string& szName, i32 iValue) {
        g_uLayoutStyle = uStyle;
        CNumBox_Base*& p = m_mapBoxes[Id(uInstance, uBID)];
        if (!p) p = Number(Id(uInstance, uBID));
        Publish({{szName, iValue}});
        Rebuild();
        return Shown(p);
    }
    std::map<u64, CNumBox_Base*> m_mapBoxes;
};

struct stRowCase {
    const char* szName;
    u32 uClassic, uRV5;
};
/// Detail rows and pins of a card.
constexpr stRowCase g_aCardRows[] = {
    {"VRAM_CLK", 10, 22},     {"VRAM_USAGE_P", 11, 23},   {"VRAM_USAGE_MB", 12, 24},
    {"FAN1_DUTY", 13, 25},    {"FAN1_RPM", 14, 26},       {"FAN2_DUTY", 15, 27},
    {"FAN2_RPM", 16, 28},     {"FAN3_DUTY", 17, 29},      {"FAN3_RPM", 18, 30},
    {"FAN4_DUTY", 19, 31},    {"FAN4_RPM", 20, 32},       {"EXT_FAN1_DUTY", 21, 33},
    {"EXT_FAN1_RPM", 22, 34}, {"EXT_FAN2_DUTY", 23, 35},  {"EXT_FAN2_RPM", 24, 36},
    {"GPU_VOLTAGE", 25, 37},  {"VRAM_VOLTAGE", 26, 38},   {"VDDCI_VOLTAGE", 27, 39},
    {"VOLTAGE_0_95", 28, 40}, {"VOLTAGE_3_3", 29, 41},    {"VOLTAGE_1_8", 30, 42},
    {"LOAD_LINE", 31, 43},    {"POWER_TARGET", 32, 44},   {"POWER_PIN_1", 33, 45},
    {"POWER_PIN_6", 38, 50},  {"POWER_MB_PIN_1", 39, 51}, {"POWER_MB_PIN_6", 44, 56},
};

TEST_F(UpdateFixed, EveryCardRowHasItsBoxInBothStylesAtEveryPosition) {
    g_stDisplay.uCards = 2;
    g_iCardOfDisplay[0] = 1;
    g_iCardOfDisplay[1] = 0;
    i32 iValue = 100;
    const auto Expect = [&](u32 uStyle, u32 uInstance, u32 uBID, const std::string& szName) {
        ++iValue;
        EXPECT_EQ(ShownBy(uStyle, uInstance, uBID, szName, iValue), std::to_string(iValue)) << szName;
    };
    for (const stRowCase& row : g_aCardRows) {
        const std::string szName = row.szName;
        Expect(0, 0, row.uClassic, szName + "#1");
        Expect(0, 1, row.uClassic, szName + "#0");
        Expect(1, 0, row.uRV5, szName + "#1");
        Expect(1, 1, row.uRV5, szName + "#0");
    }
}

TEST_F(UpdateFixed, ClassicShowsTheFirstCardAndTheOthersInBlocksOfTheirOwn) {
    g_stDisplay.uCards = 3;
    g_iCardOfDisplay[1] = 1;
    g_iCardOfDisplay[2] = 2;
    EXPECT_EQ(ShownBy(0, 0, 7, "GPU_CLK#0", 1), "1");
    EXPECT_EQ(ShownBy(0, 0, 8, "GPU_TEMP#0", 2), "2");
    EXPECT_EQ(ShownBy(0, 0, 9, "GPU_USAGE#0", 3), "3");
    EXPECT_EQ(ShownBy(0, 1, 1084, "GPU_CLK#1", 4), "4");
    EXPECT_EQ(ShownBy(0, 2, 1085, "GPU_TEMP#2", 5), "5");
    EXPECT_EQ(ShownBy(0, 2, 1086, "GPU_USAGE#2", 6), "6");
    EXPECT_EQ(ShownBy(0, 0, 1084, "GPU_CLK#0", 7), "") << "the second block has no first instance";
    EXPECT_EQ(ShownBy(0, 1, 7, "GPU_CLK#1", 8), "");
}

TEST_F(UpdateFixed, ClassicShowsTheFirstCpuAndTheOthersInBlocksOfTheirOwn) {
    g_stDisplay.uCpus = 2;
    EXPECT_EQ(ShownBy(0, 0, 1081, "CPU_CLK#0", 1), "1");
    EXPECT_EQ(ShownBy(0, 0, 1082, "CPU_TEMP#0", 2), "2");
    EXPECT_EQ(ShownBy(0, 0, 1083, "CPU_USAGE#0", 3), "3");
    EXPECT_EQ(ShownBy(0, 1, 1087, "CPU_CLK#1", 4), "4");
    EXPECT_EQ(ShownBy(0, 1, 1089, "CPU_USAGE#1", 5), "5");
}

TEST_F(UpdateFixed, RV5ShowsCardsAndCpusByInstance) {
    g_stDisplay.uCards = g_stDisplay.uCpus = 2;
    g_iCardOfDisplay[1] = 4;
    EXPECT_EQ(ShownBy(1, 0, 19, "GPU_CLK#0", 1), "1");
    EXPECT_EQ(ShownBy(1, 1, 20, "GPU_TEMP#4", 2), "2");
    EXPECT_EQ(ShownBy(1, 1, 21, "GPU_USAGE#4", 3), "3");
    EXPECT_EQ(ShownBy(1, 0, 1081, "CPU_CLK#0", 4), "4");
    EXPECT_EQ(ShownBy(1, 1, 1082, "CPU_TEMP#1", 5), "5");
    EXPECT_EQ(ShownBy(1, 1, 1083, "CPU_USAGE#1", 6), "6");
}

TEST_F(UpdateFixed, PinsAnswerToTheirShortNamesWhereTheLongOnesAreUnknown) {
    EXPECT_EQ(ShownBy(0, 0, 34, "PIN_2#0", 12), "12");
    EXPECT_EQ(ShownBy(1, 0, 53, "MB_PIN_3#0", 13), "13");
    Publish({{"PIN_2#0", 1}, {"POWER_PIN_2#0", 2}});
    g_uLayoutStyle = 0;
    Rebuild();
    EXPECT_EQ(Shown(m_mapBoxes[Id(0, 34)]), "2") << "the long name goes first";
}

TEST_F(UpdateFixed, PositionsBeyondTheCountOrWithoutACardAreNotBound) {
    g_stDisplay.uCards = 2;
    g_iCardOfDisplay[1] = 256;
    EXPECT_EQ(ShownBy(0, 1, 10, "VRAM_CLK#256", 5), "");
    g_iCardOfDisplay[1] = 1;
    EXPECT_EQ(ShownBy(0, 1, 10, "VRAM_CLK#1", 5), "5");
    g_stDisplay.uCards = 1;
    EXPECT_EQ(ShownBy(0, 1, 10, "VRAM_CLK#1", 6), "5") << "left as it was";
    g_stDisplay.uCards = 4000000000;
    EXPECT_EQ(ShownBy(0, 1, 10, "VRAM_CLK#1", 7), "7");
}

TEST_F(UpdateFixed, SensorRowsStandBehindTheFirstIdOfTheExtension) {
    g_stDisplay.mapFormat["PUMP_RPM"] = {1, 10};
    g_stDisplay.listSensorRows = {{"PUMP_RPM", 0, 0}, {"PUMP_RPM", 3, 2}};
    EXPECT_EQ(ShownBy(0, 0, 57, "PUMP_RPM#0", 25), "2.5");
    EXPECT_EQ(ShownBy(0, 2, 60, "PUMP_RPM#2", 35), "3.5");
    EXPECT_EQ(ShownBy(1, 2, 60, "PUMP_RPM#2", 45), "4.5");
}

TEST_F(UpdateFixed, ThePowerDetectorPicksTheStateOfBothFlipBoxesOfItsCard) {
    g_stDisplay.uCards = 2;
    g_iCardOfDisplay[0] = 1;
    CFlipBox_Base* const apFlips[] = {Flip(Id(0, 0)), Flip(Id(0, 1)), Flip(Id(0, 2)), Flip(Id(1, 0)),
                                      Flip(Id(1, 1))};
    const auto States = [&] {
        std::vector<u32> states;
        for (CFlipBox_Base* p : apFlips) states.push_back(p->m_fnGetCurrentState());
        return states;
    };
    for (const u32 uStyle : {0u, 1u}) {
        g_uLayoutStyle = uStyle;
        Publish({{"POWER_DETECTOR#0", 1}, {"POWER_DETECTOR#1", 3}});
        Rebuild();
        EXPECT_EQ(States(), (std::vector<u32>{3, 3, 0, 1, 1})) << "the third has no data";
        Change({2, 0});
        EXPECT_EQ(States(), (std::vector<u32>{3, 3, 0, 1, 1})) << "no interval has passed";
        Frame(500);
        EXPECT_EQ(States(), (std::vector<u32>{0, 0, 0, 2, 2}));
        EXPECT_EQ(apFlips[3]->m_fnGetTextWidth(), 30);
    }
}

TEST_F(UpdateFixed, AValueThatIsNoStateLeavesTheFlipBoxAsItWas) {
    CFlipBox_Base* const pFlip = Flip(Id(0, 1));
    Publish({{"POWER_DETECTOR#0", 2}});
    Rebuild();
    for (const i32 iValue : {4, 1000000, -1, std::numeric_limits<i32>::min()}) {
        Change({iValue});
        Frame(500);
        EXPECT_EQ(pFlip->m_fnGetCurrentState(), 2u) << iValue;
    }
}

TEST_F(UpdateFixed, AFlipBoxWithoutAValueShowsItsFirstState) {
    CFlipBox_Base* const pFlip = Flip(Id(0, 1));
    Publish({{"POWER_DETECTOR#0", 2}});
    Rebuild();
    Publish({{"GPU_CLK#0", 3}}); // the value vanishes
    Rebuild();
    EXPECT_EQ(pFlip->m_fnGetCurrentState(), 0u);
    Publish({{"GPU_CLK#0", 3}, {"POWER_DETECTOR#0", 1}}); // it comes back at another place
    Rebuild();
    EXPECT_EQ(pFlip->m_fnGetCurrentState(), 1u);
}

TEST_F(UpdateFixed, ACardThatIsUnpluggedEmptiesItsRowsAndComesBack) {
    g_stDisplay.uCards = 2;
    g_iCardOfDisplay[1] = 1;
    CNumBox_Base* const pClock = Number(Id(1, 1084));
    CNumBox_Base* const pFan = Number(Id(1, 14));
    CFlipBox_Base* const pFlip = Flip(Id(1, 0));
    const std::map<std::string, i32> both = {
        {"FAN1_RPM#1", 900}, {"GPU_CLK#0", 1}, {"GPU_CLK#1", 1500}, {"POWER_DETECTOR#1", 2}};
    Publish(both);
    Rebuild();
    EXPECT_EQ(Shown(pClock), "1500");
    EXPECT_EQ(Shown(pFan), "900");
    Publish({{"GPU_CLK#0", 1}});
    Rebuild();
    EXPECT_EQ(Shown(pClock), "");
    EXPECT_EQ(Shown(pFan), "");
    EXPECT_EQ(pFlip->m_fnGetCurrentState(), 0u);
    Publish(both);
    Rebuild();
    EXPECT_EQ(Shown(pClock), "1500");
    EXPECT_EQ(Shown(pFan), "900");
    EXPECT_EQ(pFlip->m_fnGetCurrentState(), 2u);
}

TEST_F(UpdateFixed, ABankFlipWithOtherOffsetsIsReadAfterTheNextBuildOnly) {
    CNumBox_Base* const pClock = Number(Id(0, 7));
    CFlipBox_Base* const pFlip = Flip(Id(0, 1));
    Publish({{"GPU_CLK#0", 11}, {"POWER_DETECTOR#0", 1}});
    Rebuild();
    Publish({{"CPU_CLK#0", 3}, {"GPU_CLK#0", 22}, {"POWER_DETECTOR#0", 2}});
    Frame(500);
    EXPECT_EQ(Shown(pClock), "11") << "the pointers of the old bank";
    EXPECT_EQ(pFlip->m_fnGetCurrentState(), 1u);
    Rebuild();
    EXPECT_EQ(Shown(pClock), "22");
    EXPECT_EQ(pFlip->m_fnGetCurrentState(), 2u);
}

TEST_F(UpdateFixed, FlipBoxesAreNoRecordsThatAnUpdateCounts) {
    Flip(Id(0, 0));
    Publish({{"POWER_DETECTOR#0", 1}});
    Rebuild();
    EXPECT_EQ(g_listUpdateData_F.size(), 1u);
    EXPECT_EQ(g_uUpdateRecordCount, 0u);
    g_fnClearUpdateLists();
    EXPECT_TRUE(g_listUpdateData_F.empty());
}

TEST_F(UpdateFixed, SensorRowsOutOfRangeAreDropped) {
    g_stDisplay.mapFormat["PUMP_RPM"] = {};
    g_stDisplay.listSensorRows = {{"PUMP_RPM", 1024, 0}, {"PUMP_RPM", 0, 64}};
    EXPECT_EQ(ShownBy(0, 0, 57 + 1024, "PUMP_RPM#0", 25), "");
    EXPECT_EQ(ShownBy(0, 64, 57, "PUMP_RPM#64", 25), "");
    g_stDisplay.listSensorRows = {{"PUMP_RPM", 1023, 63}};
    EXPECT_EQ(ShownBy(1, 63, 57 + 1023, "PUMP_RPM#63", 26), "26");
}

TEST_F(UpdateFixed, AnUnknownSensorIsEmptiedWithAWord) {
    g_stDisplay.listSensorRows = {{"PUMP_RPM", 0, 5}};
    EXPECT_EQ(ShownBy(0, 5, 57, "PUMP_RPM#5", 25), "");
    EXPECT_TRUE(Logged("item \"PUMP_RPM\" szDataFullName: \"PUMP_RPM#5\" missing"));
    EXPECT_TRUE(g_listUpdateData_N.empty());
}

TEST_F(UpdateFixed, ASensorEntryOfARowsNameGivesItsFormat) {
    g_stDisplay.mapFormat["GPU_VOLTAGE"] = {2, 1000};
    EXPECT_EQ(ShownBy(0, 0, 25, "GPU_VOLTAGE#0", 1250), "1.25");
}

TEST_F(UpdateFixed, ARowWithUnitAndPanelIsAlignedAnyOtherIsNot) {
    CPanel_Base* pPanel = Panel(Id(0, 1082));
    CTextBox_Base* pUnit = Text(Id(0, 1100));
    CNumBox_Base* pRow = Number(Id(0, 10));
    CNumBox_Base* pFirst = Number(Id(0, 7));
    Hang(pPanel, {pRow, pUnit});
    Publish({{"GPU_CLK#0", 1}, {"VRAM_CLK#0", 150}});
    Rebuild();
    const CUpdateDataFuncN* pRecord = RecordOf(g_listUpdateData_N, Id(0, 10));
    ASSERT_TRUE(pRecord);
    EXPECT_EQ(pRecord->m_uPanelBID, Id(0, 1082));
    EXPECT_EQ(pRecord->m_uTextBoxBID, Id(0, 1100));
    EXPECT_EQ(pRecord->m_fnRow, &g_fnUpdateNumRow);
    EXPECT_EQ(pRecord->m_fnSimple, nullptr);
    EXPECT_FLOAT_EQ(Left(pRow), 74.5f) << "30 + 1 + 20 in the middle of 200";
    pRecord = RecordOf(g_listUpdateData_N, Id(0, 7));
    ASSERT_TRUE(pRecord);
    EXPECT_EQ(pRecord->m_fnSimple, &g_fnUpdateNumSimple);
    EXPECT_EQ(pRecord->m_uPanelBID, ~u64{0});
    EXPECT_EQ(Shown(pFirst), "1");
}

TEST_F(UpdateFixed, ARowWithoutItsUnitIsOfTheSimpleForm) {
    Panel(Id(0, 1082));
    Number(Id(0, 10));
    Publish({{"VRAM_CLK#0", 150}});
    Rebuild();
    const CUpdateDataFuncN* pRecord = RecordOf(g_listUpdateData_N, Id(0, 10));
    ASSERT_TRUE(pRecord);
    EXPECT_EQ(pRecord->m_fnSimple, &g_fnUpdateNumSimple);
    EXPECT_EQ(pRecord->m_fnRow, nullptr);
}

struct stRowParts {
    u32 uStyle, uInstance, uNumBox, uTextBox, uPanel;
    const char* szName;
};
constexpr stRowParts g_aRowParts[] = {
    {0, 0, 32, 1122, 1104, "POWER_TARGET#0"},   {0, 0, 33, 1123, 1105, "POWER_PIN_1#0"},
    {0, 0, 44, 1134, 1116, "POWER_MB_PIN_6#0"}, {0, 0, 57, 1142, 1130, "PUMP#0"},
    {1, 0, 19, 1105, 1099, "GPU_CLK#0"},        {1, 0, 21, 1107, 1101, "GPU_USAGE#0"},
    {1, 0, 22, 1108, 1102, "VRAM_CLK#0"},       {1, 0, 43, 1129, 1123, "LOAD_LINE#0"},
    {1, 0, 44, 1142, 1124, "POWER_TARGET#0"},   {1, 0, 45, 1130, 1125, "POWER_PIN_1#0"},
    {1, 0, 56, 1141, 1136, "POWER_MB_PIN_6#0"}, {1, 0, 57, 1143, 1138, "PUMP#0"},
    {1, 0, 1081, 2167, 2162, "CPU_CLK#0"},      {1, 0, 1083, 2169, 2164, "CPU_USAGE#0"},
};

TEST_F(UpdateFixed, UnitsAndPanelsOfTheRowsStandInBothStyles) {
    g_stDisplay.mapFormat["PUMP"] = {};
    g_stDisplay.listSensorRows = {{"PUMP", 0, 0}};
    for (const stRowParts& row : g_aRowParts) {
        g_fnClearControlIds();
        Number(Id(row.uInstance, row.uNumBox));
        Text(Id(row.uInstance, row.uTextBox));
        Panel(Id(row.uInstance, row.uPanel));
        Publish({{row.szName, 1}});
        g_uLayoutStyle = row.uStyle;
        g_fnResetUpdate();
        const CUpdateDataFuncN* p = RecordOf(g_listUpdateData_N, Id(row.uInstance, row.uNumBox));
        ASSERT_TRUE(p) << row.szName;
        EXPECT_EQ(p->m_fnRow, &g_fnUpdateNumRow) << row.szName;
        EXPECT_NE(p->m_iTextBox, -1) << row.szName;
        EXPECT_NE(p->m_iPanel, -1) << row.szName;
        // The manager keeps the controls; the next case takes their places.
        delete g_ppNumBox[0];
        delete g_ppTextBox[0];
        m_pManager->m_fnRemoveSubtree(g_ppPanel[0]);
        delete g_ppPanel[0];
        g_ppNumBox[0] = nullptr;
        g_ppTextBox[0] = nullptr;
        g_ppPanel[0] = nullptr;
    }
}

TEST_F(UpdateFixed, FiguresOfTheProcessGoToTheFPSListInBothStyles) {
    const std::pair<const char*, const void*> aFigures[] = {
        {"FPS_AVG", &g_uFPS_Avg},   {"FPS_MAX", &g_uFPS_Max}, {"FPS_MIN", &g_uFPS_Min},
        {"FPS_50P", &g_uFPS_50P},   {"FPS_1P", &g_uFPS_1P},   {"FPS_01P", &g_uFPS_01P},
        {"FRAME_CNT", &g_uFrameCnt}};
    for (u32 uStyle = 0; uStyle < 2; ++uStyle) {
        const u32 uFirst = uStyle == 0 ? 45 : 1;
        for (u32 u = 0; u < 7; ++u)
            if (!m_mapBoxes[uFirst + u]) m_mapBoxes[uFirst + u] = Number(uFirst + u);
        g_uLayoutStyle = uStyle;
        g_fnResetUpdate();
        ASSERT_EQ(g_listUpdateFPS_N.size(), 7u) << uStyle;
        u32 u = 0;
        for (const CUpdateDataFuncN& record : g_listUpdateFPS_N) {
            EXPECT_EQ(record.m_uNumBoxBID, uFirst + u);
            EXPECT_EQ(record.m_pData, aFigures[u].second) << aFigures[u].first;
            ++u;
        }
        EXPECT_EQ(g_uUpdateRecordCount, 0u);
    }
}

TEST_F(UpdateFixed, ClassicShowsFPSAndFrameTimeAndAlignsTheirRows) {
    CPanel_Base* apPanels[2];
    CNumBox_Base* apNumbers[2];
    CTextBox_Base* apUnits[2];
    for (u32 u = 0; u < 2; ++u) {
        apPanels[u] = Panel(u);
        apNumbers[u] = Number(u);
        apUnits[u] = Text(u);
        Hang(apPanels[u], {apNumbers[u], apUnits[u]});
    }
    g_fnBuildUpdateClassic();
    EXPECT_EQ(g_fnUpdateFPS, &g_fnUpdateFPSClassic);
    g_uFPS = 144;
    g_fFrameTimeMs = 6.94f;
    g_bUpdateFPS[0] = 1;
    Frame(1);
    EXPECT_EQ(Shown(apNumbers[0]), "144");
    EXPECT_EQ(Shown(apNumbers[1]), "6.9");
    EXPECT_FLOAT_EQ(Left(apNumbers[0]), 0);
    EXPECT_FLOAT_EQ(Left(apUnits[0]), 36) << "three digits and a gap of six units";
    EXPECT_FLOAT_EQ(Left(apUnits[1]), 36);
    g_uFPS = 60;
    g_bUpdateFPS[0] = 1;
    Frame(1);
    EXPECT_FLOAT_EQ(Left(apUnits[0]), 26);
}

TEST_F(UpdateFixed, RV5ShowsTheTwoWithoutAligning) {
    CPanel_Base* pPanel = Panel(0);
    CNumBox_Base* pFPS = Number(0);
    CNumBox_Base* pTime = Number(8);
    CTextBox_Base* pText = Text(0);
    Hang(pPanel, {pFPS, pText});
    pText->m_fnSetAnchor(7, 3, 0);
    g_uLayoutStyle = 1;
    g_fnBuildUpdateRV5();
    EXPECT_EQ(g_fnUpdateFPS, &g_fnUpdateFPSRV5);
    g_uFPS = 60;
    g_fFrameTimeMs = 16.66f;
    g_bUpdateFPS[0] = 1;
    Frame(1);
    EXPECT_EQ(Shown(pFPS), "60");
    EXPECT_EQ(Shown(pTime), "16.6");
    EXPECT_FLOAT_EQ(Left(pText), 3);
}

TEST_F(UpdateFixed, DebugRowsAppearWithDebugMode) {
    g_stInfoPlace.iAnchor = 9;
    g_stInfoPlace.iX = 24;
    g_stInfoPlace.iY = -8;
    CNumBox_Base* apClassic[5];
    CNumBox_Base* apRV5[5];
    for (u32 u = 0; u < 5; ++u) {
        apClassic[u] = Number(52 + u);
        apRV5[u] = Number(12 + u);
        Hang(Panel(1125 + u), {apClassic[u]});
    }
    const std::string aszValues[5] = {std::to_string(platform::CurrentProcessId()),
                                      std::to_string(platform::CurrentThreadId()), "9", "24", "-8"};
    for (u32 uStyle = 0; uStyle < 2; ++uStyle) {
        g_uLayoutStyle = uStyle;
        CNumBox_Base** ppBoxes = uStyle == 0 ? apClassic : apRV5;
        g_stSettings.bDebugMode = false;
        Rebuild();
        for (u32 u = 0; u < 5; ++u) EXPECT_EQ(Shown(ppBoxes[u]), "");
        g_stSettings.bDebugMode = true;
        Rebuild();
        for (u32 u = 0; u < 5; ++u) EXPECT_EQ(Shown(ppBoxes[u]), aszValues[u]);
    }
    EXPECT_FLOAT_EQ(Left(apClassic[2]), 95) << "one digit alone in the middle of 200";
    EXPECT_FLOAT_EQ(Left(apClassic[4]), 90);
    g_stInfoPlace.iAnchor = 1;
    g_stInfoPlace.iX = g_stInfoPlace.iY = 0;
}

TEST_F(UpdateFixed, ClassicShowsTheClientSizeAtEachDataWalk) {
    CPanel_Base* pPanel = Panel(1078);
    CNumBox_Base* pWidth = Number(5);
    CNumBox_Base* pHeight = Number(6);
    CTextBox_Base* pTimes = Text(1085, 6);
    Hang(pPanel, {pWidth, pTimes, pHeight});
    g_fnBuildUpdateClassic();
    Frame(499);
    EXPECT_EQ(Shown(pWidth), "");
    Frame(1);
    EXPECT_EQ(Shown(pWidth) + "x" + Shown(pHeight), "1280x720");
    EXPECT_FLOAT_EQ(Left(pWidth), 0);
    EXPECT_FLOAT_EQ(Left(pTimes), 41);
    EXPECT_FLOAT_EQ(Left(pHeight), 48);
    g_uWidth = 640;
    g_uHeight = 480;
    Frame(500);
    EXPECT_EQ(Shown(pWidth) + "x" + Shown(pHeight), "640x480");
    EXPECT_FLOAT_EQ(Left(pTimes), 31);
}

TEST_F(UpdateFixed, RV5AlignsTheClientSizeByItsSetting) {
    CPanel_Base* pPanel = Panel(1098);
    CNumBox_Base* pWidth = Number(17);
    CNumBox_Base* pHeight = Number(18);
    CTextBox_Base* pTimes = Text(1104, 6);
    Hang(pPanel, {pWidth, pTimes, pHeight});
    g_uLayoutStyle = 1;
    g_stInfoPlace.iSizeRowAlignRV5 = 8;
    g_fnBuildUpdateRV5();
    Frame(500);
    EXPECT_EQ(Shown(pWidth) + "x" + Shown(pHeight), "1280x720");
    // 40 1 6 1 30 is 78 wide.
    EXPECT_FLOAT_EQ(Left(pWidth), 61);
    EXPECT_FLOAT_EQ(Left(pHeight), 109);
    g_stInfoPlace.iSizeRowAlignRV5 = 7;
}

TEST_F(UpdateFixed, WithoutItsFirstBoxTheClientSizeIsNotShown) {
    CNumBox_Base* pHeight = Number(6);
    g_fnBuildUpdateClassic();
    Frame(500);
    EXPECT_EQ(Shown(pHeight), "");
}

TEST_F(UpdateFixed, TheClockBoxesAreThoseOfTheStyle) {
    CNumBox_Base* pClassicHour = Number(2);
    CNumBox_Base* pRV5Second = Number(11);
    platform::headless::SetLocalTime({2026, 1, 1, 8, 30, 7});
    g_fnBuildUpdateClassic();
    Frame(1'000);
    EXPECT_EQ(Shown(pClassicHour), "08");
    g_uLayoutStyle = 1;
    g_fnBuildUpdateRV5();
    Frame(1'000);
    EXPECT_EQ(Shown(pRV5Second), "07");
}

TEST_F(UpdateFixed, ABoxWithoutDataIsEmptiedAtTheBuildAndStaysSo) {
    CNumBox_Base* p = Number(Id(0, 10));
    p->m_fnSetInt(77, 0);
    Publish({});
    Rebuild();
    EXPECT_EQ(Shown(p), "");
    Publish({{"VRAM_CLK#0", 900}});
    Frame(500);
    EXPECT_EQ(Shown(p), "");
    Rebuild();
    EXPECT_EQ(Shown(p), "900");
}

TEST_F(UpdateFixed, AfterABankFlipTheOldBankIsReadUntilTheRebuild) {
    CNumBox_Base* p = Number(Id(0, 10));
    Publish({{"VRAM_CLK#0", 900}});
    Rebuild();
    Publish({{"VRAM_CLK#0", 800}});
    Frame(500);
    EXPECT_EQ(Shown(p), "900");
    Rebuild();
    EXPECT_EQ(Shown(p), "800");
}

TEST_F(UpdateFixed, ALayoutWithoutAnyBoxBuildsAndRuns) {
    for (g_uLayoutStyle = 0; g_uLayoutStyle < 2; ++g_uLayoutStyle) {
        g_stSettings.bDebugMode = true;
        Rebuild();
        Frame(1'100);
        EXPECT_TRUE(g_listUpdateData_N.empty() && g_listUpdateFPS_N.empty());
    }
}

TEST_F(UpdateFixed, ReleasedManagersLeaveNothingForAnUpdateToTouch) {
    for (const u32 u : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 10u}) Number(Id(0, u));
    Publish({{"VRAM_CLK#0", 900}});
    Rebuild();
    ASSERT_EQ(g_listUpdateData_N.size(), 1u);
    g_fnDestroyManagers();
    g_fnRaiseUpdateFlags();
    Frame(1'100);
    EXPECT_EQ(g_bUpdateData[0], 0);
}

} // namespace
