#pragma once
// Profiles in a data folder of the test's own.
#include "base/layout_style.h"
#include "base/log.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_panel_keys.h"
#include "config/profile/profile_switches.h"
#include "config/settings/settings.h"
#include "settings_fixture.h"
#include "shared/process_records.h"

#include <filesystem>
#include <string>
#include <vector>

#include <tinyxml2.h>

class ProfileTest : public SettingsTest {
  protected:
    static constexpr const char* c_szPlainReference =
        "<OSD><Extension/><Preset/><ClassicLayout><Group/><Template/></ClassicLayout>"
        "<ORVINLayout><Group/><Template/></ORVINLayout></OSD>";

    void SetUp() override {
        SettingsTest::SetUp();
        s_aLines.clear();
        g_fnLogSink = [](const char* szLine) { s_aLines.emplace_back(szLine); };
        g_wzProfileName[0] = g_wzProfileFolder[0] = 0;
        g_uLayoutStyle = 0;
    }
    void TearDown() override {
        g_fnClearProfileDocuments();
        g_iLayoutStyleOverride = -1;
        g_stSettings.bDebugMessageBox = false;
        g_wzProfileName[0] = g_wzProfileFolder[0] = 0;
        g_uLayoutStyle = 0;
        g_fnReadProfilePanelKeys();
        g_fnReadProfileTextStyles();
        g_stInfoBlock = {};
        g_stDisplay.uCards = g_stDisplay.uCpus = 1;
        std::fill(std::begin(g_iCardOfDisplay), std::end(g_iCardOfDisplay), 0);
        g_stDisplay.listSensorRows.clear();
        headless::ClearSettings();
        g_fnReadProfileSwitches();
        g_fnLogSink = m_fnFormerSink;
        SettingsTest::TearDown();
    }

    /// A file of the data folder, in folders that are made.
    void File(const std::string& strName, const std::string& strBytes) const {
        std::filesystem::create_directories(std::filesystem::path(m_folder.Path(strName)).parent_path());
        m_folder.Write(strName, strBytes);
    }
    void Document(const std::string& strXml, const std::string& strProfile = "Default") const {
        File("Profiles/" + strProfile + "/OSD.xml", strXml);
    }
    void Reference(const std::string& strXml = c_szPlainReference) const { File("OSD_Ref.xml", strXml); }
    /// A whole profile of a style around its settings.
    static std::string Layout(u32 uStyle, const std::string& strSettings) {
        const std::string strName = g_fnLayoutElementName(uStyle);
        return "<OSD LayoutStyle=\"" + std::to_string(uStyle) + "\"><" + strName + "><Settings>" +
               strSettings + "</Settings></" + strName + "></OSD>";
    }
    void ReadCustom(const std::string& strSettings) const {
        Document(Layout(2, strSettings));
        Reference();
        ASSERT_TRUE(g_fnRead_OSD_Profile());
    }
    /// An "Info" element outside of any profile.
    const tinyxml2::XMLElement* Info(const std::string& strChildren, const std::string& strAttributes = "") {
        const std::string str = "<Info " + strAttributes + ">" + strChildren + "</Info>";
        m_document.Parse(str.c_str(), str.size());
        EXPECT_FALSE(m_document.Error()) << m_document.ErrorStr();
        return m_document.RootElement();
    }
    static void Support(const std::u16string& wstrRow, u32 uValue = 1) {
        Number((u"Information Option\\" + wstrRow).c_str(), u"IsSupport", uValue);
    }
    static void CardNum(u32 uCards) { Number(u"Information Option\\Card", u"Card Num", uCards); }
    static void Sensor(const std::u16string& wstrKey, const char16_t* wzTag, const char16_t* wzData) {
        const std::u16string wstrPath = u"Information Option\\Config\\Sensor\\" + wstrKey;
        Text(wstrPath.c_str(), u"OSDProfileXML TagName", std::u16string(wzTag));
        Text(wstrPath.c_str(), u"DataName", std::u16string(wzData));
    }

    static inline std::vector<std::string> s_aLines;

  private:
    tinyxml2::XMLDocument m_document;
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};
