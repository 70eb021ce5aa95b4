#include "draw/entity_gl.h"

#include "draw/matrix.h"

CEntity_GL::CEntity_GL() { m_fnSetPosition(0.0f, 0.0f, 0.0f); }

const f32* CEntity_GL::m_fnGetWorld() { return m_mWorld; }

const f32* CEntity_GL::m_fnGetWorldForDraw() { return m_fnGetWorld(); }

void CEntity_GL::m_fnUpdateWorld() {
    g_fnMakeIdentity(m_mWorld);
    m_mWorld[12] = m_fPosX;
    m_mWorld[13] = m_fPosY;
    m_mWorld[14] = m_fPosZ;
}

CEntity_Base* CreateEntity_GL() { return new CEntity_GL; }
