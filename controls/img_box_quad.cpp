// Where the corners of a picture lie in its box.
#include "controls/img_box.h"

#include <cmath>

void CImgBox_Base::m_fnBuildQuad() {
    if (m_bTilted)
        m_fnBuildTiltedQuad();
    else
        m_fnBuildFittedQuad();
}

bool CImgBox_Base::m_fnBuildFittedQuad() {
    if (!HasPicture()) return false;
    FitQuad(m_iAnchorCode);
    return true;
}

/// Quarter turns go by the corners of the texture, what is left by the geometry.
bool CImgBox_Base::m_fnBuildTiltedQuad() {
    if (!HasPicture()) return false;
    const u32 q = static_cast<u32>(m_fTiltDegree / 90.0f);
    const f32 tw = static_cast<f32>(m_pTexture->m_uWidth), th = static_cast<f32>(m_pTexture->m_uHeight);
    const f32 a = q % 2 ? th : tw, b = q % 2 ? tw : th;
    const f32 r = (m_fTiltDegree - static_cast<f32>(q) * 90.0f) * 3.1415927f / 180.0f;
    const f32 sn = std::sin(r), cs = std::cos(r);
    const f32 bw = cs * a + sn * b, bh = cs * b + sn * a;
    const f32 rx = m_fBoxW / bw, ry = m_fBoxH / bh;
    const bool bHeightDecides = rx > ry;
    const f32 k = bHeightDecides ? ry : rx;
    const f32 ox = bHeightDecides ? (m_fBoxW - bw * k) * 0.5f : 0.0f;
    const f32 oy = bHeightDecides ? 0.0f : (m_fBoxH - bh * k) * 0.5f;
    const f32 px = sn * b * k + ox, py = sn * a * k + oy;
    const f32 aafPlace[4][2] = {
        {px, oy}, {m_fBoxW - ox, py}, {m_fBoxW - px, m_fBoxH - oy}, {ox, m_fBoxH - py}};
    static constexpr f32 c_aafTexture[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (u32 i = 0; i < 4; ++i) {
        const f32* const pfTexture = c_aafTexture[(i + 4 - q % 4) % 4];
        m_pVertices[i] = {{aafPlace[i][0], aafPlace[i][1]}, {pfTexture[0], pfTexture[1]}};
    }
    return true;
}
