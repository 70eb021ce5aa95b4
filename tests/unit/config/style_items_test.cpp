// The name tables of the two styles against a second writing of them: a number and a name a line.
#include "config/fixed/style_items.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <vector>

namespace {

constexpr char c_szDetails[] =
    "VRAM_CLK VRAM_USAGE_P VRAM_USAGE_MB FAN1_DUTY FAN1_RPM FAN2_DUTY FAN2_RPM FAN3_DUTY FAN3_RPM FAN4_DUTY "
    "FAN4_RPM EXT_FAN1_DUTY EXT_FAN1_RPM EXT_FAN2_DUTY EXT_FAN2_RPM GPU_VOLTAGE VRAM_VOLTAGE VDDCI_VOLTAGE "
    "VOLTAGE_0_95 VOLTAGE_3_3 VOLTAGE_1_8 LOAD_LINE POWER_TARGET";
constexpr char c_szLows[] = "FPS_AVG FPS_MAX FPS_MIN FPS_50P FPS_1P FPS_01P FRAME_CNT";
constexpr char c_szDebug[] = "DEBUG_PID DEBUG_TID DEBUG_ANCHOR DEBUG_ANCHOR_X DEBUG_ANCHOR_Y";

/// Lines of "first last suffix: words". A "*" in a word stands for 1 to 6; $D, $L and $G are the lists above.
constexpr char c_szClassicTexts[] = R"(
0 1 _UNIT: FPS FRAME_TIME
2 3 : SYSTEM_TIME_VALUE1 SYSTEM_TIME_VALUE2
4 7 : GPU_FIRST_TITLE GPU_FIRST_CLK_UNIT GPU_FIRST_TEMP_UNIT GPU_FIRST_USAGE_UNIT
8 11 : CPU_FIRST_TITLE CPU_FIRST_CLK_UNIT CPU_FIRST_TEMP_UNIT CPU_FIRST_USAGE_UNIT
12 34 _TITLE: $D
35 40 _TITLE: POWER_PIN_*
41 46 _TITLE: POWER_MB_PIN_*
47 47 : POWER_DETECTOR_TITLE
48 54 _TITLE: $L
55 59 _TITLE: $G
60 60 : GROUP_EXTENSION_FIRST_TITLE
1084 1086 : RESOLUTION_TITLE RESOLUTION_VALUE POWERED_BY_ORVIN_DECK_TITLE
1087 1089 : MEMO0 WATERMARK SYSTEMINFO
1091 1094 : GPU_SECOND_TITLE GPU_SECOND_CLK_UNIT GPU_SECOND_TEMP_UNIT GPU_SECOND_USAGE_UNIT
1095 1098 : CPU_SECOND_TITLE CPU_SECOND_CLK_UNIT CPU_SECOND_TEMP_UNIT CPU_SECOND_USAGE_UNIT
1099 1099 : INFO_SECOND_TITLE
1100 1122 _UNIT: $D
1123 1128 _UNIT: POWER_PIN_*
1129 1134 _UNIT: POWER_MB_PIN_*
1135 1142 _UNIT: $L GROUP_EXTENSION_FIRST
)";
constexpr char c_szClassicNumbers[] = R"(
0 1 _VALUE: FPS FRAME_TIME
2 4 : SYSTEM_TIME_VALUE1 SYSTEM_TIME_VALUE2 SYSTEM_TIME_VALUE3
5 6 : RESOLUTION_VALUE1 RESOLUTION_VALUE2
7 9 : GPU_FIRST_CLK_VALUE GPU_FIRST_TEMP_VALUE GPU_FIRST_USAGE_VALUE
10 32 _VALUE: $D
33 38 _VALUE: POWER_PIN_*
39 44 _VALUE: POWER_MB_PIN_*
45 51 _VALUE: $L
52 56 _VALUE: $G
57 57 : GROUP_EXTENSION_FIRST_VALUE
1081 1083 : CPU_FIRST_CLK_VALUE CPU_FIRST_TEMP_VALUE CPU_FIRST_USAGE_VALUE
1084 1086 : GPU_SECOND_CLK_VALUE GPU_SECOND_TEMP_VALUE GPU_SECOND_USAGE_VALUE
1087 1089 : CPU_SECOND_CLK_VALUE CPU_SECOND_TEMP_VALUE CPU_SECOND_USAGE_VALUE
)";
constexpr char c_szFlips[] = "0 2 : POWER_DETECTOR_TITLE POWER_DETECTOR_VALUE WEATHER_VALUE\n";
constexpr char c_szClassicPanels[] = R"(
0 4 _INFO: FPS FRAME_TIME SYSTEM_TIME GPU_FIRST CPU_FIRST
5 27 _TITLE: $D
28 33 _TITLE: POWER_PIN_*
34 39 _TITLE: POWER_MB_PIN_*
40 40 : POWER_DETECTOR_TITLE
41 47 _TITLE: $L
48 52 _TITLE: $G
53 53 : GROUP_EXTENSION_FIRST_TITLE
1077 1079 : RESOLUTION_TITLE RESOLUTION_VALUE POWERED_BY_ORVIN_DECK_TITLE
1080 1081 _INFO: GPU_SECOND CPU_SECOND
1082 1104 _DATA: $D
1105 1110 _DATA: POWER_PIN_*
1111 1116 _DATA: POWER_MB_PIN_*
1117 1117 : POWER_DETECTOR_DATA
1118 1124 _DATA: $L
1125 1129 _DATA: $G
1130 1130 : GROUP_EXTENSION_FIRST_DATA
)";
constexpr char c_szRV5Texts[] = R"(
0 9 _TITLE: FPS $L FRAME_TIME SYSTEM_TIME
10 14 _TITLE: $G
15 20 _TITLE: GPU_CLK GPU_TEMP GPU_USAGE CPU_CLK CPU_TEMP CPU_USAGE
21 43 _TITLE: $D
44 49 _TITLE: POWER_PIN_*
50 55 _TITLE: POWER_MB_PIN_*
56 57 _TITLE: POWER_DETECTOR GROUP_EXTENSION_FIRST
1081 1082 _TITLE: RESOLUTION POWERED_BY_ORVIN_DECK
1083 1085 : MEMO0 WATERMARK SYSTEMINFO
1087 1095 _UNIT: FPS $L FRAME_TIME
1096 1098 : SYSTEM_TIME_VALUE1 SYSTEM_TIME_VALUE2 SYSTEM_TIME_UNIT
1104 1104 : RESOLUTION_VALUE
1105 1107 _UNIT: GPU_CLK GPU_TEMP GPU_USAGE
1108 1129 _UNIT: VRAM_CLK VRAM_USAGE_P VRAM_USAGE_MB FAN1_DUTY FAN1_RPM FAN2_DUTY FAN2_RPM FAN3_DUTY FAN3_RPM FAN4_DUTY FAN4_RPM EXT_FAN1_DUTY EXT_FAN1_RPM EXT_FAN2_DUTY EXT_FAN2_RPM GPU_VOLTAGE VRAM_VOLTAGE VDDCI_VOLTAGE VOLTAGE_0_95 VOLTAGE_3_3 VOLTAGE_1_8 LOAD_LINE
1142 1142 : POWER_TARGET_UNIT
1130 1135 _UNIT: POWER_PIN_*
1136 1141 _UNIT: POWER_MB_PIN_*
1143 1143 : GROUP_EXTENSION_FIRST_UNIT
2167 2169 _UNIT: CPU_CLK CPU_TEMP CPU_USAGE
)";
constexpr char c_szRV5Numbers[] = R"(
0 8 _VALUE: FPS $L FRAME_TIME
9 11 : SYSTEM_TIME_VALUE1 SYSTEM_TIME_VALUE2 SYSTEM_TIME_VALUE3
12 16 _VALUE: $G
17 18 : RESOLUTION_VALUE1 RESOLUTION_VALUE2
19 21 _VALUE: GPU_CLK GPU_TEMP GPU_USAGE
22 44 _VALUE: $D
45 50 _VALUE: POWER_PIN_*
51 56 _VALUE: POWER_MB_PIN_*
57 57 : GROUP_EXTENSION_FIRST_VALUE
1081 1083 _VALUE: CPU_CLK CPU_TEMP CPU_USAGE
)";
constexpr char c_szRV5Panels[] = R"(
0 57 _TITLE: FPS $L FRAME_TIME SYSTEM_TIME $G GPU_CLK GPU_TEMP GPU_USAGE CPU_CLK CPU_TEMP CPU_USAGE $D POWER_PIN_* POWER_MB_PIN_* POWER_DETECTOR GROUP_EXTENSION_FIRST
1081 1082 _TITLE: RESOLUTION POWERED_BY_ORVIN_DECK
1083 1138 _VALUE: FPS $L FRAME_TIME SYSTEM_TIME $G RESOLUTION GPU_CLK GPU_TEMP GPU_USAGE $D POWER_PIN_* POWER_MB_PIN_* POWER_DETECTOR GROUP_EXTENSION_FIRST
2162 2164 _VALUE: CPU_CLK CPU_TEMP CPU_USAGE
)";

