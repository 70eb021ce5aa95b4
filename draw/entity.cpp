#include "draw/entity.h"

const f32* CEntity_Base::m_fnGetWorld() { return nullptr; }

u32 CEntity_Base::m_fnReserved1() { return 0; }

const f32* CEntity_Base::m_fnGetWorldForDraw() { return nullptr; }

void CEntity_Base::m_fnSetPosition(f32 x, f32 y, f32 z) {
    m_fPosX = x;
    m_fPosY = y;
    m_fPosZ = z;
    m_fnUpdateWorld();
}

void CEntity_Base::m_fnGetPosition(f32* pX, f32* pY, f32* pZ) {
    if (pX) *pX = m_fPosX;
    if (pY) *pY = m_fPosY;
    if (pZ) *pZ = m_fPosZ;
}

void CEntity_Base::m_fnReserved5() {}

void CEntity_Base::m_fnUpdateWorld() {}
