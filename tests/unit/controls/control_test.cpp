#include "controls/control.h"

#include "tests/unit/controls/manager_fixture.h"

#include <cstdint>
#include <memory>

namespace {

class Control : public ManagerTest {};
class ControlAlone : public CanvasTest {};

void ExpectAt(CControl* p, f32 x, f32 y) {
    f32 fX, fY;
    p->m_fnGetPosition(&fX, &fY, nullptr);
    EXPECT_EQ(fX, x);
    EXPECT_EQ(fY, y);
}

TEST_F(ControlAlone, ConstructionWithoutAManager) {
    ASSERT_EQ(g_pOSDManager, nullptr);
    auto p = std::make_unique<CCounted<CImgBox_Base>>(); // a kind that sets nothing of its own
    i32 iCode = 0;
    f32 x = 9, y = 9, w = 9, h = 9;
    p->m_fnGetAnchor(&iCode, &x, &y);
    p->m_fnGetSize(&w, &h);
    EXPECT_EQ(iCode, 1);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    EXPECT_EQ(w, 0);
    EXPECT_EQ(h, 0);
    EXPECT_TRUE(p->m_fnIsRenderable());
    EXPECT_FALSE(p->m_fnGetAutoSize());
    EXPECT_EQ(p->m_fnGetType(), 0u);
    EXPECT_EQ(p->m_fnGetVertexBytes(), 0u);
    EXPECT_EQ(p->m_fnGetIndexBytes(), 0u);
    EXPECT_EQ(p->m_fnGetVertexData(), nullptr);
    EXPECT_EQ(p->m_fnGetIndexData(), nullptr);
    EXPECT_EQ(p->CControl::m_fnGetDrawKey(), nullptr);
    ExpectAt(p.get(), 0, 0);
}

TEST_F(ControlAlone, LivesOnA16ByteBoundary) {
    std::unique_ptr<TestControl> aControls[8];
    for (auto& p : aControls) {
        p = std::make_unique<TestControl>();
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(dynamic_cast<void*>(p.get())) % 16, 0u);
    }
}

TEST_F(ControlAlone, MovesWithoutAManagerAndHasNoChildren) {
    auto p = std::make_unique<TestControl>();
    p->m_fnMoveTo(3, 4, 5);
    EXPECT_EQ(p->m_fPosZ, 5);
    EXPECT_EQ(p->m_iMoved, 1);
    ExpectAt(p.get(), 3, 4);
}

TEST_F(ControlAlone, StoresBasesSizesAndLetters) {
    auto p = std::make_unique<TestControl>();
    p->m_fnSetVertexBase(11);
    p->m_fnSetIndexBase(22);
    p->m_fnSetAutoSize(true);
    p->m_fnSetRenderable(false);
    p->m_uVertexBytes = 33;
    p->m_uIndexBytes = 44;
    p->m_uType = g_uTypeTextBox;
    EXPECT_EQ(p->m_uVertexBase, 11u);
    EXPECT_EQ(p->m_uIndexBase, 22u);
    EXPECT_TRUE(p->m_fnGetAutoSize());
    EXPECT_FALSE(p->m_fnIsRenderable());
    EXPECT_EQ(p->m_fnGetVertexBytes(), 33u);
    EXPECT_EQ(p->m_fnGetIndexBytes(), 44u);
    EXPECT_EQ(p->m_fnGetType(), 84u);
    EXPECT_EQ(g_uTypeNumBox, 78u);
    EXPECT_EQ(g_uTypeFlipBox, 70u);
    p->m_fnRender(nullptr);
}

TEST_F(ControlAlone, SetPositionReportsOnlyADifference) {
    auto p = std::make_unique<TestControl>();
    p->m_fnSetPosition(1, 2, 3);
    EXPECT_EQ(p->m_iMoved, 1);
    p->m_fnSetPosition(1, 2, 3);
    EXPECT_EQ(p->m_iMoved, 1);
    p->m_fnSetPosition(1, 2, 4);
    EXPECT_EQ(p->m_iMoved, 2);
}

TEST_F(ControlAlone, SetPositionTakesCode1WithoutReportingThatAlone) {
    auto p = std::make_unique<TestControl>();
    p->m_fnSetAnchor(9, 0, 0);
    p->m_fnSetPosition(0, 0, 0);
    EXPECT_EQ(p->m_iAnchorCode, 1);
    EXPECT_EQ(p->m_iMoved, 0);
}

