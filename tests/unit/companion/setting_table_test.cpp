#include "companion/choices.h"
#include "companion/config.h"
#include "companion/options.h"
#include "companion/setting_table.h"
#include "platform/ini_file.h"
#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

using namespace companion;

namespace {

const std::string g_strSource = ORVIN_SOURCE_DIR;

std::string Bytes(const std::string& strFile) {
    std::ifstream file(g_strSource + "/" + strFile, std::ios::binary);
    EXPECT_TRUE(file) << strFile;
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

struct Documented {
    std::string strKey, strValue, strDefault, strRange;
};

std::vector<std::string> Split(const std::string& strLine, char cAt) {
    std::vector<std::string> list;
    std::istringstream parts(strLine);
    for (std::string str; std::getline(parts, str, cAt);) {
        const size_t uFirst = str.find_first_not_of(' ');
        list.push_back(uFirst == str.npos ? "" : str.substr(uFirst, str.find_last_not_of(' ') + 1 - uFirst));
    }
    return list;
}

/// The rows of the manual's tables of keys: several values of one row on their own.
std::vector<Documented> Manual() {
    std::vector<Documented> list;
    std::istringstream lines(Bytes("docs/settings.md"));
    for (std::string strLine; std::getline(lines, strLine);) {
        const auto listCells = Split(strLine, '|');
        if (listCells.size() != 6 || listCells[1] == "key" || listCells[1] == "name" ||
            listCells[1].starts_with('`') || listCells[1].starts_with("---") || listCells[1] == "section")
            continue;
        const auto listValues = Split(listCells[2], ','), listDefaults = Split(listCells[3], ',');
        for (size_t u = 0; u < listValues.size(); ++u)
            list.push_back({listCells[1], listValues[u],
                            u < listDefaults.size() ? listDefaults[u] : listCells[3], listCells[4]});
    }
    return list;
}

std::vector<std::string> ValuesOf(const SettingRow& row) {
    if (row.eKind != SettingKind::Color) return {row.szValue};
    return {std::string(row.szValue) + "R", std::string(row.szValue) + "G", std::string(row.szValue) + "B"};
}

/// Values of the manual that are not a user's to change, with the reason.
bool IsNotForUsers(const Documented& st) {
    static const std::set<std::string> setKeptOnly{"MinHookScreenWidth", "MinHookScreenHeight",
                                                   "PressDetachTime"};
    const bool bOfTheMachine = st.strKey.starts_with("Information Option\\") || // what hardware there is
                               st.strKey == "Debug" ||                          // nothing reads it
                               st.strKey.starts_with("Video\\") ||              // 'video' sets a source up
                               st.strKey.starts_with("*named");                 // a layout names it
    return bOfTheMachine || setKeptOnly.contains(st.strValue);
}

std::string NumberOf(const SettingRow& row, const std::string& strShown, size_t uPart) {
    StoredValue st;
    EXPECT_TRUE(ParseSetting(row, strShown, st)) << row.szName << " " << strShown;
    if (!st.uNumber) return strShown;
    if (row.eKind != SettingKind::Color) return std::to_string(static_cast<i32>(*st.uNumber));
    return std::to_string((*st.uNumber >> (16 - 8 * uPart)) & 0xFF);
}

const SettingRow& Row(const char* szName) { return *FindSetting(szName); }

} // namespace

TEST(SettingTable, EveryDocumentedSettingIsInItOrNotForUsers) {
    std::set<std::pair<std::string, std::string>> setRows;
    for (const SettingRow& row : SettingRows())
        for (const std::string& strValue : ValuesOf(row)) setRows.insert({row.szKey, strValue});
    const auto listManual = Manual();
    ASSERT_GT(listManual.size(), 60u);
    for (const Documented& st : listManual)
        EXPECT_NE(setRows.contains({st.strKey, st.strValue}), IsNotForUsers(st))
            << st.strKey << " " << st.strValue;
}

TEST(SettingTable, EverySettingIsDocumentedWithTheSameDefaultAndRange) {
    const auto listManual = Manual();
    for (const SettingRow& row : SettingRows()) {
        if (row.ePlace == SettingPlace::Companion || *row.szKey == '\\') continue;
        const auto listValues = ValuesOf(row);
        for (size_t u = 0; u < listValues.size(); ++u) {
            const auto it = std::find_if(listManual.begin(), listManual.end(), [&](const Documented& st) {
                return st.strKey == row.szKey && st.strValue == listValues[u];
            });
            ASSERT_NE(it, listManual.end()) << row.szName;
            const std::string strShown = NumberOf(row, row.szMissing, u);
            const bool bNothing = strShown == "none" && (it->strDefault == "empty" || it->strDefault == "X" ||
                                                         it->strDefault.starts_with("those of"));
            EXPECT_TRUE(bNothing || it->strDefault == strShown)
                << row.szName << ": " << strShown << " and " << it->strDefault;
            if (row.eKind == SettingKind::Switch) {
                EXPECT_EQ(it->strRange, "0 off, else on") << row.szName;
            }
            if (it->strRange.find("held to 10") == std::string::npos) continue;
            EXPECT_NE(it->strRange.find(std::to_string(row.iMin) + " - " + std::to_string(row.iMax)),
                      std::string::npos)
                << row.szName;
        }
    }
    EXPECT_NE(Bytes("docs/settings.md").find("| Monitor: 12H Flag | 3 | 0: 12 hours, else 24 hours"),
              std::string::npos);
}

TEST(SettingTable, EverySettingIsInTheManualByItsName) {
    const std::string strManual = Bytes("docs/settings.md");
    for (const SettingRow& row : SettingRows())
        EXPECT_NE(strManual.find("| `" + std::string(row.szName) + "` | " + RangeText(row) + " | " +
                                 row.Default() + " | " + row.szHelp + " |"),
                  std::string::npos)
            << row.szName;
}

TEST(SettingTable, DefaultsAreWhatIsShipped) {
    const std::string strIni = Bytes("data/OSD.ini"), strStore = Bytes("Settings/settings.ini");
    const auto store = platform::CIniFile::Parse(strStore);
    for (const SettingRow& row : SettingRows()) {
        if (row.ePlace == SettingPlace::Ini) {
            EXPECT_EQ(SettingText(row, ValueOfIni(strIni, row)), row.Default()) << row.szName;
        } else if (row.ePlace == SettingPlace::Store) {
            const std::string strPath = "SOFTWARE\\Zarn\\ORVIN-OSD\\" + std::string(row.szKey);
            const std::string strValue = row.szValue;
            const auto* const pEntry = store.Find(std::u16string(strPath.begin(), strPath.end()),
                                                  std::u16string(strValue.begin(), strValue.end()));
            const std::u16string wstr = pEntry ? std::u16string(pEntry->m_wzValue) : std::u16string();
            EXPECT_EQ(pEntry ? std::string(wstr.begin(), wstr.end()) : "", row.szShipped ? row.szShipped : "")
                << row.szName;
        }
    }
}

TEST(SettingTable, NamesAreWordsAndDefaultsCanBeTyped) {
    std::set<std::string> setNames;
    for (const SettingRow& row : SettingRows()) {
        const std::string strName = row.szName;
        EXPECT_TRUE(setNames.insert(strName).second) << strName;
        EXPECT_TRUE(std::all_of(strName.begin(), strName.end(), [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
        })) << strName;
        StoredValue st;
        for (const char* szText : {row.szMissing, row.Default()}) {
            EXPECT_TRUE(ParseSetting(row, szText, st)) << strName;
            EXPECT_EQ(SettingText(row, st), szText) << strName;
        }
        EXPECT_NE(SettingsHelp().find("  " + strName + ": "), std::string::npos);
        EXPECT_FALSE(std::string(row.szHelp).ends_with("."));
    }
}

TEST(SettingTable, WhatCannotBeMeantIsRefusedWithWhatCan) {
    const std::pair<const char*, const char*> aWrong[] = {{"limit-rate", "0"},
                                                          {"limit-rate", "1001"},
                                                          {"limit-rate", "60x"},
                                                          {"limit-rate", ""},
                                                          {"limit-rate", "none"},
                                                          {"limit", "yes"},
                                                          {"shot-type", "gif"},
                                                          {"photo-x", "-8193"},
                                                          {"photo-width", "0"},
                                                          {"warning-color-1", "00FF00"},
                                                          {"warning-color-1", "#00FF0"},
                                                          {"warning-color-1", "#00FF0G"},
                                                          {"photo-file", ""},
                                                          {"photo-file", "\xFF"},
                                                          {"frame-interval", "9"},
                                                          {"frame-interval", "99999999999999999999"},
                                                          {"clock", "13"}};
    for (const auto& [szName, szText] : aWrong) {
        StoredValue st;
        const Result stResult = ParseSetting(Row(szName), szText, st);
        EXPECT_EQ(stResult.iCode, kUsage) << szName << " " << szText;
        EXPECT_NE(stResult.strError.find(RangeText(Row(szName))), std::string::npos) << stResult.strError;
    }
    StoredValue st;
    EXPECT_FALSE(ParseSetting(Row("photo-file"), std::string(128, 'x'), st));
    EXPECT_TRUE(ParseSetting(Row("photo-file"), std::string(127, 'x'), st));
}

TEST(SettingTable, ValuesAreStoredAsTheOverlayReadsThem) {
    StoredValue st;
    ASSERT_TRUE(ParseSetting(Row("photo-x"), "-5", st));
    EXPECT_EQ(*st.uNumber, 0xFFFFFFFBu);
    EXPECT_EQ(SettingText(Row("photo-x"), st), "-5");
    ASSERT_TRUE(ParseSetting(Row("clock"), "12", st));
    EXPECT_EQ(*st.uNumber, 0u);
    ASSERT_TRUE(ParseSetting(Row("shot-type"), "all", st));
    EXPECT_EQ(*st.uNumber, 4u);
    EXPECT_EQ(SettingText(Row("shot-type"), StoredValue{9, {}}), "9");
    EXPECT_EQ(SettingText(Row("care-draw"), StoredValue{7, {}}), "on");
    EXPECT_EQ(SettingText(Row("limit-rate"), StoredValue{{}, "fast"}), "60"); // of another kind: missing
}

TEST(SettingTable, AColourIsThreeValuesOfTheFile) {
    const SettingRow& row = Row("warning-color-2");
    EXPECT_FALSE(ValueOfIni("", row));
    EXPECT_EQ(*ValueOfIni("[Warning]\nStatus1ColorG = 300\n", row)->uNumber, 0xFFFF0Eu);
    const std::string strFile = IniWith("; mine\n[Warning]\nTwinkle = 0\n", row, {0x102030, {}});
    EXPECT_EQ(*ValueOfIni(strFile, row)->uNumber, 0x102030u);
    EXPECT_TRUE(strFile.starts_with("; mine\n[Warning]\nTwinkle = 0\n")) << strFile;
    EXPECT_EQ(IniWith(strFile, row, {}), "; mine\n[Warning]\nTwinkle = 0\n");
}

TEST(SettingTable, OfTwoSectionsOfOneNameTheFirstCounts) {
    const SettingRow& row = Row("warning-blink");
    EXPECT_FALSE(ValueOfIni("[Warning]\nX = 1\n[A]\n[Warning]\nTwinkle = 0\n", row));
    EXPECT_EQ(*ValueOfIni("[WARNING]\n twinkle = \"0\" \n", row)->uNumber, 0u);
    EXPECT_FALSE(ValueOfIni("[Warning]\nTwinkle\nTwinkle = 0\n", row));
    EXPECT_FALSE(ValueOfIni("[Warning]\n;Twinkle = 0\n", row));
}

TEST(SettingOptions, NamesAndValuesAreJudgedAhead) {
    const auto fnError = [](std::vector<std::string> listWords) {
        listWords.insert(listWords.begin(), "config");
        const Parsed st = ParseArguments(std::move(listWords));
        EXPECT_EQ(st.iExitCode, st.bLeave ? 2 : 0);
        return st.strText;
    };
    EXPECT_EQ(fnError({}), "");
    EXPECT_EQ(fnError({"--json"}), "");
    EXPECT_EQ(fnError({"limit-rate", "144"}), "");
    EXPECT_EQ(fnError({"photo-x", "-20"}), "");
    EXPECT_EQ(fnError({"limit-rate", "--default"}), "");
    EXPECT_NE(fnError({"limit-rate", "0"}).find("1 to 1000 frames a second"), std::string::npos);
    EXPECT_NE(fnError({"nothing"}).find("no setting nothing"), std::string::npos);
    EXPECT_NE(fnError({"--default"}), "");
    EXPECT_NE(fnError({"limit", "on", "--default"}), "");
    EXPECT_NE(fnError({"limit", "on", "--json"}), "");
    EXPECT_NE(fnError({"limit", "on", "off"}), "");
}
