#pragma once
// A program that exists only to be drawn upon: the overlay builds its layout and draws its frames in it as in
// any other, over an off-screen context and with simulated time.
#include "companion/result.h"
#include "platform/profile_picture.h"
#include "tools/profile/values.h"
#include <filesystem>
#include <functional>

namespace companion {

struct RenderPlan {
    std::filesystem::path pathCommon;   ///< common application data folder
    std::filesystem::path pathSettings; ///< data folder beside which the machine's settings stand
    bool bSettingsNamed = false;        ///< it was chosen, and is not the machine's own
    std::string strProfile;             ///< name of a folder below Profiles in it
    Picture background;                 ///< its size is that of the framebuffer
    const ValueSource* pValues = nullptr;
    u32 uFrames = 0;       ///< frames drawn; 0: as many as fill dSeconds of simulated time
    double dSeconds = 0.0; ///< at least one frame is drawn
    bool bVerbose = false; ///< what the overlay logs goes to standard error
};

/// Real time, milliseconds.
struct RenderTimes {
    double dFirstFrame = 0.0; ///< with the build of the layout
    double dSecondFrame = 0.0;
    u32 uFrames = 0; ///< drawn in all
};

/// Called between frames; true ends the work.
using StopAsked = std::function<bool()>;

/// Draws a profile. picture: framebuffer 0 after the last frame. Fails with the overlay's own reason if no
/// layout comes out of the profile, and with an empty reason if a stop was asked for.
Result RenderProfile(const RenderPlan& stPlan, const StopAsked& fnStop, Picture& picture,
                     RenderTimes& stTimes);

/// Builds a profile's layout, draws the frames of the plan, has fnLook look at it, and releases it.
Result WithBuiltProfile(const RenderPlan& stPlan, const std::function<Result()>& fnLook);

} // namespace companion
