#include "controls/control_ids.h"

#include "base/log.h"
#include "controls/panel.h"
#include "tests/unit/controls/manager_fixture.h"

#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::string> g_aLines;

class ControlIds : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        g_aLines.clear();
        m_fnFormerSink = g_fnLogSink;
        g_fnLogSink = [](const char* sz) { g_aLines.push_back(sz); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        ManagerTest::TearDown();
    }
    void (*m_fnFormerSink)(const char*) = nullptr;
};

TEST_F(ControlIds, ComposesIndexAndBID) {
    EXPECT_EQ(g_fnMakeLB_ID(0, 1085), 1085u);
    EXPECT_EQ(g_fnMakeLB_ID(3, 0xFFFFFFFF), 0x3FFFFFFFFull);
}

TEST_F(ControlIds, EachKindGoesToItsOwnArray) {
    EXPECT_EQ(g_fnRegisterXCtrl(1, 7, new CCounted<CTextBox_Base>), 1);
    EXPECT_EQ(g_fnRegisterXCtrl(2, 7, new CCounted<CNumBox_Base>), 1);
    EXPECT_EQ(g_fnRegisterXCtrl(3, 7, new CCounted<CLineGraph_Base>), 1);
    EXPECT_EQ(g_fnRegisterXCtrl(4, 7, new CPanel_Base), 1);
    EXPECT_EQ(g_fnRegisterXCtrl(5, 7, new CCounted<CImgBox_Base>), 1);
    EXPECT_EQ(g_fnRegisterXCtrl(8, 7, new CCounted<CFlipBox_Base>), 1);
    EXPECT_EQ(g_fnRegisterXCtrl(9, 7, new CCounted<CPieChart_Base>), 1);
    EXPECT_NE(g_ppTextBox[0], nullptr);
    EXPECT_EQ(g_fnFindCtrl(0, 7, g_stTextBoxIds, g_ppTextBox), g_ppTextBox[0]);
    EXPECT_EQ(g_fnFindCtrl(0, 7, g_stNumBoxIds, g_ppNumBox), g_ppNumBox[0]);
    EXPECT_EQ(g_fnFindCtrl(0, 7, g_stLineGraphIds, g_ppLineGraph), g_ppLineGraph[0]);
    EXPECT_EQ(g_fnFindCtrl(0, 7, g_stPanelIds, g_ppPanel), g_ppPanel[0]);
    EXPECT_EQ(g_fnFindCtrl(0, 7, g_stImgBoxIds, g_ppImgBox), g_ppImgBox[1]) << "place 0 is the photo's";
    EXPECT_EQ(g_fnFindCtrl(0, 7, g_stFlipBoxIds, g_ppFlipBox), g_ppFlipBox[0]);
    EXPECT_EQ(g_fnFindCtrl(0, 7, g_stPieChartIds, g_ppPieChart), g_ppPieChart[0]);
}

TEST_F(ControlIds, Type6And7AndUnknownTypesReturn0) {
    auto p = std::make_unique<TestControl>();
    for (u32 uType : {0u, 6u, 7u, 10u, 0xFFFFFFFFu}) EXPECT_EQ(g_fnRegisterXCtrl(uType, 1, p.get()), 0);
}

TEST_F(ControlIds, NullControlsOtherKindsAndMissingArraysReturn0) {
    auto p = std::make_unique<TestControl>();
    EXPECT_EQ(g_fnRegisterXCtrl(IdTextBox, 1, nullptr), 0);
    EXPECT_EQ(g_fnRegisterXCtrl(IdPanel, 1, p.get()), 0);
    g_ppTextBox = nullptr;
    EXPECT_EQ(g_fnRegisterXCtrl(IdTextBox, 1, p.get()), 0);
    EXPECT_EQ(g_stTextBoxIds.m_uNext, 0u);
}

TEST_F(ControlIds, InstancesOfAnElementAreToldApart) {
    TestControl *pA = new TestControl, *pB = new TestControl;
    EXPECT_EQ(g_fnRegisterTextCtrl(0, 1085, pA), 1);
    EXPECT_EQ(g_fnRegisterTextCtrl(1, 1085, pB), 1);
    EXPECT_EQ(g_fnFindCtrl(0, 1085, g_stTextBoxIds, g_ppTextBox), pA);
    EXPECT_EQ(g_fnFindCtrl(1, 1085, g_stTextBoxIds, g_ppTextBox), pB);
    EXPECT_EQ(g_fnFindCtrl(2, 1085, g_stTextBoxIds, g_ppTextBox), nullptr);
}

TEST_F(ControlIds, FindingWithoutAnArrayOrUnderAFreedIdGivesNull) {
    TestControl* p = Make();
    EXPECT_EQ(g_fnFindCtrlById<CTextBox_Base>(1, g_stTextBoxIds, g_ppTextBox), p);
    EXPECT_EQ(g_fnFindCtrlById<CTextBox_Base>(1, g_stTextBoxIds, nullptr), nullptr);
    EXPECT_TRUE(g_stTextBoxIds.m_fnGiveBack(1));
    EXPECT_EQ(g_stTextBoxIds.m_mapPtrId.at(1), 0xFFFFFFFFu);
    EXPECT_EQ(g_fnFindCtrlById<CTextBox_Base>(1, g_stTextBoxIds, g_ppTextBox), nullptr);
}