std::string Replaced(std::string str, const std::string& strFrom, const std::string& strTo) {
    for (std::size_t u; (u = str.find(strFrom)) != str.npos;) str.replace(u, strFrom.size(), strTo);
    return str;
}

/// Words of a line, its lists and numbers written out.
std::vector<std::string> WordsOf(std::string strWords) {
    strWords = Replaced(Replaced(Replaced(strWords, "$D", c_szDetails), "$L", c_szLows), "$G", c_szDebug);
    std::vector<std::string> words;
    std::istringstream stream(strWords);
    for (std::string str; stream >> str;)
        for (char c = '1'; c <= (str.back() == '*' ? '6' : '1'); ++c)
            words.push_back(Replaced(str, "*", std::string(1, c)));
    return words;
}

NameMap Expected(const char* szTable, const std::string& strPrefix, const std::string& strKind) {
    NameMap map;
    std::istringstream lines(szTable);
    for (std::string strLine; std::getline(lines, strLine);) {
        if (strLine.empty()) continue;
        const std::size_t uMark = strLine.find(':');
        std::istringstream head(strLine.substr(0, uMark));
        u32 uFirst = 0, uLast = 0;
        std::string strSuffix;
        head >> uFirst >> uLast >> strSuffix;
        for (const std::string& strWord : WordsOf(strLine.substr(uMark + 1)))
            map[strPrefix + "_" + strWord + strSuffix + "_" + strKind] = uFirst++;
        EXPECT_EQ(uFirst, uLast + 1) << strLine;
    }
    return map;
}

