#pragma once
// The text batcher of the OpenGL flavour: programs, projection and uniforms.
#include "batch/draw_text.h"
#include "draw/gl_program.h"

#include <memory>

class CDrawText_GL : public CDrawText_Base {
  public:
    // Operations and projection as in CDrawBasic_GL: both batchers fill the slots of CDraw_Base.
    CDrawText_GL() = default;
    ~CDrawText_GL() override;

    /// Reads, compiles and links both programs. Throws std::runtime_error; a program made so far stays owned.
    bool m_fnInitialize() override;
    void m_fnOnResize() override;
    void m_fnBindVertexLayout(void* pIgnored) override;
    void m_fnSetDrawConstants(const stDrawConstants* pConstants) override;
    void m_fnSetWorld(const stDrawConstants* pConstants) override;
    void m_fnSetColor(const stDrawConstants* pConstants) override;
    /// With the glow program where g_bTextGlow says so. Needs a batcher whose m_fnInitialize returned.
    void m_fnRender() override;
    void m_fnRelease() override;

    std::unique_ptr<GLProgram> m_pProgramText;
    std::unique_ptr<GLProgram> m_pProgramTextGlow;
    /// Of the text program; the glow program has the same.
    i32 m_iLocProj = -1, m_iLocView = -1, m_iLocWorld = -1, m_iLocFontColor = -1;
    f32 m_mProj[16] = {};
};

/// Entry of the creation table; null when out of memory.
CDrawText_Base* CreateDrawText_GL();
