// Expressions against a model that never sees a text: trees are made at random, worked out as trees, written
// down, and read back.
#include "config/fixed/expression.h"
#include "config/fixed/variables.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr u32 g_uTrees = 100000, g_uLevels = 3;
constexpr const char* g_aszNames[] = {"alpha", "_b", "C3", "nowhere"};
constexpr i32 g_aiValues[] = {2, 0, -7, 0};

enum eRank { LOGIC, COMPARISON, SUM, PRODUCT, RANKS };
const std::vector<std::string> g_aOperators[RANKS] = {
    {"&&", "||"}, {"<", "<=", "==", ">=", ">"}, {"+", "-"}, {"*", "/", "%"}};

/// Operands with operators of one rank between them; a leaf has neither.
struct stTree {
    eRank uRank = RANKS;
    std::vector<std::unique_ptr<stTree>> operands;
    std::vector<std::string> operators;
    bool bParentheses = false;
    u32 uSigns = 0;
    std::string szLeaf;
    i32 iLeaf = 0;
};
using Tree = std::unique_ptr<stTree>;

class CMaker {
  public:
    explicit CMaker(bool bLogic) : m_bLogic(bLogic) {}
    Tree m_fnMake() { return m_fnRank(m_bLogic ? LOGIC : SUM, g_uLevels); }
    std::string m_fnWrite(const stTree& tree) {
        std::string sz;
        for (u32 u = 0; u < tree.uSigns; ++u) sz += "-" + m_fnBlank();
        if (tree.bParentheses) sz += "(" + m_fnBlank();
        for (std::size_t u = 0; u < tree.operands.size(); ++u) {
            if (u > 0) sz += m_fnBlank() + tree.operators[u - 1] + m_fnBlank();
            sz += m_fnWrite(*tree.operands[u]);
        }
        sz += tree.szLeaf;
        return tree.bParentheses ? sz + m_fnBlank() + ")" : sz;
    }

  private:
    u32 m_fnBelow(u32 uLimit) { return static_cast<u32>(m_rng() % uLimit); }
    std::string m_fnBlank() { return m_fnBelow(6) == 0 ? " " : ""; }
    Tree m_fnRank(u32 uRank, u32 uLevels) {
        if (uRank == RANKS) return m_fnPrimary(uLevels);
        auto p = std::make_unique<stTree>();
        p->uRank = static_cast<eRank>(uRank);
        const u32 uOperands = m_fnBelow(5) == 0 ? 2 + m_fnBelow(2) : 1;
        for (u32 u = 0; u < uOperands; ++u) {
            p->operands.push_back(m_fnRank(uRank + 1, uLevels));
            if (u > 0)
                p->operators.push_back(
                    g_aOperators[uRank][m_fnBelow(static_cast<u32>(g_aOperators[uRank].size()))]);
        }
        return p;
    }
    Tree m_fnPrimary(u32 uLevels) {
        Tree p;
        if (uLevels > 0 && m_fnBelow(3) == 0) {
            p = m_fnRank(m_bLogic ? LOGIC : SUM, uLevels - 1);
            p->bParentheses = true;
        } else {
            p = m_fnLeaf();
        }
        if (m_fnBelow(5) == 0) p->uSigns = 1 + m_fnBelow(3);
        return p;
    }
    Tree m_fnLeaf() {
        auto p = std::make_unique<stTree>();
        const u32 uKind = m_fnBelow(8);
        if (uKind < 2) {
            const u32 uName = m_fnBelow(4);
            p->szLeaf = g_aszNames[uName];
            p->iLeaf = g_aiValues[uName];
        } else {
            const u32 uValue = uKind == 2 ? static_cast<u32>(m_rng()) : m_fnBelow(6);
            p->szLeaf = std::to_string(uValue);
            p->iLeaf = static_cast<i32>(uValue);
        }
        return p;
    }

    std::mt19937_64 m_rng;
    bool m_bLogic;
};

/// Works out a tree. No value where it would divide by 0.
class CModel {
  public:
    std::optional<i32> m_fnWorkOut(const stTree& tree) {
        const i64 iValue = m_fnValue(tree);
        if (m_bFault) return std::nullopt;
        return static_cast<i32>(iValue);
    }

