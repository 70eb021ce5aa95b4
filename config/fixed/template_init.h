#pragma once
// From template and style to the record that a control is made of, for one instance of an item.
#include "config/fixed/template_records.h"
#include "config/make/flip_records.h"
#include "config/make/number_records.h"
#include "config/make/panel_records.h"
#include "config/make/text_look.h"
#include "config/make/text_records.h"

/// Which copy of which item a record is for.
struct stItemInstance {
    u32 uInstance;
    u32 uBID;
    u32 uDataIndex = 0;               ///< card, CPU or group that the instance shows
    u32 uTemplateBID = g_uNoTemplate; ///< whose template serves where the item has none
};

/// Each writes the record of an item's instance. False, with the record untouched, if the item has no
/// template, or the template's style was not read. Texts point into the pool.
bool g_fnMakeTextInit(const stItemInstance& st, const stTextColors& stColors, bool bShadow,
                      stTextInit& stOut);
bool g_fnMakeNumInit(const stItemInstance& st, const stTextColors& stColors, bool bShadow, stNumInit& stOut);
bool g_fnMakeFlipInit(const stItemInstance& st, const stTextColors& stColors, bool bShadow,
                      stFlipInit& stOut);
bool g_fnMakePanelInit(const stItemInstance& st, const stPanelLook& stLook, stPanelInit& stOut);

/// Text size of memo, watermark and system information: percent of the canvas height.
f32 g_fnSettingsTextSize(i32 iFontScale);
