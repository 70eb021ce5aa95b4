#include "controls/line_graph.h"

#include "draw/creation_table.h"
#include "draw/draw_base.h"

#include <algorithm>
#include <new>

namespace {

constexpr u64 g_uMostVertices = 65536;
constexpr u32 g_uLeastColumns = 2;
constexpr u16 g_auPairIndices[] = {0, 2, 1, 2, 3, 1};
constexpr u16 g_auQuadIndices[] = {0, 1, 2, 1, 3, 2};
constexpr u32 g_uColumnIndices = 6;

/// Types whose columns share an edge; in the others each column stands alone.
bool DrawsPairs(u32 uLineType) { return uLineType <= LINEGRAPH_TYPE_MOUNTAIN; }

} // namespace

CLineGraph_Base::CLineGraph_Base()
    : m_pDataVertices(nullptr), m_pDataIndices(nullptr), m_afColor{}, m_uRingSize(9), m_uDataNum(8),
      m_fDataWidth(0), m_fHalfWidth(0), m_uDrawIndexCount(0), m_uDataStartIdx(0), m_iColumn(-1), m_uHead(0),
      m_uSampleCount(0), m_fRange(0), m_fMin(0), m_fMax(0), m_fOffsetX(0), m_fOffsetY(0), m_fGraphW(512),
      m_fGraphH(512), m_fColumnStep(512.0f / 8), m_pDrawKey(nullptr), m_uLineType(LINEGRAPH_TYPE_CLASSIC),
      m_uGridLines(0), m_uGridVertices(0), m_uGridIndices(0) {
    m_fnSetPosition(0, 0, 0);
}

CLineGraph_Base::~CLineGraph_Base() { CLineGraph_Base::m_fnRelease(); }

/// Whether every sample of the ring has its column.
static bool RingFits(const CLineGraph_Base& graph) {
    const u64 uJoined = graph.m_uLineType == LINEGRAPH_TYPE_BAR ? 0 : 1;
    return graph.m_uRingSize <= u64{graph.m_uDataNum} + uJoined;
}

bool CLineGraph_Base::m_fnAllocBuffers() {
    const bool bPairs = DrawsPairs(m_uLineType);
    const u64 uDataVertices = bPairs ? u64{2} * m_uRingSize : u64{4} * m_uDataNum;
    const u64 uVertices = uDataVertices + m_uGridVertices;
    if (uVertices > g_uMostVertices || m_uDataNum > g_uMostVertices || !RingFits(*this)) return false;
    const u64 uIndices = u64{g_uColumnIndices} * m_uDataNum + m_uGridIndices;
    m_uVertexBytes = static_cast<u32>(uVertices * sizeof(stShapeVertex));
    m_uIndexBytes = static_cast<u32>(uIndices * sizeof(u16));
    m_pVertices.reset(new (std::nothrow) stShapeVertex[uVertices]());
    m_pIndices.reset(new (std::nothrow) u16[uIndices]());
    if (!m_pRawValues) m_pRawValues.reset(new (std::nothrow) f32[m_uRingSize]());
    if (!m_pPixelY) m_pPixelY.reset(new (std::nothrow) f32[m_uRingSize]());
    if (!m_pVertices || !m_pIndices || !m_pRawValues || !m_pPixelY) {
        m_fnDropData();
        return false;
    }
    m_pDataVertices = m_pVertices.get() + m_uGridVertices;
    m_pDataIndices = m_pIndices.get() + m_uGridIndices;
    std::fill_n(m_pPixelY.get(), m_uRingSize, m_fGraphH);
    const u16* const pPattern = bPairs ? g_auPairIndices : g_auQuadIndices;
    for (u32 i = 0; i < g_uColumnIndices * m_uDataNum; ++i) {
        const u32 uBase = (bPairs ? 2 : 4) * (i / g_uColumnIndices) + m_uGridVertices;
        m_pDataIndices[i] = static_cast<u16>(uBase + pPattern[i % g_uColumnIndices]);
    }
    return true;
}

