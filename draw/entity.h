#pragma once
// A place on the canvas and the world matrix that follows from it.
#include "draw/aligned_allocation.h"
#include "platform/types.h"

class CEntity_Base : public CAlignedAllocationPolicy<int, 16> {
  public:
    CEntity_Base() = default;
    CEntity_Base(const CEntity_Base&) = delete;
    CEntity_Base& operator=(const CEntity_Base&) = delete;

    /// 16 floats, column-major; null in the base.
    virtual const f32* m_fnGetWorld();
    virtual i32 m_fnReserved1();
    virtual const f32* m_fnGetWorldForDraw();
    /// Canvas units; recomputes the world matrix.
    virtual void m_fnSetPosition(f32 x, f32 y, f32 z);
    /// Copies to each non-null pointer.
    virtual void m_fnGetPosition(f32* x, f32* y, f32* z);
    virtual void m_fnReserved5();
    virtual ~CEntity_Base() = default;
    virtual void m_fnUpdateWorld();

    f32 m_fPosX = 0, m_fPosY = 0, m_fPosZ = 0;
};
