#pragma once
// A run of Unicode text in one font, on one or many lines, with an optional drop shadow. This half lays
// glyphs out into quads; the drawing call belongs to the flavour.
#include "controls/control.h"
#include "controls/text_look.h"
#include "draw/entity.h"
#include "draw/glyph_quads.h"
#include "draw/mesh.h"

#include <memory>

class CFontUniCode;

/// Lengths in canvas units. Room for quads is decided at initialisation: glyphs of a later text beyond it
/// take their space and don't show. Render thread only.
class CTextBox_Base : public virtual CControl, public CTextLook {
  public:
    CTextBox_Base();

    /// Room for the present text's quads; false without memory.
    virtual bool m_fnAllocBuffers();
    /// Measures and lays out, into the clip window where there is one.
    virtual bool m_fnBuildText();
    /// One layout pass. bApplySize: the control takes the measured size. bNoClip: everything shows; otherwise
    /// fStartX is where the text's left edge falls inside the clip window. False without font or buffers.
    virtual bool m_fnLayoutGlyphs(bool bApplySize, bool bNoClip, f32 fStartX);
    /// Grows every quad of the buffer by a quarter on each side.
    virtual bool m_fnExpandQuads();
    virtual bool m_fnCreateEntity();
    virtual bool m_fnCreateMesh();
    virtual bool m_fnUploadMesh();
    /// pQuad: four vertices. (u0, v0) goes to the top left, (u1, v1) to the bottom right.
    virtual void m_fnSetQuadTex(stTextVertex* pQuad, f32 u0, f32 v0, f32 u1, f32 v1);
    /// Redoes what the dirty flags name, in memory.
    virtual void m_fnRefreshVertices();
    /// m_fnRefreshVertices, then hands the result on; nothing without a dirty flag.
    virtual void m_fnFlush();
    virtual void m_fnMarkPositionDirty();
    virtual void m_fnSetFitToText(bool bFit);
    virtual void m_fnSetClipWidth(f32 fWidth);
    virtual bool m_fnGetFitToText();
    /// False, and nothing changed, for null, for what is not valid UTF-16, or without memory. Shows after the
    /// next m_fnFlush. A text no longer than an earlier one allocates nothing.
    virtual bool m_fnSetTextW(const char16_t* wzText);
    /// m_fnSetTextW for a narrow text: each byte is the code of a character.
    virtual bool m_fnSetTextA(const char* szText);
    /// A new copy of the text, the caller's to delete[]; null without memory.
    virtual void m_fnGetTextCopy(char16_t** ppText);
    virtual f32 m_fnGetTextWidth();
    /// Takes the text from a file, named in full or relative to the profile folder. False if it can't be read
    /// or is empty.
    virtual bool m_fnLoadText(const char16_t* wzPath, bool bFullPath);
    /// Null is ignored.
    virtual void m_fnSetFont(CFontUniCode* pFont);
    /// pOut may be null.
    virtual CFontUniCode* m_fnGetFont(CFontUniCode** ppOut);
    /// Ignored once the buffers exist.
    virtual void m_fnSetShadow(bool bShadow);
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
    /// Line height.
    virtual void m_fnSetTextSize(f32 fSize);
    virtual f32 m_fnGetTextSize(f32* pOut);
    /// Extra gap after each glyph, and between lines.
    virtual void m_fnSetSpacing(f32 x, f32 y);
    virtual void m_fnGetSpacing(f32* pX, f32* pY);
    virtual void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    virtual void m_fnRelease();
    virtual ~CTextBox_Base();
    virtual f32 m_fnGetLineStep();

    void* m_fnGetVertexData() override;
    void* m_fnGetIndexData() override;
    void m_fnOnMoved() override;
    const void* m_fnGetDrawKey() override;
    void m_fnRender(CDraw_Base* pBatcher) override;

    /// Buffers, layout, entity, mesh, upload, in this order; at once true where nothing is to be drawn, false
    /// without a font.
    bool m_fnInitialize();

    std::unique_ptr<f32[]> m_pVertices; ///< quads relative to the control's corner
    std::unique_ptr<u32[]> m_pIndices;
    std::unique_ptr<f32[]> m_pVerticesOut; ///< those quads at the control's position
    std::unique_ptr<u32[]> m_pIndicesOut;
    std::unique_ptr<char16_t[]> m_wzText;
    std::unique_ptr<u32[]> m_pCodePoints; ///< zero-terminated
    u32 m_uGlyphCapacity;                 ///< quads of one layer, text or shadow
    u32 m_uGlyphCount;                    ///< quads that the text needs, at least 1
    u32 m_uTextLength;                    ///< code points
    u32 m_uTextSet;                       ///< 1 once a text was accepted
    u32 m_uIndexCount, m_uVertexCount, m_uTriangleCount;
    f32 m_fTextWidth, m_fTextHeight;
    CFontUniCode* m_pFont; ///< the manager's; also the draw key
    std::unique_ptr<CEntity_Base> m_pEntity;
    std::unique_ptr<CEntity_Base> m_pShadowEntity; ///< nobody makes one
    std::unique_ptr<CMesh_Base> m_pMesh;
    f32 m_fLineStep;
    bool m_bFitToText;
    f32 m_fClipWidth;
    u32 m_uTextRoom; ///< UTF-16 units that m_wzText, and code points that m_pCodePoints can hold

  private:
    bool MakeTextRoom(u32 uUnits, std::unique_ptr<char16_t[]>& wzFormer);
    f32 ClipStart() const;
    void ColorLayers();
    void BuildShadow();
};
