#pragma once
// Parts of the overlay that the frame calls where they are installed. Null: the step does nothing.

struct stParts {
    void (*m_fnSaveScreenshot)() = nullptr;   ///< takes the picture of the current frame
    void (*m_fnTransferVideo)() = nullptr;    ///< pictures for the video boxes; asked only while one exists
    void (*m_fnPollControlBlock)() = nullptr; ///< the companion's control block
    void (*m_fnShutter)() = nullptr;          ///< one step of the shutter animation
    void (*m_fnReloadCamera)() = nullptr;     ///< the settings of screenshots and of the companion's photo
};
extern stParts g_stParts;
