// The text batcher against OpenGL: programs, locations, and the exact calls of a frame.
#include "draw/canvas.h"
#include "platform/gl_api.h"
#include "tests/gl/text_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>
#include <stdexcept>

using gl_recorder::Call;

namespace {

using Calls = std::vector<std::string>;

class DrawTextGL : public TextFixture {
  protected:
    void SetUp() override {
        TextFixture::SetUp();
        gl_recorder::Install();
    }
    Calls FrameCalls() {
        CDrawText_GL& batcher = TextBatcher();
        gl_recorder::Start();
        batcher.m_fnRender();
        return gl_recorder::Stop();
    }
    static u32 CountOf(const Calls& calls, const std::string& strPrefix) {
        return static_cast<u32>(
            std::ranges::count_if(calls, [&](const auto& s) { return s.starts_with(strPrefix); }));
    }
    /// From the first call that begins so, on.
    static Calls From(const Calls& calls, const std::string& strPrefix) {
        return {std::ranges::find_if(calls, [&](const auto& s) { return s.starts_with(strPrefix); }),
                calls.end()};
    }
};

void Append(Calls& to, const Calls& from) { to.insert(to.end(), from.begin(), from.end()); }

std::string Uniform(const GLProgram& program, const char*) {
    return Call("glGetUniformLocation", program.m_fnGetObject(), "ptr");
}

std::string Matrix(i32 iLocation) { return Call("glUniformMatrix4fv", iLocation, 1, 0, "ptr"); }

/// Start of a frame, up to the walk.
Calls StartCalls(const CDrawText_GL& batcher, const GLProgram& program) {
    return {Call("glUseProgram", program.m_fnGetObject()),
            Matrix(batcher.m_iLocProj),
            Uniform(program, "mView"),
            Matrix(batcher.m_iLocView),
            Uniform(program, "tex"),
            Call("glUniform1i", program.m_fnUniform("tex"), 0)};
}

Calls LayoutCalls(const CDrawText_GL& batcher) {
    const GLProgram& program = *batcher.m_pProgramText;
    struct stAttribute {
        const char* szName;
        i32 iComponents;
        const char* szOffset;
    };
    Calls calls;
    for (const stAttribute& row :
         {stAttribute{"v2Pos", 2, "null"}, {"v2Tex0", 2, "ptr"}, {"v4Color0", 4, "ptr"}}) {
        const i32 iIndex = program.m_fnAttrib(row.szName);
        calls.push_back(Call("glGetAttribLocation", program.m_fnGetObject(), "ptr"));
        calls.push_back(Call("glEnableVertexAttribArray", iIndex));
        std::string strPointer = "glVertexAttribPointer(" + std::to_string(iIndex) + ", ";
        strPointer += std::to_string(row.iComponents) + ", " + std::to_string(GL_FLOAT) + ", 0, 32, ";
        calls.push_back(strPointer + row.szOffset + ")");
        calls.push_back(Call("glVertexAttribDivisor", iIndex, 0));
    }
    return calls;
}

Calls BindCalls(u32 uVB, u32 uIB) {
    return {Call("glBindBuffer", GL_ARRAY_BUFFER, uVB), Call("glBindBuffer", GL_ELEMENT_ARRAY_BUFFER, uIB)};
}

std::string DrawCall(u32 uFirst, u32 uCount) {
    return Call("glDrawRangeElements", GL_TRIANGLES, uFirst, uFirst + uCount, uCount, GL_UNSIGNED_INT,
                uFirst ? "x" : nullptr);
}

} // namespace

TEST_F(DrawTextGL, EveryNameOfTheContractIsActiveInBothProgramsAtTheSamePlace) {
    const CDrawText_GL& batcher = TextBatcher();
    for (const char* szName : {"v2Pos", "v2Tex0", "v4Color0"}) {
        EXPECT_GE(batcher.m_pProgramText->m_fnAttrib(szName), 0) << szName;
        EXPECT_EQ(batcher.m_pProgramTextGlow->m_fnAttrib(szName), batcher.m_pProgramText->m_fnAttrib(szName));
    }
    for (const char* szName : {"mProj", "mView", "mWorld", "vFontColor", "tex"}) {
        EXPECT_GE(batcher.m_pProgramText->m_fnUniform(szName), 0) << szName;
        EXPECT_EQ(batcher.m_pProgramTextGlow->m_fnUniform(szName),
                  batcher.m_pProgramText->m_fnUniform(szName))
            << szName;
    }
}

