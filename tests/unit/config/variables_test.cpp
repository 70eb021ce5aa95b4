#include "config/fixed/variables.h"

#include "config/settings/setting_binding.h"
#include "font/font_unicode.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include <tinyxml2.h>

namespace {

class Variables : public testing::Test {
  protected:
    void SetUp() override { g_fnRegisterVariables(); }
    void TearDown() override {
        g_stVariables.uCPUNum = g_stVariables.uGPUNum = 0;
        g_stVariables.iAlign2X = g_stVariables.iAlign2Y = 0;
        g_fnRegisterVariables();
    }
    const tinyxml2::XMLElement* Parse(const std::string& szText) {
        EXPECT_EQ(m_document.Parse(szText.c_str(), szText.size()), tinyxml2::XML_SUCCESS);
        return m_document.RootElement();
    }
    void ReadProfile(const std::string& szVariables) {
        g_fnReadProfileVariables(Parse("<Info><CustomSettings>" + szVariables + "</CustomSettings></Info>"));
    }
    void ReadPreset(const std::string& szVariables) {
        g_fnReadPresetVariables(Parse("<Preset>" + szVariables + "</Preset>"));
    }
    template <class T> static i32 Read(const T& value, u8 uType) {
        g_fnRegisterVariable("v", &value, uType);
        return g_fnReadVariable("v");
    }

