#include "companion/control_library.h"
#include "platform/tool.h"

#include <tuple>

namespace companion {
namespace {

/// A row of the table: name of an export, and where its address goes.
template <class T> struct stExport {
    const char* szName;
    T ControlLibrary::*fnMember;
    constexpr stExport(const char* sz, T ControlLibrary::*fn) : szName(sz), fnMember(fn) {}
};

constexpr std::tuple g_exports{
    stExport{"InitialSharedSegmentData_GL", &ControlLibrary::fnInitialise},
    stExport{"EnableQueryFrameTime_GL", &ControlLibrary::fnEnableQueryFrameTime},
    stExport{"sendCmd_GWDLL_GL", &ControlLibrary::fnSendCommand},
    stExport{"SetMonitorFilterDataFromGWexeToGWDll_GL", &ControlLibrary::fnSetFilter},
    stExport{"SetMonitorPosDataFromGWexeToGWDll_GL", &ControlLibrary::fnSetPositions},
    stExport{"SetMonitorScreenshotDataFromGWexeToGWDll_GL", &ControlLibrary::fnSetScreenshot},
    stExport{"SetMonitorTimerDataFromGWexeToGWDll_GL", &ControlLibrary::fnSetTimer},
    stExport{"SetOSDGlobalProfileNameFromGWexeToGWDll_GL", &ControlLibrary::fnSetGlobalProfile},
    stExport{"SetProcessID2ProfileNameFromGWexeToGWDll_GL", &ControlLibrary::fnSetProcessProfiles},
    stExport{"SetMonitorDataFromGWexeToGWDll_GL", &ControlLibrary::fnSetData},
    stExport{"SetMonitorDataOffsetFromGWexeToGWDll_GL", &ControlLibrary::fnSetOffsets},
    stExport{"GetAPIVerByTID_GL", &ControlLibrary::fnRearmApiCode},
    stExport{"Hook_CB_ProcGetMSGOfGL", &ControlLibrary::fnHookCallback},
};

/// Name of the first export that is missing, empty if all are there.
std::string ResolveAll(ControlLibrary& st) {
    std::string strMissing;
    const auto Resolve = [&]<class T>(const stExport<T>& row) {
        st.*row.fnMember = reinterpret_cast<T>(platform::tool::FindExport(st.hModule, row.szName));
        if (!(st.*row.fnMember) && strMissing.empty()) strMissing = row.szName;
    };
    std::apply([&](const auto&... rows) { (Resolve(rows), ...); }, g_exports);
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
