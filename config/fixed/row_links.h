#pragma once
// Hangs the texts and numbers of rows into the rows' panels, after the group was walked.
#include "config/fixed/name_maps.h"

#include <span>

/// Items of one row, g_uNoBID for what it does not have.
struct stRowLink {
    u32 uTitlePanel, uTitleText;
    u32 uDataPanel, uNumber, uUnitText;
};
/// For every instance: the title text under the title panel, number and unit text under the data panel. What
/// does not exist is passed over.
void g_fnLinkRows(std::span<const stRowLink> rows);
