#pragma once
// Size of the hooked window's client area and of the virtual canvas that the overlay is laid out on.
#include "platform/types.h"

/// Client area in pixels.
extern u32 g_uWidth, g_uHeight;
/// Width divided by height; keeps its last value while a side is 0.
extern f32 g_fAspect;
/// Virtual canvas. The height is the configured reference height, the width follows the aspect (at least 1).
extern u32 g_uCanvasH, g_uCanvasW;
/// The next render must run the resize step.
extern bool g_bNeedOnResize;
/// Set on every size change and never cleared; read by the data update.
extern bool g_bLayoutDirty;

/// Stores the client size, marks the layout dirty and recomputes aspect and canvas. A size with a 0 side is
/// stored, but aspect and canvas keep their last values.
void g_fnStoreSize(u32 uWidth, u32 uHeight) noexcept;
/// Another reference height, in canvas units; 0 stands for 1080. The width follows, and the next render runs
/// the resize step.
void g_fnSetCanvasHeight(u32 uHeight) noexcept;
/// Recomputes g_uCanvasW from g_uCanvasH and g_fAspect, in single precision, truncated.
void g_fnRecomputeCanvas() noexcept;
