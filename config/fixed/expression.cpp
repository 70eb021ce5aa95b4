#include "config/fixed/expression.h"

#include "config/fixed/variables.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
constexpr bool IsNamePart(char c) { return IsNameStart(c) || IsDigit(c); }

/// Low 32 bits, as the language's numbers wrap.
constexpr i32 Wrap(i64 iValue) { return static_cast<i32>(static_cast<u32>(static_cast<u64>(iValue))); }

// KEEP(profiles): a divisor of 0 is not asked for; it raises the machine's fault. The work is done in 64
// bits, so that the lowest number divided by -1 wraps like all else. The checker of undefined arithmetic
// would report the fault in place of letting it happen.
__attribute__((no_sanitize("undefined"))) i32 Divide(i32 iLeft, i32 iRight) {
    return Wrap(static_cast<i64>(iLeft) / iRight);
}
__attribute__((no_sanitize("undefined"))) i32 Remainder(i32 iLeft, i32 iRight) {
    return Wrap(static_cast<i64>(iLeft) % iRight);
}

/// One evaluation over a text without blanks; the cursor only moves forward.
class CEvaluation {
  public:
    CEvaluation(std::string_view szText, bool bLogic) : m_szText(szText), m_bLogic(bLogic) {}
    /// What parentheses hold, and the whole text.
    i32 m_fnWhole() { return m_bLogic ? m_fnLogic() : m_fnSum(); }

  private:
    char m_fnPeek() const { return m_uAt < m_szText.size() ? m_szText[m_uAt] : 0; }
    bool m_fnTake(std::string_view szOperator) {
        if (m_szText.substr(m_uAt, szOperator.size()) != szOperator) return false;
        m_uAt += szOperator.size();
        return true;
    }
    /// Nothing more is read, by no level.
    i32 m_fnEnd(i32 iValue) {
        m_uAt = m_szText.size();
        return iValue;
    }

    i32 m_fnLogic();
    i32 m_fnComparison();
    bool m_fnCompare(i32& iValue);
    i32 m_fnSum();
    i32 m_fnProduct();
    i32 m_fnPrimary();
    i32 m_fnParenthesis();
    i32 m_fnLiteral();
    i32 m_fnName();

    const std::string_view m_szText;
    const bool m_bLogic;
    std::size_t m_uAt = 0;
    u32 m_uDepth = 0;
};

i32 CEvaluation::m_fnLogic() {
    i32 iValue = m_fnComparison();
    for (;;) {
        if (m_fnTake("||")) {
            // KEEP(profiles): a side that decides ends the whole text, not just this level.
            if (iValue != 0) return m_fnEnd(1);
            iValue = m_fnComparison() != 0;
        } else if (m_fnTake("&&")) {
            if (iValue == 0 || m_fnComparison() == 0) return m_fnEnd(0);
            iValue = 1;
        } else {
            return iValue;
        }
    }
}

/// Applies one operator; false if there is none.
bool CEvaluation::m_fnCompare(i32& iValue) {
    if (m_fnTake("<="))
        iValue = iValue <= m_fnSum();
    else if (m_fnTake(">="))
        iValue = iValue >= m_fnSum();
    else if (m_fnTake("=="))
        iValue = iValue == m_fnSum();
    else if (m_fnTake("<"))
        iValue = iValue < m_fnSum();
    else if (m_fnTake(">"))
        iValue = iValue > m_fnSum();
    else
        return false;
    return true;
}

i32 CEvaluation::m_fnComparison() {
    i32 iValue = m_fnSum();
    while (m_fnCompare(iValue)) {
    }
    return iValue;
}

i32 CEvaluation::m_fnSum() {
    i32 iValue = m_fnProduct();
    for (;;) {
        if (m_fnTake("+"))
            iValue = Wrap(static_cast<i64>(iValue) + m_fnProduct());
        else if (m_fnTake("-"))
            iValue = Wrap(static_cast<i64>(iValue) - m_fnProduct());
        else
            return iValue;
    }
}

i32 CEvaluation::m_fnProduct() {
    i32 iValue = m_fnPrimary();
    for (;;) {
        if (m_fnTake("*"))
            iValue = Wrap(static_cast<i64>(iValue) * m_fnPrimary());
        else if (m_fnTake("/"))
            iValue = Divide(iValue, m_fnPrimary());
        else if (m_fnTake("%"))
            iValue = Remainder(iValue, m_fnPrimary());
        else
            return iValue;
    }
}

i32 CEvaluation::m_fnPrimary() {
    bool bNegative = false;
    while (m_fnTake("-")) bNegative = !bNegative; // any number of signs, at no depth
    i32 iValue = 0;
    if (IsDigit(m_fnPeek()))
        iValue = m_fnLiteral();
    else if (IsNameStart(m_fnPeek()))
        iValue = m_fnName();
    else if (m_fnTake("("))
        iValue = m_fnParenthesis();
    return bNegative ? Wrap(-static_cast<i64>(iValue)) : iValue;
}

i32 CEvaluation::m_fnParenthesis() {
    if (m_uDepth == g_uExpressionDepthMost) return m_fnEnd(0);
    ++m_uDepth;
    const i32 iValue = m_fnWhole();
    --m_uDepth;
    m_fnTake(")"); // may be missing
    return iValue;
}

i32 CEvaluation::m_fnLiteral() {
    u32 uValue = 0;
    for (; IsDigit(m_fnPeek()); ++m_uAt) uValue = uValue * 10 + static_cast<u32>(m_fnPeek() - '0');
    return static_cast<i32>(uValue);
}

i32 CEvaluation::m_fnName() {
    const std::size_t uFrom = m_uAt;
    while (IsNamePart(m_fnPeek())) ++m_uAt;
    const std::string_view szName = m_szText.substr(uFrom, m_uAt - uFrom);
    return szName.size() > g_uVariableNameMost ? 0 : g_fnReadVariable(szName);
}

i32 Evaluate(const char* szText, bool bLogic) {
    std::string szDense(szText ? szText : "");
    // Also inside names and numbers, which thereby join.
    std::erase_if(szDense, IsBlank);
    return CEvaluation(szDense, bLogic).m_fnWhole();
}

} // namespace

i32 g_fnEvalNumber(const char* szText) { return Evaluate(szText, false); }

u32 g_fnEvalCondition(const char* szText) { return Evaluate(szText, true) != 0; }
