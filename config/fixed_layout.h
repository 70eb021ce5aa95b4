#pragma once
// The layouts that are built in code, from tables. The profile's name chooses; any name that none of them has
// gives "Default".
#include "config/panel_records.h"

#include <string_view>

struct stFixedLayout {
    std::u16string_view wzProfile;
    u32 uLayoutStyle;                    ///< 0 Classic, 2 Custom
    std::span<const stPanelInit> panels; ///< in drawing order of records: later ones lie under earlier ones
    std::span<const stPanelInit> stylePanels; ///< u64LB_ID is the place in the style panel array
    const struct stFixedWriting* pWriting;    ///< null: none
};

/// Layout of a profile.
const stFixedLayout& g_fnFindFixedLayout(std::u16string_view wzProfile);

/// Builds the layout of g_wzProfileName into the current manager, which must be initialised. False if a panel
/// could not be made.
bool g_fnBuildFixedLayout();
