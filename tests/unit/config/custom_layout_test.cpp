// From init records to controls that hang together: creation, attachment, stacking.
#include "config/items/item_map.h"
#include "config/items/item_property.h"
#include "controls/panel.h"
#include "draw/backdrop.h"
#include "tests/unit/config/custom_fixture.h"

#include <utility>

namespace {

class CustomLayout : public CustomTest {
  protected:
    /// Creates and links.
    void Build(const std::string& szItems) {
        ASSERT_TRUE(Create(szItems));
        g_fnLinkControls();
    }
    static std::string Graph(const char* szName, const std::string& szMore = "") {
        return Item("LineGraph", szName,
                    "DataFullName='FPS' DataNum='4' ContentSizeW='40' ContentSizeH='20' " + szMore);
    }
    static std::string Chart(const char* szName, const std::string& szMore = "") {
        return Item("PieChart", szName,
                    "DataFullName='FPS' ContentSizeW='40' ContentSizeH='40' EndDegree='90' " + szMore);
    }
    /// Names of the controls in the order that the batcher gets.
    std::string Order(const std::string& szItems) {
        std::string szOrder;
        StartOver();
        EXPECT_TRUE(Create(szItems));
        const std::vector<CControl*> order = g_fnColorListOrder(Info(szItems));
        for (const CControl* p : order)
            for (const char cLetter : {'L', 'C'})
                for (const auto& [szName, u64Id] : *g_fnControlNames(cLetter))
                    if (g_fnFindCtrlByName(cLetter, szName) == p) szOrder += szName;
        return szOrder;
    }
    /// Records of controls that don't exist, under a frame that does.
    static stAssembleInfo Lost(const char* szFrame) {
        stAssembleInfo st;
        st.u64FramePanelLB_ID = Id(szFrame);
        return st;
    }
};

// --- assembly records --------------------------------------------------------------------------------------

TEST_F(CustomLayout, ASecondAssemblyRecordOfAnIdIsRefusedAndTheFirstStays) {
    stAssembleInfo st;
    st.u64ItemId = 7;
    st.u64FramePanelLB_ID = 1;
    EXPECT_TRUE(g_fnInsertAssembleInfo(st));
    st.u64FramePanelLB_ID = 2;
    EXPECT_FALSE(g_fnInsertAssembleInfo(st));
    EXPECT_EQ(Logged("g_fnInsertAssembleInfo() insert [7] error\n"), 1);
    EXPECT_EQ(g_mapAssembleInfo.at(7).u64FramePanelLB_ID, 1u);
}

TEST_F(CustomLayout, AssemblyRecordsAreKeptByItemId) {
    Build(Text("b") + Text("a"));
    std::vector<u64> ids;
    for (const auto& [u64Id, st] : g_mapAssembleInfo) ids.push_back(u64Id);
    EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end()));
    EXPECT_EQ(ids.size(), 2u);
    EXPECT_EQ(Assembly("a").u64ItemId, Id("a"));
}

// --- attachment --------------------------------------------------------------------------------------------

TEST_F(CustomLayout, ControlsHangFromTheFrameAndTheFrameFromTheRoot) {
    Build(Text("t") + Number("n", "FPS") + Item("Panel", "p") + Graph("l") + Chart("c") +
          Number("x", "RESOLUTION"));
    for (const char* szFrame : {"t_F", "n_F", "p_F", "l_F", "c_F", "x_F"}) {
        ASSERT_NE(Panel(szFrame), nullptr) << szFrame;
        EXPECT_TRUE(IsInTree(Panel(szFrame))) << szFrame;
        EXPECT_EQ(ParentOf(Panel(szFrame)), nullptr) << szFrame;
    }
    EXPECT_EQ(ParentOf(TextBox("t")), Panel("t_F"));
    EXPECT_EQ(ParentOf(NumBox("n")), Panel("n_F"));
    EXPECT_EQ(ParentOf(Panel("p")), Panel("p_F"));
    EXPECT_EQ(ParentOf(LineGraph("l")), Panel("l_F"));
    EXPECT_EQ(ParentOf(PieChart("c")), Panel("c_F"));
    EXPECT_EQ(ParentOf(TextBox("x")), Panel("x_F"));
    EXPECT_EQ(ParentOf(NumBox("x[0]")), Panel("x_F"));
    EXPECT_EQ(ParentOf(NumBox("x[1]")), Panel("x_F"));
}