struct stTable {
    const char* szTable;
    const char* szKind;
    NameMap stNameMaps::*pMap;
    std::size_t uCount;
};

void Compare(const stStyleItems& style, const char* szPrefix, std::span<const stTable> tables) {
    g_fnEnterStyleNames(style);
    for (const stTable& table : tables) {
        SCOPED_TRACE(std::string(szPrefix) + " " + table.szKind);
        const NameMap& map = g_stNameMaps.*table.pMap;
        EXPECT_EQ(map, Expected(table.szTable, szPrefix, table.szKind));
        EXPECT_EQ(map.size(), table.uCount);
        std::set<u32> numbers;
        for (const auto& [strName, uBID] : map) EXPECT_TRUE(numbers.insert(uBID).second) << strName;
    }
    g_fnClearNameMaps();
}

TEST(StyleItems, ClassicHasTheNumbersOfItsTable) {
    constexpr stTable c_aTables[] = {
        {c_szClassicTexts, "TEXTBOXID", &stNameMaps::mapTextBox, 61 + 6 + 9 + 43},
        {c_szClassicNumbers, "NUMBOXID", &stNameMaps::mapNumBox, 58 + 9},
        {c_szFlips, "FLIPBOXID", &stNameMaps::mapFlipBox, 3},
        {c_szClassicPanels, "PANELID", &stNameMaps::mapPanel, 54 + 54},
    };
    Compare(g_stClassicItems, "CLASSIC_STYLE", c_aTables);
}

