#include "group_fixture.h"

#include "config/fixed/row_links.h"

namespace {

class GroupOrder : public GroupTest {
  protected:
    /// Tags and IDs in document order, with what is below in parentheses.
    static std::string Shape(const tinyxml2::XMLElement* pParent) {
        std::string sz;
        for (auto* p = pParent->FirstChildElement(); p; p = p->NextSiblingElement()) {
            sz += sz.empty() ? "" : " ";
            sz += p->Attribute("ID") ? p->Attribute("ID") : p->Value();
            if (p->FirstChildElement()) sz += "(" + Shape(p) + ")";
        }
        return sz;
    }
    /// Items named like "3 x" are of row 3.
    std::string Reordered(const std::string& szElements) {
        tinyxml2::XMLElement* pGroup = Group(szElements);
        g_fnReorderGroup(
            pGroup, [](const char* szId) { return *szId >= '0' && *szId <= '9' ? *szId - '0' : g_iNoRank; });
        return Shape(pGroup);
    }
};

TEST_F(GroupOrder, ChildrenAreOrderedByTheirRows) {
    EXPECT_EQ(Reordered(R"(<P ID="3"/><P ID="1"/><P ID="2"/>)"), "1 2 3");
    EXPECT_EQ(Reordered(R"(<P ID="1"/><P ID="2"/><P ID="3"/>)"), "1 2 3");
}

TEST_F(GroupOrder, ChildrenWithoutARowKeepTheirPlaces) {
    EXPECT_EQ(Reordered(R"(<X/><P ID="3"/><P ID="back"/><P ID="1"/><Y/><P ID="2"/>)"), "X 1 back 2 Y 3");
}

TEST_F(GroupOrder, ChildrenOfOneRowKeepTheirOrder) {
    EXPECT_EQ(Reordered(R"(<P ID="2 a"/><P ID="1 a"/><P ID="2 b"/><P ID="1 b"/>)"), "1 a 1 b 2 a 2 b");
}

TEST_F(GroupOrder, AChildStandsForTheRowOfItsFirstId) {
    EXPECT_EQ(Reordered(R"(<R><T><P ID="3"/></T><P ID="0"/></R><R><P ID="1"/></R>)"), "R(1) R(0 T(3))");
    EXPECT_EQ(Reordered(R"(<P ID="frame"><P ID="0"/></P><P ID="2"/><P ID="1"/>)"), "frame(0) 1 2");
}

TEST_F(GroupOrder, EveryLevelIsReorderedThreeDeep) {
    EXPECT_EQ(Reordered(R"(<C><A><R><P ID="9"/><P ID="8"/></R><R><P ID="7"/></R></A></C>
                           <C><P ID="6"/><P ID="5"/></C>)"),
              "C(5 6) C(A(R(7) R(8 9)))");
}

TEST_F(GroupOrder, AnEmptyIdIsNone) {
    EXPECT_EQ(Reordered(R"(<T ID=""><P ID="2"/></T><P ID="1"/>)"), "1 (2)");
}

TEST_F(GroupOrder, CommentsAndTextsDoNotDisturb) {
    EXPECT_EQ(Reordered(R"(<!-- first --><P ID="2"/>text<P ID="1"/><!-- last -->)"), "1 2");
}

TEST_F(GroupOrder, ReorderingTwiceIsReorderingOnce) {
    tinyxml2::XMLElement* pGroup = Group(R"(<P ID="3"/><X/><R><P ID="2"/><P ID="1"/></R>)");
    const GroupRank fnRank = [](const char* szId) { return *szId - '0'; };
    g_fnReorderGroup(pGroup, fnRank);
    EXPECT_EQ(Shape(pGroup), "R(1 2) X 3");
    g_fnReorderGroup(pGroup, fnRank);
    EXPECT_EQ(Shape(pGroup), "R(1 2) X 3");
    g_fnReorderGroup(nullptr, fnRank);
}

TEST_F(GroupOrder, TheWalkFollowsTheNewOrder) {
    CControl* pOne = Panel("1", 10, 10, 50, 20);
    CControl* pTwo = Panel("2", 10, 70, 50, 30);
    Reordered(R"(<C><P ID="2"/><P ID="1"/></C>)");
    EXPECT_TRUE(g_fnWalkWholeGroup(m_document.RootElement()));
    EXPECT_EQ(At(pOne), (Place{10, 10}));
    EXPECT_EQ(At(pTwo), (Place{10, 30}));
}

TEST_F(GroupOrder, TheFirstIdIsThatOfDocumentOrder) {
    EXPECT_EQ(g_fnFirstGroupId(Group(R"(<X/><T><Y/><P ID="a"><P ID="b"/></P></T><P ID="c"/>)")), "a");
    EXPECT_EQ(g_fnFirstGroupId(Group("<X/>")), "");
    EXPECT_EQ(g_fnFirstGroupId(nullptr), "");
    EXPECT_EQ(g_fnFirstGroupId(Group("<P ID=\"" + std::string(300, 'x') + "\"/>")), std::string(255, 'x'));
}

TEST_F(GroupOrder, DeepGroupsAreReorderedToTheBoundAndNoFurther) {
    tinyxml2::XMLDocument document;
    tinyxml2::XMLElement* pGroup = document.NewElement("Group");
    document.InsertEndChild(pGroup);
    tinyxml2::XMLElement* p = pGroup;
    for (u32 u = 0; u < 50000; ++u) p = p->InsertNewChildElement("T");
    p->InsertNewChildElement("P")->SetAttribute("ID", "1");
    g_fnReorderGroup(pGroup, [](const char*) { return 0; });
    EXPECT_EQ(g_fnFirstGroupId(pGroup), "");
    // The document's own destructor would go as deep: take it apart from below.
    while (p != pGroup) {
        tinyxml2::XMLElement* pParent = p->Parent()->ToElement();
        pParent->DeleteChild(p);
        p = pParent;
    }
}

// --- sensors -----------------------------------------------------------------------------------------------

class GroupSensors : public GroupTest {
  protected:
    void SetUp() override {
        GroupTest::SetUp();
        g_stNameMaps.mapPanel = {{"S_GROUP_EXTENSION_FIRST_TITLE_PANELID", 53}, {"S_FPS_TITLE_PANELID", 1}};
        g_stNameMaps.mapTextBox = {{"S_GROUP_EXTENSION_FIRST_TITLE_TEXTBOXID", 60}};
    }
    static CControl* Row(u32 uRow, u32 uGroup, f32 x, f32 y) {
        auto* p = new recording::CPanel;
        p->m_fnSetGeometry(100, 20);
        p->m_fnSetAnchor(1, x, y);
        EXPECT_EQ(g_fnRegisterXCtrl(IdPanel, g_fnMakeLB_ID(uGroup, 53 + uRow), p), 1);
        return p;
    }
    CControl* Title(u32 uRow, u32 uGroup) {
        auto* p = new CLiveTextBox;
        p->m_fnSetFont(&m_font);
        EXPECT_EQ(g_fnRegisterTextCtrl(uGroup, 60 + uRow, p), 1);
        return p;
    }
    static constexpr char s_szRow[] =
        R"(<P ID="S_GROUP_EXTENSION_FIRST_TITLE_PANELID"><T ID="S_GROUP_EXTENSION_FIRST_TITLE_TEXTBOXID"/></P>)";
};

TEST_F(GroupSensors, TheExtensionRowIsWalkedOncePerSensorAndGroup) {
    CControl* p00 = Row(0, 0, 10, 10);
    CControl* p02 = Row(0, 2, 0, 0);
    CControl* p70 = Row(7, 0, 0, 0);
    CControl* pTitle = Title(7, 0);
    CControl* pHidden = Row(3, 0, 0, 0);
    g_listGroupExtension = {{"PUMP", 0, 0}, {"PUMP", 0, 2}, {"FLOW", 7, 0}};
    Walk("<C>" + std::string(s_szRow) + "</C>");
    EXPECT_EQ(At(p00), (Place{10, 10}));
    EXPECT_EQ(At(p02), (Place{10, 30}));
    EXPECT_EQ(At(p70), (Place{10, 50}));
    EXPECT_EQ(ParentOf(pTitle), p70);
    EXPECT_FALSE(InTree(pHidden));
}

TEST_F(GroupSensors, WithoutSensorsTheExtensionRowIsNotWalked) {
    CControl* p = Row(0, 0, 10, 10);
    Walk(s_szRow);
    EXPECT_FALSE(InTree(p));
}

TEST_F(GroupSensors, OtherRowsAreWalkedOnce) {
    auto* pFps = new recording::CPanel;
    pFps->m_fnSetGeometry(100, 20);
    ASSERT_EQ(g_fnRegisterXCtrl(IdPanel, g_fnMakeLB_ID(0, 1), pFps), 1);
    pFps->m_fnSetAnchor(1, 5, 5);
    CControl* pA = Row(0, 0, 0, 0);
    CControl* pB = Row(1, 4, 0, 0);
    g_listGroupExtension = {{"A", 0, 0}, {"B", 1, 4}};
    // The column holds both kinds of rows, the sensors' first: it does not stand for sensors itself.
    Walk("<C>" + std::string(s_szRow) + R"(<P ID="S_FPS_TITLE_PANELID"/></C>)");
    EXPECT_EQ(At(pA), (Place{0, 0}));
    EXPECT_EQ(At(pB), (Place{0, 20}));
    EXPECT_EQ(At(pFps), (Place{0, 40}));
}

TEST_F(GroupSensors, AContainerOfOneExtensionRowIsWhatTheSensorsLineUpIn) {
    CControl* pA = Row(0, 1, 3, 4);
    CControl* pB = Row(1, 2, 5, 6);
    g_listGroupExtension = {{"A", 0, 1}, {"B", 1, 2}};
    Walk("<T><R><X/>" + std::string(s_szRow) + "</R></T>");
    EXPECT_EQ(At(pA), (Place{3, 4}));
    EXPECT_EQ(At(pB), (Place{103, 4}));
}

TEST_F(GroupSensors, AContainerOfSeveralExtensionItemsIsWalkedPerSensorAsAWhole) {
    CControl* pA = Row(0, 1, 3, 4);
    CControl* pB = Row(1, 2, 5, 60);
    CControl* pTitleA = Title(0, 1);
    CControl* pTitleB = Title(1, 2);
    g_listGroupExtension = {{"A", 0, 1}, {"B", 1, 2}};
    Walk(
        R"(<R><P ID="S_GROUP_EXTENSION_FIRST_TITLE_PANELID"/><T ID="S_GROUP_EXTENSION_FIRST_TITLE_TEXTBOXID"/></R>)");
    EXPECT_EQ(At(pA), (Place{3, 4}));
    EXPECT_EQ(At(pTitleA), (Place{103, 4}));
    EXPECT_EQ(At(pB), (Place{5, 60})); // a row of its own
    EXPECT_EQ(At(pTitleB), (Place{105, 60}));
}

TEST_F(GroupSensors, SensorsThatTheGroupNamesAreTakenOut) {
    std::vector<stGroupExtension> list = {{"PUMP", 0, 0}, {"PUMP", 0, 2}, {"FLOW", 1, 0}, {"PUM", 2, 0}};
    g_fnDropNamedExtensions(
        Group(R"(<C><A><P ID="S_PUMP_TITLE_PANELID"/></A></C><P ID="S_FLOWN_TITLE_PANELID"/>
        <P ID="OTHER_FLOW_TITLE_PANELID"/><P ID="S_FLOW_TITLE_PANELID_"/>)"),
        "S", list);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].szWord, "FLOW");
    EXPECT_EQ(list[1].szWord, "PUM");
    g_fnDropNamedExtensions(Group(R"(<N ID="S_PUM_VALUE_NUMBOXID"/><T ID="S_FLOW_UNIT_TEXTBOXID"/>)"), "S",
                            list);
    EXPECT_TRUE(list.empty());
    list = {{"PUMP", 0, 0}};
    g_fnDropNamedExtensions(nullptr, "S", list);
    EXPECT_EQ(list.size(), 1u);
}

