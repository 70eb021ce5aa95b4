// Win32: the segment is a section of the loaded library, programs are entered by message hooks.
#include "platform/win32/tool.h"
#include "platform/swap_gate.h"
#include "platform/tool.h"
#include "platform/tool_batch.h"
#include "platform/tool_bytes.h"
#include "platform/win32/process_stamp.h"
#include <cstring>
#include <psapi.h>
#include <shellapi.h>
#include <tlhelp32.h>

namespace platform::tool {
namespace {

constexpr const wchar_t* kUnhookEvent = L"Local\\ORVIN-OSD64-GL.Unhook";
constexpr u32 kAttachPatience = 5000; ///< milliseconds

HANDLE g_hStopEvent = nullptr;

std::string FilePart(const std::string& strPath) { return strPath.substr(strPath.find_last_of("\\/") + 1); }

std::string OwnPath() {
    wchar_t wzPath[32768] = {};
    GetModuleFileNameW(nullptr, wzPath, 32767);
    return FromWide(wzPath);
}

bool IsAlive(HANDLE hProcess) {
    DWORD uCode = 0;
    return GetExitCodeProcess(hProcess, &uCode) && uCode == STILL_ACTIVE;
}

struct RemoteModules {
    u64 uOpenGL = 0;
    u64 uLibrary = 0;
    u64 uLibraryBytes = 0;
};

void AddModule(HANDLE hProcess, HMODULE hModule, ProcessFacts& st, RemoteModules& stModules) {
    wchar_t wzName[520] = {};
    if (GetModuleBaseNameW(hProcess, hModule, wzName, 519) == 0) return;
    const std::string strName = FromWide(wzName);
    if (IsForeignOverlay(strName)) st.listOverlays.push_back(strName);
    if (EqualFolded(strName, "opengl32.dll")) {
        st.bGlMapped = true;
        stModules.uOpenGL = reinterpret_cast<u64>(hModule);
    }
    if (!EqualFolded(strName, LibraryName())) return;
    MODULEINFO stInfo{};
    GetModuleInformation(hProcess, hModule, &stInfo, sizeof(stInfo));
    st.bLibraryMapped = true;
    stModules.uLibrary = reinterpret_cast<u64>(hModule);
    stModules.uLibraryBytes = stInfo.SizeOfImage;
}

RemoteModules ReadModules(HANDLE hProcess, ProcessFacts& st) {
    RemoteModules stModules;
    std::vector<HMODULE> listModules(2048);
    DWORD uBytes = 0;
    const DWORD uRoom = static_cast<DWORD>(listModules.size() * sizeof(HMODULE));
    st.bReadable = EnumProcessModules(hProcess, listModules.data(), uRoom, &uBytes) != 0;
    if (!st.bReadable) return stModules;
    const size_t uCount = (uBytes < uRoom ? uBytes : uRoom) / sizeof(HMODULE);
    for (size_t i = 0; i < uCount; ++i) AddModule(hProcess, listModules[i], st, stModules);
    return stModules;
}

template <class T> bool ReadRemote(HANDLE hProcess, u64 uAddress, T& value) {
    SIZE_T uRead = 0;
    return ReadProcessMemory(hProcess, reinterpret_cast<void*>(uAddress), &value, sizeof(value), &uRead) &&
           uRead == sizeof(value);
}

/// Where the jumps end there may be the library's gate, which is no part of its image and calls into it.
Detour ReadGate(HANDLE hProcess, u64 uGate, const RemoteModules& stModules) {
    u64 uWay = 0;
    if (!ReadRemote(hProcess, uGate + g_uSwapGateWayOffset, uWay)) return Detour::Other;
    return uWay - stModules.uLibrary < stModules.uLibraryBytes ? Detour::Ours : Detour::Other;
}

/// Follows the jumps at the swap function of a process. The function lies as far into the module there as
/// here.
Detour ReadDetour(HANDLE hProcess, const RemoteModules& stModules) {
    const HMODULE hOpenGL = GetModuleHandleW(L"opengl32.dll");
    const FARPROC fnSwap = hOpenGL != nullptr ? GetProcAddress(hOpenGL, "wglSwapBuffers") : nullptr;
    if (fnSwap == nullptr || stModules.uOpenGL == 0) return Detour::Unknown;
    u64 uAddress = stModules.uOpenGL + (reinterpret_cast<u64>(fnSwap) - reinterpret_cast<u64>(hOpenGL));
    for (int iHop = 0; iHop < 4; ++iHop) {
        u8 auBytes[16] = {};
        if (!ReadRemote(hProcess, uAddress, auBytes)) return iHop == 0 ? Detour::Unknown : Detour::Other;
        const Jump stJump = ReadJump(auBytes, sizeof(auBytes), uAddress);
        if (stJump.eKind == Jump::Kind::None)
            return iHop == 0 ? Detour::NotLaid : ReadGate(hProcess, uAddress, stModules);
        uAddress = stJump.uAddress;
        if (stJump.eKind == Jump::Kind::ThroughPointer && !ReadRemote(hProcess, stJump.uAddress, uAddress)) {
            return Detour::Other;
        }
        if (uAddress - stModules.uLibrary < stModules.uLibraryBytes) return Detour::Ours;
    }
    return Detour::Other;
}

/// Section of a loaded image by the name in its headers; null if there is none of at least uBytes.
void* FindSection(void* hModule, const char* szName, size_t uBytes) {
    auto* pBase = static_cast<u8*>(hModule);
    const auto* pDos = reinterpret_cast<const IMAGE_DOS_HEADER*>(pBase);
    if (pDos->e_magic != IMAGE_DOS_SIGNATURE) return nullptr;
    const auto* pHeaders = reinterpret_cast<const IMAGE_NT_HEADERS*>(pBase + pDos->e_lfanew);
    if (pHeaders->Signature != IMAGE_NT_SIGNATURE) return nullptr;
    const IMAGE_SECTION_HEADER* pSection = IMAGE_FIRST_SECTION(pHeaders);
    for (WORD i = 0; i < pHeaders->FileHeader.NumberOfSections; ++i, ++pSection) {
        const auto* szFound = reinterpret_cast<const char*>(pSection->Name);
        if (std::strncmp(szFound, szName, IMAGE_SIZEOF_SHORT_NAME) != 0) continue;
        return pSection->Misc.VirtualSize >= uBytes ? pBase + pSection->VirtualAddress : nullptr;
    }
    return nullptr;
}

BOOL WINAPI OnConsoleEvent(DWORD) {
    if (g_hStopEvent != nullptr) SetEvent(g_hStopEvent);
    return TRUE;
}

std::wstring CommandLine(const RunRequest& stRequest) {
    std::wstring wzLine = QuotedWord(ToWide(stRequest.strProgram));
    for (const std::string& strWord : stRequest.listArguments) wzLine += L" " + QuotedWord(ToWide(strWord));
    return wzLine;
}

/// The file that a program's name leads to, as the system searches for it; the name itself if there is none.
std::string FileOfProgram(const std::string& strProgram) {
    std::wstring wzFile(32768, L'\0');
    const DWORD uLength =
        SearchPathW(nullptr, ToWide(strProgram).c_str(), L".exe", 32768, wzFile.data(), nullptr);
    return uLength > 0 && uLength < 32768 ? FromWide(wzFile.c_str()) : strProgram;
}

Result CheckBatch(const RunRequest& stRequest) {
    if (!IsBatchFile(stRequest.strProgram) && !IsBatchFile(FileOfProgram(stRequest.strProgram))) return {};
    std::vector<std::string> listWords = stRequest.listArguments;
    listWords.push_back(stRequest.strProgram);
    const std::string strFault = BatchFault(listWords);
    return strFault.empty() ? Result{} : Result::Usage("run: " + strFault);
}

Result StartSuspended(const RunRequest& stRequest, PROCESS_INFORMATION& stProcess) {
    const Result stBatch = CheckBatch(stRequest);
    if (!stBatch) return stBatch;
    std::wstring wzLine = CommandLine(stRequest);
    STARTUPINFOW stStart{};
    stStart.cb = sizeof(stStart);
    if (CreateProcessW(nullptr, wzLine.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                       &stStart, &stProcess)) {
        return {};
    }
    const DWORD uError = GetLastError();
    const std::string strWhy = "cannot start " + stRequest.strProgram + ": " + ErrorText(uError);
    const bool bMissing = uError == ERROR_FILE_NOT_FOUND || uError == ERROR_PATH_NOT_FOUND;
    return bMissing ? Result::NotFound(strWhy) : Result::Fail(strWhy);
}

bool IsForeignBitness(HANDLE hProcess) {
    BOOL bWow64 = FALSE;
    return IsWow64Process(hProcess, &bWow64) && bWow64;
}

bool HasLibrary(HANDLE hProcess) {
    ProcessFacts st;
    ReadModules(hProcess, st);
    return st.bLibraryMapped;
}

/// One handle that closes itself.
class Handle {
  public:
    explicit Handle(HANDLE hValue) : m_hValue(hValue) {}
    ~Handle() {
        if (m_hValue != nullptr && m_hValue != INVALID_HANDLE_VALUE) CloseHandle(m_hValue);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HANDLE Get() const { return m_hValue; }

  private:
    HANDLE m_hValue;
};

} // namespace

std::wstring QuotedWord(const std::wstring& wzWord) {
    if (!wzWord.empty() && wzWord.find_first_of(L" \t\n\v\"") == std::wstring::npos) return wzWord;
    std::wstring wzOut = L"\"";
    size_t uSlashes = 0;
    for (const wchar_t c : wzWord) {
        if (c == L'\\') {
            ++uSlashes;
            continue;
        }
        wzOut.append(c == L'"' ? uSlashes * 2 + 1 : uSlashes, L'\\');
        uSlashes = 0;
        wzOut += c;
    }
    wzOut.append(uSlashes * 2, L'\\');
    return wzOut + L"\"";
}

void OutliveStops() {
    g_hStopEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

std::vector<std::string> Arguments(int, char**) {
    SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> listWords;
    int iCount = 0;
    wchar_t** pwzWords = CommandLineToArgvW(GetCommandLineW(), &iCount);
    if (pwzWords == nullptr) return listWords;
    for (int i = 1; i < iCount; ++i) listWords.push_back(FromWide(pwzWords[i]));
    LocalFree(pwzWords);
    return listWords;
}

std::string OwnFolder() {
    const std::string strPath = OwnPath();
    return strPath.substr(0, strPath.find_last_of("\\/"));
}
std::string OwnName() { return FilePart(OwnPath()); }
u32 OwnProcessId() { return GetCurrentProcessId(); }
const char* LibraryName() { return "ORVIN-OSD64-GL.dll"; }
std::string JoinPath(const std::string& strFolder, const std::string& strFile) {
    return strFolder + "\\" + strFile;
}

bool FileExists(const std::string& strPath) {
    return GetFileAttributesW(ToWide(strPath).c_str()) != INVALID_FILE_ATTRIBUTES;
}

void* LoadSharedLibrary(const std::string& strPath, std::string& strError) {
    wchar_t wzFull[32768] = {};
    GetFullPathNameW(ToWide(strPath).c_str(), 32767, wzFull, nullptr);
    void* hModule = LoadLibraryW(wzFull);
    if (hModule == nullptr) strError = ErrorText(GetLastError());
    return hModule;
}

void* FindExport(void* hModule, const char* szName) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(hModule), szName));
}

