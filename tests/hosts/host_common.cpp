#include "tests/hosts/host_common.h"
#include "tests/hosts/host_gl.h"
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <mutex>
#include <set>
#include <thread>
#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace {

using Clock = std::chrono::steady_clock;

i64 NowNanoseconds() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
}

/// Processor time of the whole process in nanoseconds.
i64 CpuNanoseconds() {
#if defined(_WIN32)
    FILETIME stMade, stEnded, stKernel, stUser;
    GetProcessTimes(GetCurrentProcess(), &stMade, &stEnded, &stKernel, &stUser);
    const auto fnTicks = [](const FILETIME& st) { return (i64(st.dwHighDateTime) << 32) | st.dwLowDateTime; };
    return (fnTicks(stKernel) + fnTicks(stUser)) * 100;
#else
    timespec stNow{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &stNow);
    return i64(stNow.tv_sec) * 1000000000 + stNow.tv_nsec;
#endif
}

bool FileExists(const std::string& strPath) {
    std::FILE* pFile = std::fopen(strPath.c_str(), "rb");
    if (pFile) std::fclose(pFile);
    return pFile != nullptr;
}

void MakeFile(const std::string& strPath) {
    if (std::FILE* pFile = std::fopen(strPath.c_str(), "wb")) std::fclose(pFile);
}

std::string Hex(u32 uValue) {
    char szText[16];
    std::snprintf(szText, sizeof szText, "0x%x", uValue);
    return szText;
}

std::string Joined(const char* szFirst, const std::string& strSecond) {
    std::string strBoth = szFirst;
    return strBoth.append(strSecond);
}

constexpr u32 g_uStormSizes[][2] = {{320, 240}, {801, 603}, {128, 96}, {640, 480}, {417, 333}, {1024, 768}};
constexpr u32 g_uErrorFramesPrinted = 8;
constexpr std::size_t g_uSwapsListed = 12;
std::atomic<u32> g_uFramesOfAll{0}; // of the thread that was last to end one

/// One context with its entry points and objects.
struct stHostContext {
    ContextRef pContext = nullptr;
    stHostGl stGl;
    std::unique_ptr<CHostScene> pScene;
    CHostObjects clObjects;
};

/// Windows, contexts and the frame loop of one thread.
class CHostLoop {
  public:
    CHostLoop(const stHostOptions& st, u32 uThread)
        : m_st(st), m_uThread(uThread), m_uWidth(st.uWidth), m_uHeight(st.uHeight) {}
    ~CHostLoop();
    int m_fnRun();

  private:
    bool m_fnOpen();
    bool m_fnOpenInTurn();
    bool m_fnMakeContext(stHostContext& stContext, WindowRef pWindow);
    void m_fnDropContext(stHostContext& stContext);
    WindowRef m_fnWindowOf(const stHostContext& stContext) const;
    void m_fnCountObjects(stHostContext& stContext);
    void m_fnCloseFirst();
    static u32 InTurn(u32 uFrame, u32 uFirst, u32 uCount);
    bool m_fnChangeSurroundings(u32 uFrame);
    bool m_fnFrame(u32 uFrame);
    void m_fnTakeSwapCpu(i64 iCpu);
    bool m_fnSwap(u32 uFrame, stHostContext& stContext, WindowRef pWindow);
    void m_fnAfterSwap(u32 uFrame, stHostContext& stContext, WindowRef pWindow);
    void m_fnTakeErrors(stHostGl& stGl, std::string& strCodes, u32& uFrames);
    void m_fnWait();
    void m_fnSleepPumping(u32 uMilliseconds);
    void m_fnCompareStates(u32 uFrame, const std::vector<std::pair<std::string, std::string>>& listBefore,
                           stHostGl& stGl);
    void m_fnReport(i64 iTotal);
    void m_fnPrint(const std::string& strKey, const std::string& strValue);
    std::string m_fnOwnFile(const std::string& strPath) const;