  private:
    tinyxml2::XMLDocument m_document;
};

TEST_F(Variables, FourAreRegistered) {
    g_stVariables.uCPUNum = 1;
    g_stVariables.uGPUNum = 20;
    g_stVariables.iAlign2X = -5;
    g_stVariables.iAlign2Y = 76;
    EXPECT_EQ(g_stVariables.mapByName.size(), 4u);
    EXPECT_EQ(g_fnReadVariable("CPUNum"), 1);
    EXPECT_EQ(g_fnReadVariable("GPUNum"), 20);
    EXPECT_EQ(g_fnReadVariable("Align#2.x"), -5);
    EXPECT_EQ(g_fnReadVariable("Align#2.y"), 76);
}

TEST_F(Variables, AnUnknownNameReadsAs0) {
    EXPECT_EQ(g_fnReadVariable("gpunum"), 0);
    EXPECT_EQ(g_fnReadVariable(""), 0);
}

TEST_F(Variables, EachTypeReadsAsItsWidth) {
    EXPECT_EQ(Read(i8{-3}, TARGET_I8), -3);
    EXPECT_EQ(Read(u8{253}, TARGET_U8), 253);
    EXPECT_EQ(Read(i16{-300}, TARGET_I16), -300);
    EXPECT_EQ(Read(u16{65236}, TARGET_U16), 65236);
    EXPECT_EQ(Read(i32{-70000}, TARGET_I32), -70000);
    EXPECT_EQ(Read(u32{70000}, TARGET_U32), 70000);
    EXPECT_EQ(Read(u64{0x100000007}, TARGET_U64), 7);
}

TEST_F(Variables, FloatingValuesAreTruncated) {
    EXPECT_EQ(Read(2.9f, TARGET_F32), 2);
    EXPECT_EQ(Read(-2.9f, TARGET_F32), -2);
    EXPECT_EQ(Read(1e20f, TARGET_F32), std::numeric_limits<i32>::max());
    EXPECT_EQ(Read(-1e20f, TARGET_F32), std::numeric_limits<i32>::min());
    EXPECT_EQ(Read(std::numeric_limits<f32>::quiet_NaN(), TARGET_F32), 0);
}

TEST_F(Variables, AnyOtherTypeReadsAs0) {
    const u64 u64Value = 0x0101010101010101;
    for (const u8 uType : {0, 7, 17, 20, 33, 34, 255}) EXPECT_EQ(Read(u64Value, uType), 0) << int(uType);
    g_fnRegisterVariable("v", nullptr, TARGET_I32);
    EXPECT_EQ(g_fnReadVariable("v"), 0);
}

TEST_F(Variables, RegisteringForgetsWhatFormerLoadsKnew) {
    static i32 iOld = 4;
    g_fnRegisterVariable("old", &iOld, TARGET_I32);
    ReadProfile(R"(<Variable Name="n" Value="1"/>)");
    ReadPreset(R"(<Variable Name="p" Value="1"/>)");
    g_fnRegisterVariables();
    EXPECT_EQ(g_fnReadVariable("old"), 0);
    EXPECT_TRUE(g_stFileVariables.mapProfile.empty());
    EXPECT_TRUE(g_stFileVariables.mapPreset.empty());
    EXPECT_TRUE(g_mapFontScalePercent.empty());
}

TEST_F(Variables, AProfilesListFillsItsMap) {
    ReadProfile(R"(<Variable Name="TitleFont" Value="DejaVu Sans"/><Other Name="x" Value="y"/>
                   <Variable Name="Size" Value="12"/>)");
    EXPECT_EQ(g_stFileVariables.mapProfile.size(), 3u); // and the sum
    EXPECT_EQ(g_stFileVariables.mapProfile["TitleFont"], "DejaVu Sans");
    EXPECT_EQ(g_stFileVariables.mapProfile["Size"], "12");
}

TEST_F(Variables, KeysLeftOutAreEmpty) {
    ReadProfile(R"(<Variable Name="NoValue"/><Variable Value="no name"/><Variable/>)");
    EXPECT_EQ(g_stFileVariables.mapProfile.size(), 2u); // what has no name can't be asked for
    EXPECT_EQ(g_stFileVariables.mapProfile["NoValue"], "");
    ReadPreset(R"(<Variable Name="NoValue"/><Variable Value="no name"/><Variable/>)");
    EXPECT_EQ(g_stFileVariables.mapPreset, (PresetVariables{{u"NoValue", u""}}));
}

TEST_F(Variables, TheLaterOfTwoOfOneNameHolds) {
    ReadProfile(R"(<Variable Name="a" Value="1"/><Variable Name="a" Value="2"/>)");
    EXPECT_EQ(g_stFileVariables.mapProfile["a"], "2");
}

TEST_F(Variables, TheColumnWidthSumIsAdded) {
    ReadProfile(R"(<Variable Name="ColumnWidth#1" Value="120"/><Variable Name="ColumnWidth#2" Value="44"/>)");
    EXPECT_EQ(g_stFileVariables.mapProfile["ColumnWidth#1+ColumnWidth#2"], "164");
}

TEST_F(Variables, TheColumnWidthSumOfWhatIsMissingIs0) {
    ReadProfile("");
    EXPECT_EQ(g_stFileVariables.mapProfile["ColumnWidth#1+ColumnWidth#2"], "0");
    ReadProfile(R"(<Variable Name="ColumnWidth#2" Value="-8"/>)");
    EXPECT_EQ(g_stFileVariables.mapProfile["ColumnWidth#1+ColumnWidth#2"], "-8");
    ReadProfile(R"(<Variable Name="ColumnWidth#1" Value="7.9"/><Variable Name="ColumnWidth#2" Value="x"/>)");
    EXPECT_EQ(g_stFileVariables.mapProfile["ColumnWidth#1+ColumnWidth#2"], "7"); // in decimal: digits only
}

TEST_F(Variables, AListReplacesTheFormerOne) {
    ReadProfile(R"(<Variable Name="a" Value="1"/>)");
    ReadProfile(R"(<Variable Name="b" Value="1"/>)");
    EXPECT_FALSE(g_stFileVariables.mapProfile.contains("a"));
    EXPECT_TRUE(g_stFileVariables.mapProfile.contains("b"));
    g_fnReadProfileVariables(nullptr);
    EXPECT_EQ(g_stFileVariables.mapProfile.size(), 1u);
    ReadPreset(R"(<Variable Name="a" Value="1"/>)");
    g_fnReadPresetVariables(nullptr);
    EXPECT_TRUE(g_stFileVariables.mapPreset.empty());
}

TEST_F(Variables, PresetsAreAWideMapOfTheirOwn) {
    ReadPreset("<Variable Name=\"Gr\xC3\xB6\xC3\x9F"
               "e\" Value=\"\xE2\x82\xAC\"/>");
    EXPECT_EQ(g_stFileVariables.mapPreset, (PresetVariables{{u"Größe", u"€"}}));
    EXPECT_TRUE(g_stFileVariables.mapProfile.empty());
}

TEST_F(Variables, AVariableNamedLikeAFaceIsItsScale) {
    ReadPreset(R"(<Variable Name="Face A" Value="150"/><Variable Name="Face B" Value="80%"/>)");
    ReadProfile("<Variable Name=\"Face A\" Value=\"90\"/><Variable Name=\"F\xC3\xA4"
                "ce\" Value=\"120\"/>");
    EXPECT_EQ(g_mapFontScalePercent[u"Face A"], 90); // the profile goes before the presets
    EXPECT_EQ(g_mapFontScalePercent[u"Face B"], 80);
    EXPECT_EQ(g_mapFontScalePercent[u"Fäce"], 120);
    // In either order of reading.
    ReadPreset(R"(<Variable Name="Face A" Value="150"/>)");
    EXPECT_EQ(g_mapFontScalePercent[u"Face A"], 90);
    EXPECT_FALSE(g_mapFontScalePercent.contains(u"Face B"));
}

TEST_F(Variables, LongTextsAreCut) {
    const std::string szName(300, 'n'), szValue(300, '7');
    ReadProfile("<Variable Name=\"" + szName + "\" Value=\"" + szValue + "\"/>");
    EXPECT_EQ(g_stFileVariables.mapProfile[szName.substr(0, 255)], szValue.substr(0, 255));
    ReadPreset("<Variable Name=\"" + szName + "\" Value=\"" + szValue + "\"/>");
    EXPECT_EQ(g_stFileVariables.mapPreset[std::u16string(255, u'n')], std::u16string(255, u'7'));
}

} // namespace