TEST_F(GroupSensors, ExtensionNamesAreKnownByTheirWord) {
    EXPECT_TRUE(g_fnIsExtensionName("CLASSIC_STYLE_GROUP_EXTENSION_FIRST_DATA_PANELID"));
    EXPECT_FALSE(g_fnIsExtensionName("CLASSIC_STYLE_FPS_INFO_PANELID"));
    EXPECT_FALSE(g_fnIsExtensionName(""));
}

// --- rows after the walk -----------------------------------------------------------------------------------

class RowLinks : public GroupTest {};

TEST_F(RowLinks, TitleValueAndUnitHangInTheirPanelsForEveryInstance) {
    CControl* pTitlePanel = Panel("title", 0, 0, 10, 10, 63);
    CControl* pDataPanel = Panel("data", 0, 0, 10, 10, 63);
    CControl* pTitle = Text("title", u"a", 63);
    CControl* pUnit = Text("unit", u"a", 63);
    auto* pNumber = new CLiveNumBox;
    ASSERT_EQ(g_fnRegisterXCtrl(IdNumBox, g_fnMakeLB_ID(63, 9), pNumber), 1);
    const stRowLink aRows[] = {{g_stNameMaps.mapPanel["title"], g_stNameMaps.mapTextBox["title"],
                                g_stNameMaps.mapPanel["data"], 9, g_stNameMaps.mapTextBox["unit"]}};
    g_fnLinkRows(aRows);
    EXPECT_EQ(ParentOf(pTitle), pTitlePanel);
    EXPECT_EQ(ParentOf(pNumber), pDataPanel);
    EXPECT_EQ(ParentOf(pUnit), pDataPanel);
    EXPECT_FALSE(InTree(pTitlePanel)); // panels hang where the group put them
}

