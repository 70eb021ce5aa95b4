#include "platform/threads.h"
#include "platform/headless/state.h"
#include <algorithm>

namespace platform {
namespace {

using headless::Get;
using headless::State;
using headless::ThreadRecord;

thread_local ThreadRecord* t_pCurrent = nullptr;

u32 RunRecord(ThreadRecord& stThread) {
    ThreadRecord* pOuter = t_pCurrent;
    t_pCurrent = &stThread;
    const u32 uResult = stThread.m_fnThread(stThread.m_pArgument);
    t_pCurrent = pOuter;
    return uResult;
}

} // namespace

ThreadHandle StartThread(ThreadFunction fnThread, void* pArgument) noexcept {
    State& st = Get();
    if (st.m_fnStartStep) st.m_fnStartStep();
    std::lock_guard lock(st.m_lock);
    if (st.m_eThreadMode == headless::ThreadMode::Refused || !fnThread) return nullptr;
    auto pThread = std::make_shared<ThreadRecord>();
    pThread->m_fnThread = fnThread;
    pThread->m_pArgument = pArgument;
    ++st.m_uStarted;
    st.m_vecThreads.push_back(pThread);
    if (st.m_eThreadMode == headless::ThreadMode::Held)
        st.m_vecHeld.push_back(pThread);
    else
        pThread->m_thread = std::thread([pThread] { RunRecord(*pThread); });
    return pThread.get();
}

bool StartDetachedThread(ThreadFunction fnThread, void* pArgument) noexcept {
    return StartThread(fnThread, pArgument) != nullptr;
}

void KillThread(ThreadHandle hThread) noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    ++st.m_uKilled;
    bool bKnown = false;
    for (auto& pThread : st.m_vecThreads)
        if (pThread.get() == hThread) bKnown = pThread->m_bStop = true;
    st.m_uKilledStrangers += hThread && !bKnown;
}

bool StopRequested() noexcept {
    State& st = Get();
    std::lock_guard lock(st.m_lock);
    return t_pCurrent && t_pCurrent->m_bStop;
}

void CriticalSection::Initialize(u32 uSpinCount) noexcept {
    if (!m_pImpl) m_pImpl = new std::mutex;
    Get().m_uSpinCount = uSpinCount;
    ++Get().m_uSections;
}

void CriticalSection::Enter() noexcept {
    if (void* const pMutex = m_pImpl) static_cast<std::mutex*>(pMutex)->lock();
}

void CriticalSection::Leave() noexcept {
    if (void* const pMutex = m_pImpl) static_cast<std::mutex*>(pMutex)->unlock();
}

void CriticalSection::Delete() noexcept {
    if (Get().m_uSections) --Get().m_uSections;
}

namespace headless {

void SetThreadMode(ThreadMode eMode) { Get().m_eThreadMode = eMode; }

bool RunHeldThread(u32* puResult) {
    State& st = Get();
    std::shared_ptr<ThreadRecord> pThread;
    {
        std::lock_guard lock(st.m_lock);
        if (st.m_vecHeld.empty()) return false;
        pThread = st.m_vecHeld.front();
        st.m_vecHeld.erase(st.m_vecHeld.begin());
    }
    const u32 uResult = RunRecord(*pThread);
    if (puResult) *puResult = uResult;
    return true;
}

u32 HeldThreads() { return static_cast<u32>(Get().m_vecHeld.size()); }
u32 StartedThreads() { return Get().m_uStarted; }
u32 KilledThreads() { return Get().m_uKilled; }
u32 KilledStrangers() { return Get().m_uKilledStrangers; }
void SetStartStep(std::function<void()> fnStep) { Get().m_fnStartStep = std::move(fnStep); }

void JoinThreads() {
    std::vector<std::shared_ptr<ThreadRecord>> vecThreads;
    {
        std::lock_guard lock(Get().m_lock);
        vecThreads = Get().m_vecThreads;
    }
    for (auto& pThread : vecThreads)
        if (pThread->m_thread.joinable()) pThread->m_thread.join();
}

u32 LastSpinCount() { return Get().m_uSpinCount; }
u32 LiveCriticalSections() { return Get().m_uSections; }

} // namespace headless
} // namespace platform
