#include "platform/log.h"
#include "platform/headless/state.h"

namespace platform {

using headless::Get;

void WriteLogLine(const char* szLine) noexcept {
    std::lock_guard lock(Get().m_lock);
    Get().m_vecLog.emplace_back(szLine ? szLine : "");
}

void ShowMessageBox(const char16_t* wzText, const char* szTitle) noexcept {
    std::lock_guard lock(Get().m_lock);
    Get().m_vecBoxes.emplace_back(wzText ? wzText : u"", szTitle ? szTitle : "");
}

namespace headless {

std::vector<std::string> LogLines() {
    std::lock_guard lock(Get().m_lock);
    return Get().m_vecLog;
}

std::vector<std::pair<std::u16string, std::string>> MessageBoxes() {
    std::lock_guard lock(Get().m_lock);
    return Get().m_vecBoxes;
}

} // namespace headless
} // namespace platform
