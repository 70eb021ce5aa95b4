// How a sample becomes a column of vertices, and how the columns before it make room.
#include "controls/line_graph.h"

#include <algorithm>
#include <cmath>

namespace {

struct stVector {
    f32 x, y;
};

/// Root in double precision of a sum in single precision. Nothing guards against a sum of 0.
f32 Root(f32 fSum) { return static_cast<f32>(std::sqrt(static_cast<f64>(fSum))); }

f32 Length(stVector st) { return Root(st.x * st.x + st.y * st.y); }

stVector Unit(stVector st) {
    const f32 fLength = Length(st);
    return {st.x / fLength, st.y / fLength};
}

} // namespace

f32 CLineGraph_Base::m_fnColumnX(i64 iColumn) const { return static_cast<f32>(iColumn) * m_fColumnStep; }

/// y of the sample uBack before the newest one; uBack is below the ring's size.
f32 CLineGraph_Base::m_fnRecentY(u32 uBack) const {
    return m_pPixelY[(m_uHead + m_uRingSize - uBack) % m_uRingSize];
}

/// The points (x, y) + offset and (x, y) - offset.
void CLineGraph_Base::m_fnPlotPair(u32 uPair, f32 x, f32 y, f32 fOffX, f32 fOffY) {
    stShapeVertex* const pPair = m_pDataVertices + 2 * uPair;
    pPair[0] = {{x + fOffX, y + fOffY}, {0, 0}};
    pPair[1] = {{x - fOffX, y - fOffY}, {0, 0}};
}

void CLineGraph_Base::m_fnPlotQuad(u32 uQuad, f32 x, f32 fUpperY, f32 fLowerY) {
    stShapeVertex* const pQuad = m_pDataVertices + 4 * uQuad;
    const f32 fRight = x + m_fDataWidth;
    pQuad[0] = {{x, fUpperY}, {0, 0}};
    pQuad[1] = {{fRight, fUpperY}, {0, 0}};
    pQuad[2] = {{x, fLowerY}, {0, 0}};
    pQuad[3] = {{fRight, fLowerY}, {0, 0}};
}

bool CLineGraph_Base::m_fnAppendColumn() {
    switch (m_uLineType) {
    case LINEGRAPH_TYPE_CLASSIC:
        return m_fnAppendClassic();
    case LINEGRAPH_TYPE_MOUNTAIN:
        return m_fnAppendMountain();
    case LINEGRAPH_TYPE_STAIR:
        return m_fnAppendStair();
    case LINEGRAPH_TYPE_BAR:
        return m_fnAppendBar();
    default:
        return false;
    }
}

/// Square end of the newest segment, at its newer point (uBack 0) or its older one (1).
void CLineGraph_Base::m_fnPlotEnd(u32 uPair, u32 uBack) {
    const f32 dx = m_fnColumnX(i64{m_iColumn} - 1) - m_fnColumnX(m_iColumn);
    const f32 dy = m_fnRecentY(0) - m_fnRecentY(1);
    const f32 fLength = Length({dx, dy});
    f32 nx = dy / fLength * m_fHalfWidth;
    f32 ny = dx / fLength * m_fHalfWidth;
    if (ny > 0) { // the first point of a pair is the upper one
        nx = -nx;
        ny = -ny;
    }
    m_fnPlotPair(uPair, m_fnColumnX(i64{m_iColumn} - uBack), m_fnRecentY(uBack), nx, ny);
}

/// Mitre at the second-last point.
void CLineGraph_Base::m_fnPlotJoin() {
    const f32 y = m_fnRecentY(1);
    const stVector stOlder = Unit({-m_fColumnStep, m_fnRecentY(2) - y});
    const stVector stNewer = Unit({m_fColumnStep, m_fnRecentY(0) - y});
    const stVector stBisector{stNewer.x - stOlder.x, -(stNewer.y - stOlder.y)};
    const f32 fDot = stOlder.x * stNewer.x + stOlder.y * stNewer.y;
    // KEEP(profiles): without limit, so a sharp turn shows a long spike.
    const f32 fMitre = m_fHalfWidth / Root((1.0f - fDot) * 0.5f);
    const f32 fLength = Length(stBisector);
    f32 fOffY = stBisector.x / fLength * fMitre;
    f32 fOffX = stBisector.y / fLength * fMitre;
    if (fOffY > 0) {
        fOffX = -fOffX;
        fOffY = -fOffY;
    }
    m_fnPlotPair(m_uSampleCount - 2, m_fnColumnX(i64{m_iColumn} - 1), y, fOffX, fOffY);
}

