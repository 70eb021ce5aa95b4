// The language file: what it replaces, and what wrong ones leave alone.
#include "config/fixed/language.h"

#include "base/log.h"
#include "config/fixed/style_items.h"
#include "config/settings/setting_binding.h"
#include "config/settings/settings_sensors.h"
#include "settings_fixture.h"
#include "shared/info_rows.h"
#include "template_fixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <vector>

namespace {

std::vector<std::string> g_aLines;

struct Language : SettingsTest, CTemplateText {
    void SetUp() override {
        SettingsTest::SetUp();
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.emplace_back(szLine); };
        g_fnEnterStyleNames(g_stRV5Items);
        for (const auto& [wzCaption, strTitle] : g_stNameMaps.mapCaptionTitle)
            Title(wzCaption).wzText = wzCaption;
        const std::string strFolder = m_folder.Path("");
        Suite(std::u16string(strFolder.begin(), strFolder.end()));
        Ini("[Info]\nUseLanguageXMLString=1\n");
        g_fnLoadGlobalSettings();
    }
    void TearDown() override {
        g_fnLogSink = nullptr;
        Ini("");
        headless::ClearSettings();
        g_fnReadSensorDefinitions();
        SettingsTest::TearDown();
    }
    static void Suite(const std::u16string& wstrFolder) {
        headless::SetSettingsText(g_wzSuite, u"OrvinDeck Install Path", wstrFolder.c_str());
    }
    /// Title template of a row by its built-in caption, made if need be.
    static stTextTemplate& Title(const std::u16string& wzCaption) {
        const auto it = g_stNameMaps.mapCaptionTitle.find(wzCaption);
        const u32 uBID = g_fnFindBID(g_stNameMaps.mapTextBox, it->second);
        stTextTemplate* const p = g_stTemplates.poolTextBox.m_fnFind(uBID);
        return p ? *p : *g_stTemplates.poolTextBox.m_fnUse(uBID);
    }
    /// Writes a file and names it.
    void File(const std::string& strBytes) {
        m_folder.Write("Words.xml", strBytes);
        Name(u"Words.xml");
    }
    static void Name(const char16_t* wzName) {
        Text(u"Information Option", u"LanguageXMLFileName", wzName);
        g_fnReadLanguageFileName();
    }
    /// A file with captions.
    void Captions(const std::string& strElements) {
        File("<?xml version=\"1.0\"?><Lang font=\"Face\"><RV5>" + strElements + "</RV5></Lang>");
    }
    static void CardTag(const std::u16string& wstrRow, const std::u16string& wstrTag) {
        Text((u"Information Option\\Card\\Default\\" + wstrRow).c_str(), u"LanguageXMLTagName", wstrTag);
    }
    static void RowTag(const std::u16string& wstrRow, const std::u16string& wstrTag) {
        Text((u"Information Option\\" + wstrRow).c_str(), u"LanguageXMLTagName", wstrTag);
    }
    /// Nothing of a file arrives.
    void ExpectUntouched(bool bWithFace = false) {
        CardTag(u"VRAM Clock", u"vram");
        EXPECT_FALSE(g_fnApplyLanguageStrings());
        EXPECT_EQ(Title(u"VRAM Clock").wzText, u"VRAM Clock");
        EXPECT_EQ(Face(g_fnOverrideLanguageFontRV5, 0), bWithFace ? u"Face" : u"Own0");
    }
    /// Face of a slot behind an override.
    static std::u16string Face(FontOverride fnOverride, u32 uSlot) {
        std::vector<stFontRecord> slots(g_uFixedFonts);
        for (u32 u = 0; u < slots.size(); ++u) {
            const std::u16string wz = u"Own" + std::u16string(1, static_cast<char16_t>(u'0' + u));
            wz.copy(slots[u].m_wzFontName, wz.size());
        }
        fnOverride(slots);
        return slots[uSlot].m_wzFontName;
    }
};