Segment FindSegment(void* hModule, size_t uBytes, std::string& strError) {
    Segment st;
    st.pView = FindSection(hModule, "Shared", uBytes);
    if (st.pView == nullptr) strError = "the library has no section of that size named Shared";
    return st;
}

bool SegmentWasCut() { return false; }

u32 OwnStamp() { return host::StampOf(OwnProcessId()); }

bool IsProcessGone(u32 uProcessId, u32 uStamp) noexcept { return host::IsGone(uProcessId, uStamp); }

void RemoveDeadClaims() {}

void SleepMilliseconds(u32 uMilliseconds) { Sleep(uMilliseconds); }

ProcessFacts InspectProcess(u32 uProcessId) {
    ProcessFacts st;
    if (uProcessId == 0) return st;
    const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, uProcessId));
    if (process.Get() == nullptr) {
        st.bExists = GetLastError() == ERROR_ACCESS_DENIED;
        return st;
    }
    st.bExists = IsAlive(process.Get());
    if (!st.bExists) return st;
    wchar_t wzPath[32768] = {};
    DWORD uLength = 32767;
    if (QueryFullProcessImageNameW(process.Get(), 0, wzPath, &uLength))
        st.strName = FilePart(FromWide(wzPath));
    const RemoteModules stModules = ReadModules(process.Get(), st);
    if (st.bLibraryMapped) st.eDetour = ReadDetour(process.Get(), stModules);
    return st;
}

