// Win32: hot keys of the system.
#include "platform/tool_keys.h"
#include "platform/win32/tool.h"

namespace platform::tool {
namespace {

struct NamedCode {
    u32 uKey;
    UINT uCode;
};
constexpr NamedCode c_astCodes[] = {
    {kKeyHome, VK_HOME},     {kKeyEnd, VK_END},        {kKeyPageUp, VK_PRIOR},
    {kKeyPageDown, VK_NEXT}, {kKeyInsert, VK_INSERT},  {kKeyDelete, VK_DELETE},
    {kKeyPause, VK_PAUSE},   {kKeyPrint, VK_SNAPSHOT}, {kKeyScrollLock, VK_SCROLL},
};

UINT CodeOf(u32 uKey) {
    for (const NamedCode& st : c_astCodes)
        if (st.uKey == uKey) return st.uCode;
    return uKey >= kKeyF1 ? VK_F1 + (uKey - kKeyF1) : uKey; // letters and digits are their own codes
}

UINT ModifiersOf(const KeyCombination& st) {
    return static_cast<UINT>(MOD_NOREPEAT | (st.bCtrl ? MOD_CONTROL : 0) | (st.bAlt ? MOD_ALT : 0) |
                             (st.bShift ? MOD_SHIFT : 0) | (st.bSuper ? MOD_WIN : 0));
}

} // namespace

struct KeyListener::Memory {
    HANDLE hStop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::vector<int> listIds;
};

KeyListener::KeyListener() : m_pMemory(new Memory) {}

KeyListener::~KeyListener() {
    for (const int iId : m_pMemory->listIds) UnregisterHotKey(nullptr, iId);
    if (m_pMemory->hStop != nullptr) CloseHandle(m_pMemory->hStop);
    delete m_pMemory;
}

Result KeyListener::Open() {
    return m_pMemory->hStop != nullptr ? Result{} : Result::Fail(ErrorText(GetLastError()));
}

Result KeyListener::Add(u32 uId, const KeyCombination& stKeys) {
    const int iId = static_cast<int>(uId);
    if (RegisterHotKey(nullptr, iId, ModifiersOf(stKeys), CodeOf(stKeys.uKey))) {
        m_pMemory->listIds.push_back(iId);
        return {};
    }
    const DWORD uError = GetLastError();
    if (uError == ERROR_HOTKEY_ALREADY_REGISTERED) return Result::Fail("another program has these keys");
    return Result::Fail(ErrorText(uError));
}

KeyEvent KeyListener::Wait(u32 uMilliseconds) {
    const ULONGLONG uEnd = GetTickCount64() + uMilliseconds;
    for (;;) {
        MSG stMessage;
        while (PeekMessageW(&stMessage, nullptr, 0, 0, PM_REMOVE))
            if (stMessage.message == WM_HOTKEY)
                return {KeyEvent::Kind::Pressed, static_cast<u32>(stMessage.wParam)};
        const ULONGLONG uNow = GetTickCount64();
        const DWORD uLeft = uNow < uEnd ? static_cast<DWORD>(uEnd - uNow) : 0;
        const DWORD uWoke =
            MsgWaitForMultipleObjects(1, &m_pMemory->hStop, FALSE, uLeft, QS_ALLINPUT | QS_HOTKEY);
        if (uWoke == WAIT_OBJECT_0) return {KeyEvent::Kind::Stopped};
        if (uWoke == WAIT_TIMEOUT) return {};
        if (uWoke == WAIT_FAILED) return {KeyEvent::Kind::Lost};
    }
}

void KeyListener::Stop() { SetEvent(m_pMemory->hStop); }

bool SessionKeepsKeys() { return false; }

u32 FocusedProcess() {
    DWORD uProcess = 0;
    const HWND hWindow = GetForegroundWindow();
    if (hWindow != nullptr) GetWindowThreadProcessId(hWindow, &uProcess);
    return uProcess;
}

} // namespace platform::tool
