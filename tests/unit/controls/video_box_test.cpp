// Video boxes: geometry, texture, frames, and what a draw is made of.
#include "controls/video_box.h"

#include "draw/draw_keys.h"
#include "tests/unit/controls/graph_fixture.h"

#include <algorithm>

namespace {

using namespace graphs;

/// Formats that can be made, and what was done.
std::vector<u32> g_auRefused;
bool g_bTextures;
i32 g_iLiveTextures;

class CTexture final : public virtual CTexture_Base {
  public:
    CTexture() { ++g_iLiveTextures; }
    ~CTexture() override { --g_iLiveTextures; }
    bool m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) override {
        if (std::ranges::find(g_auRefused, uFormat) != g_auRefused.end()) return false;
        return CTexture_Base::m_fnCreate(uWidth, uHeight, uFormat, uFrames, bMipmap);
    }
    bool m_fnUploadLevel(const void* pPixels, u32, u32) override {
        g_aEvents.push_back("upload");
        m_pUploaded = pPixels;
        m_aPixels.assign(static_cast<const u8*>(pPixels), static_cast<const u8*>(pPixels) + m_uFrameBytes);
        return true;
    }
    void m_fnBindUnit(u32 uUnit) override { g_aEvents.push_back("texture " + std::to_string(uUnit)); }
    const void* m_pUploaded = nullptr;
    std::vector<u8> m_aPixels;
};

class VideoBox : public GraphTest {
  protected:
    void SetUp() override {
        GraphTest::SetUp();
        g_auRefused.clear();
        g_bTextures = true;
        g_stCreationTable.m_fnCreateTexture = []() -> CTexture_Base* {
            return g_bTextures ? new CTexture : nullptr;
        };
    }
    void TearDown() override {
        GraphTest::TearDown();
        EXPECT_EQ(g_iLiveTextures, 0);
    }
    /// A box that the manager owns, initialised.
    CVideoBox_Base* Make(f32 fBoxW, f32 fBoxH, f32 fFrameW, f32 fFrameH) {
        g_ppVideoBox[0] = new CVideoBox_Base;
        g_ppVideoBox[0]->m_fnSetBoxSize(fBoxW, fBoxH);
        g_ppVideoBox[0]->m_fnSetFrameSize(fFrameW, fFrameH);
        EXPECT_TRUE(g_ppVideoBox[0]->m_fnInitialize());
        g_aEvents.clear();
        return g_ppVideoBox[0];
    }
    static CTexture& Texture(CVideoBox_Base& box) { return dynamic_cast<CTexture&>(*box.m_pTexture); }
    static std::vector<f32> Left(const CVideoBox_Base& box) {
        const stShapeVertex& st = box.m_pVertices[0];
        return {st.m_afPos[0], st.m_afPos[1], st.m_afTex[0], st.m_afTex[1]};
    }
};

using Floats = std::vector<f32>;

TEST_F(VideoBox, ANewOneHasItsDefaults) {
    const CVideoBox_Base box;
    EXPECT_EQ(box.m_fBoxW, 512);
    EXPECT_EQ(box.m_fBoxH, 512);
    EXPECT_EQ(box.m_fFrameW, 0);
    EXPECT_EQ(box.m_fFrameH, 0);
    EXPECT_EQ(Floats(box.m_afColor, box.m_afColor + 4), (Floats{0.5f, 0.5f, 0.5f, 1}));
    EXPECT_EQ(box.m_uPixelFormat, 0u);
    EXPECT_EQ(box.m_pDrawKey, g_keyTextureList);
    EXPECT_EQ(box.m_uVertexBytes, 0u);
    EXPECT_EQ(box.m_iAnchorCode, 1);
}

TEST_F(VideoBox, TheQuadIsTheFrameFittedIntoTheBox) {
    const CVideoBox_Base* pBox = Make(100, 100, 20, 10);
    EXPECT_EQ(pBox->m_uVertexBytes, 64u);
    EXPECT_EQ(pBox->m_uIndexBytes, 12u);
    const Points places = {{0, 0}, {100, 0}, {100, 50}, {0, 50}}, corners = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (u32 i = 0; i < 4; ++i) {
        EXPECT_EQ(pBox->m_pVertices[i].m_afPos[0], places[i].x) << i;
        EXPECT_EQ(pBox->m_pVertices[i].m_afPos[1], places[i].y) << i;
        EXPECT_EQ(pBox->m_pVertices[i].m_afTex[0], corners[i].x) << i;
        EXPECT_EQ(pBox->m_pVertices[i].m_afTex[1], corners[i].y) << i;
    }
    EXPECT_EQ(Indices(pBox->m_pIndices.get(), pBox->m_pIndices.get() + 6), (Indices{0, 1, 2, 0, 2, 3}));
    const auto& mesh = dynamic_cast<CMesh&>(*pBox->m_pMesh);
    EXPECT_EQ(mesh.m_uVertexStride, 16u);
    EXPECT_EQ(mesh.m_u8IndexSize, 2);
    EXPECT_EQ(mesh.m_auIndices, (Indices{0, 1, 2, 0, 2, 3}));
}

