#include "controls/text_box.h"

#include "controls/code_points.h"
#include "controls/text_file.h"
#include "draw/creation_table.h"
#include "draw/upload.h"
#include "font/font_cell.h"
#include "font/font_unicode.h"

#include <algorithm>
#include <cstring>
#include <new>

CTextBox_Base::CTextBox_Base()
    : m_uGlyphCapacity(0), m_uGlyphCount(0), m_uTextLength(0), m_uTextSet(0), m_uIndexCount(0),
      m_uVertexCount(0), m_uTriangleCount(0), m_fTextWidth(0), m_fTextHeight(0), m_pFont(nullptr),
      m_fLineStep(0), m_bFitToText(true), m_fClipWidth(0), m_uTextRoom(0) {
    m_uType = g_uTypeTextBox;
    m_bAutoSize = true;
    CTextBox_Base::m_fnSetTextW(u"");
    m_fnSetPosition(0, 0, 0);
    m_fnSetSize(0, 0);
    m_uVertexBase = m_uIndexBase = 0;
}

CTextBox_Base::~CTextBox_Base() { CTextBox_Base::m_fnRelease(); }

bool CTextBox_Base::m_fnAllocBuffers() {
    m_uGlyphCapacity = std::max(m_uGlyphCount, 1u);
    if (m_uGlyphCapacity > g_uGlyphsMax) return false;
    const u32 uQuads = m_uGlyphCapacity * (m_bShadow ? 2 : 1);
    m_uVertexBytes = uQuads * g_uQuadVertexBytes;
    m_uIndexBytes = uQuads * g_uQuadIndexBytes;
    const u32 uFloats = m_uVertexBytes / sizeof(f32);
    m_pVertices.reset(new (std::nothrow) f32[uFloats]());
    m_pIndices.reset(new (std::nothrow) u32[m_uIndexBytes / sizeof(u32)]());
    m_pVerticesOut.reset(new (std::nothrow) f32[uFloats]());
    // KEEP(profiles): as many entries as m_uIndexBytes says bytes, four times what is used.
    m_pIndicesOut.reset(new (std::nothrow) u32[m_uIndexBytes]());
    if (!m_pVertices || !m_pIndices || !m_pVerticesOut || !m_pIndicesOut) return false;
    g_fnWriteQuadIndices(m_pIndices.get(), uQuads);
    std::memcpy(m_pIndicesOut.get(), m_pIndices.get(), m_uIndexBytes);
    return true;
}

bool CTextBox_Base::m_fnExpandQuads() {
    if (!m_pVertices) return false;
    // KEEP(profiles): a glyph draws one and a half times its nominal box.
    g_fnExpandQuads(g_fnVertexAt(m_pVertices.get(), 0), m_uGlyphCapacity * (m_bShadow ? 2 : 1),
                    g_fnCellOf(m_pFont));
    return true;
}

bool CTextBox_Base::m_fnCreateEntity() {
    m_pEntity.reset(g_stCreationTable.m_fnCreateEntity ? g_stCreationTable.m_fnCreateEntity() : nullptr);
    return m_pEntity != nullptr;
}

bool CTextBox_Base::m_fnCreateMesh() {
    m_pMesh.reset(g_stCreationTable.m_fnCreateMesh ? g_stCreationTable.m_fnCreateMesh() : nullptr);
    return m_pMesh && m_pMesh->m_fnCreate(sizeof(stTextVertex), m_uVertexBytes, m_uIndexBytes, sizeof(u32));
}

bool CTextBox_Base::m_fnUploadMesh() {
    m_fnNoteChange();
    return m_pMesh && m_pMesh->m_fnUpload(m_pVertices.get(), m_pIndices.get());
}

void CTextBox_Base::m_fnSetQuadTex(stTextVertex* pQuad, f32 u0, f32 v0, f32 u1, f32 v1) {
    g_fnSetQuadTexture(pQuad, u0, v0, u1, v1);
}

