#include "controls/link_controls.h"

#include "base/layout_style.h"
#include "controls/later_controls.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "draw/draw_keys.h"

namespace {

constexpr u32 g_uShutterImage = 8;

void EnterFixedKeys(COSDManager& manager) {
    manager.m_fnAddToLayer(g_keyColorList, g_uLayerColor);
    manager.m_fnAddToLayer(g_keyTextureList, g_uLayerTexture);
    for (DrawKey key : g_keyBlurByDiameter) manager.m_fnAddToLayer(key, g_uLayerBlur);
}

template <class T> void AttachAll(COSDManager& manager, T* const* ppArray, u32 uEntries, u32 uLayer) {
    for (u32 i = 0; i < uEntries; ++i)
        if (ppArray[i]) manager.m_fnAttachBack(ppArray[i], uLayer);
}

void EnterFontsAndText(COSDManager& manager, const stManagerArrays& st) {
    for (u32 i = 0; i < g_uFontEntries; ++i)
        if (st.m_ppFont[i]) manager.m_fnAddToLayer(st.m_ppFont[i], g_uLayerFont);
    AttachAll(manager, st.m_ppTextBox, g_uTextBoxEntries, g_uLayerFont);
    AttachAll(manager, st.m_ppNumBox, g_uNumBoxEntries, g_uLayerFont);
    AttachAll(manager, st.m_ppFlipBox, g_uFlipBoxEntries, g_uLayerFont);
}

/// A custom layout has put its panels into the tree itself, under the frames of their items.
void HangPanels(COSDManager& manager, const stManagerArrays& st) {
    if (g_uLayoutStyle == STYLE_CUSTOM) return;
    for (u32 i = 0; i < g_uPanelEntries; ++i)
        if (st.m_ppPanel[i]) manager.m_fnAddChild(nullptr, st.m_ppPanel[i]);
}

void LinkVideos(COSDManager& manager, const stManagerArrays& st) {
    for (u32 i = 0; i < g_uVideoBoxEntries; ++i) {
        if (!st.m_ppVideoBox[i]) continue;
        manager.m_fnAttachBack(st.m_ppVideoBox[i], g_uLayerTexture);
        manager.m_fnAddChild(nullptr, st.m_ppVideoBox[i]);
    }
}

} // namespace

void g_fnLinkControls() {
    if (!g_pOSDManager || !g_pOSDManager->m_stArrays.m_ppPieChart) return; // the last one to be allocated
    COSDManager& manager = *g_pOSDManager;
    const stManagerArrays& st = manager.m_stArrays;
    EnterFixedKeys(manager);
    EnterFontsAndText(manager, st);
    HangPanels(manager, st);
    AttachAll(manager, st.m_ppImgBox, g_uImgBoxEntries, g_uLayerTexture);
    if (st.m_ppImgBox[g_uShutterImage]) manager.m_fnAddChild(nullptr, st.m_ppImgBox[g_uShutterImage]);
    AttachAll(manager, st.m_ppLineGraph, g_uLineGraphEntries, g_uLayerColor);
    AttachAll(manager, st.m_ppPieChart, g_uPieChartEntries, g_uLayerColor);
    LinkVideos(manager, st);
}
