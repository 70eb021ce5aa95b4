// Sensor definitions of the settings store.
#include "config/settings/sensor_table.h"
#include "config/settings/settings_sensors.h"
#include "settings_fixture.h"

namespace {

struct SettingsSensors : SettingsTest {
    void TearDown() override {
        headless::ClearSettings();
        g_fnReadSensorDefinitions();
        SettingsTest::TearDown();
    }
    static std::u16string Key(const std::u16string& wstrName) {
        return Own(u"Information Option\\Config\\Sensor\\") + wstrName;
    }
    static void SensorText(const std::u16string& wstrSensor, const char16_t* wzName,
                           const char16_t* wzValue) {
        headless::SetSettingsText(Key(wstrSensor).c_str(), wzName, wzValue);
    }
    static void SensorNumber(const std::u16string& wstrSensor, const char16_t* wzName, u32 uValue) {
        headless::SetSettingsNumber(Key(wstrSensor).c_str(), wzName, uValue);
    }
};

constexpr char16_t g_wzDigits[] = u"Display Digit After Decimal Point";

} // namespace

TEST_F(SettingsSensors, AllValuesOfASensorAreTaken) {
    SensorText(u"s1", u"Title", u"Pump");
    SensorText(u"s1", u"Unit", u"\u00b0C");
    SensorText(u"s1", u"Title LanguageXML TagName", u"t-tag");
    SensorText(u"s1", u"Unit LanguageXML TagName", u"u-tag");
    SensorText(u"s1", u"OSDProfileXML TagName", u"PumpTemp");
    SensorText(u"s1", u"DataName", u"PUMP_t\u00e9");
    SensorNumber(u"s1", g_wzDigits, 2);
    SensorNumber(u"s1", u"Divisor", 100);
    g_fnReadSensorDefinitions();
    ASSERT_EQ(g_stSensors.mapByName.size(), 1u);
    const stSensorDefinition& st = g_stSensors.mapByName.at("PUMP_t\xC3\xA9");
    EXPECT_STREQ(st.szDataName, "PUMP_t\xC3\xA9");
    EXPECT_STREQ(st.szProfileTag, "PumpTemp");
    EXPECT_EQ(std::u16string(st.wzCaption), u"Pump");
    EXPECT_EQ(std::u16string(st.wzUnit), u"\u00b0C");
    EXPECT_EQ(st.uDecimals, 2u);
    EXPECT_EQ(st.uDivisor, 100u);
    EXPECT_EQ(st.iTitleTextId, -1);
    EXPECT_EQ(st.iValueNumberId, -1);
    EXPECT_EQ(st.iUnitTextId, -1);
    EXPECT_EQ(g_stSensors.mapTag.at("PumpTemp"), st.szDataName);
    EXPECT_EQ(std::u16string(g_stSensors.mapLanguage.at(st.szDataName).wzCaptionTag), u"t-tag");
    EXPECT_EQ(std::u16string(g_stSensors.mapLanguage.at(st.szDataName).wzUnitTag), u"u-tag");
    stDataFormat stFormat;
    EXPECT_TRUE(g_fnFindDataFormat("PUMP_t\xC3\xA9#0", stFormat));
    EXPECT_EQ(stFormat.uDecimals, 2u);
    EXPECT_EQ(stFormat.uDivisor, 100u);
}

TEST_F(SettingsSensors, AKeyWithOnlyANameGivesItsName) {
    headless::AddSettingsKey(Key(u"pump_rpm").c_str());
    g_fnReadSensorDefinitions();
    ASSERT_EQ(g_stSensors.mapByName.size(), 1u);
    const stSensorDefinition& st = g_stSensors.mapByName.at("PUMP_RPM");
    EXPECT_STREQ(st.szProfileTag, "pump_rpm");
    EXPECT_EQ(std::u16string(st.wzCaption), u"");
    EXPECT_EQ(std::u16string(st.wzUnit), u"");
    EXPECT_EQ(st.uDecimals, 0u);
    EXPECT_EQ(st.uDivisor, 1u);
    EXPECT_EQ(g_stSensors.mapTag.at("pump_rpm"), "PUMP_RPM");
}

TEST_F(SettingsSensors, DigitsAndDivisorAreHeld) {
    SensorNumber(u"a", g_wzDigits, 4);
    SensorNumber(u"a", u"Divisor", 0);
    SensorNumber(u"b", g_wzDigits, 3);
    SensorNumber(u"b", u"Divisor", 0xFFFFFFFF);
    g_fnReadSensorDefinitions();
    EXPECT_EQ(g_stSensors.mapByName.at("A").uDecimals, 3u);
    EXPECT_EQ(g_stSensors.mapByName.at("A").uDivisor, 1u);
    EXPECT_EQ(g_stSensors.mapByName.at("B").uDecimals, 3u);
    EXPECT_EQ(g_stSensors.mapByName.at("B").uDivisor, 0xFFFFFFFFu);
}

