#include "controls/text_box.h"

#include "controls/code_points.h"
#include "controls/text_file.h"
#include "draw/upload.h"
#include "font/font_cell.h"
#include "font/font_unicode.h"

#include <algorithm>
#include <cstring>
#include <new>

CTextBox_Base::CTextBox_Base()
    : m_uGlyphCapacity(0), m_uGlyphCount(0), m_uTextLength(0), m_bFitToText(true), m_fClipWidth(0),
      m_uTextRoom(0) {
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
    return MakeTextArrays(uQuads);
}

bool CTextBox_Base::m_fnExpandQuads() {
    if (!m_pVertices) return false;
    // KEEP(profiles): a glyph draws one and a half times its nominal box.
    g_fnExpandQuads(g_fnVertexAt(m_pVertices.get(), 0), m_uGlyphCapacity * (m_bShadow ? 2 : 1),
                    g_fnCellOf(m_pFont));
    return true;
}

bool CTextBox_Base::m_fnCreateEntity() { return MakeEntity(); }

void CTextBox_Base::m_fnRefreshVertices() {
    if (!HasArrays()) return;
    if (m_bLayoutDirty) m_fnBuildText();
    if (m_bColorDirty) ColorLayers();
    if (m_bPositionDirty)
        MoveOut(m_uVertexBytes, m_fPosX, m_fPosY);
    else if (m_bColorDirty)
        CopyColorsOut(m_uVertexBytes);
    m_bLayoutDirty = m_bPositionDirty = m_bColorDirty = false;
}

void CTextBox_Base::m_fnFlush() {
    if (!HasArrays() || !IsDirty()) return;
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

CFontUniCode* CTextBox_Base::m_fnGetFont(CFontUniCode** ppOut) { return LoadFont(ppOut); }

void CTextBox_Base::m_fnSetShadow(bool bShadow) {
    if (!m_pVertices) m_bShadow = bShadow;
}

void CTextBox_Base::m_fnMarkColorDirty() {
    m_bColorDirty = true;
    m_fnNoteChange();
    m_fnFlush();
}

void CTextBox_Base::m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a) {
    g_fnStoreColorF(m_afTextColor, r, g, b, a);
    m_fnMarkColorDirty();
}

void CTextBox_Base::m_fnDrawText(CDraw_Base*, const f32*, const f32*) {}

void CTextBox_Base::m_fnRelease() {
    ReleaseText();
    m_wzText.reset();
    m_pCodePoints.reset();
    m_uTextRoom = m_uVertexBytes = m_uIndexBytes = 0;
    m_fnNoteChange();
}

f32 CTextBox_Base::m_fnGetLineStep() { return m_fLineStep; }

void CTextBox_Base::m_fnOnMoved() {
    // The mesh stays as it is: the entity places it.
    if (m_pEntity) m_pEntity->m_fnSetPosition(m_fPosX, m_fPosY, m_fPosZ);
}

void CTextBox_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawText(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afTextColor);
}

bool CTextBox_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    return m_pFont && m_fnAllocBuffers() && m_fnBuildText() && m_fnCreateEntity() && m_fnCreateMesh() &&
           m_fnUploadMesh();
}
