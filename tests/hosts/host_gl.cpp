#include "tests/hosts/host_gl.h"
#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

// Position and colour of six background vertices (two triangles) and of the triangle on top.
constexpr f32 g_fVertices[9][5] = {
    {-1, -1, 0.05f, 0.10f, 0.30f}, {1, -1, 0.05f, 0.30f, 0.45f},     {1, 1, 0.70f, 0.80f, 0.95f},
    {-1, -1, 0.05f, 0.10f, 0.30f}, {1, 1, 0.70f, 0.80f, 0.95f},      {-1, 1, 0.40f, 0.50f, 0.80f},
    {0, 0.6f, 1.0f, 0.2f, 0.2f},   {-0.6f, -0.5f, 0.2f, 1.0f, 0.2f}, {0.6f, -0.5f, 0.2f, 0.2f, 1.0f}};

constexpr const char* g_szVertexShader =
    "#version 140\n"
    "in vec2 position; in vec3 colour; out vec3 shade;\n"
    "void main() { shade = colour; gl_Position = vec4(position, 0.0, 1.0); }\n";
constexpr const char* g_szFragmentShader = "#version 140\n"
                                           "in vec3 shade; out vec4 result;\n"
                                           "void main() { result = vec4(shade, 1.0); }\n";

enum class eStateKind { Enabled, Integer, Float };

struct stStateRow {
    const char* szName;
    GLenum eName;
    eStateKind eKind;
    u32 uValues;
    bool bCompatibilityOnly;
    i32 iSince; ///< version, major * 10 + minor
};

