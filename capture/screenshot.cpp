#include "capture/screenshot.h"

#include "base/host_care.h"
#include "base/log.h"
#include "capture/frame_pixels.h"
#include "capture/shot_file.h"
#include "config/profile/profile_panel_keys.h"
#include "config/settings/settings.h"
#include "draw/canvas.h"
#include "platform/clock.h"
#include "platform/process.h"
#include "platform/swap_gate.h"
#include "platform/threads.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <new>
#include <string>

namespace {

constexpr u32 c_uFormatRGBA = 11;
/// With key CarefulShots no more than these are in memory at once.
constexpr u32 c_uMostWorkers = 4;
std::atomic<u32> g_uWorkers{0};

/// What a worker needs; all of it is its own.
struct stShot {
    u32 uWidth, uHeight;
    FramePixels pPixels;
    u32 uFormatCode, uCapType;
    std::u16string wstrFolder, wstrName;
};

void SaveType(const stShot& st, u32 uFileType) {
    g_fnSaveImage(st.uWidth, st.uHeight, st.pPixels.get(), st.uFormatCode, uFileType, st.wstrFolder.c_str(),
                  st.wstrName.c_str());
}

void SaveShot(const stShot& st) {
    if (st.uCapType < SHOT_TYPES) return SaveType(st, st.uCapType);
    for (const u32 uType : {SHOT_BMP, SHOT_JPEG, SHOT_PNG}) SaveType(st, uType);
}

u32 Work(void* pShot) {
    {
        const std::unique_ptr<stShot> pOwn(static_cast<stShot*>(pShot));
        SaveShot(*pOwn);
    }
    --g_uWorkers;
    return 0;
}

void StartWorker(std::unique_ptr<stShot> pShot) {
    ++g_uWorkers;
    if (platform::StartDetachedThread(&Work, pShot.get())) {
        (void)pShot.release();
        return;
    }
    --g_uWorkers;
    g_fnLog("GLGraphics: g_fnTavo_GL_Capture() - no thread");
}

void Capture(const char16_t* wzFolder, const char16_t* wzName, u32 uCapType) {
    const u32 uWidth = g_uWidth, uHeight = g_uHeight;
    FramePixels pPixels = g_fnReadFrame(uWidth, uHeight);
    if (!pPixels) return;
    g_fnFlipRows(pPixels.get(), uWidth, uHeight);
    auto pShot = std::make_unique<stShot>(
        stShot{uWidth, uHeight, std::move(pPixels), c_uFormatRGBA, uCapType, wzFolder, wzName});
    // KEEP(hosts): several files are written before the frame goes on.
    if (uCapType >= SHOT_TYPES && !g_stHostCare.bCarefulShots) return SaveShot(*pShot);
    StartWorker(std::move(pShot));
}

} // namespace

void g_fnMakeShotName(char16_t (&wzName)[g_uShotNameUnits]) noexcept {
    const platform::stLocalTime st = platform::LocalTime();
    // KEEP(companions): the hundredths come from another clock than the seconds, read a moment later.
    const auto uHundredths = static_cast<u32>(platform::UnixMilliseconds() % 1000 / 10);
    char szName[g_uShotNameUnits];
    std::snprintf(szName, sizeof szName, "Screenshot(%i)-%04i%02i%02i-%02i%02i-%02i%02i",
                  static_cast<i32>(platform::CurrentProcessId()), static_cast<i32>(st.uYear),
                  static_cast<i32>(st.uMonth), static_cast<i32>(st.uDay), static_cast<i32>(st.uHour),
                  static_cast<i32>(st.uMinute), static_cast<i32>(st.uSecond), static_cast<i32>(uHundredths));
    std::copy_n(szName, g_uShotNameUnits, wzName);
}

bool g_fnIsShotReady() noexcept {
    if (g_stHostCare.bCarefulShots && g_uWorkers.load() >= c_uMostWorkers) return false;
    return platform::HoldLibraryForSwap(); // a start of a thread and an encoder pass the loader
}

void g_fnTavo_GL_SaveScreenshot() noexcept {
    char16_t wzName[g_uShotNameUnits];
    g_fnMakeShotName(wzName);
    g_fnTavo_GL_Capture(g_wzShotFolder, wzName, g_uCapType);
}

void g_fnTavo_GL_Capture(const char16_t* wzFolder, const char16_t* wzName, u32 uCapType) noexcept {
    try {
        Capture(wzFolder, wzName, uCapType);
    } catch (...) {
        g_fnLog("GLGraphics: g_fnTavo_GL_Capture() - no memory");
    }
}

void g_fnWaitForShots(u32 uMilliseconds) noexcept {
    for (u32 u = 0; g_uWorkers.load() != 0 && u < uMilliseconds; ++u) platform::g_fnSleepMilliseconds(1);
}

void g_fnForgetShots() noexcept { g_uWorkers = 0; }

void g_fnReloadCamera() {
    g_fnReadCameraSettings(g_stLooks.stPhoto.uFrameSizeW, g_stLooks.stPhoto.uFrameSizeH);
}
