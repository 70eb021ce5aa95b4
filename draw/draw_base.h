#pragma once
// Common face of the batchers.
#include "draw/aligned_allocation.h"
#include "platform/types.h"

/// What a control sets before it draws.
struct stDrawConstants {
    const f32* pWorld; ///< 16 floats, column-major
    const f32* pColor; ///< red, green, blue, alpha, 0 to 1
};

class CDraw_Base : public CAlignedAllocationPolicy<int, 16> {
  public:
    CDraw_Base() = default;
    CDraw_Base(const CDraw_Base&) = delete;
    CDraw_Base& operator=(const CDraw_Base&) = delete;

    /// Builds programs; throws std::runtime_error with the words of the failing step.
    virtual bool m_fnInitialize() { return true; }
    virtual void m_fnOnResize() {}
    virtual void m_fnBindVertexLayout(void*) {}
    virtual void m_fnSetDrawConstants(const stDrawConstants*) {}
    /// Called after a texture bind.
    virtual void m_fnOnTextureBound(void*) {}
    virtual void m_fnSetWorld(const stDrawConstants*) {}
    virtual void m_fnSetColor(const stDrawConstants*) {}
    virtual void m_fnRender() {}
    virtual void m_fnReserved8() {}
    virtual void m_fnRelease() {}
    virtual ~CDraw_Base() = default;
};
