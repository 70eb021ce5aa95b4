#include "config/profile/profile_switches.h"

#include "config/profile/profile_document.h"
#include "config/settings/settings.h"

stProfileSwitches g_stProfileSwitches = {};
u32 g_uCardNum = 1;

void g_fnReadProfileSwitches() {
    g_stProfileSwitches = {g_fnReadIsShow("Info"),      g_fnReadIsShow("Memo"),
                           g_fnReadIsShow("Watermark"), g_fnReadIsShow("SystemInfo"),
                           g_fnReadIsShow("Photo"),     g_fnReadIsShow("StopWatch")};
    g_fnReadFeatureSwitches();
    g_uCardNum = g_fnReadCardNum();
}
