#pragma once
// Screenshots: the frame is read on the render thread, and a worker of its own encodes it.
#include "platform/types.h"

/// Whether a screenshot can be taken in this frame. False: with a later one, as the library is being unloaded
/// or, with key CarefulShots of [HostCare], enough of them are being written.
bool g_fnIsShotReady() noexcept;
/// Takes the picture of the current frame, by the settings of the moment. For the moment of the frame that
/// the capture mode says.
void g_fnTavo_GL_SaveScreenshot() noexcept;
/// Reads the frame and has it written: one file by a worker, or all (uCapType 4 and above) before it returns;
/// with key CarefulShots all by a worker. A shot that fails is lost, and nobody is told.
void g_fnTavo_GL_Capture(const char16_t* wzFolder, const char16_t* wzName, u32 uCapType) noexcept;

/// Name of a screenshot that is taken now, without extension: "Screenshot(PID)-YYYYMMDD-hhmm-sscc" with
/// hundredths of a second.
constexpr u32 g_uShotNameUnits = 64;
void g_fnMakeShotName(char16_t (&wzName)[g_uShotNameUnits]) noexcept;

/// Waits until no worker is left, uMilliseconds at most. For the end of the process.
void g_fnWaitForShots(u32 uMilliseconds) noexcept;
/// For a process that is the copy of another: that one's workers are not here.
void g_fnForgetShots() noexcept;

/// Reads the settings of screenshots and of the companion's photo again.
void g_fnReloadCamera();
