// The writing of the fixed layouts with real glyphs, over a flavour that draws nothing.
#include "config/fixed_text.h"

#include "config/fixed_layout.h"
#include "config/item_map.h"
#include "config/load.h"
#include "controls/num_box.h"
#include "controls/text_box.h"
#include "font/font_unicode.h"
#include "frame/update_records.h"
#include "shared/process_records.h"
#include "tests/unit/controls/manager_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

#include <algorithm>
#include <set>
#include <string>

namespace {

class FixedText : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        recording::Install();
        g_stCreationTable.m_fnCreateFont = []() -> CFontUniCode* { return new CFontUniCode; };
        g_stCreationTable.m_fnCreateTextBox = []() -> CTextBox_Base* { return new CTextBox_Base; };
        g_stCreationTable.m_fnCreateNumBox = []() -> CNumBox_Base* { return new CNumBox_Base; };
    }
    void TearDown() override {
        g_fnClearUpdateLists();
        g_stCreationTable = {};
        g_wzProfileName[0] = 0;
        ManagerTest::TearDown();
        g_fnClearConfiguration();
    }
    static bool Build(std::u16string_view wz) {
        wz.copy(g_wzProfileName, wz.size());
        g_wzProfileName[wz.size()] = 0;
        return g_fnBuildFixedLayout();
    }
    static bool Inside(CControl& control, CControl& panel) {
        f32 x, y, w, h, px, py, pw, ph;
        control.m_fnGetPosition(&x, &y, nullptr);
        control.m_fnGetSize(&w, &h);
        panel.m_fnGetPosition(&px, &py, nullptr);
        panel.m_fnGetSize(&pw, &ph);
        return x >= px && y >= py && x + w <= px + pw && y + h <= py + ph;
    }
    template <class T> static u32 Count(T* const* pp, u32 uEntries) {
        return static_cast<u32>(std::count_if(pp, pp + uEntries, [](T* p) { return p != nullptr; }));
    }
};

TEST_F(FixedText, DefaultWritesInsideItsPanels) {
    ASSERT_TRUE(Build(u"Default"));
    u32 uSeen = 0;
    for (u32 i = 0; i < g_uTextBoxEntries; ++i) {
        CControl* pBox = g_ppTextBox[i];
        if (!pBox) continue;
        ASSERT_NE(m_pManager->m_fnGetParent(pBox), nullptr);
        EXPECT_TRUE(Inside(*pBox, *m_pManager->m_fnGetParent(pBox))) << i;
        ++uSeen;
    }
    EXPECT_EQ(uSeen, g_stDefaultWriting.texts.size());
    EXPECT_EQ(Count(g_ppNumBox, g_uNumBoxEntries), g_stDefaultWriting.numbers.size());
    EXPECT_EQ(Count(g_ppFont, g_uFontEntries), 2u);
}

TEST_F(FixedText, EveryBoxStandsInTheListOfItsFont) {
    ASSERT_TRUE(Build(u"Default"));
    const size_t uBoxes = g_stDefaultWriting.texts.size() + g_stDefaultWriting.numbers.size();
    EXPECT_EQ(m_pManager->m_fnGetDrawList(g_ppFont[0])->size() +
                  m_pManager->m_fnGetDrawList(g_ppFont[1])->size(),
              uBoxes);
}

TEST_F(FixedText, OwnFiguresAreBoundAndWhatNobodyPublishesStaysEmpty) {
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(g_listUpdateFPS_N.size(), 4u); // FPS, FRAME_TIME, FPS_MAX, PID
    EXPECT_TRUE(g_listUpdateData_N.empty());
    EXPECT_EQ(g_listUpdateMixed.size(), 2u);
}

TEST_F(FixedText, ProgramValuesTakeThePlaceOfTheText) {
    ASSERT_TRUE(Build(u"Default"));
    std::set<std::u16string> setShown;
    for (u32 i = 0; i < g_uTextBoxEntries; ++i)
        if (g_ppTextBox[i]) setShown.insert(g_ppTextBox[i]->m_wzText.get());
    EXPECT_TRUE(setShown.contains(u"64 bit"));
    EXPECT_FALSE(setShown.contains(u""));
}

TEST_F(FixedText, BoxesOfTheMeasuredLayouts) {
    const std::pair<const char16_t*, u32> aLayouts[] = {{u"Boxes8", 8}, {u"Boxes37", 37}, {u"Boxes80", 80}};
    for (const auto& [wzName, uBoxes] : aLayouts) {
        ASSERT_TRUE(Build(wzName));
        EXPECT_EQ(Count(g_ppTextBox, g_uTextBoxEntries) + Count(g_ppNumBox, g_uNumBoxEntries), uBoxes);
    }
}

TEST_F(FixedText, SheetIsWrittenInEveryScript) {
    ASSERT_TRUE(Build(u"TextSheet"));
    EXPECT_EQ(Count(g_ppTextBox, g_uTextBoxEntries), g_stTextSheetWriting.texts.size());
    for (u32 uCode : {u32{'A'}, 0xC4u, 0x421u, 0x39Eu, 0x1D6D4u})
        EXPECT_GE(g_ppFont[0]->m_fnFindChar(uCode), 0) << uCode;
    EXPECT_GE(g_ppFont[3]->m_fnFindChar(0x4E2D), 0);
}

TEST_F(FixedText, FlavourWithoutFontsWritesNothing) {
    g_stCreationTable.m_fnCreateFont = nullptr;
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(Count(g_ppTextBox, g_uTextBoxEntries), 0u);
}

TEST_F(FixedText, BuildingAgainLeavesNoFormerItem) {
    ASSERT_TRUE(Build(u"Default"));
    ASSERT_TRUE(Build(u"Boxes8"));
    EXPECT_EQ(g_mapItemByName.size(), 4u);
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(g_listUpdateMixed.size(), 2u);
}

} // namespace
