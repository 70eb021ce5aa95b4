#include "config/make/image_records.h"

#include "base/log.h"
#include "config/items/interner.h"
#include "config/load.h"
#include "config/profile/profile_panel_keys.h"
#include "config/profile/profile_switches.h"
#include "config/settings/settings.h"
#include "controls/link_controls.h"
#include "draw/draw_keys.h"
#include "shared/process_records.h"
#include "tests/unit/controls/img_box_fixture.h"

#include <algorithm>

namespace {

std::vector<std::string> g_aLines;

class ImageRecords : public ImgBoxTest {
  protected:
    void SetUp() override {
        ImgBoxTest::SetUp();
        g_fnSetProfileName(u"Mine");
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.emplace_back(szLine); };
        WritePicture("Profiles/Mine/p.bmp", 4, 2);
        WritePicture("p.bmp", 8, 8);
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        ImgBoxTest::TearDown();
        g_fnResetConfiguration();
        g_wzProfileName[0] = g_wzProfileFolder[0] = 0;
    }
    stImageInit Record(u64 u64LB_ID, const std::string& strFile = "p.bmp") const {
        stImageInit st{};
        static_cast<stColor&>(st) = {255, 51, 0, 102};
        st.u64LB_ID = u64LB_ID;
        st.iAnchorCode = 6;
        st.iX = 10;
        st.iY = 20;
        st.iWidth = 300;
        st.iHeight = 200;
        const std::u16string wzPath = Whole(strFile);
        wzPath.copy(st.wzPath, wzPath.size());
        return st;
    }
    static CImgBox_Base* Find(u64 u64LB_ID) { return g_fnFindCtrlById(u64LB_ID, g_fnKind<KIND_IMGBOX>()); }
    static std::ptrdiff_t Logged(const std::string& strLine) {
        return std::count(g_aLines.begin(), g_aLines.end(), strLine);
    }
    static void AskForProfilePhoto() {
        g_stProfileSwitches.uPhoto = 1;
        stPhotoKeys& st = g_stLooks.stPhoto;
        std::u16string(u"p.bmp").copy(st.wzFilename, 6);
        st.uFrameSizeW = 40;
        st.uFrameSizeH = 20;
        st.stPlace = {3, 5, 6};
        st.u8A = 127;
    }
    static void AskForCameraPhoto(const std::u16string& wzPath) {
        stCameraPhoto& st = g_stSettings.stPhoto;
        st.wzFilePath[wzPath.copy(st.wzFilePath, g_uRegistryTextUnits - 1)] = 0;
        st.uIsShow = 1;
        st.uFrameSizeW = 64;
        st.uFrameSizeH = 32;
        st.iAnchor = 9;
        st.iPositionX = 7;
        st.iPositionY = 8;
        st.uAlpha = 51;
    }
    void WriteShutter(bool bPicture, bool bRaw, const std::string& strTimes) const {
        for (const char* szName : {"Screenshot.png", "Screenshot.png.cache", "Screenshot.anm"})
            m_folder.Remove(szName);
        if (bPicture) WritePicture("Screenshot.png", 16, 16);
        if (bRaw) m_folder.Write("Screenshot.png.cache", picture_files::Raw(6, 2, 0xFF0000FF));
        if (!strTimes.empty()) m_folder.Write("Screenshot.anm", strTimes);
    }
    static std::string Times(u32 uSteps) {
        std::string str = picture_files::Low(500) + picture_files::Low(uSteps);
        for (u32 u = 0; u < uSteps; ++u) str += picture_files::Low(u);
        return str;
    }
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};

TEST_F(ImageRecords, ARecordSetsEverythingOnItsImage) {
    stImageInit st = Record(77);
    st.bTilted = true;
    st.fTiltDegree = -30;
    g_fnCreateImages({&st, 1});
    const CImgBox_Base* p = Find(77);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_fBoxW, 300);
    EXPECT_EQ(p->m_fBoxH, 200);
    EXPECT_EQ(p->m_fSizeW, 300);
    EXPECT_EQ(p->m_iAnchorCode, 6);
    EXPECT_EQ(p->m_fAnchorX, 10);
    EXPECT_EQ(p->m_fAnchorY, 20);
    EXPECT_EQ(p->m_afColor[1], 51 / 255.0f);
    EXPECT_EQ(p->m_afColor[3], 102 / 255.0f);
    EXPECT_TRUE(p->m_bFullPath);
    EXPECT_TRUE(p->m_bTilted);
    EXPECT_EQ(p->m_fTiltDegree, 330);
    EXPECT_NE(p->m_pTexture, nullptr);
    EXPECT_EQ(g_aLines.size(), 2u) << "start and end of the load";
}