TEST_F(ControlAlone, SetPositionReportsAnOffsetThatDiffers) {
    auto p = std::make_unique<TestControl>();
    p->m_fnSetAnchor(1, 5, 5);
    p->m_fnSetPosition(0, 0, 0);
    EXPECT_EQ(p->m_iMoved, 1);
    EXPECT_EQ(p->m_fAnchorX, 0);
}

TEST_F(Control, SetPositionLeavesChildrenBehind) {
    TestControl *pParent = Make(), *pChild = Make();
    m_pManager->m_fnAddChild(nullptr, pParent);
    m_pManager->m_fnAddChild(pParent, pChild);
    pParent->m_fnSetPosition(50, 60, 0);
    ExpectAt(pParent, 50, 60);
    ExpectAt(pChild, 0, 0);
}

TEST_F(Control, GettersTakeNull) {
    TestControl* p = Make();
    p->m_fnGetPosition(nullptr, nullptr, nullptr);
    p->m_fnGetAnchor(nullptr, nullptr, nullptr);
    p->m_fnGetSize(nullptr, nullptr);
}

TEST_F(Control, SetSizeWithTheSameSizeTwiceResolvesOnce) {
    TestControl* p = Make();
    m_pManager->m_fnAddChild(nullptr, p);
    p->m_iMoved = 0;
    p->m_fnSetSize(10, 20);
    p->m_fnSetSize(10, 20);
    EXPECT_EQ(p->m_iMoved, 1);
}

TEST_F(Control, SetAnchorWithTheSameValuesResolvesEveryTime) {
    TestControl* p = Make();
    m_pManager->m_fnAddChild(nullptr, p);
    p->m_iMoved = 0;
    p->m_fnSetAnchor(3, 1, 2);
    p->m_fnSetAnchor(3, 1, 2);
    EXPECT_EQ(p->m_iMoved, 2);
}

TEST_F(Control, SetAnchorOutsideTheTreeLeavesThePosition) {
    TestControl* p = Make();
    p->m_fnSetAnchor(9, 10, 20);
    ExpectAt(p, 0, 0);
    EXPECT_EQ(p->m_iMoved, 0);
}

TEST_F(Control, SizeMovesWhereTheAnchorDependsOnIt) {
    TestControl* p = Make();
    p->m_fnSetAnchor(9, 10, 20);
    m_pManager->m_fnAddChild(nullptr, p);
    ExpectAt(p, 1910, 1060);
    p->m_fnSetSize(100, 50);
    ExpectAt(p, 1810, 1010);
}

TEST_F(Control, ApplyRectSetsSizeThenAnchor) {
    TestControl* p = Make();
    m_pManager->m_fnAddChild(nullptr, p);
    p->m_iMoved = 0;
    p->m_fnApplyRect({9, 10, 20, 100, 50});
    ExpectAt(p, 1810, 1010);
    EXPECT_EQ(p->m_iMoved, 2);
}

TEST_F(Control, ResolvingResetsZ) {
    TestControl* p = Make();
    p->m_fnMoveTo(1, 2, 3);
    p->m_fnResolvePosition(nullptr);
    EXPECT_EQ(p->m_fPosZ, 0);
}

TEST_F(Control, MoveTakesTheWholeSubtreeAlongEachTime) {
    TestControl *pA = Make(), *pB = Make(), *pC = Make();
    m_pManager->m_fnAddChild(nullptr, pA);
    m_pManager->m_fnAddChild(pA, pB);
    m_pManager->m_fnAddChild(pB, pC);
    pA->m_fnSetSize(200, 100);
    pB->m_fnSetSize(20, 10);
    pB->m_fnSetAnchor(9, 0, 0);
    pC->m_fnSetAnchor(-9, 1, 2);
    pB->m_iMoved = pC->m_iMoved = 0;
    pA->m_fnMoveTo(1000, 500, 0);
    pA->m_fnMoveTo(1000, 500, 0);
    ExpectAt(pB, 1180, 590);
    ExpectAt(pC, 1201, 602);
    EXPECT_EQ(pB->m_iMoved, 2);
    EXPECT_EQ(pC->m_iMoved, 2);
}

TEST_F(Control, ChildOfAParentOfWidth0UnderCode3SitsLeftOfIt) {
    TestControl *pParent = Make(), *pChild = Make();
    pParent->m_fnSetAnchor(1, 100, 0);
    m_pManager->m_fnAddChild(nullptr, pParent);
    pChild->m_fnSetSize(30, 10);
    pChild->m_fnSetAnchor(3, 5, 0);
    m_pManager->m_fnAddChild(pParent, pChild);
    ExpectAt(pChild, 65, 0);
}

} // namespace
