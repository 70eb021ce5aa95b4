// The input as an expression, as it is and with other blanks. Divisions by 0 are kept out of it.
#include "config/fixed/expression.h"
#include "config/fixed/variables.h"
#include "tests/fuzz/safe_division.h"

#include <cstdlib>
#include <string>

namespace {

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    g_fnRegisterVariables();
    g_stVariables.uCPUNum = 1;
    g_stVariables.uGPUNum = 20;
    std::string szText(reinterpret_cast<const char*>(pData), uBytes);
    szText.resize(std::min(szText.find('\0'), szText.size()));
    MakeDivisionsSafe(szText);
    std::string szWide = " ";
    for (const char c : szText) szWide.append(1, c).append(" ");
    const i32 iNumber = g_fnEvalNumber(szText.c_str());
    const u32 uCondition = g_fnEvalCondition(szText.c_str());
    Require(uCondition <= 1);
    Require(g_fnEvalNumber(szWide.c_str()) == iNumber && g_fnEvalCondition(szWide.c_str()) == uCondition);
    // A literal after the end of the reading changes nothing.
    Require(g_fnEvalNumber((szText + "#1").c_str()) == iNumber);
    Require(g_fnEvalCondition((szText + "#1").c_str()) == uCondition);
    return 0;
}
