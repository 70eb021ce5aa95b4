#pragma once
// Where the prescribed behaviour harms the program, a key of section [HostCare] of OSD.ini puts the program
// first. A key that is missing or 0 leaves the prescribed behaviour to the letter; the shipped file sets all
// of them to 1.

/// One switch a key of the section, by the key's name.
struct stHostCare {
    bool bOuterGuard = false; ///< a second guard around the state guard: nothing of the program's is lost
    bool bStayWithSurface = false;     ///< swaps of other surfaces pass untouched
    bool bLimiterRecovery = false;     ///< the limiter's correction is bounded
    bool bRestoreAfterFailure = false; ///< a failed build gives the program its state back
    bool bMergedDraw = false;          ///< pictures from few calls
    bool bCarefulShots = false;        ///< screenshots read the window, and no frame waits for a file
};
extern stHostCare g_stHostCare;