    const stHostOptions& m_st;
    u32 m_uThread;
    u32 m_uWidth, m_uHeight;
    std::unique_ptr<CWindowSystem> m_pSystem;
    WindowRef m_pWindows[g_uHostWindows] = {};
    stHostContext m_stContexts[g_uHostWindows];
    u32 m_uWindows = 1, m_uContexts = 1;
    u32 m_uFirstWindow = 0, m_uFirstContext = 0; ///< 1 once the first ones are closed
    u32 m_uObjectsMade = 0, m_uObjectsLeft = 0;
    u32 m_uFrames = 0, m_uSwaps = 0, m_uErrorFrames = 0, m_uErrorFramesBefore = 0, m_uContextsMade = 0;
    i64 m_iFirstFrame = 0, m_iLongestCpu = 0, m_iWindowWall = 0, m_iWindowCpu = 0;
    void (*m_fnBenchFrame)() = nullptr;
    std::set<std::string> m_setChanged;
    std::vector<i64> m_iStamps, m_vecSwapCpu;
};

CHostLoop::~CHostLoop() {
    if (!m_pSystem) return;
    for (stHostContext& st : m_stContexts) m_fnDropContext(st);
    for (WindowRef pWindow : m_pWindows)
        if (pWindow) m_pSystem->m_fnDestroyWindow(pWindow);
}

void CHostLoop::m_fnPrint(const std::string& strKey, const std::string& strValue) {
    std::string strFull;
    if (m_uThread) strFull.append("thread").append(std::to_string(m_uThread + 1)).append(".");
    strFull.append(strKey);
    PrintLine(strFull, strValue);
}

bool CHostLoop::m_fnMakeContext(stHostContext& stContext, WindowRef pWindow) {
    const stHostContext& stFirst = m_stContexts[m_uContexts - 1]; // the last of the row is made first
    stContext.pContext = m_pSystem->m_fnMakeContext(
        pWindow, m_st.bShare && &stFirst != &stContext ? stFirst.pContext : nullptr);
    if (!stContext.pContext || !m_pSystem->m_fnMakeCurrent(pWindow, stContext.pContext)) return false;
    if (!LoadHostGl(*m_pSystem, stContext.stGl)) return false;
    stContext.pScene = std::make_unique<CHostScene>(stContext.stGl);
    // More in each, so that another context's names are names of objects here.
    stContext.clObjects.m_fnMake(stContext.stGl, m_st.uObjects * (m_uContextsMade + 1));
    ++m_uContextsMade;
    return true;
}

WindowRef CHostLoop::m_fnWindowOf(const stHostContext& stContext) const {
    const u32 uIndex = u32(&stContext - m_stContexts) % m_uWindows;
    return m_pWindows[uIndex] ? m_pWindows[uIndex] : m_pWindows[m_uWindows - 1];
}

/// Takes stock of a context's objects ahead of its end.
void CHostLoop::m_fnCountObjects(stHostContext& stContext) {
    if (!stContext.clObjects.m_fnCountMade() ||
        !m_pSystem->m_fnMakeCurrent(m_fnWindowOf(stContext), stContext.pContext))
        return;
    m_uObjectsMade += stContext.clObjects.m_fnCountMade();
    m_uObjectsLeft += stContext.clObjects.m_fnCountLeft(stContext.stGl);
    stContext.clObjects = {};
}

void CHostLoop::m_fnDropContext(stHostContext& stContext) {
    if (!stContext.pContext) return;
    stContext.pScene.reset();
    m_fnCountObjects(stContext);
    m_pSystem->m_fnMakeCurrent(nullptr, nullptr);
    m_pSystem->m_fnDestroyContext(stContext.pContext);
    stContext.pContext = nullptr;
}

bool CHostLoop::m_fnOpen() {
    m_pSystem = MakeWindowSystem();
    if (!m_pSystem->m_fnOpen(m_st)) return false;
    m_uWindows = m_st.uWindows;
    m_uContexts = m_st.uContexts;
    for (u32 i = 0; i < m_uWindows; ++i)
        if (!(m_pWindows[i] = m_pSystem->m_fnMakeWindow(m_uWidth, m_uHeight))) return false;
    for (u32 i = m_uContexts; i-- > 0;)
        if (!m_fnMakeContext(m_stContexts[i], m_pWindows[i % m_uWindows])) return false;
    const stHostGl& stGl = m_stContexts[0].stGl;
    std::string strGl = std::to_string(stGl.iMajor);
    strGl.append(".").append(std::to_string(stGl.iMinor)).append(stGl.bCore ? " core" : " compat");
    m_fnPrint("gl", strGl);
    m_fnPrint("renderer", reinterpret_cast<const char*>(stGl.GetString(GL_RENDERER)));
    return true;
}

