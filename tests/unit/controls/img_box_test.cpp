#include "controls/img_box.h"

#include "draw/draw_keys.h"
#include "tests/unit/controls/img_box_fixture.h"

#include <cmath>
#include <limits>

namespace {

using Events = std::vector<std::string>;

class ImgBox : public ImgBoxTest {
  protected:
    /// An initialised box that shows a picture of this size.
    std::unique_ptr<CImgBox_Base> Ready(u32 uWidth, u32 uHeight, f32 fBoxW, f32 fBoxH) {
        WritePicture("p.bmp", uWidth, uHeight);
        auto p = std::make_unique<CImgBox_Base>();
        p->m_fnSetBoxSize(fBoxW, fBoxH);
        p->m_fnSetImageFile(u"p.bmp", false);
        EXPECT_TRUE(p->m_fnInitialize());
        recording::g_aEvents.clear();
        return p;
    }
    static void ExpectVertex(const stShapeVertex& st, f32 x, f32 y, f32 u, f32 v) {
        EXPECT_NEAR(st.m_afPos[0], x, 0.001f);
        EXPECT_NEAR(st.m_afPos[1], y, 0.001f);
        EXPECT_EQ(st.m_afTex[0], u);
        EXPECT_EQ(st.m_afTex[1], v);
    }
    static void ExpectUpright(const CImgBox_Base& box, f32 fLeft, f32 fTop, f32 fRight, f32 fBottom) {
        ExpectVertex(box.m_pVertices[0], fLeft, fTop, 0, 0);
        ExpectVertex(box.m_pVertices[1], fRight, fTop, 1, 0);
        ExpectVertex(box.m_pVertices[2], fRight, fBottom, 1, 1);
        ExpectVertex(box.m_pVertices[3], fLeft, fBottom, 0, 1);
    }
    recording::CBatcher m_batcher;
};

TEST_F(ImgBox, StartsGrayUprightAndWithoutAnythingMade) {
    CImgBox_Base box;
    EXPECT_EQ(box.m_fBoxW, 512);
    EXPECT_EQ(box.m_fBoxH, 512);
    EXPECT_EQ(box.m_afColor[0], 0.5f);
    EXPECT_EQ(box.m_afColor[3], 1.0f);
    EXPECT_EQ(box.m_pTexture, nullptr);
    EXPECT_EQ(box.m_pVertices, nullptr);
    EXPECT_FALSE(box.m_bFullPath);
    EXPECT_FALSE(box.m_bTilted);
    EXPECT_EQ(box.m_fTiltDegree, 0);
    EXPECT_EQ(box.m_fnGetDrawKey(), static_cast<const void*>(g_keyTextureList));
    EXPECT_EQ(box.m_fnGetType(), 0u);
    EXPECT_EQ(box.m_fnGetVertexBytes(), 0u);
    EXPECT_EQ(box.m_fnGetVertexData(), nullptr);
}

TEST_F(ImgBox, BuffersAreFourVerticesAndTwoTriangles) {
    CImgBox_Base box;
    ASSERT_TRUE(box.m_fnAllocBuffers());
    EXPECT_EQ(box.m_fnGetVertexBytes(), 64u);
    EXPECT_EQ(box.m_fnGetIndexBytes(), 12u);
    const std::vector<u16> indices(box.m_pIndices.get(), box.m_pIndices.get() + 6);
    EXPECT_EQ(indices, (std::vector<u16>{0, 1, 2, 0, 2, 3}));
}

TEST_F(ImgBox, TheThreeColourFormsAgree) {
    CImgBox_Base box;
    box.m_fnSetColorB(255, 51, 0, 102);
    const f32 afBytes[] = {1.0f, 51 / 255.0f, 0.0f, 102 / 255.0f};
    for (u32 i = 0; i < 4; ++i) EXPECT_EQ(box.m_afColor[i], afBytes[i]);
    box.m_fnSetColorF(0, 0, 0, 0);
    box.m_fnSetColor(0xFF3300, 102);
    for (u32 i = 0; i < 4; ++i) EXPECT_EQ(box.m_afColor[i], afBytes[i]);
}

TEST_F(ImgBox, WidePictureWithCode1FillsTheTopHalfAndWithCode5TheMiddle) {
    auto p = Ready(200, 100, 100, 100);
    ExpectUpright(*p, 0, 0, 100, 50);
    p->m_fnSetAnchor(5, 0, 0);
    p->m_fnRebuild();
    ExpectUpright(*p, 0, 25, 100, 75);
}

/// A picture of 200 by 100: 120 by 60 in a box of 120 by 100, which leaves 40 below, and 120 by 60 in one of
/// 200 by 60, which leaves 80 beside it.
TEST_F(ImgBox, EachInnerCodePlacesThePictureAndAnyOtherPutsItAtTheCorner) {
    const f32 afTop[] = {0, 0, 0, 20, 20, 20, 40, 40, 40}, afLeft[] = {0, 40, 80, 0, 40, 80, 0, 40, 80};
    auto pHigh = Ready(200, 100, 120, 100), pWide = Ready(200, 100, 200, 60);
    for (i32 iCode = -10; iCode <= 11; ++iCode) {
        const bool bInner = iCode >= 1 && iCode <= 9;
        const f32 fTop = bInner ? afTop[iCode - 1] : 0, fLeft = bInner ? afLeft[iCode - 1] : 0;
        SCOPED_TRACE(iCode);
        pHigh->m_fnSetAnchor(iCode, 7, 9);
        ASSERT_TRUE(pHigh->m_fnBuildFittedQuad());
        ExpectUpright(*pHigh, 0, fTop, 120, fTop + 60);
        pWide->m_fnSetAnchor(iCode, 7, 9);
        ASSERT_TRUE(pWide->m_fnBuildFittedQuad());
        ExpectUpright(*pWide, fLeft, 0, fLeft + 120, 60);
    }
}

/// Where the corners of a picture of 200 by 100 come to lie, in the order of its own corners from the top
/// left on. Made by turning the whole picture about its middle and fitting the bounds of that into the box.
struct stTilted {
    f32 fBoxW, fBoxH, fDegrees;
    f32 aafCorner[4][2];
};
constexpr stTilted g_astTilted[] = {
    {160, 120, 0, {{0, 20}, {160, 20}, {160, 100}, {0, 100}}},
    {160, 120, 30, {{40.3848f, 0}, {151.7691f, 64.3078f}, {119.6152f, 120}, {8.2309f, 55.6922f}}},
    {160, 120, 45, {{60, 0}, {140, 80}, {100, 120}, {20, 40}}},
    {160, 120, 90, {{110, 0}, {110, 120}, {50, 120}, {50, 0}}},
    {160, 120, 135, {{140, 40}, {60, 120}, {20, 80}, {100, 0}}},
    {160, 120, 200, {{135.3655f, 118.4759f}, {0, 69.2069f}, {24.6345f, 1.5241f}, {160, 50.7931f}}},
    {160, 120, 359.9f, {{0, 20.1744f}, {159.8605f, 19.8954f}, {160, 99.8256f}, {0.1395f, 100.1046f}}},
    {60, 200, 0, {{0, 85}, {60, 85}, {60, 115}, {0, 115}}},
    {60, 200, 30, {{13.4406f, 74.9196f}, {60, 101.8007f}, {46.5594f, 125.0804f}, {0, 98.1993f}}},
    {60, 200, 45, {{20, 70}, {60, 110}, {40, 130}, {0, 90}}},
    {60, 200, 90, {{60, 40}, {60, 160}, {0, 160}, {0, 40}}},
    {60, 200, 135, {{60, 90}, {20, 130}, {0, 110}, {40, 70}}},
    {60, 200, 200, {{50.7621f, 121.9285f}, {0, 103.4526f}, {9.2379f, 78.0715f}, {60, 96.5474f}}},
    {60, 200, 359.9f, {{0, 85.0654f}, {59.9477f, 84.9608f}, {60, 114.9346f}, {0.0523f, 115.0392f}}},
};

TEST_F(ImgBox, TiltedPicturesAreTurnedAboutTheirMiddleAndFitTheirBox) {
    static constexpr f32 aafTexture[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (const stTilted& st : g_astTilted) {
        SCOPED_TRACE(st.fDegrees);
        auto p = Ready(200, 100, st.fBoxW, st.fBoxH);
        p->m_fnSetTilted(true);
        p->m_fnSetTiltDegree(st.fDegrees);
        p->m_fnRebuild();
        const u32 uQuarters = static_cast<u32>(st.fDegrees) / 90;
        for (u32 i = 0; i < 4; ++i)
            ExpectVertex(p->m_pVertices[(i + uQuarters) % 4], st.aafCorner[i][0], st.aafCorner[i][1],
                         aafTexture[i][0], aafTexture[i][1]);
    }
}

TEST_F(ImgBox, ATiltOf90TurnsThePictureByTextureCornersAlone) {
    auto p = Ready(100, 200, 200, 100);
    p->m_fnSetTilted(true);
    p->m_fnSetTiltDegree(90);
    p->m_fnRebuild();
    ExpectVertex(p->m_pVertices[0], 0, 0, 0, 1);
    ExpectVertex(p->m_pVertices[1], 200, 0, 0, 0);
    ExpectVertex(p->m_pVertices[2], 200, 100, 1, 0);
    ExpectVertex(p->m_pVertices[3], 0, 100, 1, 1);
}

TEST_F(ImgBox, ATiltOf45OnASquareInASquareTouchesAllFourSides) {
    auto p = Ready(64, 64, 100, 100);
    p->m_fnSetTilted(true);
    p->m_fnSetTiltDegree(45);
    p->m_fnRebuild();
    ExpectVertex(p->m_pVertices[0], 50, 0, 0, 0);
    ExpectVertex(p->m_pVertices[1], 100, 50, 1, 0);
    ExpectVertex(p->m_pVertices[2], 50, 100, 1, 1);
    ExpectVertex(p->m_pVertices[3], 0, 50, 0, 1);
}

TEST_F(ImgBox, DegreesAreBroughtIntoOneTurn) {
    CImgBox_Base box;
    const f32 fInfinite = std::numeric_limits<f32>::infinity(), fNothing = std::nanf("");
    const f32 aafPairs[][2] = {{400, 40},   {-30, 330},     {360, 0},        {0, 0},
                               {-360, 0},   {720.5f, 0.5f}, {-1e-9f, 0},     {1080, 0},
                               {-750, 330}, {fInfinite, 0}, {-fInfinite, 0}, {fNothing, 0}};
    for (const auto& afPair : aafPairs) {
        box.m_fnSetTiltDegree(afPair[0]);
        EXPECT_EQ(box.m_fTiltDegree, afPair[1]) << afPair[0];
    }
}

TEST_F(ImgBox, QuadsWithoutAPictureAreRefused) {
    CImgBox_Base box;
    EXPECT_FALSE(box.m_fnBuildFittedQuad());
    ASSERT_TRUE(box.m_fnAllocBuffers());
    EXPECT_FALSE(box.m_fnBuildFittedQuad());
    EXPECT_FALSE(box.m_fnBuildTiltedQuad());
}

TEST_F(ImgBox, ABoxWithoutASizeHasAQuadWithoutAnArea) {
    auto p = Ready(200, 100, 0, 0);
    ExpectUpright(*p, 0, 0, 0, 0);
    p->m_fnSetTilted(true);
    p->m_fnSetTiltDegree(30);
    p->m_fnRebuild();
    for (u32 i = 0; i < 4; ++i) EXPECT_EQ(p->m_pVertices[i].m_afPos[0], 0);
}

TEST_F(ImgBox, DrawsItsTextureAndThenItsQuad) {
    auto p = Ready(2, 2, 10, 10);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, (Events{"texture 0", "constants", "bind", "layout", "draw 6"}));
    EXPECT_EQ(m_batcher.m_stLast.m_pColor, p->m_afColor);
    recording::g_aEvents.clear();
    p->m_fnSetRenderable(false);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, Events{});
}

