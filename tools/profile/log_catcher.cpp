#include "tools/profile/log_catcher.h"
#include "base/log.h"
#include "companion/utf.h"
#include <cstdio>
#include <string_view>
#include <utility>

namespace companion {

LogCatcher* LogCatcher::s_pCurrent = nullptr;

void LogCatcher::Receive(const char* szLine) {
    std::string_view strLine(szLine);
    if (strLine.starts_with("PreSwapBuffers()")) return; // comes with each frame
    if (s_pCurrent->m_bPrint) std::fprintf(stderr, "%s\n", Printable(strLine).c_str());
    while (strLine.ends_with('\n') || strLine.ends_with('\r')) strLine.remove_suffix(1);
    if (s_pCurrent->m_listLines.size() < s_pCurrent->m_uMost) s_pCurrent->m_listLines.emplace_back(strLine);
}

LogCatcher::LogCatcher(bool bPrint, std::size_t uMost)
    : m_pFormer(std::exchange(s_pCurrent, this)), m_fnFormer(std::exchange(g_fnLogSink, Receive)),
      m_uMost(uMost), m_bPrint(bPrint) {}

LogCatcher::~LogCatcher() {
    g_fnLogSink = m_fnFormer;
    s_pCurrent = m_pFormer;
}

std::vector<std::string> LogCatcher::Take() { return std::exchange(m_listLines, {}); }

} // namespace companion