bool CLineGraph_Base::m_fnCreateEntity() {
    m_pEntity.reset(g_stCreationTable.m_fnCreateEntity ? g_stCreationTable.m_fnCreateEntity() : nullptr);
    return m_pEntity != nullptr;
}

bool CLineGraph_Base::m_fnCreateMesh() {
    m_pMesh.reset(g_stCreationTable.m_fnCreateMesh ? g_stCreationTable.m_fnCreateMesh() : nullptr);
    return m_pMesh && m_pMesh->m_fnCreate(sizeof(stShapeVertex), m_uVertexBytes, m_uIndexBytes, sizeof(u16));
}

void CLineGraph_Base::m_fnUploadAll() {
    if (m_pMesh) m_pMesh->m_fnUpload(m_pVertices.get(), m_pIndices.get());
    m_fnNoteChange();
}

void CLineGraph_Base::m_fnUploadVertices() {
    if (m_pMesh) m_pMesh->m_fnUpload(m_pVertices.get(), nullptr);
    m_fnNoteChange();
}

void CLineGraph_Base::m_fnSetLineType(u32 uLineType) {
    m_fnDropData();
    m_uLineType = uLineType;
}

void CLineGraph_Base::m_fnSetDataNum(u32 uDataNum) {
    m_fnDropData();
    m_uDataNum = std::max(uDataNum, g_uLeastColumns);
    // KEEP(profiles): the number as given, not the raised one. An empty ring could take no sample, though.
    if (m_uLineType == LINEGRAPH_TYPE_BAR)
        m_uRingSize = std::max(uDataNum, 1u);
    else
        m_uRingSize = std::max(uDataNum + 1, uDataNum); // the largest number has no successor
    m_fnSetDataStartIdx(m_uDataStartIdx);
    m_fColumnStep = m_fGraphW / static_cast<f32>(m_uDataNum);
}

// KEEP(profiles): an index behind the last column is taken as it is, which puts the graph outside its box.
void CLineGraph_Base::m_fnSetDataStartIdx(u32 uIndex) {
    m_uDataStartIdx = uIndex;
    m_iColumn = std::max(static_cast<i32>(uIndex - 1), -1);
    if (uIndex >= m_uDataNum) m_iColumn = static_cast<i32>(uIndex - 2);
}

void CLineGraph_Base::m_fnSetRange(f32 fMin, f32 fMax) {
    m_fMin = std::min(fMin, fMax);
    m_fMax = std::max(fMin, fMax);
    m_fRange = m_fMax - m_fMin;
}

/// Height of a value between bottom (0) and top (1). An empty range is full above its one value.
static f32 ShareOf(const CLineGraph_Base& graph, f32 fValue) {
    if (!(fValue > graph.m_fMin)) return 0.0f;
    return std::clamp((fValue - graph.m_fMin) / graph.m_fRange, 0.0f, 1.0f);
}

void CLineGraph_Base::m_fnAddValue(f32 fValue) {
    if (!m_pVertices) return;
    m_uHead = (m_uHead + 1) % m_uRingSize;
    m_pRawValues[m_uHead] = fValue;
    m_pPixelY[m_uHead] = (1.0f - ShareOf(*this, fValue)) * m_fGraphH + m_fOffsetY;
    const bool bRingWasFull = m_uSampleCount == m_uRingSize;
    if (!bRingWasFull) ++m_uSampleCount;
    const bool bBar = m_uLineType == LINEGRAPH_TYPE_BAR;
    m_uDrawIndexCount = g_uColumnIndices * (bBar ? m_uSampleCount : m_uSampleCount - 1);
    const bool bAtLastColumn = m_iColumn >= static_cast<i32>(bBar ? m_uDataNum - 1 : m_uDataNum);
    if (!bAtLastColumn) ++m_iColumn;
    m_fnScroll(bRingWasFull, m_uSampleCount == m_uRingSize, bAtLastColumn);
    m_fnAppendColumn();
    m_fnUploadVertices();
}