std::vector<u32> FindProcesses(const std::string& strName) {
    std::vector<u32> listFound;
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W stEntry{};
    stEntry.dwSize = sizeof(stEntry);
    for (BOOL bMore = Process32FirstW(snapshot.Get(), &stEntry); bMore;
         bMore = Process32NextW(snapshot.Get(), &stEntry)) {
        const std::string strFound = FromWide(stEntry.szExeFile);
        if (stEntry.th32ProcessID == OwnProcessId()) continue;
        if (EqualFolded(strFound, strName) || EqualFolded(strFound, strName + ".exe")) {
            listFound.push_back(stEntry.th32ProcessID);
        }
    }
    return listFound;
}

ApiClaim ReadApiClaim(u32 uProcessId) {
    const std::string strName = "[RV5-OSD][PID:" + std::to_string(uProcessId) + "]";
    const Handle mapping(OpenFileMappingA(FILE_MAP_READ, FALSE, strName.c_str()));
    if (mapping.Get() == nullptr) {
        return GetLastError() == ERROR_FILE_NOT_FOUND ? ApiClaim::None : ApiClaim::Unreadable;
    }
    const void* pView = MapViewOfFile(mapping.Get(), FILE_MAP_READ, 0, 0, 4);
    if (pView == nullptr) return ApiClaim::Unreadable;
    const ApiClaim eClaim = ClaimOfTag(static_cast<const char*>(pView));
    UnmapViewOfFile(pView);
    return eClaim;
}

