#include "controls/num_box.h"

#include "draw/creation_table.h"
#include "draw/upload.h"
#include "font/font_unicode.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

namespace {

constexpr char16_t g_wzCharset[] = u"0123456789.-% ";

} // namespace

CNumBox_Base::CNumBox_Base()
    : m_uCellCount(8), m_uIndicesPerGlyph(6), m_uVerticesPerGlyph(4), m_uTrianglesPerGlyph(2), m_fNumberW(0),
      m_fNumberH(0), m_au8Digits{}, m_wzCharset(new (std::nothrow) char16_t[std::size(g_wzCharset)]),
      m_uGlyphCount(14), m_uCharsetSize(15), m_uCharsetRows(1), m_fCellWidth(1), m_fValue(0), m_iValue(0),
      m_uIntDigits(0), m_uDecimals(0), m_bNegative(false), m_bPercent(false), m_auDrawIndex{}, m_uDataKind(7),
      m_pDataSource(0), m_uDataArg(0), m_u8DataFlag(0) {
    m_uType = g_uTypeNumBox;
    m_bAutoSize = true;
    m_fnSetPosition(0, 0, 0);
    CNumBox_Base::m_fnSetAlign(g_uAlignRight);
    CNumBox_Base::m_fnClear();
    CNumBox_Base::m_fnSetDigitPad(0, true);
    CNumBox_Base::m_fnSetMaxValue(99999.0f);
    CNumBox_Base::m_fnSetMinValue(-99.0f);
    if (m_wzCharset) std::copy(std::begin(g_wzCharset), std::end(g_wzCharset), m_wzCharset.get());
    m_uVertexBase = m_uIndexBase = 0;
}

CNumBox_Base::~CNumBox_Base() { CNumBox_Base::m_fnRelease(); }

u32 CNumBox_Base::QuadCount() const { return m_uGlyphCount * m_uCellCount * (m_bShadow ? 2 : 1); }

bool CNumBox_Base::m_fnAllocBuffers() {
    m_uVertexBytes = QuadCount() * g_uQuadVertexBytes;
    m_uIndexBytes = QuadCount() * g_uQuadIndexBytes;
    // KEEP(profiles): as many entries as m_uIndexBytes says bytes, four times what is used. The rest takes no
    // memory.
    const std::size_t uOutBytes = std::size_t{m_uIndexBytes} * sizeof(u32);
    m_pIndicesOut = {reinterpret_cast<u32*>(platform::AllocatePages(uOutBytes)), {uOutBytes}};
    if (!MakeArrays(QuadCount()) || !m_pIndicesOut) return false;
    std::memcpy(m_pIndicesOut.get(), m_pIndices.get(), m_uIndexBytes);
    return true;
}

bool CNumBox_Base::m_fnCreateEntities() {
    if (!g_stCreationTable.m_fnCreateEntity) return false;
    FreeEntities(m_ppEntities);
    m_ppEntities.reset(new (std::nothrow) CEntity_Base* [m_uCellCount] {});
    if (!m_ppEntities) return false;
    for (u32 i = 0; i < m_uCellCount; ++i)
        if (!(m_ppEntities[i] = g_stCreationTable.m_fnCreateEntity())) return false;
    return true;
}

void CNumBox_Base::m_fnRefreshVertices() {
    if (!m_pVertices) return;
    if (m_bLayoutDirty) m_fnBuildGlyphs();
    m_bLayoutDirty = false;
    if (m_bColorDirty) ColorGlyphs(m_uGlyphCount * m_uCellCount);
    if (m_pVerticesOut) RefreshOut();
    m_bColorDirty = m_bPositionDirty = false;
}

void CNumBox_Base::RefreshOut() {
    const u32 uVertices = m_uVertexBytes / sizeof(stTextVertex);
    const stTextVertex* const pIn = g_fnVertexAt(m_pVertices.get(), 0);
    stTextVertex* const pOut = g_fnVertexAt(m_pVerticesOut.get(), 0);
    if (m_bPositionDirty) {
        std::memcpy(pOut, pIn, m_uVertexBytes);
        g_fnMoveVertices(pOut, uVertices, m_fPosX, m_fPosY);
    } else if (m_bColorDirty) {
        g_fnCopyColors(pOut, pIn, uVertices);
    }
}

