#include "controls/panel.h"

#include "draw/draw_keys.h"
#include "tests/unit/controls/manager_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

#include <memory>

namespace {

using Events = std::vector<std::string>;

class Panel : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        recording::Install();
    }
    /// An initialised panel of a shape, 100 by 50.
    std::unique_ptr<CPanel_Base> Ready(u32 uShape) {
        auto p = std::make_unique<CPanel_Base>();
        p->m_fnSetShape(uShape);
        p->m_fnSetGeometry5(100, 50, 1, 1, 10);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    recording::CBatcher m_batcher;
};

TEST_F(Panel, StartsGrayAndWithoutAnythingMade) {
    CPanel_Base panel;
    EXPECT_EQ(panel.m_uShape, g_uShapeRect);
    EXPECT_EQ(panel.m_fPanelW, 512);
    EXPECT_EQ(panel.m_fPanelH, 512);
    EXPECT_EQ(panel.m_afColor[0], 0.5f);
    EXPECT_EQ(panel.m_afColor[3], 1.0f);
    EXPECT_EQ(panel.m_fnGetDrawKey(), static_cast<const void*>(g_keyColorList));
    EXPECT_EQ(panel.m_pEntity, nullptr);
    EXPECT_EQ(panel.m_pRectMesh, nullptr);
    EXPECT_FALSE(panel.m_bCorners);
    EXPECT_EQ(panel.m_iAnchorCode, 1);
    EXPECT_EQ(panel.m_fnGetType(), 0u);
}

TEST_F(Panel, TheThreeColourFormsAgree) {
    CPanel_Base panel;
    panel.m_fnSetColorB(255, 51, 0, 102);
    EXPECT_EQ(panel.m_afColor[0], 1.0f);
    EXPECT_EQ(panel.m_afColor[1], 51 / 255.0f);
    EXPECT_EQ(panel.m_afColor[2], 0.0f);
    EXPECT_EQ(panel.m_afColor[3], 102 / 255.0f);
    const f32 fGreen = panel.m_afColor[1];
    panel.m_fnSetColorF(0, 0, 0, 0);
    panel.m_fnSetColor(0xFF3300, 102);
    EXPECT_EQ(panel.m_afColor[0], 1.0f);
    EXPECT_EQ(panel.m_afColor[1], fGreen);
    EXPECT_EQ(panel.m_afColor[2], 0.0f);
    EXPECT_EQ(panel.m_afColor[3], 102 / 255.0f);
}

TEST_F(Panel, ShapesMakeTheirBuilders) {
    auto pRect = Ready(g_uShapeRect);
    EXPECT_NE(pRect->m_pRectMesh, nullptr);
    EXPECT_EQ(pRect->m_pFrameMesh, nullptr);
    EXPECT_EQ(pRect->m_pBorderMesh, nullptr);
    for (u32 uShape : {g_uShapeFrame, g_uShapeBorder}) {
        auto pFrame = Ready(uShape);
        EXPECT_EQ(pFrame->m_pRectMesh, nullptr);
        EXPECT_NE(pFrame->m_pFrameMesh, nullptr);
        EXPECT_NE(pFrame->m_pBorderMesh, nullptr);
    }
}

TEST_F(Panel, AnUnknownShapeIsRefused) {
    CPanel_Base panel;
    panel.m_fnSetShape(3);
    EXPECT_FALSE(panel.m_fnCreateShape());
    EXPECT_FALSE(panel.m_fnInitialize());
}

TEST_F(Panel, BuildingBeforeTheBuildersExistIsRefused) {
    CPanel_Base panel;
    EXPECT_FALSE(panel.m_fnBuildShape());
    panel.m_fnSetShape(g_uShapeFrame);
    EXPECT_FALSE(panel.m_fnBuildShape());
}

TEST_F(Panel, CornersOnARectangleLeaveItARectangle) {
    auto p = Ready(g_uShapeRect);
    p->m_fnSetCorners(true);
    EXPECT_EQ(p->m_uShape, g_uShapeRect);
    EXPECT_TRUE(p->m_bCorners);
}

TEST_F(Panel, CornersComeAndGoOnAFrameWithoutAnyUpload) {
    auto p = Ready(g_uShapeFrame);
    const i32 iUploads = recording::g_iUploads;
    p->m_fnSetCorners(true);
    EXPECT_EQ(p->m_uShape, g_uShapeBorder);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, (Events{"constants", "bind", "layout", "draw 48"}));
    recording::g_aEvents.clear();
    p->m_fnSetCorners(false);
    EXPECT_EQ(p->m_uShape, g_uShapeFrame);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, (Events{"constants", "bind", "layout", "draw 24"}));
    EXPECT_EQ(recording::g_iUploads, iUploads);
}

TEST_F(Panel, GeometryBeforeInitialisationStoresTheSizeAndRebuildsNothing) {
    CPanel_Base panel;
    panel.m_fnSetGeometry(300, 200);
    EXPECT_EQ(panel.m_fPanelW, 300);
    EXPECT_EQ(panel.m_fPanelH, 200);
    f32 w, h;
    panel.m_fnGetSize(&w, &h);
    EXPECT_EQ(w, 300);
    EXPECT_EQ(h, 200);
    EXPECT_EQ(recording::g_iUploads, 0);
}

