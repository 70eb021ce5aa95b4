// Time of day and resolution of the custom style: their records, their words, their alignment.
#include "draw/canvas.h"
#include "frame/update/local_clock.h"
#include "tests/unit/frame/update_fixture.h"

#include "frame/update/mixed_items.h"

namespace {

class UpdateMixed : public UpdateCustomTest {
  protected:
    void SetUp() override {
        UpdateCustomTest::SetUp();
        g_stLocalClock.uHour = 9;
        g_stLocalClock.uMinute = 5;
        g_stLocalClock.uSecond = 3;
    }
    /// Boxes of a mixed item as the layout makes them: name, owner part, numbers, texts, frame.
    void MakeParts(const std::string& szStem, const std::string& szOwner, u32 uNumbers, u32 uTexts) {
        const std::string szAt = szOwner.empty() ? "" : "@" + szOwner;
        m_pPanel = Panel(Id(szStem + "_F" + szAt), 200, (szStem + "_F" + szAt).c_str());
        for (u32 u = 0; u < uNumbers; ++u) {
            const std::string szName = szStem + "[" + std::to_string(u) + "]" + szAt;
            m_apNumbers[u] = Number(Id(szName), szName.c_str());
            Hang(m_pPanel, {m_apNumbers[u]});
        }
        for (u32 u = 0; u < uTexts; ++u) {
            const std::string szName =
                uTexts > 1 ? szStem + "[" + std::to_string(u) + "]" + szAt : szStem + szAt;
            m_apTexts[u] = Text(Id(szName), 6, szName.c_str());
            Hang(m_pPanel, {m_apTexts[u]});
        }
    }
    CItemProperty_NumBox* Clock() {
        MakeParts("Clock", "", 3, 2);
        return dynamic_cast<CItemProperty_NumBox*>(Item("Clock", "SYSTEM_TIME", ITEM_MIXED));
    }
    CItemProperty_NumBox* Size() {
        MakeParts("Size", "", 2, 1);
        return dynamic_cast<CItemProperty_NumBox*>(Item("Size", "RESOLUTION", ITEM_MIXED));
    }
    /// Takes a part's name away, or its control only.
    static void Forget(char cLetter, const char* szName) { g_fnControlNames(cLetter)->erase(szName); }
    static void Lose(stControlIdTable& stIds, const char* szName) { stIds.m_fnGiveBack(Id(szName)); }

    bool Get(CItemProperty_Base* pItem) { return g_fnGetUpdateMixedDataByCustomStyle(pItem, m_record); }

