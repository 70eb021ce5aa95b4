#pragma once
// Items of a profile made into controls of a flavour that writes down what it draws, without real glyphs.
#include "base/log.h"
#include "batch/draw_text.h"
#include "config/custom/custom_layout.h"
#include "config/items/interner.h"
#include "config/load.h"
#include "controls/line_graph.h"
#include "controls/link_controls.h"
#include "controls/pie_chart.h"
#include "draw/draw_keys.h"
#include "frame/update/update_records.h"
#include "shared/process_records.h"
#include "tests/support/test_data_folder.h"
#include "tests/unit/controls/text_fixture.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <tinyxml2.h>

/// A font that needs no atlas.
class CGivenFont : public CTestFont {
  public:
    CGivenFont() { ++s_iLive; }
    ~CGivenFont() override { --s_iLive; }
    bool m_fnInitialize(bool) override { return !s_bRefuse; }
    void m_fnAddChar(u32 uCode, f32* pX, f32* pY, f32* pZ) override {
        m_setAdded.insert(uCode);
        *pX = *pY = *pZ = 0;
    }
    std::set<u32> m_setAdded;
    inline static i32 s_iLive = 0;
    inline static bool s_bRefuse = false; ///< no font can be set up
};

class CustomTest : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        g_stCreationTable.m_fnCreateFont = []() -> CFontUniCode* { return new CGivenFont; };
        std::filesystem::create_directories(m_folder.Path("Profiles/Mine"));
        g_fnSetProfileName(u"Mine");
        s_aLines.clear();
        g_fnLogSink = [](const char* szLine) { s_aLines.emplace_back(szLine); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        CGivenFont::s_bRefuse = false;
        g_fnClearConfiguration();
        g_fnClearUpdateLists();
        g_fnEndFontAssembly();
        g_fnClearFontsToStay();
        g_wzProfileName[0] = g_wzProfileFolder[0] = 0;
        TextTest::TearDown();
        EXPECT_EQ(CGivenFont::s_iLive, 0);
        EXPECT_EQ(CLiveTextBox::s_iLive, 0);
        EXPECT_EQ(recording::g_iLiveMeshes, 0);
    }

    /// Element of a list with these items in it.
    const tinyxml2::XMLElement* Info(const std::string& szItems) {
        const std::string szDocument = "<Info>" + szItems + "</Info>";
        m_document.Parse(szDocument.c_str(), szDocument.size());
        EXPECT_FALSE(m_document.Error()) << m_document.ErrorStr();
        return m_document.RootElement();
    }
    void ReadItems(const std::string& szItems) {
        g_fnClearItems();
        g_mapAssembleInfo.clear();
        g_fnReadCustomItems(Info(szItems));
    }
    /// Reads and creates.
    bool Create(const std::string& szItems) {
        ReadItems(szItems);
        return g_fnCreateCustomControls();
    }
    /// Back to a manager without controls.
    void StartOver() {
        g_fnClearConfiguration();
        ASSERT_TRUE(m_pManager->m_fnStartOver());
        g_fnSelectManager();
    }
    /// The init records of items.
    stCustomInit Init(const std::string& szItems) {
        ReadItems(szItems);
        stCustomInit st;
        g_fnInitItemByCustomStyle(g_mapItemByName, st);
        return st;
    }

    /// An element with a name, shown, and with the font that texts and numbers need.
    static std::string Item(const char* szElement, const char* szName, const std::string& szMore = "") {
        return std::string("<") + szElement + " IsShow='1' Name='" + szName + "' " + szMore + "/>";
    }
    static std::string Text(const char* szName, const std::string& szMore = "Text='abc'") {
        return Item("TextBox", szName, "FontName='Face' TextSize='16' " + szMore);
    }
    static std::string Number(const char* szName, const char* szData, const std::string& szMore = "") {
        return Item("NumBox", szName,
                    "FontName='Face' TextSize='16' DataFullName='" + std::string(szData) + "' " + szMore);
    }

    static u64 Id(const char* szName) { return g_fnInternName(szName); }
    template <class T> static T* Find(char cLetter, const char* szName) {
        return dynamic_cast<T*>(g_fnFindCtrlByName(cLetter, szName));
    }
    static CTextBox_Base* TextBox(const char* szName) { return Find<CTextBox_Base>('T', szName); }
    static CNumBox_Base* NumBox(const char* szName) { return Find<CNumBox_Base>('N', szName); }
    static CPanel_Base* Panel(const char* szName) { return Find<CPanel_Base>('P', szName); }
    static CLineGraph_Base* LineGraph(const char* szName) { return Find<CLineGraph_Base>('L', szName); }
    static CPieChart_Base* PieChart(const char* szName) { return Find<CPieChart_Base>('C', szName); }
    CControl* ParentOf(CControl* p) { return m_pManager->m_fnGetParent(p); }
    bool IsInTree(CControl* p) { return m_pManager->m_fnHasParent(p); }
    const stAssembleInfo& Assembly(const char* szName) { return g_mapAssembleInfo.at(Id(szName)); }

    static i64 Logged(const std::string& szLine) {
        return std::count(s_aLines.begin(), s_aLines.end(), szLine);
    }

    using Ids = std::vector<u64>;
    static inline std::vector<std::string> s_aLines;
    CTestDataFolder m_folder{false};

  private:
    tinyxml2::XMLDocument m_document;
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};