TEST_F(Panel, GeometryAfterInitialisationRebuildsEachBuilder) {
    auto pRect = Ready(g_uShapeRect);
    auto pFrame = Ready(g_uShapeFrame);
    recording::g_iUploads = 0;
    pRect->m_fnSetGeometry(10, 20);
    EXPECT_EQ(recording::g_iUploads, 1);
    pFrame->m_fnSetGeometry4(10, 20, 2, 3);
    EXPECT_EQ(recording::g_iUploads, 3);
    EXPECT_EQ(pFrame->m_fOutset, 2);
    EXPECT_EQ(pFrame->m_fThickness, 3);
    EXPECT_EQ(pFrame->m_fCornerSize, 10);
}

TEST_F(Panel, TheRectangleGrowsByItsOwnOutsetOnly) {
    auto p = Ready(g_uShapeRect);
    p->m_fnSetRectOutset(4);
    p->m_fnSetGeometry5(100, 50, 9, 9, 9);
    auto* pMesh = dynamic_cast<recording::CMesh*>(p->m_pRectMesh->m_pMesh.get());
    ASSERT_NE(pMesh, nullptr);
    EXPECT_EQ(pMesh->m_afFirstVertices[0], -4);
    EXPECT_EQ(pMesh->m_afFirstVertices[4], 104);
    EXPECT_EQ(pMesh->m_afFirstVertices[9], 54);
}

TEST_F(Panel, GeometryMovesAPanelWhoseAnchorDependsOnTheSize) {
    auto* p = new CPanel_Base;
    ASSERT_EQ(g_fnRegisterXCtrl(IdPanel, 1, p), 1);
    p->m_fnSetAnchor(9, 10, 20);
    m_pManager->m_fnAddChild(nullptr, p);
    ASSERT_TRUE(p->m_fnInitialize());
    p->m_fnSetGeometry(100, 50);
    EXPECT_EQ(p->m_fPosX, 1810);
    f32 x = 0, y = 0, z = 9;
    p->m_pEntity->m_fnGetPosition(&x, &y, &z);
    EXPECT_EQ(x, 1810);
    EXPECT_EQ(y, 1010);
    EXPECT_EQ(z, 0);
}

TEST_F(Panel, DrawsConstantsThenMeshThenLayoutThenIndices) {
    auto p = Ready(g_uShapeRect);
    p->m_fnSetColorF(0.1f, 0.2f, 0.3f, 0.4f);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, (Events{"constants", "bind", "layout", "draw 6"}));
    const auto& [pWorld, pColor] = m_batcher.m_stLast;
    EXPECT_EQ(pWorld, p->m_pEntity->m_fnGetWorldForDraw());
    EXPECT_EQ(pColor, p->m_afColor);
}

TEST_F(Panel, APanelThatIsNotRenderableDrawsNothing) {
    auto p = Ready(g_uShapeRect);
    p->m_fnSetRenderable(false);
    p->m_fnRender(&m_batcher);
    p->m_fnDrawPanel(&m_batcher, nullptr, p->m_afColor);
    EXPECT_TRUE(recording::g_aEvents.empty());
}

TEST_F(Panel, APanelWithoutAnEntityDrawsNothing) {
    CPanel_Base panel;
    panel.m_fnRender(&m_batcher);
    EXPECT_TRUE(recording::g_aEvents.empty());
}

TEST_F(Panel, InitialisingAHiddenPanelMakesNothing) {
    CPanel_Base panel;
    panel.m_fnSetRenderable(false);
    EXPECT_TRUE(panel.m_fnInitialize());
    EXPECT_EQ(panel.m_pEntity, nullptr);
    EXPECT_EQ(panel.m_pRectMesh, nullptr);
}

TEST_F(Panel, InitialisationStopsAtTheFirstFailure) {
    CPanel_Base panel;
    recording::g_iEntitiesLeft = 0;
    EXPECT_FALSE(panel.m_fnInitialize());
    EXPECT_EQ(panel.m_pRectMesh, nullptr);
    recording::g_iEntitiesLeft = -1;
    recording::g_iMeshesLeft = 0;
    EXPECT_FALSE(panel.m_fnInitialize());
}

TEST_F(Panel, ReleaseFreesEntityAndBuilders) {
    const i32 iEntities = recording::g_iLiveEntities, iMeshes = recording::g_iLiveMeshes;
    auto p = Ready(g_uShapeBorder);
    EXPECT_EQ(recording::g_iLiveEntities, iEntities + 1);
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes + 2);
    p->m_fnRelease();
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes);
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(recording::g_aEvents.empty());
}

TEST_F(Panel, TheDrawKeyIsStoredOnly) {
    CPanel_Base panel;
    panel.m_fnSetDrawKey(g_keyBlurByDiameter[10]);
    EXPECT_EQ(panel.m_fnGetDrawKey(), static_cast<const void*>(g_keyBlurByDiameter[10]));
    EXPECT_TRUE(m_pManager->m_fnGetLayer(g_uLayerBlur).empty());
}

} // namespace
