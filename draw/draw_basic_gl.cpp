#include "draw/draw_basic_gl.h"

#include "draw/data_path.h"
#include "draw/shape_meshes.h"
#include "frame/canvas.h"
#include "frame/frame_driver.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <iterator>
#include <cstdio>
#include <new>

namespace {

/// Shader of a file in the data folder; a path that does not fit is a file that cannot be opened.
GLShader LoadShader(const char* szName, u32 uStage, const ShaderDefines* pDefines = nullptr) {
    char szPath[g_uPathChars];
    g_fnResolveDataPath(szPath, szName);
    return pDefines ? GLShader(szPath, uStage, *pDefines) : GLShader(szPath, uStage);
}

std::unique_ptr<GLProgram> LoadProgram(const char* szVertex, const char* szFragment,
                                       const ShaderDefines* pDefines = nullptr) {
    ShaderList list;
    list.push_back(LoadShader(szVertex, GL_VERTEX_SHADER));
    list.push_back(LoadShader(szFragment, GL_FRAGMENT_SHADER, pDefines));
    return std::make_unique<GLProgram>(list);
}

std::unique_ptr<GLProgram> LoadBlurProgram(u32 uDiameter) {
    char szDiameter[16];
    std::snprintf(szDiameter, sizeof szDiameter, "%d", static_cast<int>(uDiameter));
    const ShaderDefines mapDefines{{"_CIRCLE_BLUR_DIAMETER_", szDiameter}};
    return LoadProgram("DrawBasic_GL_CB.vs", "DrawBasic_GL_CB.fs", &mapDefines);
}

constexpr f32 g_afBackdropBorder[4] = {0, 0, 0, 1};
constexpr f32 g_mView[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 1};

/// Sampling state of the copy of the frame, integers in the order they are set.
constexpr GLint g_aiBackdrop[][2] = {{GL_TEXTURE_MIN_LOD, -1000},
                                     {GL_TEXTURE_MAX_LOD, 1000},
                                     {GL_TEXTURE_MAX_LEVEL, 1000},
                                     {GL_TEXTURE_LOD_BIAS, 0},
                                     {GL_TEXTURE_BASE_LEVEL, 0},
                                     {GL_TEXTURE_COMPARE_FUNC, GL_ALWAYS},
                                     {GL_TEXTURE_COMPARE_MODE, GL_NONE},
                                     {GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER},
                                     {GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER},
                                     {GL_TEXTURE_WRAP_R, GL_CLAMP_TO_BORDER}};

void BindBackdrop() {
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
    for (const auto& aiRow : g_aiBackdrop) glTexParameteri(GL_TEXTURE_2D, aiRow[0], aiRow[1]);
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, g_afBackdropBorder);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
}

void EnableAttribute(const GLProgram& program, const char* szName, std::size_t uOffset) {
    const GLuint uIndex = static_cast<GLuint>(program.m_fnAttrib(szName));
    glEnableVertexAttribArray(uIndex);
    glVertexAttribPointer(uIndex, 2, GL_FLOAT, GL_FALSE, sizeof(stShapeVertex),
                          reinterpret_cast<const void*>(uOffset));
    if (glVertexAttribDivisor) glVertexAttribDivisor(uIndex, 0); // absent below 3.3
}

} // namespace

void g_fnMakeOrtho(f32 (&m)[16], f32 fLeft, f32 fRight, f32 fBottom, f32 fTop, f32 p, f32 q) noexcept {
    std::fill(std::begin(m), std::end(m), 0.0f);
    m[0] = 2.0f / (fRight - fLeft);
    m[5] = 2.0f / (fTop - fBottom);
    m[10] = 2.0f / (p - q);
    m[12] = -1.0f;
    m[13] = -1.0f;
    m[14] = (p + q) / (p - q);
    m[15] = 1.0f;
}

CDrawBasic_GL::~CDrawBasic_GL() { CDrawBasic_GL::m_fnRelease(); }

