#pragma once
// The small integer language of group files: conditions and loop bounds over the registered variables.
//
//   logic      = comparison { ("&&" | "||") comparison }
//   comparison = sum { ("<=" | ">=" | "==" | "<" | ">") sum }
//   sum        = product { ("+" | "-") product }
//   product    = primary { ("*" | "/" | "%") primary }
//   primary    = digits | name | "(" logic ")" | "-" primary
//
// White space is removed first, wherever it stands. All operators of a level have the same rank and work from
// left to right over 32-bit integers that wrap. A missing operand is 0, a missing ")" is allowed, and any
// other character ends the evaluation with the value so far. Names are those of g_fnReadVariable.
#include "platform/types.h"

/// Parentheses deeper than this end the evaluation, as 0. No attribute is long enough to get there.
constexpr u32 g_uExpressionDepthMost = 256;
/// A longer name reads as 0.
constexpr u32 g_uVariableNameMost = 255;

/// Value of a sum; parentheses hold a sum too. Null counts as empty, which is 0. Division by 0 faults.
i32 g_fnEvalNumber(const char* szText);
/// 1 if the logic is not 0, else 0. A side that decides alone ends the whole evaluation: what follows is not
/// read.
u32 g_fnEvalCondition(const char* szText);