    stUpdateMixedData m_record;
    CPanel_Base* m_pPanel = nullptr;
    CNumBox_Base* m_apNumbers[3] = {};
    CTextBox_Base* m_apTexts[2] = {};
};

TEST_F(UpdateMixed, AClockTakesThreeNumbersAndTwoTexts) {
    ASSERT_TRUE(Get(Clock()));
    for (u32 u = 0; u < 3; ++u) EXPECT_EQ(boxes::NumBox(m_record.m_aiNumBox[u]), m_apNumbers[u]);
    for (u32 u = 0; u < 2; ++u) EXPECT_EQ(boxes::TextBox(m_record.m_aiTextBox[u]), m_apTexts[u]);
    EXPECT_EQ(boxes::Panel(m_record.m_iPanel), m_pPanel);
    EXPECT_EQ(m_record.m_auNumBoxBID[2], Id("Clock[2]"));
    EXPECT_EQ(m_record.m_auTextBoxBID[1], Id("Clock[1]"));
    EXPECT_EQ(m_record.m_uPanelBID, Id("Clock_F"));
}

TEST_F(UpdateMixed, AResolutionTakesTwoNumbersAndTheTextUnderItsOwnName) {
    ASSERT_TRUE(Get(Size()));
    EXPECT_EQ(boxes::NumBox(m_record.m_aiNumBox[1]), m_apNumbers[1]);
    EXPECT_EQ(m_record.m_aiNumBox[2], -1);
    EXPECT_EQ(boxes::TextBox(m_record.m_aiTextBox[0]), m_apTexts[0]);
    EXPECT_EQ(m_record.m_auTextBoxBID[0], Id("Size"));
    EXPECT_EQ(m_record.m_aiTextBox[1], -1);
}

TEST_F(UpdateMixed, PartsOfAnOwnedItemBearTheOwnerBehindTheirSuffix) {
    MakeParts("Clock", "Corner", 3, 2);
    ASSERT_TRUE(Get(Item("Clock@Corner", "SYSTEM_TIME", ITEM_MIXED)));
    EXPECT_EQ(m_record.m_auNumBoxBID[0], Id("Clock[0]@Corner"));
    EXPECT_EQ(m_record.m_uPanelBID, Id("Clock_F@Corner"));
    MakeParts("Size", "Corner", 2, 1);
    ASSERT_TRUE(Get(Item("Size@Corner", "RESOLUTION", ITEM_MIXED)));
    EXPECT_EQ(m_record.m_auTextBoxBID[0], Id("Size@Corner"));
}

TEST_F(UpdateMixed, TwentyFourItemsOfOneStemAreKeptApart) {
    std::set<i32> setPlaces;
    for (u32 u = 0; u < 24; ++u) {
        const std::string szOwner = "Group" + std::to_string(u);
        MakeParts("Clock", szOwner, 3, 2);
        stUpdateMixedData record;
        ASSERT_TRUE(g_fnGetUpdateMixedDataByCustomStyle(
            Item(("Clock@" + szOwner).c_str(), "SYSTEM_TIME", ITEM_MIXED), record));
        for (u32 n = 0; n < 3; ++n) {
            EXPECT_EQ(boxes::NumBox(record.m_aiNumBox[n]), m_apNumbers[n]);
            setPlaces.insert(record.m_aiNumBox[n]);
        }
    }
    EXPECT_EQ(setPlaces.size(), 72u) << "each of its own parts, told apart by their index";
}

TEST_F(UpdateMixed, AlignmentComesFromTheItem) {
    CItemProperty_NumBox* pItem = Clock();
    pItem->m_iContentAnchor = 6;
    pItem->m_iContentAnchorX = -3;
    pItem->m_iContentAnchorY = 4;
    pItem->m_fTextSpacingX = 2.5f;
    ASSERT_TRUE(Get(pItem));
    EXPECT_EQ(m_record.m_uAlignX, 9u);
    EXPECT_EQ(m_record.m_uAlignOffsetX, -3);
    EXPECT_EQ(m_record.m_uAlignOffsetY, 4);
    EXPECT_EQ(m_record.m_uAlignGap, 2.5f);
}

TEST_F(UpdateMixed, TheAnchorsColumnIsTheMode) {
    CItemProperty_NumBox* pItem = Size();
    const std::pair<i32, u32> aModes[] = {{1, 7}, {4, 7}, {7, 7}, {2, 8},  {5, 8},  {8, 8}, {3, 9},
                                          {6, 9}, {9, 9}, {0, 7}, {-3, 7}, {10, 7}, {13, 7}};
    for (const auto& [iAnchor, uMode] : aModes) {
        pItem->m_iContentAnchor = iAnchor;
        ASSERT_TRUE(Get(pItem));
        EXPECT_EQ(m_record.m_uAlignX, uMode) << iAnchor;
    }
}

TEST_F(UpdateMixed, NoItem) {
    EXPECT_FALSE(Get(nullptr));
    EXPECT_TRUE(Logged("pItemPty_N is NULL\n"));
}

TEST_F(UpdateMixed, AnItemOfAnotherKind) {
    EXPECT_FALSE(Get(Item("Plain", "SYSTEM_TIME", ITEM_NUMBOX)));
    EXPECT_TRUE(Logged("item type error !\n"));
}

TEST_F(UpdateMixed, AnUnknownDataName) {
    EXPECT_FALSE(Get(Item("Odd", "FPS", ITEM_MIXED)));
    EXPECT_TRUE(Logged("szDataFullName error !\n"));
}

TEST_F(UpdateMixed, ANameThatNoNumberBoxBears) {
    CItemProperty_Base* pItem = Clock();
    Forget('N', "Clock[2]");
    EXPECT_FALSE(Get(pItem));
    EXPECT_TRUE(Logged("g_fnGetNumBoxBIDByName() fail\n"));
}

TEST_F(UpdateMixed, ANumberBoxThatIsGone) {
    CItemProperty_Base* pItem = Clock();
    Lose(g_stNumBoxIds, "Clock[1]");
    EXPECT_FALSE(Get(pItem));
    EXPECT_TRUE(Logged("pNumBox is NULL\n"));
}

TEST_F(UpdateMixed, ANameThatNoTextBoxBears) {
    CItemProperty_Base* pItem = Size();
    Forget('T', "Size");
    EXPECT_FALSE(Get(pItem));
    EXPECT_TRUE(Logged("g_fnGetTextBoxBIDByName() fail\n"));
}

TEST_F(UpdateMixed, ATextBoxThatIsGone) {
    CItemProperty_Base* pItem = Clock();
    Lose(g_stTextBoxIds, "Clock[0]");
    EXPECT_FALSE(Get(pItem));
    EXPECT_TRUE(Logged("pTextBox is NULL\n"));
}

TEST_F(UpdateMixed, ANameThatNoPanelBears) {
    CItemProperty_Base* pItem = Clock();
    Forget('P', "Clock_F");
    EXPECT_FALSE(Get(pItem));
    EXPECT_TRUE(Logged("g_fnGetPanelBIDByName() fail\n"));
}

TEST_F(UpdateMixed, APanelThatIsGone) {
    CItemProperty_Base* pItem = Size();
    Lose(g_stPanelIds, "Size_F");
    EXPECT_FALSE(Get(pItem));
    EXPECT_TRUE(Logged("pPanel is NULL\n"));
}

TEST_F(UpdateMixed, ARecordThatCannotBeMadeIsLeftOutOfTheList) {
    Clock();
    Forget('P', "Clock_F");
    Size();
    g_fnBuildUpdateCustom();
    EXPECT_EQ(g_listUpdateMixed.size(), 1u);
    EXPECT_TRUE(Logged("g_fnGetUpdateMixedDataByCustomStyle() error !\n"));
}

TEST_F(UpdateMixed, TheClocksUpdaterWritesTwoDigitsEach) {
    ASSERT_TRUE(Get(Clock()));
    m_record();
    EXPECT_EQ(Shown(m_apNumbers[0]), "09");
    EXPECT_EQ(Shown(m_apNumbers[1]), "05");
    EXPECT_EQ(Shown(m_apNumbers[2]), "03");
}

TEST_F(UpdateMixed, TheBuildAlignsTheClockOnce) {
    platform::headless::SetLocalTime({2026, 1, 1, 7, 30, 45});
    Clock();
    g_fnBuildUpdateCustom();
    // Two digits are 20 wide, a separator 6: 20 6 20 6 20 from the left.
    EXPECT_FLOAT_EQ(Left(m_apNumbers[0]), 0);
    EXPECT_FLOAT_EQ(Left(m_apTexts[0]), 20);
    EXPECT_FLOAT_EQ(Left(m_apNumbers[1]), 26);
    EXPECT_FLOAT_EQ(Left(m_apTexts[1]), 46);
    EXPECT_FLOAT_EQ(Left(m_apNumbers[2]), 52);
    EXPECT_EQ(Shown(m_apNumbers[0]) + Shown(m_apNumbers[1]) + Shown(m_apNumbers[2]), "073045")
        << "the time stands from the first frame on";
}

TEST_F(UpdateMixed, AClockOnTheRightHangsFromThePanelsRightEdge) {
    Clock()->m_iContentAnchor = 9;
    g_fnBuildUpdateCustom();
    EXPECT_FLOAT_EQ(Left(m_apNumbers[2]), 180);
    EXPECT_FLOAT_EQ(Left(m_apTexts[1]), 174);
    EXPECT_FLOAT_EQ(Left(m_apNumbers[0]), 128);
}

TEST_F(UpdateMixed, TheResolutionIsWrittenAndAlignedAnewAtEachUpdate) {
    Size()->m_iContentAnchor = 8;
    g_fnBuildUpdateCustom();
    EXPECT_EQ(Shown(m_apNumbers[0]), "1280");
    EXPECT_EQ(Shown(m_apNumbers[1]), "720");
    // 40 6 30: 76 around the middle of 200.
    EXPECT_FLOAT_EQ(Left(m_apNumbers[0]), 62);
    EXPECT_FLOAT_EQ(Left(m_apTexts[0]), 102);
    EXPECT_FLOAT_EQ(Left(m_apNumbers[1]), 108);
    g_uWidth = 800;
    g_uHeight = 600;
    Frame(500);
    EXPECT_EQ(Shown(m_apNumbers[0]), "800");
    EXPECT_EQ(Shown(m_apNumbers[1]), "600");
    EXPECT_FLOAT_EQ(Left(m_apNumbers[0]), 67);
    EXPECT_FLOAT_EQ(Left(m_apNumbers[1]), 103);
}

TEST_F(UpdateMixed, TheClockRunsWithTheTimeOfDay) {
    Clock();
    g_fnBuildUpdateCustom();
    platform::headless::SetLocalTime({2026, 1, 1, 23, 59, 8});
    Frame(400);
    EXPECT_EQ(Shown(m_apNumbers[2]), "09") << "the build's reading";
    Frame(600);
    EXPECT_EQ(Shown(m_apNumbers[0]), "23");
    EXPECT_EQ(Shown(m_apNumbers[2]), "08");
}

TEST_F(UpdateMixed, HidingOnlyWritesTheNumbers) {
    Size();
    Clock();
    g_fnBuildUpdateCustom();
    CNumBox_Base* const apClock[] = {m_apNumbers[0], m_apNumbers[1], m_apNumbers[2]};
    const f32 fLeft = Left(apClock[1]);
    apClock[1]->m_fnSetAnchor(7, 100, 0);
    g_stLocalClock.uMinute = 44;
    g_fnHideMixedItems();
    EXPECT_EQ(Shown(apClock[1]), "44");
    EXPECT_NE(Left(apClock[1]), fLeft);
}

TEST_F(UpdateMixed, PartsLostAfterTheBuildAreReportedAndNothingIsWritten) {
    Clock();
    Size();
    g_fnBuildUpdateCustom();
    ASSERT_EQ(g_listUpdateMixed.size(), 2u);
    for (stUpdateMixedData& record : g_listUpdateMixed) record.m_aiNumBox[1] = -1;
    stUpdateMixedData& clock = g_listUpdateMixed.front();
    stUpdateMixedData& size = g_listUpdateMixed.back();
    g_uWidth = 800;
    EXPECT_FALSE(g_fnFixSystemTimeAlignByCustomStyle(clock));
    EXPECT_TRUE(Logged("g_fnFixSystemTimeAlignByCustomStyle() error !\n"));
    EXPECT_FALSE(g_fnFixResolutionAlignByCustomStyle(size));
    EXPECT_TRUE(Logged("g_fnFixResolutionAlignByCustomStyle() error !\n"));
    g_fnHideMixedItems();
    EXPECT_TRUE(Logged("g_fnFixSystemTimeAlignByCustomStyle_Hide() error !\n"));
    EXPECT_TRUE(Logged("g_fnFixResolutionAlignByCustomStyle_Hide() error !\n"));
    EXPECT_EQ(Shown(m_apNumbers[0]), "1280");
}

TEST_F(UpdateMixed, AMissingTextStopsTheAlignmentOnly) {
    Size();
    g_fnBuildUpdateCustom();
    stUpdateMixedData& record = g_listUpdateMixed.front();
    record.m_aiTextBox[0] = -1;
    g_uWidth = 1;
    const f32 fLeft = Left(m_apNumbers[1]);
    EXPECT_FALSE(g_fnFixResolutionAlignByCustomStyle(record));
    EXPECT_EQ(Shown(m_apNumbers[0]), "1");
    EXPECT_EQ(Left(m_apNumbers[1]), fLeft);
}

TEST_F(UpdateMixed, ARebuildOnCommandHidesFirst) {
    Clock();
    g_fnBuildUpdateCustom();
    g_listUpdateMixed.front().m_aiNumBox[0] = -1;
    s_aLines.clear();
    g_fnResetUpdate();
    EXPECT_EQ(CountLogged("g_fnFixSystemTimeAlignByCustomStyle_Hide() error !\n"), 1)
        << "the old record ran before the lists were cleared";
    EXPECT_EQ(boxes::NumBox(g_listUpdateMixed.front().m_aiNumBox[0]), m_apNumbers[0]);
}

} // namespace
