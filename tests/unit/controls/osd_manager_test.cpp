#include "base/layout_style.h"
#include "base/slots.h"
#include "controls/osd_manager.h"
#include "draw/batcher_slots.h"
#include "draw/canvas.h"

#include "controls/link_controls.h"
#include "controls/panel.h"
#include "draw/draw_keys.h"
#include "tests/unit/controls/manager_fixture.h"

namespace {

class Manager : public ManagerTest {
  protected:
    TestControl* MakeKeyed(const void* pKey) {
        TestControl* p = Make();
        p->m_pKey = pKey;
        return p;
    }
    ControlList List(const void* pKey) {
        ControlList* p = m_pManager->m_fnGetDrawList(pKey);
        return p ? *p : ControlList{};
    }
    int m_iKeyA = 0, m_iKeyB = 0;
};

class CCountedFont : public CFontUniCode {
  public:
    CCountedFont() { ++s_iLive; }
    ~CCountedFont() override { --s_iLive; }
    inline static i32 s_iLive = 0;
};

class CCountedPanel : public CPanel_Base {
  public:
    CCountedPanel() { ++s_iLive; }
    ~CCountedPanel() override { --s_iLive; }
    inline static i32 s_iLive = 0;
};

// Arrays and ownership.

TEST_F(Manager, ArraysHaveTheirFixedNumberOfEmptyEntries) {
    const stManagerArrays& st = m_pManager->m_stArrays;
    auto expectEmpty = [](auto** pp, u32 uEntries, u32 uWanted) {
        EXPECT_EQ(uEntries, uWanted);
        for (u32 i = 0; i < uEntries; ++i) EXPECT_EQ(pp[i], nullptr);
    };
    expectEmpty(st.m_ppFont, g_uFontEntries, 64);
    expectEmpty(st.m_ppTextBox, g_uTextBoxEntries, 681);
    expectEmpty(st.m_ppNumBox, g_uNumBoxEntries, 710);
    expectEmpty(st.m_ppFlipBox, g_uFlipBoxEntries, 24);
    expectEmpty(st.m_ppPanel, g_uPanelEntries, 1126);
    expectEmpty(st.m_ppStylePanel, g_uStylePanelEntries, 64);
    expectEmpty(st.m_ppImgBox, g_uImgBoxEntries, 64);
    expectEmpty(st.m_ppLineGraph, g_uLineGraphEntries, 512);
    expectEmpty(st.m_ppVideoBox, g_uVideoBoxEntries, 8);
    expectEmpty(st.m_ppPieChart, g_uPieChartEntries, 512);
}

TEST_F(Manager, InitialisingTwiceFails) { EXPECT_FALSE(m_pManager->m_fnInitialize()); }

TEST_F(Manager, InitialisingStopsAtTheFirstArrayThatExists) {
    COSDManager manager;
    manager.m_stArrays.m_ppNumBox = new CNumBox_Base* [g_uNumBoxEntries] {};
    EXPECT_FALSE(manager.m_fnInitialize());
    EXPECT_NE(manager.m_stArrays.m_ppFont, nullptr);
    EXPECT_NE(manager.m_stArrays.m_ppTextBox, nullptr);
    EXPECT_EQ(manager.m_stArrays.m_ppFlipBox, nullptr);
}

TEST_F(Manager, SelectionPublishesTheTenArrays) {
    const stManagerArrays& st = m_pManager->m_stArrays;
    EXPECT_EQ(g_ppFont, st.m_ppFont);
    EXPECT_EQ(g_ppTextBox, st.m_ppTextBox);
    EXPECT_EQ(g_ppNumBox, st.m_ppNumBox);
    EXPECT_EQ(g_ppFlipBox, st.m_ppFlipBox);
    EXPECT_EQ(g_ppPanel, st.m_ppPanel);
    EXPECT_EQ(g_ppStylePanel, st.m_ppStylePanel);
    EXPECT_EQ(g_ppImgBox, st.m_ppImgBox);
    EXPECT_EQ(g_ppLineGraph, st.m_ppLineGraph);
    EXPECT_EQ(g_ppVideoBox, st.m_ppVideoBox);
    EXPECT_EQ(g_ppPieChart, st.m_ppPieChart);
}

TEST_F(Manager, ReleaseDeletesOneOfEachKindAndIsEmptyTheSecondTime) {
    const stManagerArrays& st = m_pManager->m_stArrays;
    st.m_ppFont[63] = new CCountedFont;
    st.m_ppTextBox[680] = new CCounted<CTextBox_Base>;
    st.m_ppNumBox[709] = new CCounted<CNumBox_Base>;
    st.m_ppFlipBox[23] = new CCounted<CFlipBox_Base>;
    st.m_ppPanel[1125] = new CCountedPanel;
    st.m_ppStylePanel[63] = new CCountedPanel;
    st.m_ppImgBox[63] = new CCounted<CImgBox_Base>;
    st.m_ppLineGraph[511] = new CCounted<CLineGraph_Base>;
    st.m_ppVideoBox[7] = new CCounted<CVideoBox_Base>;
    st.m_ppPieChart[511] = new CCounted<CPieChart_Base>;
    EXPECT_EQ(CCountedPanel::s_iLive, 2);
    m_pManager->m_fnRelease();
    EXPECT_EQ(CCountedFont::s_iLive, 0);
    EXPECT_EQ(CCounted<CTextBox_Base>::s_iLive, 0);
    EXPECT_EQ(CCounted<CNumBox_Base>::s_iLive, 0);
    EXPECT_EQ(CCounted<CFlipBox_Base>::s_iLive, 0);
    EXPECT_EQ(CCountedPanel::s_iLive, 0);
    EXPECT_EQ(CCounted<CImgBox_Base>::s_iLive, 0);
    EXPECT_EQ(CCounted<CLineGraph_Base>::s_iLive, 0);
    EXPECT_EQ(CCounted<CVideoBox_Base>::s_iLive, 0);
    EXPECT_EQ(CCounted<CPieChart_Base>::s_iLive, 0);
    EXPECT_EQ(st.m_ppFont, nullptr);
    EXPECT_EQ(g_ppFont, nullptr);
    EXPECT_EQ(g_ppPieChart, nullptr);
    m_pManager->m_fnRelease();
}

TEST_F(Manager, DestroyingAllManagersClearsEveryPointerToThem) {
    Make();
    m_pManager->m_fnAddChild(nullptr, g_ppTextBox[0]);
    g_fnDestroyManagers();
    EXPECT_EQ(TestControl::s_iLive, 0);
    EXPECT_EQ(g_pOSDManager, nullptr);
    EXPECT_EQ(g_apOSDManager[0], nullptr);
    EXPECT_EQ(g_ppTextBox, nullptr);
    EXPECT_EQ(g_ppStylePanel, nullptr);
}

TEST_F(Manager, StartingOverLeavesNothingOfTheFormerLayout) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    m_pManager->m_fnAddChild(nullptr, p);
    m_pManager->m_fnAttachBack(p, 0);
    ASSERT_TRUE(m_pManager->m_fnStartOver());
    EXPECT_EQ(TestControl::s_iLive, 0);
    EXPECT_EQ(m_pManager->m_fnGetChildren(nullptr), nullptr);
    EXPECT_TRUE(m_pManager->m_fnGetLayer(0).empty());
    EXPECT_TRUE(m_pManager->m_mapDrawList.empty());
    EXPECT_NE(m_pManager->m_stArrays.m_ppPieChart, nullptr);
}