TEST_F(CustomLayout, AnItemOfAnOwnerHangsFromTheOwnersFrameUnderItsWholeName) {
    Build(Text("t@Box", "Text='a' FrameAnchorX='5' FrameAnchorY='6' ContentAnchorX='1'") +
          Item("Panel", "Box", "FrameAnchorX='100' FrameAnchorY='200' FrameSizeW='50'"));
    EXPECT_TRUE(g_mapItemByName.contains("t@Box"));
    EXPECT_EQ(ParentOf(Panel("t_F@Box")), Panel("Box_F"));
    EXPECT_EQ(ParentOf(TextBox("t@Box")), Panel("t_F@Box"));
    f32 x = 0, y = 0;
    TextBox("t@Box")->m_fnGetPosition(&x, &y, nullptr);
    EXPECT_EQ(x, 106);
    EXPECT_EQ(y, 206);
}

TEST_F(CustomLayout, AnOwnerIsShownByItsItems) {
    ReadItems(Text("t@Box") + Item("Panel", "Box"));
    CItemProperty_Base* pOwner = g_mapItemByName.find("Box")->second.get();
    pOwner->m_bIsShow = 0;
    ASSERT_TRUE(g_fnCreateCustomControls());
    EXPECT_EQ(pOwner->m_bIsShow, 1u);
}

TEST_F(CustomLayout, AnOwnerThatDoesNotExistIsLoggedAndTheItemHangsFromNothing) {
    Build(Text("t@Nobody"));
    EXPECT_EQ(Logged("g_fnQueryItemProperty: Nobody fail"), 1);
    ASSERT_NE(TextBox("t@Nobody"), nullptr);
    ASSERT_NE(Panel("t_F@Nobody"), nullptr);
    EXPECT_FALSE(IsInTree(Panel("t_F@Nobody")));
    EXPECT_EQ(ParentOf(TextBox("t@Nobody")), Panel("t_F@Nobody"));
}

TEST_F(CustomLayout, AHiddenOwnerIsNoOwner) {
    Build(Text("t@Box") + "<Panel Name='Box' IsShow='0'/>");
    EXPECT_EQ(Logged("g_fnQueryItemProperty: Box fail"), 1);
}

TEST_F(CustomLayout, AnOwnersNameWithTwoMarksIsWhatFollowsTheLast) {
    Build(Text("a@b@Box") + Item("Panel", "Box"));
    EXPECT_EQ(ParentOf(Panel("a@b_F@Box")), Panel("Box_F"));
}

TEST_F(CustomLayout, AnItemWithAnOwnerOwnsNothing) {
    Build(Text("t@Box") + Item("Panel", "Box@Room") + Item("Panel", "Room"));
    EXPECT_EQ(Logged("g_fnQueryItemProperty: Box fail"), 1);
    EXPECT_EQ(ParentOf(Panel("Box_F@Room")), Panel("Room_F"));
}

