#include "companion/recording/trace_reader.h"
#include "platform/tool.h"
#include <cstdio>

namespace companion::recording {
namespace {

constexpr u32 kRefused = ~0u;
constexpr u32 kAskAgain = 4; // polls without an answer until the question is put once more

bool IsGone(u32 uProcessId) { return platform::tool::IsProcessGone(uProcessId, 0); }

std::string BlockName(u32 uProcessId, u32 uSerial) {
    char szName[64];
    std::snprintf(szName, sizeof szName, g_szTraceBlockFormat, uProcessId, uSerial);
    return szName;
}

} // namespace

TraceReader::~TraceReader() { Close(); }

/// The place of this process, else a free one, else one of a process that is gone.
stTraceRequest* TraceReader::Place() {
    stTraceRequests& st = m_stSegment.TraceRequests;
    for (stTraceRequest& stRequest : st.aRequest)
        if (g_fnReadOnce(stRequest.uProcessId) == m_uProcessId) return &stRequest;
    for (stTraceRequest& stRequest : st.aRequest) {
        const u32 uId = g_fnReadOnce(stRequest.uProcessId);
        if (uId != 0 && !IsGone(uId)) continue;
        stRequest = {m_uProcessId, 0, 0, 0};
        ++st.uChanges;
        return &stRequest;
    }
    return nullptr;
}

void TraceReader::Close() {
    m_uLostBefore += m_ring.Lost();
    m_ring = {};
    platform::tool::CloseForeignBlock(m_stBlock);
}

TraceState TraceReader::Open(u32 uSerial) {
    if (uSerial == kRefused) return TraceState::Refused;
    if (uSerial != 0)
        m_stBlock = platform::tool::OpenForeignBlock(m_uProcessId, BlockName(m_uProcessId, uSerial),
                                                     g_uTraceBlockBytes);
    const auto stHead = ReadTraceHead(m_stBlock.pView, m_stBlock.uBytes);
    if (stHead && stHead->uProcessId == m_uProcessId && !stHead->bEnded) {
        m_stHead = *stHead;
        m_ring.Begin(m_stBlock.pView, m_stHead);
        return TraceState::Running;
    }
    platform::tool::CloseForeignBlock(m_stBlock);
    // Instances look only when something has changed.
    if (++m_uPolls % kAskAgain == 0) ++m_stSegment.TraceRequests.uChanges;
    return TraceState::Waiting;
}

TraceState TraceReader::Poll(bool bAll, std::vector<stTraceFrame>& listFrames) {
    stTraceRequest* const pPlace = Place();
    if (!pPlace) return TraceState::Full;
    pPlace->uBeat = g_fnReadOnce(pPlace->uBeat) + 1;
    if (!m_stBlock.pView) return Open(g_fnReadOnce(pPlace->uSerial));
    const auto stHead = ReadTraceHead(m_stBlock.pView, m_stBlock.uBytes);
    const bool bEnded = !stHead || stHead->bEnded;
    m_ring.Read(bAll || bEnded, listFrames);
    if (stHead) m_stHead = *stHead;
    if (bEnded) Close();
    return bEnded ? TraceState::Ended : TraceState::Running;
}

} // namespace companion::recording
