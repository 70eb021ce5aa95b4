// The fonts of a layout, from cache files and without.
// They stand with the fonts that they fill.
#include "character_sets_test.h"
#include "font_file_test.h"

namespace {

using ProfileFonts = FontSets;

stFontRecord Record(const char16_t* wzFace, u32 uLayout = 12, u32 uTexture = 96) {
    stFontRecord st;
    const std::u16string_view face(wzFace);
    st.m_wzFontName[face.copy(st.m_wzFontName, 127)] = 0;
    st.m_uFontTexW = st.m_uFontTexH = uTexture;
    st.m_uFontLayoutX = uLayout;
    return st;
}

const stFontFilePlace g_stMine = {u"Profiles\\Mine", 2}, g_stDefault = {u"Profiles\\Default", 2};

i64 Errors(const std::string& szText) {
    return std::count_if(g_aFontLog.begin(), g_aFontLog.end(),
                         [&](const std::string& szLine) { return szLine.starts_with("error ! " + szText); });
}

/// Distinct codes from the ideographs, of which none is in another set.
std::u16string Ideographs(u32 uCount) {
    std::u16string wzText;
    for (u32 u = 0; u < uCount; ++u) wzText += static_cast<char16_t>(0x4E00 + u);
    return wzText;
}

} // namespace

TEST_F(ProfileFonts, FixedFontsStandUnderTheirIdsWithThePrintableSet) {
    stFontRecord aRecords[4] = {Record(u"A"), {}, Record(u"B"), Record(u"C")};
    aRecords[2].m_iFontWeight = 700;
    FontIdsByName ids;
    ASSERT_TRUE(g_fnMakeFixedFonts(aRecords, g_stMine, ids));
    EXPECT_EQ(ids, (FontIdsByName{{u"A", 0}, {u"B", 2}, {u"C", 3}}));
    EXPECT_EQ(g_ppFont[1], nullptr);
    ASSERT_NE(FontAt(2), nullptr);
    EXPECT_EQ(FontAt(2)->m_iFontWeight, 700);
    EXPECT_EQ(FontAt(2)->m_uLayoutW, 12u);
    EXPECT_EQ(FontAt(2)->m_uTexW, 96u);
    EXPECT_EQ(FontAt(2)->m_mapCharIndex.size(), 94u + 2);
    EXPECT_EQ(FontAt(2)->m_uUploads, 1u);
}

TEST_F(ProfileFonts, RecordsThatLackSomethingMakeNoFont) {
    stFontRecord aRecords[5] = {Record(u""), Record(u"B"), Record(u"C"), Record(u"D"), Record(u"E")};
    aRecords[1].m_uFontTexW = 0;
    aRecords[2].m_uFontLayoutX = 0;
    aRecords[3].m_bDynamic = true;
    CFlavourFont* const pStanding = Stand(4, u"Former", 12, u"");
    FontIdsByName ids;
    ASSERT_TRUE(g_fnMakeFixedFonts(aRecords, g_stMine, ids));
    EXPECT_TRUE(ids.empty());
    EXPECT_EQ(CFlavourFont::s_iLive, 1);
    EXPECT_EQ(FontAt(4), pStanding);
    EXPECT_EQ(pStanding->m_mapCharIndex.size(), 96u) << "it gets the printable set all the same";
}

TEST_F(ProfileFonts, FixedFontThatCannotBeSetUpFailsTheLoad) {
    const stFontRecord aRecords[1] = {Record(u"A")};
    CFlavourFont::s_bRefuse = true;
    FontIdsByName ids;
    EXPECT_FALSE(g_fnMakeFixedFonts(aRecords, g_stMine, ids));
    EXPECT_EQ(g_ppFont[0], nullptr);
    EXPECT_EQ(CFlavourFont::s_iLive, 0);
}