void CHostLoop::m_fnSleepPumping(u32 uMilliseconds) {
    const i64 iEnd = NowNanoseconds() + i64(uMilliseconds) * 1000000;
    while (NowNanoseconds() < iEnd) {
        if (!m_st.bNoPump) m_pSystem->m_fnPump();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

void CHostLoop::m_fnWait() {
    if (!m_st.strReadyFile.empty() && !m_uThread) MakeFile(m_st.strReadyFile);
    while (!m_st.strWaitFile.empty() && !FileExists(m_st.strWaitFile)) m_fnSleepPumping(10);
    while (m_st.bAwaitDetour && !m_pSystem->m_fnIsDetoured()) m_fnSleepPumping(10);
    m_fnSleepPumping(m_st.uPauseMs);
}

/// The first of several windows goes, and with it the first of several contexts.
void CHostLoop::m_fnCloseFirst() {
    if (m_uWindows < 2) return;
    if (m_uContexts > 1) m_fnDropContext(m_stContexts[m_uFirstContext++]);
    m_pSystem->m_fnMakeCurrent(m_pWindows[1], m_stContexts[m_uFirstContext].pContext);
    m_pSystem->m_fnDestroyWindow(m_pWindows[m_uFirstWindow]);
    m_pWindows[m_uFirstWindow++] = nullptr;
}

/// Which of so many comes in a frame, where they are used in turn.
u32 CHostLoop::InTurn(u32 uFrame, u32 uFirst, u32 uCount) {
    return uFirst + (uFrame - 1) % (uCount - uFirst);
}

bool CHostLoop::m_fnChangeSurroundings(u32 uFrame) {
    if (m_st.uCloseFirst && uFrame == m_st.uCloseFirst) m_fnCloseFirst();
    if (m_st.bResizeStorm && uFrame % 3 == 0) {
        const auto& uSize = g_uStormSizes[(uFrame / 3) % std::size(g_uStormSizes)];
        m_uWidth = uSize[0], m_uHeight = uSize[1];
        for (u32 i = m_uFirstWindow; i < m_uWindows; ++i)
            m_pSystem->m_fnResize(m_pWindows[i], m_uWidth, m_uHeight);
    }
    if (m_st.uHideFrom && uFrame == m_st.uHideFrom)
        for (u32 i = m_uFirstWindow; i < m_uWindows; ++i) m_pSystem->m_fnHide(m_pWindows[i]);
    if (m_st.uRemakeContext && uFrame > 1 && (uFrame - 1) % m_st.uRemakeContext == 0)
        for (u32 i = m_uContexts; i-- > m_uFirstContext;) {
            m_fnDropContext(m_stContexts[i]);
            if (!m_fnMakeContext(m_stContexts[i], m_fnWindowOf(m_stContexts[i]))) return false;
        }
    if (m_st.bFreshSurface && uFrame > 1 && (uFrame - 1) % 30 == 0)
        for (u32 i = m_uFirstWindow; i < m_uWindows; ++i) {
            m_pSystem->m_fnFreshSurface(m_pWindows[i]);
            m_pSystem->m_fnMakeCurrent(m_pWindows[i], m_stContexts[m_uFirstContext].pContext);
        }
    return true;
}

void CHostLoop::m_fnTakeErrors(stHostGl& stGl, std::string& strCodes, u32& uFrames) {
    for (u32 i = 0; i < 10; ++i) { // a lost context may answer errors for ever
        const GLenum eError = stGl.GetError();
        if (eError == GL_NO_ERROR) break;
        AppendPiece(strCodes, Hex(eError));
    }
    uFrames += !strCodes.empty();
}

void CHostLoop::m_fnCompareStates(u32 uFrame,
                                  const std::vector<std::pair<std::string, std::string>>& listBefore,
                                  stHostGl& stGl) {
    const auto listAfter = ReadStates(stGl);
    for (std::size_t i = 0; i < listAfter.size(); ++i) {
        if (listBefore[i].second != listAfter[i].second) m_setChanged.insert(listAfter[i].first);
        if (uFrame != m_st.uFrames) continue;
        m_fnPrint(Joined("state_before.", listBefore[i].first), listBefore[i].second);
        m_fnPrint(Joined("state_after.", listAfter[i].first), listAfter[i].second);
    }
}

void CHostLoop::m_fnTakeSwapCpu(i64 iCpu) {
    m_iLongestCpu = std::max(m_iLongestCpu, iCpu);
    if (m_vecSwapCpu.size() < g_uSwapsListed) m_vecSwapCpu.push_back(iCpu);
}

bool CHostLoop::m_fnSwap(u32 uFrame, stHostContext& stContext, WindowRef pWindow) {
    std::vector<std::pair<std::string, std::string>> listBefore;
    std::string strIgnored;
    if (m_st.bPrintErrors) m_fnTakeErrors(stContext.stGl, strIgnored, m_uErrorFramesBefore);
    if (m_st.bPrintState) listBefore = ReadStates(stContext.stGl);
    if (uFrame == m_st.uSwapCpuFrom && !m_st.strMarkFile.empty()) MakeFile(m_st.strMarkFile);
    const i64 iStart = NowNanoseconds(), iCpu = m_st.bSwapCpu ? CpuNanoseconds() : 0;
    const bool bSwapped = m_pSystem->m_fnSwap(pWindow);
    if (uFrame == 1) m_iFirstFrame = NowNanoseconds() - iStart;
    if (m_st.bSwapCpu && uFrame >= m_st.uSwapCpuFrom) m_fnTakeSwapCpu(CpuNanoseconds() - iCpu);
    if (m_st.bPrintErrors) {
        std::string strCodes;
        m_fnTakeErrors(stContext.stGl, strCodes, m_uErrorFrames);
        if (!strCodes.empty() && m_uErrorFrames <= g_uErrorFramesPrinted)
            m_fnPrint(Joined("error_frame.", std::to_string(uFrame)), strCodes);
    }
    if (m_st.bPrintState) m_fnCompareStates(uFrame, listBefore, stContext.stGl);
    return bSwapped;
}

void CHostLoop::m_fnAfterSwap(u32 uFrame, stHostContext&, WindowRef pWindow) {
    if (!m_st.strStamps.empty()) m_iStamps.push_back(NowNanoseconds());
    if (uFrame == m_st.uDumpFrame && !m_st.strDumpPpm.empty()) {
        m_fnPrint("presented_from", m_pSystem->m_fnPresentedFrom());
        if (!WritePpm(m_fnOwnFile(m_st.strDumpPpm), m_pSystem->m_fnReadPresented(pWindow)))
            m_fnPrint("dump", "failed");
    }
    if (!m_st.strScribble.empty()) m_pSystem->m_fnScribble(m_st.strScribble, uFrame);
    if (m_fnBenchFrame) m_fnBenchFrame();
    if (m_st.uStutterEvery && uFrame % m_st.uStutterEvery == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(m_st.uStutterMs));
    else if (m_st.uFpsCap)
        std::this_thread::sleep_for(std::chrono::nanoseconds(1000000000 / m_st.uFpsCap));
}

bool CHostLoop::m_fnFrame(u32 uFrame) {
    if (!m_st.bNoPump) m_pSystem->m_fnPump();
    if (!m_fnChangeSurroundings(uFrame)) return false;
    WindowRef pWindow = m_pWindows[InTurn(uFrame, m_uFirstWindow, m_uWindows)];
    stHostContext& stContext = m_stContexts[InTurn(uFrame, m_uFirstContext, m_uContexts)];
    if (m_uWindows + m_uContexts > 2 && !m_pSystem->m_fnMakeCurrent(pWindow, stContext.pContext))
        return false;
    if (m_st.bOddState) ClearOddStates(stContext.stGl);
    if (!m_st.strDrawBuffer.empty()) SetDrawBuffer(stContext.stGl, "back");
    if (!m_st.bIdle) stContext.pScene->m_fnDraw(m_uWidth, m_uHeight);
    if (uFrame == m_st.uDumpFrame && !m_st.strDumpBefore.empty() &&
        !WritePpm(m_fnOwnFile(m_st.strDumpBefore),
                  ReadBufferPicture(stContext.stGl, GL_BACK, m_uWidth, m_uHeight)))
        m_fnPrint("dump_before", "failed");
    if (m_st.bOddState) SetOddStates(stContext.stGl);
    if (m_st.bOddReading) SetOddReading(stContext.stGl);
    if (!m_st.strDrawBuffer.empty()) SetDrawBuffer(stContext.stGl, m_st.strDrawBuffer);
    m_uSwaps += m_fnSwap(uFrame, stContext, pWindow);
    g_uFramesOfAll.store(++m_uFrames, std::memory_order_relaxed);
    m_fnAfterSwap(uFrame, stContext, pWindow);
    return true;
}

/// The further threads write beside the first one's file.
std::string CHostLoop::m_fnOwnFile(const std::string& strPath) const {
    std::string strOwn = strPath;
    if (m_uThread) strOwn.append(".").append(std::to_string(m_uThread + 1));
    return strOwn;
}

void CHostLoop::m_fnReport(i64 iTotal) {
    m_fnPrint("frames", std::to_string(m_uFrames));
    m_fnPrint("swaps", std::to_string(m_uSwaps));
    m_fnPrint("errors", std::to_string(m_uErrorFrames));
    m_fnPrint("errors_before", std::to_string(m_uErrorFramesBefore));
    std::string strSize = std::to_string(m_uWidth);
    m_fnPrint("size", strSize.append("x").append(std::to_string(m_uHeight)));
    m_fnPrint("contexts_made", std::to_string(m_uContextsMade));
    for (stHostContext& st : m_stContexts)
        if (st.pContext) m_fnCountObjects(st);
    if (m_st.uObjects) {
        m_fnPrint("objects_made", std::to_string(m_uObjectsMade));
        m_fnPrint("objects_left", std::to_string(m_uObjectsLeft));
    }
    m_fnPrint("first_swap_ns", std::to_string(m_iFirstFrame));
    m_fnPrint("total_ns", std::to_string(iTotal));
    if (m_st.bSwapCpu) {
        m_fnPrint("longest_swap_cpu_ns", std::to_string(m_iLongestCpu));
        std::string strSwaps;
        for (const i64 i : m_vecSwapCpu) AppendPiece(strSwaps, std::to_string(i));
        m_fnPrint("swap_cpu_ns", strSwaps);
    }
    if (m_st.uMeasureFrom && m_uFrames >= m_st.uMeasureFrom) {
        m_fnPrint("measured_frames", std::to_string(m_uFrames - m_st.uMeasureFrom + 1));
        m_fnPrint("measured_wall_ns", std::to_string(NowNanoseconds() - m_iWindowWall));
        m_fnPrint("measured_cpu_ns", std::to_string(CpuNanoseconds() - m_iWindowCpu));
    }
    if (!m_st.bPrintState) return;
    std::string strChanged;
    for (const std::string& strName : m_setChanged) AppendPiece(strChanged, strName);
    m_fnPrint("state_changed", strChanged);
}

/// Wine sets its GL driver up on first use, which two threads at once may lose.
bool CHostLoop::m_fnOpenInTurn() {
    static std::mutex s_lock;
    const std::lock_guard<std::mutex> clTurn(s_lock);
    return m_fnOpen();
}

int CHostLoop::m_fnRun() {
    if (!m_fnOpenInTurn()) {
        m_fnPrint("failed", "no window or context");
        return 3;
    }
    m_fnBenchFrame = m_pSystem->m_fnFrameHook();
    m_iStamps.reserve(m_st.strStamps.empty() ? 0 : m_st.uFrames);
    m_fnWait();
    const i64 iStart = NowNanoseconds();
    for (u32 uFrame = 1; uFrame <= m_st.uFrames; ++uFrame) {
        if (uFrame == m_st.uMeasureFrom) m_iWindowWall = NowNanoseconds(), m_iWindowCpu = CpuNanoseconds();
        if (!m_fnFrame(uFrame)) {
            m_fnPrint("failed", Joined("context lost at frame ", std::to_string(uFrame)));
            return 3;
        }
        if (!m_st.strStopFile.empty() && uFrame % 16 == 0 && FileExists(m_st.strStopFile)) break;
        if (m_pSystem->m_fnIsDone()) break;
    }
    m_fnReport(NowNanoseconds() - iStart);
    m_fnSleepPumping(m_st.uLingerMs);
    if (m_st.strStamps.empty() || m_uThread) return 0;
    if (std::FILE* pFile = std::fopen(m_st.strStamps.c_str(), "w")) {
        for (i64 iStamp : m_iStamps) std::fprintf(pFile, "%lld\n", static_cast<long long>(iStamp));
        std::fclose(pFile);
    }
    return 0;
}

} // namespace

int NextWindowX(u32 uWidth) {
    static std::atomic<int> s_iNext{0};
    return s_iNext.fetch_add(int(uWidth));
}

bool WritePpm(const std::string& strPath, const stPicture& stShown) {
    if (stShown.u8Rgb.empty()) return false;
    std::FILE* pFile = std::fopen(strPath.c_str(), "wb");
    if (!pFile) return false;
    std::fprintf(pFile, "P6\n%u %u\n255\n", stShown.uWidth, stShown.uHeight);
    const bool bWritten =
        std::fwrite(stShown.u8Rgb.data(), 1, stShown.u8Rgb.size(), pFile) == stShown.u8Rgb.size();
    return std::fclose(pFile) == 0 && bWritten;
}

void AppendPiece(std::string& strList, const std::string& strPiece) {
    if (!strList.empty()) strList.append(",");
    strList.append(strPiece);
}

void PrintLine(const std::string& strKey, const std::string& strValue) {
    static std::mutex s_lock;
    const std::lock_guard clGuard(s_lock);
    std::printf("%s=%s\n", strKey.c_str(), strValue.c_str());
    std::fflush(stdout);
}

namespace {

#if defined(_WIN32)
DWORD WINAPI CallFunction(void* pFunction) {
    (*static_cast<const std::function<void()>*>(pFunction))();
    return 0;
}

bool RunThread(u32 uStackBytes, const std::function<void()>& fnRun) {
    void* const pFunction = const_cast<std::function<void()>*>(&fnRun);
    HANDLE hThread = CreateThread(nullptr, uStackBytes, CallFunction, pFunction,
                                  STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (!hThread) return false;
    WaitForSingleObject(hThread, INFINITE);
    CloseHandle(hThread);
    return true;
}
#else
void* CallFunction(void* pFunction) {
    (*static_cast<const std::function<void()>*>(pFunction))();
    return nullptr;
}

bool RunThread(u32 uStackBytes, const std::function<void()>& fnRun) {
    pthread_attr_t stAttributes;
    pthread_t thread;
    pthread_attr_init(&stAttributes);
    const bool bStarted =
        pthread_attr_setstacksize(&stAttributes, uStackBytes) == 0 &&
        pthread_create(&thread, &stAttributes, CallFunction, const_cast<std::function<void()>*>(&fnRun)) == 0;
    pthread_attr_destroy(&stAttributes);
    return bStarted && pthread_join(thread, nullptr) == 0;
}
#endif

/// Ends the program from this thread while another one is in its swaps.
int ExitWhileSwapping(const stHostOptions& stOptions) {
    std::atomic<int> iCode{-1};
    std::thread([&] { iCode = CHostLoop(stOptions, 0).m_fnRun(); }).detach();
    while (g_uFramesOfAll < stOptions.uExitAfter && iCode < 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::exit(iCode < 0 ? 0 : 4); // a thread that has ended was not swapping
}

/// Draws in a thread with a stack of the size that was asked for.
int RunOnStack(const stHostOptions& stOptions) {
    int iCode = 4;
    const std::function<void()> fnRun = [&] { iCode = CHostLoop(stOptions, 0).m_fnRun(); };
    return RunThread(stOptions.uStackKb * 1024, fnRun) ? iCode : 4;
}

} // namespace

int RunHost(int iCount, char** pszArguments) {
    stHostOptions stOptions;
    const int iParsed = ParseHostOptions(iCount, pszArguments, stOptions);
    if (iParsed) return iParsed == 1 ? 0 : iParsed;
    if (stOptions.uExitAfter) return ExitWhileSwapping(stOptions);
    if (stOptions.uStackKb) return RunOnStack(stOptions);
    int iCodes[g_uHostThreads] = {};
    std::vector<std::thread> listThreads;
    for (u32 i = 1; i < stOptions.uThreads; ++i)
        listThreads.emplace_back([&, i] { iCodes[i] = CHostLoop(stOptions, i).m_fnRun(); });
    iCodes[0] = CHostLoop(stOptions, 0).m_fnRun();
    for (std::thread& clThread : listThreads) clThread.join();
    return *std::max_element(std::begin(iCodes), std::end(iCodes));
}
