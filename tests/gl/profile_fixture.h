#pragma once
// A hooked program whose profiles a test writes itself.
#include "tests/gl/draw_fixture.h"
#include "tests/gl/frame_fixture.h"

#include <filesystem>
#include <fstream>
#include <string>

class ProfileFixture : public FrameFixture {
  protected:
    void SetUp() override {
        FrameFixture::SetUp();
        WriteData("OSD_Ref.xml", "<OSD/>");
    }
    std::filesystem::path Data(const std::string& strName) const {
        return std::filesystem::path(m_strFolder) / "ZARN/Orvin Deck/ORVIN-OSD/Data" / strName;
    }
    void WriteData(const std::string& strName, const std::string& strBytes) const {
        std::filesystem::create_directories(Data(strName).parent_path());
        std::ofstream(Data(strName), std::ios::binary | std::ios::trunc) << strBytes;
    }
    /// A profile of the custom style that lists these items.
    void WriteProfile(const std::string& strProfile, const std::string& strItems,
                      const std::string& strSettings = "") const {
        WriteData("Profiles/" + strProfile + "/OSD.xml", "<OSD LayoutStyle='2'><CustomLayout><Settings>" +
                                                             strSettings + "<Info>" + strItems +
                                                             "</Info></Settings></CustomLayout></OSD>");
    }
    Picture Frame() {
        Swap();
        return {m_context.Width(), m_context.Height(), m_context.ReadPixels()};
    }
};