TEST_F(ImgBox, WhatIsNotRenderableNeedsNothing) {
    CImgBox_Base box;
    box.m_fnSetImageFile(u"none.bmp", false);
    box.m_fnSetRenderable(false);
    EXPECT_TRUE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pEntity, nullptr);
    box.m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, Events{});
}

TEST_F(ImgBox, WithoutAFileNameTheTextureIsBlankAndAsLargeAsTheBox) {
    CImgBox_Base box;
    box.m_fnSetBoxSize(30, 20);
    ASSERT_TRUE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pTexture->m_uWidth, 30u);
    EXPECT_EQ(box.m_pTexture->m_uHeight, 20u);
    EXPECT_EQ(box.m_pTexture->m_uFormat, 11u);
    EXPECT_EQ(recording::g_aEvents, (Events{"upload 0"}));
    const u32 auPixels[600] = {};
    box.m_fnWriteTexture(auPixels);
    EXPECT_EQ(recording::g_aEvents, (Events{"upload 0", "upload 0"}));
    ExpectUpright(box, 0, 0, 30, 20);
}

TEST_F(ImgBox, ABlankTextureFallsBackToTheOtherOrderOfColours) {
    struct COnlyBGRA : CNotedTexture {
        bool m_fnCreate(u32 w, u32 h, u32 uFormat, u32 uFrames, bool bMipmap) override {
            return uFormat == 47 && CNotedTexture::m_fnCreate(w, h, uFormat, uFrames, bMipmap);
        }
    };
    g_stCreationTable.m_fnCreateTexture = []() -> CTexture_Base* { return new COnlyBGRA; };
    CImgBox_Base box;
    box.m_fnCreateBlankTexture(2, 2);
    ASSERT_NE(box.m_pTexture, nullptr);
    EXPECT_EQ(box.m_pTexture->m_uFormat, 47u);
    box.m_fnCreateBlankTexture(0, 2);
    EXPECT_EQ(box.m_pTexture, nullptr);
}

