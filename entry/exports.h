#pragma once
// The flat interface that the companion calls in its own process. All but the hook callback and the
// un-hooking only touch the shared segment. Wide strings are UTF-16 on every platform. Nothing throws.
#include "platform/export.h"
#include "platform/types.h"
#include <map>
#include <set>
#include <string>

/// Has no members; its two assignment operators are all that exist of it.
class ORVIN_EXPORT CGWDll {
  public:
    CGWDll& operator=(const CGWDll& other);
    CGWDll& operator=(CGWDll&& other);
};

/// Failure of sendCmd_GWDLL_GL, and its answer to disabling.
constexpr u32 g_uSendCmdFailed = 0xFFFFFFFF;

extern "C" {
/// Resets the segment; called once at the companion's start.
ORVIN_EXPORT void InitialSharedSegmentData_GL();
/// Switches frame-time reporting.
ORVIN_EXPORT void EnableQueryFrameTime_GL(u8 bEnable);
/// Sends command 0 to 9 to one process (by id or thread id) or, with thread id 0, to all. Returns 0, or
/// 0xFFFFFFFF for a wrong number and for disabling. Not re-entrant: call it from one thread.
ORVIN_EXPORT u32 sendCmd_GWDLL_GL(u32 uCommand, u32 uProcessId, u32 uThreadId, i64 iArgument);
/// Raw monitor values into the current bank; a size below 0 or above 16384 bytes is ignored.
ORVIN_EXPORT void SetMonitorDataFromGWexeToGWDll_GL(const void* pData, i32 iSize);
/// Names with their offsets and raw values into the other bank, which then becomes current. The flip happens
/// also when the size is refused.
ORVIN_EXPORT void SetMonitorDataOffsetFromGWexeToGWDll_GL(const std::map<std::string, u32>& mapOffsets,
                                                          const void* pData, i32 iSize);
ORVIN_EXPORT void SetMonitorFilterDataFromGWexeToGWDll_GL(const void* pFilter); ///< 1032 bytes
ORVIN_EXPORT void SetMonitorPosDataFromGWexeToGWDll_GL(const void* pPos);       ///< 64 bytes
ORVIN_EXPORT u8 SetMonitorScreenshotDataFromGWexeToGWDll_GL(const u8* pValue);  ///< the byte
ORVIN_EXPORT u8 SetMonitorTimerDataFromGWexeToGWDll_GL(const u8* pValue);       ///< the byte
ORVIN_EXPORT void SetMonitorVGADataFromGWexeToGWDll_GL(const void* pData);      ///< 18532 bytes
ORVIN_EXPORT void
SetOSDGlobalProfileNameFromGWexeToGWDll_GL(const char16_t* wzName); ///< 1024 bytes; null ignored
ORVIN_EXPORT void
SetProcessID2ProfileNameFromGWexeToGWDll_GL(const void* pTable); ///< 207200 bytes; null ignored
/// Frame time of a process in milliseconds; 0 if unknown.
ORVIN_EXPORT f32 GetFrameTimeByPID_GL(u32 uProcessId);
/// 9527 if the thread has a status record, else 0.
ORVIN_EXPORT u32 GetAPIVerByTID_GL(u32 uThreadId);
/// Adds the data names that a profile shows and answers 1; 0, with nothing added, on failure.
ORVIN_EXPORT i32 GetDataFullNamesFromProfile_GL(const char16_t* wzProfile, std::set<std::string>* psetNames);
/// Developer reports on the console, chosen by the first character. Always 0.
ORVIN_EXPORT i32 GetTavoDataToGWDll(const char* szSelector);
/// A leftover that stays exported. Always 0.
ORVIN_EXPORT i32 SetTavoDataToGWDll();
/// Unhooks this process. 0, -1 without a message hook, -2 if that could not be removed.
ORVIN_EXPORT i32 deInit_GWDll_GL(u32 deInitCase);
/// The system's message-hook callback.
ORVIN_EXPORT std::intptr_t Hook_CB_ProcGetMSGOfGL(i32 iCode, std::uintptr_t wParam, std::intptr_t lParam);
}
