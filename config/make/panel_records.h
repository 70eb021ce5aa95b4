#pragma once
// Panels from records.
#include "config/make/panel_look.h"
#include "platform/types.h"

#include <memory>
#include <span>

/// One panel to make. Lengths in canvas units.
struct stPanelInit : stPanelLook {
    u64 u64LB_ID;
    i32 iAnchorCode;
    i32 iX, iY;
    i32 iWidth, iHeight;
    bool bHidden; ///< takes part in layout only
};

/// Highest blur diameter; a record above it keeps its value and acts as this.
constexpr u32 g_uScatterMax = 100;

/// Makes one panel and what it draws with. False if that failed; pPanel is null then, or if there was no
/// memory.
bool g_fnMakePanel(const stPanelInit& stRecord, std::unique_ptr<CPanel_Base>& pPanel);

/// Gives a panel the draw key of its record's type and attaches it below all that is drawn so far. Nothing
/// for a hidden panel and for a type without pixels.
void g_fnAttachPanel(CPanel_Base& panel, const stPanelInit& st);

/// Makes, registers and attaches one panel per record, in order. Panels made later lie under earlier ones.
/// False if a panel could not be initialised; those made before it stay.
bool g_fnCreatePanels(std::span<const stPanelInit> records);

/// A panel's byte alpha as whole percent, and back; both round down, so 3 becomes 1 and then 2.
constexpr u32 g_fnAlphaToPercent(u32 uAlpha) { return uAlpha * 100 / 255; }
constexpr u8 g_fnPercentToAlpha(u32 uPercent) { return static_cast<u8>(uPercent * 255 / 100); }
