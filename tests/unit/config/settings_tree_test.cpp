// The settings store of systems without a registry: its file and its bounds.
#include "platform/settings_tree.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>

using platform::COpenSettingsKey;
using platform::CSettingsTree;
using platform::SettingsType;

namespace {

using KeyHandle = std::unique_ptr<COpenSettingsKey>;

KeyHandle Open(std::string_view bytes, const char16_t* wzPath) {
    return KeyHandle(
        COpenSettingsKey::Open(std::make_shared<const CSettingsTree>(CSettingsTree::Parse(bytes)), wzPath));
}

/// A value of key K as the file writes it: its number, if it is one.
std::optional<u32> NumberOf(const std::string& strWritten) {
    u32 uValue = 0, uBytes = sizeof uValue;
    SettingsType eType{};
    const KeyHandle pKey = Open("[K]\nv=" + strWritten, u"K");
    if (!pKey || !pKey->Query(u"v", eType, &uValue, uBytes) || eType != SettingsType::Number)
        return std::nullopt;
    EXPECT_EQ(uBytes, 4u);
    return uValue;
}

std::u16string TextOf(const std::string& strWritten) {
    char16_t wzValue[64];
    u32 uBytes = sizeof wzValue;
    SettingsType eType{};
    const KeyHandle pKey = Open("[K]\nv=" + strWritten, u"K");
    if (!pKey || !pKey->Query(u"v", eType, wzValue, uBytes) || eType != SettingsType::Text)
        return u"(no text)";
    EXPECT_EQ(wzValue[uBytes / 2 - 1], 0);
    return wzValue;
}

std::vector<std::u16string> SubkeysOf(COpenSettingsKey& key) {
    char16_t wzName[256];
    std::vector<std::u16string> names;
    for (u32 i = 0; key.Subkey(i, wzName, 256); ++i) names.emplace_back(wzName);
    return names;
}

} // namespace

TEST(SettingsTree, BareWholeNumbersAreNumbers) {
    EXPECT_EQ(NumberOf("60"), 60u);
    EXPECT_EQ(NumberOf("0x3C"), 60u);
    EXPECT_EQ(NumberOf("0XfFfFfFfF"), 0xFFFFFFFFu);
    EXPECT_EQ(NumberOf("4294967295"), 0xFFFFFFFFu);
    EXPECT_EQ(NumberOf("-9"), 0xFFFFFFF7u);
    EXPECT_EQ(NumberOf("-2147483648"), 0x80000000u);
}

TEST(SettingsTree, EverythingElseIsText) {
    for (const char* sz :
         {"4294967296", "-2147483649", "0x100000000", "0x", "-", "1.5", "12px", "--1", "-0x1"})
        EXPECT_EQ(NumberOf(sz), std::nullopt) << sz;
    EXPECT_EQ(TextOf("en.xml"), u"en.xml");
    EXPECT_EQ(TextOf("\"60\""), u"60");
    EXPECT_EQ(TextOf(""), u"");
    EXPECT_EQ(TextOf("\" a\""), u" a");
    EXPECT_EQ(TextOf("60"), u"(no text)");
}

TEST(SettingsTree, KeysAboveAKeyExistToo) {
    const std::string str = "[A\\b\\C]\nv=1\n";
    for (const char16_t* wz : {u"", u"a", u"A\\B", u"a\\b\\c", u"a\\b\\c\\"}) EXPECT_TRUE(Open(str, wz));
    for (const char16_t* wz : {u"b", u"a\\c", u"a\\b\\c\\d", u"\\a", u"a\\\\b"}) EXPECT_FALSE(Open(str, wz));
}

TEST(SettingsTree, SubkeysAreListedOnceInOrderWhateverTheIndexBefore) {
    const KeyHandle pKey = Open("[r\\b\\x]\n[r\\A]\n[R\\B]\n[r\\b y]\n", u"r");
    ASSERT_TRUE(pKey);
    const std::vector<std::u16string> expected{u"A", u"b", u"b y"};
    EXPECT_EQ(SubkeysOf(*pKey), expected);
    EXPECT_EQ(SubkeysOf(*pKey), expected);
    char16_t wzName[2];
    EXPECT_TRUE(pKey->Subkey(1, wzName, 2));
    EXPECT_FALSE(pKey->Subkey(2, wzName, 2)); // three characters in a room for one
    EXPECT_FALSE(pKey->Subkey(3, wzName, 2));
    EXPECT_FALSE(pKey->Value(0, wzName, 2));
}

