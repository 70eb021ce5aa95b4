#include "shared_fixture.h"
#include "base/layout_style.h"
#include "base/log.h"
#include "entry/attach.h"
#include "entry/hooking.h"
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

void ResetHooking() {
    platform::headless::JoinThreads();
    delete g_pMiniHook.exchange(nullptr);
    g_csHook.Delete();
    g_hHookGetMSGOfGL = g_hOpenGL = pOrg_GL_wglSwapBuffers = g_pHookTarget = g_pTrampoline = nullptr;
    g_hThread_DelayHook = g_hThreadToTryHookGLAgain = nullptr;
    g_bHooked = g_bProcessExcluded = false;
    g_szProcessPath[0] = 0;
}

void ResetOverlay() {
    g_uLayoutStyle = 0;
    std::memset(g_abStatusDue, 0, sizeof g_abStatusDue);
    std::memset(g_auStatus, 0, sizeof g_auStatus);
    g_bStopWatchOn = g_bStopWatchShown = 0;
    g_bShotPending = 0;
    g_bShutter = false;
    g_uApiCode = 0;
    g_timerStatus.Reset();
    g_timerShutter.Reset();
    g_stParts.m_fnReloadCamera = nullptr;
    std::memset(g_bUpdateFPS, 0, sizeof g_bUpdateFPS);
    g_fnSetProfileName(u"Default");
}

} // namespace

void SharedTest::ResetLibrary() {
    ResetHooking();
    g_fnTakeOwedRecord(c_uPid, c_uTid); // one that a test left owed goes with the segment
    platform::headless::ResetAll();
    ResetOverlay();
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
