#pragma once
// What a companion and the instances share about recording frames: who asks for it, in the shared segment,
// and the block that an instance then writes. Plain records of fixed layout, no pointers.
//
// Nothing is locked. A companion takes a place of the table, counts its beat up every moment, and counts
// uChanges up, which makes the instances look. An instance that finds its process there makes a block of its
// own, writes where it is, and records until the beat stands still; then it gives the place back.
#include "platform/segment.h"
#include <atomic>

/// Seconds without a beat after which an instance stops recording.
constexpr u32 g_uTraceSilence = 10;

constexpr char g_szTraceTag[8] = {'O', 'R', 'V', 'T', 'R', 'A', 'C', 'E'};
constexpr u32 g_uTraceVersion = 1;
constexpr u32 g_uTraceFrames = 32768; ///< of the ring; a power of two
constexpr u32 g_uTraceHeaderBytes = 4096;
constexpr u32 g_uTraceTextBytes = 256;

/// One swap that the overlay took part in. Times are those of the performance counter.
struct stTraceFrame {
    u64 uNumber; ///< from 1 on; another number than that of the place: not written yet, or overwritten
    i64 iBefore; ///< ahead of the real swap, behind everything of the overlay
    u32 uSwap;   ///< ticks that the real swap took; 0 not known; g_uTraceLongest and more are that
    u32 uCost;   ///< ticks of the overlay itself, without its limiter
    u32 uWait;   ///< ticks that the limiter waited
    u32 uThreadId;
};
constexpr u32 g_uTraceLongest = 0xFFFFFFFF;
static_assert(sizeof(stTraceFrame) == 32);

/// What has become of the overlay in a process, as far as a head tells.
enum eTraceOverlay : u32 {
    TRACE_OVERLAY_UNTOLD,
    TRACE_OVERLAY_BUILDS,        ///< not built yet, and no try has failed
    TRACE_OVERLAY_DRAWS,         ///< built
    TRACE_OVERLAY_GAVE_UP,       ///< the context is of no use, and no other try is made in it
    TRACE_OVERLAY_LAYOUT_FAILED, ///< the last build: the profile, or what it names
    TRACE_OVERLAY_SHADERS_FAILED ///< the last build: shader files
};

/// The head of a block. Texts end at their fields.
struct stTraceHeader {
    char acTag[8]; ///< g_szTraceTag, written last
    u32 uVersion;
    u32 uHeaderBytes;
    u32 uFrameBytes;
    u32 uFrames; ///< places of the ring
    u32 uProcessId;
    u32 uSerial;
    i64 iFrequency; ///< ticks a second
    i64 iStart;
    u32 uWidth, uHeight;
    u32 uLimit; ///< frames a second; 0: none
    u32 uEnded; ///< not 0: nothing comes any more
    char szVendor[g_uTraceTextBytes];
    char szRenderer[g_uTraceTextBytes];
    char szVersion[g_uTraceTextBytes];
    char16_t wzProfile[g_uProfileNameUnits];
    u32 uOverlay;  ///< eTraceOverlay
    u32 uPassed;   ///< swaps of other surfaces that passed untouched, since the process began
    u32 uSurfaces; ///< times that the overlay came to another surface or context, likewise
    u8 aPad[2220];
    /// Frames that are whole, but for the last one's uSwap. Frame N lies at place (N - 1) mod uFrames.
    alignas(8) u64 uWritten;
};
static_assert(offsetof(stTraceHeader, szVendor) == 64 && offsetof(stTraceHeader, uWritten) == 4088);
static_assert(sizeof(stTraceHeader) == g_uTraceHeaderBytes);

constexpr u32 g_uTraceBlockBytes = g_uTraceHeaderBytes + g_uTraceFrames * sizeof(stTraceFrame);

/// Name of a block where blocks have names in the system; where they have not, that of its file.
constexpr char g_szTraceBlockFormat[] = "[ORVIN-OSD-Trace][PID:%u][%u]";