TEST_F(DrawTextGL, LocationsStartAtNoneAndAreReadFromTheTextProgram) {
    CDrawText_GL fresh;
    EXPECT_EQ(fresh.m_iLocProj, -1);
    EXPECT_EQ(fresh.m_iLocView, -1);
    EXPECT_EQ(fresh.m_iLocWorld, -1);
    EXPECT_EQ(fresh.m_iLocFontColor, -1);
    const CDrawText_GL& batcher = TextBatcher();
    EXPECT_EQ(batcher.m_iLocProj, batcher.m_pProgramText->m_fnUniform("mProj"));
    EXPECT_EQ(batcher.m_iLocView, batcher.m_pProgramText->m_fnUniform("mView"));
    EXPECT_EQ(batcher.m_iLocWorld, batcher.m_pProgramText->m_fnUniform("mWorld"));
    EXPECT_EQ(batcher.m_iLocFontColor, batcher.m_pProgramText->m_fnUniform("vFontColor"));
}

TEST_F(DrawTextGL, TheProjectionFollowsTheCanvas) {
    CDrawText_GL& batcher = TextBatcher();
    const f32 afExpected[16] = {2.0f / 320, 0, 0, 0, 0, 2.0f / 200, 0, 0, 0, 0, -2, 0, -1, -1, -1, 1};
    for (u32 i = 0; i < 16; ++i) EXPECT_EQ(batcher.m_mProj[i], afExpected[i]) << i;
    g_uCanvasW = 1000;
    batcher.m_fnOnResize();
    EXPECT_EQ(batcher.m_mProj[0], 2.0f / 1000);
    EXPECT_EQ(batcher.m_mProj[5], 2.0f / 200);
}

TEST_F(DrawTextGL, AMissingShaderFileLeavesWithItsPathAndKeepsWhatWasMade) {
    m_folder.Remove("DrawText_GL_G.fs");
    CDrawText_GL batcher;
    try {
        batcher.m_fnInitialize();
        ADD_FAILURE() << "no failure";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), "Failed to open file : " + m_folder.Path("DrawText_GL_G.fs"));
    }
    EXPECT_NE(batcher.m_pProgramText, nullptr);
    EXPECT_EQ(batcher.m_pProgramTextGlow, nullptr);
}

TEST_F(DrawTextGL, ReleaseDestroysBothPrograms) {
    CDrawText_GL& batcher = TextBatcher();
    const u32 uText = batcher.m_pProgramText->m_fnGetObject();
    const u32 uGlow = batcher.m_pProgramTextGlow->m_fnGetObject();
    batcher.m_fnRelease();
    EXPECT_FALSE(glIsProgram(uText));
    EXPECT_FALSE(glIsProgram(uGlow));
    batcher.m_fnRelease();
    // Without programs the operations of controls do nothing.
    const f32 afValues[16] = {};
    const stDrawConstants stConstants{afValues, afValues};
    gl_recorder::Start();
    batcher.m_fnSetDrawConstants(&stConstants);
    batcher.m_fnBindVertexLayout(nullptr);
    EXPECT_TRUE(gl_recorder::Stop().empty());
}

TEST_F(DrawTextGL, ATextFrameMakesExactlyTheseCalls) {
    CFontUniCode& font = AddFont();
    CTextBox_Base& text = AddText(font, u"AB", 10, 10, 32, s_white);
    CNumBox_Base& number = AddNumber(font, 47, 10, 60, 32, s_white);
    CDrawText_GL& batcher = TextBatcher();
    FrameCalls();
    const Calls calls = FrameCalls();

    Calls expected = StartCalls(batcher, *batcher.m_pProgramText);
    expected.push_back(Call("glActiveTexture", GL_TEXTURE0));
    const std::size_t uBind = expected.size();
    ASSERT_GT(calls.size(), uBind + 14);
    EXPECT_TRUE(calls[uBind].starts_with(Call("glBindTexture", GL_TEXTURE_2D).substr(0, 18))) << calls[uBind];
    for (std::size_t i = uBind; i < uBind + 14; ++i) expected.push_back(calls[i]);
    EXPECT_EQ(CountOf(expected, "glTexParameter"), 13u);
    Append(expected, {Matrix(batcher.m_iLocWorld), Call("glUniform4fv", batcher.m_iLocFontColor, 1, "ptr")});
    Append(expected, BindCalls(text.m_pMesh->m_fnGetVB(), text.m_pMesh->m_fnGetIB()));
    Append(expected, LayoutCalls(batcher));
    Append(expected, {DrawCall(0, 12)});
    Append(expected, BindCalls(0, 0));
    expected.push_back(Call("glUniform4fv", batcher.m_iLocFontColor, 1, "ptr"));
    Append(expected, BindCalls(number.m_pMesh->m_fnGetVB(), number.m_pMesh->m_fnGetIB()));
    Append(expected, LayoutCalls(batcher));
    expected.push_back(Matrix(batcher.m_iLocWorld));
    for (i32 i = 0; i < number.m_iDrawCount; ++i)
        expected.push_back(DrawCall(number.m_auDrawIndex[i], number.m_uIndicesPerGlyph));
    EXPECT_EQ(number.m_iDrawCount, 2);
    Append(expected, BindCalls(0, 0));
    expected.push_back(Call("glUseProgram", 0));
    EXPECT_EQ(calls, expected);
}

