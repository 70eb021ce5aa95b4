#include "draw/shape_meshes.h"

#include "tests/unit/draw/recording_mesh.h"

#include <cmath>
#include <gtest/gtest.h>

#include <array>

using Positions = std::vector<std::array<f32, 2>>;

namespace {

struct ShapeMeshes : ::testing::Test {
    CRecordingMeshes m_flavour;

    static CRecordingMesh& Recorded(const std::unique_ptr<CMesh_Base>& pMesh) {
        return dynamic_cast<CRecordingMesh&>(*pMesh);
    }
    static Positions PositionsOf(const CRecordingMesh& mesh) {
        Positions list;
        for (const stShapeVertex& v : mesh.m_aVertices) list.push_back({v.m_afPos[0], v.m_afPos[1]});
        return list;
    }
    static Positions TexturesOf(const CRecordingMesh& mesh) {
        Positions list;
        for (const stShapeVertex& v : mesh.m_aVertices) list.push_back({v.m_afTex[0], v.m_afTex[1]});
        return list;
    }
};

const Positions g_aQuadTexture = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
const std::vector<u16> g_auFrame = {0, 1, 5, 0, 5, 4, 1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7};

} // namespace

TEST_F(ShapeMeshes, RectangleHasTheTablesVerticesAndIndices) {
    CRect_Mesh_Base rect;
    ASSERT_TRUE(rect.m_fnCreate(200, 50));
    const CRecordingMesh& mesh = Recorded(rect.m_pMesh);
    EXPECT_EQ(PositionsOf(mesh), (Positions{{0, 0}, {200, 0}, {200, 50}, {0, 50}}));
    EXPECT_EQ(TexturesOf(mesh), g_aQuadTexture);
    EXPECT_EQ(mesh.m_auIndices, (std::vector<u16>{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(rect.m_fWidth, 200.0f);
    EXPECT_EQ(rect.m_fHeight, 50.0f);
}

TEST_F(ShapeMeshes, ExpandedRectangleGrowsOnEverySide) {
    CRect_Mesh_Base rect;
    ASSERT_TRUE(rect.m_fnCreateExpanded(200, 50, 3));
    EXPECT_EQ(PositionsOf(Recorded(rect.m_pMesh)), (Positions{{-3, -3}, {203, -3}, {203, 53}, {-3, 53}}));
    EXPECT_EQ(TexturesOf(Recorded(rect.m_pMesh)), g_aQuadTexture);
}

TEST_F(ShapeMeshes, ExpandingByZeroGivesThePlainRectangle) {
    CRect_Mesh_Base plain, expanded;
    ASSERT_TRUE(plain.m_fnCreate(640.5f, 2));
    ASSERT_TRUE(expanded.m_fnCreateExpanded(640.5f, 2, 0));
    EXPECT_EQ(PositionsOf(Recorded(plain.m_pMesh)), PositionsOf(Recorded(expanded.m_pMesh)));
    EXPECT_EQ(TexturesOf(Recorded(plain.m_pMesh)), TexturesOf(Recorded(expanded.m_pMesh)));
}

TEST_F(ShapeMeshes, WithoutAnOutsetNoPositionIsANegativeZero) {
    CRect_Mesh_Base rect;
    CFrame_Mesh_Base frame;
    CBorder_Mesh_Base border;
    ASSERT_TRUE(rect.m_fnCreateExpanded(640, 2, 0));
    ASSERT_TRUE(frame.m_fnCreate(100, 40, 0, 0));
    ASSERT_TRUE(border.m_fnCreate(100, 40, 0, 0, 4));
    for (const auto* const pMesh : {&rect.m_pMesh, &frame.m_pMesh, &border.m_pMesh})
        for (const auto& position : PositionsOf(Recorded(*pMesh)))
            for (const f32 f : position) EXPECT_FALSE(std::signbit(f));
}

TEST_F(ShapeMeshes, FrameHasTheTablesVerticesAndIndices) {
    CFrame_Mesh_Base frame;
    ASSERT_TRUE(frame.m_fnCreate(100, 40, 2, 5));
    const CRecordingMesh& mesh = Recorded(frame.m_pMesh);
    EXPECT_EQ(PositionsOf(mesh),
              (Positions{{-2, -2}, {102, -2}, {102, 42}, {-2, 42}, {3, 3}, {97, 3}, {97, 37}, {3, 37}}));
    EXPECT_EQ(TexturesOf(mesh), (Positions{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}, {1, 0}, {1, 1}, {0, 1}}));
    EXPECT_EQ(mesh.m_auIndices, g_auFrame);
}

TEST_F(ShapeMeshes, FrameThickerThanHalfCrossesOverAndStillUploads) {
    CFrame_Mesh_Base frame;
    ASSERT_TRUE(frame.m_fnCreate(10, 10, 0, 8));
    const CRecordingMesh& mesh = Recorded(frame.m_pMesh);
    EXPECT_EQ(mesh.m_uUploads, 1u);
    EXPECT_EQ(mesh.m_aVertices[4].m_afPos[0], 8.0f);
    EXPECT_EQ(mesh.m_aVertices[5].m_afPos[0], 2.0f);
}

TEST_F(ShapeMeshes, BorderIsTheFrameAndFourSquares) {
    CBorder_Mesh_Base border;
    ASSERT_TRUE(border.m_fnCreate(100, 40, 2, 5, 7));
    const CRecordingMesh& mesh = Recorded(border.m_pMesh);
    const Positions expected = {{-2, -2},  {102, -2}, {102, 42}, {-2, 42}, {3, 3},   {97, 3},
                                {97, 37},  {3, 37},   {0, 0},    {7, 0},   {7, 7},   {0, 7},
                                {93, 0},   {100, 0},  {100, 7},  {93, 7},  {93, 33}, {100, 33},
                                {100, 40}, {93, 40},  {0, 33},   {7, 33},  {7, 40},  {0, 40}};
    EXPECT_EQ(PositionsOf(mesh), expected);
    for (u32 i = 8; i < 24; ++i) EXPECT_EQ(TexturesOf(mesh)[i], (std::array<f32, 2>{0, 0})) << i;
    std::vector<u16> auExpected = g_auFrame;
    for (u16 b = 8; b < 24; b = static_cast<u16>(b + 4))
        for (u16 uCorner : {0, 1, 2, 0, 2, 3}) auExpected.push_back(static_cast<u16>(b + uCorner));
    EXPECT_EQ(mesh.m_auIndices, auExpected);
}

TEST_F(ShapeMeshes, SizesAreThoseOfTheTable) {
    CRect_Mesh_Base rect;
    CFrame_Mesh_Base frame;
    CBorder_Mesh_Base border;
    ASSERT_TRUE(rect.m_fnAllocMesh(16) && frame.m_fnAllocMesh(16) && border.m_fnAllocMesh(16));
    const std::array<std::array<u32, 2>, 3> auBytes = {{{64, 12}, {128, 48}, {384, 96}}};
    const std::array<CMesh_Base*, 3> apMeshes = {rect.m_pMesh.get(), frame.m_pMesh.get(),
                                                 border.m_pMesh.get()};
    for (u32 i = 0; i < 3; ++i) {
        EXPECT_EQ(apMeshes[i]->m_uVertexStride, 16u);
        EXPECT_EQ(apMeshes[i]->m_uVertexBytes, auBytes[i][0]);
        EXPECT_EQ(apMeshes[i]->m_uIndexBytes, auBytes[i][1]);
        EXPECT_EQ(apMeshes[i]->m_u8IndexSize, 2);
    }
}

TEST_F(ShapeMeshes, ShapesDrawAllTheirIndicesFromTheFirst) {
    CRect_Mesh_Base rect;
    CFrame_Mesh_Base frame;
    CBorder_Mesh_Base border;
    ASSERT_TRUE(rect.m_fnCreate(1, 1) && frame.m_fnCreate(1, 1, 0, 0) && border.m_fnCreate(1, 1, 0, 0, 0));
    rect.m_fnDraw();
    frame.m_fnDraw();
    border.m_fnDraw();
    EXPECT_EQ(Recorded(rect.m_pMesh).m_auDraws, std::vector<u32>{6});
    EXPECT_EQ(Recorded(frame.m_pMesh).m_auDraws, std::vector<u32>{24});
    EXPECT_EQ(Recorded(border.m_pMesh).m_auDraws, std::vector<u32>{48});
    EXPECT_EQ(Recorded(border.m_pMesh).m_auFirst, std::vector<u32>{0});
}

TEST_F(ShapeMeshes, BuildingAgainReplacesTheContentsOfTheSameMesh) {
    CRect_Mesh_Base rect;
    ASSERT_TRUE(rect.m_fnCreate(1, 1));
    const CMesh_Base* pFirst = rect.m_pMesh.get();
    ASSERT_TRUE(rect.m_fnCreate(5, 6));
    EXPECT_EQ(rect.m_pMesh.get(), pFirst);
    EXPECT_EQ(CRecordingMesh::s_uMade, 1u);
    EXPECT_EQ(Recorded(rect.m_pMesh).m_uUploads, 2u);
    EXPECT_EQ(Recorded(rect.m_pMesh).m_aVertices[2].m_afPos[1], 6.0f);
}

TEST_F(ShapeMeshes, WithoutAMeshUploadFailsAndDrawDoesNothing) {
    CRect_Mesh_Base rect;
    CFrame_Mesh_Base frame;
    CBorder_Mesh_Base border;
    const stShapeVertex aVertices[24] = {};
    EXPECT_FALSE(rect.m_fnUpload(aVertices) || frame.m_fnUpload(aVertices) || border.m_fnUpload(aVertices));
    rect.m_fnDraw();
    frame.m_fnDraw();
    border.m_fnDraw();
    EXPECT_EQ(CRecordingMesh::s_uMade, 0u);
}

TEST_F(ShapeMeshes, AMeshThatCannotBeMadeFailsTheShape) {
    g_stCreationTable.m_fnCreateMesh = []() -> CMesh_Base* { return nullptr; };
    CRect_Mesh_Base rect;
    EXPECT_FALSE(rect.m_fnCreate(1, 1));
    EXPECT_EQ(rect.m_fWidth, 1.0f);
    g_stCreationTable.m_fnCreateMesh = nullptr;
    CFrame_Mesh_Base frame;
    EXPECT_FALSE(frame.m_fnCreate(1, 1, 0, 0));
}

TEST_F(ShapeMeshes, AMeshThatRefusesItsSizesFailsTheShapeWithoutUpload) {
    CRecordingMesh::s_bAccept = false;
    CBorder_Mesh_Base border;
    EXPECT_FALSE(border.m_fnCreate(1, 1, 0, 0, 0));
    CRecordingMesh::s_bAccept = true;
    EXPECT_TRUE(border.m_fnCreate(1, 1, 0, 0, 0));
    EXPECT_EQ(Recorded(border.m_pMesh).m_uUploads, 1u);
}

TEST_F(ShapeMeshes, ReleasedShapeMakesANewMesh) {
    CRect_Mesh_Base rect;
    ASSERT_TRUE(rect.m_fnCreate(1, 1));
    rect.m_fnReleaseMesh();
    EXPECT_EQ(rect.m_pMesh, nullptr);
    ASSERT_TRUE(rect.m_fnCreate(1, 1));
    EXPECT_EQ(CRecordingMesh::s_uMade, 2u);
}