TEST_F(RowLinks, WhatIsMissingIsPassedOver) {
    CControl* pTitle = Text("title", u"a");
    CControl* pUnit = Text("unit", u"a");
    const stRowLink aRows[] = {
        {g_uNoBID, g_stNameMaps.mapTextBox["title"], 77, g_uNoBID, g_stNameMaps.mapTextBox["unit"]}};
    g_fnLinkRows(aRows);
    EXPECT_FALSE(InTree(pTitle)); // without a panel a text does not fall to the root
    EXPECT_FALSE(InTree(pUnit));
}

TEST_F(RowLinks, InstancesDoNotMix) {
    CControl* p0 = Panel("title", 0, 0, 10, 10, 0);
    CControl* p1 = Panel("title", 0, 0, 10, 10, 1);
    CControl* t0 = Text("title", u"a", 0);
    CControl* t1 = Text("title", u"a", 1);
    CControl* t2 = Text("title", u"a", 2);
    const stRowLink aRows[] = {
        {g_stNameMaps.mapPanel["title"], g_stNameMaps.mapTextBox["title"], g_uNoBID, g_uNoBID, g_uNoBID}};
    g_fnLinkRows(aRows);
    EXPECT_EQ(ParentOf(t0), p0);
    EXPECT_EQ(ParentOf(t1), p1);
    EXPECT_FALSE(InTree(t2));
}

TEST_F(RowLinks, WithoutAManagerNothingHappens) {
    g_fnDestroyManagers();
    const stRowLink aRows[] = {{0, 0, 0, 0, 0}};
    g_fnLinkRows(aRows);
}

} // namespace