void CLineGraph_Base::m_fnSetColorF(f32 r, f32 g, f32 b, f32 a) {
    m_afColor[0] = r;
    m_afColor[1] = g;
    m_afColor[2] = b;
    m_afColor[3] = a;
    m_fnNoteChange();
}

void CLineGraph_Base::m_fnSetColorB(u8 r, u8 g, u8 b, u8 a) {
    m_fnSetColorF(r / 255.0f, g / 255.0f, b / 255.0f, a / 255.0f);
}

void CLineGraph_Base::m_fnSetColor(u32 uRGB, u8 a) {
    m_fnSetColorB(static_cast<u8>(uRGB >> 16), static_cast<u8>(uRGB >> 8), static_cast<u8>(uRGB), a);
}

// KEEP(first version): nothing reads the x.
void CLineGraph_Base::m_fnSetOffset(f32 x, f32 y) {
    m_fOffsetX = x;
    m_fOffsetY = y;
}

void CLineGraph_Base::m_fnSetGraphSize(f32 w, f32 h) {
    m_fGraphW = w;
    m_fGraphH = h;
    m_fColumnStep = w / static_cast<f32>(m_uDataNum);
    m_fnSetSize(w, h);
}

void CLineGraph_Base::m_fnSetDataWidth(f32 fWidth) {
    m_fDataWidth = fWidth;
    m_fHalfWidth = fWidth * 0.5f;
}

void CLineGraph_Base::m_fnSetDrawKey(const void* pKey) { m_pDrawKey = pKey; }

static void DrawRange(CDraw_Base& batcher, CMesh_Base& mesh, u32 uCount, u32 uFirst) {
    if (uCount == 0) return;
    mesh.m_fnBind();
    batcher.m_fnBindVertexLayout(nullptr);
    mesh.m_fnDraw(uCount, uFirst, 0);
}

void CLineGraph_Base::m_fnDrawGraph(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    static constexpr f32 c_afGridColor[4] = {1.0f, 1.0f, 1.0f, 0.25f};
    if (!m_pMesh) return;
    if (m_uGridIndices != 0) {
        const stDrawConstants stGrid{pWorld, c_afGridColor};
        pBatcher->m_fnSetDrawConstants(&stGrid);
        DrawRange(*pBatcher, *m_pMesh, m_uGridIndices, 0);
    }
    const stDrawConstants stConstants{pWorld, pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    DrawRange(*pBatcher, *m_pMesh, m_uDrawIndexCount, m_uGridIndices);
}

/// Forgets buffers and history, and the mesh, which would read arrays of another size.
void CLineGraph_Base::m_fnDropData() {
    m_pDataVertices = nullptr;
    m_pDataIndices = nullptr;
    m_pVertices.reset();
    m_pIndices.reset();
    m_pRawValues.reset();
    m_pPixelY.reset();
    m_pMesh.reset();
    m_uDrawIndexCount = m_uHead = m_uSampleCount = 0;
    m_fnNoteChange();
}

void CLineGraph_Base::m_fnRelease() {
    m_fnDropData();
    m_pEntity.reset();
}

void CLineGraph_Base::m_fnOnMoved() {
    if (m_pEntity) m_pEntity->m_fnSetPosition(m_fPosX, m_fPosY, m_fPosZ);
}

const void* CLineGraph_Base::m_fnGetDrawKey() { return m_pDrawKey; }

void CLineGraph_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawGraph(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afColor);
}

bool CLineGraph_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    // KEEP(profiles): whatever width was set; authors of profiles are told so.
    if (DrawsPairs(m_uLineType)) m_fnSetDataWidth(m_fColumnStep * 0.5f);
    if (!m_fnAllocBuffers() || !m_fnAppendColumn() || !m_fnCreateEntity() || !m_fnCreateMesh()) return false;
    m_fnUploadAll();
    return true;
}
