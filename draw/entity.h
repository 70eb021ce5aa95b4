#pragma once
// Where a control stands: a position, and in each flavour the world matrix that follows from it.
#include "draw/aligned_allocation.h"
#include "platform/types.h"

/// Position in canvas units, origin top left, y down. The matrix belongs to the flavour.
class CEntity_Base : public CAlignedAllocationPolicy<int, 16> {
  public:
    CEntity_Base() = default;
    CEntity_Base(const CEntity_Base&) = delete;
    CEntity_Base& operator=(const CEntity_Base&) = delete;

    /// 16 floats, column-major; null in a flavour without a matrix.
    virtual const f32* m_fnGetWorld();
    virtual u32 m_fnReserved1();
    virtual const f32* m_fnGetWorldForDraw();
    virtual void m_fnSetPosition(f32 x, f32 y, f32 z);
    /// Each pointer may be null.
    virtual void m_fnGetPosition(f32* pX, f32* pY, f32* pZ);
    virtual void m_fnReserved5();
    virtual ~CEntity_Base() = default;
    /// Derives the matrix from the stored position.
    virtual void m_fnUpdateWorld();

    f32 m_fPosX = 0.0f, m_fPosY = 0.0f, m_fPosZ = 0.0f;
};