TEST_F(Language, EveryKindOfRowTakesItsCaption) {
    Captions(R"(<vram En="Speichertakt"/><cpu En="CPU-Takt"/><frame En="Bildzeit"/><clock En="Uhr"/>)"
             R"(<size En="Aufl&#246;sung"/>)");
    CardTag(u"VRAM Clock", u"vram");
    RowTag(u"CPU\\CPU Clock", u"cpu");
    RowTag(u"Frame Time", u"frame");
    RowTag(u"System Time", u"clock");
    RowTag(u"Resolution", u"size");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"VRAM Clock").wzText, u"Speichertakt");
    EXPECT_EQ(Title(u"CPU Clock").wzText, u"CPU-Takt");
    EXPECT_EQ(Title(u"Frame Time").wzText, u"Bildzeit");
    EXPECT_EQ(Title(u"System Time").wzText, u"Uhr");
    EXPECT_EQ(Title(u"Resolution").wzText, u"Aufl\u00F6sung");
    EXPECT_EQ(Title(u"GPU Voltage").wzText, u"GPU Voltage") << "a row without a tag";
}

TEST_F(Language, OffsetsMoveTheTitleScaledLikeItsAnchor) {
    Captions(R"(<vram En="a" AlignLeftOffsetX="10" AlignOffsetY="-3"/><fan En="b"/>)");
    CardTag(u"VRAM Clock", u"vram");
    CardTag(u"Fan1 RPM", u"fan");
    Title(u"VRAM Clock").iAnchorX = 7;
    Title(u"VRAM Clock").iAnchorY = 8;
    Title(u"Fan1 RPM").iAnchorX = 5;
    SetFontScale(150);
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"VRAM Clock").iAnchorX, 7 + 15);
    EXPECT_EQ(Title(u"VRAM Clock").iAnchorY, 8 - 4);
    EXPECT_EQ(Title(u"Fan1 RPM").iAnchorX, 5);
}

TEST_F(Language, TheFanThatStandsForAllWritesTheFirstOnesTitleAndMovesItOnce) {
    Captions(
        R"(<one En="Fan 1" AlignLeftOffsetX="4"/><all En="Fan" AlignLeftOffsetX="6"/><rpm En="Speed"/>)");
    CardTag(u"Fan1 Duty", u"one");
    CardTag(u"Fan Duty", u"all");
    CardTag(u"Fan RPM", u"rpm");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"Fan1 Duty").wzText, u"Fan");
    EXPECT_EQ(Title(u"Fan1 Duty").iAnchorX, 6);
    EXPECT_EQ(Title(u"Fan1 RPM").wzText, u"Speed");
}

TEST_F(Language, SensorsTakeCaptionAndUnitWhereTheyAreOnDisplay) {
    for (const char16_t* wzName : {u"PUMP", u"HIDDEN"}) {
        const std::u16string wstrKey = std::u16string(u"Information Option\\Config\\Sensor\\") + wzName;
        Text(wstrKey.c_str(), u"Title LanguageXML TagName", u"pump");
        Text(wstrKey.c_str(), u"Unit LanguageXML TagName", u"turns");
    }
    g_fnReadSensorDefinitions();
    stSensorDefinition& st = g_stSensors.mapByName.at("PUMP");
    st.iTitleTextId = 57;
    st.iUnitTextId = 1143;
    g_stTemplates.poolTextBox.m_fnUse(57)->wzText = u"Pump";
    g_stTemplates.poolTextBox.m_fnUse(1143)->wzText = u"rpm";
    Captions("<pump En=\"Pumpe (U)\"/><turns En=\"U/min\"/>");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(g_stTemplates.poolTextBox.m_fnFind(57)->wzText, u"Pumpe");
    EXPECT_EQ(g_stTemplates.poolTextBox.m_fnFind(1143)->wzText, u"U/min");
}

TEST_F(Language, ARowThatTheStyleHasNoTitleForIsPassedOver) {
    g_fnEnterStyleNames(g_stClassicItems);
    Captions(R"(<gpu En="x"/>)");
    CardTag(u"GPU Clock", u"gpu");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(Language, ATagThatTheFileLacksLeavesTheRowAndALine) {
    Captions(R"(<other En="x"/><vram/><empty En=""/>)");
    CardTag(u"GPU Usage", u"gone");
    CardTag(u"VRAM Clock", u"vram");
    CardTag(u"GPU Voltage", u"empty");
    CardTag(u"Load Line", std::u16string(120, u'\u3042')); // more than a tag holds in UTF-8
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(std::count(g_aLines.begin(), g_aLines.end(), "elementItem is NULL\n"), 2);
    for (const char16_t* wz : {u"GPU Usage", u"VRAM Clock", u"GPU Voltage", u"Load Line"})
        EXPECT_EQ(Title(wz).wzText, wz) << "the built-in caption stays";
}

TEST_F(Language, OnlyTheFirstElementOfATagCounts) {
    Captions(R"(<vram En="first"/><vram En="second"/>)");
    CardTag(u"VRAM Clock", u"vram");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"VRAM Clock").wzText, u"first");
}