TEST(StyleItems, RV5HasTheNumbersOfItsTable) {
    constexpr stTable c_aTables[] = {
        {c_szRV5Texts, "TEXTBOXID", &stNameMaps::mapTextBox, 58 + 5 + 12 + 1 + 39 + 3},
        {c_szRV5Numbers, "NUMBOXID", &stNameMaps::mapNumBox, 58 + 3},
        {c_szFlips, "FLIPBOXID", &stNameMaps::mapFlipBox, 3},
        {c_szRV5Panels, "PANELID", &stNameMaps::mapPanel, 58 + 2 + 56 + 3},
    };
    Compare(g_stRV5Items, "RV5_STYLE", c_aTables);
}

/// Numbers of a kind that lie between the first and the last and are no item's, as ranges.
std::vector<std::pair<u32, u32>> Holes(const NameMap& map) {
    std::set<u32> numbers;
    for (const auto& [strName, uBID] : map) numbers.insert(uBID);
    std::vector<std::pair<u32, u32>> holes;
    u32 uNext = 0;
    for (const u32 uBID : numbers) {
        if (uBID != uNext) holes.emplace_back(uNext, uBID - 1);
        uNext = uBID + 1;
    }
    return holes;
}

TEST(StyleItems, HolesStayHoles) {
    using Ranges = std::vector<std::pair<u32, u32>>;
    g_fnEnterStyleNames(g_stClassicItems);
    EXPECT_EQ(Holes(g_stNameMaps.mapTextBox), (Ranges{{61, 1083}, {1090, 1090}}));
    EXPECT_EQ(Holes(g_stNameMaps.mapNumBox), (Ranges{{58, 1080}}));
    EXPECT_EQ(Holes(g_stNameMaps.mapPanel), (Ranges{{54, 1076}}));
    g_fnEnterStyleNames(g_stRV5Items);
    EXPECT_EQ(Holes(g_stNameMaps.mapTextBox), (Ranges{{58, 1080}, {1086, 1086}, {1099, 1103}, {1144, 2166}}));
    EXPECT_EQ(Holes(g_stNameMaps.mapNumBox), (Ranges{{58, 1080}}));
    EXPECT_EQ(Holes(g_stNameMaps.mapPanel), (Ranges{{58, 1080}, {1139, 2161}}));
    g_fnClearNameMaps();
}

/// The hole behind an extension is the room of 1,024 sensors, of which the extension's own number is the
/// first.
TEST(StyleItems, SensorsFitBehindTheExtensionAndGoNoFurther) {
    for (const stStyleItems* pStyle : {&g_stClassicItems, &g_stRV5Items}) {
        g_fnEnterStyleNames(*pStyle);
        for (NameMap* pMap : {&g_stNameMaps.mapTextBox, &g_stNameMaps.mapNumBox, &g_stNameMaps.mapPanel}) {
            std::set<u32> numbers;
            for (const auto& [strName, uBID] : *pMap) numbers.insert(uBID);
            for (const auto& [strName, uBID] : *pMap) {
                if (strName.find("GROUP_EXTENSION_FIRST") == strName.npos) continue;
                const auto it = numbers.upper_bound(uBID);
                if (it != numbers.end()) {
                    EXPECT_EQ(*it - uBID, 1024u) << strName;
                }
            }
        }
    }
    g_fnClearNameMaps();
}

