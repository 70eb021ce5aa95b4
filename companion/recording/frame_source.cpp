#include "companion/recording/frame_source.h"
#include "companion/recording/record.h"
#include "platform/tool.h"

namespace companion::recording {

/// Another process of that name begins anew.
void FrameSource::Probe(sensors::Numbers&) {
    if (m_pReader && !platform::tool::IsProcessGone(m_uProcessId, 0)) return;
    m_pReader.reset();
    u32 uProcessId = 0;
    if (!FindCarrier(m_stLibrary, m_strProgram, uProcessId)) return;
    m_uProcessId = uProcessId;
    m_live = {};
    m_pReader = std::make_unique<TraceReader>(*m_stLibrary.pSegment, uProcessId);
}

void FrameSource::List(const sensors::Numbers&) {
    m_listReadings = m_live.Readings();
    for (sensors::Reading& st : m_listReadings) st.iValue.reset();
}

void FrameSource::Read() {
    std::vector<stTraceFrame> listFrames;
    TraceState eState = TraceState::Waiting;
    if (m_pReader) eState = m_pReader->Poll(false, listFrames);
    if (m_pReader) m_live.Take(listFrames, m_pReader->Head().iFrequency);
    if (eState == TraceState::Ended) m_live.Break();
    m_listReadings = m_live.Readings();
    if (m_pReader && !platform::tool::IsProcessGone(m_uProcessId, 0)) return;
    for (sensors::Reading& st : m_listReadings) st.iValue.reset();
}

} // namespace companion::recording