TEST_F(CustomLayout, EachMissingControlIsReportedAndTheWalkGoesOn) {
    Build(Text("t"));
    stAssembleInfo st = Lost("t_F");
    st.listTextBox = {9001, Id("t")};
    st.listNumBox = {9002};
    st.listPanel = {9003};
    st.listImgBox = {9004};
    st.listLineGraph = {9005};
    st.listPieChart = {9006};
    s_aLines.clear();
    m_pManager->m_fnAddChild(nullptr, TextBox("t"));
    g_fnAttachByAssembly({}, {&st, 1});
    EXPECT_EQ(s_aLines, (std::vector<std::string>{"error ! u64TextBoxLB_ID: 9001 -> pTextBox is NULL",
                                                  "error ! u64NumBoxLB_ID: 9002 -> pNumBox is NULL",
                                                  "error ! u64PanelLB_ID: 9003 -> pPanel is NULL",
                                                  "error ! u64ImgBoxLB_ID: 9004 -> pImgBox is NULL",
                                                  "error ! u64LineGraphLB_ID: 9005 -> pLineGraph is NULL",
                                                  "error ! u64PieChartLB_ID: 9006 -> pPieChart is NULL"}));
    EXPECT_EQ(ParentOf(TextBox("t")), Panel("t_F"));
}

TEST_F(CustomLayout, WithoutAFrameTextsStayAtTheRootAndTheRestOutOfTheTree) {
    ReadItems(Text("t") + Number("n", "FPS"));
    stCustomInit st;
    g_fnInitItemByCustomStyle(g_mapItemByName, st);
    st.panels.clear();
    g_ppFont[0] = new CGivenFont;
    ASSERT_TRUE(g_fnCreateTextBoxes(st.texts) && g_fnCreateNumBoxes(st.numbers));
    g_fnAttachByAssembly(st.texts, st.infos);
    EXPECT_TRUE(IsInTree(TextBox("t")));
    EXPECT_EQ(ParentOf(TextBox("t")), nullptr);
    EXPECT_FALSE(IsInTree(NumBox("n")));
}

// --- creation ----------------------------------------------------------------------------------------------

TEST_F(CustomLayout, AListWithoutItemsIsALayout) {
    Build("");
    EXPECT_EQ(Logged("lstPieChartInit size: 0"), 1);
    EXPECT_TRUE(m_pManager->m_fnGetChildren(nullptr) == nullptr ||
                m_pManager->m_fnGetChildren(nullptr)->empty());
}

TEST_F(CustomLayout, TheNumberOfChartsIsLogged) {
    Build(Chart("a") + Chart("b") + Graph("c"));
    EXPECT_EQ(Logged("lstPieChartInit size: 2"), 1);
}

TEST_F(CustomLayout, FontsAreMadeWithTheTextOfTheItemsAndTheAssemblyEnds) {
    Build(Text("t", "Text='&#8364;'"));
    auto* pFont = dynamic_cast<CGivenFont*>(g_ppFont[0]);
    ASSERT_NE(pFont, nullptr);
    EXPECT_TRUE(pFont->m_setAdded.contains(0x20AC));
    EXPECT_TRUE(pFont->m_setAdded.contains('A'));
    EXPECT_EQ(TextBox("t")->m_pFont, pFont);
    u32 uFontId = 99;
    ASSERT_TRUE(g_fnGiveFontId(&uFontId));
    EXPECT_EQ(uFontId, 1u);
}

TEST_F(CustomLayout, AFontThatCannotBeMadeFailsTheCreationWithoutAWord) {
    CGivenFont::s_bRefuse = true;
    EXPECT_FALSE(Create(Text("t")));
    EXPECT_EQ(s_aLines.back(), "g_fnInitItemByCustomStyle() end\n");
    EXPECT_EQ(g_ppFont[0], nullptr);
    u32 uFontId = 99;
    ASSERT_TRUE(g_fnGiveFontId(&uFontId));
    EXPECT_EQ(uFontId, 0u) << "ids of the failed assembly are free again";
}

TEST_F(CustomLayout, AMemoFileWithoutTextFailsTheCreationAndAMissingOneDoesNot) {
    EXPECT_TRUE(Create(Item("Memo", "m", "FontName='Face' FileName='none.txt'")));
    EXPECT_EQ(TextBox("m"), nullptr);
    EXPECT_EQ(Logged("g_fnCheckMemoFile() error !\n"), 1);
    StartOver();
    m_folder.Write("Profiles/Mine/none.txt", "");
    EXPECT_FALSE(Create(Item("Memo", "m", "FontName='Face' FileName='none.txt'")));
}

