// Query texts, and making room in fonts that stand.
#include "character_sets_test.h"

namespace {

constexpr u32 g_uBlank = 32, g_uWideBlank = 12288;

using FixFonts = FontSets;

} // namespace

TEST_F(FontSets, ThePrintableSetIsAsciiWithoutTheBlank) {
    std::u16string wzSet;
    for (char16_t wc = 33; wc <= 126; ++wc) wzSet += wc;
    EXPECT_EQ(g_wzPrintableSet, wzSet);
    EXPECT_EQ(g_wzNumberSet, std::u16string(u"0123456789.-% "));
    EXPECT_EQ(g_wzResolutionSet, std::u16string(u"0123456789:x"));
}

TEST_F(FontSets, QueryTextGathersByIdAsCodes) {
    EXPECT_TRUE(g_fnInsertQueryTextByFontID(3, u"ab \U0001F600"));
    EXPECT_TRUE(g_fnInsertQueryTextByFontID(3, u"bc\n"));
    EXPECT_EQ(Query(3), (std::set<u32>{'\n', ' ', 'a', 'b', 'c', 0x1F600}));
    EXPECT_TRUE(Query(4).empty());
    g_fnEndFontAssembly();
    EXPECT_TRUE(Query(3).empty());
}

TEST_F(FontSets, QueryTextWithoutCodesIsRefused) {
    EXPECT_FALSE(g_fnInsertQueryTextByFontID(3, u""));
    EXPECT_FALSE(g_fnInsertQueryTextByFontID(3, std::u16string(1, u'\0')));
    EXPECT_FALSE(g_fnInsertQueryTextByFontID(3, u"ab\xD83D")) << "half of a pair is no text";
    EXPECT_FALSE(g_fnInsertQueryTextByFontID(3, u"\xDE00"));
    EXPECT_TRUE(g_mapQueryTextByFontID.empty());
}

TEST_F(FontSets, FontsAreFoundByTheirExactName) {
    Stand(2, u"Face", 2, u"");
    Stand(63, u"Other", 2, u"");
    u32 uFontId = 99;
    EXPECT_FALSE(g_fnFontIdByName(u"face", &uFontId));
    EXPECT_EQ(uFontId, 99u);
    EXPECT_TRUE(g_fnFontIdByName(u"Face", &uFontId));
    EXPECT_EQ(uFontId, 2u);
    EXPECT_TRUE(g_fnFontIdByName(u"Other", &uFontId));
    EXPECT_EQ(uFontId, 63u);
}

TEST_F(FixFonts, FaceThatNoItemUsesIsLeftAlone) {
    CFlavourFont* const pFont = Stand(0, u"Face", 4, u"abc");
    AddText("A", u"Unknown", u"xyz");
    const std::map<u32, u32> before = pFont->m_mapCharIndex;
    g_fnFixFontCharSet();
    EXPECT_EQ(pFont->m_mapCharIndex, before);
    EXPECT_EQ(pFont->m_uUploads, 0u);
    EXPECT_EQ(g_aFontLog,
              (std::vector<std::string>{"g_fnFixFontCharSet() start\n", "mapFontName2CharSet size: 0\n",
                                        "g_fnFixFontCharSet() pass 0\n", "g_fnFixFontCharSet() end\n"}));
}

TEST_F(FixFonts, BeforeFontsExistNothingHappens) {
    AddText("A", u"Face", u"xyz");
    g_fnFixFontCharSet();
    EXPECT_EQ(Logged("mapFontName2CharSet size: 0\n"), 1);
}

TEST_F(FixFonts, TextsOfOneFaceThatOverlapCountOnce) {
    CFlavourFont* const pFont = Stand(0, u"Face", 3, u"");
    AddText("A", u"Face", u"abcde");
    AddText("B", u"Face", u"cdefg"); // 7 codes and the two blanks: 9 cells
    g_fnFixFontCharSet();
    EXPECT_EQ(Held(*pFont), (std::set<u32>{g_uBlank, 'a', 'b', 'c', 'd', 'e', 'f', 'g', g_uWideBlank}));
    EXPECT_EQ(pFont->m_uUploads, 1u) << "one batch";
    EXPECT_EQ(Logged("mapFontName2CharSet size: 1\n"), 1);
    EXPECT_EQ(Logged("case 0 - no need to modify font layout\n"), 1);
}