TEST_F(Language, TagsAreUtf8InTheFile) {
    Captions("<\xE3\x81\x82 En=\"\xE3\x82\xAF\xE3\x83\xAD\xE3\x83\x83\xE3\x82\xAF\"/>");
    CardTag(u"VRAM Clock", u"\u3042");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"VRAM Clock").wzText, u"\u30AF\u30ED\u30C3\u30AF");
}

// --- cleaning ----------------------------------------------------------------------------------------------

TEST_F(Language, ACaptionLosesWhatStandsInParenthesesAndTheCharacterBeforeThem) {
    EXPECT_EQ(g_fnCleanCaption(u"VRAM Usage (MB)"), u"VRAM Usage");
    EXPECT_EQ(g_fnCleanCaption(u"VRAM (x) Usage (MB)"), u"VRAM (x) Usage");
    EXPECT_EQ(g_fnCleanCaption(u"Usage((a)"), u"Usage");
    EXPECT_EQ(g_fnCleanCaption(u"A(b)"), u"");
    EXPECT_EQ(g_fnCleanCaption(u"(all)"), u"(all)") << "the first character stays";
    EXPECT_EQ(g_fnCleanCaption(u"no opening)"), u"no opening)");
    EXPECT_EQ(g_fnCleanCaption(u"Usage (MB) "), u"Usage (MB) ");
    EXPECT_EQ(g_fnCleanCaption(u"\U0001F600\U0001F680(x)"), u"\U0001F600") << "a character is a whole pair";
}

TEST_F(Language, ACaptionThatEndsInAnEqualsSignLosesThreeCharactersFirst) {
    EXPECT_EQ(g_fnCleanCaption(u"Clock :="), u"Clock");
    EXPECT_EQ(g_fnCleanCaption(u"VRAM (MB) :="), u"VRAM");
    EXPECT_EQ(g_fnCleanCaption(u"ab="), u"ab=") << "too short";
    EXPECT_EQ(g_fnCleanCaption(u"abc="), u"a");
    EXPECT_EQ(g_fnCleanCaption(u"x\U0001F600\U0001F680="), u"x") << "counted in characters";
    EXPECT_EQ(g_fnCleanCaption(u"\U0001F600="), u"\U0001F600=") << "two characters, three units";
    EXPECT_EQ(g_fnCleanCaption(u"===="), u"=");
    EXPECT_EQ(g_fnCleanCaption(u""), u"");
    EXPECT_EQ(g_fnCleanCaption(u"="), u"=");
    EXPECT_EQ(g_fnCleanCaption(u")"), u")");
}

// --- the face ----------------------------------------------------------------------------------------------

TEST_F(Language, TheFaceGoesToTheSlotThatTheStyleWritesWith) {
    Captions("");
    for (u32 u = 0; u < 8; ++u) {
        const std::u16string wstrOwn = u"Own" + std::u16string(1, static_cast<char16_t>(u'0' + u));
        EXPECT_EQ(Face(g_fnOverrideLanguageFontClassic, u), u == 4 ? u"Face" : wstrOwn);
        EXPECT_EQ(Face(g_fnOverrideLanguageFontRV5, u), u == 0 ? u"Face" : wstrOwn);
    }
}

TEST_F(Language, TheFaceNeedsNoSwitch) {
    Captions(R"(<vram En="x"/>)");
    Ini("[Info]\nUseLanguageXMLString=0\n");
    g_fnLoadGlobalSettings();
    ExpectUntouched(true);
}

TEST_F(Language, AFileWithoutAFaceLeavesTheSlots) {
    File("<Lang><RV5/></Lang>");
    EXPECT_EQ(Face(g_fnOverrideLanguageFontRV5, 0), u"Own0");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
}

