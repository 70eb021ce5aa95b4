#pragma once
#include "draw/entity.h"

/// Entity with the matrix that the shaders take.
class CEntity_GL : public virtual CEntity_Base {
  public:
    CEntity_GL();

    const f32* m_fnGetWorld() override;
    const f32* m_fnGetWorldForDraw() override;
    void m_fnUpdateWorld() override;

    f32 m_mWorld[16];
};

/// Entry of the creation table; null when memory runs out.
CEntity_Base* CreateEntity_GL();