bool CDrawBasic_GL::m_fnInitialize() {
    m_pProgramColor = LoadProgram("DrawBasic_GL_C.vs", "DrawBasic_GL_C.fs");
    m_pProgramTexture = LoadProgram("DrawBasic_GL_Tex.vs", "DrawBasic_GL_Tex.fs");
    m_uBlurProgramCount = 0;
    for (const auto& [uDiameter, uPanels] : g_mapBlurDiameters) {
        if (uDiameter >= g_uBlurKeyCount) continue;
        m_uBlurDiameters[m_uBlurProgramCount] = uDiameter;
        m_pProgramBlur[m_uBlurProgramCount] = LoadBlurProgram(uDiameter);
        ++m_uBlurProgramCount;
    }
    m_fnOnResize();
    return true;
}

void CDrawBasic_GL::m_fnOnResize() {
    g_fnMakeOrtho(m_mProj, 0, static_cast<f32>(g_uCanvasW), 0, static_cast<f32>(g_uCanvasH), 0, 1);
}

const GLProgram* CDrawBasic_GL::m_fnProgram() const {
    if (m_uPass == g_uPassColor) return m_pProgramColor.get();
    if (m_uPass == g_uPassTexture) return m_pProgramTexture.get();
    return m_uPass == g_uPassBlur ? m_pProgramBlur[m_uBlurProgramIndex].get() : nullptr;
}

void CDrawBasic_GL::m_fnBindVertexLayout(void*) {
    const GLProgram* pProgram = m_fnProgram();
    if (!pProgram) return;
    EnableAttribute(*pProgram, "v2Pos", offsetof(stShapeVertex, v2Pos));
    if (m_uPass != g_uPassColor) EnableAttribute(*pProgram, "v2Tex0", offsetof(stShapeVertex, v2Tex0));
}

void CDrawBasic_GL::m_fnSetDrawConstants(const stDrawConstants* pConstants) {
    m_fnSetWorld(pConstants);
    m_fnSetColor(pConstants);
}

void CDrawBasic_GL::m_fnSetWorld(const stDrawConstants* pConstants) {
    if (const GLProgram* pProgram = m_fnProgram())
        pProgram->m_fnSetUniformMatrix4fv("mWorld", pConstants->pWorld, false);
}

// The flat programs share the colour's name with the text programs.
void CDrawBasic_GL::m_fnSetColor(const stDrawConstants* pConstants) {
    if (const GLProgram* pProgram = m_fnProgram())
        pProgram->m_fnSetUniform4fv(m_uPass == g_uPassColor ? "vFontColor" : "vPanelColor",
                                    pConstants->pColor);
}

void CDrawBasic_GL::m_fnBegin(const GLProgram& program) const {
    program.m_fnUse();
    program.m_fnSetUniformMatrix4fv("mProj", m_mProj, false);
    program.m_fnSetUniformMatrix4fv("mView", g_mView, false);
}

void CDrawBasic_GL::m_fnRenderBlur() {
    for (u32 i = 0; i < m_uBlurProgramCount; ++i) {
        const GLProgram& program = *m_pProgramBlur[i];
        m_fnBegin(program);
        glUniform1i(program.m_fnUniform("tex"), 0);
        BindBackdrop();
        m_uPass = g_uPassBlur;
        m_uBlurProgramIndex = i;
        m_fnDrawList(g_keyBlurByDiameter[m_uBlurDiameters[i]]);
        program.m_fnStopUsing();
    }
}

void CDrawBasic_GL::m_fnRender() {
    if (g_bCaptureBackdrop && m_uBlurProgramCount) m_fnRenderBlur();
    m_fnBegin(*m_pProgramColor);
    m_uPass = g_uPassColor;
    m_fnDrawPass(g_uPassColor);
    m_pProgramColor->m_fnStopUsing();
    m_fnBegin(*m_pProgramTexture);
    glUniform1i(m_pProgramTexture->m_fnUniform("tex"), 0);
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
