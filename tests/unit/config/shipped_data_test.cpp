// The files of the data folder, and the profiles of the tests: whole, readable, and in step with the readers.
#include "base/host_care.h"
#include "config/items/item_graph.h"
#include "config/items/item_image.h"
#include "config/items/item_pie.h"
#include "config/profile/profile_document.h"
#include "config/settings/settings.h"
#include "config/settings/settings_care.h"
#include "platform/ini_file.h"
#include "tests/unit/config/item_fixture.h"
#include "tests/unit/config/settings_fixture.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

const fs::path g_source = ORVIN_SOURCE_DIR;

std::string Narrow(std::u16string_view wz) { return {wz.begin(), wz.end()}; }

// --- OSD.ini -----------------------------------------------------------------------------------------------

/// Section, key, value.
struct stKey {
    std::string strSection, strKey, strValue;
};

std::vector<stKey> ShippedKeys() {
    const platform::CIniFile ini = platform::CIniFile::Parse(Bytes(g_source / "data/OSD.ini"));
    std::vector<stKey> vecKeys;
    for (u32 s = 0; s < ini.Sections(); ++s)
        for (u32 e = ini.FirstEntry(s); e < ini.EndEntry(s); ++e)
            vecKeys.push_back(
                {Narrow(ini.SectionName(s)), Narrow(ini.Entry(e).m_wzKey), Narrow(ini.Entry(e).m_wzValue)});
    return vecKeys;
}

/// Keys of the manual's table, "section/key".
std::set<std::string> ManualKeys() {
    std::set<std::string> setKeys;
    std::istringstream manual(Bytes(g_source / "docs/settings.md"));
    for (std::string strLine; std::getline(manual, strLine);) {
        std::istringstream cells(strLine);
        std::string strEdge, strSection, strNames;
        std::getline(cells, strEdge, '|');
        if (!std::getline(cells, strSection, '|') || !std::getline(cells, strNames, '|')) continue;
        if (strSection != " Info " && strSection != " Settings " && strSection != " Warning " &&
            strSection != " HostCare ")
            continue;
        std::istringstream names(strNames);
        for (std::string strName; names >> strName;)
            setKeys.insert(strSection.substr(1, strSection.size() - 2) + "/" +
                           strName.substr(0, strName.find(',')));
    }
    return setKeys;
}

/// All that the file decides, in words.
std::string Effects() {
    std::ostringstream out;
    out << g_stSettings.uMinHookScreenWidth << ' ' << g_stSettings.uMinHookScreenHeight << ' '
        << g_stSettings.bDebugMode << g_stSettings.bDebugMessageBox << g_stSettings.bDebugTime
        << g_stSettings.bUseLanguageXMLString << ' ' << g_stSettings.fPressDetachSeconds << ' '
        << g_stSettings.fWarningTwinkleSeconds << ' ' << g_stSettings.bWarningTwinkle << ' '
        << g_stHostCare.bOuterGuard << g_stHostCare.bStayWithSurface << g_stHostCare.bLimiterRecovery
        << g_stHostCare.bRestoreAfterFailure << g_stHostCare.bMergedDraw << g_stHostCare.bCarefulShots;
    for (const stStatusColor& st : g_stSettings.aStatusColor)
        for (u32 i = 0; i < 3; ++i) out << ' ' << int{st.au8RGB[i]};
    return out.str();
}

class ShippedSettings : public SettingsTest {
  protected:
    std::string EffectsOf(const std::string& strBytes) {
        Ini(strBytes);
        g_fnLoadGlobalSettings();
        g_fnReadHostCare();
        return Effects();
    }
    void TearDown() override {
        SettingsTest::TearDown();
        g_stHostCare = {};
    }
};

TEST_F(ShippedSettings, TheFileHasTheKeysOfTheManual) {
    std::set<std::string> setKeys;
    for (const stKey& st : ShippedKeys())
        EXPECT_TRUE(setKeys.insert(st.strSection + "/" + st.strKey).second) << st.strKey << " stands twice";
    EXPECT_EQ(setKeys, ManualKeys());
    EXPECT_EQ(setKeys.size(), 21u);
}

TEST_F(ShippedSettings, TheFileSaysTheDefaultsAndPutsTheProgramFirst) {
    std::string strExpected = EffectsOf("");
    ASSERT_TRUE(strExpected.find(" 000000 ") != std::string::npos) << "no key of HostCare is set by default";
    strExpected.replace(strExpected.find(" 000000 "), 8, " 111111 ");
    EXPECT_EQ(EffectsOf(Bytes(g_source / "data/OSD.ini")), strExpected);
}

TEST_F(ShippedSettings, EachKeyIsReadUnderItsName) {
    const std::string strDefaults = EffectsOf("");
    for (const stKey& st : ShippedKeys()) {
        const char* szOther = st.strValue == "1" && st.strSection != "HostCare" ? "0" : "77";
        EXPECT_NE(EffectsOf("[" + st.strSection + "]\n" + st.strKey + " = " + szOther + "\n"), strDefaults)
            << st.strSection << '/' << st.strKey;
    }
}

TEST_F(ShippedSettings, EachKeyHasAComment) {
    std::istringstream file(Bytes(g_source / "data/OSD.ini"));
    bool bExplained = false;
    for (std::string strLine; std::getline(file, strLine);) {
        if (strLine.starts_with(';')) bExplained = true;
        if (strLine.empty() || strLine.starts_with('[')) bExplained = false;
        if (strLine.find('=') != std::string::npos) {
            EXPECT_TRUE(bExplained) << strLine;
        }
    }
}

