#pragma once
// Where the three blocks of Classic stand. Lengths before the font scale are whole canvas units; each one is
// scaled and cut to a whole number before it is added to others.
#include "config/fixed/style_items.h"
#include "platform/types.h"

/// What the grid goes by.
struct stClassicRows {
    u32 uWide = 0;        ///< lines of the first block
    u32 uFurther = 0;     ///< lines of the second block: cards and CPUs but the first
    u32 uDetails = 0;     ///< rows of the third block
    bool bSecond = false; ///< there is a second block
};
constexpr u32 g_uClassicColumns = 3;
struct stClassicGrid {
    i32 iWideStep = 0, iStep = 0; ///< from row to row of the first block, and of the others
    i32 iSecondY = 0, iThirdY = 0, iEndY = 0;
    i32 aiValueX[g_uClassicColumns] = {}; ///< columns of the second block
    i32 aiUnitX[g_uClassicColumns] = {};
};
stClassicGrid g_fnMakeClassicGrid(const stClassicRows& st, i32 iFontScale);
/// Counts what the enable map switches on.
stClassicRows g_fnCountClassicRows(u32 uCards, u32 uCpus);

/// What is added to the place that a panel's template gives it.
struct stOrigin {
    i32 iX = 0, iY = 0;
};
stOrigin g_fnClassicOrigin(const stClassicGrid& stGrid, const stStyleItem& item, u32 uInstance);
/// Column of the second block that a number or a unit belongs to, and its x; false for any other item.
bool g_fnClassicColumn(const stClassicGrid& stGrid, const stStyleItem& item, i32& iX);