Result CanRunWithOverlay(const std::string&) { return {}; }

bool RunNeedsLibrary() { return true; }

Result Run(const RunRequest& stRequest, const EnteringLibrary& stLibrary, int& iExitCode) {
    OutliveStops(); // the program gets the key itself; this one only has to outlive it
    PROCESS_INFORMATION stProcess{};
    const Result stStarted = StartSuspended(stRequest, stProcess);
    if (!stStarted) return stStarted;
    const Handle process(stProcess.hProcess), thread(stProcess.hThread);
    if (!stRequest.bBare && IsForeignBitness(process.Get())) {
        std::fprintf(stderr, "orvin-osd: a 32-bit program runs without the overlay\n");
    }
    if (stRequest.fnAhead) stRequest.fnAhead(stProcess.dwProcessId);
    ThreadHooks hooks(stProcess.dwProcessId, stLibrary);
    // Before its first message, so that its first frames are caught.
    if (!stRequest.bBare) hooks.Add(stProcess.dwThreadId);
    ResumeThread(thread.Get());
    for (u32 uRound = 0; !WaitPumping(process.Get(), nullptr, PollInterval(uRound)); ++uRound)
        if (!stRequest.bBare) hooks.Refresh();
    DWORD uCode = 0;
    GetExitCodeProcess(process.Get(), &uCode);
    iExitCode = static_cast<int>(uCode);
    return {};
}

