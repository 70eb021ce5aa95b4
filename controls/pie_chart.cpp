#include "controls/pie_chart.h"

#include "draw/draw_base.h"

#include <algorithm>
#include <new>

namespace {

constexpr u64 g_uMostVertices = 65536;

/// Indices of one segment: a triangle of the fan, a quad of the ring.
u32 SegmentIndices(u32 uChartType) { return uChartType == PIECHART_TYPE_FAN ? 3 : 6; }

f32 HeldPercent(u32 uPercent) { return static_cast<f32>(std::clamp(uPercent, 1u, 100u)); }

// KEEP(profiles): a whole turn becomes none, which matters where only the other angle differs from 0.
f32 HeldDegrees(f32 fDegrees) { return fDegrees >= 0 && fDegrees < 360 ? fDegrees : 0; }

} // namespace

CPieChart_Base::CPieChart_Base()
    : m_uShapeSegNum(3), m_uSlotNum(1), m_fSlotFillRatio(100), m_fChartFillRatio(50), m_fValue(0),
      m_fFilled(0), m_uDrawIndexCount(0), m_fRange(0), m_fMin(0), m_fMax(0), m_fStartDeg(0), m_fEndDeg(0),
      m_fOffsetX(0), m_fOffsetY(0), m_fChartW(512), m_fChartH(512), m_bClockwise(0),
      m_uChartType(PIECHART_TYPE_FAN) {
    m_fnSetPosition(0, 0, 0);
}

CPieChart_Base::~CPieChart_Base() { CPieChart_Base::m_fnRelease(); }

bool CPieChart_Base::m_fnAllocBuffers() {
    const u64 uPoints = (u64{m_uShapeSegNum} + 1) * m_uSlotNum;
    if (uPoints > g_uMostVertices) return false;
    const u64 uVertices = m_uChartType == PIECHART_TYPE_FAN ? uPoints + 1 : uPoints * 2;
    if (uVertices > g_uMostVertices) return false;
    const u64 uIndices = u64{m_uShapeSegNum} * m_uSlotNum * SegmentIndices(m_uChartType);
    m_uVertexBytes = static_cast<u32>(uVertices * sizeof(stShapeVertex));
    m_uIndexBytes = static_cast<u32>(uIndices * sizeof(u16));
    m_pVertices.reset(new (std::nothrow) stShapeVertex[uVertices]());
    m_pIndices.reset(new (std::nothrow) u16[uIndices]());
    return m_pVertices && m_pIndices;
}

bool CPieChart_Base::m_fnCreateEntity() { return MakeEntity(); }

bool CPieChart_Base::m_fnCreateMesh() { return MakeMesh(m_uVertexBytes, m_uIndexBytes); }

void CPieChart_Base::m_fnUploadMesh() {
    FillMesh();
    m_fnNoteChange();
}

void CPieChart_Base::m_fnSetChartType(u32 uChartType) { m_uChartType = uChartType; }
void CPieChart_Base::m_fnSetSlotNum(u32 uSlotNum) { m_uSlotNum = uSlotNum == 0 ? 1 : uSlotNum; }

void CPieChart_Base::m_fnSetShapeSegNum(u32 uShapeSegNum) {
    m_uShapeSegNum = uShapeSegNum == 0 ? 3 : uShapeSegNum;
}

void CPieChart_Base::m_fnSetSlotFillRatio(u32 uPercent) { m_fSlotFillRatio = HeldPercent(uPercent); }
void CPieChart_Base::m_fnSetChartFillRatio(u32 uPercent) { m_fChartFillRatio = HeldPercent(uPercent); }
void CPieChart_Base::m_fnSetStartDeg(f32 fDegrees) { m_fStartDeg = HeldDegrees(fDegrees); }
void CPieChart_Base::m_fnSetEndDeg(f32 fDegrees) { m_fEndDeg = HeldDegrees(fDegrees); }
void CPieChart_Base::m_fnSetClockwise(u32 bClockwise) { m_bClockwise = bClockwise; }

void CPieChart_Base::m_fnSetRange(f32 fMin, f32 fMax) {
    m_fMin = std::min(fMin, fMax);
    m_fMax = std::max(fMin, fMax);
    m_fRange = m_fMax - m_fMin;
}

void CPieChart_Base::m_fnSetValue(f32 fValue) {
    m_fValue = fValue;
    m_fFilled = fValue > m_fMin ? std::clamp((fValue - m_fMin) / m_fRange, 0.0f, 1.0f) : 0.0f;
    const u32 uShown = static_cast<u32>(static_cast<u64>(static_cast<f32>(m_uSlotNum) * m_fFilled));
    m_uDrawIndexCount = uShown * m_uShapeSegNum * SegmentIndices(m_uChartType);
    m_fnNoteChange();
}

void CPieChart_Base::m_fnSetOffset(f32 x, f32 y) {
    m_fOffsetX = x;
    m_fOffsetY = y;
}

void CPieChart_Base::m_fnSetChartSize(f32 w, f32 h) {
    m_fChartW = w;
    m_fChartH = h;
    m_fnSetSize(w, h);
}

void CPieChart_Base::m_fnSetDrawKey(const void* pKey) { m_pDrawKey = pKey; }

void CPieChart_Base::m_fnDrawChart(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    if (!m_pMesh) return;
    const stDrawConstants stConstants{pWorld, pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    // A shape set after the mesh was made must not draw behind the mesh's end.
    const u32 uCount = std::min(m_uDrawIndexCount, m_uIndexBytes / static_cast<u32>(sizeof(u16)));
    if (uCount == 0) return;
    m_pMesh->m_fnBind();
    pBatcher->m_fnBindVertexLayout(nullptr);
    m_pMesh->m_fnDraw(uCount, 0, 0);
}

void CPieChart_Base::m_fnRelease() {
    ReleaseShape();
    m_fnNoteChange();
}

void CPieChart_Base::m_fnOnMoved() { PlaceEntity(m_fPosX, m_fPosY, m_fPosZ); }

const void* CPieChart_Base::m_fnGetDrawKey() { return m_pDrawKey; }

void CPieChart_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawChart(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afColor);
}

bool CPieChart_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    if (!m_fnAllocBuffers() || !m_fnBuildChart() || !m_fnCreateEntity() || !m_fnCreateMesh()) return false;
    m_fnUploadMesh();
    return true;
}