TEST_F(Manager, BothViewsOfAControlLeadToEachOther) {
    CTextBox_Base* pBox = Make();
    CControl* pControl = pBox;
    EXPECT_EQ(dynamic_cast<CTextBox_Base*>(pControl), pBox);
    EXPECT_EQ(dynamic_cast<CNumBox_Base*>(pControl), nullptr);
}

// Slots.

TEST_F(Manager, SettingTheCurrentSlotDoesNotReselect) {
    g_ppPanel = nullptr;
    g_fnSetManagerSlot(0);
    EXPECT_EQ(g_ppPanel, nullptr);
}

TEST_F(Manager, AnotherSlotBringsItsManagerAndItsBatchers) {
    auto* pOther = g_apOSDManager[3] = new COSDManager;
    ASSERT_TRUE(pOther->m_fnInitialize());
    g_apDrawBasic[3] = reinterpret_cast<CDrawBasic_Base*>(0x30);
    g_apDrawText[3] = reinterpret_cast<CDrawText_Base*>(0x40);
    g_fnSetManagerSlot(3);
    EXPECT_EQ(g_pOSDManager, pOther);
    EXPECT_EQ(g_ppPanel, pOther->m_stArrays.m_ppPanel);
    EXPECT_EQ(g_pDrawBasic, g_apDrawBasic[3]);
    EXPECT_EQ(g_pDrawText, g_apDrawText[3]);
    g_apDrawBasic[3] = nullptr;
    g_apDrawText[3] = nullptr;
    g_pDrawBasic = nullptr;
    g_pDrawText = nullptr;
}

