#include "draw/aligned_allocation.h"
#include "draw/entity_gl.h"
#include "draw/matrix.h"
#include "draw/mesh_gl.h"
#include "platform/gl_api.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

using Matrix = std::array<f32, 16>;

static Matrix Of(const f32* pMatrix) {
    Matrix m;
    std::copy_n(pMatrix, 16, m.begin());
    return m;
}

TEST(Entity, BaseHasAPositionAndNoMatrix) {
    CEntity_Base entity;
    EXPECT_EQ(entity.m_fnGetWorld(), nullptr);
    EXPECT_EQ(entity.m_fnGetWorldForDraw(), nullptr);
    entity.m_fnSetPosition(1, 2, 3);
    f32 x = 0, z = 0;
    entity.m_fnGetPosition(&x, nullptr, &z);
    EXPECT_EQ(x, 1.0f);
    EXPECT_EQ(z, 3.0f);
}

TEST(Entity, StartsAtTheOriginWithTheIdentity) {
    CEntity_GL entity;
    EXPECT_EQ(Of(entity.m_fnGetWorld()), (Matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
}

TEST(Entity, PositionStandsInTheLastColumn) {
    CEntity_GL entity;
    entity.m_fnSetPosition(10, -20, 0.5f);
    EXPECT_EQ(Of(entity.m_fnGetWorldForDraw()),
              (Matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, -20, 0.5f, 1}));
}

TEST(Matrix, ProjectionHasThePrescribedElements) {
    Matrix m;
    g_fnMakeOrtho(m.data(), 0, 1920, 0, 1080, 0, 1);
    EXPECT_EQ(m, (Matrix{2.0f / 1920, 0, 0, 0, 0, 2.0f / 1080, 0, 0, 0, 0, -2, 0, -1, -1, -1, 1}));
}

TEST(Matrix, CornerConstantsDoNotFollowLeftAndBottom) {
    Matrix m;
    g_fnMakeOrtho(m.data(), 100, 300, 50, 150, 0, 1);
    EXPECT_EQ(m[0], 0.01f);
    EXPECT_EQ(m[5], 0.02f);
    EXPECT_EQ(m[12], -1.0f);
    EXPECT_EQ(m[13], -1.0f);
}

TEST(Mesh, TakesTwoAndFourByteIndicesOnly) {
    for (u8 u8Size : {0, 1, 3, 8}) {
        CMesh_Base mesh;
        EXPECT_FALSE(mesh.m_fnCreate(16, 64, 12, u8Size)) << int(u8Size);
        EXPECT_EQ(mesh.m_uVertexStride, 0u);
    }
    for (u8 u8Size : {2, 4}) {
        CMesh_Base mesh;
        EXPECT_TRUE(mesh.m_fnCreate(16, 64, 12, u8Size));
        EXPECT_EQ(mesh.m_uVertexStride, 16u);
        EXPECT_EQ(mesh.m_uVertexBytes, 64u);
        EXPECT_EQ(mesh.m_uIndexBytes, 12u);
        EXPECT_EQ(mesh.m_u8IndexSize, u8Size);
    }
}

TEST(Mesh, IndexTypeFollowsTheIndexSize) {
    CMesh_GL mesh;
    EXPECT_TRUE(mesh.m_fnCreate(16, 64, 12, 2));
    EXPECT_EQ(mesh.m_uIndexType, u32(GL_UNSIGNED_SHORT));
    EXPECT_TRUE(mesh.m_fnCreate(16, 64, 12, 4));
    EXPECT_EQ(mesh.m_uIndexType, u32(GL_UNSIGNED_INT));
    CMesh_GL refused;
    EXPECT_FALSE(refused.m_fnCreate(16, 64, 12, 8));
    EXPECT_EQ(refused.m_uIndexType, 0u);
}

TEST(Mesh, BaseUploadsNothingAndHasNoBuffers) {
    CMesh_Base mesh;
    EXPECT_TRUE(mesh.m_fnUpload(nullptr, nullptr));
    EXPECT_EQ(mesh.m_fnGetVB(), 0u);
    EXPECT_EQ(mesh.m_fnGetIB(), 0u);
    EXPECT_EQ(mesh.m_fnLockVertices(), nullptr);
    EXPECT_EQ(mesh.m_fnLockIndices(), nullptr);
}

TEST(AlignedAllocation, ObjectsStandOnTheirBoundary) {
    std::vector<std::unique_ptr<CEntity_GL>> list;
    for (int i = 0; i < 64; ++i) {
        list.emplace_back(i % 2 ? new CEntity_GL : new (std::nothrow) CEntity_GL);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(list.back().get()) % 16, 0u);
    }
}

namespace {
/// Larger than any address space.
struct Enormous : CAlignedAllocationPolicy<int, 16> {
    char m_acBytes[std::size_t{1} << 62];
};
} // namespace

TEST(AlignedAllocation, NoMemoryGivesNullInsteadOfAnException) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer's allocator ends the process instead";
#endif
    EXPECT_EQ(Enormous::operator new(sizeof(Enormous)), nullptr);
    EXPECT_EQ(Enormous::operator new(sizeof(Enormous), std::nothrow), nullptr);
}