TEST_F(ProfileFonts, FixedFontComesFromItsFileAndGetsWhatIsMissing) {
    const auto pSource = SmallFont(u"A");
    ASSERT_NE(pSource, nullptr);
    m_folder.Write("Profiles/Mine/2-0.fnt", Saved(*pSource));
    const stFontRecord aRecords[1] = {Record(u"A")};
    FontIdsByName ids;
    ASSERT_TRUE(g_fnMakeFixedFonts(aRecords, g_stMine, ids));
    EXPECT_TRUE(FontAt(0)->m_bFromFile);
    EXPECT_EQ(FontAt(0)->m_uLayoutW, 2u) << "the file's grid, not the record's";
    EXPECT_EQ(FontAt(0)->m_fnFindChar('A'), 0);
    EXPECT_EQ(FontAt(0)->m_fnFindChar('!'), 2);
    EXPECT_EQ(ids[u"A"], 0u);
}

TEST_F(ProfileFonts, DamagedFileMeansDrawing) {
    m_folder.Write("Profiles/Mine/2-0.fnt", SmallFile(u"A").substr(0, 700));
    const stFontRecord aRecords[1] = {Record(u"A")};
    FontIdsByName ids;
    ASSERT_TRUE(g_fnMakeFixedFonts(aRecords, g_stMine, ids));
    EXPECT_FALSE(FontAt(0)->m_bFromFile);
    EXPECT_EQ(FontAt(0)->m_uLayoutW, 12u);
    EXPECT_TRUE(g_aFontLog.empty()) << "without a word";
}

TEST_F(ProfileFonts, GridOfATextIsAPowerOfTwoWithACellToSpare) {
    EXPECT_EQ(g_fnTextFontLayout(0), 2u);
    EXPECT_EQ(g_fnTextFontLayout(3), 2u);
    EXPECT_EQ(g_fnTextFontLayout(4), 4u);
    EXPECT_EQ(g_fnTextFontLayout(15), 4u);
    EXPECT_EQ(g_fnTextFontLayout(16), 8u);
    EXPECT_EQ(g_fnTextFontLayout(0xFFFFFFFF), 65536u);
}

TEST_F(ProfileFonts, FontOfATextKeepsTheCellOfItsRecord) {
    Stand(9, u"Former", 2, u"");
    ASSERT_TRUE(g_fnMakeTextFont(9, Record(u"Memo", 4, 64), u"memo \r\n\t\u3000of text", g_stMine));
    const CFlavourFont& font = *FontAt(9); // m e o f t x: 6
    EXPECT_EQ(CFlavourFont::s_iLive, 1) << "the former font is gone";
    EXPECT_EQ(font.m_uLayoutW, 4u);
    EXPECT_EQ(font.m_uTexW, 64u);
    EXPECT_EQ(font.m_iCanvasW, 16);
    EXPECT_EQ(Held(font), (std::set<u32>{32, 'e', 'f', 'm', 'o', 't', 'x', 12288}));
    EXPECT_EQ(font.m_uUploads, 1u);
}

TEST_F(ProfileFonts, MemoOfBlanksOnlyHasAGridOfTwo) {
    ASSERT_TRUE(g_fnMakeTextFont(9, Record(u"Memo", 4, 64), u" \n\t", g_stMine));
    EXPECT_EQ(FontAt(9)->m_uLayoutW, 2u);
    EXPECT_EQ(FontAt(9)->m_uTexW, 32u);
}

TEST_F(ProfileFonts, FileOfATextFontMustHaveRoomByItsOwnCount) {
    std::string bytes = SmallFile(u"Memo");
    m_folder.Write("Profiles/Mine/2-9.fnt", bytes);
    ASSERT_TRUE(g_fnMakeTextFont(9, Record(u"Memo", 4, 64), u"x", g_stMine));
    EXPECT_FALSE(FontAt(9)->m_bFromFile);
    SetWord(bytes, 180, 3);
    m_folder.Write("Profiles/Mine/2-9.fnt", bytes);
    ASSERT_TRUE(g_fnMakeTextFont(9, Record(u"Memo", 4, 64), u"x", g_stMine));
    EXPECT_TRUE(FontAt(9)->m_bFromFile);
    EXPECT_EQ(FontAt(9)->m_fnFindChar('x'), 2) << "a font from a file gets its missing characters too";
}