TEST_F(Manager, AnEmptySlotLeavesTheArrayPointersAsTheyWere) {
    CPanel_Base** ppBefore = g_ppPanel;
    g_fnSetManagerSlot(5);
    EXPECT_EQ(g_pOSDManager, nullptr);
    EXPECT_EQ(g_ppPanel, ppBefore);
}

TEST_F(Manager, ASlotBeyondTheTableIsIgnored) {
    g_fnSetManagerSlot(20);
    g_fnSetManagerSlot(0xFFFFFFFF);
    EXPECT_EQ(g_uManagerSlot, 0u);
}

// Layers and draw lists.

TEST_F(Manager, AddingAKeyToALayerOnce) {
    EXPECT_FALSE(m_pManager->m_fnAddToLayer(nullptr, 1));
    EXPECT_TRUE(m_pManager->m_fnAddToLayer(&m_iKeyA, 1));
    EXPECT_FALSE(m_pManager->m_fnAddToLayer(&m_iKeyA, 1));
    EXPECT_TRUE(m_pManager->m_fnAddToLayer(&m_iKeyB, 1));
    EXPECT_TRUE(m_pManager->m_fnIsInLayer(&m_iKeyA, 1));
    EXPECT_FALSE(m_pManager->m_fnIsInLayer(&m_iKeyA, 2));
    EXPECT_EQ(m_pManager->m_fnGetLayer(1), (KeyList{&m_iKeyA, &m_iKeyB}));
    ASSERT_NE(m_pManager->m_fnGetDrawList(&m_iKeyA), nullptr);
    EXPECT_TRUE(m_pManager->m_fnGetDrawList(&m_iKeyA)->empty());
}

TEST_F(Manager, AskingForTheListOfAnUnknownKeyEntersIt) {
    EXPECT_EQ(m_pManager->m_fnGetDrawList(&m_iKeyA), nullptr);
    EXPECT_TRUE(m_pManager->m_mapDrawList.contains(&m_iKeyA));
}

TEST_F(Manager, RemovingAKeyFromALayerTakesItsList) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    EXPECT_FALSE(m_pManager->m_fnRemoveFromLayer(&m_iKeyA, 1));
    EXPECT_FALSE(m_pManager->m_fnRemoveFromLayer(nullptr, 1));
    m_pManager->m_fnAttachBack(p, 1);
    EXPECT_TRUE(m_pManager->m_fnRemoveFromLayer(&m_iKeyA, 1));
    EXPECT_FALSE(m_pManager->m_mapDrawList.contains(&m_iKeyA));
    EXPECT_EQ(m_pManager->m_fnGetDrawList(&m_iKeyA), nullptr);
    EXPECT_TRUE(m_pManager->m_mapDrawList.contains(&m_iKeyA));
}

TEST_F(Manager, AttachingAControlOfANewKeySucceeds) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    EXPECT_TRUE(m_pManager->m_fnAttachBack(p, 1));
    EXPECT_TRUE(m_pManager->m_fnIsInLayer(&m_iKeyA, 1));
    EXPECT_EQ(List(&m_iKeyA), ControlList{p});
}

