#pragma once
// Image boxes of a flavour that writes down what is drawn; the pictures are decoded as they are everywhere.
#include "controls/img_box.h"
#include "tests/support/gif_maker.h"
#include "tests/support/picture_files.h"
#include "tests/support/test_data_folder.h"
#include "tests/unit/controls/manager_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

#include <filesystem>
#include <memory>

/// Notes its uses among the events of the flavour.
class CNotedTexture : public CTexture_Base {
  public:
    CNotedTexture() { ++s_iLive; }
    ~CNotedTexture() override { --s_iLive; }
    bool m_fnUploadLevel(const void*, u32 uFrame, u32) override {
        recording::g_aEvents.push_back("upload " + std::to_string(uFrame));
        return true;
    }
    void m_fnBindUnit(u32 uUnit) override {
        recording::g_aEvents.push_back("texture " + std::to_string(uUnit));
    }
    inline static i32 s_iLive = 0;
};

class ImgBoxTest : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        recording::Install();
        g_stCreationTable.m_fnCreateTexture = []() -> CTexture_Base* { return new CNotedTexture; };
    }
    void TearDown() override {
        ManagerTest::TearDown();
        g_stCreationTable.m_fnCreateTexture = nullptr;
        EXPECT_EQ(CNotedTexture::s_iLive, 0);
        EXPECT_EQ(recording::g_iLiveMeshes, 0);
        EXPECT_EQ(recording::g_iLiveEntities, 0);
    }
    /// A picture file in the data folder.
    void WritePicture(const std::string& strName, u32 uWidth, u32 uHeight, u32 uColor = 0x00FF00) const {
        std::filesystem::create_directories(std::filesystem::path(m_folder.Path(strName)).parent_path());
        m_folder.Write(strName, picture_files::Bmp(uWidth, uHeight, [=](u32, u32) { return uColor; }));
    }
    /// The whole path of a data file.
    std::u16string Whole(const std::string& strName) const {
        const std::string strPath = m_folder.Path(strName);
        return {strPath.begin(), strPath.end()};
    }
    CTestDataFolder m_folder{false};
};
