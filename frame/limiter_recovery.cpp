#include "frame/limiter_recovery.h"

#include "base/host_care.h"

#include <algorithm>

f32 g_fnBoundCorrection(f32 fCorrection, f32 fTargetSeconds) noexcept {
    if (!g_stHostCare.bLimiterRecovery) return fCorrection;
    const f32 fMost = fTargetSeconds * 0.25f;
    return std::clamp(fCorrection, -fMost, fMost);
}

bool g_fnPayOffCorrection(f32& fCorrection) noexcept {
    if (!g_stHostCare.bLimiterRecovery) return false;
    fCorrection = 0.0f;
    return true;
}
