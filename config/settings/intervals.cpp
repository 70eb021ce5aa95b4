#include "config/settings/intervals.h"

#include <algorithm>

u32 uFPSIntervalMs = g_uFirstFPSIntervalMs;
u32 uDataIntervalMs = g_uFirstDataIntervalMs;
f32 fFPSInterval = 0.1f;
f32 fDataInterval = 0.5f;
u32 uFPSRingSize = 11;
u32 uFPSWindowMs = 1000;
u32 uFrameRingIndex = 0;

void g_fnSetupIntervals() noexcept {
    uFPSIntervalMs = std::clamp<u32>(uFPSIntervalMs, 10, 10000);
    uDataIntervalMs = std::clamp<u32>(uDataIntervalMs, 10, 10000);
    fFPSInterval = static_cast<f32>(uFPSIntervalMs) / 1000.0f;
    fDataInterval = static_cast<f32>(uDataIntervalMs) / 1000.0f;
    const u32 uSlots = 1000 / uFPSIntervalMs;
    uFPSWindowMs = uSlots ? uSlots * uFPSIntervalMs : uFPSIntervalMs;
    uFPSRingSize = uSlots ? uSlots + 1 : 2;
    uFrameRingIndex = 0;
}
