#include "config/settings/limiter_settings.h"

#include "base/log.h"

u32 EnableFPSLimiter = 0;
u32 FPS_Target = 0;
f32 Frametime_Target_Sec = g_fFirstTargetSec;

void g_fnTavo_Setup_FPS_Limiter() noexcept {
    if (FPS_Target == 0) FPS_Target = 1;
    g_fnLog("[TavoDebug] Tavo: g_fnTavo_Setup_FPS_Limiter() - set FPS_Target: %d",
            static_cast<i32>(FPS_Target));
    Frametime_Target_Sec = 1.0f / static_cast<f32>(FPS_Target);
    g_fnLog("[TavoDebug] Tavo: g_fnTavo_Setup_FPS_Limiter() - Frametime_Target_Sec: %.3f",
            static_cast<f64>(Frametime_Target_Sec));
}

void g_fnTavo_Apply_FPS_Limiter() noexcept {
    if (FPS_Target == 0)
        EnableFPSLimiter = 0;
    else
        g_fnTavo_Setup_FPS_Limiter();
}