TEST_F(CustomLayout, AControlThatCannotBeInitialisedFailsTheCreation) {
    for (const std::string& szItem :
         {Text("a"), Number("a", "FPS"), Item("Panel", "a"), Graph("a"), Chart("a")}) {
        for (i32 iMeshes = 0; iMeshes < 2; ++iMeshes) {
            recording::g_iMeshesLeft = iMeshes;
            EXPECT_FALSE(Create(szItem)) << szItem << " with meshes: " << iMeshes;
            recording::g_iMeshesLeft = -1;
            StartOver();
        }
    }
}

TEST_F(CustomLayout, FrostedPanelsAskForTheBackdropAndCountTheirDiameter) {
    Build(Item("Panel", "a", "PanelType='1'"));
    EXPECT_FALSE(g_bCaptureBackdrop);
    EXPECT_TRUE(g_mapBlurDiameters.empty());
    StartOver();
    Build(Item("Panel", "b", "PanelType='2' PanelScattering='12'") +
          Item("Panel", "c", "PanelType='2' PanelScattering='200'"));
    EXPECT_TRUE(g_bCaptureBackdrop);
    EXPECT_EQ(g_mapBlurDiameters, (std::map<u32, u32>{{12, 1}, {100, 1}}));
    EXPECT_EQ(Panel("b")->m_fnGetDrawKey(), g_keyBlurByDiameter[12]);
}

// --- stacking ----------------------------------------------------------------------------------------------

TEST_F(CustomLayout, OfTwoPanelsTheOneWithTheSmallerNameLiesOnTop) {
    Build(Item("Panel", "b") + Item("Panel", "a") + Item("Panel", "a@b"));
    const ControlList* pList = m_pManager->m_fnGetDrawList(g_keyColorList);
    ASSERT_NE(pList, nullptr);
    EXPECT_EQ(*pList, (ControlList{Panel("b"), Panel("b_F"), Panel("a@b"), Panel("a_F@b"), Panel("a"),
                                   Panel("a_F")}));
}

TEST_F(CustomLayout, GraphsAndChartsStackByZIndexThenByPlaceInTheProfile) {
    EXPECT_EQ(Order(Chart("a", "ZIndex='2'") + Graph("b", "ZIndex='1'") + Chart("c", "ZIndex='1'") +
                    Graph("d") + Chart("e", "ZIndex='-1'") + Graph("f", "ZIndex='0'")),
              "edfbca");
}

TEST_F(CustomLayout, AZIndexThatIsNoPlainWholeNumberIs0) {
    EXPECT_EQ(Order(Graph("a", "ZIndex='1.5'") + Graph("b", "ZIndex='x9'") + Graph("c", "ZIndex='9x'") +
                    Graph("d", "ZIndex='+9'") + Graph("e", "ZIndex=' 9'") + Graph("f", "ZIndex='-'") +
                    Graph("g", "ZIndex='-1'")),
              "gabcdef");
    EXPECT_EQ(Order(Graph("p", "ZIndex='99999999999999999999999'") +
                    Graph("q", "ZIndex='-99999999999999999999999'") + Graph("r", "ZIndex='2147483648'")),
              "qrp");
}

TEST_F(CustomLayout, OnlyTheElementThatBecameTheItemHasItsPlace) {
    EXPECT_EQ(Order("<LineGraph Name='a' IsShow='0'/><PieChart Name='a' IsShow='1' DataFullName='X'/>" +
                    Graph("b") + Graph("a")),
              "ba");
    EXPECT_TRUE(g_fnColorListOrder(nullptr).empty());
}

TEST_F(CustomLayout, PanelsAndLettersHaveNoPlaceInTheOrder) {
    EXPECT_EQ(Order(Item("Panel", "p") + Text("t") + Graph("l") + Number("n", "FPS")), "l");
}

} // namespace