TEST_F(ControlIds, ARepeatedIdIsRefusedAndLogged) {
    TestControl* p = Make();
    auto pSecond = std::make_unique<TestControl>();
    EXPECT_EQ(g_fnRegisterXCtrl(IdTextBox, 1, pSecond.get()), 0);
    EXPECT_EQ(g_aLines.size(), 1u);
    EXPECT_EQ(g_fnFindCtrlById<CTextBox_Base>(1, g_stTextBoxIds, g_ppTextBox), p);
    EXPECT_EQ(g_ppTextBox[1], nullptr);
}

TEST_F(ControlIds, AFullArrayIsLoggedAndStoresNothing) {
    for (u32 i = 0; i < g_uFlipBoxEntries; ++i)
        ASSERT_EQ(g_fnRegisterXCtrl(IdFlipBox, i, new CCounted<CFlipBox_Base>), 1);
    auto p = std::make_unique<CCounted<CFlipBox_Base>>();
    EXPECT_EQ(g_fnRegisterXCtrl(IdFlipBox, 99, p.get()), 0);
    ASSERT_EQ(g_aLines.size(), 1u);
    EXPECT_EQ(g_aLines[0], "g_fnRegisterXCtrl() error - uPtr_ID: 24\n");
    EXPECT_FALSE(g_stFlipBoxIds.m_mapPtrId.contains(99));
    EXPECT_EQ(g_fnFindCtrlById<CFlipBox_Base>(99, g_stFlipBoxIds, g_ppFlipBox), nullptr);
}

TEST_F(ControlIds, TheOldestPlaceGivenBackIsTakenFirst) {
    stControlIdTable st;
    for (u64 u = 0; u < 4; ++u) EXPECT_EQ(st.m_fnTake(100 + u, 5), u);
    EXPECT_TRUE(st.m_fnGiveBack(102));
    EXPECT_TRUE(st.m_fnGiveBack(100));
    EXPECT_FALSE(st.m_fnGiveBack(100));
    EXPECT_FALSE(st.m_fnGiveBack(555));
    EXPECT_EQ(st.m_fnTake(200, 5), 2u);
    EXPECT_EQ(st.m_fnTake(201, 5), 0u);
    EXPECT_EQ(st.m_fnTake(202, 5), 4u);
    EXPECT_EQ(st.m_fnTake(203, 5), g_uNoControl);
    EXPECT_EQ(st.m_mapLB_ID.at(2), 200u);
    st.m_fnClear();
    EXPECT_EQ(st.m_fnTake(1, 5), 0u);
    EXPECT_EQ(st.m_fnFind(200), g_uNoControl);
}

TEST_F(ControlIds, KeptPlacesAreGivenOutByNameOnly) {
    stControlIdTable st(1u << 0 | 1u << 2);
    EXPECT_EQ(st.m_fnTake(100, 4), 1u);
    EXPECT_EQ(st.m_fnTake(101, 4), 3u);
    EXPECT_EQ(st.m_fnTake(102, 4), g_uNoControl);
    EXPECT_TRUE(st.m_fnTakeKept(103, 2));
    EXPECT_FALSE(st.m_fnTakeKept(103, 0));
    EXPECT_EQ(st.m_fnFind(103), 2u);
    EXPECT_TRUE(st.m_fnGiveBack(103));
    EXPECT_EQ(st.m_fnTake(104, 4), g_uNoControl) << "a kept place is kept when it is given back";
    st.m_fnClear();
    EXPECT_EQ(st.m_fnTake(105, 4), 1u);
}

TEST_F(ControlIds, NamesLeadToControlsByLetter) {
    auto* pPanel = new CPanel_Base;
    ASSERT_EQ(g_fnRegisterXCtrl(IdPanel, 77, pPanel), 1);
    TestControl* pText = Make();
    (*g_fnControlNames('P'))["box_F"] = 77;
    (*g_fnControlNames('T'))["box_F"] = 1;
    EXPECT_EQ(g_fnFindCtrlByName('P', "box_F"), pPanel);
    EXPECT_EQ(g_fnFindCtrlByName('T', "box_F"), pText);
    for (char c : {'C', 'I', 'L', 'N'}) {
        EXPECT_EQ(g_fnFindCtrlByName(c, "box_F"), nullptr);
        (*g_fnControlNames(c))["gone"] = 123;
        EXPECT_EQ(g_fnFindCtrlByName(c, "gone"), nullptr);
    }
    EXPECT_EQ(g_fnFindCtrlByName('P', "other"), nullptr);
    for (char c : {'F', 'X', 'p', '\0'}) {
        EXPECT_EQ(g_fnControlNames(c), nullptr);
        EXPECT_EQ(g_fnFindCtrlByName(c, "box_F"), nullptr);
    }
}

TEST_F(ControlIds, ClearingForgetsIdsAndNames) {
    Make();
    (*g_fnControlNames('T'))["a"] = 1;
    g_fnClearControlIds();
    EXPECT_EQ(g_stTextBoxIds.m_uNext, 0u);
    EXPECT_EQ(g_fnFindCtrlByName('T', "a"), nullptr);
    g_ppTextBox[0] = (delete g_ppTextBox[0], nullptr);
}

} // namespace
