// Geometry of the gauge.
#include "controls/pie_chart.h"

#include <cmath>
#include <new>

namespace {

constexpr f64 g_fRadiansPerDegree = 0.017453292500000002;

/// Degrees from the first slot's begin to the last one's end.
f32 SweepOf(const stPieShape& st) {
    if (st.fStartDeg == st.fEndDeg) return st.bClockwise ? -360.0f : 360.0f;
    const f32 fSweep = st.fEndDeg - st.fStartDeg;
    // KEEP(profiles): the other part of the circle, in an unchanged direction, as gauges of profiles in use
    // have it.
    return st.bClockwise ? 360.0f - fSweep : fSweep;
}

/// Circle over the longer side, squeezed along the shorter one.
struct stEllipse {
    explicit stEllipse(const stPieShape& st)
        : r((st.h > st.w ? st.h : st.w) * 0.5f), fScaleX(st.h > st.w ? st.w / st.h : 1.0f),
          fScaleY(st.w > st.h ? st.h / st.w : 1.0f) {}

    stPiePoint At(f32 fDegrees) const {
        const f32 fRadians = static_cast<f32>(static_cast<f64>(fDegrees) * g_fRadiansPerDegree);
        return {std::cos(fRadians) * r * fScaleX, -std::sin(fRadians) * r * fScaleY};
    }

    f32 r, fScaleX, fScaleY;
};

} // namespace

void g_fnPieSamples(const stPieShape& stShape, stPiePoint* pOut) {
    const stEllipse ellipse(stShape);
    const f32 fSweep = SweepOf(stShape);
    const f32 fSlots = static_cast<f32>(stShape.uSlots);
    const f32 fArc = fSweep * stShape.fSlotFill / fSlots;
    for (u32 i = 0; i < stShape.uSlots; ++i) {
        const f32 fBegin = static_cast<f32>(i) * fSweep / fSlots + stShape.fStartDeg;
        for (u32 k = 0; k <= stShape.uSegs; ++k)
            *pOut++ = ellipse.At(static_cast<f32>(k) * fArc / static_cast<f32>(stShape.uSegs) + fBegin);
    }
}

/// Null for want of memory.
std::unique_ptr<stPiePoint[]> CPieChart_Base::m_fnSampleOutline() const {
    const stPieShape stShape{m_fChartW, m_fChartH,  m_bClockwise != 0, m_fStartDeg,
                             m_fEndDeg, m_uSlotNum, m_uShapeSegNum,    m_fSlotFillRatio / 100.0f};
    std::unique_ptr<stPiePoint[]> pPoints(new (std::nothrow)
                                              stPiePoint[(std::size_t{m_uShapeSegNum} + 1) * m_uSlotNum]);
    if (pPoints) g_fnPieSamples(stShape, pPoints.get());
    return pPoints;
}

/// Centre + point * fScale.
stShapeVertex CPieChart_Base::m_fnVertexAt(const stPiePoint& stPoint, f32 fScale) const {
    const f32 fCenterX = m_fChartW * 0.5f + m_fOffsetX, fCenterY = m_fChartH * 0.5f + m_fOffsetY;
    return {{fCenterX + stPoint.x * fScale, fCenterY + stPoint.y * fScale}, {0, 0}};
}

bool CPieChart_Base::m_fnBuildChart() {
    if (m_uChartType == PIECHART_TYPE_FAN) return m_fnBuildFan();
    if (m_uChartType == PIECHART_TYPE_RING) return m_fnBuildRing();
    return false;
}

bool CPieChart_Base::m_fnBuildFan() {
    const auto pPoints = m_fnSampleOutline();
    if (!pPoints || !m_pVertices || !m_pIndices) return false;
    const u32 uSlotPoints = m_uShapeSegNum + 1;
    m_pVertices[0] = m_fnVertexAt({0, 0}, 1.0f);
    for (u32 n = 0; n < uSlotPoints * m_uSlotNum; ++n) m_pVertices[n + 1] = m_fnVertexAt(pPoints[n], 1.0f);
    for (u32 j = 0; j < m_uSlotNum; ++j) {
        // KEEP(profiles): every segment of a slot is written to the same place, so only the last one's
        // triangle is left, ahead of empty ones. A fan is whole with one segment a slot.
        u16* const pIndices = m_pIndices.get() + m_uShapeSegNum * j * 3;
        for (u32 k = 0; k < m_uShapeSegNum; ++k) {
            const u32 uPoint = uSlotPoints * j + 1 + k;
            pIndices[0] = 0;
            pIndices[1] = static_cast<u16>(uPoint);
            pIndices[2] = static_cast<u16>(uPoint + 1);
        }
    }
    return true;
}

bool CPieChart_Base::m_fnBuildRing() {
    static constexpr u32 c_auPattern[] = {0, 1, 2, 1, 2, 3};
    const auto pPoints = m_fnSampleOutline();
    if (!pPoints || !m_pVertices || !m_pIndices) return false;
    const u32 uSlotPoints = m_uShapeSegNum + 1;
    const f32 fInner = m_fChartFillRatio / 100.0f;
    for (u32 n = 0; n < uSlotPoints * m_uSlotNum; ++n) {
        m_pVertices[2 * n] = m_fnVertexAt(pPoints[n], 1.0f);
        m_pVertices[2 * n + 1] = m_fnVertexAt(pPoints[n], fInner);
    }
    u16* pIndex = m_pIndices.get();
    for (u32 j = 0; j < m_uSlotNum; ++j)
        for (u32 k = 0; k < m_uShapeSegNum; ++k)
            for (u32 uCorner : c_auPattern) *pIndex++ = static_cast<u16>((uSlotPoints * j + k) * 2 + uCorner);
    return true;
}