TEST(SettingsTree, SectionsOfOneNameAreOneKeyAndTheFirstValueCounts) {
    const KeyHandle pKey = Open("[k]\nw\nv=1\nv=2\n[K]\nV=3\nw=4\n", u"k");
    ASSERT_TRUE(pKey);
    u32 uValue = 0, uBytes = 4;
    SettingsType eType{};
    EXPECT_TRUE(pKey->Query(u"v", eType, &uValue, uBytes));
    EXPECT_EQ(uValue, 1u);
    EXPECT_TRUE(pKey->Query(u"W", eType, &uValue, uBytes));
    EXPECT_EQ(uValue, 4u);
    EXPECT_FALSE(pKey->Query(u"x", eType, &uValue, uBytes));
}

TEST(SettingsTree, AValueThatDoesNotFitIsNotGiven) {
    const KeyHandle pKey = Open("[k]\nv=abc\n", u"k");
    ASSERT_TRUE(pKey);
    u8 auValue[8];
    u32 uBytes = 7;
    SettingsType eType{};
    EXPECT_FALSE(pKey->Query(u"v", eType, auValue, uBytes));
    uBytes = 8;
    EXPECT_TRUE(pKey->Query(u"v", eType, auValue, uBytes));
}

TEST(SettingsTree, HostilePathsAreNoKeys) {
    std::string strDeep = "a", strDeepest = "a";
    for (u32 i = 1; i < platform::g_uSettingsDepthMax; ++i) strDeep += "\\a";
    for (u32 i = 0; i < 300'000; ++i) strDeepest += "\\a";
    const std::u16string wstrDeep(strDeep.begin(), strDeep.end());
    EXPECT_TRUE(Open("[" + strDeep + "]\n", wstrDeep.c_str()));
    EXPECT_FALSE(Open("[" + strDeep + "\\a]\n", (wstrDeep + u"\\a").c_str()));
    EXPECT_FALSE(Open("[" + strDeepest + "]\n", (wstrDeep + u"\\a").c_str()));
    const std::u16string wstrLong(256, u'k');
    EXPECT_FALSE(Open("[" + std::string(256, 'k') + "]\n", wstrLong.c_str()));
    EXPECT_TRUE(Open("[" + std::string(255, 'k') + "]\n", wstrLong.substr(1).c_str()));
    EXPECT_TRUE(Open("[]\n[\\]\n[a\\\\b]\nv=1\n[c]\n", u"c"));
}

TEST(SettingsTree, ATreeTakesABoundedNumberOfEntries) {
    std::string strBytes = "[k]\n";
    for (u32 i = 0; i < platform::g_uSettingsEntriesMax + 10; ++i) strBytes += std::to_string(i) + "=\n";
    const KeyHandle pKey = Open(strBytes + "[later]\n", u"k");
    ASSERT_TRUE(pKey);
    char16_t wzName[16];
    EXPECT_TRUE(pKey->Value(platform::g_uSettingsEntriesMax - 2, wzName, 16)); // the key is an entry too
    EXPECT_FALSE(pKey->Value(platform::g_uSettingsEntriesMax - 1, wzName, 16));
    EXPECT_FALSE(Open(strBytes + "[later]\n", u"later"));
}

TEST(SettingsTree, NamesOfValuesHaveABound) {
    const KeyHandle pKey =
        Open("[k]\n" + std::string(16383, 'v') + "=1\n" + std::string(16384, 'w') + "=1\n", u"k");
    ASSERT_TRUE(pKey);
    std::vector<char16_t> name(16384);
    EXPECT_TRUE(pKey->Value(0, name.data(), 16384));
    EXPECT_FALSE(pKey->Value(1, name.data(), 16384));
}
