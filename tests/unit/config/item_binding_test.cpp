#include "config/settings/setting_binding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <tinyxml2.h>

namespace {

constexpr u64 g_u64Most = ~u64{0};

/// The table of one row, applied to an element with the given attribute text.
struct OneKey {
    stSettingBinding row{};

    OneKey(eSettingKind uKind, eSettingTarget uType, void* pTarget, u32 uUnits = 0,
           const char* szDefault = "") {
        const stSettingRow aRows[] = {{"Key", szDefault, uKind, uType, pTarget, uUnits}};
        SettingTable table;
        g_fnAddSettings(table, aRows);
        row = table.at("Key");
    }
    void Store(const char* szText) { g_fnStoreSetting(row, szText); }
};

tinyxml2::XMLDocument& Parse(const std::string& sz) {
    static tinyxml2::XMLDocument document;
    document.Parse(sz.c_str());
    EXPECT_FALSE(document.Error());
    return document;
}

TEST(SettingNumbers, DecimalStopsAtTheFirstBadCharacter) {
    EXPECT_EQ(g_fnParseDecimal("12px"), 12u);
    EXPECT_EQ(g_fnParseDecimal("12.7"), 12u);
    EXPECT_EQ(g_fnParseDecimal("+7"), 7u);
    EXPECT_EQ(g_fnParseDecimal("-7"), g_u64Most - 6);
    EXPECT_EQ(g_fnParseDecimal("0x10"), 0u);
}

TEST(SettingNumbers, TextThatStartsWithANonDigitParsesTo0) {
    for (const char* sz : {"", "abc", "x1", "-", "+", "--5", "+-5", "- 5", "#12", "\xC3\xA9", "%d"})
        EXPECT_EQ(g_fnParseDecimal(sz), 0u) << sz;
}

TEST(SettingNumbers, LeadingBlanksEndANumberAtOnce) {
    EXPECT_EQ(g_fnParseDecimal(" 5"), 0u);
    EXPECT_EQ(g_fnParseHex("\t5"), 0u);
    EXPECT_EQ(g_fnParseFloat(" 5"), 0.0);
}

TEST(SettingNumbers, DecimalsBeyond64BitsSaturate) {
    EXPECT_EQ(g_fnParseDecimal("18446744073709551615"), g_u64Most);
    EXPECT_EQ(g_fnParseDecimal("18446744073709551616"), g_u64Most);
    EXPECT_EQ(g_fnParseDecimal(std::string(250, '9').c_str()), g_u64Most);
    EXPECT_EQ(g_fnParseDecimal("-9223372036854775808"), u64{1} << 63);
    EXPECT_EQ(g_fnParseDecimal(("-" + std::string(250, '9')).c_str()), u64{1} << 63);
}

TEST(SettingNumbers, HexTakesDigitsOfBase16WithOrWithoutPrefix) {
    EXPECT_EQ(g_fnParseHex("FF"), 255u);
    EXPECT_EQ(g_fnParseHex("0x1aG"), 26u);
    EXPECT_EQ(g_fnParseHex("0XfF"), 255u);
    EXPECT_EQ(g_fnParseHex("-1"), g_u64Most);
    EXPECT_EQ(g_fnParseHex("0x"), 0u);
    EXPECT_EQ(g_fnParseHex("zz"), 0u);
    EXPECT_EQ(g_fnParseHex("12345678901234567"), g_u64Most);
}

TEST(SettingNumbers, FloatsReadAPointWhateverTheLocale) {
    EXPECT_EQ(g_fnParseFloat("1.5"), 1.5);
    EXPECT_EQ(g_fnParseFloat("-2.25e1x"), -22.5);
    EXPECT_EQ(g_fnParseFloat("+.5"), 0.5);
    EXPECT_EQ(g_fnParseFloat("7."), 7.0);
    EXPECT_EQ(g_fnParseFloat("1,5"), 1.0);
    EXPECT_EQ(g_fnParseFloat("1e"), 1.0);
    EXPECT_EQ(g_fnParseFloat("abc"), 0.0);
    EXPECT_EQ(g_fnParseFloat("."), 0.0);
    EXPECT_EQ(g_fnParseFloat(""), 0.0);
}

TEST(SettingNumbers, FloatsAreAlwaysFinite) {
    constexpr f64 fMost = std::numeric_limits<f64>::max();
    EXPECT_EQ(g_fnParseFloat("1e999"), fMost);
    EXPECT_EQ(g_fnParseFloat("-1e999"), -fMost);
    EXPECT_EQ(g_fnParseFloat("1e-999"), 0.0);
    EXPECT_EQ(g_fnParseFloat(std::string(400, '9').c_str()), fMost);
    EXPECT_EQ(g_fnParseFloat(("0." + std::string(400, '0') + "1").c_str()), 0.0);
    for (const char* sz : {"inf", "-inf", "nan", "-nan", "infinity", "NAN(7)"})
        EXPECT_EQ(g_fnParseFloat(sz), 0.0) << sz;
}

TEST(SettingTargets, IntegersKeepTheirLowBits) {
    u8 a8[2] = {0xEE, 0xEE};
    OneKey(SETTING_DECIMAL, TARGET_U8, a8).Store("257");
    EXPECT_EQ(a8[0], 1);
    EXPECT_EQ(a8[1], 0xEE);
    OneKey(SETTING_DECIMAL, TARGET_I8, a8).Store("-1");
    EXPECT_EQ(a8[0], 255);
    u16 a16[2] = {0xEEEE, 0xEEEE};
    OneKey(SETTING_HEX, TARGET_U16, a16).Store("12345");
    EXPECT_EQ(a16[0], 0x2345);
    EXPECT_EQ(a16[1], 0xEEEE);
    OneKey(SETTING_DECIMAL, TARGET_I16, a16).Store("-2");
    EXPECT_EQ(a16[0], 0xFFFE);
    u32 a32[2] = {0, 0xEEEEEEEE};
    OneKey(SETTING_DECIMAL, TARGET_U32, a32).Store("4294967298");
    EXPECT_EQ(a32[0], 2u);
    EXPECT_EQ(a32[1], 0xEEEEEEEE);
    OneKey(SETTING_DECIMAL, TARGET_I32, a32).Store("-3");
    EXPECT_EQ(a32[0], 0xFFFFFFFD);
    u64 u = 0;
    OneKey(SETTING_DECIMAL, TARGET_U64, &u).Store("4294967298");
    EXPECT_EQ(u, 4294967298u);
}

TEST(SettingTargets, SaturatedNumbersNarrowToTheirLowBits) {
    u32 u = 0;
    OneKey key(SETTING_DECIMAL, TARGET_U32, &u);
    key.Store("99999999999999999999999");
    EXPECT_EQ(u, 0xFFFFFFFF);
    key.Store("-99999999999999999999999");
    EXPECT_EQ(u, 0u);
}

TEST(SettingTargets, DoublesNarrowToFiniteFloats) {
    f32 f = -1;
    OneKey key(SETTING_FLOAT, TARGET_F32, &f);
    key.Store("0.1");
    EXPECT_EQ(f, 0.1f);
    key.Store("1e300");
    EXPECT_EQ(f, std::numeric_limits<f32>::max());
    key.Store("-1e300");
    EXPECT_EQ(f, -std::numeric_limits<f32>::max());
}

TEST(SettingTargets, AFloatTargetTakesTheBitsOfAnotherKindAsADouble) {
    f32 f = -1;
    OneKey(SETTING_HEX, TARGET_F32, &f).Store("3FF8000000000000");
    EXPECT_EQ(f, 1.5f);
    OneKey(SETTING_HEX, TARGET_F32, &f).Store("7FF8000000000000");
    EXPECT_EQ(f, 0.0f) << "not a number";
}

TEST(SettingTargets, TextKindsLeaveANumberAt0) {
    u32 u = 9;
    OneKey(SETTING_TEXT, TARGET_U32, &u).Store("12");
    EXPECT_EQ(u, 0u);
    u = 9;
    OneKey(SETTING_TEXT_LOCAL, TARGET_U32, &u).Store("12");
    EXPECT_EQ(u, 0u);
}

TEST(SettingTargets, AnyOtherCodeStoresNothing) {
    for (int iType = 0; iType < 256; ++iType) {
        const bool bKnown =
            (iType >= 1 && iType <= 6) || iType == 18 || iType == 19 || iType == 33 || iType == 34;
        if (bKnown) continue;
        u64 u = 0x1234;
        OneKey(SETTING_DECIMAL, static_cast<eSettingTarget>(iType), &u, 8).Store("77");
        EXPECT_EQ(u, 0x1234u) << iType;
    }
}

TEST(SettingTargets, ANullTargetDiscardsTheValueAndIsFoundAllTheSame) {
    for (const eSettingTarget uType : {TARGET_U8, TARGET_U64, TARGET_F32, TARGET_TEXT, TARGET_WIDE}) {
        OneKey key(SETTING_DECIMAL, uType, nullptr, 16);
        key.Store("5");
        EXPECT_EQ(key.row.uFound, 1);
        key.Store(nullptr);
        EXPECT_EQ(key.row.uFound, 0);
    }
}

TEST(SettingTargets, NarrowTextIsCutToItsRoom) {
    char sz[6] = "-----";
    sz[4] = '!';
    OneKey(SETTING_TEXT, TARGET_TEXT, sz, 4).Store("abcdef");
    EXPECT_STREQ(sz, "abc");
    EXPECT_EQ(sz[4], '!');
    OneKey(SETTING_TEXT, TARGET_TEXT, sz, 0).Store("xyz");
    EXPECT_STREQ(sz, "abc");
}

TEST(SettingTargets, WideTextIsCutAtACodePoint) {
    char16_t wz[5] = u"----";
    OneKey(SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 4).Store("ab\xF0\x9F\x8E\xAE"); // needs 4 units and the end
    EXPECT_EQ(std::u16string(wz), u"ab");
    EXPECT_EQ(wz[4], u'\0');
}

TEST(SettingUtf8, CodePointsBecomeUnits) {
    char16_t wz[16];
    g_fnDecodeUtf8("a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x8E\xAE", wz, 16);
    EXPECT_EQ(std::u16string(wz), u"a\u00E9\u4E2D\xD83C\xDFAE");
}

TEST(SettingUtf8, EveryByteOrderMarkIsDropped) {
    char16_t wz[16];
    g_fnDecodeUtf8("\xEF\xBB\xBF"
                   "Sa"
                   "\xEF\xBB\xBF"
                   "ns"
                   "\xEF\xBB\xBF",
                   wz, 16);
    EXPECT_EQ(std::u16string(wz), u"Sans");
}

TEST(SettingUtf8, WrongBytesBecomeReplacementCharacters) {
    char16_t wz[16];
    g_fnDecodeUtf8("a\xFF"
                   "b\xC3",
                   wz, 16);
    EXPECT_EQ(std::u16string(wz), u"a\uFFFD"
                                  u"b\uFFFD");
    g_fnDecodeUtf8("\xED\xA0\x80", wz, 16); // a surrogate written as UTF-8
    EXPECT_EQ(std::u16string(wz), u"\uFFFD");
    g_fnDecodeUtf8("abc", wz, 0);
    EXPECT_EQ(wz[0], u'\uFFFD') << "no room, nothing written";
}

TEST(SettingDefaults, AMissingAttributeTakesTheDefaultAndIsNotFound) {
    u32 uThere = 1, uMissing = 1;
    char szMissing[8] = "old";
    const stSettingRow aRows[] = {{"There", "5", SETTING_DECIMAL, TARGET_U32, &uThere},
                                  {"Missing", "6", SETTING_DECIMAL, TARGET_U32, &uMissing},
                                  {"Word", "new", SETTING_TEXT, TARGET_TEXT, szMissing, 8}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(Parse("<e There='9'/>").RootElement(), table);
    EXPECT_EQ(uThere, 9u);
    EXPECT_EQ(uMissing, 6u);
    EXPECT_STREQ(szMissing, "new");
    EXPECT_EQ(table.at("There").uFound, 1);
    EXPECT_EQ(table.at("Missing").uFound, 0);
    g_fnFreeSettings(table);
    EXPECT_TRUE(table.empty());
}

TEST(SettingDefaults, AnEmptyAttributeIsFoundAndIsNotTheDefault) {
    u32 u = 1;
    const stSettingRow aRows[] = {{"Key", "5", SETTING_DECIMAL, TARGET_U32, &u}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(Parse("<e Key=''/>").RootElement(), table);
    EXPECT_EQ(u, 0u);
    EXPECT_EQ(table.at("Key").uFound, 1);
}

TEST(SettingDefaults, AOneCharacterDefaultReadsAsWideText) {
    char16_t wz[8] = u"old";
    OneKey(SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 8, "X").Store(nullptr);
    EXPECT_EQ(std::u16string(wz), u"X");
    OneKey(SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 8, "").Store(nullptr);
    EXPECT_EQ(std::u16string(wz), u"");
}

TEST(SettingDefaults, ALongerDefaultOfWideTextReadsInPairsOfBytes) {
    char16_t wz[8] = u"old";
    OneKey(SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 8, "ABC").Store(nullptr);
    EXPECT_EQ(std::u16string(wz), u"\x4241"
                                  u"C");
}

TEST(SettingTables, AKeyEnteredTwiceKeepsTheLaterRow) {
    u32 uFirst = 1, uSecond = 2;
    const stSettingRow aRows[] = {{"Key", "7", SETTING_DECIMAL, TARGET_U32, &uFirst},
                                  {"Key", "8", SETTING_DECIMAL, TARGET_U32, &uSecond}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    EXPECT_EQ(table.size(), 1u);
    g_fnApplyXmlSettings(nullptr, table);
    EXPECT_EQ(uFirst, 1u);
    EXPECT_EQ(uSecond, 8u);
}

TEST(SettingTables, RowsAreAppliedInKeyOrder) {
    u32 u = 0;
    const stSettingRow aRows[] = {{"b", "2", SETTING_DECIMAL, TARGET_U32, &u},
                                  {"a", "1", SETTING_DECIMAL, TARGET_U32, &u}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(nullptr, table);
    EXPECT_EQ(u, 2u);
}

TEST(SettingTables, AttributeNamesDistinguishCase) {
    u32 u = 0;
    const stSettingRow aRows[] = {{"Key", "5", SETTING_DECIMAL, TARGET_U32, &u}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(Parse("<e key='9' KEY='8'/>").RootElement(), table);
    EXPECT_EQ(u, 5u);
}

TEST(SettingTables, OverlongNamesAndDefaultsAreCut) {
    const std::string szLong(300, 'n');
    char sz[300] = "";
    const stSettingRow aRows[] = {{szLong.c_str(), szLong.c_str(), SETTING_TEXT, TARGET_TEXT, sz, 300}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    EXPECT_EQ(std::string(table.begin()->second.szName), szLong.substr(0, 255));
    g_fnApplyXmlSettings(nullptr, table);
    EXPECT_EQ(std::string(sz), szLong.substr(0, 255));
}

TEST(SettingTables, AttributeTextIsCutAt255Bytes) {
    char sz[400] = "";
    char16_t wz[400] = u"";
    const stSettingRow aRows[] = {{"Key", "", SETTING_TEXT, TARGET_TEXT, sz, 400}};
    const stSettingRow aWide[] = {{"Key", "", SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 400}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(Parse("<e Key='" + std::string(300, 'k') + "'/>").RootElement(), table);
    EXPECT_EQ(std::string(sz), std::string(255, 'k'));
    g_fnAddSettings(table, aWide);
    g_fnApplyXmlSettings(Parse("<e Key='" + std::string(300, 'k') + "'/>").RootElement(), table);
    EXPECT_EQ(std::u16string(wz), std::u16string(255, u'k'));
}

TEST(SettingTables, TheCutLeavesNoPartOfACodePoint) {
    char16_t wz[400] = u"";
    const stSettingRow aRows[] = {{"Key", "", SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 400}};
    SettingTable table;
    g_fnAddSettings(table, aRows);
    for (const std::size_t uAscii : {252u, 253u, 254u, 255u}) {
        const std::string szText = std::string(uAscii, 'k') + "\xE4\xB8\xAD\xE4\xB8\xAD";
        g_fnApplyXmlSettings(Parse("<e Key='" + szText + "'/>").RootElement(), table);
        EXPECT_EQ(std::u16string(wz), std::u16string(uAscii, u'k') + (uAscii == 252 ? u"\u4E2D" : u""));
    }
}

TEST(SettingTablesW, TextAndNumbersOfAWideSource) {
    u32 u = 0;
    f32 f = 0;
    char16_t wz[8] = u"";
    char sz[8] = "";
    const stSettingRowW aRows[] = {
        {u"Number", u"3", SETTING_DECIMAL, TARGET_U32, &u, 0, u"Other name"},
        {u"Share", u"2.5", SETTING_FLOAT, TARGET_F32, &f},
        {u"Word", u"default", SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 8},
        {u"Narrow", u"abc", SETTING_TEXT, TARGET_TEXT, sz, 8},
    };
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    EXPECT_EQ(std::u16string(table.at(u"Number").wzName), u"Other name");
    EXPECT_EQ(std::u16string(table.at(u"Word").wzName), u"Word");
    for (auto& [wzKey, row] : table) g_fnStoreSettingW(row, nullptr);
    EXPECT_EQ(u, 3u);
    EXPECT_EQ(f, 2.5f);
    EXPECT_EQ(std::u16string(wz), u"default");
    EXPECT_STREQ(sz, "abc");
    g_fnStoreSettingW(table.at(u"Number"), u"41\u4E2D7");
    EXPECT_EQ(u, 41u);
    EXPECT_EQ(table.at(u"Number").uFound, 1);
    g_fnStoreSettingW(table.at(u"Word"), u"abcdef\xD83C\xDFAE"); // the pair does not fit whole
    EXPECT_EQ(std::u16string(wz), u"abcdef");
    g_fnFreeSettingsW(table);
    EXPECT_TRUE(table.empty());
}

TEST(SettingTablesW, OverlongTextIsCut) {
    const std::u16string wzLong(1000, u'9');
    char16_t wz[4] = u"";
    u32 u = 0;
    const stSettingRowW aRows[] = {{u"a", u"", SETTING_TEXT_LOCAL, TARGET_WIDE, wz, 4},
                                   {u"b", u"", SETTING_DECIMAL, TARGET_U32, &u}};
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    g_fnStoreSettingW(table.at(u"a"), wzLong.c_str());
    g_fnStoreSettingW(table.at(u"b"), wzLong.c_str());
    EXPECT_EQ(std::u16string(wz), u"999");
    EXPECT_EQ(u, 0xFFFFFFFF);
}

} // namespace