TEST_F(FixFonts, ExactlyTheCapacityIsCase0) {
    Stand(0, u"Face", 3, u"12345"); // 7 held
    AddText("A", u"Face", u"15ab");
    g_fnFixFontCharSet();
    EXPECT_EQ(Logged("case 0 - no need to modify font layout\n"), 1);
}

TEST_F(FixFonts, OneAboveTheCapacityRemovesWhatNothingNeeds) {
    CFlavourFont* const pFont = Stand(7, u"Face", 3, u"12345");
    AddText("A", u"Face", u"15abc");
    g_fnFixFontCharSet();
    EXPECT_EQ(Held(*pFont), (std::set<u32>{'1', '5', 'a', 'b', 'c'}));
    EXPECT_EQ(pFont->m_fnFindChar('5'), 4) << "what stays keeps its cell";
    EXPECT_EQ(pFont->m_fnFindChar('a'), 1) << "holes are filled from the front";
    EXPECT_EQ(g_aFontLog[3], "case 1 - need to remove unused char\n");
    EXPECT_EQ(g_aFontLog[4], "remove char 32 from font#7\n");
    EXPECT_EQ(g_aFontLog[5], "remove char 50 from font#7\n");
    EXPECT_EQ(Logged("remove char 12288 from font#7\n"), 1);
    EXPECT_EQ(pFont->m_uInitialized, 0u);
}

TEST_F(FixFonts, BlanksThatAreRemovedKeepTheDataOfTheirRecords) {
    CFlavourFont* const pFont = Stand(0, u"Face", 2, u"1234");
    const f32 fAdvance = pFont->m_pChars[4].m_fWScale;
    AddText("A", u"Face", u"abcd");
    g_fnFixFontCharSet();
    EXPECT_EQ(pFont->m_fnFindChar(g_uBlank), -1);
    EXPECT_EQ(pFont->m_pChars[4].m_fWScale, fAdvance);
}

TEST_F(FixFonts, AsManyNeededAsCellsFitExactly) {
    CFlavourFont* const pFont = Stand(0, u"Face", 3, u"1234567");
    AddText("A", u"Face", u"12abcdefg");
    g_fnFixFontCharSet();
    EXPECT_EQ(Logged("case 1 - need to remove unused char\n"), 1);
    EXPECT_EQ(Held(*pFont), Codes(u"12abcdefg"));
}

TEST_F(FixFonts, BlanksOfTheTextCountAsCodes) {
    CFlavourFont* const pFont = Stand(0, u"Face", 2, u"12");
    AddText("A", u"Face", u"1 2"); // all held: 4 of 4
    g_fnFixFontCharSet();
    EXPECT_EQ(Logged("case 0 - no need to modify font layout\n"), 1);
    AddText("B", u"Face", u"\n"); // a fifth code, though it gets no cell
    g_fnFixFontCharSet();
    EXPECT_EQ(Logged("case 1 - need to remove unused char\n"), 1);
    EXPECT_EQ(Held(*pFont), Codes(u"12 "));
}

TEST_F(FixFonts, MoreNeededThanCellsStartsOverWithALargerGrid) {
    CFlavourFont* const pFont = Stand(5, u"Face", 2, u"1234");
    pFont->m_fnSetFontWeight(700);
    AddText("A", u"Face", u"abcde");
    g_fnFixFontCharSet();
    EXPECT_EQ(pFont->m_uReleased, 1u) << "the flavour's texture";
    EXPECT_EQ(pFont->m_uInitialized, 1u);
    EXPECT_EQ(pFont->m_uLayoutW, 32u);
    EXPECT_EQ(pFont->m_uNum_Characters, 1024u);
    EXPECT_EQ(pFont->m_uTexW, 4096u);
    EXPECT_EQ(pFont->m_iFontWeight, 700);
    EXPECT_EQ(pFont->m_wzFontName, u"Face");
    EXPECT_EQ(Held(*pFont), (std::set<u32>{g_uBlank, 'a', 'b', 'c', 'd', 'e', g_uWideBlank}));
    EXPECT_EQ(pFont->m_fnFindChar(g_uBlank), 1024);
    EXPECT_EQ(pFont->m_uUploads, 1u);
    EXPECT_EQ(Logged("case 2 - need to reinit font\n"), 1);
    EXPECT_EQ(Logged("reinit font#5 32\n"), 1);
    EXPECT_TRUE(g_fnFontAddChar(pFont, 'z')) << "every buffer has the size of the new grid";
    EXPECT_EQ(pFont->m_fnFindChar('z'), 5);
}

