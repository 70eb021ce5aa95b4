#pragma once
// The overlay library as the companion uses it: loaded at run time, its exports resolved by name.
#include "companion/result.h"
#include "entry/exports.h"
#include "platform/segment.h"
#include "platform/tool.h"
#include <string>

namespace companion {

/// Addresses of the exports that the companion calls; all set once Load succeeded.
struct ControlLibrary {
    void* hModule = nullptr;
    decltype(&::InitialSharedSegmentData_GL) fnInitialise = nullptr;
    decltype(&::EnableQueryFrameTime_GL) fnEnableQueryFrameTime = nullptr;
    decltype(&::sendCmd_GWDLL_GL) fnSendCommand = nullptr;
    decltype(&::SetMonitorFilterDataFromGWexeToGWDll_GL) fnSetFilter = nullptr;
    decltype(&::SetMonitorPosDataFromGWexeToGWDll_GL) fnSetPositions = nullptr;
    decltype(&::SetMonitorScreenshotDataFromGWexeToGWDll_GL) fnSetScreenshot = nullptr;
    decltype(&::SetMonitorTimerDataFromGWexeToGWDll_GL) fnSetTimer = nullptr;
    decltype(&::SetOSDGlobalProfileNameFromGWexeToGWDll_GL) fnSetGlobalProfile = nullptr;
    decltype(&::SetProcessID2ProfileNameFromGWexeToGWDll_GL) fnSetProcessProfiles = nullptr;
    decltype(&::SetMonitorDataFromGWexeToGWDll_GL) fnSetData = nullptr;
    decltype(&::SetMonitorDataOffsetFromGWexeToGWDll_GL) fnSetOffsets = nullptr;
    decltype(&::GetAPIVerByTID_GL) fnRearmApiCode = nullptr;
    decltype(&::Hook_CB_ProcGetMSGOfGL) fnHookCallback = nullptr;
    /// What other programs are entered with.
    EnteringLibrary Entering() const { return {hModule, reinterpret_cast<void*>(fnHookCallback)}; }
    /// The live segment; others write it at any time.
    stSharedSegment* pSegment = nullptr;
    std::string strSegmentPlace; ///< the file that it lies in; empty where it is part of the library
    std::string strSegmentNote;  ///< what is odd about that place; mostly empty
};

/// Loads the library from strPath, or from beside the companion if empty. Loading attaches the companion
/// itself as any process: it takes a record of its own.
Result LoadControlLibrary(const std::string& strPath, ControlLibrary& stLibrary);

/// The file that LoadControlLibrary would load.
std::string LibraryPath(const std::string& strPath);

} // namespace companion
