#include "base/numbers.h"
#include "config/fixed/attribute_value.h"

#include "config/fixed/variables.h"
#include "controls/align_row.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include <tinyxml2.h>

namespace {

class AttributeValue : public testing::Test {
  protected:
    void SetUp() override { g_fnRegisterVariables(); }
    void TearDown() override {
        g_fnRegisterVariables();
        g_stVariables.iAlign2X = g_stVariables.iAlign2Y = 0;
        g_stVariables.uGPUNum = 0;
        ReadScale("<Info/>");
    }
    static void ReadScale(const std::string& szText) {
        tinyxml2::XMLDocument document;
        ASSERT_EQ(document.Parse(szText.c_str()), tinyxml2::XML_SUCCESS);
        g_fnReadFontScale(document.RootElement());
    }
    static void Scale(i32 iPercent) { ReadScale("<Info FontScale=\"" + std::to_string(iPercent) + "\"/>"); }
    static f64 Value(const char* szText) { return g_fnReadAttribute(szText).fValue; }
    static f64 Scaled(const char* szText) { return g_fnScaleAttribute(g_fnReadAttribute(szText)); }
};

TEST_F(AttributeValue, PlainNumbers) {
    for (const char* sz : {"0", "12", "-12", "1.5", "-.5", ".5", "5.", "-0", "00012"})
        EXPECT_TRUE(g_fnIsPlainNumber(sz)) << sz;
    for (const char* sz :
         {"", "-", ".", "-.", "+1", "1e3", "1.2.3", "--1", "1-", " 1", "1 ", "0x10", "12px", "1,5"})
        EXPECT_FALSE(g_fnIsPlainNumber(sz)) << sz;
}

TEST_F(AttributeValue, APlainNumberIsParsed) {
    EXPECT_EQ(Value("12"), 12);
    EXPECT_EQ(Value("-12.25"), -12.25);
    EXPECT_EQ(Value(".5"), 0.5);
    EXPECT_EQ(Value("5."), 5);
}

TEST_F(AttributeValue, AnyOtherTextIsAName) {
    g_stFileVariables.mapProfile["width"] = "120.5";
    g_stFileVariables.mapProfile["12px"] = "3";
    EXPECT_EQ(Value("width"), 120.5);
    EXPECT_EQ(Value("12px"), 3);
    EXPECT_EQ(Value("Width"), 0);
    EXPECT_EQ(Value("missing"), 0);
    EXPECT_EQ(Value(""), 0);
}

TEST_F(AttributeValue, ANumberGoesBeforeAVariableOfThatName) {
    g_stFileVariables.mapProfile["7"] = "99";
    EXPECT_EQ(Value("7"), 7);
}

TEST_F(AttributeValue, TheProfilesVariableGoesBeforeTheProgramsOfThatName) {
    g_stVariables.uGPUNum = 3;
    EXPECT_EQ(Value("GPUNum"), 3);
    g_stFileVariables.mapProfile["GPUNum"] = "8";
    EXPECT_EQ(Value("GPUNum"), 8);
}

TEST_F(AttributeValue, AVariablesTextIsNoNameAgain) {
    g_stFileVariables.mapProfile["a"] = "b";
    g_stFileVariables.mapProfile["b"] = "5";
    EXPECT_EQ(Value("a"), 0);
}

TEST_F(AttributeValue, PresetsAreNotAsked) {
    g_stFileVariables.mapPreset[u"p"] = u"5";
    EXPECT_EQ(Value("p"), 0);
}

TEST_F(AttributeValue, AFontScaleOf150Makes15Of10) {
    Scale(150);
    EXPECT_EQ(g_fnCutToWhole(Scaled("10")), 15);
    EXPECT_EQ(g_fnCutToWhole(Scaled("-10")), -15);
    EXPECT_EQ(g_fnCutToWhole(Scaled("11")), 16); // 16.5
    EXPECT_EQ(g_fnCutToWhole(Scaled("-11")), -16);
    EXPECT_EQ(Scaled("11"), 16.5);
}

TEST_F(AttributeValue, AVariableIsScaledToo) {
    Scale(50);
    g_stFileVariables.mapProfile["w"] = "120";
    g_stVariables.uGPUNum = 4;
    EXPECT_EQ(Scaled("w"), 60);
    EXPECT_EQ(Scaled("GPUNum"), 2);
}

TEST_F(AttributeValue, TheAlignVariablesAreFinalPixels) {
    Scale(150);
    g_stVariables.iAlign2X = 10;
    g_stVariables.iAlign2Y = 76;
    EXPECT_EQ(Scaled("Align#2.x"), 10);
    EXPECT_EQ(Scaled("Align#2.y"), 76);
    g_stFileVariables.mapProfile["Align#2.y"] = "10"; // a profile's own is a length like any other
    EXPECT_EQ(Scaled("Align#2.y"), 15);
}

TEST_F(AttributeValue, TheFontScaleIsReadAndStoredTwice) {
    Scale(150);
    EXPECT_EQ(g_stFontScale.iPercent, 150);
    EXPECT_EQ(g_stFontScale.fFactor, 1.5f);
    EXPECT_EQ(g_fGlyphGapUnit, 1.5f);
}

TEST_F(AttributeValue, TheFontScaleIs100WithoutItsKey) {
    Scale(30);
    ReadScale("<Info/>");
    EXPECT_EQ(g_stFontScale.iPercent, 100);
    EXPECT_EQ(g_stFontScale.fFactor, 1.0f);
    EXPECT_EQ(g_fGlyphGapUnit, 1.0f);
    Scale(30);
    g_fnReadFontScale(nullptr);
    EXPECT_EQ(g_stFontScale.iPercent, 100);
}

TEST_F(AttributeValue, ASizeIsMultipliedByItsFactorThenScaled) {
    Scale(150);
    EXPECT_EQ(g_fnScaleSize("10", "2"), 30);
    EXPECT_EQ(g_fnScaleSize("10", "0.5"), 7.5);
    EXPECT_EQ(g_fnScaleSize("10", ""), 15);
    EXPECT_EQ(g_fnScaleSize("10", "0"), 15);
    EXPECT_EQ(g_fnScaleSize("10", "missing"), 15);
    EXPECT_EQ(g_fnScaleSize("", "2"), 0);
    g_stVariables.iAlign2X = 10;
    EXPECT_EQ(g_fnScaleSize("Align#2.x", "2"), 20);
    EXPECT_EQ(g_fnScaleSize("2", "Align#2.x"), 20);
}

TEST_F(AttributeValue, CuttingDropsWhatIsBehindThePointAndHolds) {
    EXPECT_EQ(g_fnCutToWhole(2.99), 2);
    EXPECT_EQ(g_fnCutToWhole(-2.99), -2);
    EXPECT_EQ(g_fnCutToWhole(1e300), std::numeric_limits<i32>::max());
    EXPECT_EQ(g_fnCutToWhole(-1e300), std::numeric_limits<i32>::min());
    EXPECT_EQ(g_fnCutToWhole(std::numeric_limits<f64>::quiet_NaN()), 0);
}

TEST_F(AttributeValue, NarrowingStaysFinite) {
    EXPECT_EQ(g_fnNarrow(1e300), std::numeric_limits<f32>::max());
    EXPECT_EQ(g_fnNarrow(-1e300), -std::numeric_limits<f32>::max());
    EXPECT_EQ(g_fnNarrow(0.5), 0.5f);
    EXPECT_EQ(g_fnNarrow(std::numeric_limits<f64>::infinity() - std::numeric_limits<f64>::infinity()), 0);
}

} // namespace
