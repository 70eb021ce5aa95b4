#pragma once
// Frames of this machine into the video boxes of overlays, and requests by the control block.
#include "companion/options.h"
#include "companion/result.h"
#include <string>

namespace companion {

/// A source as the settings of this machine have it, defaults applied.
struct VideoSource {
    bool bOn = false; ///< with the master switch
    std::string strName;
    u32 uBoxW = 1280, uBoxH = 720, uFrameW = 640, uFrameH = 360;
    u32 uInterval = 1000, uFrames = 40;
    i32 iAnchor = 9, iX = 0, iY = 0;
    u32 uAlpha = 255;
};
VideoSource ReadVideoSource(u32 uSource);
/// Frames a second that the overlay takes, at most 100; 0 for none.
double FramesASecond(const VideoSource& st);

/// The settings change; nothing is written into the source yet.
Result SetUpVideo(const VideoOptions& st);
Result DisableVideo(u32 uSource);
/// Writes frames until the input ends, a stop is asked for, or there were enough.
Result WriteVideo(const VideoOptions& st);
void PrintVideoSources(bool bJson);

/// Answers NotFound where no program watches the block.
Result SendControl(const VideoOptions& st);

} // namespace companion