#define ENABLED(name, only, since)                                                                           \
    { #name, GL_##name, eStateKind::Enabled, 1, only, since }
#define INTEGER(name, count, only, since)                                                                    \
    { #name, GL_##name, eStateKind::Integer, count, only, since }
#define FLOAT(name, count, only, since)                                                                      \
    { #name, GL_##name, eStateKind::Float, count, only, since }

constexpr stStateRow g_stStates[] = {INTEGER(VIEWPORT, 4, false, 10),
                                     INTEGER(SCISSOR_BOX, 4, false, 10),
                                     INTEGER(TEXTURE_BINDING_2D, 1, false, 11),
                                     INTEGER(ACTIVE_TEXTURE, 1, false, 13),
                                     INTEGER(CURRENT_PROGRAM, 1, false, 20),
                                     INTEGER(PROGRAM_PIPELINE_BINDING, 1, false, 41),
                                     INTEGER(ARRAY_BUFFER_BINDING, 1, false, 15),
                                     INTEGER(ELEMENT_ARRAY_BUFFER_BINDING, 1, false, 15),
                                     INTEGER(PIXEL_PACK_BUFFER_BINDING, 1, false, 21),
                                     INTEGER(PIXEL_UNPACK_BUFFER_BINDING, 1, false, 21),
                                     INTEGER(UNIFORM_BUFFER_BINDING, 1, false, 31),
                                     INTEGER(VERTEX_ARRAY_BINDING, 1, false, 30),
                                     INTEGER(DRAW_FRAMEBUFFER_BINDING, 1, false, 30),
                                     INTEGER(READ_FRAMEBUFFER_BINDING, 1, false, 30),
                                     INTEGER(SAMPLER_BINDING, 1, false, 33),
                                     INTEGER(BLEND_SRC_RGB, 1, false, 14),
                                     INTEGER(BLEND_DST_RGB, 1, false, 14),
                                     INTEGER(BLEND_SRC_ALPHA, 1, false, 14),
                                     INTEGER(BLEND_DST_ALPHA, 1, false, 14),
                                     INTEGER(BLEND_EQUATION_RGB, 1, false, 20),
                                     INTEGER(BLEND_EQUATION_ALPHA, 1, false, 20),
                                     FLOAT(BLEND_COLOR, 4, false, 14),
                                     INTEGER(COLOR_WRITEMASK, 4, false, 10),
                                     FLOAT(COLOR_CLEAR_VALUE, 4, false, 10),
                                     INTEGER(DEPTH_FUNC, 1, false, 10),
                                     INTEGER(DEPTH_WRITEMASK, 1, false, 10),
                                     INTEGER(STENCIL_FUNC, 1, false, 10),
                                     INTEGER(STENCIL_WRITEMASK, 1, false, 10),
                                     INTEGER(CULL_FACE_MODE, 1, false, 10),
                                     INTEGER(FRONT_FACE, 1, false, 10),
                                     INTEGER(POLYGON_MODE, 2, false, 10),
                                     FLOAT(LINE_WIDTH, 1, false, 10),
                                     INTEGER(LOGIC_OP_MODE, 1, false, 10),
                                     INTEGER(DRAW_BUFFER, 1, false, 10),
                                     INTEGER(READ_BUFFER, 1, false, 10),
                                     INTEGER(CLIP_ORIGIN, 1, false, 45),
                                     INTEGER(CLIP_DEPTH_MODE, 1, false, 45),
                                     INTEGER(UNPACK_SWAP_BYTES, 1, false, 10),
                                     INTEGER(UNPACK_LSB_FIRST, 1, false, 10),
                                     INTEGER(UNPACK_ROW_LENGTH, 1, false, 10),
                                     INTEGER(UNPACK_SKIP_PIXELS, 1, false, 10),
                                     INTEGER(UNPACK_SKIP_ROWS, 1, false, 10),
                                     INTEGER(UNPACK_ALIGNMENT, 1, false, 10),
                                     INTEGER(PACK_ROW_LENGTH, 1, false, 10),
                                     INTEGER(PACK_ALIGNMENT, 1, false, 10),
                                     ENABLED(BLEND, false, 10),
                                     ENABLED(CULL_FACE, false, 10),
                                     ENABLED(DEPTH_TEST, false, 10),
                                     ENABLED(SCISSOR_TEST, false, 10),
                                     ENABLED(STENCIL_TEST, false, 10),
                                     ENABLED(DITHER, false, 10),
                                     ENABLED(COLOR_LOGIC_OP, false, 11),
                                     ENABLED(POLYGON_OFFSET_FILL, false, 11),
                                     ENABLED(MULTISAMPLE, false, 13),
                                     ENABLED(FRAMEBUFFER_SRGB, false, 30),
                                     ENABLED(CLIP_DISTANCE0, false, 30),
                                     ENABLED(RASTERIZER_DISCARD, false, 30),
                                     ENABLED(PRIMITIVE_RESTART, false, 31),
                                     ENABLED(ALPHA_TEST, true, 10),
                                     ENABLED(LIGHTING, true, 10),
                                     ENABLED(FOG, true, 10),
                                     ENABLED(TEXTURE_2D, true, 10),
                                     ENABLED(POINT_SPRITE, true, 20),
                                     FLOAT(CURRENT_COLOR, 4, true, 10),
                                     INTEGER(MATRIX_MODE, 1, true, 10),
                                     INTEGER(ATTRIB_STACK_DEPTH, 1, true, 10),
                                     INTEGER(CLIENT_ATTRIB_STACK_DEPTH, 1, true, 11)};

std::string StateValue(stHostGl& stGl, const stStateRow& stRow) {
    GLint iValues[4] = {};
    GLfloat fValues[4] = {};
    if (stRow.eKind == eStateKind::Enabled) return stGl.IsEnabled(stRow.eName) ? "1" : "0";
    if (stRow.eKind == eStateKind::Integer) stGl.GetIntegerv(stRow.eName, iValues);
    if (stRow.eKind == eStateKind::Float) stGl.GetFloatv(stRow.eName, fValues);
    std::string strText;
    for (u32 i = 0; i < stRow.uValues; ++i) {
        char szPiece[32] = "";
        if (stRow.eKind == eStateKind::Integer) std::snprintf(szPiece, sizeof szPiece, "%d", int(iValues[i]));
        if (stRow.eKind == eStateKind::Float)
            std::snprintf(szPiece, sizeof szPiece, "%.4f", double(fValues[i]));
        AppendPiece(strText, szPiece);
    }
    return strText;
}

template <typename Function> void Lookup(CWindowSystem& clSystem, Function& fnTarget, const char* szName) {
    void* pAddress = clSystem.m_fnGetProc(szName);
    std::memcpy(&fnTarget, &pAddress, sizeof pAddress);
}

} // namespace

bool LoadHostGl(CWindowSystem& clSystem, stHostGl& stGl) {
#define HOST_GL_LOAD(result, name, parameters) Lookup(clSystem, stGl.name, "gl" #name);
    HOST_GL_FUNCTIONS(HOST_GL_LOAD)
#undef HOST_GL_LOAD
    if (!stGl.GetString || !stGl.GetIntegerv || !stGl.Clear) return false;
    const GLubyte* pVersion = stGl.GetString(GL_VERSION);
    if (!pVersion) return false;
    std::sscanf(reinterpret_cast<const char*>(pVersion), "%d.%d", &stGl.iMajor, &stGl.iMinor);
    GLint iMask = 0;
    if (stGl.iMajor * 10 + stGl.iMinor >= 32) stGl.GetIntegerv(GL_CONTEXT_PROFILE_MASK, &iMask);
    stGl.bCore = (iMask & GL_CONTEXT_CORE_PROFILE_BIT) != 0 ||
                 (stGl.iMajor * 10 + stGl.iMinor == 31); // 3.1 without the compatibility extension
    return true;
}

GLuint CHostScene::m_fnMakeShader(GLenum eKind, const char* szSource) {
    const GLuint uShader = m_stGl.CreateShader(eKind);
    m_stGl.ShaderSource(uShader, 1, &szSource, nullptr);
    m_stGl.CompileShader(uShader);
    GLint iCompiled = 0;
    m_stGl.GetShaderiv(uShader, GL_COMPILE_STATUS, &iCompiled);
    if (!iCompiled) std::fprintf(stderr, "host: a shader does not compile\n");
    return uShader;
}

bool CHostScene::m_fnMakeObjects() {
    m_uProgram = m_stGl.CreateProgram();
    m_stGl.AttachShader(m_uProgram, m_fnMakeShader(GL_VERTEX_SHADER, g_szVertexShader));
    m_stGl.AttachShader(m_uProgram, m_fnMakeShader(GL_FRAGMENT_SHADER, g_szFragmentShader));
    m_stGl.BindAttribLocation(m_uProgram, 0, "position");
    m_stGl.BindAttribLocation(m_uProgram, 1, "colour");
    m_stGl.LinkProgram(m_uProgram);
    m_stGl.GenVertexArrays(1, &m_uVertexArray);
    m_stGl.BindVertexArray(m_uVertexArray);
    m_stGl.GenBuffers(1, &m_uBuffer);
    m_stGl.BindBuffer(GL_ARRAY_BUFFER, m_uBuffer);
    m_stGl.BufferData(GL_ARRAY_BUFFER, sizeof g_fVertices, g_fVertices, GL_STATIC_DRAW);
    const GLsizei iStride = sizeof g_fVertices[0];
    m_stGl.VertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, iStride, nullptr);
    m_stGl.VertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, iStride,
                               reinterpret_cast<const void*>(2 * sizeof(f32)));
    m_stGl.EnableVertexAttribArray(0);
    m_stGl.EnableVertexAttribArray(1);
    m_stGl.BindBuffer(GL_ARRAY_BUFFER, 0);
    return m_uProgram != 0;
}

