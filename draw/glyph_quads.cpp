#include "draw/glyph_quads.h"

void g_fnWriteQuadIndices(u32* pIndices, u32 uQuads) {
    static constexpr u32 auCorner[g_uQuadIndices] = {0, 1, 2, 0, 2, 3};
    for (u32 uQuad = 0; uQuad < uQuads; ++uQuad)
        for (u32 uCorner : auCorner) *pIndices++ = uQuad * g_uQuadVertices + uCorner;
}

void g_fnSetQuadRect(stTextVertex* pQuad, const stQuadRect& st) {
    pQuad[0].x = pQuad[3].x = st.fLeft;
    pQuad[1].x = pQuad[2].x = st.fRight;
    pQuad[0].y = pQuad[1].y = st.fTop;
    pQuad[2].y = pQuad[3].y = st.fBottom;
}

void g_fnSetQuadTexture(stTextVertex* pQuad, f32 u0, f32 v0, f32 u1, f32 v1) {
    pQuad[0].u = pQuad[3].u = u0;
    pQuad[1].u = pQuad[2].u = u1;
    pQuad[0].v = pQuad[1].v = v0;
    pQuad[2].v = pQuad[3].v = v1;
}

/// Far end of a grown side: its position and the texture there.
struct stFarEnd {
    f32 fPosition, fTexture;
};

/// A side from (fPos0, fTex0) to (fPos1, fTex1), grown by a quarter and cut where a cell that begins at fTex0
/// ends.
static stFarEnd GrownEnd(f32 fPos0, f32 fPos1, f32 fTex0, f32 fTex1, f32 fCell) {
    const f32 dPos = (fPos1 - fPos0) * 0.25f, dTex = (fTex1 - fTex0) * 0.25f;
    const stFarEnd stGrown = {fPos1 + dPos, fTex1 + dTex};
    const f32 fMost = fTex0 + fCell;
    if (!(stGrown.fTexture > fMost)) return stGrown;
    const f32 fShare = (fMost - fTex0) / (fTex1 - fTex0);
    return {fPos0 + (fPos1 - fPos0) * fShare, fMost};
}

void g_fnExpandQuads(stTextVertex* p, u32 uQuads, const stCellSize& stCell) {
    for (; uQuads > 0; --uQuads, p += g_uQuadVertices) {
        const f32 dx = (p[1].x - p[0].x) * 0.25f, dy = (p[2].y - p[1].y) * 0.25f;
        const f32 du = (p[1].u - p[0].u) * 0.25f, dv = (p[2].v - p[1].v) * 0.25f;
        const stFarEnd stRight = GrownEnd(p[0].x, p[2].x, p[0].u, p[2].u, stCell.fWidth);
        const stFarEnd stBelow = GrownEnd(p[0].y, p[2].y, p[0].v, p[2].v, stCell.fHeight);
        g_fnSetQuadRect(p, {p[0].x - dx, p[0].y - dy, stRight.fPosition, stBelow.fPosition});
        g_fnSetQuadTexture(p, p[0].u - du, p[0].v - dv, stRight.fTexture, stBelow.fTexture);
    }
}

void g_fnColorVertices(stTextVertex* p, u32 uVertices, const f32* pColor) {
    for (; uVertices > 0; --uVertices, ++p) {
        p->r = pColor[0];
        p->g = pColor[1];
        p->b = pColor[2];
        p->a = pColor[3];
    }
}

void g_fnMoveVertices(stTextVertex* p, u32 uVertices, f32 x, f32 y) {
    for (; uVertices > 0; --uVertices, ++p) {
        p->x += x;
        p->y += y;
    }
}

void g_fnCopyColors(stTextVertex* pTo, const stTextVertex* pFrom, u32 uVertices) {
    for (; uVertices > 0; --uVertices, ++pTo, ++pFrom) {
        pTo->r = pFrom->r;
        pTo->g = pFrom->g;
        pTo->b = pFrom->b;
        pTo->a = pFrom->a;
    }
}

void g_fnStoreColor(f32* pColor, u32 uRGB, u8 a) {
    g_fnStoreColorB(pColor, static_cast<u8>(uRGB >> 16), static_cast<u8>(uRGB >> 8), static_cast<u8>(uRGB),
                    a);
}

void g_fnStoreColorB(f32* pColor, u8 r, u8 g, u8 b, u8 a) {
    g_fnStoreColorF(pColor, r / 255.0f, g / 255.0f, b / 255.0f, a / 255.0f);
}

void g_fnStoreColorF(f32* pColor, f32 r, f32 g, f32 b, f32 a) {
    pColor[0] = r;
    pColor[1] = g;
    pColor[2] = b;
    pColor[3] = a;
}

void g_fnLoadColor(const f32* pColor, f32* pR, f32* pG, f32* pB, f32* pA) {
    f32* const apOut[] = {pR, pG, pB, pA};
    for (f32* pOut : apOut) {
        if (pOut) *pOut = *pColor;
        ++pColor;
    }
}
