// Shaders, programs and meshes: lives, messages and the contract of names with the shader files.
#include "draw/gl_program.h"
#include "draw/mesh_gl.h"
#include "platform/gl_api.h"
#include "tests/gl/draw_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace {

using DrawShader = DrawFixture;

const char* const g_szVertex = "#version 150\nin vec2 p;\nvoid main() { gl_Position = vec4(p, 0, 1); }\n";
const char* const g_szFragment = "#version 150\nout vec4 c;\nvoid main() { c = vec4(1); }\n";
/// Compile, but disagree about what goes from one to the other.
const char* const g_szGiver =
    "#version 150\nout vec2 handed;\nvoid main() { handed = vec2(1); gl_Position = vec4(1); }\n";
const char* const g_szTaker = "#version 150\nin vec4 handed;\nout vec4 c;\nvoid main() { c = handed; }\n";

std::string MessageOf(const std::function<void()>& fn) {
    try {
        fn();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "(no failure)";
}

GLShader Vertex(const char* szSource = g_szVertex) {
    return GLShader(std::string(szSource), GL_VERTEX_SHADER, nullptr);
}
GLShader Fragment(const char* szSource = g_szFragment) {
    return GLShader(std::string(szSource), GL_FRAGMENT_SHADER, nullptr);
}

std::size_t PlaceOf(const std::vector<std::string>& calls, const std::string& strPrefix) {
    return static_cast<std::size_t>(
        std::ranges::find_if(calls, [&](const auto& s) { return s.starts_with(strPrefix); }) - calls.begin());
}

} // namespace

TEST_F(DrawShader, CopiesShareTheObjectUntilTheLastDies) {
    u32 uObject = 0;
    {
        GLShader first = Vertex();
        uObject = first.m_fnGetObject();
        {
            GLShader second = first;
            EXPECT_EQ(second.m_fnGetObject(), uObject);
            GLShader other = Vertex();
            const u32 uOther = other.m_fnGetObject();
            other = second;
            EXPECT_FALSE(glIsShader(uOther));
            GLShader& self = other;
            other = self;
        }
        EXPECT_TRUE(glIsShader(uObject));
        first = Vertex();
        EXPECT_FALSE(glIsShader(uObject));
        uObject = first.m_fnGetObject();
    }
    EXPECT_FALSE(glIsShader(uObject));
}

TEST_F(DrawShader, ACompileFailureCarriesTheCompilersWordsAndLeavesNoShader) {
    const u32 uNext = glCreateShader(GL_VERTEX_SHADER);
    glDeleteShader(uNext);
    const std::string strMessage = MessageOf([] { Fragment("#version 150\nvoid main() { nonsense; }\n"); });
    EXPECT_TRUE(strMessage.starts_with("Compile failure in shader:\n")) << strMessage;
    EXPECT_NE(strMessage.find("nonsense"), std::string::npos) << strMessage;
    for (u32 u = 1; u < uNext + 4; ++u) EXPECT_FALSE(glIsShader(u));
}

TEST_F(DrawShader, AnUnknownStageFails) {
    EXPECT_EQ(MessageOf([] { GLShader(std::string(g_szVertex), 0x1234, nullptr); }), "glCreateShader failed");
}

TEST_F(DrawShader, DefinesReachTheCompiler) {
    const std::string strSource = "#version 150\r\n\r\nout vec4 c;\r\nvoid main() { c = vec4(VALUE); }\r\n";
    EXPECT_TRUE(MessageOf([&] { GLShader(strSource, GL_FRAGMENT_SHADER, nullptr); }).starts_with("Compile"));
    const ShaderDefines defines = {{"VALUE", "1"}};
    EXPECT_EQ(MessageOf([&] { GLShader(strSource, GL_FRAGMENT_SHADER, &defines); }), "(no failure)");
}

TEST_F(DrawShader, AnEmptyListMakesNoProgram) {
    EXPECT_EQ(MessageOf([] { GLProgram(std::vector<GLShader>()); }),
              "No shaders were provided to create the program");
}

TEST_F(DrawShader, ALinkFailureDetachesTheShadersAndDeletesTheProgram) {
    const std::vector<GLShader> shaders = {Vertex(g_szGiver), Fragment(g_szTaker)};
    gl_recorder::Install();
    gl_recorder::Start();
    const std::string strMessage = MessageOf([&] { GLProgram program(shaders); });
    const auto calls = gl_recorder::Stop();
    EXPECT_TRUE(strMessage.starts_with("Program linking failure: ")) << strMessage;
    EXPECT_NE(strMessage.find("handed"), std::string::npos) << strMessage;
    EXPECT_EQ(std::ranges::count_if(calls, [](const auto& s) { return s.starts_with("glDetachShader("); }),
              2);
    EXPECT_LT(PlaceOf(calls, "glLinkProgram("), PlaceOf(calls, "glDetachShader("));
    EXPECT_LT(PlaceOf(calls, "glDetachShader("), PlaceOf(calls, "glDeleteProgram("));
    EXPECT_LT(PlaceOf(calls, "glDeleteProgram("), calls.size());
    for (const GLShader& shader : shaders) EXPECT_TRUE(glIsShader(shader.m_fnGetObject()));
    for (u32 u = 1; u < 32; ++u) EXPECT_FALSE(glIsProgram(u));
}

