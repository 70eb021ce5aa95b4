#include "companion/keys/actions.h"
#include "companion/keys/combination.h"
#include "companion/options.h"
#include "companion/result.h"
#include "companion/setting_table.h"
#include <gtest/gtest.h>
#include <set>

using namespace companion;
using namespace companion::keys;

namespace {

std::string Again(const std::string& strText) {
    KeyCombination st;
    return ParseCombination(strText, st) ? CombinationText(st) : "refused";
}

} // namespace

TEST(KeyCombinations, AreReadInAnyCaseAndOrderAndWrittenInOne) {
    EXPECT_EQ(Again("Ctrl+Shift+F10"), "Ctrl+Shift+F10");
    EXPECT_EQ(Again("shift+CTRL+f10"), "Ctrl+Shift+F10");
    EXPECT_EQ(Again("super+alt+shift+ctrl+a"), "Ctrl+Alt+Shift+Super+A");
    EXPECT_EQ(Again("alt+0"), "Alt+0");
    EXPECT_EQ(Again("F1"), "F1");
    EXPECT_EQ(Again("f24"), "F24");
    for (const char* szKey :
         {"Home", "End", "PageUp", "PageDown", "Insert", "Delete", "Pause", "ScrollLock", "Print"})
        EXPECT_EQ(Again(szKey), szKey);
    EXPECT_EQ(Again("shift+pageup"), "Shift+PageUp");
}

TEST(KeyCombinations, WhatNobodyCouldMeanIsRefused) {
    for (const char* szText : {"",         "+",           "Ctrl",    "Ctrl+",       "+F1",
                               "Ctrl++F1", "F0",          "F25",     "F01",         "F1x",
                               "F",        "F-1",         "A",       "5",           "Shift+A",
                               "A+Ctrl",   "Ctrl+Ctrl+A", "Hyper+A", "Ctrl+AB",     "Ctrl+\xC3\x84",
                               "Ctrl+ A",  "Ctrl+,",      "none",    "F99999999999"})
        EXPECT_EQ(Again(szText), "refused") << szText;
}

TEST(KeyCombinations, AFailureChangesNothing) {
    KeyCombination st;
    ASSERT_TRUE(ParseCombination("Ctrl+Q", st));
    const KeyCombination stBefore = st;
    EXPECT_FALSE(ParseCombination("Alt+Nothing", st));
    EXPECT_EQ(st, stBefore);
}

TEST(KeyActions, EachHasASettingOfItsOwnWhoseDefaultNoOtherHas) {
    std::set<std::string> setKeys, setNames;
    for (const Action& st : Actions()) {
        EXPECT_EQ(FindAction(st.szName), &st);
        EXPECT_TRUE(setNames.insert(st.szName).second) << st.szName;
        const SettingRow* const pRow = FindSetting(st.szSetting);
        ASSERT_NE(pRow, nullptr) << st.szSetting;
        EXPECT_EQ(pRow->ePlace, SettingPlace::Companion);
        ASSERT_EQ(pRow->eKind, SettingKind::Keys);
        EXPECT_EQ(Again(pRow->Default()), pRow->Default());
        EXPECT_TRUE(setKeys.insert(pRow->Default()).second) << pRow->Default();
    }
    EXPECT_EQ(setNames, (std::set<std::string>{"overlay", "profile", "shot", "record", "limit"}));
    EXPECT_EQ(FindAction("nothing"), nullptr);
}

TEST(KeyActions, EachIsACommandThatIsUnderstood) {
    for (const Action& st : Actions()) {
        EXPECT_EQ(CommandOf(st), std::string("orvin-osd keys do ") + st.szName);
        const Parsed stParsed = ParseArguments({"keys", "do", st.szName});
        EXPECT_FALSE(stParsed.bLeave) << stParsed.strText;
        EXPECT_EQ(stParsed.stOptions.eVerb, Verb::Keys);
        EXPECT_EQ(stParsed.stOptions.strTarget, st.szName);
    }
    EXPECT_EQ(ParseArguments({"keys", "do"}).iExitCode, kUsage);
    EXPECT_EQ(ParseArguments({"keys", "do", "nothing"}).iExitCode, kUsage);
    EXPECT_EQ(ParseArguments({"keys", "--json"}).iExitCode, kUsage);
    EXPECT_TRUE(ParseArguments({"keys", "--list", "--json"}).stOptions.bList);
    EXPECT_EQ(ParseArguments({"feed", "--once", "--keys"}).iExitCode, kUsage);
    EXPECT_TRUE(ParseArguments({"feed", "--keys"}).stOptions.bKeys);
    EXPECT_EQ(ParseArguments({"record", "--while", "x"}).stOptions.strWhile, "x");
}

TEST(KeySettings, TakeKeysOrNone) {
    const SettingRow& row = *FindSetting("key-overlay");
    StoredValue st;
    ASSERT_TRUE(ParseSetting(row, "alt+shift+o", st));
    EXPECT_EQ(SettingText(row, st), "Alt+Shift+O");
    ASSERT_TRUE(ParseSetting(row, "none", st));
    EXPECT_EQ(SettingText(row, st), "none");
    EXPECT_EQ(SettingText(row, std::nullopt), "Ctrl+Shift+F10");
    const Result stResult = ParseSetting(row, "Ctrl+\x1B", st);
    EXPECT_EQ(stResult.iCode, kUsage);
    EXPECT_NE(stResult.strError.find("keys such as Ctrl+Shift+F10, none"), std::string::npos);
    EXPECT_EQ(stResult.strError.find('\x1B'), std::string::npos);
}

TEST(NextProfile, IsTheNextGoodOneAndComesRound) {
    const std::vector<std::string> listNames{"A", "B", "C", "D"};
    const auto fnAll = [](const std::string&) { return true; };
    EXPECT_EQ(NextProfile(listNames, "A", fnAll), "B");
    EXPECT_EQ(NextProfile(listNames, "D", fnAll), "A");
    EXPECT_EQ(NextProfile(listNames, "", fnAll), "A");
    EXPECT_EQ(NextProfile(listNames, "BB", fnAll), "C"); // its folder is gone
    EXPECT_EQ(NextProfile(listNames, "Z", fnAll), "A");
    const auto fnOnlyB = [](const std::string& str) { return str == "B"; };
    EXPECT_EQ(NextProfile(listNames, "C", fnOnlyB), "B");
    EXPECT_EQ(NextProfile(listNames, "B", fnOnlyB), "");
    EXPECT_EQ(NextProfile({}, "A", fnAll), "");
    EXPECT_EQ(NextProfile({"A"}, "A", fnAll), "");
}

TEST(NextProfile, JudgesNoMoreThanItNeeds) {
    std::vector<std::string> listAsked;
    NextProfile({"A", "B", "C", "D"}, "A", [&](const std::string& str) {
        listAsked.push_back(str);
        return str == "C";
    });
    EXPECT_EQ(listAsked, (std::vector<std::string>{"B", "C"}));
}
