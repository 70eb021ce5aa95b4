#include "companion/table.h"
#include "companion/utf.h"
#include "entry/hooking.h"
#include "platform/tool_bytes.h"
#include <gtest/gtest.h>

using namespace companion;
using platform::tool::EqualFolded;
using platform::tool::IsForeignOverlay;

TEST(CompanionText, StopsAtTheFirstZero) {
    const char16_t awText[] = {u'a', u'b', 0, u'c'};
    EXPECT_EQ(Utf8FromUnits(awText, 4), "ab");
}

TEST(CompanionText, StopsAtTheFieldWithoutAZero) {
    const char16_t awText[] = {u'a', u'b', u'c', u'd'};
    EXPECT_EQ(Utf8FromUnits(awText, 3), "abc");
    EXPECT_EQ(Utf8FromUnits(awText, 0), "");
}

TEST(CompanionText, HighSurrogateInTheLastUnitDoesNotReadOn) {
    const char16_t awText[] = {u'a', 0xD83D, 0xDE00};
    EXPECT_EQ(Utf8FromUnits(awText, 2), "a\xEF\xBF\xBD");
    EXPECT_EQ(Utf8FromUnits(awText, 3), "a\xF0\x9F\x98\x80");
}

TEST(CompanionText, LoneLowSurrogateIsReplaced) {
    const char16_t awText[] = {0xDE00, u'z'};
    EXPECT_EQ(Utf8FromUnits(awText, 2), "\xEF\xBF\xBDz");
}

TEST(CompanionText, TwoAndThreeByteCharacters) {
    EXPECT_EQ(Utf8FromUnits(u"\u00e9\u20ac", 2), "\xC3\xA9\xE2\x82\xAC");
}

TEST(CompanionText, GoesThereAndBack) {
    std::u16string wzText;
    ASSERT_TRUE(UnitsFromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", wzText));
    EXPECT_EQ(wzText, u"a\u00e9\u20ac\U0001F600");
    EXPECT_EQ(Utf8FromUnits(wzText.data(), wzText.size()), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(CompanionText, RefusesBrokenUtf8) {
    std::u16string wzText;
    for (const char* szBad : {"\xC3", "\x80", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                              "\xFF", "\xE2\x82", "\xF0\x9F\x98"}) {
        EXPECT_FALSE(UnitsFromUtf8(szBad, wzText)) << szBad;
    }
}

TEST(CompanionText, PrintableEscapesControlsAndBrokenBytes) {
    EXPECT_EQ(Printable("a\x1B[31mb"), "a\\x1B[31mb");
    EXPECT_EQ(Printable("\xC2\x9B"), "\\x9B");
    EXPECT_EQ(Printable("\x7F\n"), "\\x7F\\x0A");
    EXPECT_EQ(Printable("\xE2\x80\xAE"), "\\u202E");
    EXPECT_EQ(Printable("x\xFFy"), "x\xEF\xBF\xBDy");
    EXPECT_EQ(Printable("\xC3\xA9"), "\xC3\xA9");
}

TEST(CompanionText, PrintableEscapesMarksOfDirection) {
    EXPECT_EQ(Printable("\xE2\x81\xA6"), "\\u2066");
    EXPECT_EQ(Printable("\xE2\x80\x8F"), "\\u200F");
    EXPECT_EQ(Printable("\xD8\x9C"), "\\u061C");
}

TEST(CompanionText, JsonKeepsItsLinesAndMeaningAndLosesItsControls) {
    EXPECT_EQ(PrintableJson("{\n  \"a\": \"\x7F\xC2\x9B\xE2\x80\xAE\xC3\xA9\"\n}\n"),
              "{\n  \"a\": \"\\u007f\\u009b\\u202e\xC3\xA9\"\n}\n");
}

TEST(CompanionTable, AlignsColumnsAndDropsTrailingBlanks) {
    const std::string strTable =
        FormatTable({{"NAME"}, {"PID", Align::Right}, {"END"}}, {{"a", "7", ""}, {"longer", "12345", "x"}});
    EXPECT_EQ(strTable, "NAME      PID  END\n"
                        "a           7\n"
                        "longer  12345  x\n");
}

TEST(CompanionTable, CountsCharactersAndNotBytes) {
    EXPECT_EQ(FormatTable({{"N"}, {"X"}}, {{"\xC3\xA9\xC3\xA9", "1"}, {"ab", "2"}}),
              "N   X\n\xC3\xA9\xC3\xA9  1\nab  2\n");
}

TEST(CompanionTable, ShortAndLongRowsAndHostileCells) {
    EXPECT_EQ(FormatTable({{"A"}, {"B"}}, {{}, {"1", "2", "3"}, {"\x1B", "q"}}),
              "A     B\n\n1     2\n\\x1B  q\n");
    EXPECT_EQ(FormatTable({{"A"}}, {}), "A\n");
}

TEST(CompanionOverlays, ComparesWithoutCase) {
    EXPECT_TRUE(IsForeignOverlay("STEAM_API64.DLL"));
    EXPECT_FALSE(IsForeignOverlay("steam_api64.dll.bak"));
    EXPECT_FALSE(IsForeignOverlay(""));
    EXPECT_TRUE(EqualFolded("Host.EXE", "hOST.exe"));
    EXPECT_FALSE(EqualFolded("host", "hosts"));
}
