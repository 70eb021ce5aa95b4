#include "batch/draw_text_gl.h"

#include "draw/canvas.h"
#include "draw/data_shader.h"
#include "draw/glyph_quads.h"
#include "draw/matrix.h"
#include "platform/gl_api.h"

#include <cstddef>

static std::unique_ptr<GLProgram> BuildProgram(const char* szFragmentFile) {
    std::vector<GLShader> shaders;
    shaders.push_back(g_fnDataShader("DrawText_GL.vs", GL_VERTEX_SHADER));
    shaders.push_back(g_fnDataShader(szFragmentFile, GL_FRAGMENT_SHADER));
    return std::make_unique<GLProgram>(shaders);
}

CDrawText_GL::~CDrawText_GL() { CDrawText_GL::m_fnRelease(); }

bool CDrawText_GL::m_fnInitialize() {
    m_pProgramText = BuildProgram("DrawText_GL.fs");
    m_pProgramTextGlow = BuildProgram("DrawText_GL_G.fs");
    m_iLocProj = m_pProgramText->m_fnUniform("mProj");
    m_iLocView = m_pProgramText->m_fnUniform("mView");
    m_iLocWorld = m_pProgramText->m_fnUniform("mWorld");
    m_iLocFontColor = m_pProgramText->m_fnUniform("vFontColor");
    m_fnOnResize();
    return true;
}

void CDrawText_GL::m_fnOnResize() {
    g_fnMakeOrtho(m_mProj, 0.0f, static_cast<f32>(g_uCanvasW), 0.0f, static_cast<f32>(g_uCanvasH), 0.0f,
                  1.0f);
}

static void BindAttribute(const GLProgram& program, const char* szName, GLint iComponents,
                          std::uintptr_t uOffset) {
    const GLuint uIndex = static_cast<GLuint>(program.m_fnAttrib(szName));
    glEnableVertexAttribArray(uIndex);
    glVertexAttribPointer(uIndex, iComponents, GL_FLOAT, GL_FALSE, sizeof(stTextVertex),
                          reinterpret_cast<const void*>(uOffset));
    // Of version 3.3, while contexts may be of 3.2.
    if (glVertexAttribDivisor) glVertexAttribDivisor(uIndex, 0);
}

void CDrawText_GL::m_fnBindVertexLayout(void*) {
    if (!m_pProgramText) return;
    BindAttribute(*m_pProgramText, "v2Pos", 2, offsetof(stTextVertex, x));
    BindAttribute(*m_pProgramText, "v2Tex0", 2, offsetof(stTextVertex, u));
    BindAttribute(*m_pProgramText, "v4Color0", 4, offsetof(stTextVertex, r));
}

void CDrawText_GL::m_fnSetDrawConstants(const stDrawConstants* pConstants) {
    m_fnSetWorld(pConstants);
    m_fnSetColor(pConstants);
}

void CDrawText_GL::m_fnSetWorld(const stDrawConstants* pConstants) {
    if (m_pProgramText) m_pProgramText->m_fnSetUniformMatrix4fv(m_iLocWorld, pConstants->m_pWorld, false);
}

void CDrawText_GL::m_fnSetColor(const stDrawConstants* pConstants) {
    if (m_pProgramText) m_pProgramText->m_fnSetUniform4fv(m_iLocFontColor, pConstants->m_pColor);
}

void CDrawText_GL::m_fnRender() {
    const GLProgram& program = g_bTextGlow ? *m_pProgramTextGlow : *m_pProgramText;
    f32 mView[16];
    g_fnMakeIdentity(mView);
    mView[14] = -1.0f;
    program.m_fnUse();
    program.m_fnSetUniformMatrix4fv(m_iLocProj, m_mProj, false);
    program.m_fnSetUniformMatrix4fv("mView", mView, false);
    program.m_fnSetUniform1i("tex", 0);
    Walk();
    program.m_fnStopUsing();
}

void CDrawText_GL::m_fnRelease() {
    m_pProgramText.reset();
    m_pProgramTextGlow.reset();
}

CDrawText_Base* CreateDrawText_GL() { return new CDrawText_GL; }