TEST_F(ProfileFonts, FontOfATextThatCannotBeSetUpLeavesNone) {
    Stand(9, u"Former", 2, u"");
    CFlavourFont::s_bRefuse = true;
    EXPECT_FALSE(g_fnMakeTextFont(9, Record(u"Memo", 4, 64), u"x", g_stMine));
    EXPECT_EQ(g_ppFont[9], nullptr);
    CFlavourFont::s_bRefuse = false;
    EXPECT_FALSE(g_fnMakeTextFont(9, Record(u"Memo", 0, 64), u"x", g_stMine));
    EXPECT_FALSE(g_fnMakeTextFont(64, Record(u"Memo"), u"x", g_stMine));
    EXPECT_FALSE(g_fnMakeTextFont(9, Record(u"Memo", 1, 0x80000000), u"x", g_stMine));
}

TEST_F(ProfileFonts, IdsAreTheLowestFreeOnesAndGivenOnce) {
    Stand(1, u"A", 2, u"");
    u32 uFontId = 99;
    EXPECT_TRUE(g_fnGiveFontId(&uFontId));
    EXPECT_EQ(uFontId, 0u);
    EXPECT_TRUE(g_fnGiveFontId(&uFontId));
    EXPECT_EQ(uFontId, 2u);
    g_fnEndFontAssembly();
    EXPECT_TRUE(g_fnGiveFontId(&uFontId));
    EXPECT_EQ(uFontId, 0u);
    for (u32 u = 0; u < 62; ++u) EXPECT_TRUE(g_fnGiveFontId(&uFontId));
    EXPECT_EQ(uFontId, 63u);
    EXPECT_FALSE(g_fnGiveFontId(&uFontId));
}

TEST_F(ProfileFonts, ItemsThatShareAFaceShareAFont) {
    AddText("A", u"Face", u"\u00E4");
    AddText("B", u"Face", u"\u00F6 ");
    AddNumber("C", u"Digits", ITEM_MIXED);
    std::vector<stDynamicFont> fonts;
    g_fnCollectDynamicFonts(fonts);
    ASSERT_EQ(fonts.size(), 2u);
    EXPECT_EQ(fonts[0].uId, 0u);
    EXPECT_EQ(fonts[0].stRecord.m_wzFontName, std::u16string(u"Face"));
    EXPECT_EQ(fonts[0].stRecord.m_uFontTexW, 4096u);
    EXPECT_EQ(fonts[0].stRecord.m_uFontTexH, 4096u);
    EXPECT_EQ(fonts[0].stRecord.m_uFontLayoutX, 32u);
    EXPECT_EQ(fonts[0].stRecord.m_iFontWeight, 400);
    EXPECT_EQ(fonts[1].uId, 1u);
    std::set<u32> codes = Codes(g_wzPrintableSet);
    EXPECT_EQ(Query(1), codes) << "digits, colon and x are printable";
    codes.insert({u'\u00E4', u'\u00F6', u' '});
    EXPECT_EQ(Query(0), codes);
}

TEST_F(ProfileFonts, FaceThatHasAFontGetsNoOther) {
    CFlavourFont* const pFont = Stand(0, u"Face", 4, u"");
    AddText("A", u"Face", u"abc");
    std::vector<stDynamicFont> fonts;
    g_fnCollectDynamicFonts(fonts);
    EXPECT_TRUE(fonts.empty());
    EXPECT_EQ(Query(0), Codes(u"abc"));
    EXPECT_EQ(pFont->m_fnFindChar('c'), 2) << "the font that stands was fitted";
}

TEST_F(ProfileFonts, ItemsWhoseTextCannotBeHadAreReportedAndSkipped) {
    m_folder.Write("Profiles/Mine/empty.txt", "");
    AddMemo("A", u"Face", u"missing.txt");
    AddMemo("B", u"Face", u"empty.txt");
    AddText("C", u"Face", u"");
    AddText("D", u"Face", u"\u00E4");
    std::vector<stDynamicFont> fonts;
    g_fnCollectDynamicFonts(fonts);
    EXPECT_EQ(Errors("g_fnLoadTextFromFile() load file fail"), 1);
    EXPECT_EQ(Errors("g_fnLoadTextFromFile() load text fail"), 1);
    EXPECT_EQ(Errors("g_fnInsertQueryTextByFontID() fail"), 1);
    EXPECT_TRUE(Query(0).contains(u'\u00E4'));
    EXPECT_EQ(Query(0).size(), 95u);
}