TEST_F(DrawShader, NullNamesAreRefusedAndUnknownOnesHaveNoLocation) {
    const GLProgram program({Vertex(), Fragment()});
    EXPECT_EQ(MessageOf([&] { program.m_fnAttrib(nullptr); }), "attribName was NULL");
    EXPECT_EQ(MessageOf([&] { program.m_fnUniform(nullptr); }), "uniformName was NULL");
    EXPECT_EQ(program.m_fnAttrib("nothing"), -1);
    EXPECT_EQ(program.m_fnUniform("nothing"), -1);
    EXPECT_GE(program.m_fnAttrib("p"), 0);
    const f32 afValues[4] = {};
    program.m_fnUse();
    program.m_fnSetUniform4fv("nothing", afValues);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    program.m_fnStopUsing();
    GLint iCurrent = -1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &iCurrent);
    EXPECT_EQ(iCurrent, 0);
}

TEST_F(DrawShader, EveryNameOfTheContractIsActive) {
    g_mapBlurDiameters = {{0, 1}, {1, 1}, {30, 1}, {100, 1}};
    const CDrawBasic_GL& batcher = Batcher();
    std::vector<const GLProgram*> apTextured = {batcher.m_pProgramTexture.get()};
    for (u32 i = 0; i < 4; ++i) apTextured.push_back(batcher.m_pProgramBlur[i].get());
    for (const GLProgram* pProgram : apTextured) {
        EXPECT_GE(pProgram->m_fnAttrib("v2Pos"), 0);
        EXPECT_GE(pProgram->m_fnAttrib("v2Tex0"), 0);
        for (const char* szName : {"mProj", "mView", "mWorld", "vPanelColor", "tex"})
            EXPECT_GE(pProgram->m_fnUniform(szName), 0) << szName;
    }
    EXPECT_GE(batcher.m_pProgramColor->m_fnAttrib("v2Pos"), 0);
    for (const char* szName : {"mProj", "mView", "mWorld", "vFontColor"})
        EXPECT_GE(batcher.m_pProgramColor->m_fnUniform(szName), 0) << szName;
}

TEST_F(DrawShader, AMissingFileIsNamed) {
    m_folder.Remove("DrawBasic_GL_Tex.fs");
    CDrawBasic_GL batcher;
    EXPECT_EQ(MessageOf([&] { batcher.m_fnInitialize(); }),
              "Failed to open file : " + m_folder.Path("DrawBasic_GL_Tex.fs"));
    EXPECT_NE(batcher.m_pProgramColor, nullptr);
    EXPECT_EQ(batcher.m_pProgramTexture, nullptr);
}

TEST_F(DrawShader, AnEmptyFileFailsTheBatcher) {
    for (const char* szName : {"DrawBasic_GL_C.vs", "DrawBasic_GL_C.fs"}) {
        const std::string strWhole = m_folder.Read(szName);
        m_folder.Write(szName, "");
        CDrawBasic_GL batcher;
        const std::string strMessage = MessageOf([&] { batcher.m_fnInitialize(); });
        EXPECT_TRUE(strMessage.starts_with("Compile failure in shader:\n") ||
                    strMessage.starts_with("Program linking failure: "))
            << strMessage;
        m_folder.Write(szName, strWhole);
    }
}

TEST_F(DrawShader, ATruncatedFileFailsTheBatcher) {
    g_mapBlurDiameters = {{30, 1}};
    const std::string strWhole = m_folder.Read("DrawBasic_GL_CB.fs");
    m_folder.Write("DrawBasic_GL_CB.fs", strWhole.substr(0, strWhole.size() / 2));
    CDrawBasic_GL batcher;
    EXPECT_TRUE(MessageOf([&] { batcher.m_fnInitialize(); }).starts_with("Compile failure in shader:\n"));
    EXPECT_NE(batcher.m_pProgramTexture, nullptr);
    EXPECT_EQ(batcher.m_uBlurProgramCount, 0u);
}

TEST_F(DrawShader, AFileThatDoesNotCompileFailsTheBatcher) {
    m_folder.Write("DrawBasic_GL_C.fs", "#version 150\nthis is no shader\n");
    CDrawBasic_GL batcher;
    EXPECT_TRUE(MessageOf([&] { batcher.m_fnInitialize(); }).starts_with("Compile failure in shader:\n"));
}

TEST_F(DrawShader, WindowsLineEndsInTheFilesDoNoHarm) {
    g_mapBlurDiameters = {{30, 1}};
    for (const char* szName : {"DrawBasic_GL_C.vs", "DrawBasic_GL_CB.vs", "DrawBasic_GL_CB.fs"}) {
        std::string strText;
        for (char c : m_folder.Read(szName)) strText += c == '\n' ? std::string("\r\n") : std::string(1, c);
        m_folder.Write(szName, strText);
    }
    CDrawBasic_GL batcher;
    EXPECT_EQ(MessageOf([&] { batcher.m_fnInitialize(); }), "(no failure)");
    EXPECT_EQ(batcher.m_uBlurProgramCount, 1u);
}