// By the keypad; the picture is 100 by 50 in a box of 100 by 100, then 50 by 100 of the same.
TEST_F(VideoBox, TheAnchorCodePlacesThePictureInTheBox) {
    const f32 afDown[] = {0, 0, 0, 25, 25, 25, 50, 50, 50}, afAcross[] = {0, 25, 50, 0, 25, 50, 0, 25, 50};
    CVideoBox_Base* pFlat = Make(100, 100, 20, 10);
    for (i32 iCode = 1; iCode <= 9; ++iCode) {
        pFlat->m_fnSetAnchor(iCode, 0, 0);
        EXPECT_TRUE(pFlat->m_fnBuildQuad());
        EXPECT_EQ(Left(*pFlat), (Floats{0, afDown[iCode - 1], 0, 0})) << iCode;
    }
    for (const i32 iCode : {0, -5, -9, 10, 13, INT32_MIN, INT32_MAX}) {
        pFlat->m_fnSetAnchor(iCode, 0, 0);
        EXPECT_TRUE(pFlat->m_fnBuildQuad());
        EXPECT_EQ(Left(*pFlat), (Floats{0, 0, 0, 0})) << iCode;
    }
    pFlat->m_fnSetFrameSize(10, 20);
    EXPECT_TRUE(pFlat->m_fnCreateTexture(10, 20));
    for (i32 iCode = 1; iCode <= 9; ++iCode) {
        pFlat->m_fnSetAnchor(iCode, 0, 0);
        EXPECT_TRUE(pFlat->m_fnBuildQuad());
        EXPECT_EQ(Left(*pFlat), (Floats{afAcross[iCode - 1], 0, 0, 0})) << iCode;
    }
}

TEST_F(VideoBox, Code9WithoutAnOffsetIsTheCanvassBottomRightCorner) {
    CVideoBox_Base* pBox = Make(1280, 720, 640, 360);
    pBox->m_fnSetAnchor(9, 0, 0);
    m_pManager->m_fnAddChild(nullptr, pBox);
    EXPECT_EQ(pBox->m_fPosX, 1920 - 1280);
    EXPECT_EQ(pBox->m_fPosY, 1080 - 720);
    EXPECT_EQ(pBox->m_pEntity->m_fPosX, 640);
    EXPECT_EQ(pBox->m_pEntity->m_fPosY, 360);
}

TEST_F(VideoBox, TheTextureIsClearUntilTheFirstFrame) {
    CVideoBox_Base* pBox = Make(100, 100, 4, 2);
    EXPECT_EQ(pBox->m_uPixelFormat, g_uFormatRGBA8);
    EXPECT_EQ(Texture(*pBox).m_aPixels, std::vector<u8>(32, 0));
    EXPECT_EQ(Texture(*pBox).m_uFrameCount, 1);
    EXPECT_FALSE(Texture(*pBox).m_bMipmap);
}

TEST_F(VideoBox, AFrameOfTheTexturesFormatGoesAsItIs) {
    CVideoBox_Base* pBox = Make(100, 100, 1, 2);
    const u8 au8[] = {1, 2, 3, 4, 5, 6, 7, 8};
    pBox->m_fnWriteFrame(au8, g_uFormatRGBA8);
    EXPECT_EQ(Texture(*pBox).m_pUploaded, au8);
    EXPECT_EQ(pBox->m_pConvertBuffer, nullptr);
}