void CHostScene::m_fnDraw(u32 uWidth, u32 uHeight) {
    m_stGl.Viewport(0, 0, GLsizei(uWidth), GLsizei(uHeight));
    m_stGl.ClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    m_stGl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (m_stGl.bCore) {
        if (!m_uProgram && !m_fnMakeObjects()) return;
        m_stGl.UseProgram(m_uProgram);
        m_stGl.BindVertexArray(m_uVertexArray);
        m_stGl.DrawArrays(GL_TRIANGLES, 0, GLsizei(std::size(g_fVertices)));
        return;
    }
    m_stGl.Begin(GL_TRIANGLES);
    for (const auto& fVertex : g_fVertices) {
        m_stGl.Color3f(fVertex[2], fVertex[3], fVertex[4]);
        m_stGl.Vertex2f(fVertex[0], fVertex[1]);
    }
    m_stGl.End();
}

void CHostObjects::m_fnMake(stHostGl& stGl, u32 uOfEach) {
    if (!stGl.GenBuffers || !stGl.GenTextures || !stGl.CreateProgram) return;
    for (u32 i = 0; i < uOfEach; ++i) {
        m_uBuffers.push_back(0);
        stGl.GenBuffers(1, &m_uBuffers.back());
        stGl.BindBuffer(GL_ARRAY_BUFFER, m_uBuffers.back()); // the first binding makes it an object
        stGl.BufferData(GL_ARRAY_BUFFER, sizeof g_fVertices, g_fVertices, GL_STATIC_DRAW);
        m_uTextures.push_back(0);
        stGl.GenTextures(1, &m_uTextures.back());
        stGl.BindTexture(GL_TEXTURE_2D, m_uTextures.back());
        m_uPrograms.push_back(stGl.CreateProgram());
    }
    stGl.BindBuffer(GL_ARRAY_BUFFER, 0);
    stGl.BindTexture(GL_TEXTURE_2D, 0);
}

