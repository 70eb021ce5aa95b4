#include "companion/recording/trace_ring.h"
#include "companion/utf.h"
#include <atomic>
#include <bit>
#include <cstring>

namespace companion::recording {
namespace {

constexpr i64 kHighestFrequency = 5'000'000'000;
constexpr u32 kMostFrames = 1u << 20;

template <size_t N> std::string Text(const char (&sz)[N]) { return {sz, strnlen(sz, N)}; }

bool IsSound(const stTraceHeader& st, size_t uBytes) {
    if (std::memcmp(st.acTag, g_szTraceTag, sizeof st.acTag) != 0 || st.uVersion != g_uTraceVersion)
        return false;
    if (st.uHeaderBytes != g_uTraceHeaderBytes || st.uFrameBytes != sizeof(stTraceFrame)) return false;
    if (!std::has_single_bit(st.uFrames) || st.uFrames < 2 || st.uFrames > kMostFrames) return false;
    if (st.iFrequency < 1 || st.iFrequency > kHighestFrequency) return false;
    return uBytes >= g_uTraceHeaderBytes + size_t{st.uFrames} * sizeof(stTraceFrame);
}

} // namespace

std::optional<TraceHead> ReadTraceHead(const u8* pBlock, size_t uBytes) {
    if (!pBlock || uBytes < sizeof(stTraceHeader)) return std::nullopt;
    stTraceHeader st; // a copy does not change while it is read
    std::memcpy(&st, pBlock, sizeof st);
    if (!IsSound(st, uBytes)) return std::nullopt;
    TraceHead stHead{st.uProcessId,
                     st.uFrames,
                     st.iFrequency,
                     st.uWidth,
                     st.uHeight,
                     st.uLimit,
                     st.uEnded != 0,
                     {},
                     {},
                     {},
                     {},
                     st.uOverlay,
                     st.uPassed,
                     st.uSurfaces};
    stHead.strVendor = Text(st.szVendor);
    stHead.strRenderer = Text(st.szRenderer);
    stHead.strVersion = Text(st.szVersion);
    stHead.strProfile = Utf8FromUnits(st.wzProfile, g_uProfileNameUnits);
    return stHead;
}

u64 TraceRing::Written() const {
    const u64 uWritten = *reinterpret_cast<const volatile u64*>(m_pBlock + offsetof(stTraceHeader, uWritten));
    std::atomic_thread_fence(std::memory_order_acquire);
    return uWritten;
}

void TraceRing::Begin(const u8* pBlock, const TraceHead& stHead) {
    *this = {};
    m_pBlock = pBlock;
    m_uFrames = stHead.uFrames;
    m_uNext = Written();
}

/// A frame that is not the one looked for has been overwritten meanwhile, and times do not run back.
void TraceRing::Take(u64 uIndex, std::vector<stTraceFrame>& listFrames) {
    stTraceFrame st;
    std::memcpy(&st, m_pBlock + g_uTraceHeaderBytes + (uIndex % m_uFrames) * sizeof st, sizeof st);
    if (st.uNumber != uIndex + 1 || st.iBefore < m_iLast) {
        ++m_uLost;
        return;
    }
    m_iLast = st.iBefore;
    listFrames.push_back(st);
}

void TraceRing::Read(bool bAll, std::vector<stTraceFrame>& listFrames) {
    const u64 uWritten = Written();
    if (uWritten < m_uNext) m_uNext = uWritten; // no writer of ours counts back
    const u64 uEnd = bAll || uWritten == m_uNext ? uWritten : uWritten - 1;
    const u64 uOldest =
        uWritten >= m_uFrames ? uWritten - m_uFrames + 1 : 0; // the writer is at the one before
    if (m_uNext < uOldest) {
        m_uLost += uOldest - m_uNext;
        m_uNext = uOldest;
    }
    const size_t uHad = listFrames.size();
    for (; m_uNext < uEnd; ++m_uNext) Take(m_uNext, listFrames);
    // What was written while we read may have overwritten the first of them.
    const u64 uNow = Written();
    const u64 uSafe = uNow >= m_uFrames ? uNow - m_uFrames + 1 : 0;
    size_t uTorn = uHad;
    while (uTorn < listFrames.size() && listFrames[uTorn].uNumber <= uSafe) ++uTorn;
    m_uLost += uTorn - uHad;
    listFrames.erase(listFrames.begin() + static_cast<std::ptrdiff_t>(uHad),
                     listFrames.begin() + static_cast<std::ptrdiff_t>(uTorn));
}

} // namespace companion::recording
