#pragma once
// The batcher of everything that uses a glyph atlas: lists of controls by font, free of any graphics API.
#include "draw/draw_base.h"

#include <memory>

class CControl;
class CFontUniCode;

/// Text gets a halo; a setting of the profile. It chooses the program, nothing else.
extern bool g_bTextGlow;

/// Capacity of the lists.
constexpr u32 g_uMaxTextFonts = 64, g_uMaxFontControls = 1024;

/// Draws font by font, in the manager's order, and the controls of a font in the order of their registration.
/// The lists have room for all there can be, half a megabyte, so that drawing allocates nothing; it takes
/// memory only where controls stand.
class CDrawText_Base : public virtual CDraw_Base {
  public:
    CDrawText_Base();
    ~CDrawText_Base() override;

    virtual void m_fnReserved0Text();
    /// Sums what text and number controls take in a merged stream, and allocates its two arrays unless they
    /// exist. No flavour with a mesh per control calls it.
    virtual void m_fnAllocMergedBuffers();
    /// Gives every text box its place in the merged stream and copies its data there, as far as the arrays
    /// reach.
    virtual void m_fnMergeVertices();
    /// Takes fonts and controls from the manager anew. Fonts without controls stay out unless they are to
    /// stay (see g_fnSetFontToStay).
    virtual void m_fnBuildFontLists();
    /// As m_fnBuildFontLists, but without a manager m_uFontCount is left alone.
    virtual void m_fnBuildFontListsIfAny();
    virtual void m_fnReserved5Text();
    /// Binds the font's atlas and draws the controls at m_uFontIndex.
    virtual void m_fnDrawFont(CFontUniCode* pFont);
    virtual void m_fnReserved8Text();
    virtual void m_fnFreeMergedBuffers();
    virtual void m_fnResetFontLists();

    u32 m_uTextureUnit = 0;
    u32 m_uFontCount = 0;
    u32 m_uFontIndex = 0; ///< of the font being drawn
    CFontUniCode* m_pFonts[g_uMaxTextFonts];
    u32 m_uControlCounts[g_uMaxTextFonts];
    CControl* (*m_pControls)[g_uMaxFontControls]; ///< by font, g_uMaxTextFonts of them
    u32 m_uMergedVertexBytes = 0, m_uMergedIndexBytes = 0;
    u32 m_uMergedIndexCount = 0;
    std::unique_ptr<u8[]> m_pMergedVertices;
    std::unique_ptr<u8[]> m_pMergedIndices;
    u32 m_uControlIndex = 0; ///< of the control being drawn, inside its font

  protected:
    /// Draws all fonts of the lists; the lists are made on the first call and kept from then on.
    void Walk();

  private:
    u32 m_uVertexRoom = 0, m_uIndexRoom = 0;   ///< bytes of the merged arrays
    u32 m_auControlsHad[g_uMaxTextFonts] = {}; ///< entries of each list that may be other than null
    void AddFont(CFontUniCode* pFont);
    void MergeControl(CControl* pControl, u32* puBaseVertex, u32* puBaseIndex);
};

/// Fonts that stay in the lists without controls, because a control that comes and goes uses them; one set
/// for the process. Null is ignored.
void g_fnSetFontToStay(CFontUniCode* pFont);
bool g_fnIsFontToStay(const CFontUniCode* pFont) noexcept;
void g_fnClearFontsToStay() noexcept;
