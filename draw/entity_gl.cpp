#include "draw/entity_gl.h"

#include <algorithm>
#include <iterator>

CEntity_GL::CEntity_GL() { m_fnSetPosition(0, 0, 0); }

const f32* CEntity_GL::m_fnGetWorld() { return m_mWorld; }
const f32* CEntity_GL::m_fnGetWorldForDraw() { return m_fnGetWorld(); }

void CEntity_GL::m_fnUpdateWorld() {
    std::fill(std::begin(m_mWorld), std::end(m_mWorld), 0.0f);
    m_mWorld[0] = m_mWorld[5] = m_mWorld[10] = m_mWorld[15] = 1.0f;
    m_mWorld[12] = m_fPosX;
    m_mWorld[13] = m_fPosY;
    m_mWorld[14] = m_fPosZ;
}

CEntity_Base* CreateEntity_GL() { return new CEntity_GL; }