// --- OSD_Ref.xml -------------------------------------------------------------------------------------------

TEST(ShippedReference, HasTheElementsThatALoadLooksFor) {
    tinyxml2::XMLDocument document;
    const std::string strBytes = Bytes(g_source / "data/OSD_Ref.xml");
    ASSERT_EQ(document.Parse(strBytes.c_str(), strBytes.size()), tinyxml2::XML_SUCCESS)
        << document.ErrorStr();
    const tinyxml2::XMLElement* pRoot = document.RootElement();
    ASSERT_STREQ(pRoot->Name(), "OSD");
    EXPECT_NE(pRoot->FirstChildElement("Extension"), nullptr);
    EXPECT_NE(pRoot->FirstChildElement("Preset"), nullptr);
    for (const char* szLayout : {"ClassicLayout", "ORVINLayout"}) {
        const tinyxml2::XMLElement* pLayout = pRoot->FirstChildElement(szLayout);
        ASSERT_NE(pLayout, nullptr) << szLayout;
        EXPECT_NE(pLayout->FirstChildElement("Group"), nullptr) << szLayout;
        EXPECT_NE(pLayout->FirstChildElement("Template"), nullptr) << szLayout;
    }
}

// --- profiles ----------------------------------------------------------------------------------------------

/// Those that list items of their own; the two of the styles with fixed tables have rows instead.
std::vector<fs::path> Profiles() {
    std::vector<fs::path> vecPaths;
    for (const char* szFolder : {"data/Profiles", "tests/profiles"})
        for (const auto& entry : fs::directory_iterator(g_source / szFolder))
            if (Bytes(entry.path() / "OSD.xml").find("<CustomLayout>") != std::string::npos)
                vecPaths.push_back(entry.path());
    return vecPaths;
}

class ShippedProfiles : public ItemTest {
  protected:
    void Open(const fs::path& path) {
        g_fnClearItems();
        s_aLines.clear();
        const std::string strBytes = Bytes(path / "OSD.xml");
        ASSERT_EQ(m_document.Parse(strBytes.c_str(), strBytes.size()), tinyxml2::XML_SUCCESS)
            << m_document.ErrorStr();
        const tinyxml2::XMLElement* pRoot = m_document.RootElement();
        ASSERT_STREQ(pRoot->Name(), "OSD");
        EXPECT_STREQ(pRoot->Attribute("LayoutStyle"), "2");
        m_pInfo = tinyxml2::XMLConstHandle(pRoot)
                      .FirstChildElement("CustomLayout")
                      .FirstChildElement("Settings")
                      .FirstChildElement("Info")
                      .ToElement();
        ASSERT_NE(m_pInfo, nullptr);
    }
    void ReadAll() {
        g_fnReadTextBoxItems(m_pInfo, false);
        g_fnReadTextBoxItems(m_pInfo, true);
        g_fnReadNumBoxItems(m_pInfo);
        g_fnReadPanelItems(m_pInfo);
        g_fnReadImgBoxItems(m_pInfo);
        g_fnReadLineGraphItems(m_pInfo);
        g_fnReadPieChartItems(m_pInfo);
    }
    std::size_t Elements() const {
        std::size_t u = 0;
        for (const auto* p = m_pInfo->FirstChildElement(); p; p = p->NextSiblingElement()) ++u;
        return u;
    }

    tinyxml2::XMLDocument m_document;
    const tinyxml2::XMLElement* m_pInfo = nullptr;
};

TEST_F(ShippedProfiles, EveryElementBecomesAnItemWithoutAWord) {
    for (const fs::path& path : Profiles()) {
        SCOPED_TRACE(path.string());
        ASSERT_NO_FATAL_FAILURE(Open(path));
        ReadAll();
        EXPECT_EQ(g_mapItemByName.size(), Elements());
        EXPECT_EQ(s_aLines, Lines());
    }
}

TEST_F(ShippedProfiles, EveryOwnerIsThereAndHasNoOwnerItself) {
    for (const fs::path& path : Profiles()) {
        SCOPED_TRACE(path.string());
        ASSERT_NO_FATAL_FAILURE(Open(path));
        ReadAll();
        for (const auto& [strName, pItem] : g_mapItemByName) {
            std::string strOwner;
            if (!g_fnItemOwner(*pItem, strOwner)) continue;
            ASSERT_NE(Find(strOwner.c_str()), nullptr) << strName;
            EXPECT_FALSE(g_fnItemOwner(*Find(strOwner.c_str()), strOwner)) << strName;
        }
    }
}

TEST_F(ShippedProfiles, EveryMemoHasItsFile) {
    for (const fs::path& path : Profiles()) {
        ASSERT_NO_FATAL_FAILURE(Open(path));
        for (const auto* p = m_pInfo->FirstChildElement("Memo"); p; p = p->NextSiblingElement("Memo"))
            EXPECT_GT(Bytes(path / p->Attribute("FileName")).size(), 0u) << path;
    }
}

TEST_F(ShippedProfiles, AreTheSetThatTheManualNames) {
    std::set<std::string> setNames;
    for (const auto& entry : fs::directory_iterator(g_source / "data/Profiles"))
        setNames.insert(entry.path().filename().string());
    EXPECT_EQ(setNames, (std::set<std::string>{"Classic", "Default", "Emblem", "FPS", "Full", "Gauges",
                                               "Graphs", "Player", "RV5", "Reviewer", "Streamer"}));
}

} // namespace
