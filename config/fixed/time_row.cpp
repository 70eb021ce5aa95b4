#include "config/fixed/time_row.h"

#include "config/fixed/style_items.h"
#include "controls/align_row.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"

namespace {

constexpr i32 c_iWidestField = 99;
constexpr f32 c_fSeparator = 0.75f; ///< width, in digits
constexpr f32 c_fRowGap = 1.0f;

struct stTimeParts {
    CPanel_Base* pPanel;
    CNumBox_Base* apFields[3];
    CTextBox_Base* apSeparators[2];
};

template <eControlKind eKind> auto* Find(eItem eOf, const char* szRole) {
    const u32 uBID = g_fnItemBID(g_stRV5Items, eOf, "SYSTEM_TIME", szRole);
    return g_fnFindCtrlById(g_fnMakeLB_ID(0, uBID), g_fnKind<eKind>());
}

stTimeParts FindParts() {
    return {Find<KIND_PANEL>(eItem::Panel, "VALUE"),
            {Find<KIND_NUMBOX>(eItem::Number, "VALUE1"), Find<KIND_NUMBOX>(eItem::Number, "VALUE2"),
             Find<KIND_NUMBOX>(eItem::Number, "VALUE3")},
            {Find<KIND_TEXTBOX>(eItem::Text, "VALUE1"), Find<KIND_TEXTBOX>(eItem::Text, "VALUE2")}};
}

void PlaceSeparator(CTextBox_Base* pText, f32 fMiddle, f32 fRow, i32 iAlign) {
    if (!pText) return;
    f32 fY = 0;
    pText->m_fnGetAnchor(nullptr, nullptr, &fY);
    const f32 afX[] = {fMiddle, fMiddle - fRow * 0.5f, fRow - fMiddle};
    pText->m_fnSetAnchor(iAlign, afX[iAlign - 7], fY);
}

void ShowWidest(CNumBox_Base* pField) {
    if (!pField) return;
    pField->m_fnSetIntEx(c_iWidestField, 2, false);
    pField->m_fnFlush();
}

void Hang(const stTimeParts& parts) {
    for (CControl* p : parts.apFields) g_pOSDManager->m_fnAddChild(parts.pPanel, p);
    for (CControl* p : parts.apSeparators) g_pOSDManager->m_fnAddChild(parts.pPanel, p);
}

} // namespace

i32 g_fnRowAlign(u32 uNumBID) {
    i32 iCode = 0;
    if (CNumBox_Base* p = g_fnFindCtrlById(g_fnMakeLB_ID(0, uNumBID), g_fnKind<KIND_NUMBOX>()))
        p->m_fnGetAnchor(&iCode, nullptr, nullptr);
    return iCode >= 7 && iCode <= 9 ? iCode : 7;
}

stTimeRow g_fnMeasureTimeRow(f32 fDigit, f32 fTextSize, f32 fSpacing) {
    const f32 fField = 2 * fDigit * fTextSize + fSpacing, fGap = fDigit * fTextSize * c_fSeparator;
    return {fField + fGap * 0.5f, 2 * fField + fGap * 1.5f, 3 * fField + 2 * fGap};
}

void g_fnJoinTimeRow() {
    const stTimeParts parts = FindParts();
    CNumBox_Base* const pHours = parts.apFields[0];
    if (!g_pOSDManager || !pHours) return;
    const i32 iAlign = g_fnRowAlign(g_fnItemBID(g_stRV5Items, eItem::Number, "SYSTEM_TIME", "VALUE1"));
    const stTimeRow row = g_fnMeasureTimeRow(pHours->m_fCellWidth, pHours->m_fTextSize, pHours->m_fSpacingX);
    PlaceSeparator(parts.apSeparators[0], row.fFirst, row.fWidth, iAlign);
    PlaceSeparator(parts.apSeparators[1], row.fSecond, row.fWidth, iAlign);
    for (CNumBox_Base* p : parts.apFields) ShowWidest(p);
    if (!parts.pPanel) return;
    Hang(parts);
    CControl* const apItems[] = {parts.apFields[0], parts.apSeparators[0], parts.apFields[1],
                                 parts.apSeparators[1], parts.apFields[2]};
    g_fnAlignRow(parts.pPanel, apItems, iAlign, c_fRowGap);
}
