#include "entry/reset_process.h"

#include "config/load.h"
#include "entry/attach.h"
#include "entry/hooking.h"
#include "frame/reset.h"
#include "shared/process_records.h"

void g_fnResetProcess() {
    g_fnResetHooking();
    g_bProcessExcluded = false;
    g_szProcessPath[0] = 0;
    g_fnResetFrame();
    g_fnResetConfiguration();
    g_fnSetProfileName(u"Default");
}
