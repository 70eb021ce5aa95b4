#include "group_fixture.h"

#include "base/log.h"

namespace {

using GroupWalker = GroupTest;

// --- who hangs under whom ----------------------------------------------------------------------------------

TEST_F(GroupWalker, AnItemHangsFromTheRootAtItsTemplatesPlace) {
    CControl* p = Panel("A", 30, 40, 10, 10);
    EXPECT_FALSE(InTree(p));
    Walk(R"(<P ID="A"/>)");
    EXPECT_TRUE(AtRoot(p));
    EXPECT_EQ(At(p), (Place{30, 40}));
}

TEST_F(GroupWalker, AThreeLevelTreeOfRealControls) {
    CControl* pOuter = Panel("outer", 100, 50, 400, 300);
    CControl* pInner = Panel("inner", 20, 10, 200, 100);
    CTextBox_Base* pText = Text("title", u"abc");
    pText->m_fnSetAnchor(9, 4, 2);
    Walk(R"(<Panel ID="outer"><Panel ID="inner"><TextBox ID="title"/></Panel></Panel>)");
    EXPECT_TRUE(AtRoot(pOuter));
    EXPECT_EQ(ParentOf(pInner), pOuter);
    EXPECT_EQ(ParentOf(pText), pInner);
    EXPECT_EQ(At(pOuter), (Place{100, 50}));
    EXPECT_EQ(At(pInner), (Place{120, 60}));
    // The lower right corner of the inner panel, (320, 160), less offset and size 24 by 16.
    EXPECT_EQ(At(pText), (Place{320 - 4 - 24, 160 - 2 - 16}));
}

TEST_F(GroupWalker, EveryKindIsFoundByItsLetter) {
    auto* pNumber = new CLiveNumBox;
    ASSERT_EQ(g_fnRegisterXCtrl(IdNumBox, g_fnMakeLB_ID(0, Number(g_stNameMaps.mapNumBox, "X")), pNumber), 1);
    auto* pFlip = new CCounted<CFlipBox_Base>;
    ASSERT_EQ(g_fnRegisterXCtrl(IdFlipBox, g_fnMakeLB_ID(0, Number(g_stNameMaps.mapFlipBox, "X")), pFlip), 1);
    CControl* pPanel = Panel("X", 0, 0, 1, 1);
    CControl* pText = Text("X", u"a");
    Walk(R"(<F ID="X"/>)");
    EXPECT_TRUE(InTree(pFlip) && !InTree(pNumber) && !InTree(pPanel) && !InTree(pText));
    Walk(R"(<N ID="X"/>)");
    EXPECT_TRUE(InTree(pNumber) && !InTree(pPanel) && !InTree(pText));
    Walk(R"(<P ID="X"/>)");
    EXPECT_TRUE(InTree(pPanel) && !InTree(pText));
    Walk(R"(<T ID="X"/>)");
    EXPECT_TRUE(InTree(pText));
}

TEST_F(GroupWalker, TwoTagsWithTheSameFirstLetterBehaveAlike) {
    for (const char* szTag : {"P", "Panel", "Portrait", "P1-2"}) {
        GroupTest::TearDown();
        GroupTest::SetUp();
        CControl* p = Panel("A", 1, 2, 3, 4);
        Walk("<" + std::string(szTag) + " ID=\"A\"/>");
        EXPECT_TRUE(AtRoot(p)) << szTag;
    }
    for (const char* szTag : {"R", "Row", "Rabbit"}) {
        GroupTest::TearDown();
        GroupTest::SetUp();
        Panel("A", 5, 5, 10, 10);
        CControl* p = Panel("B", 0, 0, 10, 10);
        Walk("<" + std::string(szTag) + "><P ID=\"A\"/><P ID=\"B\"/></" + szTag + ">");
        EXPECT_EQ(At(p), (Place{15, 5})) << szTag;
    }
}

TEST_F(GroupWalker, OnlyUpperCaseLettersCount) {
    CControl* p = Panel("A", 0, 0, 1, 1);
    CControl* pBelow = Panel("B", 0, 0, 1, 1);
    Walk(R"(<panel ID="A"/><t><P ID="B"/></t><i><P ID="B"/></i>)");
    EXPECT_FALSE(InTree(p));
    EXPECT_FALSE(InTree(pBelow));
}

TEST_F(GroupWalker, AnUnknownNameTakesItsSubtreeAlong) {
    CControl* pBelow = Panel("B", 0, 0, 1, 1);
    CControl* pAfter = Panel("C", 0, 0, 1, 1);
    Walk(R"(<P ID="unknown"><P ID="B"/></P><P ID="C"/>)");
    EXPECT_FALSE(InTree(pBelow));
    EXPECT_TRUE(AtRoot(pAfter));
}

TEST_F(GroupWalker, AnItemWithoutAControlTakesItsSubtreeAlong) {
    Number(g_stNameMaps.mapPanel, "disabled");
    CControl* pBelow = Panel("B", 0, 0, 1, 1);
    Walk(R"(<P ID="disabled"><P ID="B"/></P>)");
    EXPECT_FALSE(InTree(pBelow));
}

TEST_F(GroupWalker, ATagOfNoKnownLetterTakesItsSubtreeAlong) {
    CControl* p = Panel("B", 0, 0, 1, 1);
    Walk(R"(<X><P ID="B"/></X><Z/><P/><N><P ID="B"/></N>)");
    EXPECT_FALSE(InTree(p));
}

TEST_F(GroupWalker, AnIdOnATagThatIsNoItemSkipsTheElement) {
    CControl* p = Panel("B", 0, 0, 1, 1);
    Walk(R"(<R ID="B"><P ID="B"/></R><A ID="B" EndIndex="3"><P ID="B"/></A><I ID="B"><P ID="B"/></I>
            <C ID="x"><P ID="B"/></C>)");
    EXPECT_FALSE(InTree(p));
}

TEST_F(GroupWalker, AnEmptyIdIsNone) {
    CControl* p = Panel("B", 0, 0, 1, 1);
    Walk(R"(<T ID=""><P ID="B"/></T>)");
    EXPECT_TRUE(AtRoot(p));
}

TEST_F(GroupWalker, ALookupThatFailsSaysNothing) {
    static u32 uLines;
    uLines = 0;
    void (*const fnFormer)(const char*) = g_fnLogSink;
    g_fnLogSink = [](const char*) { ++uLines; };
    Walk(R"(<P ID="unknown"/><T ID="unknown"/><N ID="unknown"/><F ID="unknown"/><Q/>)");
    g_fnLogSink = fnFormer;
    EXPECT_EQ(uLines, 0u);
}

TEST_F(GroupWalker, AnItemUnderItselfIsSkippedAndItsSubtreeWithIt) {
    CControl* p = Panel("A", 7, 8, 1, 1);
    CControl* pBelow = Panel("B", 0, 0, 1, 1);
    Walk(R"(<P ID="A"><P ID="A"><P ID="B"/></P></P>)");
    EXPECT_TRUE(AtRoot(p));
    EXPECT_EQ(At(p), (Place{7, 8}));
    EXPECT_FALSE(InTree(pBelow));
}

TEST_F(GroupWalker, AnItemNamedTwiceHangsWhereItWasNamedLast) {
    CControl* pA = Panel("A", 0, 0, 9, 9);
    CControl* pB = Panel("B", 0, 0, 9, 9);
    CControl* p = Panel("C", 0, 0, 1, 1);
    Walk(R"(<P ID="A"><P ID="C"/></P><P ID="B"><P ID="C"/></P>)");
    EXPECT_TRUE(AtRoot(pA));
    EXPECT_EQ(ParentOf(p), pB);
}

TEST_F(GroupWalker, AnEmptyWalkIsTrue) {
    EXPECT_TRUE(g_fnWalkGroup(nullptr, nullptr, 0, FLOW_NONE, 0, 0, nullptr));
    EXPECT_TRUE(g_fnWalkWholeGroup(nullptr));
    EXPECT_TRUE(g_fnWalkWholeGroup(Group("")));
}

TEST_F(GroupWalker, WithoutAManagerNothingIsWalked) {
    Number(g_stNameMaps.mapPanel, "A");
    tinyxml2::XMLElement* pGroup = Group(R"(<R><P ID="A"/></R>)");
    g_fnDestroyManagers();
    EXPECT_TRUE(g_fnWalkWholeGroup(pGroup));
}

// --- rows and columns --------------------------------------------------------------------------------------

TEST_F(GroupWalker, TheFirstOfARowStaysAndTheOthersLineUpBehindIt) {
    CControl* a = Panel("A", 100, 40, 30, 10);
    CControl* b = Panel("B", 7, 8, 20, 25);
    CControl* c = Panel("C", 0, 0, 5, 5);
    a->m_fnSetAnchor(3, 100, 40); // the first keeps its code too
    Walk(R"(<R><P ID="A"/><P ID="B"/><P ID="C"/></R>)");
    EXPECT_EQ(At(a), (Place{1920 - 100 - 30, 40}));
    EXPECT_EQ(a->m_iAnchorCode, 3);
    EXPECT_EQ(At(b), (Place{1820, 40}));
    EXPECT_EQ(At(c), (Place{1840, 40}));
    EXPECT_EQ(b->m_iAnchorCode, 1);
}

TEST_F(GroupWalker, TheFirstOfAColumnStaysAndTheOthersLineUpBelowIt) {
    CControl* a = Panel("A", 100, 40, 30, 10);
    CControl* b = Panel("B", 7, 8, 20, 25);
    CControl* c = Panel("C", 0, 0, 5, 5);
    Walk(R"(<C><P ID="A"/><P ID="B"/><P ID="C"/></C>)");
    EXPECT_EQ(At(a), (Place{100, 40}));
    EXPECT_EQ(At(b), (Place{100, 50}));
    EXPECT_EQ(At(c), (Place{100, 75}));
}

TEST_F(GroupWalker, WithoutAFlowNothingMoves) {
    CControl* a = Panel("A", 100, 40, 30, 10);
    CControl* b = Panel("B", 7, 8, 20, 25);
    Walk(R"(<P ID="A"/><T><P ID="B"/></T>)");
    EXPECT_EQ(At(a), (Place{100, 40}));
    EXPECT_EQ(At(b), (Place{7, 8}));
}

TEST_F(GroupWalker, ARowInsideAControlIsMeasuredOnTheCanvas) {
    Panel("frame", 200, 300, 100, 100);
    CControl* a = Panel("A", 10, 20, 30, 10);
    CControl* b = Panel("B", 0, 0, 5, 5);
    Walk(R"(<P ID="frame"><R><P ID="A"/><P ID="B"/></R></P>)");
    EXPECT_EQ(At(a), (Place{210, 320}));
    EXPECT_EQ(At(b), (Place{240, 320}));
    EXPECT_EQ(b->m_fAnchorX, 40); // against the frame, so that it moves along
    EXPECT_EQ(b->m_fAnchorY, 20);
}

TEST_F(GroupWalker, MovedControlsTakeTheirChildrenAlong) {
    Panel("A", 100, 40, 30, 10);
    Panel("B", 0, 0, 20, 20);
    CControl* pChild = Panel("child", 3, 4, 1, 1);
    Walk(R"(<R><P ID="A"/><P ID="B"><P ID="child"/></P></R>)");
    EXPECT_EQ(At(pChild), (Place{133, 44}));
}

TEST_F(GroupWalker, ChildrenOfAControlHaveNoFlow) {
    Panel("A", 100, 40, 30, 10);
    CControl* pFirst = Panel("first", 3, 4, 10, 10);
    CControl* pSecond = Panel("second", 5, 6, 10, 10);
    CControl* b = Panel("B", 0, 0, 5, 5);
    Walk(R"(<R><P ID="A"><P ID="first"/><P ID="second"/></P><P ID="B"/></R>)");
    EXPECT_EQ(At(pFirst), (Place{103, 44}));
    EXPECT_EQ(At(pSecond), (Place{105, 46}));
    EXPECT_EQ(At(b), (Place{130, 40})); // the row goes on behind A, not behind its children
}

TEST_F(GroupWalker, AContainerInARowDoesNotMoveTheRowsCursor) {
    Panel("A", 100, 40, 30, 10);
    CControl* b = Panel("B", 0, 0, 20, 5);
    CControl* c = Panel("C", 0, 0, 5, 5);
    Walk(R"(<R><P ID="A"/><T><P ID="B"/></T><P ID="C"/></R>)");
    EXPECT_EQ(At(b), (Place{130, 40})); // T has the row's flow and a cursor of its own
    EXPECT_EQ(At(c), (Place{130, 40}));
}

TEST_F(GroupWalker, AColumnInARowStartsAnew) {
    Panel("A", 100, 40, 30, 10);
    CControl* b = Panel("B", 500, 600, 20, 5);
    CControl* c = Panel("C", 0, 0, 5, 5);
    Walk(R"(<R><P ID="A"/><C><P ID="B"/><P ID="C"/></C></R>)");
    EXPECT_EQ(At(b), (Place{500, 600}));
    EXPECT_EQ(At(c), (Place{500, 605}));
}

TEST_F(GroupWalker, AControlThatIsMissingLeavesNoGap) {
    Panel("A", 100, 40, 30, 10);
    Number(g_stNameMaps.mapPanel, "off");
    CControl* c = Panel("C", 0, 0, 5, 5);
    Walk(R"(<R><P ID="off"/><P ID="A"/><P ID="off"/><P ID="C"/></R>)");
    EXPECT_EQ(At(c), (Place{130, 40}));
}

TEST_F(GroupWalker, TextsLineUpByTheirMeasuredSize) {
    Panel("A", 100, 40, 30, 10);
    Text("word", u"abc");
    CControl* p = Text("unit", u"W");
    Walk(R"(<R><P ID="A"/><T ID="word"/><T ID="unit"/></R>)");
    EXPECT_EQ(At(p), (Place{130 + 24, 40}));
}

TEST_F(GroupWalker, AWalkMayBeginInTheMiddleOfARow) {
    CControl* a = Panel("A", 100, 40, 30, 10);
    CControl* b = Panel("B", 0, 0, 5, 5);
    tinyxml2::XMLElement* pGroup = Group(R"(<P ID="A"/><P ID="B"/>)");
    CControl* pLast = nullptr;
    EXPECT_TRUE(g_fnWalkGroup(pGroup->FirstChildElement(), nullptr, 0, FLOW_ROW, 10, 20, &pLast));
    EXPECT_EQ(At(a), (Place{10, 20}));
    EXPECT_EQ(At(b), (Place{40, 20}));
    EXPECT_EQ(pLast, b);
    EXPECT_TRUE(g_fnWalkGroup(pGroup->FirstChildElement(), nullptr, 0, FLOW_COLUMN, 10, 20, nullptr));
    EXPECT_EQ(At(b), (Place{10, 30}));
}

TEST_F(GroupWalker, AnyOtherFlowMovesNothing) {
    CControl* a = Panel("A", 100, 40, 30, 10);
    for (const u32 uFlow : {0u, 1u, 6u, 0xFFFFFFFFu}) {
        CControl* pLast = nullptr;
        g_fnWalkGroup(Group(R"(<P ID="A"/>)")->FirstChildElement(), nullptr, 0, uFlow, 10, 20, &pLast);
        EXPECT_EQ(At(a), (Place{100, 40}));
        EXPECT_EQ(pLast, a);
    }
}

TEST_F(GroupWalker, TheLastPlacedIsOfThatLevelAndOfItsContainers) {
    CControl* a = Panel("A", 0, 0, 10, 10);
    CControl* pChild = Panel("child", 0, 0, 10, 10);
    CControl* b = Panel("B", 0, 0, 10, 10);
    CControl* pLast = nullptr;
    const auto Last = [&](const std::string& sz) {
        pLast = nullptr;
        g_fnWalkGroup(Group(sz)->FirstChildElement(), nullptr, 0, FLOW_NONE, 0, 0, &pLast);
        return pLast;
    };
    EXPECT_EQ(Last(R"(<P ID="A"><P ID="child"/></P>)"), a); // not what hangs under it
    EXPECT_EQ(ParentOf(pChild), a);
    EXPECT_EQ(Last(R"(<P ID="A"/><C><P ID="B"/></C>)"), b);
    EXPECT_EQ(Last(R"(<P ID="A"/><R><T><I><P ID="B"/></I></T></R>)"), b);
    EXPECT_EQ(Last(R"(<P ID="A"/><A><P ID="B"/></A>)"), b);
    EXPECT_EQ(Last(R"(<X/>)"), nullptr);
}

// --- loops -------------------------------------------------------------------------------------------------

TEST_F(GroupWalker, ALoopWalksItsChildrenForEachInstance) {
    CControl* ap[4];
    for (u32 u = 0; u < 4; ++u) ap[u] = Panel("A", static_cast<f32>(10 * u), 0, 5, 5, u);
    Walk(R"(<A StartIndex="1" EndIndex="2"><P ID="A"/></A>)");
    EXPECT_FALSE(InTree(ap[0]));
    EXPECT_TRUE(AtRoot(ap[1]));
    EXPECT_TRUE(AtRoot(ap[2]));
    EXPECT_FALSE(InTree(ap[3]));
}

TEST_F(GroupWalker, DefaultsOfALoopAre0) {
    CControl* p0 = Panel("A", 0, 0, 5, 5, 0);
    CControl* p1 = Panel("A", 0, 0, 5, 5, 1);
    Walk(R"(<A><P ID="A"/></A>)");
    EXPECT_TRUE(InTree(p0));
    EXPECT_FALSE(InTree(p1));
    Walk(R"(<A EndIndex="1"><P ID="A"/></A>)");
    EXPECT_TRUE(InTree(p1));
}

TEST_F(GroupWalker, ALoopWhoseEndIsBelowItsStartWalksNothing) {
    CControl* p = Panel("A", 0, 0, 5, 5, 1);
    Walk(R"(<A StartIndex="1" EndIndex="0"><P ID="A"/></A>)");
    EXPECT_FALSE(InTree(p));
}

TEST_F(GroupWalker, BoundsOfALoopAreExpressions) {
    CControl* ap[4];
    for (u32 u = 0; u < 4; ++u) ap[u] = Panel("A", 0, 0, 5, 5, u);
    g_stVariables.uGPUNum = 3;
    Walk(R"(<A StartIndex="GPUNum - 2" EndIndex="GPUNum - 1"><P ID="A"/></A>)");
    g_stVariables.uGPUNum = 0;
    EXPECT_FALSE(InTree(ap[0]));
    EXPECT_TRUE(InTree(ap[1]));
    EXPECT_TRUE(InTree(ap[2]));
    EXPECT_FALSE(InTree(ap[3]));
}

TEST_F(GroupWalker, ALoopInAColumnLinesItsRoundsUp) {
    CControl* ap[3];
    for (u32 u = 0; u < 3; ++u) ap[u] = Panel("A", 50, 60, 10, static_cast<f32>(10 + u), u);
    CControl* pAfter = Panel("B", 0, 0, 5, 5);
    Walk(R"(<C><A EndIndex="2"><P ID="A"/></A><P ID="B"/></C>)");
    EXPECT_EQ(At(ap[0]), (Place{50, 60}));
    EXPECT_EQ(At(ap[1]), (Place{50, 70}));
    EXPECT_EQ(At(ap[2]), (Place{50, 81}));
    EXPECT_EQ(At(pAfter), (Place{50, 93})); // the loop moves the cursor of its level
}

TEST_F(GroupWalker, ALoopInARowLinesItsRoundsUpAndSkipsWhatIsMissing) {
    CControl* p0 = Panel("A", 50, 60, 10, 10, 0);
    CControl* p2 = Panel("A", 0, 0, 10, 10, 2);
    Walk(R"(<R><A EndIndex="2"><P ID="A"/></A></R>)");
    EXPECT_EQ(At(p0), (Place{50, 60}));
    EXPECT_EQ(At(p2), (Place{60, 60}));
}

TEST_F(GroupWalker, ARoundOfTwoControlsEndsWithTheLastOnTheOuterCursor) {
    CControl* a = Panel("A", 50, 60, 10, 10);
    CControl* b = Panel("B", 0, 0, 20, 10);
    CControl* c = Panel("C", 0, 0, 5, 5);
    Walk(R"(<R><P ID="A"/><A><P ID="C"/><P ID="B"/></A></R>)");
    EXPECT_EQ(At(a), (Place{50, 60}));
    EXPECT_EQ(At(c), (Place{60, 60}));
    // Inside the round B stood behind C, at 65; the rule of the outer row then puts it on that row's cursor.
    EXPECT_EQ(At(b), (Place{60, 60}));
}

TEST_F(GroupWalker, ALoopKeepsItsParent) {
    CControl* pFrame = Panel("frame", 10, 10, 100, 100);
    CControl* p = Panel("A", 1, 2, 5, 5, 1);
    Walk(R"(<P ID="frame"><A StartIndex="1" EndIndex="1"><P ID="A"/></A></P>)");
    EXPECT_EQ(ParentOf(p), pFrame);
    EXPECT_EQ(At(p), (Place{11, 12}));
}

TEST_F(GroupWalker, NestedLoopsTakeTheInnerIndex) {
    CControl* ap[3];
    for (u32 u = 0; u < 3; ++u) ap[u] = Panel("A", 0, 0, 5, 5, u);
    Walk(R"(<A StartIndex="0" EndIndex="1"><A StartIndex="2" EndIndex="2"><P ID="A"/></A></A>)");
    EXPECT_FALSE(InTree(ap[0]));
    EXPECT_FALSE(InTree(ap[1]));
    EXPECT_TRUE(InTree(ap[2]));
}

TEST_F(GroupWalker, ThreeLevelsOfLoopColumnAndRow) {
    // Two cards, each a row of a title and a value, in one column of frames.
    CControl *apFrame[2], *apTitle[2], *apValue[2];
    for (u32 u = 0; u < 2; ++u) {
        apFrame[u] = Panel("frame", 20, 30, 200, 24, u);
        apTitle[u] = Panel("title", 4, 2, 80, 20, u);
        apValue[u] = Panel("value", 0, 0, 60, 20, u);
    }
    Walk(
        R"(<Column><Array EndIndex="1"><Panel ID="frame"><Row><Panel ID="title"/><Panel ID="value"/></Row></Panel>
            </Array></Column>)");
    for (u32 u = 0; u < 2; ++u) {
        const f32 y = 30 + 24 * static_cast<f32>(u);
        EXPECT_EQ(At(apFrame[u]), (Place{20, y}));
        EXPECT_EQ(At(apTitle[u]), (Place{24, y + 2}));
        EXPECT_EQ(At(apValue[u]), (Place{104, y + 2}));
        EXPECT_EQ(ParentOf(apValue[u]), apFrame[u]);
    }
}

TEST_F(GroupWalker, InstancesThatCannotExistAreNotWalked) {
    CControl* p = Panel("A", 0, 0, 5, 5, 63);
    CControl* pBeyond = Panel("A", 0, 0, 5, 5, 64);
    Walk(R"(<A StartIndex="-2147483647" EndIndex="2147483647"><P ID="A"/></A>)");
    EXPECT_TRUE(InTree(p));
    EXPECT_FALSE(InTree(pBeyond));
}

// --- conditions --------------------------------------------------------------------------------------------

TEST_F(GroupWalker, AConditionDecides) {
    CControl* a = Panel("A", 0, 0, 5, 5);
    CControl* b = Panel("B", 0, 0, 5, 5);
    g_stVariables.uGPUNum = 2;
    Walk(
        R"(<I Condition="GPUNum &gt; 1 &amp;&amp; 1"><P ID="A"/></I><I Condition="GPUNum &gt; 2"><P ID="B"/></I>)");
    g_stVariables.uGPUNum = 0;
    EXPECT_TRUE(InTree(a));
    EXPECT_FALSE(InTree(b));
}

TEST_F(GroupWalker, AConditionThatIsNotThereIsTrue) {
    CControl* a = Panel("A", 0, 0, 5, 5);
    Walk(R"(<I><P ID="A"/></I>)");
    EXPECT_TRUE(InTree(a));
}

TEST_F(GroupWalker, AnEmptyConditionIsFalse) {
    CControl* a = Panel("A", 0, 0, 5, 5);
    Walk(R"(<I Condition=""><P ID="A"/></I>)");
    EXPECT_FALSE(InTree(a));
}

TEST_F(GroupWalker, AControlInsideAConditionHasNoParentEvenInsideAnotherControl) {
    CControl* pFrame = Panel("frame", 100, 100, 50, 50);
    CControl* p = Panel("A", 1, 2, 5, 5);
    Walk(R"(<P ID="frame"><I><P ID="A"/></I></P>)");
    EXPECT_TRUE(AtRoot(pFrame));
    EXPECT_TRUE(AtRoot(p));
    EXPECT_EQ(At(p), (Place{1, 2}));
}

TEST_F(GroupWalker, AConditionInARowKeepsTheFlow) {
    Panel("A", 50, 60, 10, 10);
    CControl* b = Panel("B", 0, 0, 5, 5);
    Walk(R"(<R><P ID="A"/><I><P ID="B"/></I></R>)");
    EXPECT_EQ(At(b), (Place{60, 60}));
}

TEST_F(GroupWalker, ALoopRoundThatEndsInAConditionIsMovedAgainstTheRoot) {
    Panel("frame", 100, 100, 50, 50);
    CControl* a = Panel("A", 10, 10, 10, 10);
    CControl* b = Panel("B", 0, 0, 10, 10);
    Walk(R"(<P ID="frame"><R><P ID="A"/><A><I><P ID="B"/></I></A></R></P>)");
    EXPECT_EQ(At(a), (Place{110, 110}));
    EXPECT_TRUE(AtRoot(b));
    EXPECT_EQ(At(b), (Place{120, 110}));
}

// --- hostile groups ----------------------------------------------------------------------------------------

TEST_F(GroupWalker, ElementsBeyondTheDepthArePassedOver) {
    CControl* pDeep = Panel("deep", 0, 0, 5, 5);
    CControl* pAfter = Panel("after", 0, 0, 5, 5);
    tinyxml2::XMLDocument document; // made by hand: the parser takes 100 levels
    tinyxml2::XMLElement* pGroup = document.NewElement("Group");
    document.InsertEndChild(pGroup);
    tinyxml2::XMLElement* p = pGroup;
    for (u32 u = 0; u < g_uGroupDepthMost + 1; ++u) p = p->InsertNewChildElement("T");
    p->InsertNewChildElement("P")->SetAttribute("ID", "deep");
    pGroup->InsertNewChildElement("P")->SetAttribute("ID", "after");
    EXPECT_TRUE(g_fnWalkWholeGroup(pGroup));
    EXPECT_FALSE(InTree(pDeep));
    EXPECT_TRUE(InTree(pAfter));
}

TEST_F(GroupWalker, TheParsersDeepestDocumentIsWalkedToItsEnd) {
    CControl* pDeep = Panel("deep", 0, 0, 5, 5);
    std::string szText;
    for (u32 u = 0; u < 95; ++u) szText += "<T>";
    szText += R"(<P ID="deep"/>)";
    for (u32 u = 0; u < 95; ++u) szText += "</T>";
    Walk(szText);
    EXPECT_TRUE(InTree(pDeep));
}

TEST_F(GroupWalker, NestedLoopsEndWithTheVisitsOfAWalk) {
    CControl* p = Panel("A", 0, 0, 5, 5);
    std::string szText;
    for (u32 u = 0; u < 20; ++u) szText += R"(<A EndIndex="63">)";
    szText += "<X/>";
    for (u32 u = 0; u < 20; ++u) szText += "</A>";
    Walk(R"(<P ID="A"/>)" + szText + R"(<P ID="A"/>)"); // 64 to the 20th rounds otherwise
    EXPECT_TRUE(InTree(p));
}

TEST_F(GroupWalker, AWalkTakesSoManyElementsAndNoMore) {
    CControl* p = Panel("A", 0, 0, 5, 5);
    std::string szText;
    for (u32 u = 0; u + 1 < g_uGroupVisitsMost; ++u) szText += "<X/>";
    Walk(szText + R"(<P ID="A"/>)");
    EXPECT_TRUE(InTree(p));
    m_pManager->m_fnRemoveSubtree(p);
    Walk(szText + R"(<X/><P ID="A"/>)");
    EXPECT_FALSE(InTree(p));
}

} // namespace
