#include "config/fixed/template_init.h"

#include "base/numbers.h"
#include "config/fixed/attribute_value.h"
#include "controls/control_ids.h"
#include "draw/canvas.h"

namespace {

/// An item's template, or that of the item that stands in for it.
template <class Pool> auto FindTemplate(const Pool& pool, const stItemInstance& st) {
    const auto* pTemplate = pool.m_fnFind(st.uBID);
    return pTemplate ? pTemplate : pool.m_fnFind(st.uTemplateBID);
}

template <class T> void SetPlace(const stItemInstance& st, const stItemPlace& stPlace, T& stOut) {
    stOut.u64LB_ID = g_fnMakeLB_ID(st.uInstance, st.uBID);
    stOut.iAnchorCode = stPlace.iAnchor;
    stOut.iX = stPlace.iAnchorX;
    stOut.iY = stPlace.iAnchorY;
}

template <class T>
void SetLook(const stTextStyle& stStyle, const stTextColors& stColors, bool bShadow, T& stOut) {
    stOut.uFont = stStyle.uFontID;
    stOut.stLook = {stColors, stStyle.fTextSize, stStyle.fTextSpacingX, stStyle.fTextSpacingY, bShadow};
}

} // namespace

bool g_fnMakeTextInit(const stItemInstance& st, const stTextColors& stColors, bool bShadow,
                      stTextInit& stOut) {
    const stTextTemplate* pTemplate = FindTemplate(g_stTemplates.poolTextBox, st);
    const stTextStyle* pStyle =
        pTemplate ? g_stTemplates.poolTextBoxStyle.m_fnFind(pTemplate->uStyleID) : nullptr;
    if (!pStyle) return false;
    stOut = {};
    SetPlace(st, *pTemplate, stOut);
    SetLook(*pStyle, stColors, bShadow, stOut);
    stOut.bAutoSize = stOut.bFitToText = true;
    stOut.wzText = pTemplate->wzText.c_str();
    return true;
}

bool g_fnMakeNumInit(const stItemInstance& st, const stTextColors& stColors, bool bShadow, stNumInit& stOut) {
    const stNumTemplate* pTemplate = FindTemplate(g_stTemplates.poolNumBox, st);
    const stTextStyle* pStyle =
        pTemplate ? g_stTemplates.poolNumBoxStyle.m_fnFind(pTemplate->uStyleID) : nullptr;
    if (!pStyle) return false;
    stOut = {};
    SetPlace(st, *pTemplate, stOut);
    SetLook(*pStyle, stColors, bShadow, stOut);
    stOut.stLook.m_fTextSpacingX = pTemplate->fDigitSpacing;
    stOut.iWidth = pTemplate->iWidth;
    stOut.iHeight = pTemplate->iHeight;
    stOut.uPadDigits = pTemplate->uDigitPadding;
    stOut.uHidePad = pTemplate->uHideDigitPad;
    stOut.uDataKind = g_uDataKindNone;
    stOut.uDataArg = st.uDataIndex;
    return true;
}

bool g_fnMakeFlipInit(const stItemInstance& st, const stTextColors& stColors, bool bShadow,
                      stFlipInit& stOut) {
    const stFlipTemplate* pTemplate = FindTemplate(g_stTemplates.poolFlipBox, st);
    const stTextStyle* pStyle =
        pTemplate ? g_stTemplates.poolFlipBoxStyle.m_fnFind(pTemplate->uStyleID) : nullptr;
    if (!pStyle) return false;
    stOut = {};
    SetPlace(st, *pTemplate, stOut);
    SetLook(*pStyle, stColors, bShadow, stOut);
    stOut.uDataArg = st.uDataIndex;
    for (u32 u = 0; u < g_uFlipTexts; ++u) stOut.awzText[u] = pTemplate->awzText[u].c_str();
    return true;
}

bool g_fnMakePanelInit(const stItemInstance& st, const stPanelLook& stLook, stPanelInit& stOut) {
    const stPanelTemplate* pTemplate = FindTemplate(g_stTemplates.poolPanel, st);
    const stPanelStyle* pStyle =
        pTemplate ? g_stTemplates.poolPanelStyle.m_fnFind(pTemplate->uStyleID) : nullptr;
    if (!pStyle) return false;
    stOut = {};
    SetPlace(st, *pTemplate, stOut);
    stOut.iWidth = pStyle->iWidth ? pStyle->iWidth : pTemplate->iWidth;
    stOut.iHeight = pStyle->iHeight ? pStyle->iHeight : pTemplate->iHeight;
    static_cast<stPanelLook&>(stOut) = stLook;
    stOut.bHidden = pTemplate->bHidden;
    return true;
}

f32 g_fnSettingsTextSize(i32 iFontScale) {
    return g_fnNarrow(static_cast<f64>(g_uCanvasH) * iFontScale / 100.0);
}