TEST_F(FixFonts, FontThatCannotStartOverStaysEmpty) {
    CFlavourFont* const pFont = Stand(5, u"Face", 2, u"1234");
    AddText("A", u"Face", u"abcde");
    CFlavourFont::s_bRefuse = true;
    g_fnFixFontCharSet();
    EXPECT_EQ(std::count_if(g_aFontLog.begin(), g_aFontLog.end(),
                            [](const std::string& szLine) {
                                return szLine.starts_with("error ! pFont->m_fnInitialize() fail");
                            }),
              1);
    EXPECT_TRUE(pFont->m_mapCharIndex.empty());
    EXPECT_EQ(pFont->m_pChars, nullptr);
    EXPECT_FALSE(g_fnFontAddChar(pFont, 'z'));
    EXPECT_EQ(g_aFontLog.back(), "g_fnFixFontCharSet() end\n");
}

TEST_F(FixFonts, LargerGridGoesByTheCodesHeld) {
    const auto isGrid = [](u32 uCodes, u32 uLayout, u32 uTexture) {
        const stFontGrid st = g_fnLargerGrid(uCodes);
        return st.uLayout == uLayout && st.uTexture == uTexture;
    };
    EXPECT_TRUE(isGrid(0, 32, 4096));
    EXPECT_TRUE(isGrid(1023, 32, 4096));
    EXPECT_TRUE(isGrid(1024, 128, 8192));
    EXPECT_TRUE(isGrid(16383, 128, 8192));
    EXPECT_TRUE(isGrid(16384, 512, 16384));
}

TEST_F(FixFonts, ItemsGiveTheTextOfTheirType) {
    m_folder.Write("Profiles/Mine/memo.txt", "memo");
    CFlavourFont* const pText = Stand(0, u"Text", 8, u"");
    CFlavourFont* const pMemo = Stand(1, u"Memo", 8, u"");
    CFlavourFont* const pNumber = Stand(2, u"Number", 8, u"");
    CFlavourFont* const pMixed = Stand(3, u"Mixed", 8, u"");
    AddText("T", u"Text", u"text");
    AddMemo("M", u"Memo", u"memo.txt");
    AddNumber("N", u"Number");
    AddNumber("X", u"Mixed", ITEM_MIXED);
    g_fnFixFontCharSet();
    const std::set<u32> blanks = {g_uBlank, g_uWideBlank};
    const auto withBlanks = [&](std::u16string_view wzText) {
        std::set<u32> codes = Codes(wzText);
        codes.insert(blanks.begin(), blanks.end());
        return codes;
    };
    EXPECT_EQ(Held(*pText), withBlanks(u"tex"));
    EXPECT_EQ(Held(*pMemo), withBlanks(u"emo"));
    EXPECT_EQ(Held(*pNumber), withBlanks(u"0123456789.-%"));
    EXPECT_EQ(Held(*pMixed), withBlanks(u"0123456789:x"));
    EXPECT_EQ(Logged("mapFontName2CharSet size: 4\n"), 1);
}

TEST_F(FixFonts, MemoWithoutAFileIsSkipped) {
    CFlavourFont* const pFont = Stand(0, u"Face", 4, u"");
    AddMemo("M", u"Face", u"missing.txt");
    AddText("T", u"Face", u"a");
    g_fnFixFontCharSet();
    EXPECT_EQ(Held(*pFont), (std::set<u32>{g_uBlank, 'a', g_uWideBlank}));
}
