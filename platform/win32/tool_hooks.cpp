#include "platform/win32/tool.h"
#include <tlhelp32.h>

namespace platform::tool {
namespace {

/// Number of the message that carries a hook's handle into a program.
constexpr UINT kHandleMessage = 1280;

struct WindowTask {
    UINT uMessage;
    LPARAM lParam;
    bool bPosted;
};

BOOL CALLBACK PostToWindow(HWND hWindow, LPARAM lTask) {
    auto* pTask = reinterpret_cast<WindowTask*>(lTask);
    if (PostMessageW(hWindow, pTask->uMessage, 0, pTask->lParam)) pTask->bPosted = true;
    return !pTask->bPosted;
}

/// To the thread's queue, else to one of its windows.
bool PostToThread(DWORD uThreadId, UINT uMessage, LPARAM lParam) {
    if (PostThreadMessageW(uThreadId, uMessage, 0, lParam)) return true;
    WindowTask stTask{uMessage, lParam, false};
    EnumThreadWindows(uThreadId, PostToWindow, reinterpret_cast<LPARAM>(&stTask));
    return stTask.bPosted;
}

void PumpOwnMessages() {
    MSG stMessage;
    while (PeekMessageW(&stMessage, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&stMessage);
}

} // namespace

std::wstring ToWide(const std::string& strText) {
    const int iBytes = static_cast<int>(strText.size());
    const int iUnits = MultiByteToWideChar(CP_UTF8, 0, strText.data(), iBytes, nullptr, 0);
    std::wstring wzOut(static_cast<size_t>(iUnits > 0 ? iUnits : 0), L'\0');
    if (iUnits > 0) MultiByteToWideChar(CP_UTF8, 0, strText.data(), iBytes, wzOut.data(), iUnits);
    return wzOut;
}

std::string FromWide(const wchar_t* wzText) {
    const int iBytes = WideCharToMultiByte(CP_UTF8, 0, wzText, -1, nullptr, 0, nullptr, nullptr);
    if (iBytes <= 1) return {};
    std::string strOut(static_cast<size_t>(iBytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wzText, -1, strOut.data(), iBytes, nullptr, nullptr);
    strOut.pop_back();
    return strOut;
}

std::string ErrorText(DWORD uError) {
    wchar_t wzText[512] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                   nullptr, uError, 0, wzText, 511, nullptr);
    std::string strText = FromWide(wzText);
    strText.erase(strText.find_last_not_of(" .\r\n") + 1);
    return (strText.empty() ? "error" : strText) + " (" + std::to_string(uError) + ")";
}

bool WaitPumping(HANDLE hFirst, HANDLE hSecond, DWORD uMilliseconds) {
    const HANDLE ahHandles[] = {hFirst, hSecond};
    const DWORD uHandles = hSecond != nullptr ? 2 : 1;
    const u64 uEnd = GetTickCount64() + uMilliseconds;
    for (;;) {
        const u64 uNow = GetTickCount64();
        if (uMilliseconds != INFINITE && uNow > uEnd) return false;
        const DWORD uLeft = uMilliseconds == INFINITE ? INFINITE : static_cast<DWORD>(uEnd - uNow);
        const DWORD uWoke = MsgWaitForMultipleObjects(uHandles, ahHandles, FALSE, uLeft, QS_ALLINPUT);
        if (uWoke != WAIT_OBJECT_0 + uHandles) return uWoke < WAIT_OBJECT_0 + uHandles;
        PumpOwnMessages();
    }
}

DWORD PollInterval(u32 uRound) { return uRound < 200 ? 10 : 100; }

ThreadHooks::~ThreadHooks() {
    for (const auto& [uThreadId, stEntry] : m_mapHooks) UnhookWindowsHookEx(stEntry.hHook);
}

void ThreadHooks::Add(DWORD uThreadId) {
    if (m_mapHooks.contains(uThreadId)) return;
    const HHOOK hHook =
        SetWindowsHookExW(WH_GETMESSAGE, reinterpret_cast<HOOKPROC>(m_stLibrary.fnHookCallback),
                          static_cast<HINSTANCE>(m_stLibrary.hModule), uThreadId);
    if (hHook != nullptr) m_mapHooks[uThreadId].hHook = hHook;
}

void ThreadHooks::HandOver(DWORD uThreadId, Entry& stEntry) {
    if (stEntry.bHandedOver) return;
    stEntry.bHandedOver = PostToThread(uThreadId, kHandleMessage, reinterpret_cast<LPARAM>(stEntry.hHook));
}

void ThreadHooks::Refresh() {
    const HANDLE hSnapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (hSnapshot == INVALID_HANDLE_VALUE) return;
    THREADENTRY32 stThread{};
    stThread.dwSize = sizeof(stThread);
    for (BOOL bMore = Thread32First(hSnapshot, &stThread); bMore;
         bMore = Thread32Next(hSnapshot, &stThread)) {
        if (stThread.th32OwnerProcessID == m_uProcessId) Add(stThread.th32ThreadID);
    }
    CloseHandle(hSnapshot);
    for (auto& [uThreadId, stEntry] : m_mapHooks) HandOver(uThreadId, stEntry);
}

void ThreadHooks::Wake() {
    for (auto& [uThreadId, stEntry] : m_mapHooks) {
        if (!stEntry.bWoken) stEntry.bWoken = PostToThread(uThreadId, WM_NULL, 0);
    }
}

} // namespace platform::tool