void CNumBox_Base::m_fnFlush() {
    if (!m_pVertices) return;
    if (!IsDirty()) return;
    m_fnRefreshVertices();
    m_fnUploadMesh();
    if (m_pVerticesOut)
        g_fnUploadControlVertices(m_pVerticesOut.get(),
                                  m_uVertexBase * static_cast<u32>(sizeof(stTextVertex)), m_uVertexBytes);
}

void CNumBox_Base::m_fnMarkPositionDirty() {
    m_bPositionDirty = true;
    m_fnFlush();
}

void CNumBox_Base::m_fnSetPercent(bool bPercent) { m_bPercent = bPercent; }
void CNumBox_Base::m_fnSetMaxValue(f32 fValue) { m_fMaxValue = fValue; }
void CNumBox_Base::m_fnSetMinValue(f32 fValue) { m_fMinValue = fValue; }
void CNumBox_Base::m_fnClear() {
    m_iDrawCount = -1;
    m_fnNoteChange();
}

void CNumBox_Base::m_fnSetFont(CFontUniCode* pFont) {
    if (!pFont) return;
    m_pFont = pFont;
    if (m_wzCharset)
        pFont->m_fnGetCharInfo(m_wzCharset[0], nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               &m_fCellWidth, nullptr);
}

CFontUniCode* CNumBox_Base::m_fnGetFont(CFontUniCode** ppOut) { return LoadFont(ppOut); }

void CNumBox_Base::m_fnSetShadow(bool bShadow) {
    if (!m_pVertices) m_bShadow = bShadow;
}

void CNumBox_Base::m_fnSetDigitPad(u32 uDigits, bool bHide) {
    m_uPadDigits = std::min(uDigits, g_uNumBoxPlaces);
    m_bPadBlank = bHide;
}

void CNumBox_Base::m_fnMarkColorDirty() {
    m_bColorDirty = true;
    m_fnNoteChange();
    m_fnFlush();
}

void CNumBox_Base::m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a) {
    g_fnStoreColorF(m_afTextColor, r, g, b, a);
    m_fnMarkColorDirty();
}

void CNumBox_Base::SizeChanged() {
    if (m_iDrawCount > 0) m_fnBuildDrawList();
    m_fnUpdateSize();
    m_fnFlush();
}

void CNumBox_Base::SpacingChanged() {
    m_fnUpdateSize(); // KEEP(profiles): a size given before is lost
    m_fnFlush();
}

void CNumBox_Base::m_fnSetAlign(u32 uAlign) { m_uAlign = uAlign; }

void CNumBox_Base::m_fnDrawDigits(CDraw_Base*, CEntity_Base**, const f32*) {}

void CNumBox_Base::FreeEntities(std::unique_ptr<CEntity_Base*[]>& ppEntities) {
    for (u32 i = 0; ppEntities && i < m_uCellCount; ++i) delete ppEntities[i];
    ppEntities.reset();
}

void CNumBox_Base::m_fnRelease() {
    ReleaseGlyphs();
    m_pIndicesOut.reset();
    m_uVertexBytes = m_uIndexBytes = 0;
    FreeEntities(m_ppEntities);
    FreeEntities(m_ppShadowEntities);
    m_wzCharset.reset();
    m_fnNoteChange();
}

f32 CNumBox_Base::ScaledSize() const { return m_pFont ? m_fTextSize * m_pFont->m_fnGetScale() : m_fTextSize; }

void CNumBox_Base::m_fnOnMoved() {
    if (!m_ppEntities) return;
    const f32 fStep = ScaledSize() * m_fCellWidth + m_fSpacingX;
    f32 x = m_fPosX;
    for (u32 i = 0; i < m_uCellCount; ++i, x += fStep)
        if (m_ppEntities[i]) m_ppEntities[i]->m_fnSetPosition(x, m_fPosY, m_fPosZ);
}

void CNumBox_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_ppEntities || !m_ppEntities[0]) return;
    m_fnDrawDigits(pBatcher, m_ppEntities.get(), m_afTextColor);
}

bool CNumBox_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    return m_pFont && m_fnAllocBuffers() && m_fnBuildGlyphs() && m_fnCreateEntities() && m_fnCreateMesh() &&
           m_fnUploadMesh();
}
