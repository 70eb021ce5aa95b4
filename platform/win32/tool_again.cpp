// Win32: this program once more.
#include "platform/tool_again.h"
#include "platform/win32/tool.h"

namespace platform::tool {
namespace {

/// A handle that a new program may inherit; null where the file cannot be opened.
HANDLE OpenShared(const std::string& strFile, bool bWrite) {
    SECURITY_ATTRIBUTES stShared{sizeof stShared, nullptr, TRUE};
    const HANDLE hFile = CreateFileW(ToWide(strFile).c_str(), bWrite ? GENERIC_WRITE : GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &stShared,
                                     bWrite ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return hFile != INVALID_HANDLE_VALUE ? hFile : nullptr;
}

void CloseIfOpen(HANDLE hFile) {
    if (hFile != nullptr) CloseHandle(hFile);
}

struct Output {
    HANDLE hOut, hError;
    bool bAlone; ///< the new program inherits nothing else
};

/// The handles that a new program inherits where it is not to have all of them: whoever reads this one's
/// output would wait for that program's end.
class HandleList {
  public:
    explicit HandleList(STARTUPINFOEXW& st) : m_ah{st.StartupInfo.hStdInput, st.StartupInfo.hStdOutput} {
        SIZE_T uBytes = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &uBytes);
        m_listMemory.resize(uBytes);
        st.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_listMemory.data());
        m_bMade = InitializeProcThreadAttributeList(st.lpAttributeList, 1, 0, &uBytes) &&
                  UpdateProcThreadAttribute(st.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_ah,
                                            sizeof m_ah, nullptr, nullptr);
    }
    bool Made() const { return m_bMade; }

  private:
    HANDLE m_ah[2];
    std::vector<u8> m_listMemory;
    bool m_bMade = false;
};

Result Start(const std::vector<std::string>& listArguments, const Output& stOutput,
             PROCESS_INFORMATION& stProcess) {
    const std::string strFile = JoinPath(OwnFolder(), OwnName());
    std::wstring wzLine = QuotedWord(ToWide(strFile));
    for (const std::string& strWord : listArguments) wzLine += L" " + QuotedWord(ToWide(strWord));
    const HANDLE hNothing = OpenShared("NUL", false);
    STARTUPINFOEXW stStart{};
    stStart.StartupInfo.cb = stOutput.bAlone ? sizeof stStart : sizeof stStart.StartupInfo;
    stStart.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    stStart.StartupInfo.hStdInput = hNothing;
    stStart.StartupInfo.hStdOutput = stOutput.hOut;
    stStart.StartupInfo.hStdError = stOutput.hError;
    HandleList handles(stStart);
    DWORD uFlags = 0;
    if (stOutput.bAlone) uFlags = DETACHED_PROCESS | CREATE_NEW_PROCESS_GROUP | EXTENDED_STARTUPINFO_PRESENT;
    const bool bStarted =
        handles.Made() && CreateProcessW(ToWide(strFile).c_str(), wzLine.data(), nullptr, nullptr, TRUE,
                                         uFlags, nullptr, nullptr, &stStart.StartupInfo, &stProcess);
    const DWORD uError = GetLastError();
    CloseIfOpen(hNothing);
    if (!bStarted) return Result::Fail("cannot start " + strFile + ": " + ErrorText(uError));
    CloseHandle(stProcess.hThread);
    return {};
}

} // namespace

Result RunAgain(const std::vector<std::string>& listArguments, int& iExitCode) {
    PROCESS_INFORMATION stProcess{};
    const Output stOwn{GetStdHandle(STD_OUTPUT_HANDLE), GetStdHandle(STD_ERROR_HANDLE), false};
    const Result st = Start(listArguments, stOwn, stProcess);
    if (!st) return st;
    WaitForSingleObject(stProcess.hProcess, INFINITE);
    DWORD uCode = 0;
    GetExitCodeProcess(stProcess.hProcess, &uCode);
    CloseHandle(stProcess.hProcess);
    iExitCode = static_cast<int>(uCode);
    return {};
}

Result StartApart(const std::vector<std::string>& listArguments, const std::string& strOutput,
                  u32& uProcessId) {
    const HANDLE hOut = OpenShared(strOutput, true);
    if (hOut == nullptr) return Result::Fail("cannot write " + strOutput + ": " + ErrorText(GetLastError()));
    PROCESS_INFORMATION stProcess{};
    const Result st = Start(listArguments, {hOut, hOut, true}, stProcess);
    CloseHandle(hOut);
    if (!st) return st;
    CloseHandle(stProcess.hProcess);
    uProcessId = stProcess.dwProcessId;
    return {};
}

} // namespace platform::tool