TEST_F(SettingsSensors, OnlyAsciiLettersOfAKeysNameAreRaised) {
    headless::AddSettingsKey(Key(u"az\u00e9{`").c_str());
    g_fnReadSensorDefinitions();
    EXPECT_TRUE(g_stSensors.mapByName.contains("AZ\xC3\xA9{`"));
}

TEST_F(SettingsSensors, OfTwoWithOneDataNameTheLaterCounts) {
    SensorText(u"a", u"DataName", u"X");
    SensorText(u"a", u"Title", u"first");
    SensorText(u"b", u"DataName", u"X");
    SensorText(u"b", u"Title", u"second");
    g_fnReadSensorDefinitions();
    ASSERT_EQ(g_stSensors.mapByName.size(), 1u);
    EXPECT_EQ(std::u16string(g_stSensors.mapByName.at("X").wzCaption), u"second");
    EXPECT_EQ(g_stSensors.mapTag.at("a"), "X");
    EXPECT_EQ(g_stSensors.mapTag.at("b"), "X");
}

TEST_F(SettingsSensors, EachReadingStartsAnew) {
    headless::AddSettingsKey(Key(u"gone").c_str());
    g_fnReadSensorDefinitions();
    headless::ClearSettings();
    headless::AddSettingsKey(Key(u"new").c_str());
    g_fnReadSensorDefinitions();
    EXPECT_EQ(g_stSensors.mapByName.size(), 1u);
    EXPECT_EQ(g_stSensors.mapTag.size(), 1u);
    EXPECT_EQ(g_stSensors.mapLanguage.size(), 1u);
    EXPECT_EQ(g_stDisplay.mapFormat.size(), 1u);
    EXPECT_TRUE(g_stSensors.mapByName.contains("NEW"));
}

TEST_F(SettingsSensors, NamesBeyondTheRecordsRoomAreLeftOut) {
    headless::AddSettingsKey(Key(std::u16string(255, u'k')).c_str());
    headless::AddSettingsKey(Key(std::u16string(128, u'\u00e9')).c_str()); // 256 bytes of UTF-8
    SensorText(u"long", u"DataName", std::u16string(128, u'd').c_str());   // counts as missing
    g_fnReadSensorDefinitions();
    EXPECT_EQ(g_stSensors.mapByName.size(), 2u);
    EXPECT_TRUE(g_stSensors.mapByName.contains(std::string(255, 'K')));
    EXPECT_TRUE(g_stSensors.mapByName.contains("LONG"));
}

TEST_F(SettingsSensors, ValuesOfTheWrongKindAndOf64KilobytesCountAsMissing) {
    SensorNumber(u"a", u"Title", 5);
    SensorNumber(u"a", u"DataName", 6);
    SensorText(u"a", u"Divisor", u"100");
    SensorText(u"a", g_wzDigits, u"2");
    const std::u16string wstrHuge(32767, u'x');
    for (const char16_t* wzName : {u"Title", u"Unit", u"OSDProfileXML TagName", u"DataName"})
        SensorText(u"b", wzName, wstrHuge.c_str());
    g_fnReadSensorDefinitions();
    ASSERT_EQ(g_stSensors.mapByName.size(), 2u);
    for (const char* szName : {"A", "B"}) {
        const stSensorDefinition& st = g_stSensors.mapByName.at(szName);
        EXPECT_EQ(std::u16string(st.wzCaption), u"");
        EXPECT_EQ(std::u16string(st.wzUnit), u"");
        EXPECT_EQ(st.uDecimals, 0u);
        EXPECT_EQ(st.uDivisor, 1u);
    }
}

TEST_F(SettingsSensors, CaptionsKeepPairsOfSurrogatesUpToTheLengthOfAValue) {
    std::u16string wstrPairs;
    for (u32 u = 0; u < 63; ++u) wstrPairs += u"\U0001F600";
    SensorText(u"a", u"Title", (wstrPairs + u"z").c_str());
    SensorText(u"b", u"Title", (wstrPairs + u"\U0001F600").c_str()); // one more than a value holds
    g_fnReadSensorDefinitions();
    EXPECT_EQ(std::u16string(g_stSensors.mapByName.at("A").wzCaption), wstrPairs + u"z");
    EXPECT_EQ(std::u16string(g_stSensors.mapByName.at("B").wzCaption), u"");
}

TEST_F(SettingsSensors, TenThousandSensorsAreRead) {
    for (u32 u = 0; u < 10000; ++u) {
        const std::string str = "sensor" + std::to_string(u);
        headless::AddSettingsKey(Key({str.begin(), str.end()}).c_str());
    }
    g_fnReadSensorDefinitions();
    EXPECT_EQ(g_stSensors.mapByName.size(), 10000u);
    EXPECT_EQ(g_stDisplay.mapFormat.size(), 10000u);
    EXPECT_TRUE(g_stSensors.mapByName.contains("SENSOR9999"));
}
