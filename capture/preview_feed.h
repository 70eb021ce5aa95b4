#pragma once
// Frames of other programs on their way into the video boxes. Render thread only.
#include "base/slots.h"
#include "platform/types.h"
#include "shared/frame_sources.h"

/// Raised for all managers when a source's period is over; each manager lowers its own and takes a frame.
extern u8 g_abVideoDue[g_uFrameSources][g_uManagerSlots];

/// Seconds from one frame of a source to the next: uInterval / uFrames milliseconds, at least 0.01; infinite
/// for no frames.
f32 g_fnVideoPeriod(u32 uInterval, u32 uFrames) noexcept;

/// Gives each box of the current manager a frame where one is due.
void g_fnTransferVideo();
/// The periods of all sources begin now.
void g_fnRestartVideoTimers() noexcept;
/// Back to the state after loading.
void g_fnResetPreviewFeed() noexcept;
