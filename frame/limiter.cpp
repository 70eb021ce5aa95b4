#include "frame/limiter.h"

#include "base/log.h"
#include "base/timer.h"
#include "frame/limiter_recovery.h"
#include "platform/clock.h"

stLimiterState g_stLimiter;

/// Made at the first run that needs it, so that a process with the limiter off reads no clock.
static CTimer& LimiterTimer() {
    static CTimer timer;
    return timer;
}

static bool LogCountChange(const char* szName, u32 uNow, u32& uPrev) {
    if (uNow == uPrev) return false;
    g_fnLog("[TavoDebug] Tavo: g_fnTavo_FPS_Limiter() - %s: %d => %d", szName, static_cast<i32>(uPrev),
            static_cast<i32>(uNow));
    uPrev = uNow;
    return true;
}

/// Nothing but the log depends on this.
static void LogSettingChanges(stLimiterState& st) {
    bool bChanged = LogCountChange("EnableFPSLimiter", EnableFPSLimiter, st.uPrevEnable);
    bChanged |= LogCountChange("FPS_Target", FPS_Target, st.uPrevTarget);
    if (Frametime_Target_Sec != st.fPrevTargetSec) {
        g_fnLog("[TavoDebug] Tavo: g_fnTavo_FPS_Limiter() - Frametime_Target_Sec: %.3f => %.3f",
                static_cast<f64>(st.fPrevTargetSec), static_cast<f64>(Frametime_Target_Sec));
        st.fPrevTargetSec = Frametime_Target_Sec;
        bChanged = true;
    }
    if (bChanged) g_fnLog("[TavoDebug] Tavo: g_fnTavo_FPS_Limiter() - warning !!");
}

/// Nanoseconds to seconds in two single-precision divisions, in this order.
static f32 Seconds(i64 iNanoseconds) { return static_cast<f32>(iNanoseconds) / 1000000.0f / 1000.0f; }

/// Pure busy wait of fWait seconds, with no sleep and no yield; then the correction for the next frame: twice
/// what this wait missed its length by.
static void Spin(f32 fWait, f32& fCorrection) {
    const i64 t0 = platform::SteadyNanoseconds();
    const i64 t1 = platform::SteadyNanoseconds();
    const f32 fDeadline = static_cast<f32>(static_cast<i64>(fWait * 1000000000.0f));
    i64 tNow = platform::SteadyNanoseconds();
    while (static_cast<f32>(tNow - t1) < fDeadline) tNow = platform::SteadyNanoseconds();
    const f32 fActual = Seconds(platform::SteadyNanoseconds() - t0);
    fCorrection = (fWait - fActual) * 2.0f;
}

/// Enters one frame in the ring. True while the ring is still filling.
static bool StoreFrame(stLimiterState& st, f32 fSeconds) {
    st.fFrameSeconds[st.uWriteIndex] = fSeconds;
    st.uWriteIndex = (st.uWriteIndex + 1) % 60;
    if (st.uFillCount >= 60) return false;
    ++st.uFillCount;
    return true;
}

void g_fnTavo_FPS_Limiter() noexcept {
    stLimiterState& st = g_stLimiter;
    LogSettingChanges(st);
    if (EnableFPSLimiter == 0) return;
    if (!st.bLimiterStarted) {
        LimiterTimer().Restart();
        st.bLimiterStarted = true;
        st.tFrameStart = platform::SteadyNanoseconds();
        return;
    }
    // KEEP(figures): this timer's result is used by nobody.
    LimiterTimer().Elapsed();
    LimiterTimer().Restart();
    st.tFrameEnd = platform::SteadyNanoseconds();
    const f32 fSeconds = Seconds(st.tFrameEnd - st.tFrameStart);
    if (!StoreFrame(st, fSeconds) && fSeconds < Frametime_Target_Sec) {
        // Bounded where it is used, so that one that grew before the key was read is healed too.
        st.fCorrection = g_fnBoundCorrection(st.fCorrection, Frametime_Target_Sec);
        const f32 fWait = Frametime_Target_Sec - fSeconds + st.fCorrection;
        // KEEP(figures): neither the start of the frame nor the correction changes here, so the next measure
        // spans two frames, and a correction below the negative target is never left again.
        if (fWait > 0.0f)
            Spin(fWait, st.fCorrection);
        else if (!g_fnPayOffCorrection(st.fCorrection))
            return;
    }
    st.tFrameStart = platform::SteadyNanoseconds();
}
