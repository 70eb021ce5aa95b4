#pragma once
// Walks the lists of flat, textured and blurred shapes. Free of OpenGL.
#include "controls/osd_manager.h"
#include "draw/draw_base.h"
#include "draw/draw_keys.h"

/// Passes of the basic batcher.
constexpr u32 g_uPassColor = 0, g_uPassTexture = 1, g_uPassBlur = 2;

class CDrawBasic_Base : public virtual CDraw_Base {
  public:
    virtual void m_fnDrawPass(u32 uPass);
    void m_fnRender() override;
    virtual void m_fnDrawColorList();
    virtual void m_fnDrawTextureList();
    virtual void m_fnDrawBlurList();
    /// Lets every control of a key draw itself, from the front of its list.
    virtual void m_fnDrawList(DrawKey key);
    /// Brings the named controls to the end of the colour list, in the order given.
    virtual void m_fnSetColorListOrder(const ControlList& list);
    /// Unit that controls bind their textures to.
    virtual u32 m_fnGetTextureUnit();
    virtual void m_fnReserved8Basic();

    u32 m_uTextureUnit = 0;
    u32 m_uItemIndex = 0; ///< controls of the running walk so far
    u32 m_uBlurProgramCount = 0;
    u32 m_uBlurProgramIndex = 0;
    u32 m_uBlurDiameters[g_uBlurKeyCount] = {}; ///< diameter of each blur program, ascending
};
