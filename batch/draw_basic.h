#pragma once
// The batcher of flat, textured and frosted shapes: the walking of lists, free of any graphics API.
#include "draw/draw_base.h"
#include "draw/draw_keys.h"

#include <vector>

class CControl;

/// Passes, in the numbering of m_fnDrawPass.
constexpr u32 g_uPassColor = 0, g_uPassTexture = 1, g_uPassBlur = 2;

class CDrawBasic_Base : public virtual CDraw_Base {
  public:
    CDrawBasic_Base() = default;

    /// 0: flat, 1: textured, 2: frosted with the default diameter. Any other draws nothing.
    virtual void m_fnDrawPass(u32 uPass);
    virtual void m_fnDrawColorList();
    virtual void m_fnDrawTextureList();
    virtual void m_fnDrawBlurList();
    /// Lets every control of one key draw itself, in list order. A key without a list draws nothing.
    virtual void m_fnDrawList(DrawKey pKey);
    /// Puts the named controls to the end of the flat list, in this order; the others stay in front as they
    /// were.
    virtual void m_fnSetColorListOrder(const std::vector<CControl*>& list);
    /// Unit that controls bind their texture on: always 0.
    virtual u32 m_fnGetTextureUnit();
    virtual void m_fnReserved8Basic();

    u32 m_uItemIndex = 0; ///< controls drawn so far in the running walk; not counted in the flat pass
    u32 m_uBlurProgramCount = 0;
    u32 m_uBlurProgramIndex = 0;
    u32 m_uBlurDiameters[g_uMaxBlurDiameter + 1] = {}; ///< one entry per blur program, ascending
};