TEST_F(Manager, ASecondAttachReturnsFalseAndLeavesOneEntry) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    EXPECT_TRUE(m_pManager->m_fnAttachBack(p, 1));
    EXPECT_FALSE(m_pManager->m_fnAttachBack(p, 1));
    EXPECT_FALSE(m_pManager->m_fnAttachFront(p, 1));
    EXPECT_EQ(List(&m_iKeyA), ControlList{p});
}

TEST_F(Manager, AQueryEntersTheKeyInItsLayer) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    EXPECT_FALSE(m_pManager->m_fnIsAttached(p, 1));
    EXPECT_TRUE(m_pManager->m_fnIsInLayer(&m_iKeyA, 1));
}

TEST_F(Manager, NothingStandsTwiceAcrossLayers) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    EXPECT_TRUE(m_pManager->m_fnAttachBack(p, 1));
    EXPECT_FALSE(m_pManager->m_fnAttachBack(p, 2));
    EXPECT_FALSE(m_pManager->m_fnAttachFront(p, 3));
    EXPECT_EQ(List(&m_iKeyA), ControlList{p});
}

TEST_F(Manager, AKeyWithoutAListRefusesToAttach) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    m_pManager->m_fnAddToLayer(&m_iKeyA, 1);
    m_pManager->m_fnAddToLayer(&m_iKeyA, 2);
    m_pManager->m_fnRemoveFromLayer(&m_iKeyA, 2);
    EXPECT_FALSE(m_pManager->m_fnAttachBack(p, 1));
    EXPECT_FALSE(m_pManager->m_fnAttachFront(p, 1));
    EXPECT_FALSE(m_pManager->m_fnDetach(p, 1));
}

TEST_F(Manager, FrontAndBackDecideTheDrawingOrder) {
    TestControl *pA = MakeKeyed(&m_iKeyA), *pB = MakeKeyed(&m_iKeyA), *pC = MakeKeyed(&m_iKeyA);
    m_pManager->m_fnAttachBack(pA, 1);
    m_pManager->m_fnAttachBack(pB, 1);
    m_pManager->m_fnAttachFront(pC, 1);
    EXPECT_EQ(List(&m_iKeyA), (ControlList{pC, pA, pB}));
}

TEST_F(Manager, DetachingKeepsTheKeyAndShowingAgainPutsItLast) {
    TestControl *pA = MakeKeyed(&m_iKeyA), *pB = MakeKeyed(&m_iKeyA);
    m_pManager->m_fnAttachBack(pA, 1);
    m_pManager->m_fnAttachBack(pB, 1);
    EXPECT_TRUE(m_pManager->m_fnDetach(pA, 1));
    EXPECT_FALSE(m_pManager->m_fnDetach(pA, 1));
    EXPECT_TRUE(m_pManager->m_fnIsInLayer(&m_iKeyA, 1));
    EXPECT_TRUE(m_pManager->m_fnAttachBack(pA, 1));
    EXPECT_EQ(List(&m_iKeyA), (ControlList{pB, pA}));
}

TEST_F(Manager, NullControlsAndNullKeysEnterNothing) {
    TestControl* p = Make();
    EXPECT_FALSE(m_pManager->m_fnAttachBack(nullptr, 1));
    EXPECT_FALSE(m_pManager->m_fnAttachFront(nullptr, 1));
    EXPECT_FALSE(m_pManager->m_fnDetach(nullptr, 1));
    EXPECT_FALSE(m_pManager->m_fnIsAttached(nullptr, 1));
    EXPECT_FALSE(m_pManager->m_fnAttachBack(p, 1));
    EXPECT_FALSE(m_pManager->m_fnAttachFront(p, 1));
    EXPECT_FALSE(m_pManager->m_fnDetach(p, 1));
    EXPECT_FALSE(m_pManager->m_fnIsAttached(p, 1));
    EXPECT_TRUE(m_pManager->m_fnGetLayer(1).empty());
    EXPECT_TRUE(m_pManager->m_mapDrawList.empty());
}

