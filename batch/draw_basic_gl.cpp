#include "batch/draw_basic_gl.h"

#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/data_shader.h"
#include "draw/first_draws.h"
#include "draw/matrix.h"
#include "draw/shape_meshes.h"
#include "draw/texture_gl.h"
#include "platform/gl_api.h"

#include <string>

static std::unique_ptr<GLProgram> BuildProgram(const char* szVertexFile, const char* szFragmentFile) {
    std::vector<GLShader> shaders;
    shaders.push_back(g_fnDataShader(szVertexFile, GL_VERTEX_SHADER));
    shaders.push_back(g_fnDataShader(szFragmentFile, GL_FRAGMENT_SHADER));
    return std::make_unique<GLProgram>(shaders);
}

static std::unique_ptr<GLProgram> BuildBlurProgram(u32 uDiameter) {
    const ShaderDefines defines = {{"_CIRCLE_BLUR_DIAMETER_", std::to_string(uDiameter)}};
    std::vector<GLShader> shaders;
    shaders.push_back(g_fnDataShader("DrawBasic_GL_CB.vs", GL_VERTEX_SHADER));
    shaders.push_back(g_fnDataShader("DrawBasic_GL_CB.fs", GL_FRAGMENT_SHADER, &defines));
    return std::make_unique<GLProgram>(shaders);
}

CDrawBasic_GL::~CDrawBasic_GL() { CDrawBasic_GL::m_fnRelease(); }

bool CDrawBasic_GL::m_fnInitialize() {
    m_pProgramColor = BuildProgram("DrawBasic_GL_C.vs", "DrawBasic_GL_C.fs");
    m_pProgramTexture = BuildProgram("DrawBasic_GL_Tex.vs", "DrawBasic_GL_Tex.fs");
    BuildBlurPrograms();
    m_fnOnResize();
    return true;
}

void CDrawBasic_GL::BuildBlurPrograms() {
    m_uBlurProgramCount = 0;
    // KEEP(profiles): a diameter that is noted later, or a key that no diameter stands for, waits for another
    // batcher.
    for (const auto& [uDiameter, uPanels] : g_mapBlurDiameters) {
        if (uDiameter > g_uMaxBlurDiameter) break; // has no key, so nothing could be drawn with it
        m_uBlurDiameters[m_uBlurProgramCount] = uDiameter;
        m_pProgramBlur[m_uBlurProgramCount] = BuildBlurProgram(uDiameter);
        ++m_uBlurProgramCount;
    }
}

void CDrawBasic_GL::m_fnOnResize() {
    g_fnMakeOrtho(m_mProj, 0.0f, static_cast<f32>(g_uCanvasW), 0.0f, static_cast<f32>(g_uCanvasH), 0.0f,
                  1.0f);
}

GLProgram* CDrawBasic_GL::PassProgram() const {
    if (m_uPass == g_uPassColor) return m_pProgramColor.get();
    if (m_uPass == g_uPassTexture) return m_pProgramTexture.get();
    if (m_uPass == g_uPassBlur) return m_pProgramBlur[m_uBlurProgramIndex].get();
    return nullptr;
}

static void BindAttribute(const GLProgram& program, const char* szName, std::uintptr_t uOffset) {
    const GLuint uIndex = static_cast<GLuint>(program.m_fnAttrib(szName));
    glEnableVertexAttribArray(uIndex);
    glVertexAttribPointer(uIndex, 2, GL_FLOAT, GL_FALSE, sizeof(stShapeVertex),
                          reinterpret_cast<const void*>(uOffset));
    // Of version 3.3, while contexts may be of 3.2.
    if (glVertexAttribDivisor) glVertexAttribDivisor(uIndex, 0);
}

void CDrawBasic_GL::m_fnBindVertexLayout(void*) {
    const GLProgram* pProgram = PassProgram();
    if (!pProgram) return;
    BindAttribute(*pProgram, "v2Pos", offsetof(stShapeVertex, m_afPos));
    if (m_uPass != g_uPassColor) BindAttribute(*pProgram, "v2Tex0", offsetof(stShapeVertex, m_afTex));
}

void CDrawBasic_GL::m_fnSetDrawConstants(const stDrawConstants* pConstants) {
    m_fnSetWorld(pConstants);
    m_fnSetColor(pConstants);
}

void CDrawBasic_GL::m_fnSetWorld(const stDrawConstants* pConstants) {
    if (const GLProgram* pProgram = PassProgram())
        pProgram->m_fnSetUniformMatrix4fv("mWorld", pConstants->m_pWorld, false);
}

void CDrawBasic_GL::m_fnSetColor(const stDrawConstants* pConstants) {
    // KEEP(files): the flat program shares its uniform's name with the text program; the shader file relies
    // on it.
    const char* szName = m_uPass == g_uPassColor ? "vFontColor" : "vPanelColor";
    if (const GLProgram* pProgram = PassProgram()) pProgram->m_fnSetUniform4fv(szName, pConstants->m_pColor);
}

void CDrawBasic_GL::StartProgram(const GLProgram& program) const {
    f32 mView[16];
    g_fnMakeIdentity(mView);
    mView[14] = -1.0f;
    program.m_fnUse();
    program.m_fnSetUniformMatrix4fv("mProj", m_mProj, false);
    program.m_fnSetUniformMatrix4fv("mView", mView, false);
}

void CDrawBasic_GL::m_fnRender() {
    if (g_bCaptureBackdrop && m_uBlurProgramCount != 0) RenderBlur();
    if (g_fnMayDraw(m_pProgramColor.get())) RenderColor();
    if (g_fnMayDraw(m_pProgramTexture.get())) RenderTexture();
}

void CDrawBasic_GL::RenderBlur() {
    for (u32 i = 0; i < m_uBlurProgramCount; ++i) {
        const GLProgram& program = *m_pProgramBlur[i];
        if (!g_fnMayDraw(&program)) continue;
        StartProgram(program);
        program.m_fnSetUniform1i("tex", 0);
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
        g_fnSetDrawSampling(GL_LINEAR);
        m_uPass = g_uPassBlur;
        m_uBlurProgramIndex = i;
        m_fnDrawList(g_keyBlurByDiameter[m_uBlurDiameters[i]]);
        program.m_fnStopUsing();
    }
}

void CDrawBasic_GL::RenderColor() {
    StartProgram(*m_pProgramColor);
    m_uPass = g_uPassColor;
    m_fnDrawPass(g_uPassColor);
    m_pProgramColor->m_fnStopUsing();
}

void CDrawBasic_GL::RenderTexture() {
    StartProgram(*m_pProgramTexture);
    m_pProgramTexture->m_fnSetUniform1i("tex", 0);
    m_uPass = g_uPassTexture;
    m_fnDrawPass(g_uPassTexture);
    m_pProgramTexture->m_fnStopUsing();
}

void CDrawBasic_GL::m_fnRelease() {
    m_pProgramColor.reset();
    m_pProgramTexture.reset();
    for (auto& pProgram : m_pProgramBlur) pProgram.reset();
}

CDrawBasic_Base* CreateDrawBasic_GL() { return new CDrawBasic_GL; }
