#pragma once
// A number that changes every few frames. Every character that it can hold lies in every place that it can
// take, in one vertex buffer that never changes afterwards: showing a value is writing a few first-index
// numbers.
#include "controls/control.h"
#include "controls/glyph_parts.h"
#include "controls/text_look.h"
#include "platform/pages.h"

#include <memory>

/// Glyph numbers: places in the character table.
constexpr u32 g_uGlyphPoint = 10, g_uGlyphMinus = 11, g_uGlyphPercent = 12, g_uGlyphBlank = 13;
/// Digits, and entries of the draw list, that a number box holds.
constexpr u32 g_uNumBoxPlaces = 16;
/// Place of a glyph in its cell.
constexpr u32 g_uAlignLeft = 0, g_uAlignMiddle = 1, g_uAlignRight = 2;

/// Lengths in canvas units. A number that doesn't fit in 8 cells is cut off on the right. Render thread only.
class CNumBox_Base : public virtual CControl, public CTextLook, public CGlyphParts {
  public:
    CNumBox_Base();

    virtual bool m_fnAllocBuffers();
    /// Lays out the whole character table in every cell. False without font or buffers.
    virtual bool m_fnBuildGlyphs();
    /// Grows the quads of the first cell by a quarter on each side.
    virtual bool m_fnExpandQuads();
    /// One entity a cell.
    virtual bool m_fnCreateEntities();
#include "controls/glyph_mesh_slots.inc"
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
    virtual void m_fnMarkColorDirty();
#include "controls/text_color_slots.inc"
    /// Components 0 to 1.
    virtual void m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a);
#include "controls/text_look_slots.inc"
    virtual void m_fnSetAlign(u32 uAlign);
    /// ppEntities: one a cell.
    virtual void m_fnDrawDigits(CDraw_Base* pBatcher, CEntity_Base** ppEntities, const f32* pColor);
    virtual void m_fnRelease();
    virtual ~CNumBox_Base();

#include "controls/glyph_overrides.inc"

    std::unique_ptr<u32[], platform::PagesDeleter> m_pIndicesOut;
    u32 m_uCellCount;
    u32 m_uIndicesPerGlyph, m_uVerticesPerGlyph, m_uTrianglesPerGlyph;
    f32 m_fNumberW, m_fNumberH;
    std::unique_ptr<CEntity_Base*[]> m_ppEntities;       ///< owns the entities too
    std::unique_ptr<CEntity_Base*[]> m_ppShadowEntities; ///< nobody makes them
    u8 m_au8Digits[g_uNumBoxPlaces];                     ///< least significant first, fraction first
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
    void ColorChanged() { m_fnMarkColorDirty(); }
    void SizeChanged();
    void SpacingChanged();
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