bool CLineGraph_Base::m_fnAppendClassic() {
    if (m_uSampleCount < 2) return true;
    if (m_uSampleCount == 2)
        m_fnPlotEnd(0, 1);
    else
        m_fnPlotJoin();
    m_fnPlotEnd(m_uSampleCount - 1, 0);
    return true;
}

bool CLineGraph_Base::m_fnAppendMountain() {
    if (m_uSampleCount == 0) return true;
    const f32 x = m_fnColumnX(m_iColumn);
    stShapeVertex* const pPair = m_pDataVertices + 2 * (m_uSampleCount - 1);
    pPair[0] = {{x, m_fnRecentY(0)}, {0, 0}};
    pPair[1] = {{x, m_fGraphH}, {0, 0}};
    return true;
}

bool CLineGraph_Base::m_fnAppendStair() {
    if (m_uSampleCount < 2) return true;
    auto [fUpperY, fLowerY] = std::minmax({m_fnRecentY(0), m_fnRecentY(1)});
    if (m_fDataWidth > fLowerY - fUpperY) { // a flat run still shows a step
        const f32 fMiddle = (fUpperY + fLowerY) * 0.5f;
        fUpperY = fMiddle - m_fHalfWidth;
        fLowerY = fMiddle + m_fHalfWidth;
    }
    m_fnPlotQuad(m_uSampleCount - 2, m_fnColumnX(i64{m_iColumn} - 1), fUpperY, fLowerY);
    return true;
}

bool CLineGraph_Base::m_fnAppendBar() {
    if (m_uSampleCount == 0) return true;
    m_fnPlotQuad(m_uSampleCount - 1, m_fnColumnX(m_iColumn), m_fnRecentY(0), m_fGraphH);
    return true;
}

void CLineGraph_Base::m_fnScroll(bool bRingWasFull, bool, bool bAtLastColumn) {
    if (!m_pVertices || m_uSampleCount == 0) return;
    const u32 uSamples = m_uSampleCount;
    if (m_uLineType == LINEGRAPH_TYPE_CLASSIC) m_fnScrollClassic(bRingWasFull, bAtLastColumn);
    if (m_uLineType == LINEGRAPH_TYPE_MOUNTAIN) m_fnScrollMountain(bRingWasFull, bAtLastColumn);
    if (m_uLineType == LINEGRAPH_TYPE_STAIR)
        m_fnScrollQuads(uSamples > 2 ? uSamples - 2 : 0, bRingWasFull, bAtLastColumn);
    if (m_uLineType == LINEGRAPH_TYPE_BAR) m_fnScrollQuads(uSamples - 1, bRingWasFull, bAtLastColumn);
}

void CLineGraph_Base::m_fnScrollClassic(bool bRingWasFull, bool bAtLastColumn) {
    if (!bRingWasFull && !bAtLastColumn) return;
    const u32 uVertices = 2 * (m_uSampleCount - 1);
    if (bRingWasFull) std::copy_n(m_pDataVertices + 2, uVertices, m_pDataVertices);
    // KEEP(profiles): step by step from where it stands, so that rounding adds up along the way.
    for (u32 i = 0; i < uVertices; ++i) m_pDataVertices[i].m_afPos[0] -= m_fColumnStep;
}

void CLineGraph_Base::m_fnScrollMountain(bool bRingWasFull, bool bAtLastColumn) {
    const u32 uPairs = m_uSampleCount - 1;
    const i64 iFirst = i64{m_iColumn} - uPairs;
    for (u32 i = 0; i < 2 * uPairs; ++i) {
        f32* const afPos = m_pDataVertices[i].m_afPos;
        if (bRingWasFull)
            afPos[1] = m_pDataVertices[i + 2].m_afPos[1];
        else if (bAtLastColumn)
            afPos[0] = m_fnColumnX(iFirst + i / 2);
    }
}

/// uOpenQuads: those before the newest one.
void CLineGraph_Base::m_fnScrollQuads(u32 uOpenQuads, bool bRingWasFull, bool bAtLastColumn) {
    const i64 iFirst = i64{m_iColumn} - m_uSampleCount + 1;
    for (u32 i = 0; i < 4 * uOpenQuads; ++i) {
        f32* const afPos = m_pDataVertices[i].m_afPos;
        if (bRingWasFull) afPos[1] = m_pDataVertices[i + 4].m_afPos[1];
        if (bAtLastColumn) afPos[0] = m_fnColumnX(iFirst + i / 4) + (i % 2 ? m_fDataWidth : 0.0f);
    }
}
