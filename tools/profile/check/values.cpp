// Texts of attributes against the table.
#include "tools/profile/check/document.h"

#include "config/settings/setting_binding.h"

#include <algorithm>
#include <cmath>
#include <tinyxml2.h>

namespace companion {
namespace {

/// The readers look at this much of an attribute.
constexpr std::size_t g_uAttributeBytes = 255;

std::string Shown(std::string_view szText) {
    constexpr std::size_t c_uMost = 40;
    const std::string str(szText);
    return '"' + (str.size() <= c_uMost ? str : str.substr(0, c_uMost) + "...") + '"';
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Behind the digits; uDigits counts them.
const char* SkipDigits(const char* sz, unsigned& uDigits) {
    for (; IsDigit(*sz); ++sz) ++uDigits;
    return sz;
}

/// Behind the number that a text begins with, where the readers stop; the text itself if there is none.
const char* NumberEnd(const char* szText, ValueKind eKind) {
    unsigned uDigits = 0;
    const char* sz = SkipDigits(*szText == '-' || *szText == '+' ? szText + 1 : szText, uDigits);
    if (eKind == ValueKind::Number && *sz == '.') sz = SkipDigits(sz + 1, uDigits);
    if (uDigits == 0) return szText;
    if (eKind != ValueKind::Number || (*sz != 'e' && *sz != 'E')) return sz;
    unsigned uPower = 0;
    const char* szEnd = SkipDigits(sz[1] == '-' || sz[1] == '+' ? sz + 2 : sz + 1, uPower);
    return uPower ? szEnd : sz;
}

bool IsBlank(const char* sz) {
    while (*sz == ' ' || *sz == '\t' || *sz == '\n' || *sz == '\r') ++sz;
    return *sz == 0;
}

/// Bytes keep their low eight bits, whole numbers their low 32.
std::string WrapWords(const stAttribute& known, double fValue) {
    if (known.eKind != ValueKind::Whole || known.fMost != 255 || std::fabs(fValue) > 1e15) return {};
    const long long iByte = static_cast<long long>(fValue) & 255;
    return "; it counts as " + std::to_string(iByte);
}

void CheckNumber(const tinyxml2::XMLAttribute& attribute, const stAttribute& known, Findings& findings) {
    const char* szText = attribute.Value();
    if (!*szText && !*known.szDefault) return;
    const std::string strWhat = std::string(known.szName) + ' ' + Shown(szText);
    const int iLine = attribute.GetLineNum();
    const char* szEnd = NumberEnd(szText, known.eKind);
    if (szEnd == szText) return findings.Error(iLine, strWhat + " is not a number and counts as 0");
    if (!IsBlank(szEnd))
        findings.Warning(iLine, strWhat + " is read only as far as " + Shown({szText, szEnd}));
    const double fValue = ReadNumber(szText, known.eKind);
    if (fValue >= known.fLeast && fValue <= known.fMost) return;
    findings.Add(known.bTolerated ? Severity::Warning : Severity::Error, iLine,
                 strWhat + " is out of range, which is " + known.szRange + WrapWords(known, fValue));
}

/// Characters beyond the basic ones take two units.
std::size_t Units(const char* szUtf8) {
    std::size_t u = 0;
    for (; *szUtf8; ++szUtf8) {
        const unsigned char c = static_cast<unsigned char>(*szUtf8);
        if ((c & 0xC0) != 0x80) u += c >= 0xF0 ? 2 : 1;
    }
    return u;
}

struct stCut {
    std::size_t uHas, uMost;
    const char* szUnit;
};

/// The first limit that a text passes.
stCut FindCut(const char* szText, const stAttribute& known) {
    const std::size_t uBytes = std::string_view(szText).size(), uMost = static_cast<std::size_t>(known.fMost);
    if (known.eKind == ValueKind::Face && Units(szText) > uMost) return {Units(szText), uMost, "letters"};
    const bool bBytes = known.eKind != ValueKind::Face;
    return {uBytes, bBytes ? std::min(uMost, g_uAttributeBytes) : g_uAttributeBytes, "bytes"};
}

void CheckText(const tinyxml2::XMLAttribute& attribute, const stAttribute& known, Findings& findings) {
    const stCut stLimit = FindCut(attribute.Value(), known);
    if (stLimit.uHas <= stLimit.uMost) return;
    findings.Error(attribute.GetLineNum(), std::string(known.szName) + " has " +
                                               std::to_string(stLimit.uHas) + ' ' + stLimit.szUnit +
                                               " and is cut after " + std::to_string(stLimit.uMost));
}

} // namespace

double ReadNumber(const char* szText, ValueKind eKind) {
    if (eKind == ValueKind::Number) return g_fnParseFloat(szText);
    return static_cast<double>(static_cast<i64>(g_fnParseDecimal(szText)));
}

void CheckValue(const tinyxml2::XMLAttribute& attribute, const stAttribute& known, Findings& findings) {
    if (known.eKind == ValueKind::Whole || known.eKind == ValueKind::Number)
        CheckNumber(attribute, known, findings);
    else
        CheckText(attribute, known, findings);
}

} // namespace companion