u32 CHostObjects::m_fnCountLeft(stHostGl& stGl) const {
    u32 uLeft = 0;
    for (const GLuint uName : m_uBuffers) uLeft += stGl.IsBuffer(uName) != GL_FALSE;
    for (const GLuint uName : m_uTextures) uLeft += stGl.IsTexture(uName) != GL_FALSE;
    for (const GLuint uName : m_uPrograms) uLeft += stGl.IsProgram(uName) != GL_FALSE;
    return uLeft;
}

u32 CHostObjects::m_fnCountMade() const {
    return u32(m_uBuffers.size() + m_uTextures.size() + m_uPrograms.size());
}

void SetOddStates(stHostGl& stGl) {
    stGl.Viewport(3, 5, 77, 55);
    stGl.Scissor(11, 13, 17, 19);
    stGl.Enable(GL_SCISSOR_TEST);
    stGl.Enable(GL_DEPTH_TEST);
    stGl.DepthFunc(GL_GEQUAL);
    stGl.Enable(GL_CULL_FACE);
    stGl.CullFace(GL_FRONT);
    stGl.BlendFunc(GL_DST_COLOR, GL_ONE);
    stGl.PolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    stGl.PixelStorei(GL_UNPACK_ALIGNMENT, 8);
    stGl.PixelStorei(GL_UNPACK_ROW_LENGTH, 33);
    stGl.PixelStorei(GL_PACK_ALIGNMENT, 2);
    stGl.ColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_TRUE);
    if (stGl.ActiveTexture) stGl.ActiveTexture(GL_TEXTURE0 + 3);
    if (stGl.BlendEquation) stGl.BlendEquation(GL_FUNC_REVERSE_SUBTRACT);
    if (stGl.BlendColor) stGl.BlendColor(0.1f, 0.2f, 0.3f, 0.4f);
    if (stGl.iMajor * 10 + stGl.iMinor >= 45 && stGl.ClipControl)
        stGl.ClipControl(GL_UPPER_LEFT, GL_ZERO_TO_ONE);
    if (stGl.iMajor >= 3) stGl.Enable(GL_FRAMEBUFFER_SRGB);
    if (!stGl.bCore) stGl.Color4f(0.9f, 0.8f, 0.7f, 0.6f);
}