TEST_F(ProfileFonts, RecordGrowsFrom1024Codes) {
    const std::u16string wzText = Ideographs(929); // and 94 printable ones: 1023
    AddText("A", u"Face", wzText.c_str());
    AddText("B", u"Other", wzText.c_str());
    AddText("C", u"Other", u"\u00E4");
    std::vector<stDynamicFont> fonts;
    g_fnCollectDynamicFonts(fonts);
    ASSERT_EQ(fonts.size(), 2u);
    EXPECT_EQ(Query(0).size(), 1023u);
    EXPECT_EQ(fonts[0].stRecord.m_uFontLayoutX, 32u);
    EXPECT_EQ(fonts[0].stRecord.m_uFontTexW, 4096u);
    EXPECT_EQ(Query(1).size(), 1024u);
    EXPECT_EQ(fonts[1].stRecord.m_uFontLayoutX, 64u);
    EXPECT_EQ(fonts[1].stRecord.m_uFontTexW, 8192u);
    EXPECT_EQ(fonts[1].stRecord.m_uFontTexH, 8192u);
}

TEST_F(ProfileFonts, DynamicFontsHoldTheirTextAndStayWithoutControls) {
    g_fnInsertQueryTextByFontID(4, u"a b");
    const stDynamicFont aFonts[1] = {{4, Record(u"Face", 4, 32)}};
    const stFontFilePlace aPlaces[2] = {g_stMine, g_stDefault};
    ASSERT_TRUE(g_fnMakeDynamicFonts(aFonts, aPlaces));
    ASSERT_NE(FontAt(4), nullptr);
    EXPECT_EQ(Held(*FontAt(4)), (std::set<u32>{32, 'a', 'b', 12288}));
    EXPECT_TRUE(g_fnIsFontToStay(g_ppFont[4]));
    EXPECT_EQ(FontAt(4)->m_uUploads, 1u);
}

TEST_F(ProfileFonts, DynamicFontComesFromTheFirstPlaceThatHasItAsItIs) {
    m_folder.Write("Profiles/Default/2-Face.fnt", SmallFile(u"Face"));
    g_fnInsertQueryTextByFontID(4, u"xyz");
    const stDynamicFont aFonts[1] = {{4, Record(u"Face", 4, 32)}};
    const stFontFilePlace aPlaces[2] = {g_stMine, g_stDefault};
    ASSERT_TRUE(g_fnMakeDynamicFonts(aFonts, aPlaces));
    EXPECT_EQ(Held(*FontAt(4)), (std::set<u32>{32, 'A', 'B', 12288})) << "its text is not added";
    EXPECT_TRUE(g_fnIsFontToStay(g_ppFont[4]));
    const auto pOwn = SmallFont(u"Face");
    ASSERT_NE(pOwn, nullptr);
    g_fnFontAddText(pOwn.get(), u"C");
    m_folder.Write("Profiles/Mine/2-Face.fnt", Saved(*pOwn));
    ASSERT_TRUE(g_fnMakeDynamicFonts(aFonts, aPlaces));
    EXPECT_EQ(FontAt(4)->m_fnFindChar('C'), 2);
}

TEST_F(ProfileFonts, DynamicFontThatCannotBeSetUpFailsAndNoFontStays) {
    CFlavourFont* const pOther = Stand(0, u"Other", 2, u"");
    g_fnSetFontToStay(pOther);
    const stDynamicFont aFonts[1] = {{4, Record(u"Face", 4, 32)}};
    CFlavourFont::s_bRefuse = true;
    EXPECT_FALSE(g_fnMakeDynamicFonts(aFonts, {}));
    EXPECT_EQ(g_ppFont[4], nullptr);
    EXPECT_FALSE(g_fnIsFontToStay(pOther));
}
