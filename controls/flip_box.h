#pragma once
// A few fixed texts in one font, of which one shows. All are laid out once, one behind the other, into one
// mesh: showing another is drawing another range of its indices.
#include "controls/control.h"
#include "controls/text_look.h"
#include "draw/entity.h"
#include "draw/glyph_quads.h"
#include "draw/mesh.h"

#include <map>
#include <memory>
#include <span>

class CFontUniCode;

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
class CFlipBox_Base : public virtual CControl, public CTextLook {
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
    virtual bool m_fnCreateMesh();
    virtual bool m_fnUploadMesh();
    /// pQuad: four vertices. (u0, v0) goes to the top left, (u1, v1) to the bottom right.
    virtual void m_fnSetQuadTex(stTextVertex* pQuad, f32 u0, f32 v0, f32 u1, f32 v1);
    /// Redoes what the dirty flags name, in memory.
    virtual void m_fnRefreshVertices();
    /// m_fnRefreshVertices, then hands the result on; nothing without a dirty flag.
    virtual void m_fnFlush();
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
    /// The colour filters what shows until the next selection: each state has its own. uRGB is 0xRRGGBB.
    virtual void m_fnSetTextColor(u32 uRGB, u8 a);
    virtual void m_fnSetTextColorB(u8 r, u8 g, u8 b, u8 a);
    virtual void m_fnSetTextColorF2(f32 r, f32 g, f32 b, f32 a);
    virtual void m_fnSetShadowColor(u32 uRGB, u8 a);
    virtual void m_fnSetShadowColorB(u8 r, u8 g, u8 b, u8 a);
    virtual void m_fnSetShadowColorF(f32 r, f32 g, f32 b, f32 a);
    /// Each output of the getters may be null.
    virtual void m_fnGetTextColor(f32* pR, f32* pG, f32* pB, f32* pA);
    virtual void m_fnGetShadowColor(f32* pR, f32* pG, f32* pB, f32* pA);
    /// Line height.
    virtual void m_fnSetTextSize(f32 fSize);
    virtual f32 m_fnGetTextSize(f32* pOut);
    /// Extra gap after each glyph; y is added to the line step only.
    virtual void m_fnSetSpacing(f32 x, f32 y);
    virtual void m_fnGetSpacing(f32* pX, f32* pY);
    virtual void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    /// The states stay, without their texts.
    virtual void m_fnRelease();
    virtual ~CFlipBox_Base();
    virtual f32 m_fnGetLineStep();

    void* m_fnGetVertexData() override;
    void* m_fnGetIndexData() override;
    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Buffers, layout, entity, mesh, upload, in this order, then the current state's sizes; at once true
    /// where nothing is to be drawn, false without a font.
    bool m_fnInitialize();
    /// First index of what shows, and how many: never beyond the buffer.
    struct stShown {
        u32 uFirst, uCount;
    };
    stShown m_fnShown() const;

    std::unique_ptr<f32[]> m_pVertices; ///< quads relative to the control's corner, state by state
    std::unique_ptr<u32[]> m_pIndices;
    std::unique_ptr<f32[]> m_pVerticesOut; ///< those quads at the control's position
    std::unique_ptr<u32[]> m_pIndicesOut;
    std::map<u32, stFlipState> m_mapStates;
    u32 m_uGlyphTotal;                                   ///< of all states
    u32 m_uTextSet;                                      ///< 1 once texts were accepted
    u32 m_uIndexCount, m_uVertexCount, m_uTriangleCount; ///< of what shows
    f32 m_fTextWidth, m_fTextHeight;
    CFontUniCode* m_pFont; ///< the manager's; also the draw key
    std::unique_ptr<CEntity_Base> m_pEntity;
    std::unique_ptr<CEntity_Base> m_pShadowEntity; ///< nobody makes one
    std::unique_ptr<CMesh_Base> m_pMesh;
    f32 m_fLineStep;
    u32 m_uCurrentState;

  private:
    u32 Room(const stFlipState& state) const;
    void PlaceGlyphs(stFlipState& state, u32 uQuad, u32 uQuadEnd);
    void BuildShadow(const stFlipState& state, u32 uGlyphs);
    void ColorState(const stFlipState& state);
    void MarkColorDirty();
};