TEST_F(Manager, ShowingAndHidingASettledControlNeedsNoNewMemory) {
    TestControl* p = MakeKeyed(&m_iKeyA);
    m_pManager->m_fnAttachBack(p, 1);
    ControlList* pList = m_pManager->m_fnGetDrawList(&m_iKeyA);
    const auto uCapacity = pList->capacity();
    for (i32 i = 0; i < 100; ++i) {
        EXPECT_TRUE(m_pManager->m_fnDetach(p, 1));
        EXPECT_TRUE(m_pManager->m_fnAttachBack(p, 1));
    }
    EXPECT_EQ(m_pManager->m_fnGetDrawList(&m_iKeyA), pList);
    EXPECT_EQ(pList->capacity(), uCapacity);
}

// Tree.

TEST_F(Manager, AddingAControlToItselfReturnsMinus2AndChangesNothing) {
    TestControl* p = Make();
    EXPECT_EQ(m_pManager->m_fnAddChild(p, p), -2);
    EXPECT_TRUE(m_pManager->m_mapChildren.empty());
    EXPECT_TRUE(m_pManager->m_mapParent.empty());
}

TEST_F(Manager, ANullChildReturnsMinus1) {
    EXPECT_EQ(m_pManager->m_fnAddChild(nullptr, nullptr), -1);
    EXPECT_EQ(m_pManager->m_fnAddChild(Make(), nullptr), -1);
    EXPECT_TRUE(m_pManager->m_mapChildren.empty());
}

TEST_F(Manager, AParentBelowItsChildReturnsMinus2AndChangesNothing) {
    TestControl *pA = Make(), *pB = Make(), *pC = Make();
    m_pManager->m_fnAddChild(nullptr, pA);
    m_pManager->m_fnAddChild(pA, pB);
    m_pManager->m_fnAddChild(pB, pC);
    EXPECT_EQ(m_pManager->m_fnAddChild(pC, pA), -2);
    EXPECT_EQ(m_pManager->m_fnGetChildren(pC), nullptr);
    EXPECT_EQ(m_pManager->m_fnGetParent(pA), nullptr);
    EXPECT_TRUE(m_pManager->m_fnIsChildOf(nullptr, pA));
}

TEST_F(Manager, AddingTwiceReturns0Then1AndResolvesOnce) {
    TestControl *pP = Make(), *pC = Make();
    EXPECT_EQ(m_pManager->m_fnAddChild(pP, pC), 0);
    EXPECT_EQ(m_pManager->m_fnAddChild(pP, pC), 1);
    EXPECT_EQ(pC->m_iMoved, 1);
    EXPECT_EQ(m_pManager->m_fnGetChildren(pP)->size(), 1u);
}

TEST_F(Manager, AddingElsewhereMovesTheChild) {
    TestControl *pP = Make(), *pQ = Make(), *pC = Make();
    m_pManager->m_fnAddChild(pP, pC);
    EXPECT_EQ(m_pManager->m_fnAddChild(pQ, pC), 0);
    EXPECT_TRUE(m_pManager->m_fnGetChildren(pP)->empty());
    EXPECT_EQ(m_pManager->m_fnGetParent(pC), pQ);
    EXPECT_FALSE(m_pManager->m_fnIsChildOf(pP, pC));
    EXPECT_TRUE(m_pManager->m_fnIsChildOf(pQ, pC));
}

TEST_F(Manager, MovingBetweenRootAndParent) {
    TestControl *pP = Make(), *pC = Make();
    m_pManager->m_fnAddChild(nullptr, pC);
    EXPECT_TRUE(m_pManager->m_fnHasParent(pC));
    EXPECT_EQ(m_pManager->m_fnGetParent(pC), nullptr);
    m_pManager->m_fnAddChild(pP, pC);
    EXPECT_TRUE(m_pManager->m_fnGetChildren(nullptr)->empty());
    m_pManager->m_fnAddChild(nullptr, pC);
    EXPECT_TRUE(m_pManager->m_fnGetChildren(pP)->empty());
}

TEST_F(Manager, UnknownControlsHaveNeitherParentNorChildren) {
    TestControl* p = Make();
    EXPECT_FALSE(m_pManager->m_fnHasParent(p));
    EXPECT_EQ(m_pManager->m_fnGetParent(p), nullptr);
    EXPECT_EQ(m_pManager->m_fnGetChildren(p), nullptr);
    EXPECT_FALSE(m_pManager->m_fnIsChildOf(p, p));
}