Result CanEnterRunningPrograms() { return {}; }

Result Attach(u32 uProcessId, bool bStay, const EnteringLibrary& stLibrary) {
    const std::string strProcess = "process " + std::to_string(uProcessId);
    const DWORD uAccess = PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | SYNCHRONIZE;
    const Handle process(OpenProcess(uAccess, FALSE, uProcessId));
    if (process.Get() == nullptr) {
        const DWORD uError = GetLastError();
        if (uError == ERROR_INVALID_PARAMETER) return Result::NotFound("no " + strProcess);
        return Result::Fail("cannot open " + strProcess + ": " + ErrorText(uError));
    }
    if (IsForeignBitness(process.Get())) return Result::Fail(strProcess + " is a 32-bit program");
    OutliveStops();
    ThreadHooks hooks(uProcessId, stLibrary);
    bool bMapped = false;
    const u64 uStart = GetTickCount64();
    for (u32 uRound = 0;; ++uRound) {
        hooks.Refresh();
        hooks.Wake();
        bMapped = bMapped || HasLibrary(process.Get());
        if (bMapped && !bStay) return {};
        if (WaitPumping(process.Get(), g_hStopEvent, PollInterval(uRound))) break;
        if (!bMapped && GetTickCount64() - uStart > kAttachPatience) {
            return Result::Fail(strProcess + (hooks.Count() == 0
                                                  ? " has no thread that can be hooked"
                                                  : " takes no messages, so the library cannot enter"));
        }
    }
    return bMapped ? Result{} : Result::Fail(strProcess + " ended before the library entered");
}

Result Hook(const EnteringLibrary& stLibrary, const std::function<void()>& fnTurn) {
    const Handle event(CreateEventW(nullptr, TRUE, FALSE, kUnhookEvent));
    if (event.Get() == nullptr)
        return Result::Fail("cannot make the unhook event: " + ErrorText(GetLastError()));
    if (GetLastError() == ERROR_ALREADY_EXISTS) return Result::Fail("another orvin-osd holds the hook");
    OutliveStops();
    const HHOOK hHook = SetWindowsHookExW(WH_GETMESSAGE, reinterpret_cast<HOOKPROC>(stLibrary.fnHookCallback),
                                          static_cast<HINSTANCE>(stLibrary.hModule), 0);
    if (hHook == nullptr) return Result::Fail("cannot install the hook: " + ErrorText(GetLastError()));
    // An empty message makes idle programs fetch one, which is when the library enters. The handle itself is
    // kept here: a program that knew it would end the hook for all when it exits.
    PostMessageW(HWND_BROADCAST, WM_NULL, 0, 0);
    std::puts("hooked; end with Ctrl-C or 'orvin-osd unhook'");
    std::fflush(stdout);
    constexpr DWORD c_uTurn = 2000; // milliseconds
    while (!WaitPumping(event.Get(), g_hStopEvent, c_uTurn)) fnTurn();
    const bool bRemoved = UnhookWindowsHookEx(hHook) != 0;
    PostMessageW(HWND_BROADCAST, WM_NULL, 0, 0);
    return bRemoved ? Result{} : Result::Fail("the hook was already gone: " + ErrorText(GetLastError()));
}

Result Unhook() {
    const Handle event(OpenEventW(EVENT_MODIFY_STATE, FALSE, kUnhookEvent));
    if (event.Get() == nullptr) return Result::NotFound("no orvin-osd holds a hook");
    return SetEvent(event.Get()) ? Result{}
                                 : Result::Fail("cannot signal the hook: " + ErrorText(GetLastError()));
}

} // namespace platform::tool
