#pragma once
// What the two hosts over X11 share: display, windows, events, and the picture that the X server holds.
#include "tests/hosts/host_common.h"
#include <X11/Xlib.h>

/// Display connection and windows. One a thread, so no X lock is needed beyond XInitThreads.
class CX11Windows {
  public:
    CX11Windows();
    ~CX11Windows();
    CX11Windows(const CX11Windows&) = delete;
    CX11Windows& operator=(const CX11Windows&) = delete;
    /// Maps an undecorated window with the visual and waits until it is shown; 0 on failure.
    Window m_fnMake(Visual* pVisual, int iDepth, u32 uWidth, u32 uHeight);
    void m_fnDestroy(Window uWindow);
    void m_fnResize(Window uWindow, u32 uWidth, u32 uHeight);
    void m_fnHide(Window uWindow);
    void m_fnPump();
    stPicture m_fnRead(Window uWindow);
    Display* m_pDisplay = nullptr;
};

/// The function behind a name in a library that is opened by name, as programs do that load GL themselves.
void* LookupInLibrary(const char* szLibrary, const char* szName);
/// What a preloaded measuring tool wants to be called after every frame; null when there is none.
void (*FindFrameHook())();
