#include "tests/hosts/host_common.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using Setter = bool (*)(stHostOptions&, const char*);

bool ReadNumber(const char* szText, u32& uOut) {
    char* pEnd = nullptr;
    const unsigned long uValue = std::strtoul(szText, &pEnd, 10);
    if (pEnd == szText || *pEnd || uValue > 0x7FFFFFFF) return false;
    uOut = u32(uValue);
    return true;
}

bool ReadDump(stHostOptions& st, const char* szText) {
    const char* pAt = std::strrchr(szText, '@');
    if (!pAt || !ReadNumber(pAt + 1, st.uDumpFrame)) return false;
    st.strDumpPpm.assign(szText, std::size_t(pAt - szText));
    return true;
}

bool ReadStutter(stHostOptions& st, const char* szText) {
    return std::sscanf(szText, "%u@%u", &st.uStutterMs, &st.uStutterEvery) == 2 && st.uStutterEvery;
}

bool ReadProfile(stHostOptions& st, const char* szText) {
    st.bCore = std::strcmp(szText, "core") == 0;
    return st.bCore || std::strcmp(szText, "compat") == 0;
}

template <u32 stHostOptions::*pMember> bool Number(stHostOptions& st, const char* szText) {
    return ReadNumber(szText, st.*pMember);
}
template <std::string stHostOptions::*pMember> bool Text(stHostOptions& st, const char* szText) {
    st.*pMember = szText;
    return true;
}
template <bool stHostOptions::*pMember> bool Flag(stHostOptions& st, const char*) {
    return st.*pMember = true;
}

bool ReadSize(stHostOptions& st, const char* szText) {
    return std::sscanf(szText, "%ux%u", &st.uWidth, &st.uHeight) == 2 && st.uWidth && st.uHeight;
}

bool ReadVersion(stHostOptions& st, const char* szText) {
    return std::sscanf(szText, "%d.%d", &st.iMajor, &st.iMinor) == 2;
}

/// 1 to a limit, of things that the program keeps in arrays.
template <u32 stHostOptions::*pMember, u32 uLimit> bool Count(stHostOptions& st, const char* szText) {
    return ReadNumber(szText, st.*pMember) && st.*pMember >= 1 && st.*pMember <= uLimit;
}
template <u32 stHostOptions::*pMember> bool Two(stHostOptions& st, const char*) {
    st.*pMember = 2;
    return true;
}

struct stSwitch {
    const char* szName;
    const char* szValue; ///< name of the value in the help; null for a plain flag
    Setter fnSet;
    const char* szHelp;
};

