#pragma once
// Entity of the OpenGL flavour.
#include "draw/entity.h"

class CEntity_GL : public virtual CEntity_Base {
  public:
    CEntity_GL();

    const f32* m_fnGetWorld() override;
    const f32* m_fnGetWorldForDraw() override;
    void m_fnUpdateWorld() override;

    f32 m_mWorld[16]; ///< column-major: a translation
};

/// Entry of the creation table; null when out of memory.
CEntity_Base* CreateEntity_GL();