void SetOddReading(stHostGl& stGl) {
    stGl.ReadBuffer(GL_FRONT);
    stGl.PixelStorei(GL_PACK_ALIGNMENT, 8);
    stGl.PixelStorei(GL_PACK_ROW_LENGTH, 701);
    stGl.PixelStorei(GL_PACK_SKIP_ROWS, 3);
    stGl.PixelStorei(GL_PACK_SKIP_PIXELS, 5);
    if (!stGl.GenBuffers) return;
    if (!stGl.uPackBuffer) {
        stGl.GenBuffers(1, &stGl.uPackBuffer);
        stGl.BindBuffer(GL_PIXEL_PACK_BUFFER, stGl.uPackBuffer);
        stGl.BufferData(GL_PIXEL_PACK_BUFFER, 64, nullptr, GL_STREAM_READ);
    }
    stGl.BindBuffer(GL_PIXEL_PACK_BUFFER, stGl.uPackBuffer);
}

void ClearOddStates(stHostGl& stGl) {
    stGl.Disable(GL_SCISSOR_TEST);
    stGl.Disable(GL_DEPTH_TEST);
    stGl.Disable(GL_CULL_FACE);
    stGl.PolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    stGl.ColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    stGl.PixelStorei(GL_PACK_ALIGNMENT, 4);
    if (stGl.ActiveTexture) stGl.ActiveTexture(GL_TEXTURE0);
    if (stGl.iMajor * 10 + stGl.iMinor >= 45 && stGl.ClipControl)
        stGl.ClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
    if (stGl.iMajor >= 3) stGl.Disable(GL_FRAMEBUFFER_SRGB);
}

void SetDrawBuffer(stHostGl& stGl, const std::string& strName) {
    stGl.DrawBuffer(strName == "none" ? GL_NONE : strName == "front" ? GL_FRONT : GL_BACK);
}

std::vector<std::pair<std::string, std::string>> ReadStates(stHostGl& stGl) {
    std::vector<std::pair<std::string, std::string>> listStates;
    for (const stStateRow& stRow : g_stStates) {
        if (stRow.bCompatibilityOnly && stGl.bCore) continue;
        if (stRow.iSince > stGl.iMajor * 10 + stGl.iMinor) continue;
        listStates.emplace_back(stRow.szName, StateValue(stGl, stRow));
    }
    return listStates;
}

stPicture ReadBufferPicture(stHostGl& stGl, GLenum eBuffer, u32 uWidth, u32 uHeight) {
    GLint iReadBuffer = GL_BACK, iAlignment = 4, iRowLength = 0;
    stGl.GetIntegerv(GL_READ_BUFFER, &iReadBuffer);
    stGl.GetIntegerv(GL_PACK_ALIGNMENT, &iAlignment);
    stGl.GetIntegerv(GL_PACK_ROW_LENGTH, &iRowLength);
    stGl.ReadBuffer(eBuffer);
    stGl.PixelStorei(GL_PACK_ALIGNMENT, 1);
    stGl.PixelStorei(GL_PACK_ROW_LENGTH, 0);
    std::vector<u8> u8Rows(std::size_t(uWidth) * uHeight * 3);
    stGl.ReadPixels(0, 0, GLsizei(uWidth), GLsizei(uHeight), GL_RGB, GL_UNSIGNED_BYTE, u8Rows.data());
    stGl.ReadBuffer(GLenum(iReadBuffer));
    stGl.PixelStorei(GL_PACK_ALIGNMENT, iAlignment);
    stGl.PixelStorei(GL_PACK_ROW_LENGTH, iRowLength);

    stPicture stRead{uWidth, uHeight, std::vector<u8>(u8Rows.size())};
    const std::size_t uRow = std::size_t(uWidth) * 3;
    for (u32 y = 0; y < uHeight; ++y) // GL rows run from the bottom
        std::memcpy(&stRead.u8Rgb[y * uRow], &u8Rows[(uHeight - 1 - y) * uRow], uRow);
    return stRead;
}