using O = stHostOptions;
constexpr stSwitch g_stSwitches[] = {
    {"--frames", "N", Number<&O::uFrames>, "draw and swap N frames (60)"},
    {"--size", "WxH", ReadSize, "client size in pixels (640x480)"},
    {"--profile", "core|compat", ReadProfile, "kind of context (compat)"},
    {"--gl", "MAJOR.MINOR", ReadVersion, "version to ask for (none)"},
    {"--threads", "N", Count<&O::uThreads, g_uHostThreads>, "N threads, each with window and context"},
    {"--windows", "N", Count<&O::uWindows, g_uHostWindows>, "N windows of a thread, drawn in turn"},
    {"--contexts", "N", Count<&O::uContexts, g_uHostWindows>, "N contexts of a thread, used in turn"},
    {"--second-window", nullptr, Two<&O::uWindows>, "the same as --windows 2"},
    {"--second-context", nullptr, Two<&O::uContexts>, "the same as --contexts 2"},
    {"--two-threads", nullptr, Two<&O::uThreads>, "the same as --threads 2"},
    {"--share", nullptr, Flag<&O::bShare>, "the contexts of a thread share their objects"},
    {"--objects", "N", Number<&O::uObjects>,
     "N buffers, textures and programs in the first context, N more in each further; says how many are left"},
    {"--close-first", "K", Number<&O::uCloseFirst>,
     "ahead of frame K close the first of several windows, with its own context if it has one"},
    {"--exit-while-swapping", "K", Number<&O::uExitAfter>,
     "call exit() in the main thread after K frames of another one, which goes on"},
    {"--stack-kb", "K", Number<&O::uStackKb>, "draw in a thread with a stack of K KB"},
    {"--reloads", "N", Number<&O::uReloads>,
     "Win32: load and free the library of --load-library N times beside the frames, then stop"},
    {"--resize-storm", nullptr, Flag<&O::bResizeStorm>, "another window size every third frame"},
    {"--remake-context", "K", Number<&O::uRemakeContext>, "destroy and remake the context every K frames"},
    {"--fresh-surface", nullptr, Flag<&O::bFreshSurface>,
     "another surface or device context every 30 frames"},
    {"--no-pump", nullptr, Flag<&O::bNoPump>, "never take window messages or events"},
    {"--end-fontconfig", nullptr, Flag<&O::bEndFontconfig>,
     "GLX: use fontconfig, and end it before the exit"},
    {"--swap-cpu", nullptr, Flag<&O::bSwapCpu>, "print the processor time of the costliest swap"},
    {"--swap-cpu-from", "K", Number<&O::uSwapCpuFrom>, "the same, of frame K and those behind it"},
    {"--idle", nullptr, Flag<&O::bIdle>, "swap without drawing"},
    {"--odd-state", nullptr, Flag<&O::bOddState>, "set unusual GL states before every swap"},
    {"--odd-reading", nullptr, Flag<&O::bOddReading>,
     "read the front buffer, with unusual packing, into a small buffer object at every swap"},
    {"--hide-from", "K", Number<&O::uHideFrom>, "minimise (X11: unmap) the windows ahead of frame K"},
    {"--draw-buffer", "none|front", Text<&O::strDrawBuffer>, "draw buffer of framebuffer 0 at every swap"},
    {"--pause-ms", "T", Number<&O::uPauseMs>, "wait before the first frame, taking messages"},
    {"--await-detour", nullptr, Flag<&O::bAwaitDetour>,
     "Win32: before the first frame, take messages until a jump lies over the swap"},
    {"--linger-ms", "T", Number<&O::uLingerMs>, "wait after the last frame, taking messages"},
    {"--fps-cap", "N", Number<&O::uFpsCap>, "sleep 1/N seconds every frame"},
    {"--stutter", "MS@K", ReadStutter, "sleep MS milliseconds instead behind every Kth frame"},
    {"--measure-from", "K", Number<&O::uMeasureFrom>, "take time from frame K to the end"},
    {"--swap-through", "import|getproc|dlsym", Text<&O::strSwapThrough>,
     "how the swap function is found (EGL: damage-khr, damage-ext too)"},
    {"--surface", "window|pbuffer|surfaceless", Text<&O::strSurface>, "EGL: what is drawn to"},
    {"--load-library", "PATH", Text<&O::strLoadLibrary>, "Win32: load this library before the first frame"},
    {"--scribble", "MODULE", Text<&O::strScribble>,
     "Win32: overwrite the shared sections of MODULE with random bytes after every swap"},
    {"--dump-ppm", "FILE@FRAME", ReadDump, "write the picture that frame FRAME presents"},
    {"--dump-before", "FILE", Text<&O::strDumpBefore>, "write that frame's own picture before its swap"},
    {"--print-state", nullptr, Flag<&O::bPrintState>, "print GL states before and after the swap"},
    {"--print-errors", nullptr, Flag<&O::bPrintErrors>, "print GL error codes left after each swap"},
    {"--wait-file", "PATH", Text<&O::strWaitFile>, "wait before the first frame until PATH exists"},
    {"--ready-file", "PATH", Text<&O::strReadyFile>, "make PATH when window and context stand"},
    {"--mark-file", "PATH", Text<&O::strMarkFile>, "make PATH ahead of the frame of --swap-cpu-from"},
    {"--stop-file", "PATH", Text<&O::strStopFile>, "stop early when PATH exists"},
    {"--stamps", "FILE", Text<&O::strStamps>, "write the time of every frame's end, in nanoseconds"}};

int ShowHelp() {
    std::printf("A small OpenGL program that draws one fixed picture and swaps. Switches:\n");
    for (const stSwitch& st : g_stSwitches)
        std::printf("  %-16s %-27s %s\n", st.szName, st.szValue ? st.szValue : "", st.szHelp);
    return 1;
}

const stSwitch* FindSwitch(const char* szName) {
    for (const stSwitch& st : g_stSwitches)
        if (std::strcmp(st.szName, szName) == 0) return &st;
    return nullptr;
}

} // namespace

int ParseHostOptions(int iCount, char** pszArguments, stHostOptions& stOptions) {
    for (int i = 1; i < iCount; ++i) {
        if (std::strcmp(pszArguments[i], "--help") == 0) return ShowHelp();
        const stSwitch* pSwitch = FindSwitch(pszArguments[i]);
        const char* szValue = pSwitch && pSwitch->szValue && i + 1 < iCount ? pszArguments[i + 1] : nullptr;
        if (!pSwitch || (pSwitch->szValue && !szValue) || !pSwitch->fnSet(stOptions, szValue)) {
            std::fprintf(stderr, "host: wrong switch or value: %s\n", pszArguments[i]);
            return 2;
        }
        if (pSwitch->szValue) ++i;
    }
    return 0;
}
