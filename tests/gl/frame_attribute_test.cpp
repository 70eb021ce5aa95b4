// A program that sets its vertex arrays up once and then only draws, as most of the older ones do. What it
// set must hold for its whole life, and so must its picture.
#include "frame/context_state.h"
#include "platform/gl_api.h"
#include "tests/gl/frame_fixture.h"

#include <array>
#include <cstddef>

namespace {

struct stVertex {
    u8 au8Skip[8]; ///< so that no offset is 0
    f32 afPos[3];
    u8 au8Color[4];
};

constexpr stVertex g_astVertices[] = {
    {{}, {-1, -1, 0}, {255, 0, 0, 255}},
    {{}, {3, -1, 0}, {255, 0, 0, 255}},
    {{}, {-1, 3, 0}, {255, 0, 0, 255}},
};

struct stAttribute {
    GLint iSize;
    GLenum eType;
    GLboolean bNormalized;
    GLuint uDivisor;
    std::size_t uOffset;
};
constexpr stAttribute g_astAttributes[] = {
    {3, GL_FLOAT, GL_FALSE, 0, offsetof(stVertex, afPos)},
    {4, GL_UNSIGNED_BYTE, GL_TRUE, 1, offsetof(stVertex, au8Color)}, // one colour an instance
};

GLuint Compile(GLenum eType, const char* szText) {
    const GLuint uShader = glCreateShader(eType);
    glShaderSource(uShader, 1, &szText, nullptr);
    glCompileShader(uShader);
    return uShader;
}

GLuint MakeProgram() {
    const GLuint uProgram = glCreateProgram();
    glAttachShader(uProgram, Compile(GL_VERTEX_SHADER,
                                     "#version 150\nin vec3 place; in vec4 tint; out vec4 colour;\n"
                                     "void main() { colour = tint; gl_Position = vec4(place, 1.0); }\n"));
    glAttachShader(uProgram, Compile(GL_FRAGMENT_SHADER, "#version 150\nin vec4 colour; out vec4 fragment;\n"
                                                         "void main() { fragment = colour; }\n"));
    glBindAttribLocation(uProgram, 0, "place");
    glBindAttribLocation(uProgram, 1, "tint");
    glLinkProgram(uProgram);
    return uProgram;
}

/// All that the program ever sets. Without an array of its own it uses the one that has no name.
void SetUpOnce(bool bOwnArray) {
    GLuint uArray = 0, uBuffer = 0;
    if (bOwnArray) {
        glGenVertexArrays(1, &uArray);
        glBindVertexArray(uArray);
    }
    glGenBuffers(1, &uBuffer);
    glBindBuffer(GL_ARRAY_BUFFER, uBuffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof g_astVertices, g_astVertices, GL_STATIC_DRAW);
    for (GLuint u = 0; u < 2; ++u) {
        const stAttribute& st = g_astAttributes[u];
        glEnableVertexAttribArray(u);
        glVertexAttribPointer(u, st.iSize, st.eType, st.bNormalized, sizeof(stVertex),
                              reinterpret_cast<const void*>(st.uOffset));
        glVertexAttribDivisor(u, st.uDivisor);
    }
    glUseProgram(MakeProgram());
}

void ExpectAttribute(GLuint uIndex, const stAttribute& st) {
    const std::array<std::pair<GLenum, GLint>, 6> aExpected = {{
        {GL_VERTEX_ATTRIB_ARRAY_ENABLED, 1},
        {GL_VERTEX_ATTRIB_ARRAY_SIZE, st.iSize},
        {GL_VERTEX_ATTRIB_ARRAY_TYPE, static_cast<GLint>(st.eType)},
        {GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, st.bNormalized},
        {GL_VERTEX_ATTRIB_ARRAY_STRIDE, sizeof(stVertex)},
        {GL_VERTEX_ATTRIB_ARRAY_DIVISOR, static_cast<GLint>(st.uDivisor)},
    }};
    for (auto [eName, iExpected] : aExpected) {
        GLint iValue = -1;
        glGetVertexAttribiv(uIndex, eName, &iValue);
        EXPECT_EQ(iValue, iExpected) << "attribute " << uIndex << ", " << eName;
    }
    void* pOffset = nullptr;
    glGetVertexAttribPointerv(uIndex, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pOffset);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pOffset), st.uOffset) << "attribute " << uIndex;
}

class FrameAttributes : public FrameFixture {
  protected:
    /// Sixty frames of one draw each, with nothing set in between.
    void DrawSixtyFrames(bool bCore, bool bOwnArray) {
        ASSERT_TRUE(Begin(bCore, u"Bench", 160, 120));
        ASSERT_TRUE(platform::InitGlew());
        SetUpOnce(bOwnArray);
        for (int i = 0; i < 60 && !HasFailure(); ++i) {
            glClear(GL_COLOR_BUFFER_BIT);
            glDrawArraysInstanced(GL_TRIANGLES, 0, 3, 1);
            const std::vector<u8> vecPixels = m_context.ReadPixels();
            const std::array<u8, 3> a = {vecPixels[0], vecPixels[1], vecPixels[2]};
            ASSERT_EQ(a, (std::array<u8, 3>{255, 0, 0})) << "frame " << i;
            Swap();
            for (GLuint u = 0; u < 2; ++u) ExpectAttribute(u, g_astAttributes[u]);
        }
        EXPECT_TRUE(g_bInitGL) << "the overlay stands";
    }
};

TEST_F(FrameAttributes, HoldInACoreProgramThatSetsItsArrayUpOnce) { DrawSixtyFrames(true, true); }

TEST_F(FrameAttributes, HoldInACompatibilityProgramThatSetsItsArrayUpOnce) { DrawSixtyFrames(false, true); }

TEST_F(FrameAttributes, HoldInACompatibilityProgramWithoutAnArrayOfItsOwn) { DrawSixtyFrames(false, false); }

} // namespace
