#pragma once
// Glyph quads in memory: what all controls that draw text share. A quad is four vertices in the order top
// left, top right, bottom right, bottom left, and six 32-bit indices.
#include "platform/types.h"

/// Vertex of every text control: canvas units, texture 0 to 1, colour 0 to 1.
struct stTextVertex {
    f32 x, y;
    f32 u, v;
    f32 r, g, b, a;
};
static_assert(sizeof(stTextVertex) == 32);

constexpr u32 g_uQuadVertices = 4, g_uQuadIndices = 6;
constexpr u32 g_uTextVertexFloats = sizeof(stTextVertex) / sizeof(f32);
constexpr u32 g_uQuadVertexBytes = g_uQuadVertices * sizeof(stTextVertex);
constexpr u32 g_uQuadIndexBytes = g_uQuadIndices * sizeof(u32);
/// Offset of the canvas's shadow from its text, both ways, canvas units.
constexpr f32 g_fShadowOffset = 1;

/// An axis-parallel rectangle of positions.
struct stQuadRect {
    f32 fLeft, fTop, fRight, fBottom;
};

/// The vertices in an array of floats, from vertex uFirst on.
inline stTextVertex* g_fnVertexAt(f32* pVertices, u32 uFirst) {
    return reinterpret_cast<stTextVertex*>(pVertices) + uFirst;
}
void g_fnWriteQuadIndices(u32* pIndices, u32 uQuads);
void g_fnSetQuadRect(stTextVertex* pQuad, const stQuadRect& stRect);
void g_fnSetQuadTexture(stTextVertex* pQuad, f32 u0, f32 v0, f32 u1, f32 v1);
/// Size of a cell of a font's picture, in the units of texture coordinates.
struct stCellSize {
    f32 fWidth, fHeight;
};

/// Grows each quad by a quarter of its size on every side, position and texture alike, but not beyond the
/// right and lower edge of its cell, where the next glyph begins.
void g_fnExpandQuads(stTextVertex* pVertices, u32 uQuads, const stCellSize& stCell);
/// pColor: red, green, blue, alpha.
void g_fnColorVertices(stTextVertex* pVertices, u32 uVertices, const f32* pColor);
void g_fnMoveVertices(stTextVertex* pVertices, u32 uVertices, f32 x, f32 y);
/// Copies the colours and nothing else.
void g_fnCopyColors(stTextVertex* pTo, const stTextVertex* pFrom, u32 uVertices);

/// A colour as four floats, from 0xRRGGBB with a byte alpha, or from four bytes.
void g_fnStoreColor(f32* pColor, u32 uRGB, u8 a);
void g_fnStoreColorB(f32* pColor, u8 r, u8 g, u8 b, u8 a);
void g_fnStoreColorF(f32* pColor, f32 r, f32 g, f32 b, f32 a);
/// Each output may be null.
void g_fnLoadColor(const f32* pColor, f32* pR, f32* pG, f32* pB, f32* pA);
