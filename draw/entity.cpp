#include "draw/entity.h"

const f32* CEntity_Base::m_fnGetWorld() { return nullptr; }
i32 CEntity_Base::m_fnReserved1() { return 0; }
const f32* CEntity_Base::m_fnGetWorldForDraw() { return nullptr; }
void CEntity_Base::m_fnReserved5() {}
void CEntity_Base::m_fnUpdateWorld() {}

void CEntity_Base::m_fnSetPosition(f32 x, f32 y, f32 z) {
    m_fPosX = x;
    m_fPosY = y;
    m_fPosZ = z;
    m_fnUpdateWorld();
}

void CEntity_Base::m_fnGetPosition(f32* x, f32* y, f32* z) {
    if (x) *x = m_fPosX;
    if (y) *y = m_fPosY;
    if (z) *z = m_fPosZ;
}
