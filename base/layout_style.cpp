#include "base/layout_style.h"

u32 g_uLayoutStyle = STYLE_CLASSIC;
i32 g_iLayoutStyleOverride = -1;
