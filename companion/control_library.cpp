#include "companion/control_library.h"
#include "platform/tool.h"

namespace companion {
namespace {

template <class T> bool Resolve(void* hModule, const char* szName, T& fnOut, std::string& strMissing) {
    fnOut = reinterpret_cast<T>(platform::tool::FindExport(hModule, szName));
    if (fnOut == nullptr && strMissing.empty()) strMissing = szName;
    return fnOut != nullptr;
}

/// Name of the first export that is missing, empty if all are there.
std::string ResolveAll(ControlLibrary& st) {
    std::string strMissing;
    Resolve(st.hModule, "InitialSharedSegmentData_GL", st.fnInitialise, strMissing);
    Resolve(st.hModule, "EnableQueryFrameTime_GL", st.fnEnableQueryFrameTime, strMissing);
    Resolve(st.hModule, "sendCmd_GWDLL_GL", st.fnSendCommand, strMissing);
    Resolve(st.hModule, "SetMonitorFilterDataFromGWexeToGWDll_GL", st.fnSetFilter, strMissing);
    Resolve(st.hModule, "SetMonitorPosDataFromGWexeToGWDll_GL", st.fnSetPositions, strMissing);
    Resolve(st.hModule, "SetMonitorScreenshotDataFromGWexeToGWDll_GL", st.fnSetScreenshot, strMissing);
    Resolve(st.hModule, "SetMonitorTimerDataFromGWexeToGWDll_GL", st.fnSetTimer, strMissing);
    Resolve(st.hModule, "SetOSDGlobalProfileNameFromGWexeToGWDll_GL", st.fnSetGlobalProfile, strMissing);
    Resolve(st.hModule, "SetProcessID2ProfileNameFromGWexeToGWDll_GL", st.fnSetProcessProfiles, strMissing);
    Resolve(st.hModule, "SetMonitorDataFromGWexeToGWDll_GL", st.fnSetData, strMissing);
    Resolve(st.hModule, "SetMonitorDataOffsetFromGWexeToGWDll_GL", st.fnSetOffsets, strMissing);
    Resolve(st.hModule, "GetAPIVerByTID_GL", st.fnRearmApiCode, strMissing);
    Resolve(st.hModule, "Hook_CB_ProcGetMSGOfGL", st.fnHookCallback, strMissing);
    return strMissing;
}

} // namespace

std::string LibraryPath(const std::string& strPath) {
    return strPath.empty()
               ? platform::tool::JoinPath(platform::tool::OwnFolder(), platform::tool::LibraryName())
               : strPath;
}

Result LoadControlLibrary(const std::string& strPath, ControlLibrary& stLibrary) {
    const std::string strFile = LibraryPath(strPath);
    if (!platform::tool::FileExists(strFile)) return Result::NotFound("the library is not at " + strFile);
    std::string strError;
    stLibrary.hModule = platform::tool::LoadSharedLibrary(strFile, strError);
    if (stLibrary.hModule == nullptr) return Result::Fail("cannot load " + strFile + ": " + strError);
    const std::string strMissing = ResolveAll(stLibrary);
    if (!strMissing.empty()) return Result::Fail(strFile + " does not export " + strMissing);
    const platform::tool::Segment stSegment =
        platform::tool::FindSegment(stLibrary.hModule, sizeof(stSharedSegment), strError);
    if (stSegment.pView == nullptr) return Result::Fail("cannot reach the shared segment: " + strError);
    stLibrary.pSegment = static_cast<stSharedSegment*>(stSegment.pView);
    stLibrary.strSegmentPlace = stSegment.strPlace;
    stLibrary.strSegmentNote = stSegment.strNote;
    return {};
}

} // namespace companion