void CTextBox_Base::m_fnRefreshVertices() {
    if (!m_pVertices || !m_pVerticesOut) return;
    const u32 uVertices = m_uVertexBytes / sizeof(stTextVertex);
    stTextVertex* const pIn = g_fnVertexAt(m_pVertices.get(), 0);
    stTextVertex* const pOut = g_fnVertexAt(m_pVerticesOut.get(), 0);
    if (m_bLayoutDirty) m_fnBuildText();
    m_bLayoutDirty = false;
    if (m_bColorDirty) {
        ColorLayers();
        if (!m_bPositionDirty) g_fnCopyColors(pOut, pIn, uVertices);
    }
    m_bColorDirty = false;
    if (m_bPositionDirty) {
        std::memcpy(pOut, pIn, m_uVertexBytes);
        g_fnMoveVertices(pOut, uVertices, m_fPosX, m_fPosY);
    }
    m_bPositionDirty = false;
}

void CTextBox_Base::m_fnFlush() {
    if (!m_pVertices || !m_pVerticesOut) return;
    if (!IsDirty()) return;
    m_fnRefreshVertices();
    m_fnUploadMesh();
    g_fnUploadControlVertices(m_pVerticesOut.get(), m_uVertexBase * static_cast<u32>(sizeof(stTextVertex)),
                              m_uVertexBytes);
}

void CTextBox_Base::m_fnMarkPositionDirty() {
    m_bPositionDirty = true;
    m_fnFlush();
}

void CTextBox_Base::m_fnSetFitToText(bool bFit) { m_bFitToText = bFit; }
void CTextBox_Base::m_fnSetClipWidth(f32 fWidth) { m_fClipWidth = fWidth; }
bool CTextBox_Base::m_fnGetFitToText() { return m_bFitToText; }

bool CTextBox_Base::m_fnSetTextW(const char16_t* wzText) {
    u32 uUnits = 0;
    if (!wzText || !g_fnMeasureUtf16(wzText, uUnits)) return false;
    std::unique_ptr<char16_t[]> wzFormer; // wzText may be this very text
    if (uUnits >= m_uTextRoom && !MakeTextRoom(uUnits, wzFormer)) return false;
    std::memmove(m_wzText.get(), wzText, (uUnits + 1) * sizeof *wzText);
    m_uTextSet = 1;
    m_uTextLength = g_fnDecodeUtf16(m_wzText.get(), m_pCodePoints.get());
    m_uGlyphCount = g_fnCountGlyphs(m_pCodePoints.get(), m_uTextLength);
    MarkLayoutDirty();
    return true;
}

/// Room with some to spare, so that a label that changes by a few characters stops allocating.
bool CTextBox_Base::MakeTextRoom(u32 uUnits, std::unique_ptr<char16_t[]>& wzFormer) {
    const u32 uRoom = (uUnits / 16 + 1) * 16;
    std::unique_ptr<char16_t[]> wzText(new (std::nothrow) char16_t[uRoom]);
    std::unique_ptr<u32[]> pCodePoints(new (std::nothrow) u32[uRoom]);
    if (!wzText || !pCodePoints) return false;
    wzFormer = std::move(m_wzText);
    m_wzText = std::move(wzText);
    m_pCodePoints = std::move(pCodePoints);
    m_uTextRoom = uRoom;
    return true;
}

bool CTextBox_Base::m_fnSetTextA(const char* szText) {
    if (!szText) return false;
    const std::size_t uLength = std::strlen(szText);
    std::unique_ptr<char16_t[]> wzText(new (std::nothrow) char16_t[uLength + 1]);
    if (!wzText) return false;
    std::transform(szText, szText + uLength + 1, wzText.get(), [](char c) { return static_cast<u8>(c); });
    return m_fnSetTextW(wzText.get());
}

void CTextBox_Base::m_fnGetTextCopy(char16_t** ppText) {
    if (!ppText) return;
    const std::size_t uUnits = m_wzText ? std::char_traits<char16_t>::length(m_wzText.get()) : 0;
    *ppText = new (std::nothrow) char16_t[uUnits + 1]();
    if (*ppText && m_wzText) std::memcpy(*ppText, m_wzText.get(), uUnits * sizeof **ppText);
}

f32 CTextBox_Base::m_fnGetTextWidth() { return m_fTextWidth; }

bool CTextBox_Base::m_fnLoadText(const char16_t* wzPath, bool bFullPath) {
    if (!wzPath) return false;
    char16_t wzFull[g_uProfilePathCapacity];
    if (!bFullPath && !g_fnResolveProfilePath(wzFull, wzPath)) return false;
    const std::unique_ptr<char16_t[]> wzText = g_fnLoadTextFromFile(bFullPath ? wzPath : wzFull);
    return wzText && m_fnSetTextW(wzText.get());
}

