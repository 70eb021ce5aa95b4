#include "frame/update/app_data.h"

#include "frame/update/statistics.h"
#include "platform/process.h"
#include "shared/monitor_data.h"
#include "shared/own_names.h"

u32 g_uPID = 0;
u32 g_uTID = 0;

namespace {

/// In the order of the names. Of the frame count the low half is shown.
const stAppData g_astAppData[OWN_NAMES] = {
    {0, 1, &g_uFPS},
    {0, 1, &g_uFPS_Avg},
    {0, 1, &g_uFPS_Max},
    {0, 1, &g_uFPS_Min},
    {0, 1, &g_uFPS_50P},
    {0, 1, &g_uFPS_1P},
    {0, 1, &g_uFPS_01P},
    {2, 100, reinterpret_cast<const u32*>(&g_iFrameTime)},
    {0, 1, reinterpret_cast<const u32*>(&g_uFrameCnt)},
    {0, 1, &g_uPID},
    {0, 1, &g_uTID},
};

} // namespace

void g_fnRegisterAllAppData() {
    for (u32 u = 0; u < OWN_NAMES; ++u)
        g_fnRegisterAppData(g_aszOwnNames[u], g_astAppData[u].m_uDecimals, g_astAppData[u].m_uDivisor,
                            g_astAppData[u].m_pData);
    g_uPID = platform::CurrentProcessId();
    g_uTID = platform::CurrentThreadId();
}