TEST_F(Language, ALongFaceIsCutToTheRecordsRoom) {
    File("<Lang font=\"" + std::string(3000, 'f') + "\"/>");
    EXPECT_EQ(Face(g_fnOverrideLanguageFontRV5, 0), std::u16string(127, u'f'));
    std::vector<stFontRecord> few(2);
    g_fnOverrideLanguageFontClassic(few);
    EXPECT_EQ(few[1].m_wzFontName[0], 0) << "fewer slots than the style needs";
}

// --- wrong files -------------------------------------------------------------------------------------------

TEST_F(Language, AMissingFileLeavesTheBuiltInCaptionsAndSaysNothing) {
    Name(u"Nobody.xml");
    ExpectUntouched();
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(Language, TheDefaultNameIsTriedAndNothingComesOfIt) {
    g_fnReadLanguageFileName();
    ASSERT_EQ(std::u16string(g_stSettings.wzLanguageFileName), u"X");
    ExpectUntouched();
    m_folder.Write("X", "<Lang font=\"Face\"/>");
    EXPECT_EQ(Face(g_fnOverrideLanguageFontRV5, 0), u"Face") << "a file of that name in the install folder";
}

TEST_F(Language, AnEmptyNameIsNoLanguage) {
    Captions(R"(<vram En="x"/>)");
    Name(u"");
    ExpectUntouched();
}

TEST_F(Language, WithoutAnInstallFolderTheShippedFilesCount) {
    Captions(R"(<vram En="x"/>)");
    Suite(u"");
    ExpectUntouched();
    std::filesystem::create_directories(m_folder.Path("Languages"));
    m_folder.Write("Languages/Words.xml", R"(<Lang font="Face"><RV5><vram En="shipped"/></RV5></Lang>)");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"VRAM Clock").wzText, u"shipped");
    EXPECT_EQ(Face(g_fnOverrideLanguageFontRV5, 0), u"Face");
}

TEST_F(Language, BrokenFilesLeaveEverything) {
    for (const std::string& strBytes :
         {std::string(), std::string("<"), std::string("<Lang font=\"Face\"><RV5><vram En=\"x\"/>"),
          std::string("<lang font=\"Face\"><RV5><vram En=\"x\"/></RV5></lang>"),
          std::string("<OSD font=\"Face\"><RV5><vram En=\"x\"/></RV5></OSD>"),
          std::string("\xFF\xFE<\0L\0a\0n\0g\0/\0>\0", 14), std::string("\0\0\0\0", 4),
          std::string("<Lang font=\"Face\" font=\"Face\"/>"), std::string(3, '\xEF')}) {
        File(strBytes);
        ExpectUntouched();
    }
}

TEST_F(Language, AFileWithoutCaptionsIsNoLanguage) {
    File("<Lang font=\"Face\"><Rv5><vram En=\"x\"/></Rv5></Lang>");
    ExpectUntouched(true);
}

TEST_F(Language, HugeAndDeepFilesAreRefused) {
    File("<Lang font=\"Face\"><RV5>" + std::string(33 * 1024 * 1024, ' ') + "</RV5></Lang>");
    ExpectUntouched();
    std::string strDeep;
    for (u32 u = 0; u < 100000; ++u) strDeep += "<a>";
    File("<Lang font=\"Face\">" + strDeep);
    ExpectUntouched();
    m_folder.Remove("Words.xml");
}

TEST_F(Language, ADirectoryIsNoFile) {
    Name(u".");
    ExpectUntouched();
}

TEST_F(Language, LongCaptionsAndPairsOfSurrogatesAreCutWhole) {
    std::string strPairs;
    for (u32 u = 0; u < 1000; ++u) strPairs += "\xF0\x9F\x98\x80";
    Captions("<vram En=\"" + std::string(1000, 'w') + "\"/><gpu En=\"" + strPairs +
             "\"/><bad En=\"\xED\xA0\x80z\"/>");
    CardTag(u"VRAM Clock", u"vram");
    CardTag(u"GPU Usage", u"gpu");
    CardTag(u"GPU Clock", u"bad");
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"VRAM Clock").wzText, std::u16string(255, u'w'));
    EXPECT_EQ(Title(u"GPU Usage").wzText.size(), 254u) << "no half of a pair";
    EXPECT_EQ(Title(u"GPU Clock").wzText.back(), u'z');
    EXPECT_EQ(Title(u"GPU Clock").wzText.find(u'\xD800'), std::u16string::npos);
}

