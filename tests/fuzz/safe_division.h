#pragma once
// Expressions fault on a division by 0, as they are meant to. What a fuzz target feeds them must not hold
// one, and only the text can tell beforehand.
#include <string>

/// Turns each division whose divisor is not plainly a number above 0 into a sum.
inline void MakeDivisionsSafe(std::string& szText) {
    const auto IsBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    for (std::size_t u = 0; u < szText.size(); ++u) {
        if (szText[u] != '/' && szText[u] != '%') continue;
        unsigned long long uValue = 0;
        unsigned uDigits = 0;
        for (std::size_t v = u + 1; v < szText.size() && uDigits < 10; ++v) {
            if (IsBlank(szText[v])) continue;
            if (szText[v] < '0' || szText[v] > '9') break;
            uValue = uValue * 10 + static_cast<unsigned>(szText[v] - '0');
            ++uDigits;
        }
        // From ten digits on a literal may wrap to 0.
        if (uValue == 0 || uDigits > 9) szText[u] = '+';
    }
}
