#include "controls/glyph_box.h"

#include "font/font_unicode.h"

bool g_fnAskGlyph(CFontUniCode& font, u32 uCode, f32 fTextSize, stGlyphBox& st) {
    f32 z;
    if (!font.m_fnGetCharInfo(uCode, &st.u0, &st.v0, &z, &st.u1, &st.v1, &st.fOffset, &st.fWidth,
                              &st.fHeight))
        return false;
    st.bInk = st.fHeight > 0;
    st.fOffset *= fTextSize;
    st.fWidth *= fTextSize * font.m_fnGetScale();
    st.fHeight *= fTextSize;
    return true;
}

void g_fnPutGlyph(stTextVertex* pQuad, const stGlyphBox& st, f32 fPenX, f32 fLineY) {
    if (!st.bInk) {
        g_fnSetQuadRect(pQuad, {fPenX, fLineY, fPenX, fLineY});
        g_fnSetQuadTexture(pQuad, 0, 0, 0, 0);
        return;
    }
    const f32 fBottom = st.fOffset + fLineY;
    g_fnSetQuadRect(pQuad, {fPenX, fBottom - st.fHeight, fPenX + st.fWidth, fBottom});
    g_fnSetQuadTexture(pQuad, st.u0, st.v0, st.u1, st.v1);
}