TEST_F(Manager, ASubtreeIsCollectedDepthFirst) {
    TestControl *pA = Make(), *pB = Make(), *pC = Make(), *pD = Make(), *pE = Make();
    m_pManager->m_fnAddChild(nullptr, pA);
    m_pManager->m_fnAddChild(pA, pB);
    m_pManager->m_fnAddChild(pA, pC);
    m_pManager->m_fnAddChild(pB, pD);
    m_pManager->m_fnAddChild(pB, pE);
    ControlList list;
    EXPECT_TRUE(m_pManager->m_fnCollectSubtree(pA, list));
    EXPECT_EQ(list, (ControlList{pB, pD, pE, pC}));
    list.clear();
    EXPECT_TRUE(m_pManager->m_fnCollectSubtree(pE, list));
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(m_pManager->m_fnCollectSubtree(nullptr, list));
}

TEST_F(Manager, RemovingASubtreeLeavesControlsArraysAndDrawLists) {
    TestControl *pA = MakeKeyed(&m_iKeyA), *pB = MakeKeyed(&m_iKeyA), *pC = MakeKeyed(&m_iKeyA);
    m_pManager->m_fnAddChild(nullptr, pA);
    m_pManager->m_fnAddChild(pA, pB);
    m_pManager->m_fnAddChild(pB, pC);
    m_pManager->m_fnAttachBack(pB, 1);
    EXPECT_EQ(m_pManager->m_fnRemoveSubtree(pB), 0);
    EXPECT_EQ(TestControl::s_iLive, 3);
    EXPECT_EQ(g_ppTextBox[1], pB);
    EXPECT_EQ(List(&m_iKeyA), ControlList{pB});
    EXPECT_FALSE(m_pManager->m_fnHasParent(pB));
    EXPECT_FALSE(m_pManager->m_fnHasParent(pC));
    EXPECT_TRUE(m_pManager->m_fnGetChildren(pA)->empty());
    pB->m_iMoved = 0;
    m_pManager->m_fnResolveControl(pB);
    EXPECT_EQ(pB->m_iMoved, 0);
}

TEST_F(Manager, ARemovedChildOfTheRootLeavesIt) {
    TestControl* p = Make();
    m_pManager->m_fnAddChild(nullptr, p);
    EXPECT_EQ(m_pManager->m_fnRemoveSubtree(p), 0);
    EXPECT_TRUE(m_pManager->m_fnGetChildren(nullptr)->empty());
    EXPECT_EQ(m_pManager->m_fnRemoveSubtree(nullptr), -1);
    EXPECT_EQ(m_pManager->m_fnRemoveSubtree(Make()), 0);
}

TEST_F(Manager, ResizeWithoutARootListDoesNothing) {
    m_pManager->m_fnOnResize();
    EXPECT_TRUE(m_pManager->m_mapChildren.empty());
}

TEST_F(Manager, ResizePlacesEverythingOnTheNewCanvas) {
    TestControl *pA = Make(), *pB = Make();
    pA->m_fnApplyRect({9, 10, 20, 100, 50});
    pB->m_fnSetAnchor(1, 1, 2);
    m_pManager->m_fnAddChild(nullptr, pA);
    m_pManager->m_fnAddChild(pA, pB);
    g_uCanvasW = 1440;
    m_pManager->m_fnOnResize();
    EXPECT_EQ(pA->m_fPosX, 1330);
    EXPECT_EQ(pB->m_fPosX, 1331);
    EXPECT_EQ(pB->m_fPosY, 1012);
}

TEST_F(Manager, ResolvingNullDoesNothing) { m_pManager->m_fnResolveControl(nullptr); }

// Linking.

class Link : public Manager {
  protected:
    void SetUp() override {
        Manager::SetUp();
        g_fnClearControlIds();
    }
    template <class Base> CCounted<Base>* Put(Base** ppArray, u32 uIndex, const void* pKey) {
        auto* p = new CCounted<Base>;
        p->m_pKey = pKey;
        ppArray[uIndex] = p;
        return p;
    }
};

