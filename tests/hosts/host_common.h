#pragma once
// What the host programs share: switches, the frame loop, and the lines that tests read. A host program is an
// ordinary OpenGL program that knows nothing of the overlay; each window system adds one CWindowSystem.
#include "platform/types.h"
#include <memory>
#include <string>
#include <vector>

/// Most threads of a program, and most windows and contexts of a thread.
constexpr u32 g_uHostThreads = 16, g_uHostWindows = 8;

/// Everything the command line can ask for. Defaults are those of a small, well-behaved program.
struct stHostOptions {
    u32 uFrames = 60;
    u32 uWidth = 640, uHeight = 480;
    bool bCore = false;
    i32 iMajor = 0, iMinor = 0;      ///< 0.0: whatever the driver gives without asking
    u32 uThreads = 1;                ///< each with windows and contexts of its own
    u32 uWindows = 1, uContexts = 1; ///< of a thread, used in turn
    bool bShare = false;             ///< all contexts of a thread share their objects
    u32 uObjects = 0;    ///< buffers, textures and programs of a context that have to outlive its frames
    u32 uCloseFirst = 0; ///< frame ahead of which the first window goes, with its context; 0 never
    bool bResizeStorm = false, bNoPump = false, bOddState = false, bFreshSurface = false, bIdle = false;
    bool bOddReading = false;
    u32 uHideFrom = 0; ///< frame ahead of which the windows are minimised or unmapped; 0 never
    bool bSwapCpu = false;
    u32 uSwapCpuFrom = 1;
    bool bEndFontconfig = false;
    u32 uRemakeContext = 0;                ///< remake the context every so many frames; 0 never
    u32 uPauseMs = 0, uLingerMs = 0;       ///< once before the first and once after the last frame
    u32 uFpsCap = 0;                       ///< sleep of 1/cap seconds a frame; 0 none
    u32 uStutterMs = 0, uStutterEvery = 0; ///< that sleep in place of the cap's, every so many frames
    u32 uMeasureFrom = 0;                  ///< frame number at which cost is taken up
    u32 uExitAfter =
        0; ///< frames of another thread after which the main thread calls exit(); 0: no such thread
    u32 uStackKb = 0; ///< the frames come from a thread with a stack of so many KB; 0: the main thread
    u32 uReloads = 0; ///< Win32 only: load and free strLoadLibrary so often while frames are drawn
    bool bPrintState = false, bPrintErrors = false;
    std::string strSurface = "window";     ///< EGL only: window, pbuffer or surfaceless
    std::string strDrawBuffer;             ///< at the swap: none or front; empty: the back one, as always
    std::string strSwapThrough = "import"; ///< import, getproc or dlsym; EGL: damage-khr or damage-ext too
    std::string strLoadLibrary;            ///< Win32 only
    bool bAwaitDetour = false;             ///< Win32 only
    std::string strScribble;               ///< Win32 only: module whose shared sections are overwritten
    std::string strDumpPpm, strDumpBefore, strStamps, strWaitFile, strReadyFile, strMarkFile, strStopFile;
    u32 uDumpFrame = 0; ///< frame number (first is 1) whose picture is written
};

/// Pixels, three bytes each, rows from top to bottom. Empty means that the picture could not be read.
struct stPicture {
    u32 uWidth = 0, uHeight = 0;
    std::vector<u8> u8Rgb;
};

using WindowRef = void*;
using ContextRef = void*;

/// One connection to a window system; each swapping thread has its own.
class CWindowSystem {
  public:
    virtual ~CWindowSystem() = default;
    virtual bool m_fnOpen(const stHostOptions& stOptions) = 0;
    virtual WindowRef m_fnMakeWindow(u32 uWidth, u32 uHeight) = 0;
    virtual void m_fnDestroyWindow(WindowRef pWindow) = 0;
    virtual void m_fnResize(WindowRef pWindow, u32 uWidth, u32 uHeight) = 0;
    /// Minimises the window, or takes it off the screen where nothing manages windows.
    virtual void m_fnHide(WindowRef) {}
    virtual ContextRef m_fnMakeContext(WindowRef pWindow, ContextRef pShare) = 0;
    virtual void m_fnDestroyContext(ContextRef pContext) = 0;
    virtual bool m_fnMakeCurrent(WindowRef pWindow, ContextRef pContext) = 0;
    virtual bool m_fnSwap(WindowRef pWindow) = 0;
    virtual void m_fnPump() {}
    /// Puts another surface (Win32: device context) behind the window; the caller makes it current
    /// afterwards.
    virtual void m_fnFreshSurface(WindowRef) {}
    /// The picture that the window shows now, after a swap.
    virtual stPicture m_fnReadPresented(WindowRef pWindow) = 0;
    /// How m_fnReadPresented gets it, for the "presented_from" line.
    virtual const char* m_fnPresentedFrom() const = 0;
    virtual void* m_fnGetProc(const char* szName) = 0;
    /// Writes random bytes into the shared sections of a loaded module; nothing while it isn't loaded.
    virtual void m_fnScribble(const std::string&, u32) {}
    /// True when what was to happen beside the frames is over, so that they may end too.
    virtual bool m_fnIsDone() { return false; }
    /// Whether somebody has laid a jump over the swap since the program began.
    virtual bool m_fnIsDetoured() { return true; }
    /// Called at the end of each frame when a measuring tool was put into the process; null otherwise.
    virtual void (*m_fnFrameHook())() { return nullptr; }
};

/// Made once per host program.
std::unique_ptr<CWindowSystem> MakeWindowSystem();

/// Reads the switches. 0: go on; 1: --help was shown; 2: a switch is wrong (a line says which).
int ParseHostOptions(int iCount, char** pszArguments, stHostOptions& stOptions);
/// Runs the program and prints its lines. Exit code: 0, 2 wrong switch, 3 no window system, window or
/// context.
int RunHost(int iCount, char** pszArguments);

/// Where the next window of this width goes: windows stand side by side, so that each is seen whole.
int NextWindowX(u32 uWidth);

/// Writes a binary PPM; false on an empty picture or a file error.
bool WritePpm(const std::string& strPath, const stPicture& stShown);
/// Appends a piece to a list in text, with a comma between pieces.
void AppendPiece(std::string& strList, const std::string& strPiece);
/// Prints one "key=value" line and flushes it.
void PrintLine(const std::string& strKey, const std::string& strValue);
