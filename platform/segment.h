#pragma once
// The one block of memory that the companion and all instances share. Plain records of fixed layout, no
// pointers.
//
// Nothing in it is locked or atomic, and any process may have written anything: read a value once before
// testing it, end names at their field, test sizes and indexes.
#include "platform/types.h"
#include <cstddef>
#include <type_traits>

constexpr u32 g_uProcessRecordCount = 100;
constexpr u32 g_uProcessProfileCount = 200;
constexpr u32 g_uProfileNameUnits = 512;   ///< UTF-16 units of a profile name, terminator included
constexpr u32 g_uTargetProfileUnits = 64;  ///< of a profile name inside a command block
constexpr u32 g_uRawDataBytes = 16384;     ///< one bank of raw monitor data
constexpr u32 g_uDataTableBytes = 0x40000; ///< one bank of the name tree
constexpr u32 g_uMonitorVGABytes = 18532;  ///< per-adapter block, opaque here
constexpr u32 g_uMonitorPosWords = 16;     ///< X, Y, alignment of positions 0 to 2, then the status value
constexpr u32 g_uApiCodeUnseen = 9527;     ///< status record: no API has been seen yet
constexpr u32 g_uSegmentBytes = 0xCB170;

/// The command block.
struct stSharedCommand {
    u32 uTargetPid; ///< if not 0, only this process obeys
    u32 uTargetTid; ///< if not 0 and uTargetPid is 0, only this thread obeys
    char16_t
        wzTargetProfile[g_uTargetProfileUnits]; ///< if not empty and both ids are 0, only this profile obeys
    u8 bRelease;
    u8 aPad0[3];
    u32 uStatus; ///< status value for all status displays
    u8 bStatusChanged;
    u8 bPos0Changed;
    u8 aPad1[2];
    u32 uPos0Align, uPos0X, uPos0Y; ///< style panel 1
    u8 bPos1Changed;
    u8 aPad2[3];
    u32 uPos1Align, uPos1X, uPos1Y; ///< style panel 3
    u8 bPos2Changed;
    u8 aPad3[3];
    u32 uPos2Align, uPos2X, uPos2Y; ///< style panel 5
    u8 u8Screenshot;                ///< becomes g_bShotPending
    u8 bReloadCamera;
    u8 u8Timer; ///< toggles the stopwatch
    u8 aPad4;
    u32 uFPS; ///< status: frames per second
    u32 uPad5;
    f32 fFrameTime; ///< status: milliseconds
    u32 uApiCode;   ///< status: 1024 for OpenGL
    u8 bRebuildUpdate;
    u8 aPad6[3];
};

/// One slot of a record table. uThreadId 0: the slot is free.
struct stProcessRecord {
    u32 uThreadId;
    u32 uProcessId;
    u8 bChanged; ///< a command is waiting; used in CommandTable only
    u8 aPad[3];
    stSharedCommand Command;
};

/// Target of the next command.
struct stMonitorFilter {
    u32 uProcessId;
    u32 uThreadId;
    char16_t wzProfileName[g_uProfileNameUnits];
};

/// Profile of one process.
struct stProcessProfile {
    u32 uProcessId;
    u32 uThreadId;
    char16_t wzProfileName[g_uProfileNameUnits];
    u32 bUseGlobal; ///< not 0: the global profile stays
};

/// A companion's wish to see the frames of a process (shared/frame_trace.h).
struct stTraceRequest {
    u32 uProcessId; ///< 0: the place is free
    u32 uBeat;      ///< counted up by all who read, faster than g_uTraceSilence
    u32 uSerial;    ///< written by the instance: which of its blocks; 0: none yet
    u32 uReserved;
};

constexpr u32 g_uTraceRequests = 15;

struct stTraceRequests {
    u32 uChanges; ///< counted up behind each change of the places by a companion
    u32 auReserved[3];
    stTraceRequest aRequest[g_uTraceRequests];
};

struct stSharedSegment {
    u8 aUnused[16];
    u8 bEnableQueryFrameTime;
    u8 bGlobalEnable; ///< master switch
    u8 bSegmentReady; ///< the tables were cleared by the first process
    u8 bReserved;
    u32 uMsgUnhookThread; ///< registered message id
    u32 uMsgFromGWexe;    ///< registered message id
    u8 u8MonitorTimer;
    u8 u8MonitorScreenshot;
    u8 aPad0[2];
    stProcessRecord CommandTable[g_uProcessRecordCount]; ///< from the companion to the processes
    stSharedCommand DefaultCommand;                      ///< read by nobody
    u8 aPad1[8];
    u32 uDataBank; ///< current data bank, 1 when above 0
    u8 aPad2[12];
    stProcessRecord StatusTable[g_uProcessRecordCount]; ///< from the processes to the companion
    u32 MonitorPos[g_uMonitorPosWords];
    /// Beside each record, in a gap of the layout that nothing else uses: what tells its process from a later
    /// one with its id (platform::ProcessStamp).
    u32 aCommandStamp[g_uProcessRecordCount];
    u32 aStatusStamp[g_uProcessRecordCount];
    stTraceRequests TraceRequests; ///< in another such gap
    stMonitorFilter MonitorFilter;
    u8 aPad4[8];
    char16_t wzGlobalProfile[g_uProfileNameUnits];
    u8 RawData[2][g_uRawDataBytes];
    u8 DataTable[2][g_uDataTableBytes];
    u8 MonitorVGA[g_uMonitorVGABytes];
    u8 aPad5[12];
    stProcessProfile ProcessProfile[g_uProcessProfileCount];
};