TEST_F(DrawShader, ADeadBatcherLeavesNoProgramAndNoShader) {
    g_mapBlurDiameters = {{0, 1}, {100, 2}};
    Batcher();
    m_pBatcher.reset();
    for (u32 u = 1; u < 64; ++u) EXPECT_FALSE(glIsProgram(u) || glIsShader(u)) << u;
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(DrawShader, ReleaseKeepsTheCountAndMayBeCalledTwice) {
    g_mapBlurDiameters = {{30, 1}};
    Batcher().m_fnRelease();
    EXPECT_EQ(m_pBatcher->m_pProgramColor, nullptr);
    EXPECT_EQ(m_pBatcher->m_pProgramBlur[0], nullptr);
    EXPECT_EQ(m_pBatcher->m_uBlurProgramCount, 1u);
    m_pBatcher->m_fnRelease();
}

TEST_F(DrawShader, ADiameterBeyondTheKeysGetsNoProgram) {
    g_mapBlurDiameters = {{100, 1}, {101, 1}, {4000000000u, 1}};
    Batcher();
    EXPECT_EQ(m_pBatcher->m_uBlurProgramCount, 1u);
    EXPECT_EQ(m_pBatcher->m_uBlurDiameters[0], 100u);
}

TEST_F(DrawShader, AllDiametersTogetherFit) {
    for (u32 uDiameter = 0; uDiameter <= g_uMaxBlurDiameter; ++uDiameter) g_mapBlurDiameters[uDiameter] = 1;
    Batcher();
    EXPECT_EQ(m_pBatcher->m_uBlurProgramCount, 101u);
    EXPECT_NE(m_pBatcher->m_pProgramBlur[100], nullptr);
}

namespace {
GLint BufferBytes(GLenum eTarget, u32 uBuffer) {
    GLint iBytes = -1;
    glBindBuffer(eTarget, uBuffer);
    glGetBufferParameteriv(eTarget, GL_BUFFER_SIZE, &iBytes);
    glBindBuffer(eTarget, 0);
    return iBytes;
}
} // namespace

TEST_F(DrawShader, AMeshWithoutVerticesMakesBothNamesAndFillsTheIndicesOnly) {
    CMesh_GL mesh;
    ASSERT_TRUE(mesh.m_fnCreate(16, 64, 12, 2));
    const u16 auIndices[6] = {0, 1, 2, 0, 2, 3};
    EXPECT_TRUE(mesh.m_fnUpload(nullptr, auIndices));
    EXPECT_NE(mesh.m_fnGetVB(), 0u);
    EXPECT_NE(mesh.m_fnGetIB(), 0u);
    EXPECT_EQ(BufferBytes(GL_ELEMENT_ARRAY_BUFFER, mesh.m_fnGetIB()), 12);
    EXPECT_EQ(BufferBytes(GL_ARRAY_BUFFER, mesh.m_fnGetVB()), 0);
    const u32 uVB = mesh.m_fnGetVB();
    mesh.m_fnRelease();
    EXPECT_FALSE(glIsBuffer(uVB));
    EXPECT_EQ(mesh.m_fnGetVB() + mesh.m_fnGetIB() + mesh.m_uIndexType, 0u);
}

TEST_F(DrawShader, AMeshDrawsByIndexPositionsAndByteOffset) {
    CMesh_GL mesh;
    ASSERT_TRUE(mesh.m_fnCreate(16, 64, 48, 4));
    const f32 afVertices[16] = {};
    const u32 auIndices[12] = {};
    ASSERT_TRUE(mesh.m_fnUpload(afVertices, auIndices));
    Batcher().m_pProgramColor->m_fnUse();
    mesh.m_fnBind();
    gl_recorder::Install();
    gl_recorder::Start();
    mesh.m_fnDraw(6, 6, 0);
    const auto calls = gl_recorder::Stop();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_TRUE(calls[0].starts_with("glDrawRangeElements(4, 6, 12, 6, 5125, ")) << calls[0];
}

TEST_F(DrawShader, AMeshDrawnBeforeAnyUploadDrawsFromNothing) {
    for (bool bCore : {true, false}) {
        m_pBatcher.reset();
        UseContext(bCore);
        CMesh_GL mesh;
        ASSERT_TRUE(mesh.m_fnCreate(16, 64, 12, 2));
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        Batcher().m_pProgramColor->m_fnUse();
        mesh.m_fnBind();
        GLint iBound = -1;
        glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &iBound);
        EXPECT_EQ(iBound, 0);
        Batcher().m_fnBindVertexLayout(nullptr);
        mesh.m_fnDraw(6, 0, 0);
        glFinish();
        EXPECT_EQ(Read().At(0, 199), (Pixel{0, 0, 0, 255}));
    }
}
