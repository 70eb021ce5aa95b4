#include "config/fixed/expression.h"

#include "config/fixed/variables.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <string>

namespace {

struct stNumberCase {
    const char* szText;
    i32 iValue;
};
struct stConditionCase {
    const char* szText;
    u32 uValue;
};

class Expression : public testing::Test {
  protected:
    void SetUp() override {
        g_fnRegisterVariables();
        g_fnRegisterVariable("a", &m_iA, 5);
        g_fnRegisterVariable("b", &m_iB, 5);
        g_fnRegisterVariable("_x1", &m_iX, 5);
    }
    void TearDown() override {
        g_stVariables.uCPUNum = g_stVariables.uGPUNum = 0;
        g_fnRegisterVariables();
    }
    template <std::size_t N> static void Numbers(const stNumberCase (&aCases)[N]) {
        for (const stNumberCase& st : aCases) EXPECT_EQ(g_fnEvalNumber(st.szText), st.iValue) << st.szText;
    }
    template <std::size_t N> static void Conditions(const stConditionCase (&aCases)[N]) {
        for (const stConditionCase& st : aCases)
            EXPECT_EQ(g_fnEvalCondition(st.szText), st.uValue) << st.szText;
    }
    i32 m_iA = 2, m_iB = 3, m_iX = 41;
};

// --- numbers -----------------------------------------------------------------------------------------------

TEST_F(Expression, NumbersOfEachLevel) {
    Numbers({{"7", 7},         {"1+2", 3},         {"1-2", -1},    {"2*3", 6},       {"7/2", 3},
             {"7%4", 3},       {"1+2*3", 7},       {"(1+2)*3", 9}, {"10-4-3", 3},    {"24/4/3", 2},
             {"24/4*3", 18},   {"7-2+1", 6},       {"2*3%4", 2},   {"-5", -5},       {"--5", 5},
             {"---5", -5},     {"3--2", 5},        {"3+-2", 1},    {"-(1+2)", -3},   {"2*-3", -6},
             {"-7/2", -3},     {"-7%4", -3},       {"7%-4", 3},    {"((((9))))", 9}, {"a*b", 6},
             {"a+b*_x1", 125}, {"(a+b)*_x1", 205}, {"-a", -2}});
}

TEST_F(Expression, ThreeLevelsOfParentheses) {
    Numbers(
        {{"(1+(2*(3+4)))*5", 75}, {"((2-(3-(4-5)))*2)", -4}, {"-(-(-(1)))", -1}, {"((1+2)*(3+(4-2)))", 15}});
    Conditions({{"(1<(2+(3*0)))==1", 1}, {"((a==2)+(b==3))==2", 1}, {"(((a)))", 1}, {"(((0)))", 0}});
}

TEST_F(Expression, NothingIsZero) {
    Numbers({{"", 0}, {" ", 0}, {nullptr, 0}});
    Conditions({{"", 0}, {"  ", 0}, {nullptr, 0}});
}

TEST_F(Expression, BlanksVanishEvenInsideNamesAndNumbers) {
    Numbers({{" 1 + 2 ", 3}, {"1 2", 12}, {"_ x 1", 41}, {"\t1\r\n+\n2", 3}, {"G P U N u m", 0}});
    g_stVariables.uGPUNum = 4;
    Numbers({{"G P U N u m", 4}});
    Conditions({{"a = = 2", 1}, {"1 | | 0", 1}, {"1 & & 1", 1}, {"a < = 2", 1}});
}

TEST_F(Expression, ArithmeticWrapsAt32Bits) {
    Numbers({{"2147483647", 2147483647},
             {"2147483648", -2147483647 - 1},
             {"4294967295", -1},
             {"4294967296", 0},
             {"4294967297", 1},
             {"99999999999999999999", 1661992959}, // 10^20 - 1, low 32 bits
             {"2147483647+1", -2147483647 - 1},
             {"-2147483648-1", 2147483647},
             {"65536*65536", 0},
             {"46341*46341", -2147479015},
             {"-2147483648", -2147483647 - 1},
             {"--2147483648", -2147483647 - 1}});
}

TEST_F(Expression, TheLowestNumberDividedByMinusOneWrapsToo) {
    Numbers({{"2147483648/-1", -2147483647 - 1}, {"2147483648%-1", 0}});
}

/// Ends the process with a code of its own at the machine's arithmetic fault.
template <class Evaluate> void ExpectFault(Evaluate fnEvaluate) {
    constexpr int iFault = 33;
    EXPECT_EXIT(
        {
            std::signal(SIGFPE, [](int) { std::_Exit(iFault); });
            fnEvaluate();
        },
        testing::ExitedWithCode(iFault), "");
}

TEST_F(Expression, DivisionByZeroFaults) {
    ExpectFault([] { g_fnEvalNumber("1/0"); });
    ExpectFault([] { g_fnEvalNumber("1%(2-2)"); });
    ExpectFault([] { g_fnEvalCondition("1/unknown"); });
}

TEST_F(Expression, ADivisionThatIsNotReadDoesNotFault) {
    Conditions({{"1||1/0", 1}, {"0&&1/0", 0}});
    Numbers({{"1#/0", 1}});
}

// --- names -------------------------------------------------------------------------------------------------

TEST_F(Expression, NamesAreLookedUp) {
    g_stVariables.uCPUNum = 2;
    g_stVariables.uGPUNum = 20;
    Numbers({{"CPUNum", 2}, {"GPUNum", 20}, {"GPUNum-CPUNum", 18}, {"unknown", 0}, {"_", 0}, {"cpunum", 0}});
}

TEST_F(Expression, ANameStartsWithALetterOrALineAndADigitEndsNone) {
    Numbers({{"2a", 2}, {"a2", 0}, {"_x1", 41}, {"_x12", 0}});
}

TEST_F(Expression, ANameOf255CharactersIsLookedUpAndOneOf256IsZero) {
    static i32 iValue = 7;
    const std::string szLong(255, 'n'), szLonger(256, 'n');
    g_fnRegisterVariable(szLong, &iValue, 5);
    g_fnRegisterVariable(szLonger, &iValue, 5);
    EXPECT_EQ(g_fnEvalNumber(szLong.c_str()), 7);
    EXPECT_EQ(g_fnEvalNumber(szLonger.c_str()), 0);
    EXPECT_EQ(g_fnEvalNumber((szLonger + "+1").c_str()), 1); // the name is read over all the same
}

TEST_F(Expression, NamesWithANumberSignCannotBeWritten) {
    g_stVariables.iAlign2X = 50;
    static i32 iAlign = 8;
    g_fnRegisterVariable("Align", &iAlign, 5);
    Numbers({{"Align#2.x", 8}, {"Align#2.x+1", 8}});
    g_stVariables.iAlign2X = 0;
}

// --- malformed text ----------------------------------------------------------------------------------------

TEST_F(Expression, AMissingOperandIsZeroAndTakesNothing) {
    Numbers({{"+", 0},
             {"*2", 0},
             {"1+", 1},
             {"1+*2", 1},
             {"3-", 3},
             {"5*", 0},
             {"-", 0},
             {"()", 0},
             {"()+4", 4},
             {"1+()+2", 3}});
    Conditions({{"<1", 1}, {"1<", 0}, {"0||", 0}, {"1&&", 0}, {"||1", 1}, {"&&1", 0}, {"==", 1}, {">=", 1}});
}

TEST_F(Expression, AMissingParenthesisIsAccepted) {
    Numbers({{"(1+2", 3}, {"((1+2)*3", 9}, {"(1", 1}, {"(", 0}, {"2*(3+(4", 14}});
    Conditions({{"(1<2", 1}, {"(1&&(0", 0}});
}

TEST_F(Expression, AnyOtherCharacterEndsTheEvaluation) {
    Numbers({{"1+2#+4", 3},
             {"1)+2", 1},
             {"1+(2#)*5", 3},
             {"7.5", 7},
             {"1+$", 1},
             {"3(4)", 3},
             {"\xC2\xB0"
              "5",
              0},
             {"1<2", 1},
             {"(1<2)+5", 1},
             {"1||2", 1},
             {"4==4", 4}});
    Conditions({{"0#||1", 0}, {"1#&&0", 1}});
}

TEST_F(Expression, ALoneEqualsOrExclamationMarkEndsTheEvaluation) {
    Conditions({{"1=2", 1},
                {"0=0", 0},
                {"1!=1", 1},
                {"!1", 0},
                {"a!b", 1},
                {"1+=5", 1},
                {"0===0", 1},
                {"1==1=0", 1}});
    Numbers({{"6=2", 6}, {"6!", 6}});
}

TEST_F(Expression, ALoneAmpersandOrBarEndsTheEvaluation) {
    Conditions({{"1&0", 1}, {"0|1", 0}, {"0&&&1", 0}, {"0|||1", 0}});
}

TEST_F(Expression, LessGreaterIsTwoOperators) {
    // 1 < (nothing) is 0, and 0 > 2 is 0; with -3 on the right 0 > -3 holds.
    Conditions({{"1<>2", 0}, {"1<>-3", 1}, {"5<>5", 0}});
}

// --- conditions --------------------------------------------------------------------------------------------

TEST_F(Expression, Comparisons) {
    Conditions({{"1<2", 1},
                {"2<2", 0},
                {"2<=2", 1},
                {"3<=2", 0},
                {"2==2", 1},
                {"2==3", 0},
                {"3>=3", 1},
                {"2>=3", 0},
                {"3>2", 1},
                {"2>2", 0},
                {"1+1==2", 1},
                {"2==1+1", 1},
                {"-1<0", 1},
                {"5", 1},
                {"-5", 1},
                {"0", 0},
                {"a==2", 1},
                {"a+b==5", 1}});
}

TEST_F(Expression, ComparisonsGoFromLeftToRight) {
    // (3 > 2) > 1 is 1 > 1; (1 == 1) == 1; (5 == 5) == 5 is 1 == 5.
    Conditions({{"3>2>1", 0}, {"1==1==1", 1}, {"5==5==5", 0}, {"1<2<3", 1}, {"3<2<1", 1}});
}

TEST_F(Expression, ATrueLeftSideOfOrEndsTheReading) {
    m_iA = 2;
    m_iB = 0;
    Conditions(
        {{"a>1 || b>5", 1}, {"a>1 || b>5 && 0", 1}, {"1 || 0 && 0 && 0", 1}, {"1||#", 1}, {"1||(", 1}});
    m_iA = 1;
    Conditions({{"a>1 || b>5", 0}});
    m_iB = 6;
    Conditions({{"a>1 || b>5", 1}});
}

TEST_F(Expression, AFalseLeftSideOfAndEndsTheReading) {
    Conditions({{"1 && 0 || 1", 0},
                {"0 && 1 || 1", 0},
                {"0&&1", 0},
                {"1&&1&&0||1", 0},
                {"1&&1", 1},
                {"1&&2&&3", 1}});
}

TEST_F(Expression, AnOrMadeTrueByItsRightSideGoesOn) {
    Conditions({{"0||1&&0", 0}, {"0||1&&1", 1}, {"0||0||1", 1}, {"0||2==2", 1}, {"0||1||0", 1}});
}

TEST_F(Expression, LogicHasOneRank) {
    // Read from left to right: (1 || ...) decides at once; (0 && ...) decides at once.
    Conditions({{"1||1&&0", 1}, {"0&&0||1", 0}, {"0||0&&1", 0}, {"1&&1||0", 1}, {"1&&0||0", 0}});
}

TEST_F(Expression, WhatDecidesInsideParenthesesEndsTheWholeText) {
    Conditions({{"(1||0)&&0", 1},
                {"(0&&1)||1", 0},
                {"((0&&1)||1)||1", 0},
                {"0==(0&&1)==0", 1},
                {"5>(1||0)+9", 1},
                {"(0||1)&&0", 0}});
}

TEST_F(Expression, ANumberHasNoLogicEvenInParentheses) {
    Numbers({{"(1||0)", 1}, {"(3&&0)+4", 3}, {"(2>1)", 2}, {"2*(5==5)", 10}});
}

// --- hostile text ------------------------------------------------------------------------------------------

TEST_F(Expression, AHundredThousandSignsAreCounted) {
    const std::string szEven(100000, '-'), szOdd(99999, '-');
    EXPECT_EQ(g_fnEvalNumber((szEven + "3").c_str()), 3);
    EXPECT_EQ(g_fnEvalNumber((szOdd + "3").c_str()), -3);
}

TEST_F(Expression, ParenthesesHoldToTheBoundAndEndTheEvaluationBeyond) {
    const auto Nested = [](u32 uDepth) {
        return "1+" + std::string(uDepth, '(') + "5" + std::string(uDepth, ')') + "+2";
    };
    EXPECT_EQ(g_fnEvalNumber(Nested(g_uExpressionDepthMost).c_str()), 8);
    EXPECT_EQ(g_fnEvalNumber(Nested(g_uExpressionDepthMost + 1).c_str()), 1);
    EXPECT_EQ(g_fnEvalNumber(Nested(100000).c_str()), 1);
    EXPECT_EQ(g_fnEvalCondition(std::string(100000, '(').c_str()), 0u);
    EXPECT_EQ(g_fnEvalCondition((std::string(1000, '(') + "1").c_str()), 0u);
    std::string szMixed;
    for (int i = 0; i < 50000; ++i) szMixed += "-(";
    EXPECT_EQ(g_fnEvalNumber(szMixed.c_str()), 0);
}

TEST_F(Expression, ParenthesesSideBySideAreNotDeep) {
    std::string szText = "0";
    for (int i = 0; i < 1000; ++i) szText += "+(1)";
    EXPECT_EQ(g_fnEvalNumber(szText.c_str()), 1000);
}

TEST_F(Expression, AMillionDigitsAreReadToTheirEnd) {
    const std::string szText = "1" + std::string(1000000, '0') + "+6";
    EXPECT_EQ(g_fnEvalNumber(szText.c_str()), 6);
}

} // namespace
