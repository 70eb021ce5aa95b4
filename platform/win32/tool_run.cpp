// Win32: folders, and a program beside this one, run to its end.
#include "platform/tool.h"
#include "platform/win32/data_folder.h"
#include "platform/win32/tool.h"
#include <memory>

namespace platform::tool {
namespace {

class OwnedHandle {
  public:
    explicit OwnedHandle(HANDLE hValue) : m_hValue(hValue) {}
    ~OwnedHandle() {
        if (m_hValue != nullptr) CloseHandle(m_hValue);
    }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    HANDLE Get() const { return m_hValue; }

  private:
    HANDLE m_hValue;
};

/// A job that ends its programs when this one is ended.
HANDLE MakeJob() {
    const HANDLE hJob = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION st{};
    st.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (hJob != nullptr) SetInformationJobObject(hJob, JobObjectExtendedLimitInformation, &st, sizeof st);
    return hJob;
}

/// Reads until the other end is closed; what is too much is dropped, so that the writer never waits.
void ReadAll(HANDLE hFrom, std::string& strAll) {
    char acPiece[4096];
    DWORD uRead = 0;
    while (ReadFile(hFrom, acPiece, sizeof acPiece, &uRead, nullptr) && uRead > 0)
        strAll.append(acPiece, uRead < g_uMostOutput - strAll.size() ? uRead : g_uMostOutput - strAll.size());
}

/// A pipe whose end for writing is a program's output and errors.
bool MakeOutput(HANDLE& hRead, HANDLE& hWrite, STARTUPINFOW& stStart) {
    SECURITY_ATTRIBUTES stInherit{sizeof(stInherit), nullptr, TRUE};
    if (!CreatePipe(&hRead, &hWrite, &stInherit, 0)) return false;
    SetHandleInformation(hRead, HANDLE_FLAG_INHERIT, 0);
    stStart.dwFlags = STARTF_USESTDHANDLES;
    stStart.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    stStart.hStdOutput = stStart.hStdError = hWrite;
    return true;
}

} // namespace

std::string CommonDataFolder() {
    wchar_t wzPath[MAX_PATH];
    host::DataFolder(wzPath);
    return FromWide(wzPath);
}

std::string ConfigFolder() {
    wchar_t wzPath[MAX_PATH] = {};
    const DWORD uLength = GetEnvironmentVariableW(L"ORVIN_OSD_CONFIG", wzPath, MAX_PATH);
    if (uLength > 0 && uLength < MAX_PATH) return FromWide(wzPath);
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, wzPath))) return {};
    return JoinPath(FromWide(wzPath), "orvin-osd");
}

std::string TempFolder() {
    wchar_t wzPath[MAX_PATH + 1] = {}, wzShort[MAX_PATH + 1] = {};
    const DWORD uLength = GetTempPathW(MAX_PATH, wzPath);
    if (uLength == 0 || uLength >= MAX_PATH) return ".";
    const DWORD uShort = GetShortPathNameW(wzPath, wzShort, MAX_PATH);
    return FromWide(uShort > 0 && uShort < MAX_PATH ? wzShort : wzPath);
}

Result RunBeside(const std::string& strName, const std::vector<std::string>& listArguments, int& iExitCode,
                 std::string* pOutput) {
    const std::string strFile = JoinPath(OwnFolder(), strName + ".exe");
    if (!FileExists(strFile)) return Result::NotFound("there is no " + strFile);
    std::wstring wzLine = QuotedWord(ToWide(strFile));
    for (const std::string& strWord : listArguments) wzLine += L" " + QuotedWord(ToWide(strWord));
    OutliveStops(); // the program gets the key itself
    const OwnedHandle job(MakeJob());
    STARTUPINFOW stStart{};
    stStart.cb = sizeof(stStart);
    HANDLE hRead = nullptr, hWrite = nullptr;
    if (pOutput && !MakeOutput(hRead, hWrite, stStart))
        return Result::Fail("cannot make a pipe: " + ErrorText(GetLastError()));
    const OwnedHandle read(hRead);
    auto pWrite = std::make_unique<OwnedHandle>(hWrite);
    PROCESS_INFORMATION stProcess{};
    if (!CreateProcessW(ToWide(strFile).c_str(), wzLine.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                        nullptr, nullptr, &stStart, &stProcess))
        return Result::Fail("cannot start " + strFile + ": " + ErrorText(GetLastError()));
    const OwnedHandle process(stProcess.hProcess), thread(stProcess.hThread);
    AssignProcessToJobObject(job.Get(), process.Get());
    ResumeThread(thread.Get());
    pWrite.reset(); // the last end for writing is the program's
    if (pOutput) ReadAll(read.Get(), *pOutput);
    WaitForSingleObject(process.Get(), INFINITE);
    DWORD uCode = 0;
    GetExitCodeProcess(process.Get(), &uCode);
    iExitCode = static_cast<int>(uCode);
    return {};
}

} // namespace platform::tool
