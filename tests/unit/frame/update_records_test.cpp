// Records, their three forms, and the demo sources.
#include "tests/unit/frame/update_fixture.h"

namespace {

/// What the functions in a record were called with.
struct stCall {
    std::string szForm;
    i32 aiIndexes[3] = {};
    const u32* pData = nullptr;
    u32 uDecimals = 0, uDivisor = 0;
};
std::vector<stCall> g_aCalls;

void Simple(i32 iNumBox, const u32* pData, u32 uDecimals, u32 uDivisor) {
    g_aCalls.push_back({"simple", {iNumBox}, pData, uDecimals, uDivisor});
}
void Row(i32 iPanel, i32 iNumBox, i32 iTextBox, const u32* pData, u32 uDecimals, u32 uDivisor) {
    g_aCalls.push_back({"row", {iPanel, iNumBox, iTextBox}, pData, uDecimals, uDivisor});
}
void Graph(i32 iIndex, const u32* pData, u32 uDivisor) {
    g_aCalls.push_back({"graph", {iIndex}, pData, 0, uDivisor});
}

class UpdateRecords : public UpdateTest {
  protected:
    void SetUp() override {
        UpdateTest::SetUp();
        g_aCalls.clear();
    }
    static u32 Raw(i32 iValue) { return static_cast<u32>(iValue); }
    /// What the simple form shows of a value.
    std::string Simple(i32 iValue, u32 uDecimals, u32 uDivisor) {
        CNumBox_Base* p = Number(++m_uNext);
        const u32 uRaw = Raw(iValue);
        g_fnUpdateNumSimple(boxes::FindNumBox(m_uNext), &uRaw, uDecimals, uDivisor);
        return Shown(p);
    }
    std::string Row(i32 iValue, u32 uDecimals, u32 uDivisor) {
        CNumBox_Base* p = Number(++m_uNext);
        const u32 uRaw = Raw(iValue);
        g_fnUpdateNumRow(-1, boxes::FindNumBox(m_uNext), -1, &uRaw, uDecimals, uDivisor);
        return Shown(p);
    }
    u64 m_uNext = 100;
};

TEST_F(UpdateRecords, ANumberBoxAloneLeavesPanelAndLabelAbsent) {
    const u32 uValue = 7;
    const CUpdateDataFuncN record(0x100000005, 3, &uValue, 2, 100);
    EXPECT_EQ(record.m_uPanelBID, ~u64{0});
    EXPECT_EQ(record.m_uTextBoxBID, ~u64{0});
    EXPECT_EQ(record.m_uNumBoxBID, 0x100000005u);
    EXPECT_EQ(record.m_iPanel, -1);
    EXPECT_EQ(record.m_iTextBox, -1);
    EXPECT_EQ(record.m_iNumBox, 3);
    EXPECT_EQ(record.m_uDecimals, 2u);
    EXPECT_EQ(record.m_uDivisor, 100u);
    EXPECT_EQ(record.m_fnSimple, &g_fnUpdateNumSimple);
    EXPECT_EQ(record.m_fnRow, nullptr);
    EXPECT_EQ(record.m_pData, &uValue);
}

TEST_F(UpdateRecords, TheSimpleFormGoesBeforeTheRow) {
    CUpdateDataFuncN record;
    const u32 uValue = 7;
    record.m_fnSimple = ::Simple;
    record.m_fnRow = ::Row;
    record.m_iPanel = 1;
    record.m_iNumBox = 2;
    record.m_iTextBox = 3;
    record.m_pData = &uValue;
    record.m_uDecimals = 4;
    record.m_uDivisor = 5;
    record();
    ASSERT_EQ(g_aCalls.size(), 1u);
    EXPECT_EQ(g_aCalls[0].szForm, "simple");
    EXPECT_EQ(g_aCalls[0].aiIndexes[0], 2);
    record.m_fnSimple = nullptr;
    record();
    ASSERT_EQ(g_aCalls.size(), 2u);
    EXPECT_EQ(g_aCalls[1].szForm, "row");
    EXPECT_EQ(g_aCalls[1].aiIndexes[0], 1);
    EXPECT_EQ(g_aCalls[1].aiIndexes[1], 2);
    EXPECT_EQ(g_aCalls[1].aiIndexes[2], 3);
    EXPECT_EQ(g_aCalls[1].pData, &uValue);
    EXPECT_EQ(g_aCalls[1].uDecimals, 4u);
    EXPECT_EQ(g_aCalls[1].uDivisor, 5u);
}

TEST_F(UpdateRecords, ARowWithAnAbsentPartIsNotCalled) {
    for (i32 CUpdateDataFuncN::*pPart :
         {&CUpdateDataFuncN::m_iPanel, &CUpdateDataFuncN::m_iNumBox, &CUpdateDataFuncN::m_iTextBox}) {
        CUpdateDataFuncN record;
        record.m_fnRow = ::Row;
        record.m_fnSimple = ::Simple;
        record.m_iPanel = record.m_iNumBox = record.m_iTextBox = 0;
        if (pPart != &CUpdateDataFuncN::m_iNumBox) record.m_fnSimple = nullptr;
        record.*pPart = -1;
        record();
    }
    EXPECT_TRUE(g_aCalls.empty());
}

TEST_F(UpdateRecords, GraphRecordsNeedAFunctionAndAPlace) {
    CUpdateDataFuncL record;
    record();
    record.m_fn = Graph;
    record();
    EXPECT_TRUE(g_aCalls.empty());
    record.m_iIndex = 6;
    record.m_uDivisor = 10;
    record();
    ASSERT_EQ(g_aCalls.size(), 1u);
    EXPECT_EQ(g_aCalls[0].aiIndexes[0], 6);
    EXPECT_EQ(g_aCalls[0].uDivisor, 10u);
}

TEST_F(UpdateRecords, AMixedRecordHandsItselfOn) {
    static stUpdateMixedData* pSeen = nullptr;
    stUpdateMixedData record;
    record();
    record.m_fn = [](stUpdateMixedData& st) { pSeen = &st; };
    record();
    EXPECT_EQ(pSeen, &record);
}

TEST_F(UpdateRecords, TheCountTakesMixedItemsInCustomStyleOnly) {
    g_listUpdateData_N.resize(3);
    g_listUpdateData_L.resize(2);
    g_listUpdateMixed.resize(4);
    g_listUpdateFPS_N.resize(5);
    g_listUpdateFPS_L.resize(6);
    for (const u32 uStyle : {0u, 1u, 7u}) {
        g_fnCountUpdateRecords(uStyle);
        EXPECT_EQ(g_uUpdateRecordCount, 5u) << uStyle;
    }
    g_fnCountUpdateRecords(2);
    EXPECT_EQ(g_uUpdateRecordCount, 9u);
    g_fnClearUpdateLists();
    EXPECT_EQ(g_uUpdateRecordCount, 0u);
    EXPECT_TRUE(g_listUpdateFPS_N.empty() && g_listUpdateFPS_L.empty() && g_listUpdateData_N.empty());
    EXPECT_TRUE(g_listUpdateData_L.empty() && g_listUpdateMixed.empty());
}

TEST_F(UpdateRecords, APlainValueIsShownAsItIs) {
    EXPECT_EQ(Simple(2505, 0, 1), "2505");
    EXPECT_EQ(Simple(-12, 0, 1), "-12");
    EXPECT_EQ(Row(2505, 0, 1), "2505");
    EXPECT_EQ(Simple(16777217, 0, 1), "16777217") << "not through single precision";
    EXPECT_EQ(Row(16777217, 0, 0), "16777217");
}

TEST_F(UpdateRecords, ADivisorCutsTheQuotientToAWholeNumber) {
    EXPECT_EQ(Simple(1999, 0, 1000), "1");
    EXPECT_EQ(Simple(-1999, 0, 1000), "-1");
    EXPECT_EQ(Row(1999, 0, 1000), "1");
    EXPECT_EQ(Row(-1999, 0, 1000), "-1");
}

TEST_F(UpdateRecords, DecimalsShowTheQuotient) {
    EXPECT_EQ(Simple(1667, 2, 100), "16.67");
    EXPECT_EQ(Simple(1250, 1, 1000), "1.2");
    EXPECT_EQ(Row(1250, 3, 1000), "1.250");
    EXPECT_EQ(Simple(50, 1, 1), "50.0");
}

TEST_F(UpdateRecords, ADivisorOf0CountsAs1) {
    EXPECT_EQ(Simple(42, 0, 0), "42");
    EXPECT_EQ(Simple(42, 1, 0), "42.0");
    EXPECT_EQ(Row(42, 0, 0), "42");
    EXPECT_EQ(Row(42, 1, 0), "42.0");
}

TEST_F(UpdateRecords, TheSimpleFormTakesTheDivisorAsSignedTheRowAsUnsigned) {
    const u32 uMinusTwo = 0xFFFFFFFE;
    EXPECT_EQ(Simple(1000, 0, uMinusTwo), "-500");
    EXPECT_EQ(Row(1000, 0, uMinusTwo), "0");
}

TEST_F(UpdateRecords, ValuesAreSigned) {
    EXPECT_EQ(Simple(-2147483647 - 1, 0, 1000), "-2147483");
    EXPECT_EQ(Simple(2147483647, 0, 1000), "2147483");
}

TEST_F(UpdateRecords, ARowIsAlignedInTheMiddleOfItsPanel) {
    CPanel_Base* pPanel = Panel(1);
    CNumBox_Base* pNumber = Number(1);
    CTextBox_Base* pUnit = Text(1, 20);
    Hang(pPanel, {pNumber, pUnit});
    const u32 uRaw = 150;
    g_fnUpdateNumRow(boxes::FindPanel(1), boxes::FindNumBox(1), boxes::FindTextBox(1), &uRaw, 0, 1);
    EXPECT_EQ(Shown(pNumber), "150");
    // 30 + 1 + 20 = 51; (200 - 51) / 2 = 74.5.
    EXPECT_FLOAT_EQ(Left(pNumber), 74.5f);
    EXPECT_FLOAT_EQ(Left(pUnit), 74.5f + 31);
    const u32 uMore = 1500;
    g_fnUpdateNumRow(boxes::FindPanel(1), boxes::FindNumBox(1), boxes::FindTextBox(1), &uMore, 0, 1);
    EXPECT_FLOAT_EQ(Left(pNumber), 69.5f) << "one more digit moves both";
    EXPECT_FLOAT_EQ(Left(pUnit), 69.5f + 41);
}

TEST_F(UpdateRecords, PlacesWithoutABoxAreSkipped) {
    const u32 uRaw = 5;
    for (const i32 iPlace : {-1, 0, 709, 710, 1000000}) {
        g_fnUpdateNumSimple(iPlace, &uRaw, 0, 1);
        g_fnUpdateNumRow(iPlace, iPlace, iPlace, &uRaw, 0, 1);
    }
    CNumBox_Base* p = Number(1);
    g_fnUpdateNumSimple(boxes::FindNumBox(1), &uRaw, 0, 1);
    EXPECT_EQ(Shown(p), "5");
}

TEST_F(UpdateRecords, ANullPointerShowsADemoValue) {
    CNumBox_Base* p = Number(1);
    std::set<std::string> setSeen;
    for (u32 u = 0; u < 50; ++u) {
        g_fnUpdateNumSimple(boxes::FindNumBox(1), nullptr, 0, 1);
        setSeen.insert(Shown(p));
        EXPECT_LT(std::stoi(Shown(p)), 10000);
        EXPECT_GE(std::stoi(Shown(p)), 0);
    }
    EXPECT_GT(setSeen.size(), 40u);
}

TEST_F(UpdateRecords, DemoSourcesKeepTheirRange) {
    CRandomData_MB mb;
    CRandomData_Usage usage;
    u32 uMostMB = 0, uMostUsage = 0;
    for (u32 u = 0; u < 20000; ++u) {
        for (CRandomData* p : {static_cast<CRandomData*>(&mb), static_cast<CRandomData*>(&usage)})
            p->m_fnGenerate();
        uMostMB = std::max(uMostMB, mb.m_uResult);
        uMostUsage = std::max(uMostUsage, usage.m_uResult);
    }
    EXPECT_LE(uMostMB, 16384u);
    EXPECT_GT(uMostMB, 16000u);
    EXPECT_EQ(uMostUsage, 100u);
}

TEST_F(UpdateRecords, TheHostsRandomSequenceIsLeftAlone) {
    std::srand(5);
    const int iFirst = std::rand();
    std::srand(5);
    for (u32 u = 0; u < 10; ++u) g_fnRandomValue();
    EXPECT_EQ(std::rand(), iFirst);
}

TEST_F(UpdateRecords, AnUnalignedValueIsReadWhole) {
    alignas(4) u8 auBytes[8] = {0, 0x39, 0x30, 0, 0, 0, 0, 0};
    EXPECT_EQ(g_fnUpdateValue(reinterpret_cast<const u32*>(auBytes + 1)), 12345);
}

} // namespace
