#pragma once
// A run of Unicode text in one font, on one or many lines, with an optional drop shadow. This half lays
// glyphs out into quads; the drawing call belongs to the flavour.
#include "controls/control.h"
#include "controls/glyph_parts.h"
#include "controls/text_look.h"

#include <memory>

/// Lengths in canvas units. Room for quads is decided at initialisation: glyphs of a later text beyond it
/// take their space and don't show. Render thread only.
class CTextBox_Base : public virtual CControl, public CTextLook, public CTextParts {
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
#include "controls/glyph_mesh_slots.inc"
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
    virtual void m_fnMarkColorDirty();
#include "controls/text_color_slots.inc"
    /// Components 0 to 1.
    virtual void m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a);
#include "controls/text_look_slots.inc"
    virtual void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor);
    virtual void m_fnRelease();
    virtual ~CTextBox_Base();
    virtual f32 m_fnGetLineStep();

#include "controls/glyph_overrides.inc"

    std::unique_ptr<char16_t[]> m_wzText;
    std::unique_ptr<u32[]> m_pCodePoints; ///< zero-terminated
    u32 m_uGlyphCapacity;                 ///< quads of one layer, text or shadow
    u32 m_uGlyphCount;                    ///< quads that the text needs, at least 1
    u32 m_uTextLength;                    ///< code points
    bool m_bFitToText;
    f32 m_fClipWidth;
    u32 m_uTextRoom; ///< UTF-16 units that m_wzText, and code points that m_pCodePoints can hold

  private:
    void ColorChanged() { m_fnMarkColorDirty(); }
    void SizeChanged() { m_fnFlush(); }
    void SpacingChanged() { m_fnFlush(); }
    bool MakeTextRoom(u32 uUnits, std::unique_ptr<char16_t[]>& wzFormer);
    f32 ClipStart() const;
    void ColorLayers();
    void BuildShadow();
};