TEST_F(ImageRecords, AMissingFileLeavesNoControlAndTheNextRecordFollows) {
    const stImageInit ast[] = {Record(1, "none.bmp"), Record(2)};
    g_fnCreateImages(ast);
    EXPECT_EQ(Logged("g_fnCheckFileExistence() error\n"), 1);
    EXPECT_EQ(Find(1), nullptr);
    EXPECT_NE(Find(2), nullptr);
}

TEST_F(ImageRecords, ARecordWithoutAPathIsAMissingFile) {
    stImageInit st = Record(1);
    st.wzPath[0] = 0;
    g_fnCreateImages({&st, 1});
    EXPECT_EQ(Logged("g_fnCheckFileExistence() error\n"), 1);
}

TEST_F(ImageRecords, WhatCannotBeDecodedClearsItsOwnPlaceAndNoOther) {
    m_folder.Write("bad.bmp", "no picture");
    // Its id is the place of the one before.
    const stImageInit ast[] = {Record(500), Record(1, "bad.bmp"), Record(501)};
    g_fnCreateImages(ast);
    EXPECT_EQ(Logged("pImgBox m_fnInitialize() error\n"), 1);
    EXPECT_NE(Find(500), nullptr);
    EXPECT_EQ(Find(500), g_ppImgBox[1]);
    EXPECT_EQ(Find(1), nullptr);
    EXPECT_NE(Find(501), nullptr);
    EXPECT_EQ(CNotedTexture::s_iLive, 2);
}

TEST_F(ImageRecords, AnIdBeyondTheArrayThatCannotBeDecodedTouchesNothing) {
    m_folder.Write("bad.bmp", "no picture");
    const stImageInit ast[] = {Record(0xFFFFFFFF00000064, "bad.bmp"), Record(64, "bad.bmp")};
    g_fnCreateImages(ast);
    EXPECT_EQ(Logged("pImgBox m_fnInitialize() error\n"), 2);
    for (u32 u = 0; u < g_uImgBoxEntries; ++u) EXPECT_EQ(g_ppImgBox[u], nullptr);
}

TEST_F(ImageRecords, PlacesOfPhotoAndShutterAreLeftFreeAndTheRestAreSixtyTwo) {
    std::vector<stImageInit> records;
    for (u64 u = 1; u <= 70; ++u) records.push_back(Record(u));
    g_fnCreateImages(records);
    for (u32 u = 0; u < g_uImgBoxEntries; ++u)
        EXPECT_EQ(g_ppImgBox[u] != nullptr, u != g_uPhotoImage && u != g_uShutterImage) << u;
    EXPECT_EQ(Find(1), g_ppImgBox[1]);
    EXPECT_EQ(Find(8), g_ppImgBox[9]);
    EXPECT_EQ(Find(62), g_ppImgBox[63]);
    EXPECT_EQ(Find(63), nullptr);
}

TEST_F(ImageRecords, ARepeatedIdKeepsTheFirst) {
    const stImageInit ast[] = {Record(5), Record(5)};
    g_fnCreateImages(ast);
    EXPECT_EQ(Find(5), g_ppImgBox[1]);
    EXPECT_EQ(g_ppImgBox[2], nullptr);
    EXPECT_EQ(CNotedTexture::s_iLive, 1);
}

TEST_F(ImageRecords, ThePhotoOfTheProfileHasIdAndPlace0AndHangsFromTheRoot) {
    const stImageInit st = Record(1);
    g_fnCreateImages({&st, 1});
    AskForProfilePhoto();
    g_fnCreatePhoto();
    const CImgBox_Base* p = Find(g_u64PhotoId);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p, g_ppImgBox[0]);
    EXPECT_EQ(p->m_pTexture->m_uWidth, 4u) << "in the profile folder";
    EXPECT_EQ(p->m_iAnchorCode, 3);
    EXPECT_EQ(p->m_fPosX, 1920 - 40 - 5);
    EXPECT_EQ(p->m_fPosY, 6);
    EXPECT_EQ(p->m_afColor[0], 1.0f);
    EXPECT_EQ(p->m_afColor[3], 127 / 255.0f);
    g_fnLinkControls();
    EXPECT_EQ(m_pManager->m_fnGetDrawList(g_keyTextureList)->front(), g_ppImgBox[0]);
}

