#include "config/chain_report.h"

#include "config/settings/settings.h"
#include "platform/log.h"

#include <string>

void g_fnReportChainFailure(const char* szChain, i32 iStep) {
    if (!g_stSettings.bDebugMessageBox) return;
    std::u16string wzText = u"Error code : ";
    for (const char c : std::to_string(iStep)) wzText += static_cast<char16_t>(c);
    platform::ShowMessageBox(wzText.c_str(), szChain);
}
