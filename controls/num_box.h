#pragma once
// A number that changes every few frames. Every character that it can hold lies in every place that it can
// take, in one vertex buffer that never changes afterwards: showing a value is writing a few first-index
// numbers.
#include "controls/control.h"
#include "controls/text_look.h"
#include "draw/entity.h"
#include "draw/glyph_quads.h"
#include "draw/mesh.h"
#include "platform/pages.h"

#include <memory>

class CFontUniCode;

/// Glyph numbers: places in the character table.
constexpr u32 g_uGlyphPoint = 10, g_uGlyphMinus = 11, g_uGlyphPercent = 12, g_uGlyphBlank = 13;
/// Digits, and entries of the draw list, that a number box holds.
constexpr u32 g_uNumBoxPlaces = 16;
/// Place of a glyph in its cell.
constexpr u32 g_uAlignLeft = 0, g_uAlignMiddle = 1, g_uAlignRight = 2;

/// Lengths in canvas units. A number that doesn't fit in 8 cells is cut off on the right. Render thread only.
class CNumBox_Base : public virtual CControl, public CTextLook {
  public:
    CNumBox_Base();

    virtual bool m_fnAllocBuffers();
    /// Lays out the whole character table in every cell. False without font or buffers.
    virtual bool m_fnBuildGlyphs();
    /// Grows the quads of the first cell by a quarter on each side.
    virtual bool m_fnExpandQuads();
    /// One entity a cell.
    virtual bool m_fnCreateEntities();
    virtual bool m_fnCreateMesh();
    virtual bool m_fnUploadMesh();
    /// pQuad: four vertices. (u0, v0) goes to the top left, (u1, v1) to the bottom right.
    virtual void m_fnSetQuadTex(stTextVertex* pQuad, f32 u0, f32 v0, f32 u1, f32 v1);
    /// Redoes what the dirty flags name, in memory.
    virtual void m_fnRefreshVertices();
    /// m_fnRefreshVertices, then hands the result on; nothing without a dirty flag.
    virtual void m_fnFlush();
    virtual void m_fnMarkPositionDirty();
    /// Floats are shown times 100 with a percent sign.
    virtual void m_fnSetPercent(bool bPercent);
    /// Both are stored and read by nothing.
    virtual void m_fnSetMaxValue(f32 fValue);
    virtual void m_fnSetMinValue(f32 fValue);
    /// Shows nothing until the next value.
    virtual void m_fnClear();
    /// m_fnSetIntEx with blanks as padding.
    virtual void m_fnSetInt(i32 iValue, u32 uPadDigits);
    /// uPadDigits: least width, at most 16; 0 keeps the width and padding set before. Touches no vertex.
    virtual void m_fnSetIntEx(i32 iValue, u32 uPadDigits, bool bHide);
    /// uDecimals: digits after the point, at most 15, cut off rather than rounded. Touches no vertex.
    virtual void m_fnSetFloat(f32 fValue, u32 uDecimals);
    /// From digits to first indices.
    virtual void m_fnBuildDrawList();
    /// Measures the number; the control takes the size if it follows its content.
    virtual void m_fnUpdateSize();
    /// Null is ignored. A cell is as wide as the font's "0".
    virtual void m_fnSetFont(CFontUniCode* pFont);
    /// ppOut may be null.
    virtual CFontUniCode* m_fnGetFont(CFontUniCode** ppOut);
    /// Ignored once the buffers exist.
    virtual void m_fnSetShadow(bool bShadow);
    /// Least width of integers, at most 16; bHide pads with blanks, otherwise with zeros.
    virtual void m_fnSetDigitPad(u32 uDigits, bool bHide);
    // From here to the spacing as in the other box: each class has a table of slots of its own.
    virtual void m_fnMarkColorDirty();
    /// uRGB is 0xRRGGBB.
    virtual void m_fnSetTextColor(u32 uRGB, u8 a);
    virtual void m_fnSetTextColorB(u8 r, u8 g, u8 b, u8 a);
    /// Components 0 to 1.
    virtual void m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a);
    virtual void m_fnSetShadowColor(u32 uRGB, u8 a);
    virtual void m_fnSetShadowColorB(u8 r, u8 g, u8 b, u8 a);
    virtual void m_fnSetShadowColorF(f32 r, f32 g, f32 b, f32 a);
    /// Each output of the getters may be null.
    virtual void m_fnGetTextColor(f32* pR, f32* pG, f32* pB, f32* pA);
    virtual void m_fnGetShadowColor(f32* pR, f32* pG, f32* pB, f32* pA);
    virtual void m_fnSetTextSize(f32 fSize);
    virtual f32 m_fnGetTextSize(f32* pOut);
    /// Gap between cells; y is stored only.
    virtual void m_fnSetSpacing(f32 x, f32 y);
    virtual void m_fnGetSpacing(f32* pX, f32* pY);
    virtual void m_fnSetAlign(u32 uAlign);
    /// ppEntities: one a cell.
    virtual void m_fnDrawDigits(CDraw_Base* pBatcher, CEntity_Base** ppEntities, const f32* pColor);
    virtual void m_fnRelease();
    virtual ~CNumBox_Base();

    void* m_fnGetVertexData() override;
    void* m_fnGetIndexData() override;
    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Buffers, glyphs, entities, mesh, upload, in this order; at once true where nothing is to be drawn,
    /// false without a font.
    bool m_fnInitialize();

    std::unique_ptr<f32[]> m_pVertices; ///< quads relative to the control's corner, cell by cell
    std::unique_ptr<u32[]> m_pIndices;
    std::unique_ptr<f32[]> m_pVerticesOut; ///< those quads at the control's position; null if not wanted
    std::unique_ptr<u32[], platform::PagesDeleter> m_pIndicesOut;
    u32 m_uCellCount;
    u32 m_uIndicesPerGlyph, m_uVerticesPerGlyph, m_uTrianglesPerGlyph;
    f32 m_fNumberW, m_fNumberH;
    CFontUniCode* m_pFont;                               ///< the manager's; also the draw key
    std::unique_ptr<CEntity_Base*[]> m_ppEntities;       ///< owns the entities too
    std::unique_ptr<CEntity_Base*[]> m_ppShadowEntities; ///< nobody makes them
    std::unique_ptr<CMesh_Base> m_pMesh;
    u8 m_au8Digits[g_uNumBoxPlaces]; ///< least significant first, fraction first
    std::unique_ptr<char16_t[]> m_wzCharset;
    u32 m_uGlyphCount;
    u32 m_uCharsetSize;
    u32 m_uCharsetRows;
    i32 m_iDrawCount; ///< cells to draw; negative until the first value
    f32 m_fCellWidth; ///< relative to the text size
    u32 m_uAlign;
    f32 m_fValue;
    i32 m_iValue;
    u32 m_uIntDigits;
    u32 m_uDecimals;
    bool m_bNegative;
    u32 m_uPadDigits;
    bool m_bPadBlank;
    bool m_bPercent;
    u32 m_auDrawIndex[g_uNumBoxPlaces]; ///< first index of each cell to draw
    f32 m_fMaxValue, m_fMinValue;
    /// Where the value comes from, for whoever binds it.
    u32 m_uDataKind;
    u64 m_pDataSource;
    u32 m_uDataArg;
    u8 m_u8DataFlag;

  private:
    f32 ScaledSize() const;
    u32 QuadCount() const;
    f32 GlyphLeft(f32 fScaled, f32 fRelativeWidth) const;
    void BuildGlyph(u32 uGlyph, f32 fScaled);
    void BuildShadows();
    void ColorGlyphs(u32 uGlyphs);
    void RefreshOut();
    void CopyCells(f32 fScaled);
    void PutGlyph(u32 uCell, u32 uGlyph);
    void FreeEntities(std::unique_ptr<CEntity_Base*[]>& ppEntities);
};
