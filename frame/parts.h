#pragma once
// Parts of the overlay that the frame calls where they are installed. Null: the step does nothing.
#include "capture/control_block.h"
#include "capture/preview_feed.h"
#include "capture/screenshot.h"
#include "capture/shutter.h"

struct stParts {
    bool (*m_fnIsShotReady)() = g_fnIsShotReady; ///< whether a screenshot can be taken in this frame
    /// Takes the picture of the current frame.
    void (*m_fnSaveScreenshot)() = g_fnTavo_GL_SaveScreenshot;
    /// Pictures for the video boxes; asked only while one exists.
    void (*m_fnTransferVideo)() = g_fnTransferVideo;
    void (*m_fnPollControlBlock)() = g_fnPollControlBlock; ///< the control block of outside tools
    void (*m_fnShutter)() = g_fnStepShutter;               ///< one step of the shutter animation
    void (*m_fnReloadCamera)() = g_fnReloadCamera; ///< settings of screenshots and of the companion's photo
};
extern stParts g_stParts;
