#include "companion/profile_check/log_capture.h"

#include "base/log.h"

#include <utility>

namespace companion {
namespace {

/// Hostile profiles log a line for each of a million items.
constexpr std::size_t g_uLinesMost = 100000;

std::vector<std::string> g_listLines;

void Receive(const char* szLine) {
    if (g_listLines.size() >= g_uLinesMost) return;
    std::string str(szLine);
    while (!str.empty() && (str.back() == '\n' || str.back() == '\r')) str.pop_back();
    g_listLines.push_back(std::move(str));
}

} // namespace

LogCapture::LogCapture() : m_fnFormer(g_fnLogSink) {
    g_listLines.clear();
    g_fnLogSink = Receive;
}

LogCapture::~LogCapture() {
    g_fnLogSink = m_fnFormer;
    g_listLines.clear();
}

std::vector<std::string> LogCapture::Take() { return std::exchange(g_listLines, {}); }

} // namespace companion