TEST_F(Link, EntersTheFixedKeysInOrder) {
    g_fnLinkControls();
    EXPECT_EQ(m_pManager->m_fnGetLayer(g_uLayerColor), KeyList{g_keyColorList});
    EXPECT_EQ(m_pManager->m_fnGetLayer(g_uLayerTexture), KeyList{g_keyTextureList});
    const KeyList& blur = m_pManager->m_fnGetLayer(g_uLayerBlur);
    ASSERT_EQ(blur.size(), 101u);
    for (u32 i = 0; i <= 100; ++i) EXPECT_EQ(blur[i], g_keyBlurByDiameter[i]);
    EXPECT_TRUE(m_pManager->m_fnGetLayer(g_uLayerFont).empty());
    for (u32 u : {3u, 5u, 31u}) EXPECT_TRUE(m_pManager->m_fnGetLayer(u).empty());
}

TEST_F(Link, TextNumbersAndFlipsFollowEachOtherUnderTheirFont) {
    auto* pFont = new CCountedFont;
    g_ppFont[2] = pFont;
    const void* pKey = static_cast<CFontUniCode*>(pFont);
    CControl* pFlip = Put(g_ppFlipBox, 0, pKey);
    CControl* pNum = Put(g_ppNumBox, 0, pKey);
    CControl* pText = Put(g_ppTextBox, 5, pKey);
    g_fnLinkControls();
    EXPECT_EQ(m_pManager->m_fnGetLayer(g_uLayerFont), KeyList{pKey});
    EXPECT_EQ(List(pKey), (ControlList{pText, pNum, pFlip}));
}

TEST_F(Link, GraphsThenPiesLieAbovePanels) {
    auto* pPanel = new CCountedPanel;
    g_ppPanel[0] = pPanel;
    m_pManager->m_fnAttachFront(pPanel, g_uLayerColor);
    CControl* pPie = Put(g_ppPieChart, 0, g_keyColorList);
    CControl* pGraph = Put(g_ppLineGraph, 0, g_keyColorList);
    Put(g_ppLineGraph, 1, nullptr); // the creator gave it no key: it isn't drawn
    g_fnLinkControls();
    EXPECT_EQ(List(g_keyColorList), (ControlList{pPanel, pGraph, pPie}));
}

TEST_F(Link, AllImagesAreDrawnInOrderAndImage8HangsFromTheRoot) {
    CControl* p12 = Put(g_ppImgBox, 12, g_keyTextureList);
    CControl* p8 = Put(g_ppImgBox, 8, g_keyTextureList);
    CControl* p0 = Put(g_ppImgBox, 0, g_keyTextureList);
    CControl* pVideo = Put(g_ppVideoBox, 7, g_keyTextureList);
    g_fnLinkControls();
    EXPECT_EQ(List(g_keyTextureList), (ControlList{p0, p8, p12, pVideo}));
    EXPECT_EQ(*m_pManager->m_fnGetChildren(nullptr), (ControlList{p8, pVideo}));
}

TEST_F(Link, PanelsHangFromTheRootUnlessTheStyleIsCustom) {
    g_ppPanel[0] = new CCountedPanel;
    g_ppPanel[4] = new CCountedPanel;
    g_uLayoutStyle = 2;
    g_fnLinkControls();
    EXPECT_EQ(m_pManager->m_fnGetChildren(nullptr), nullptr);
    g_uLayoutStyle = 0;
    g_fnLinkControls();
    EXPECT_EQ(*m_pManager->m_fnGetChildren(nullptr), (ControlList{g_ppPanel[0], g_ppPanel[4]}));
}

TEST_F(Link, LinkingTwiceLeavesOneEntryEach) {
    CControl* p = Put(g_ppImgBox, 0, g_keyTextureList);
    g_fnLinkControls();
    g_fnLinkControls();
    EXPECT_EQ(List(g_keyTextureList), ControlList{p});
}

TEST_F(Link, WithoutAManagerNothingHappens) {
    g_fnDestroyManagers();
    g_fnLinkControls();
}

} // namespace
