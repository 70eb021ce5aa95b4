#pragma once
// Where the styles with fixed tables put their Info block; the debug rows show it.
#include "platform/types.h"

struct stInfoPlace {
    i32 iAnchor = 1;          ///< anchor code
    i32 iX = 0, iY = 0;       ///< offset
    i32 iSizeRowAlignRV5 = 7; ///< anchor code of the RV5 style's resolution row: 7, 8 or 9
};
extern stInfoPlace g_stInfoPlace;