TEST_F(VideoBox, WithoutTheFirstFormatAFrameIsRewritten) {
    g_auRefused = {g_uFormatRGBA8};
    CVideoBox_Base* pBox = Make(100, 100, 1, 2);
    EXPECT_EQ(pBox->m_uPixelFormat, g_uFormatBGRA8);
    const u8 au8[] = {1, 2, 3, 4, 5, 6, 7, 8};
    pBox->m_fnWriteFrame(au8, g_uFormatRGBA8);
    EXPECT_EQ(Texture(*pBox).m_aPixels, (std::vector<u8>{3, 2, 1, 4, 7, 6, 5, 8}));
    const u8* const pBuffer = pBox->m_pConvertBuffer.get();
    ASSERT_NE(pBuffer, nullptr);
    pBox->m_fnWriteFrame(au8, g_uFormatRGBA8);
    EXPECT_EQ(pBox->m_pConvertBuffer.get(), pBuffer) << "made once";
    pBox->m_fnWriteFrame(au8, g_uFormatBGRA8);
    EXPECT_EQ(Texture(*pBox).m_aPixels, (std::vector<u8>{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(VideoBox, AFrameSizeSetLaterNeverLetsTheTextureReadBeyondTheFrame) {
    CVideoBox_Base* pBox = Make(100, 100, 4, 4);
    const std::unique_ptr<u8[]> pSmall(new u8[4]{9, 9, 9, 9});
    pBox->m_fnSetFrameSize(1, 1);
    pBox->m_fnWriteFrame(pSmall.get(), g_uFormatRGBA8);
    pBox->m_fnWriteFrame(pSmall.get(), g_uFormatBGRA8);
    EXPECT_TRUE(g_aEvents.empty());
    // Larger: what is rewritten outgrows the buffer of before.
    pBox->m_fnSetFrameSize(4, 4);
    const std::vector<u8> aFrame(1024, 5);
    pBox->m_fnWriteFrame(aFrame.data(), g_uFormatBGRA8);
    pBox->m_fnSetFrameSize(16, 16);
    pBox->m_fnWriteFrame(aFrame.data(), g_uFormatBGRA8);
    EXPECT_EQ(Texture(*pBox).m_aPixels, std::vector<u8>(64, 5));
    pBox->m_fnWriteFrame(nullptr, g_uFormatRGBA8);
}

TEST_F(VideoBox, WhatCannotBeMadeEndsTheInitialisation) {
    const auto fnInitialize = [] {
        CVideoBox_Base box;
        box.m_fnSetFrameSize(4, 4);
        return box.m_fnInitialize();
    };
    EXPECT_TRUE(fnInitialize());
    g_bEntities = false;
    EXPECT_FALSE(fnInitialize());
    g_bEntities = true;
    g_bMeshes = false;
    EXPECT_FALSE(fnInitialize());
    g_bMeshes = true;
    g_bTextures = false;
    EXPECT_FALSE(fnInitialize());
    g_bTextures = true;
    g_auRefused = {g_uFormatRGBA8, g_uFormatBGRA8};
    EXPECT_FALSE(fnInitialize());
    g_auRefused.clear();
    CVideoBox_Base none;
    EXPECT_FALSE(none.m_fnInitialize()) << "a frame of no size";
    CVideoBox_Base hidden;
    hidden.m_fnSetRenderable(false);
    EXPECT_TRUE(hidden.m_fnInitialize());
    EXPECT_EQ(hidden.m_pMesh, nullptr);
}

TEST_F(VideoBox, QuadWithoutTextureOrBuffersIsFalse) {
    CVideoBox_Base box;
    EXPECT_FALSE(box.m_fnBuildQuad());
    EXPECT_TRUE(box.m_fnAllocBuffers());
    EXPECT_FALSE(box.m_fnBuildQuad());
}

TEST_F(VideoBox, DrawsTextureConstantsAndSixIndices) {
    CVideoBox_Base* pBox = Make(100, 100, 4, 4);
    pBox->m_fnSetColorB(255, 255, 255, 117);
    pBox->m_fnRender(&m_batcher);
    EXPECT_EQ(g_aEvents, (Events{"texture 0", "constants", "bind", "layout", "draw 6 from 0"}));
    EXPECT_EQ(m_batcher.m_stLast.m_pColor[3], 117 / 255.0f);
    EXPECT_EQ(m_batcher.m_stLast.m_pWorld, dynamic_cast<CEntity&>(*pBox->m_pEntity).m_afWorld);
    g_aEvents.clear();
    pBox->m_fnSetRenderable(false);
    pBox->m_fnRender(&m_batcher);
    EXPECT_TRUE(g_aEvents.empty());
}

TEST_F(VideoBox, OneWhoseTextureWasGivenBackDrawsNothing) {
    CVideoBox_Base* pBox = Make(100, 100, 1, 1);
    pBox->m_fnReleaseTexture();
    pBox->m_fnReleaseTexture();
    pBox->m_fnRender(&m_batcher);
    const u8 au8[4] = {};
    pBox->m_fnWriteFrame(au8, g_uFormatRGBA8);
    EXPECT_TRUE(g_aEvents.empty());
}

TEST_F(VideoBox, NotesAChangeOfItsLooks) {
    CVideoBox_Base* pBox = Make(100, 100, 4, 4);
    u32 uSeen = g_uControlChanges;
    pBox->m_fnSetColor(0x102030, 4);
    EXPECT_NE(g_uControlChanges, uSeen);
    EXPECT_EQ(pBox->m_afColor[0], 0x10 / 255.0f);
    EXPECT_EQ(pBox->m_afColor[3], 4 / 255.0f);
    uSeen = g_uControlChanges;
    pBox->m_fnUploadMesh();
    EXPECT_NE(g_uControlChanges, uSeen);
}

TEST_F(VideoBox, TheManagerOwnsIt) {
    Make(100, 100, 4, 4);
    g_fnDestroyManagers();
    EXPECT_EQ(g_iLiveTextures, 0);
    EXPECT_EQ(g_iLiveMeshes, 0);
    EXPECT_EQ(g_iLiveEntities, 0);
}

} // namespace