TEST_F(DrawTextGL, OneBindAFontAndOneDrawAText) {
    CFontUniCode& first = AddFont();
    CFontUniCode& second = AddFont(u"DejaVu Sans Mono");
    for (i32 i = 0; i < 3; ++i) AddText(first, u"ab", 10, static_cast<f32>(i) * 20, 16, s_white);
    AddText(second, u"c", 10, 80, 16, s_white);
    const Calls calls = FrameCalls();
    EXPECT_EQ(CountOf(calls, "glBindTexture"), 2u);
    EXPECT_EQ(CountOf(calls, "glTexParameter"), 26u);
    EXPECT_EQ(CountOf(calls, "glDrawRangeElements"), 4u);
    EXPECT_EQ(CountOf(calls, "glBufferData"), 0u);
}

TEST_F(DrawTextGL, AChangedNumberMakesNoBufferCall) {
    CNumBox_Base& number = AddNumber(AddFont(), 9, 10, 60, 32, s_white);
    FrameCalls();
    gl_recorder::Start();
    number.m_fnSetInt(1234567, 0);
    number.m_fnSetFloat(-3.25f, 2);
    EXPECT_EQ(gl_recorder::Stop(), Calls());
    const Calls calls = FrameCalls();
    EXPECT_EQ(CountOf(calls, "glBufferData"), 0u);
    EXPECT_EQ(CountOf(calls, "glDrawRangeElements"), 5u); // -3.25
}

TEST_F(DrawTextGL, GlowChangesTheProgramAndNothingElse) {
    AddText(AddFont(), u"AB", 10, 10, 32, s_white);
    FrameCalls();
    Calls plain = FrameCalls();
    g_bTextGlow = true;
    Calls glow = FrameCalls();
    const CDrawText_GL& batcher = TextBatcher();
    Calls expected = StartCalls(batcher, *batcher.m_pProgramTextGlow);
    Append(expected, {plain.begin() + static_cast<std::ptrdiff_t>(expected.size()), plain.end()});
    EXPECT_EQ(glow, expected);
    EXPECT_EQ(From(glow, "glActiveTexture"), From(plain, "glActiveTexture"))
        << "attributes come from the text program in both";
}

TEST_F(DrawTextGL, AnEmptyTextDrawsItsQuadAllTheSame) {
    AddText(AddFont(), u"", 10, 10, 32, s_white);
    EXPECT_EQ(CountOf(FrameCalls(), Call("glDrawRangeElements", GL_TRIANGLES, 0, 6, 6)
                                        .substr(0, sizeof "glDrawRangeElements(4, 0, 6, 6" - 1)),
              1u);
    EXPECT_EQ(DrawText(0.25f).aBytes, Picture(DrawText(0.25f)).aBytes);
    const Picture picture = DrawText(0.25f);
    for (u32 x = 0; x < s_uWidth; x += 3)
        for (u32 y = 0; y < s_uHeight; y += 3) ASSERT_EQ(picture.At(x, y), (Pixel{64, 64, 64, 255}));
}

TEST_F(DrawTextGL, ATextThatWasNeverUploadedDrawsNothing) {
    CTextBox_Base& text = AddText(AddFont(), u"AB", 10, 10, 32, s_white);
    text.m_pMesh->m_fnRelease();
    EXPECT_EQ(CountOf(FrameCalls(), "glDrawRangeElements"), 0u);
    text.m_pMesh.reset();
    EXPECT_EQ(CountOf(FrameCalls(), "glBindBuffer"), 0u);
}

TEST_F(DrawTextGL, WithoutTheDivisorOfVersion33TheLayoutIsStillBound) {
    AddText(AddFont(), u"A", 10, 10, 32, s_white);
    TextBatcher();
    const auto fnDivisor = __glewVertexAttribDivisor;
    __glewVertexAttribDivisor = nullptr;
    const Calls calls = FrameCalls();
    __glewVertexAttribDivisor = fnDivisor;
    EXPECT_EQ(CountOf(calls, "glVertexAttribPointer"), 3u);
    EXPECT_EQ(CountOf(calls, "glDrawRangeElements"), 1u);
}
