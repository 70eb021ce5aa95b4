#include "draw/canvas.h"

u32 g_uWidth = 1280, g_uHeight = 720;
f32 g_fAspect = 1280.0f / 720.0f;
u32 g_uCanvasH = 1080, g_uCanvasW = 1920;
bool g_bNeedOnResize = true;
bool g_bLayoutDirty = true;

void g_fnRecomputeCanvas() noexcept {
    const i64 iWidth = static_cast<i64>(static_cast<f32>(g_uCanvasH) * g_fAspect);
    constexpr i64 c_iMost = 0xFFFFFFFF;
    g_uCanvasW = iWidth < 1 ? 1u : static_cast<u32>(iWidth > c_iMost ? c_iMost : iWidth);
}

void g_fnSetCanvasHeight(u32 uHeight) noexcept {
    constexpr u32 c_uFixed = 1080;
    g_uCanvasH = uHeight == 0 ? c_uFixed : uHeight;
    g_bNeedOnResize = true;
    g_fnRecomputeCanvas();
}

void g_fnStoreSize(u32 uWidth, u32 uHeight) noexcept {
    g_uWidth = uWidth;
    g_uHeight = uHeight;
    g_bLayoutDirty = true;
    if (uWidth == 0 || uHeight == 0) return;
    g_fAspect = static_cast<f32>(uWidth) / static_cast<f32>(uHeight);
    g_fnRecomputeCanvas();
}