static_assert(sizeof(stSharedCommand) == 216 && alignof(stSharedCommand) == 4);
static_assert(offsetof(stSharedCommand, uTargetTid) == 4 && offsetof(stSharedCommand, wzTargetProfile) == 8);
static_assert(offsetof(stSharedCommand, bRelease) == 136 && offsetof(stSharedCommand, uStatus) == 140);
static_assert(offsetof(stSharedCommand, bStatusChanged) == 144 &&
              offsetof(stSharedCommand, bPos0Changed) == 145);
static_assert(offsetof(stSharedCommand, uPos0Align) == 148 && offsetof(stSharedCommand, uPos0X) == 152);
static_assert(offsetof(stSharedCommand, uPos0Y) == 156 && offsetof(stSharedCommand, bPos1Changed) == 160);
static_assert(offsetof(stSharedCommand, uPos1Align) == 164 && offsetof(stSharedCommand, uPos1X) == 168);
static_assert(offsetof(stSharedCommand, uPos1Y) == 172 && offsetof(stSharedCommand, bPos2Changed) == 176);
static_assert(offsetof(stSharedCommand, uPos2Align) == 180 && offsetof(stSharedCommand, uPos2X) == 184);
static_assert(offsetof(stSharedCommand, uPos2Y) == 188 && offsetof(stSharedCommand, u8Screenshot) == 192);
static_assert(offsetof(stSharedCommand, bReloadCamera) == 193 && offsetof(stSharedCommand, u8Timer) == 194);
static_assert(offsetof(stSharedCommand, uFPS) == 196 && offsetof(stSharedCommand, fFrameTime) == 204);
static_assert(offsetof(stSharedCommand, uApiCode) == 208 && offsetof(stSharedCommand, bRebuildUpdate) == 212);

static_assert(sizeof(stProcessRecord) == 228 && offsetof(stProcessRecord, uThreadId) == 0);
static_assert(offsetof(stProcessRecord, uProcessId) == 4 && offsetof(stProcessRecord, bChanged) == 8);
static_assert(offsetof(stProcessRecord, Command) == 12);
static_assert(sizeof(stMonitorFilter) == 1032 && offsetof(stMonitorFilter, wzProfileName) == 8);
static_assert(sizeof(stProcessProfile) == 1036 && offsetof(stProcessProfile, uThreadId) == 4);
static_assert(offsetof(stProcessProfile, wzProfileName) == 8 &&
              offsetof(stProcessProfile, bUseGlobal) == 1032);

static_assert(offsetof(stSharedSegment, bEnableQueryFrameTime) == 0x10);
static_assert(offsetof(stSharedSegment, bGlobalEnable) == 0x11);
static_assert(offsetof(stSharedSegment, bSegmentReady) == 0x12);
static_assert(offsetof(stSharedSegment, bReserved) == 0x13);
static_assert(offsetof(stSharedSegment, uMsgUnhookThread) == 0x14);
static_assert(offsetof(stSharedSegment, uMsgFromGWexe) == 0x18);
static_assert(offsetof(stSharedSegment, u8MonitorTimer) == 0x1C);
static_assert(offsetof(stSharedSegment, u8MonitorScreenshot) == 0x1D);
static_assert(offsetof(stSharedSegment, CommandTable) == 0x20);
static_assert(offsetof(stSharedSegment, DefaultCommand) == 0x5930);
static_assert(offsetof(stSharedSegment, uDataBank) == 0x5A10);
static_assert(offsetof(stSharedSegment, StatusTable) == 0x5A20);
static_assert(offsetof(stSharedSegment, MonitorPos) == 0xB330);
static_assert(offsetof(stSharedSegment, TraceRequests) == 0xB690 && sizeof(stTraceRequests) == 256);
static_assert(offsetof(stSharedSegment, MonitorFilter) == 0xB790);
static_assert(offsetof(stSharedSegment, wzGlobalProfile) == 0xBBA0);
static_assert(offsetof(stSharedSegment, RawData) == 0xBFA0);
static_assert(offsetof(stSharedSegment, DataTable) == 0x13FA0);
static_assert(offsetof(stSharedSegment, MonitorVGA) == 0x93FA0);
static_assert(offsetof(stSharedSegment, ProcessProfile) == 0x98810);
static_assert(sizeof(stSharedSegment::MonitorPos) == 64 && sizeof(stSharedSegment::ProcessProfile) == 207200);
static_assert(sizeof(stSharedSegment) == g_uSegmentBytes);
static_assert(std::is_trivially_copyable_v<stSharedSegment> && std::is_standard_layout_v<stSharedSegment>);

/// Sets the five values of the initial image that are not 0. The rest of the block must be zero already; a
/// block made at run time is filled this way, since a copy of the whole image would not fit on a stack.
constexpr void g_fnApplyInitialImage(stSharedSegment& stSegment) noexcept {
    stSegment.bGlobalEnable = 1;
    stSegment.DefaultCommand.bRelease = 1;
    stSegment.DefaultCommand.uPos0Align = 1;
    stSegment.DefaultCommand.uPos1Align = 1;
    stSegment.DefaultCommand.uPos2Align = 1;
}

/// The initial image, for constant initialisation only.
consteval stSharedSegment g_fnInitialSegmentImage() noexcept {
    stSharedSegment stImage{};
    g_fnApplyInitialImage(stImage);
    return stImage;
}

/// One read of a value that another process may change at any moment.
template <class T> T g_fnReadOnce(const T& value) noexcept {
    static_assert(std::is_arithmetic_v<T>);
    return *static_cast<const volatile T*>(&value);
}