void CTextBox_Base::m_fnSetFont(CFontUniCode* pFont) {
    if (pFont) m_pFont = pFont;
}

CFontUniCode* CTextBox_Base::m_fnGetFont(CFontUniCode** ppOut) {
    if (ppOut) *ppOut = m_pFont;
    return m_pFont;
}

void CTextBox_Base::m_fnSetShadow(bool bShadow) {
    if (!m_pVertices) m_bShadow = bShadow;
}

void CTextBox_Base::m_fnMarkColorDirty() {
    m_bColorDirty = true;
    m_fnNoteChange();
    m_fnFlush();
}

void CTextBox_Base::m_fnSetTextColor(u32 uRGB, u8 a) {
    g_fnStoreColor(m_afTextColor, uRGB, a);
    m_fnMarkColorDirty();
}

void CTextBox_Base::m_fnSetTextColorB(u8 r, u8 g, u8 b, u8 a) {
    g_fnStoreColorB(m_afTextColor, r, g, b, a);
    m_fnMarkColorDirty();
}

void CTextBox_Base::m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a) {
    g_fnStoreColorF(m_afTextColor, r, g, b, a);
    m_fnMarkColorDirty();
}

void CTextBox_Base::m_fnSetShadowColor(u32 uRGB, u8 a) {
    g_fnStoreColor(m_afShadowColor, uRGB, a);
    m_fnMarkColorDirty();
}

void CTextBox_Base::m_fnSetShadowColorB(u8 r, u8 g, u8 b, u8 a) {
    g_fnStoreColorB(m_afShadowColor, r, g, b, a);
    m_fnMarkColorDirty();
}

void CTextBox_Base::m_fnSetShadowColorF(f32 r, f32 g, f32 b, f32 a) {
    g_fnStoreColorF(m_afShadowColor, r, g, b, a);
    m_fnMarkColorDirty();
}

void CTextBox_Base::m_fnGetTextColor(f32* pR, f32* pG, f32* pB, f32* pA) {
    g_fnLoadColor(m_afTextColor, pR, pG, pB, pA);
}

void CTextBox_Base::m_fnGetShadowColor(f32* pR, f32* pG, f32* pB, f32* pA) {
    g_fnLoadColor(m_afShadowColor, pR, pG, pB, pA);
}

void CTextBox_Base::m_fnSetTextSize(f32 fSize) {
    StoreTextSize(fSize);
    m_fnFlush();
}

f32 CTextBox_Base::m_fnGetTextSize(f32* pOut) { return LoadTextSize(pOut); }

void CTextBox_Base::m_fnSetSpacing(f32 x, f32 y) {
    StoreSpacing(x, y);
    m_fnFlush();
}

void CTextBox_Base::m_fnGetSpacing(f32* pX, f32* pY) { LoadSpacing(pX, pY); }

void CTextBox_Base::m_fnDrawText(CDraw_Base*, const f32*, const f32*) {}

void CTextBox_Base::m_fnRelease() {
    m_pVertices.reset();
    m_pIndices.reset();
    m_pVerticesOut.reset();
    m_pIndicesOut.reset();
    m_wzText.reset();
    m_pCodePoints.reset();
    m_uTextRoom = m_uVertexBytes = m_uIndexBytes = 0;
    m_pEntity.reset();
    m_pShadowEntity.reset();
    m_pMesh.reset();
    m_fnNoteChange();
}

f32 CTextBox_Base::m_fnGetLineStep() { return m_fLineStep; }

void* CTextBox_Base::m_fnGetVertexData() { return m_pVertices.get(); }
void* CTextBox_Base::m_fnGetIndexData() { return m_pIndices.get(); }

void CTextBox_Base::m_fnOnMoved() {
    // The mesh stays as it is: the entity places it.
    if (m_pEntity) m_pEntity->m_fnSetPosition(m_fPosX, m_fPosY, m_fPosZ);
}

const void* CTextBox_Base::m_fnGetDrawKey() { return m_pFont; }

void CTextBox_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawText(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afTextColor);
}

bool CTextBox_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    return m_pFont && m_fnAllocBuffers() && m_fnBuildText() && m_fnCreateEntity() && m_fnCreateMesh() &&
           m_fnUploadMesh();
}