TEST(StyleItems, ASensorGetsTheNamesOfItsRow) {
    g_fnEnterStyleNames(g_stClassicItems);
    g_fnEnterSensorNames(g_stClassicItems, "RAM_USAGE_P", 3);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapTextBox, "CLASSIC_STYLE_RAM_USAGE_P_TITLE_TEXTBOXID"), 63u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapTextBox, "CLASSIC_STYLE_RAM_USAGE_P_UNIT_TEXTBOXID"), 1145u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapNumBox, "CLASSIC_STYLE_RAM_USAGE_P_VALUE_NUMBOXID"), 60u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapPanel, "CLASSIC_STYLE_RAM_USAGE_P_TITLE_PANELID"), 56u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapPanel, "CLASSIC_STYLE_RAM_USAGE_P_DATA_PANELID"), 1133u);
    g_fnEnterStyleNames(g_stRV5Items);
    g_fnEnterSensorNames(g_stRV5Items, "RAM_USAGE_P", 1023);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapTextBox, "RV5_STYLE_RAM_USAGE_P_TITLE_TEXTBOXID"), 1080u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapTextBox, "RV5_STYLE_RAM_USAGE_P_UNIT_TEXTBOXID"), 2166u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapPanel, "RV5_STYLE_RAM_USAGE_P_TITLE_PANELID"), 1080u);
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapPanel, "RV5_STYLE_RAM_USAGE_P_VALUE_PANELID"), 2161u);
    g_fnClearNameMaps();
}

TEST(StyleItems, ASensorThatIsCalledLikeARowTakesNoNames) {
    g_fnEnterStyleNames(g_stRV5Items);
    const NameMap before = g_stNameMaps.mapTextBox;
    g_fnEnterSensorNames(g_stRV5Items, "GPU_CLK", 0);
    EXPECT_EQ(g_stNameMaps.mapTextBox, before);
    g_fnClearNameMaps();
}

TEST(StyleItems, NamesOfOneStyleAreNotTheOthers) {
    g_fnEnterStyleNames(g_stClassicItems);
    for (const auto& [strName, uBID] : g_stNameMaps.mapPanel)
        EXPECT_TRUE(strName.starts_with("CLASSIC_STYLE_"));
    EXPECT_EQ(g_fnFindBID(g_stNameMaps.mapTextBox, "RV5_STYLE_FPS_TITLE_TEXTBOXID"), g_uNoBID);
    g_fnClearNameMaps();
}

TEST(StyleItems, CaptionsLeadToTitlesOfTheStyle) {
    g_fnEnterStyleNames(g_stRV5Items);
    const auto& map = g_stNameMaps.mapCaptionTitle;
    EXPECT_EQ(map.size(), 39u + 3 + 3);
    EXPECT_EQ(map.at(u"VRAM Clock"), "RV5_STYLE_VRAM_CLK_TITLE_TEXTBOXID");
    EXPECT_EQ(map.at(u"MB Pin 6"), "RV5_STYLE_POWER_MB_PIN_6_TITLE_TEXTBOXID");
    EXPECT_EQ(map.at(u"System Time"), "RV5_STYLE_SYSTEM_TIME_TITLE_TEXTBOXID");
    for (const auto& [wzCaption, strName] : map)
        EXPECT_TRUE(g_stNameMaps.mapTextBox.contains(strName)) << strName;
    // The first card and CPU have one title for three rows, and clock and frame time have none.
    g_fnEnterStyleNames(g_stClassicItems);
    EXPECT_EQ(map.size(), 36u + 1);
    EXPECT_FALSE(map.contains(u"GPU Clock"));
    EXPECT_FALSE(map.contains(u"System Time"));
    EXPECT_EQ(map.at(u"Resolution"), "CLASSIC_STYLE_RESOLUTION_TITLE_TEXTBOXID");
    g_fnClearNameMaps();
}

} // namespace