TEST_F(ImgBox, ANameIsLookedForInTheDataFolderAndAWholePathAsItStands) {
    WritePicture("sub/p.bmp", 4, 2);
    CImgBox_Base named, whole, wrong;
    named.m_fnSetImageFile(u"sub/p.bmp", false);
    EXPECT_TRUE(named.m_fnInitialize());
    whole.m_fnSetImageFile(Whole("sub/p.bmp").c_str(), true);
    EXPECT_TRUE(whole.m_fnInitialize());
    wrong.m_fnSetImageFile(u"sub/p.bmp", true);
    EXPECT_FALSE(wrong.m_fnInitialize());
}

TEST_F(ImgBox, AFileThatCannotBeReadLeavesNoTextureAndIsNotDrawn) {
    m_folder.Write("p.bmp", "no picture");
    CImgBox_Base box;
    box.m_fnSetImageFile(u"p.bmp", false);
    EXPECT_FALSE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pTexture, nullptr);
    box.m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, Events{});
}

TEST_F(ImgBox, PixelsAreNotKeptOnceTheyAreUploaded) {
    auto p = Ready(8, 8, 10, 10);
    u8* pPixels = nullptr;
    p->m_pTexture->m_fnGetLevel(&pPixels, 0, 0);
    EXPECT_EQ(pPixels, nullptr);
    const u32 auPixels[64] = {};
    p->m_fnWriteTexture(auPixels);
    EXPECT_EQ(recording::g_aEvents, (Events{"upload 0"})) << "it takes new ones all the same";
}

