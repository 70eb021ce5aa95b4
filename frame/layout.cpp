#include "frame/layout.h"

#include "base/log.h"
#include "config/load.h"
#include "config/profile/profile_document.h"
#include "frame/update/update.h"

#include <exception>

static bool BuildUpdate() {
    try {
        g_fnBuildUpdate();
        return true;
    } catch (const std::exception& error) {
        g_fnLog("g_fnMakeLayout() - %s", error.what());
    } catch (...) {
        g_fnLog("g_fnMakeLayout() - exception");
    }
    return false;
}

bool g_fnMakeLayout() {
    if (g_fnLoadConfiguration() && BuildUpdate()) return true;
    g_fnReportLoadFailure();
    return false;
}
