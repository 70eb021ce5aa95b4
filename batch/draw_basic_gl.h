#pragma once
// The basic batcher of the OpenGL flavour: programs, projection and uniforms.
#include "batch/draw_basic.h"
#include "draw/gl_program.h"

#include <memory>

class CDrawBasic_GL : public CDrawBasic_Base {
  public:
    CDrawBasic_GL() = default;
    ~CDrawBasic_GL() override;

    /// Reads, compiles and links all programs: flat, texture, and one per diameter in g_mapBlurDiameters.
    /// Throws std::runtime_error; programs made so far stay owned.
    bool m_fnInitialize() override;
    void m_fnOnResize() override;
    void m_fnBindVertexLayout(void* pIgnored) override;
    void m_fnSetDrawConstants(const stDrawConstants* pConstants) override;
    void m_fnSetWorld(const stDrawConstants* pConstants) override;
    void m_fnSetColor(const stDrawConstants* pConstants) override;
    /// Frosted shapes below flat ones below pictures. Needs a batcher whose m_fnInitialize returned.
    void m_fnRender() override;
    void m_fnRelease() override;

    std::unique_ptr<GLProgram> m_pProgramColor;
    std::unique_ptr<GLProgram> m_pProgramTexture;
    std::unique_ptr<GLProgram> m_pProgramBlur[g_uMaxBlurDiameter + 1];
    f32 m_mProj[16] = {};
    u32 m_uPass = g_uPassColor;

  private:
    void BuildBlurPrograms();
    GLProgram* PassProgram() const;
    void StartProgram(const GLProgram& program) const;
    void RenderBlur();
    void RenderColor();
    void RenderTexture();
};

/// Entry of the creation table; null when out of memory.
CDrawBasic_Base* CreateDrawBasic_GL();
