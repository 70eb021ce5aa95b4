#pragma once
// The basic batcher over OpenGL: one program a pass, one draw call a control.
#include "draw/draw_basic.h"
#include "draw/gl_program.h"

#include <memory>

/// Orthographic projection with the origin at clip (-1, -1); the vertex shaders mirror y. p and q are the
/// last two parameters of the projection.
void g_fnMakeOrtho(f32 (&m)[16], f32 fLeft, f32 fRight, f32 fBottom, f32 fTop, f32 p, f32 q) noexcept;

class CDrawBasic_GL : public CDrawBasic_Base {
  public:
    CDrawBasic_GL() = default;
    ~CDrawBasic_GL() override;

    bool m_fnInitialize() override;
    void m_fnOnResize() override;
    void m_fnBindVertexLayout(void* pIgnored) override;
    void m_fnSetDrawConstants(const stDrawConstants* pConstants) override;
    void m_fnSetWorld(const stDrawConstants* pConstants) override;
    void m_fnSetColor(const stDrawConstants* pConstants) override;
    void m_fnRender() override;
    void m_fnRelease() override;

    std::unique_ptr<GLProgram> m_pProgramColor, m_pProgramTexture;
    std::unique_ptr<GLProgram> m_pProgramBlur[g_uBlurKeyCount];
    f32 m_mProj[16] = {};
    u32 m_uPass = g_uPassColor;

  private:
    const GLProgram* m_fnProgram() const;
    void m_fnBegin(const GLProgram& program) const;
    void m_fnRenderBlur();
};

/// Entry of the creation table; null when memory runs out.
CDrawBasic_Base* CreateDrawBasic_GL();