  private:
    static i64 Wrapped(i64 iValue) {
        i64 iLow = iValue % (i64{1} << 32);
        if (iLow >= i64{1} << 31) iLow -= i64{1} << 32;
        if (iLow < -(i64{1} << 31)) iLow += i64{1} << 32;
        return iLow;
    }
    i64 m_fnValue(const stTree& tree) {
        i64 iValue = tree.operands.empty() ? tree.iLeaf : m_fnValue(*tree.operands[0]);
        for (std::size_t u = 0; u < tree.operators.size() && !m_bStopped && !m_bFault; ++u)
            iValue = m_fnApply(iValue, tree.operators[u], *tree.operands[u + 1]);
        return tree.uSigns % 2 == 1 ? Wrapped(-iValue) : iValue;
    }
    i64 m_fnApply(i64 iLeft, const std::string& szOperator, const stTree& right) {
        const bool bAnd = szOperator == "&&", bOr = szOperator == "||";
        if ((bAnd && iLeft == 0) || (bOr && iLeft != 0)) {
            m_bStopped = true;
            return bOr;
        }
        const i64 iRight = m_fnValue(right);
        if (m_bFault) return 0;
        if (bAnd && iRight == 0) m_bStopped = true;
        if (bAnd || bOr) return iRight != 0;
        return m_fnCombine(iLeft, szOperator, iRight);
    }
    i64 m_fnCombine(i64 iLeft, const std::string& szOperator, i64 iRight) {
        if (szOperator == "<") return iLeft < iRight;
        if (szOperator == "<=") return iLeft <= iRight;
        if (szOperator == "==") return iLeft == iRight;
        if (szOperator == ">=") return iLeft >= iRight;
        if (szOperator == ">") return iLeft > iRight;
        if (szOperator == "+") return Wrapped(iLeft + iRight);
        if (szOperator == "-") return Wrapped(iLeft - iRight);
        if (szOperator == "*") return Wrapped(iLeft * iRight);
        m_bFault = m_bFault || iRight == 0;
        if (m_bFault) return 0;
        return szOperator == "/" ? Wrapped(iLeft / iRight) : iLeft % iRight;
    }
    bool m_bStopped = false, m_bFault = false;
};

class ExpressionModel : public testing::Test {
  protected:
    void SetUp() override {
        g_fnRegisterVariables();
        for (u32 u = 0; u < 3; ++u) g_fnRegisterVariable(g_aszNames[u], &g_aiValues[u], 5);
    }
    void TearDown() override { g_fnRegisterVariables(); }
    /// How many trees had a value.
    template <class Check> static u32 Compare(bool bLogic, Check fnCheck) {
        u32 uCompared = 0;
        CMaker maker(bLogic);
        for (u32 uTree = 0; uTree < g_uTrees && !HasFailure(); ++uTree) {
            const Tree tree = maker.m_fnMake();
            const std::optional<i32> value = CModel().m_fnWorkOut(*tree);
            if (!value) continue;
            ++uCompared;
            fnCheck(maker.m_fnWrite(*tree), *value);
        }
        return uCompared;
    }
};

TEST_F(ExpressionModel, NumbersAgreeWithTheModelThreeLevelsDeep) {
    const u32 uCompared = Compare(false, [](const std::string& szText, i32 iValue) {
        EXPECT_EQ(g_fnEvalNumber(szText.c_str()), iValue) << szText;
    });
    EXPECT_GT(uCompared, g_uTrees / 2);
}

TEST_F(ExpressionModel, ConditionsAgreeWithTheModelThreeLevelsDeep) {
    u32 uTrue = 0;
    const u32 uCompared = Compare(true, [&](const std::string& szText, i32 iValue) {
        uTrue += iValue != 0;
        EXPECT_EQ(g_fnEvalCondition(szText.c_str()), iValue != 0 ? 1u : 0u) << szText;
    });
    EXPECT_GT(uCompared, g_uTrees / 2);
    EXPECT_GT(uTrue, uCompared / 10);
    EXPECT_LT(uTrue, uCompared - uCompared / 10);
}

} // namespace
