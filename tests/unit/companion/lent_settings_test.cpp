// Settings that a program makes for the time that it runs, in the machine's real store.
#include "companion/lent_settings.h"
#include "platform/tool.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace fs = std::filesystem;
using companion::LentSettings;
using platform::tool::CurrentSetting;
using platform::tool::Setting;
using platform::tool::SettingKeys;
using platform::tool::SettingNumber;
using platform::tool::SettingText;
using platform::tool::StoreSettings;

namespace {

constexpr u32 kFirst = 11, kSecond = 22;
const std::string kTop = "Lent Test", kCard = kTop + "\\Card", kRow = kCard + "\\0\\GPU Clock",
                  kSensor = kTop + "\\Sensor\\PUMP";

u32 g_uDead = 0; ///< a lender that does not run any more
bool IsAlive(u32 uOwner) { return uOwner != g_uDead; }

Setting Number(const std::string& strKey, const char* szName, u32 uValue) {
    return {strKey, szName, uValue, {}, false};
}
Setting Text(const std::string& strKey, const char* szName, const char* szText) {
    return {strKey, szName, std::nullopt, szText, false};
}

struct LentSettingsTest : ::testing::Test {
    void SetUp() override {
        m_root = fs::temp_directory_path() / ("orvin-lent-" + std::to_string(platform::tool::OwnProcessId()));
        fs::remove_all(m_root);
        fs::create_directories(m_root / "ZARN/Orvin Deck/ORVIN-OSD/Settings");
#ifndef _WIN32
        setenv("ORVIN_OSD_APPDATA", m_root.c_str(), 1);
#endif
        g_uDead = 0;
        platform::tool::RemoveSettingKeys({kTop});
    }
    void TearDown() override {
        platform::tool::RemoveSettingKeys({kTop});
#ifndef _WIN32
        unsetenv("ORVIN_OSD_APPDATA");
#endif
        fs::remove_all(m_root);
    }
    fs::path JournalFile() const { return m_root / "feed.json"; }
    LentSettings Lender(u32 uOwner = kFirst) const { return {JournalFile(), uOwner, IsAlive}; }

    static bool Lend(LentSettings lender, const std::vector<Setting>& list) {
        bool bChanged = false;
        const companion::Result st = lender.Lend(list, bChanged);
        EXPECT_TRUE(st) << st.strError;
        return bChanged;
    }
    static bool TakeBack(LentSettings lender) {
        bool bChanged = false;
        const companion::Result st = lender.TakeBack(bChanged);
        EXPECT_TRUE(st) << st.strError;
        return bChanged;
    }
    void ExpectNothingLeft() const {
        EXPECT_TRUE(SettingKeys(kTop).empty());
        EXPECT_FALSE(fs::exists(JournalFile()));
    }

    const std::vector<Setting> m_listUsual = {Number(kCard, "Card Num", 1), Number(kRow, "IsSupport", 1),
                                              Text(kSensor, "Title", "Pump"), Text(kSensor, "Unit", "RPM")};
    fs::path m_root;
};

} // namespace

TEST_F(LentSettingsTest, StandWhileTheyAreLentAndAreGoneAfterwards) {
    EXPECT_TRUE(Lend(Lender(), m_listUsual));
    EXPECT_EQ(SettingNumber(kCard, "Card Num"), 1u);
    EXPECT_EQ(SettingText(kSensor, "Unit"), "RPM");
    EXPECT_TRUE(Lender().IsOwner());
    EXPECT_FALSE(Lend(Lender(), m_listUsual)) << "nothing new";
    EXPECT_TRUE(TakeBack(Lender()));
    ExpectNothingLeft();
    EXPECT_FALSE(TakeBack(Lender()));
}

TEST_F(LentSettingsTest, FollowWhatIsThere) {
    Lend(Lender(), m_listUsual);
    EXPECT_TRUE(Lend(Lender(), {Number(kCard, "Card Num", 2), Number(kRow, "IsSupport", 1)}));
    EXPECT_EQ(SettingNumber(kCard, "Card Num"), 2u);
    EXPECT_EQ(SettingKeys(kTop), std::vector<std::string>{"Card"}) << "the sensor's key went with it";
    EXPECT_TRUE(Lend(Lender(), {}));
    EXPECT_TRUE(SettingKeys(kTop).empty());
    Lend(Lender(), m_listUsual);
    TakeBack(Lender());
    ExpectNothingLeft();
}

