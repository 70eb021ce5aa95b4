#include "tests/support/headless/shared_fixture.h"
#include "base/layout_style.h"
#include "base/log.h"
#include "entry/attach.h"
#include "entry/hooking.h"
#include "entry/reset_process.h"
#include "frame/command_handler.h"
#include "frame/parts.h"
#include "frame/real_swap.h"
#include "frame/update/local_clock.h"
#include "frame/update/status_items.h"
#include "frame/update/update_flags.h"
#include "shared/api_code.h"
#include <algorithm>
#include <cstring>
#include <mutex>

namespace {

std::vector<std::string> s_vecLines;
std::mutex s_lock;

void Collect(const char* szLine) {
    std::lock_guard lock(s_lock);
    s_vecLines.emplace_back(szLine);
}

} // namespace

void SharedTest::ResetLibrary() {
    platform::headless::JoinThreads();
    g_fnResetProcess();
    g_fnTakeOwedRecord(c_uPid, c_uTid); // one that a test left owed goes with the segment
    platform::headless::ResetAll();
    s_vecLines.clear();
    g_fnLogSink = Collect;
}

const std::vector<std::string>& SharedTest::Lines() { return s_vecLines; }

bool SharedTest::Logged(const std::string& strLine) {
    return std::find(s_vecLines.begin(), s_vecLines.end(), strLine) != s_vecLines.end();
}

void SetName(char16_t* wzTo, const std::u16string& str) {
    std::copy(str.begin(), str.end(), wzTo);
    wzTo[str.size()] = 0;
}