TEST_F(ImageRecords, TheCompanionsPhotoReplacesTheProfiles) {
    AskForProfilePhoto();
    AskForCameraPhoto(Whole("p.bmp"));
    g_fnCreatePhoto();
    const CImgBox_Base* p = Find(g_u64PhotoId);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_pTexture->m_uWidth, 8u);
    EXPECT_EQ(p->m_fBoxW, 64);
    EXPECT_EQ(p->m_iAnchorCode, 9);
    EXPECT_EQ(p->m_fPosX, 1920 - 64 - 7);
    EXPECT_EQ(p->m_afColor[3], 51 / 255.0f);
}

TEST_F(ImageRecords, TheCompanionsPhotoIsShownWithoutOneOfTheProfile) {
    AskForCameraPhoto(Whole("p.bmp"));
    g_fnCreatePhoto();
    EXPECT_NE(Find(g_u64PhotoId), nullptr);
}

TEST_F(ImageRecords, WithoutAPathOrSwitchTheCompanionsPhotoReplacesNothing) {
    AskForProfilePhoto();
    AskForCameraPhoto(u"");
    g_fnCreatePhoto();
    ASSERT_NE(Find(g_u64PhotoId), nullptr);
    EXPECT_EQ(Find(g_u64PhotoId)->m_pTexture->m_uWidth, 4u);
}

TEST_F(ImageRecords, NoPhotoWithoutASwitchANameOrAFile) {
    g_fnCreatePhoto();
    AskForProfilePhoto();
    g_stProfileSwitches.uPhoto = 0;
    g_fnCreatePhoto();
    g_stProfileSwitches.uPhoto = 1;
    g_stLooks.stPhoto.wzFilename[0] = 0;
    g_fnCreatePhoto();
    EXPECT_EQ(g_aLines, std::vector<std::string>{});
    std::u16string(u"../p.bmp").copy(g_stLooks.stPhoto.wzFilename, 9);
    g_fnCreatePhoto();
    EXPECT_EQ(Logged("g_fnCheckFileExistence() error\n"), 1) << "it lies outside the profile";
    EXPECT_EQ(g_ppImgBox[0], nullptr);
}

TEST_F(ImageRecords, APhotoThatCannotBeShownLeavesItsPlaceForTheNext) {
    m_folder.Write("Profiles/Mine/p.bmp", "no picture");
    AskForProfilePhoto();
    g_fnCreatePhoto();
    EXPECT_EQ(g_ppImgBox[0], nullptr);
    const stImageInit st = Record(1);
    g_fnCreateImages({&st, 1});
    EXPECT_EQ(Find(1), g_ppImgBox[1]) << "which no item takes";
    WritePicture("Profiles/Mine/p.bmp", 4, 2);
    g_fnCreatePhoto();
    EXPECT_NE(g_ppImgBox[0], nullptr);
}

TEST_F(ImageRecords, TheShutterImageIsPlace8OfNoSizeAndWithoutAnId) {
    WriteShutter(true, false, Times(3));
    g_fnCreateShutterImage();
    const CImgBox_Base* p = g_ppImgBox[g_uShutterImage];
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_pTexture->m_uWidth, 16u);
    EXPECT_EQ(p->m_fSizeW, 0);
    EXPECT_EQ(p->m_pVertices[2].m_afPos[0], 0);
    EXPECT_TRUE(g_stImgBoxIds.m_mapPtrId.empty());
    g_fnCreateShutterImage();
    EXPECT_EQ(g_ppImgBox[g_uShutterImage], p) << "there is one";
}

TEST_F(ImageRecords, TheShutterImageComesFromItsRawPictureToo) {
    WriteShutter(false, true, Times(3));
    g_fnCreateShutterImage();
    ASSERT_NE(g_ppImgBox[g_uShutterImage], nullptr);
    EXPECT_EQ(g_ppImgBox[g_uShutterImage]->m_pTexture->m_uWidth, 6u);
}

TEST_F(ImageRecords, NoShutterImageWithoutAPictureOrWholeTimes) {
    const std::string strWhole = Times(3);
    for (const std::string& strTimes :
         {std::string(), strWhole.substr(0, 19), strWhole + "x", strWhole.substr(0, 7)}) {
        WriteShutter(true, true, strTimes);
        g_fnCreateShutterImage();
        EXPECT_EQ(g_ppImgBox[g_uShutterImage], nullptr) << strTimes.size();
    }
    WriteShutter(false, false, strWhole);
    g_fnCreateShutterImage();
    EXPECT_EQ(g_ppImgBox[g_uShutterImage], nullptr);
}

} // namespace