TEST_F(LentSettingsTest, AKeyThatAPersonHasSetIsLeftAlone) {
    StoreSettings({Number(kRow, "IsSupport", 0), Text(kSensor, "Title", "My pump")});
    Lend(Lender(), m_listUsual);
    EXPECT_EQ(SettingNumber(kRow, "IsSupport"), 0u);
    EXPECT_EQ(SettingText(kSensor, "Title"), "My pump");
    EXPECT_TRUE(CurrentSetting(kSensor, "Unit").bRemoved) << "half of a definition would be neither's";
    EXPECT_EQ(SettingNumber(kCard, "Card Num"), 1u);
    TakeBack(Lender());
    EXPECT_EQ(SettingNumber(kRow, "IsSupport"), 0u);
    EXPECT_EQ(SettingText(kSensor, "Title"), "My pump");
    EXPECT_TRUE(CurrentSetting(kCard, "Card Num").bRemoved);
}

TEST_F(LentSettingsTest, AValueThatAPersonHasSetStaysAlsoWhereItIsTheSame) {
    StoreSettings({Number(kRow, "IsSupport", 1)});
    Lend(Lender(), m_listUsual);
    TakeBack(Lender());
    EXPECT_EQ(SettingNumber(kRow, "IsSupport"), 1u);
}

TEST_F(LentSettingsTest, WhatAPersonChangesMeanwhileIsThePersons) {
    Lend(Lender(), m_listUsual);
    StoreSettings({Number(kRow, "IsSupport", 0), Text(kSensor, "Title LanguageXML TagName", "Pump")});
    EXPECT_FALSE(Lend(Lender(), m_listUsual));
    TakeBack(Lender());
    EXPECT_EQ(SettingNumber(kRow, "IsSupport"), 0u);
    EXPECT_EQ(SettingText(kSensor, "Title LanguageXML TagName"), "Pump");
    EXPECT_TRUE(CurrentSetting(kSensor, "Title").bRemoved);
    EXPECT_FALSE(fs::exists(JournalFile()));
}

TEST_F(LentSettingsTest, ThoseOfALenderThatWasKilledGoWithTheNextOne) {
    Lend(Lender(kFirst), m_listUsual);
    g_uDead = kFirst;
    EXPECT_TRUE(Lend(Lender(kSecond), {Number(kCard, "Card Num", 1)}));
    EXPECT_EQ(SettingKeys(kCard), std::vector<std::string>{});
    TakeBack(Lender(kSecond));
    ExpectNothingLeft();
}

TEST_F(LentSettingsTest, TheSecondOfTwoTakesThemOver) {
    Lend(Lender(kFirst), m_listUsual);
    EXPECT_FALSE(Lend(Lender(kSecond), m_listUsual));
    EXPECT_FALSE(Lender(kFirst).IsOwner());
    EXPECT_FALSE(TakeBack(Lender(kFirst)));
    EXPECT_EQ(SettingNumber(kRow, "IsSupport"), 1u);
    EXPECT_TRUE(TakeBack(Lender(kSecond)));
    ExpectNothingLeft();
}

TEST_F(LentSettingsTest, AJournalThatIsNoneTakesNothingAway) {
    const std::string aszBad[] = {"",
                                  "{",
                                  "[]",
                                  "{\"owner\":1}",
                                  "{\"owner\":1,\"keys\":[1],\"values\":[]}",
                                  "{\"owner\":1,\"keys\":[],\"values\":[{\"key\":\"a\",\"name\":\"b\"}]}",
                                  std::string(70000, '['),
                                  "{\"owner\":1,\"keys\":[],\"values\":[{\"key\":4}]}"};
    for (const std::string& strBad : aszBad) {
        StoreSettings({Number(kRow, "IsSupport", 1)});
        std::ofstream(JournalFile(), std::ios::binary | std::ios::trunc) << strBad;
        EXPECT_FALSE(TakeBack(Lender())) << strBad.substr(0, 60);
        EXPECT_EQ(SettingNumber(kRow, "IsSupport"), 1u);
        EXPECT_TRUE(Lend(Lender(), m_listUsual)) << strBad.substr(0, 60);
        EXPECT_TRUE(TakeBack(Lender()));
        EXPECT_EQ(SettingNumber(kRow, "IsSupport"), 1u);
        platform::tool::RemoveSettingKeys({kTop});
    }
}

TEST_F(LentSettingsTest, WhereTheJournalCannotBeWrittenNothingIsLent) {
    fs::create_directories(JournalFile() / "in the way");
    bool bChanged = false;
    const companion::Result st = Lender().Lend(m_listUsual, bChanged);
    EXPECT_FALSE(st);
    EXPECT_NE(st.strError.find("feed.json"), std::string::npos) << st.strError;
    EXPECT_FALSE(bChanged);
    EXPECT_TRUE(SettingKeys(kTop).empty());
}

TEST_F(LentSettingsTest, WhereTheSettingsCannotBeWrittenTheJournalKnowsNothingOfThem) {
    bool bChanged = false;
    EXPECT_FALSE(Lender().Lend({Text(kSensor, "Title", "two\nlines")}, bChanged));
    EXPECT_FALSE(bChanged);
    EXPECT_FALSE(fs::exists(JournalFile()));
}
