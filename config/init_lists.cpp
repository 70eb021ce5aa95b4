#include "config/init_lists.h"

#include "frame/log.h"

void g_fnReportLongList() { g_fnLog("list too long"); }