TEST_F(ImgBox, ARawPictureBesideAPictureWinsWhateverTheDates) {
    m_folder.Write("Screenshot.png.cache", picture_files::Raw(6, 2, 0xFF0000FF));
    WritePicture("Screenshot.png", 4, 4); // the newer one
    CImgBox_Base box;
    box.m_fnSetImageFile(u"Screenshot.png", false);
    ASSERT_TRUE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pTexture->m_uWidth, 6u);
    m_folder.Remove("Screenshot.png.cache");
    CImgBox_Base plain;
    plain.m_fnSetImageFile(u"Screenshot.png", false);
    ASSERT_TRUE(plain.m_fnInitialize());
    EXPECT_EQ(plain.m_pTexture->m_uWidth, 4u);
}

TEST_F(ImgBox, TheRawPictureIsThatOfTheScreenshotMarkerWhoeverHasOneBesideIt) {
    WritePicture("p.bmp", 4, 4);
    m_folder.Write("p.bmp.cache", picture_files::Raw(6, 2, 0xFF0000FF));
    CImgBox_Base box;
    box.m_fnSetImageFile(u"p.bmp", false);
    EXPECT_FALSE(box.m_fnInitialize()) << "there is none";
    m_folder.Write("Screenshot.png.cache", picture_files::Raw(3, 3, 0xFF0000FF));
    CImgBox_Base other;
    other.m_fnSetImageFile(Whole("p.bmp").c_str(), true);
    ASSERT_TRUE(other.m_fnInitialize());
    EXPECT_EQ(other.m_pTexture->m_uWidth, 3u);
}

