#include "config/make/video_boxes.h"

#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "controls/video_box.h"
#include "draw/draw_keys.h"
#include "shared/frame_sources.h"

#include <new>

namespace {

constexpr u32 c_uLastSource = g_uVideoSources - 1;

void Configure(CVideoBox_Base& box, const stVideoSource& st) {
    box.m_fnSetColorB(255, 255, 255, g_fnVideoAlpha(st.uAlpha));
    box.m_fnSetBoxSize(static_cast<f32>(st.uFrameSizeW), static_cast<f32>(st.uFrameSizeH));
    box.m_fnSetFrameSize(static_cast<f32>(st.uBufferSizeW), static_cast<f32>(st.uBufferSizeH));
    box.m_fnSetAnchor(st.iAnchor, static_cast<f32>(st.iPositionX), static_cast<f32>(st.iPositionY));
}

void CreateBox(u32 uSource, const stVideoSource& st) {
    if (st.uEnable == 0 || !g_fnIsFrameSize(st.uBufferSizeW, st.uBufferSizeH)) return;
    CVideoBox_Base*& pBox = g_ppVideoBox[uSource];
    pBox = new (std::nothrow) CVideoBox_Base;
    if (!pBox) return;
    Configure(*pBox, st);
    if (!pBox->m_fnInitialize()) {
        delete pBox;
        pBox = nullptr;
        return;
    }
    // KEEP(first version): no pass walks the last source's key, so its box gets frames and is never seen.
    if (uSource == c_uLastSource) pBox->m_fnSetDrawKey(g_keyVideoLast);
    g_fnOpenFrameSource(uSource, st.wzFileMappingName);
}

} // namespace

u8 g_fnVideoAlpha(u8 u8Alpha) noexcept {
    // KEEP(files): the default of 255 is no percentage, and comes out as 117.
    const u32 uClear = static_cast<u32>(static_cast<f32>(u8Alpha) * 255.0f / 100.0f);
    return static_cast<u8>(~uClear);
}

void g_fnCreateVideoBoxes() {
    g_fnCloseFrameSources();
    if (!g_stSettings.bVideoEnable || !g_ppVideoBox) return;
    g_fnReadVideoSources();
    for (u32 u = 0; u < g_uVideoSources; ++u) CreateBox(u, g_stSettings.aVideoSource[u]);
}
