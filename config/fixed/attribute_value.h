#pragma once
// Numbers of template attributes: written out, or named by a variable; and what a profile's font scale makes
// of them.
#include "platform/types.h"

#include <string_view>

namespace tinyxml2 {
class XMLElement;
}

/// "FontScale" of a profile. The gap unit of aligned rows holds the factor too.
struct stFontScale {
    i32 iPercent = 100;
    f32 fFactor = 1.0f;
};
extern stFontScale g_stFontScale;
/// Reads both from "Info"; 100 where that is missing.
void g_fnReadFontScale(const tinyxml2::XMLElement* pInfo);

/// A value, and whether it is in final pixels: the font scale leaves it alone then.
struct stAttributeValue {
    f64 fValue = 0;
    bool bFinal = false;
};

/// True for digits with at most one point, after at most one "-".
bool g_fnIsPlainNumber(std::string_view szText);
/// A plain number's value; otherwise that of the profile's variable of that name, or else the program's, or
/// else 0.
stAttributeValue g_fnReadAttribute(std::string_view szText);
/// Value * font scale, or the value alone if it is final.
f64 g_fnScaleAttribute(const stAttributeValue& st);
/// Scaled product of a size and its factor, which counts as 1 where it is 0.
f64 g_fnScaleSize(std::string_view szSize, std::string_view szFactor);
/// The part before the point; held to 32 bits.
i32 g_fnCutToWhole(f64 fValue);