TEST_F(ImgBox, AnotherFileReplacesThePictureAndTheQuadButNotTheMesh) {
    auto p = Ready(200, 100, 100, 100);
    WritePicture("q.bmp", 100, 200);
    const i32 iUploads = recording::g_iUploads;
    p->m_fnSetImageFile(u"q.bmp", false);
    ExpectUpright(*p, 0, 0, 50, 100);
    EXPECT_EQ(CNotedTexture::s_iLive, 1);
    EXPECT_EQ(recording::g_iUploads, iUploads) << "handing it over is the caller's";
    p->m_fnRebuild();
    EXPECT_EQ(recording::g_iUploads, iUploads + 1);
    p->m_fnSetImageFile(u"none.bmp", false);
    EXPECT_EQ(p->m_pTexture, nullptr);
    recording::g_aEvents.clear();
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, Events{});
}

TEST_F(ImgBox, ANameThatDoesNotFitCountsAsNone) {
    CImgBox_Base box;
    box.m_fnSetImageFile(std::u16string(g_uDataPathCapacity - 1, u'a').c_str(), true);
    EXPECT_EQ(std::u16string_view(box.m_wzFileName).size(), g_uDataPathCapacity - 1);
    EXPECT_FALSE(box.m_fnLoadTexture());
    box.m_fnSetImageFile(std::u16string(g_uDataPathCapacity, u'a').c_str(), true);
    EXPECT_EQ(box.m_wzFileName[0], 0);
    box.m_fnSetImageFile(nullptr, false);
    EXPECT_EQ(box.m_wzFileName[0], 0);
}

TEST_F(ImgBox, MovesItsEntity) {
    auto p = Ready(2, 2, 10, 10);
    p->m_fnMoveTo(30, 40, 0);
    f32 x = 0, y = 0;
    p->m_pEntity->m_fnGetPosition(&x, &y, nullptr);
    EXPECT_EQ(x, 30);
    EXPECT_EQ(y, 40);
}

TEST_F(ImgBox, EachStepOfTheInitialisationMayFail) {
    WritePicture("p.bmp", 2, 2);
    const auto fnTry = [] {
        CImgBox_Base box;
        box.m_fnSetImageFile(u"p.bmp", false);
        return box.m_fnInitialize();
    };
    EXPECT_TRUE(fnTry());
    recording::g_iEntitiesLeft = 0;
    EXPECT_FALSE(fnTry());
    recording::g_iEntitiesLeft = -1;
    recording::g_iMeshesLeft = 0;
    EXPECT_FALSE(fnTry());
    recording::g_iMeshesLeft = -1;
    g_stCreationTable.m_fnCreateTexture = nullptr;
    EXPECT_FALSE(fnTry());
}

} // namespace
