#include "controls/link_controls.h"

#include "base/layout_style.h"
#include "controls/control_kinds.h"
#include "draw/draw_keys.h"

namespace {

void EnterFixedKeys(COSDManager& manager) {
    manager.m_fnAddToLayer(g_keyColorList, g_uLayerColor);
    manager.m_fnAddToLayer(g_keyTextureList, g_uLayerTexture);
    for (DrawKey key : g_keyBlurByDiameter) manager.m_fnAddToLayer(key, g_uLayerBlur);
}

template <eControlKind eKind> void AttachAll(COSDManager& manager, u32 uLayer) {
    auto* const* const ppArray = manager.m_stArrays.*g_fnKind<eKind>().pppArray;
    for (u32 i = 0; i < g_fnKind<eKind>().uEntries; ++i)
        if (ppArray[i]) manager.m_fnAttachBack(ppArray[i], uLayer);
}

void EnterFontsAndText(COSDManager& manager, const stManagerArrays& st) {
    for (u32 i = 0; i < g_uFontEntries; ++i)
        if (st.m_ppFont[i]) manager.m_fnAddToLayer(st.m_ppFont[i], g_uLayerFont);
    AttachAll<KIND_TEXTBOX>(manager, g_uLayerFont);
    AttachAll<KIND_NUMBOX>(manager, g_uLayerFont);
    AttachAll<KIND_FLIPBOX>(manager, g_uLayerFont);
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
    AttachAll<KIND_IMGBOX>(manager, g_uLayerTexture);
    if (st.m_ppImgBox[g_uShutterImage]) manager.m_fnAddChild(nullptr, st.m_ppImgBox[g_uShutterImage]);
    AttachAll<KIND_LINEGRAPH>(manager, g_uLayerColor);
    AttachAll<KIND_PIECHART>(manager, g_uLayerColor);
    LinkVideos(manager, st);
}
