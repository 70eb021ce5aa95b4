#pragma once
// Layout style, as the profile names it.
#include "platform/types.h"

/// Other values build Classic, but count as none of the three.
enum eLayoutStyle : u32 { STYLE_CLASSIC = 0, STYLE_RV5 = 1, STYLE_CUSTOM = 2 };
constexpr u32 g_uLayoutStyles = 3;

extern u32 g_uLayoutStyle;
/// Style that rules in place of the profile's; -1: the profile decides. Nothing sets it.
extern i32 g_iLayoutStyleOverride;
