#include "config/fixed/init_lists.h"

#include "base/log.h"

void g_fnReportLongList() { g_fnLog("list too long"); }
