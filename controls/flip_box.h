#pragma once
// A few fixed texts in one font, of which one shows. All are laid out once, one behind the other, into one
// mesh: showing another is drawing another range of its indices.
#include "controls/control.h"
#include "controls/glyph_parts.h"
#include "controls/text_look.h"

#include <map>
#include <memory>
#include <span>

/// One of the texts.
struct stFlipState {
    std::unique_ptr<u32[]> m_pCodePoints; ///< zero-terminated
    u32 m_uTextLength = 0;                ///< code points
    u32 m_uGlyphCount = 1;                ///< quads that the whole text needs, at least 1
    u32 m_uIndexCount = 0, m_uVertexCount = 0, m_uTriangleCount = 0; ///< shadow included
    u32 m_uVertexBase = 0, m_uIndexBase = 0;                         ///< in the arrays of the control
    f32 m_fTextWidth = 0, m_fTextHeight = 0;
    f32 m_afColor[4] = {}; ///< red, green, blue, alpha
};
/// A text as m_fnSetStates takes it.
struct stFlipText {
    const char16_t* wzText;
    f32 afColor[4];
};

/// Lengths in canvas units. One line a text: it ends at the first line end. Room for quads is decided at
/// initialisation: glyphs beyond it don't show. Render thread only.
class CFlipBox_Base : public virtual CControl, public CTextLook, public CTextParts {
  public:
    CFlipBox_Base();

    /// Room for all present texts; false without memory.
    virtual bool m_fnAllocBuffers();
    /// Measures a state and lays it out at its bases. False without font or buffers.
    virtual bool m_fnLayoutState(stFlipState& state);
    /// All states in the order of their numbers, one behind the other.
    virtual bool m_fnLayoutAll();
    /// Grows the quads of a state by a quarter on each side.
    virtual bool m_fnExpandState(stFlipState& state);
    virtual bool m_fnCreateEntity();
#include "controls/glyph_mesh_slots.inc"
    /// Components 0 to 1.
    virtual void m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a);
    virtual void m_fnMarkPositionDirty();
    /// Numbers the texts from 0; states beyond the list keep theirs. False, and nothing changed, for an empty
    /// list, for a text that is null or not valid UTF-16, or without memory. Shows after the next m_fnFlush
    /// and the next m_fnSelectState.
    virtual bool m_fnSetStates(std::span<const stFlipText> list);
    /// Shows a state. False, and nothing changed, for one that there is not; state 0 is made if need be.
    virtual bool m_fnSelectState(u32 uState);
    virtual u32 m_fnGetCurrentState();
    virtual f32 m_fnGetTextWidth();
    /// Null is ignored.
    virtual void m_fnSetFont(CFontUniCode* pFont);
    /// ppOut may be null.
    virtual CFontUniCode* m_fnGetFont(CFontUniCode** ppOut);
    /// Ignored once the buffers exist.
    virtual void m_fnSetShadow(bool bShadow);
    /// The colour filters what shows until the next selection: each state has its own.
#include "controls/text_color_slots.inc"
    virtual void m_fnSetTextColorF2(f32 r, f32 g, f32 b, f32 a);
#include "controls/text_look_slots.inc"
    virtual void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    /// The states stay, without their texts.
    virtual void m_fnRelease();
    virtual ~CFlipBox_Base();
    virtual f32 m_fnGetLineStep();

#include "controls/glyph_overrides.inc"
    /// First index of what shows, and how many: never beyond the buffer.
    struct stShown {
        u32 uFirst, uCount;
    };
    stShown m_fnShown() const;

    std::map<u32, stFlipState> m_mapStates;
    u32 m_uGlyphTotal; ///< of all states
    u32 m_uCurrentState;

  private:
    u32 Room(const stFlipState& state) const;
    void PlaceGlyphs(stFlipState& state, u32 uQuad, u32 uQuadEnd);
    void BuildShadow(const stFlipState& state, u32 uGlyphs);
    void ColorState(const stFlipState& state);
    void ColorChanged();
    void SizeChanged() { m_fnFlush(); }
    void SpacingChanged() { m_fnFlush(); }
};
