#pragma once
// Items of a custom layout and fonts that stand in the manager's table.
#include "base/log.h"
#include "batch/draw_text.h"
#include "config/items/item_number.h"
#include "config/items/item_text.h"
#include "config/items/kinds.h"
#include "config/make/character_sets.h"
#include "config/make/profile_fonts.h"
#include "draw/creation_table.h"
#include "shared/process_records.h"
#include "test_font.h"
#include "tests/support/test_data_folder.h"
#include "tests/unit/controls/manager_fixture.h"

#include <filesystem>

/// A flavour's font: giving back its texture leaves the rest alone.
class CFlavourFont : public CTestFont {
  public:
    CFlavourFont() { ++s_iLive; }
    ~CFlavourFont() override { --s_iLive; }
    bool m_fnInitialize(bool bFromFile) override {
        ++m_uInitialized;
        return !s_bRefuse && CTestFont::m_fnInitialize(bFromFile);
    }
    void m_fnRelease() override { ++m_uReleased; }
    u32 m_uInitialized = 0, m_uReleased = 0;
    inline static i32 s_iLive = 0;
    inline static bool s_bRefuse = false; ///< no font can be set up
};

inline std::vector<std::string> g_aFontLog;

class FontSets : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        std::filesystem::create_directories(m_folder.Path("Profiles/Mine"));
        std::filesystem::create_directories(m_folder.Path("Profiles/Default"));
        g_fnSetProfileName(u"Mine");
        g_stCreationTable.m_fnCreateFont = []() -> CFontUniCode* { return new CFlavourFont; };
        g_aFontLog.clear();
        g_fnLogSink = [](const char* szLine) { g_aFontLog.push_back(szLine); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormer;
        CFlavourFont::s_bRefuse = false;
        g_stCreationTable = {};
        g_fnEndFontAssembly();
        g_fnClearFontsToStay();
        g_fnClearItems();
        g_wzProfileName[0] = g_wzProfileFolder[0] = 0;
        ManagerTest::TearDown();
        EXPECT_EQ(CFlavourFont::s_iLive, 0);
    }
    /// A font of uLayout by uLayout cells of 8 pixels at an id, with a text in it.
    static CFlavourFont* Stand(u32 uFontId, const char16_t* wzFace, u32 uLayout, const char16_t* wzText) {
        auto* const pFont = new CFlavourFont;
        pFont->m_fnSetLayout(uLayout, uLayout, 0);
        pFont->m_fnSetTexSize(uLayout * 8, uLayout * 8);
        pFont->m_fnSetFontName(wzFace);
        EXPECT_TRUE(pFont->m_fnInitialize(false));
        g_fnFontAddText(pFont, wzText);
        pFont->m_uUploads = pFont->m_uInitialized = 0;
        g_ppFont[uFontId] = pFont;
        return pFont;
    }
    static CFlavourFont* FontAt(u32 uFontId) { return dynamic_cast<CFlavourFont*>(g_ppFont[uFontId]); }
    template <class Item> void Enter(Item& item, const char* szName, u32 uType, const char16_t* wzFace) {
        item.m_fnSetType(uType);
        item.m_u64ItemId = ++m_uLastItem;
        std::snprintf(item.m_szItemName, sizeof item.m_szItemName, "%s", szName);
        Copy(item.m_wzFontName, wzFace);
        EXPECT_TRUE(g_fnRegisterItemProperty(&item));
    }
    void AddText(const char* szName, const char16_t* wzFace, const char16_t* wzText) {
        CItemProperty_TextBox item;
        Copy(item.m_wzText, wzText);
        Enter(item, szName, ITEM_TEXTBOX, wzFace);
    }
    void AddMemo(const char* szName, const char16_t* wzFace, const char16_t* wzFile) {
        CItemProperty_TextBox item;
        Copy(item.m_wzText, wzFile);
        item.m_bMemoFlagA = item.m_bMemoFlagB = 1;
        Enter(item, szName, ITEM_MEMO, wzFace);
    }
    void AddNumber(const char* szName, const char16_t* wzFace, u32 uType = ITEM_NUMBOX) {
        CItemProperty_NumBox item;
        Enter(item, szName, uType, wzFace);
    }
    template <std::size_t N> static void Copy(char16_t (&wzOut)[N], std::u16string_view wzText) {
        wzOut[wzText.copy(wzOut, N - 1)] = 0;
    }
    static std::set<u32> Codes(std::u16string_view wzText) { return {wzText.begin(), wzText.end()}; }
    static std::set<u32> Query(u32 uFontId) {
        std::set<u32> codes;
        g_fnQueryTextByFontID(uFontId, &codes);
        return codes;
    }
    static std::set<u32> Held(const CFontUniCode& font) {
        std::set<u32> codes;
        for (const auto& [uCode, uIndex] : font.m_mapCharIndex) codes.insert(uCode);
        return codes;
    }
    static i64 Logged(const std::string& szLine) {
        return std::count(g_aFontLog.begin(), g_aFontLog.end(), szLine);
    }

    CTestDataFolder m_folder{false};
    u64 m_uLastItem = 0;
    void (*m_fnFormer)(const char*) = g_fnLogSink;
};
