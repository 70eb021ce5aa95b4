#pragma once
// The panels of a style that no item is: what lies behind its blocks, and the three that show a status.
#include "config/make/panel_look.h"
#include "config/profile/profile_panel_keys.h"

class CControl;

/// Places in the manager's array of style panels.
enum eStylePanel : u32 {
    STYLE_PANEL_INFO = 0,
    STYLE_PANEL_STATUS1 = 1,
    STYLE_PANEL_MEMO = 2,
    STYLE_PANEL_STATUS2 = 3,
    STYLE_PANEL_WATERMARK = 4,
    STYLE_PANEL_STATUS3 = 5,
    STYLE_PANEL_SYSTEM_INFO = 6,
    STYLE_PANEL_PHOTO = 7
};

/// What the panel keys of a part make of a panel.
stPanelLook g_fnLookOf(const stPanelKeys& keys);
/// Makes the panel behind a block of that size, which stands at a place of the canvas. Of a type without
/// pixels it is in the tree and in no draw list. False if it could not be initialised.
bool g_fnMakeBackground(eStylePanel ePanel, const stPanelKeys& keys, const stPartPlace& stPlace, f32 fWidth,
                        f32 fHeight);
/// The same behind a control at the root, as large as it is now; nothing for a type of 0 or without a
/// control.
bool g_fnMakeBackgroundOf(eStylePanel ePanel, const stPanelKeys& keys, CControl* pControl);
/// The three status panels: in the tree, unseen until a status comes.
bool g_fnMakeStatusPanels();
