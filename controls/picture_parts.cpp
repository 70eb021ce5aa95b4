#include "controls/picture_parts.h"

#include "draw/draw_base.h"
#include "draw/draw_keys.h"

#include <algorithm>
#include <iterator>
#include <new>

static constexpr u16 c_auIndices[6] = {0, 1, 2, 0, 2, 3};

CPictureParts::CPictureParts() {
    StoreColor(0.5f, 0.5f, 0.5f, 1);
    m_pDrawKey = g_keyTextureList;
}

bool CPictureParts::MakeQuad() {
    m_pVertices.reset(new (std::nothrow) stShapeVertex[c_uVertexBytes / sizeof(stShapeVertex)]());
    m_pIndices.reset(new (std::nothrow) u16[std::size(c_auIndices)]);
    if (!m_pVertices || !m_pIndices) return false;
    std::copy(std::begin(c_auIndices), std::end(c_auIndices), m_pIndices.get());
    return true;
}

bool CPictureParts::HasPicture() const {
    return m_pVertices && m_pTexture && m_pTexture->m_uWidth != 0 && m_pTexture->m_uHeight != 0;
}

/// Of the room that is left, the part ahead of the picture; uPlace counts from the near side to the far one.
static f32 Lead(f32 fRoom, u32 uPlace) {
    if (uPlace == 0) return 0;
    return uPlace == 1 ? fRoom * 0.5f : fRoom;
}

void CPictureParts::FitQuad(i32 iAnchorCode) {
    const f32 fWidth = static_cast<f32>(m_pTexture->m_uWidth);
    const f32 fHeight = static_cast<f32>(m_pTexture->m_uHeight);
    const f32 fAcross = m_fBoxW / fWidth, fDown = m_fBoxH / fHeight;
    const f32 s = fAcross < fDown ? fAcross : fDown;
    const f32 w = fWidth * s, h = fHeight * s;
    // KEEP(files): codes that place the control outside its parent count as none here.
    const bool bPlaced = iAnchorCode >= 1 && iAnchorCode <= 9;
    const u32 uPlace = bPlaced ? static_cast<u32>(iAnchorCode) - 1 : 0;
    const f32 x = Lead(m_fBoxW - w, uPlace % 3), y = Lead(m_fBoxH - h, uPlace / 3);
    m_pVertices[0] = {{x, y}, {0, 0}};
    m_pVertices[1] = {{x + w, y}, {1, 0}};
    m_pVertices[2] = {{x + w, y + h}, {1, 1}};
    m_pVertices[3] = {{x, y + h}, {0, 1}};
}

void CPictureParts::DrawPicture(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    if (!m_pTexture) return;
    m_pTexture->m_fnBindUnit(pBatcher->m_uTextureUnit);
    pBatcher->m_fnOnTextureBound(nullptr);
    const stDrawConstants stConstants{pWorld, pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    if (!m_pMesh) return;
    m_pMesh->m_fnBind();
    pBatcher->m_fnBindVertexLayout(nullptr);
    m_pMesh->m_fnDraw(static_cast<u32>(std::size(c_auIndices)), 0, 0);
}

void CPictureParts::ReleasePicture() {
    ReleaseShape();
    m_pTexture.reset();
}