TEST_F(Language, TagsOfTheWrongKindAndOf64KilobytesCountAsMissing) {
    Captions(R"(<vram En="x"/><_7 En="y"/>)");
    Number(u"Information Option\\Card\\Default\\VRAM Clock", u"LanguageXMLTagName", 7);
    CardTag(u"GPU Usage", std::u16string(32767, u'v'));
    EXPECT_TRUE(g_fnApplyLanguageStrings());
    EXPECT_EQ(Title(u"VRAM Clock").wzText, u"VRAM Clock");
    EXPECT_EQ(Title(u"GPU Usage").wzText, u"GPU Usage");
    EXPECT_TRUE(g_aLines.empty()) << "an empty tag passes the row over";
}

TEST_F(Language, AFileNameOfTheWrongKindIsTheDefaultOne) {
    Number(u"Information Option", u"LanguageXMLFileName", 5);
    g_fnReadLanguageFileName();
    EXPECT_EQ(std::u16string(g_stSettings.wzLanguageFileName), u"X");
}

// --- shipped files -----------------------------------------------------------------------------------------

/// The languages that come with the overlay, and the tags of the shipped settings store.
struct LanguageFiles : ::testing::Test {
    static std::string Source(const char* szName) { return std::string(ORVIN_SOURCE_DIR "/") + szName; }
    static std::string Bytes(const std::string& strPath) {
        std::ifstream file(strPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static std::set<std::string> Tags() {
        std::set<std::string> tags;
        std::istringstream text(Bytes(Source("Settings/settings.ini")));
        for (std::string strLine; std::getline(text, strLine);)
            for (const std::string strName : {"LanguageXMLTagName = ", "Title LanguageXML TagName = "})
                if (strLine.starts_with(strName)) tags.insert(strLine.substr(strName.size()));
        return tags;
    }
};

TEST_F(LanguageFiles, EachHasACaptionForEachTagOfTheShippedStore) {
    const std::set<std::string> tags = Tags();
    EXPECT_EQ(tags.size(), 39u + 3 + 3 + 9);
    u32 uFiles = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Source("data/Languages"))) {
        ++uFiles;
        const std::string strName = entry.path().filename().string(), strBytes = Bytes(entry.path().string());
        tinyxml2::XMLDocument document;
        ASSERT_EQ(document.Parse(strBytes.data(), strBytes.size()), tinyxml2::XML_SUCCESS) << strName;
        const tinyxml2::XMLElement* const pTexts =
            document.FirstChildElement("Lang")->FirstChildElement("RV5");
        for (const std::string& strTag : tags) {
            const tinyxml2::XMLElement* const pItem = pTexts->FirstChildElement(strTag.c_str());
            ASSERT_NE(pItem, nullptr) << strName << " " << strTag;
            char16_t wzText[1024];
            g_fnDecodeUtf8(pItem->Attribute("En"), wzText, 1024);
            const std::u16string wz = wzText;
            EXPECT_FALSE(wz.empty()) << strName << " " << strTag;
            EXPECT_LE(wz.size(), 22u) << strName << " " << strTag << " would stand over its value";
            EXPECT_EQ(g_fnCleanCaption(wz), wz) << strName << " " << strTag;
        }
    }
    EXPECT_EQ(uFiles, 8u);
}

/// A tag for each row that a language can name, under the key that is asked for.
TEST_F(LanguageFiles, TheShippedStoreHasATagForEachRow) {
    const std::string strStore = Bytes(Source("Settings/settings.ini"));
    const auto Expect = [&](const std::string& strKey, const std::string& strTag) {
        const std::string strEntry = "[SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\\" + strKey +
                                     "]\nLanguageXMLTagName = " + strTag + "\n";
        EXPECT_NE(strStore.find(strEntry), std::string::npos) << strKey;
    };
    for (const stInfoRow& row : g_aCardRows) {
        const std::u16string wzRow = row.wzRow;
        Expect("Card\\Default\\" + std::string(wzRow.begin(), wzRow.end()), row.szElement);
    }
    for (const stInfoRow& row : g_aCpuRows) {
        const std::u16string wzRow = row.wzRow;
        Expect("CPU\\" + std::string(wzRow.begin(), wzRow.end()), row.szElement);
    }
    Expect("Frame Time", "FrameTime");
    Expect("System Time", "SystemTime");
    Expect("Resolution", "Resolution");
}

} // namespace
