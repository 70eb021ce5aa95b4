// Textures in a real context: upload, binding, and what an animation shows.
#include "base/timer.h"
#include "batch/flavour_gl.h"
#include "draw/texture_gl.h"

#include "draw/creation_table.h"
#include "draw/texture_reduce.h"
#include "platform/gl_api.h"
#include "platform/headless/egl_context.h"
#include "platform/headless/test_controls.h"
#include "tests/support/gl_recorder.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

using gl_recorder::Call;

namespace {

using Calls = std::vector<std::string>;
using Bytes = std::vector<u8>;

class TextureGL : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_context.Create({}));
        ASSERT_TRUE(platform::InitGlew());
        while (glGetError() != GL_NO_ERROR) {
        }
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        gl_recorder::Install();
    }
    void TearDown() override {
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        m_pTexture.reset();
        m_context.Destroy();
        g_fLastFrameSeconds = 0.0f;
        platform::headless::ResetAll();
    }
    template <class Function> Calls CallsOf(const Function& fn) {
        gl_recorder::Start();
        fn();
        return gl_recorder::Stop();
    }
    CTexture2D_GL& Texture() {
        if (!m_pTexture) m_pTexture = std::make_unique<CTexture2D_GL>();
        return *m_pTexture;
    }
    Bytes LevelBytes(u32 uName, i32 iLevel, GLenum eFormat, u32 uBytes) {
        Bytes bytes(uBytes);
        glBindTexture(GL_TEXTURE_2D, uName);
        glGetTexImage(GL_TEXTURE_2D, iLevel, eFormat, GL_UNSIGNED_BYTE, bytes.data());
        glBindTexture(GL_TEXTURE_2D, 0);
        return bytes;
    }
    static i32 LevelWidth(u32 uName, i32 iLevel) {
        GLint iWidth = -1;
        glBindTexture(GL_TEXTURE_2D, uName);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, iLevel, GL_TEXTURE_WIDTH, &iWidth);
        glBindTexture(GL_TEXTURE_2D, 0);
        return iWidth;
    }
    static u32 BoundName() {
        GLint iName = 0;
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &iName);
        return static_cast<u32>(iName);
    }
    static u32 ActiveUnit() {
        GLint iUnit = 0;
        glGetIntegerv(GL_ACTIVE_TEXTURE, &iUnit);
        return static_cast<u32>(iUnit) - GL_TEXTURE0;
    }

    platform::headless::EglContext m_context;
    std::unique_ptr<CTexture2D_GL> m_pTexture;
};

Calls SamplingCalls(u32 uMinFilter) {
    const auto Float = [](GLenum eName, f32 f) { return Call("glTexParameterf", GL_TEXTURE_2D, eName, f); };
    const auto Int = [](GLenum eName, i32 i) { return Call("glTexParameteri", GL_TEXTURE_2D, eName, i); };
    return {Float(GL_TEXTURE_MIN_LOD, -1000.0f),
            Float(GL_TEXTURE_MAX_LOD, 1000.0f),
            Int(GL_TEXTURE_MAX_LEVEL, 1000),
            Float(GL_TEXTURE_LOD_BIAS, 0.0f),
            Int(GL_TEXTURE_BASE_LEVEL, 0),
            Int(GL_TEXTURE_COMPARE_FUNC, GL_ALWAYS),
            Int(GL_TEXTURE_COMPARE_MODE, GL_NONE),
            Int(GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER),
            Int(GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER),
            Int(GL_TEXTURE_WRAP_R, GL_CLAMP_TO_BORDER),
            Call("glTexParameterfv", GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, "ptr"),
            Int(GL_TEXTURE_MIN_FILTER, static_cast<i32>(uMinFilter)),
            Int(GL_TEXTURE_MAG_FILTER, GL_LINEAR)};
}

Calls UploadCalls(u32 uName, u32 uMinFilter, const Calls& levels) {
    const auto Int = [](GLenum eName, i32 i) { return Call("glTexParameteri", GL_TEXTURE_2D, eName, i); };
    Calls calls = {Call("glBindTexture", GL_TEXTURE_2D, uName),
                   Int(GL_TEXTURE_MIN_FILTER, static_cast<i32>(uMinFilter)),
                   Int(GL_TEXTURE_MAG_FILTER, GL_LINEAR),
                   Int(GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER),
                   Int(GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER),
                   Int(GL_TEXTURE_WRAP_R, GL_CLAMP_TO_BORDER),
                   Call("glTexParameterfv", GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, "ptr")};
    calls.insert(calls.end(), levels.begin(), levels.end());
    calls.push_back(Call("glBindTexture", GL_TEXTURE_2D, 0));
    return calls;
}

std::string LevelCall(i32 iLevel, GLint iInternal, i32 iWidth, i32 iHeight, GLenum eFormat) {
    return Call("glTexImage2D", GL_TEXTURE_2D, iLevel, iInternal, iWidth, iHeight, 0, eFormat,
                GL_UNSIGNED_BYTE, "ptr");
}

std::array<f32, 4> Border() {
    std::array<f32, 4> afColor{};
    glGetTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, afColor.data());
    return afColor;
}

} // namespace

TEST(TextureGLFormat, TableOfCodes) {
    struct stRow {
        u32 uCode;
        u32 uFormat, uType;
        i32 iInternal;
    };
    const stRow aRows[] = {
        {2, GL_RED, GL_UNSIGNED_BYTE, GL_R8},
        {11, GL_RGBA, GL_UNSIGNED_BYTE, GL_RGBA8},
        {12, GL_RGBA, GL_UNSIGNED_BYTE, GL_RGBA8},
        {35, GL_RED, GL_FLOAT, GL_R32F},
        {36, GL_RED, GL_UNSIGNED_INT, GL_R32UI},
        {38, GL_RG, GL_FLOAT, GL_RG32F},
        {40, GL_RG, GL_INT, GL_RG32I},
        {44, GL_RGBA, GL_FLOAT, GL_RGBA32F},
        {47, GL_BGRA, GL_UNSIGNED_BYTE, GL_RGBA8},
    };
    for (const stRow& row : aRows) {
        stGLFormat stFormat;
        EXPECT_TRUE(g_fnFindGLFormat(row.uCode, &stFormat)) << row.uCode;
        EXPECT_EQ(stFormat.m_uFormat, row.uFormat) << row.uCode;
        EXPECT_EQ(stFormat.m_uType, row.uType) << row.uCode;
        EXPECT_EQ(stFormat.m_iInternal, row.iInternal) << row.uCode;
    }
}

TEST(TextureGLFormat, FourCodesPairWhatDoesNotGoTogether) {
    stGLFormat stFormat;
    g_fnFindGLFormat(25, &stFormat);
    EXPECT_EQ(stFormat.m_uType, u32(GL_UNSIGNED_INT));
    EXPECT_EQ(stFormat.m_iInternal, GL_RG16);
    g_fnFindGLFormat(26, &stFormat);
    EXPECT_EQ(stFormat.m_uFormat, u32(GL_RG));
    EXPECT_EQ(stFormat.m_iInternal, GL_RG16UI);
    g_fnFindGLFormat(31, &stFormat);
    EXPECT_EQ(stFormat.m_uType, u32(GL_UNSIGNED_SHORT));
    EXPECT_EQ(stFormat.m_iInternal, GL_RGBA8UI);
    g_fnFindGLFormat(39, &stFormat);
    EXPECT_EQ(stFormat.m_uFormat, u32(GL_RG));
    EXPECT_EQ(stFormat.m_iInternal, GL_R32UI);
}

TEST(TextureGLFormat, OtherCodesGiveZeros) {
    for (u32 uCode : {0u, 1u, 3u, 10u, 13u, 37u, 46u, 48u, 0xFFFFFFFFu}) {
        stGLFormat stFormat{1, 1, 1};
        EXPECT_FALSE(g_fnFindGLFormat(uCode, &stFormat)) << uCode;
        EXPECT_EQ(stFormat.m_uFormat, 0u);
        EXPECT_EQ(stFormat.m_uType, 0u);
        EXPECT_EQ(stFormat.m_iInternal, 0);
    }
}

TEST_F(TextureGL, TheCreationTableMakesOne) {
    g_fnFillCreationTable_GL();
    const std::unique_ptr<CTexture_Base> pTexture(g_stCreationTable.m_fnCreateTexture());
    EXPECT_NE(dynamic_cast<CTexture2D_GL*>(pTexture.get()), nullptr);
    g_stCreationTable = {};
}

TEST_F(TextureGL, CreationMakesOneNameAFrame) {
    const Calls calls = CallsOf([&] { ASSERT_TRUE(Texture().m_fnCreate(4, 2, g_uFormatBGRA8, 3, false)); });
    EXPECT_EQ(calls, Calls{Call("glGenTextures", 3, "ptr")});
    EXPECT_EQ(Texture().m_uGLFormat, u32(GL_BGRA));
    EXPECT_EQ(Texture().m_uGLType, u32(GL_UNSIGNED_BYTE));
    EXPECT_EQ(Texture().m_iGLInternal, GL_RGBA8);
    for (u32 i = 0; i < 3; ++i) EXPECT_NE(Texture().m_pNames[i], 0u);
}

TEST_F(TextureGL, AFormatUnknownToOpenGLDoesNotStopTheCreation) {
    EXPECT_TRUE(Texture().m_fnCreate(4, 2, 10, 1, false));
    EXPECT_EQ(Texture().m_uGLFormat, 0u);
    EXPECT_NE(Texture().m_pNames, nullptr);
}

TEST_F(TextureGL, ASecondCreationDeletesTheFormerNames) {
    ASSERT_TRUE(Texture().m_fnCreate(4, 4, g_uFormatRGBA8, 2, false));
    const Bytes pixels(64, 1);
    ASSERT_TRUE(Texture().m_fnUploadLevel(pixels.data(), 0, 0));
    const u32 uFormer = Texture().m_pNames[0];
    const Calls calls = CallsOf([&] { Texture().m_fnCreate(2, 2, g_uFormatRGBA8, 1, false); });
    EXPECT_EQ(calls, (Calls{Call("glDeleteTextures", 2, "ptr"), Call("glGenTextures", 1, "ptr")}));
    EXPECT_EQ(LevelWidth(Texture().m_pNames[0], 0), 0) << "nothing of name " << uFormer << " is left";
    EXPECT_FALSE(Texture().m_fnCreate(0, 2, g_uFormatRGBA8, 1, false));
    EXPECT_EQ(Texture().m_pNames, nullptr);
}

TEST_F(TextureGL, AnUploadSpecifiesOneLevelInThisOrder) {
    ASSERT_TRUE(Texture().m_fnCreate(2, 2, g_uFormatRGBA8, 2, false));
    const Bytes pixels = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const u32 uName = Texture().m_pNames[1];
    const Calls calls = CallsOf([&] { EXPECT_TRUE(Texture().m_fnUploadLevel(pixels.data(), 1, 0)); });
    EXPECT_EQ(calls, UploadCalls(uName, GL_LINEAR, {LevelCall(0, GL_RGBA8, 2, 2, GL_RGBA)}));
    EXPECT_EQ(LevelBytes(uName, 0, GL_RGBA, 16), pixels);
    EXPECT_EQ(BoundName(), 0u);
}

TEST_F(TextureGL, ALostNameIsMadeAgain) {
    ASSERT_TRUE(Texture().m_fnCreate(1, 1, g_uFormatRGBA8, 1, false));
    glDeleteTextures(1, Texture().m_pNames);
    Texture().m_pNames[0] = 0;
    const u8 au8Pixel[4] = {1, 2, 3, 4};
    EXPECT_TRUE(Texture().m_fnUploadLevel(au8Pixel, 0, 0));
    EXPECT_NE(Texture().m_pNames[0], 0u);
}

TEST_F(TextureGL, WithAChainAllLevelsGoAndThePixelsAreIgnored) {
    ASSERT_TRUE(Texture().m_fnCreate(5, 3, g_uFormatR8, 1, true));
    ASSERT_TRUE(g_fnFillChain(Texture(), Bytes(15, 80).data(), 0));
    const Bytes other(15, 1);
    const Calls levels = {LevelCall(0, GL_R8, 5, 3, GL_RED), LevelCall(1, GL_R8, 2, 1, GL_RED),
                          LevelCall(2, GL_R8, 1, 1, GL_RED)};
    const u32 uName = Texture().m_pNames[0];
    const Calls calls = CallsOf([&] { EXPECT_TRUE(Texture().m_fnUploadLevel(other.data(), 0, 1)); });
    EXPECT_EQ(calls, UploadCalls(uName, GL_LINEAR_MIPMAP_LINEAR, levels));
    EXPECT_EQ(LevelBytes(uName, 0, GL_RED, 15), Bytes(15, 80));
    EXPECT_EQ(LevelBytes(uName, 1, GL_RED, 2), Bytes(2, 120));
    EXPECT_EQ(LevelBytes(uName, 2, GL_RED, 1), Bytes(1, 180));
}

TEST_F(TextureGL, AFrameOrLevelThatIsNotThereIsRefusedWithoutACall) {
    const u8 au8Pixel[4] = {};
    const Calls calls = CallsOf([&] { EXPECT_FALSE(Texture().m_fnUploadLevel(au8Pixel, 0, 0)); });
    EXPECT_TRUE(calls.empty());
    ASSERT_TRUE(Texture().m_fnCreate(1, 1, g_uFormatRGBA8, 2, false));
    const Calls more = CallsOf([&] {
        EXPECT_FALSE(Texture().m_fnUploadLevel(au8Pixel, 2, 0));
        EXPECT_FALSE(Texture().m_fnUploadLevel(au8Pixel, 0, 1));
        EXPECT_FALSE(Texture().m_fnUploadFrame(nullptr, 7));
    });
    EXPECT_TRUE(more.empty());
}

TEST_F(TextureGL, ABindSetsEveryParameterAnew) {
    ASSERT_TRUE(Texture().m_fnCreate(2, 2, g_uFormatR8, 1, true));
    const u32 uName = Texture().m_pNames[0];
    const Calls calls = CallsOf([&] { Texture().m_fnBindUnit(3); });
    Calls expected = {Call("glActiveTexture", GL_TEXTURE3), Call("glBindTexture", GL_TEXTURE_2D, uName)};
    for (const std::string& strCall : SamplingCalls(GL_LINEAR_MIPMAP_LINEAR)) expected.push_back(strCall);
    EXPECT_EQ(calls, expected);
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(TextureGL, UnitsOutsideOneToSevenAreUnitZero) {
    ASSERT_TRUE(Texture().m_fnCreate(2, 2, g_uFormatRGBA8, 1, false));
    for (const auto& [uUnit, uExpected] :
         {std::pair{9u, 0u}, {8u, 0u}, {7u, 7u}, {1u, 1u}, {0u, 0u}, {0xFFFFFFFFu, 0u}}) {
        glActiveTexture(GL_TEXTURE5);
        Texture().m_fnBindUnit(uUnit);
        EXPECT_EQ(ActiveUnit(), uExpected) << uUnit;
    }
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(TextureGL, TheBorderIsRedAfterAnUploadAndBlackOnceBound) {
    ASSERT_TRUE(Texture().m_fnCreate(2, 2, g_uFormatRGBA8, 1, false));
    const Bytes pixels(16, 1);
    ASSERT_TRUE(Texture().m_fnUploadLevel(pixels.data(), 0, 0));
    glBindTexture(GL_TEXTURE_2D, Texture().m_pNames[0]);
    EXPECT_EQ(Border(), (std::array<f32, 4>{1, 0, 0, 1}));
    Texture().m_fnBindUnit(0);
    EXPECT_EQ(Border(), (std::array<f32, 4>{0, 0, 0, 1}));
}

TEST_F(TextureGL, ABindUndoesWhatTheApplicationDidToTheTexture) {
    ASSERT_TRUE(Texture().m_fnCreate(2, 2, g_uFormatRGBA8, 1, false));
    glBindTexture(GL_TEXTURE_2D, Texture().m_pNames[0]);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_BASE_LEVEL, 5);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    Texture().m_fnBindUnit(0);
    GLint iValue = 0;
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_BASE_LEVEL, &iValue);
    EXPECT_EQ(iValue, 0);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &iValue);
    EXPECT_EQ(iValue, GL_CLAMP_TO_BORDER);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &iValue);
    EXPECT_EQ(iValue, GL_LINEAR);
}

TEST_F(TextureGL, WithoutNamesZeroIsBoundAndTheApplicationsTextureZeroIsLeftAlone) {
    const Calls calls = CallsOf([&] { Texture().m_fnBindUnit(0); });
    EXPECT_EQ(calls, (Calls{Call("glActiveTexture", GL_TEXTURE0), Call("glBindTexture", GL_TEXTURE_2D, 0)}));
}

TEST_F(TextureGL, AnAnimationStepsAtTheFirstBindAboveItsDelay) {
    ASSERT_TRUE(Texture().m_fnCreate(1, 1, g_uFormatRGBA8, 2, false));
    Texture().m_mapFrameDelay = {{0, 100}, {1, 200}};
    g_fLastFrameSeconds = 0.016f;
    for (u32 i = 1; i <= 6; ++i) { // up to 96 ms
        Texture().m_fnBindUnit(0);
        EXPECT_EQ(BoundName(), Texture().m_pNames[0]) << i;
    }
    Texture().m_fnBindUnit(0); // 112 ms
    EXPECT_EQ(BoundName(), Texture().m_pNames[1]);
    for (u32 i = 1; i <= 12; ++i) Texture().m_fnBindUnit(0); // 192 ms
    EXPECT_EQ(BoundName(), Texture().m_pNames[1]);
    Texture().m_fnBindUnit(0);
    EXPECT_EQ(BoundName(), Texture().m_pNames[0]);
}

TEST_F(TextureGL, AFrameBeyondTheLastShowsFrame0) {
    ASSERT_TRUE(Texture().m_fnCreate(1, 1, g_uFormatRGBA8, 3, false));
    Texture().m_mapFrameDelay = {{500, 1000}};
    Texture().m_fnSetCurrentFrame(500);
    Texture().m_fnBindUnit(0);
    EXPECT_EQ(BoundName(), Texture().m_pNames[0]);
}

TEST_F(TextureGL, ASinglePictureNeverAdvances) {
    ASSERT_TRUE(Texture().m_fnCreate(1, 1, g_uFormatRGBA8, 1, false));
    g_fLastFrameSeconds = 1.0f;
    Texture().m_fnBindUnit(0);
    EXPECT_TRUE(Texture().m_mapFrameDelay.empty());
    EXPECT_EQ(Texture().m_fFrameTime, 0.0f);
}

TEST_F(TextureGL, ReleaseDeletesTheNamesAndLeavesTheFrames) {
    ASSERT_TRUE(Texture().m_fnCreate(2, 2, g_uFormatRGBA8, 1, false));
    const Bytes pixels(16, 1);
    ASSERT_TRUE(Texture().m_fnUploadLevel(pixels.data(), 0, 0));
    const u32 uName = Texture().m_pNames[0];
    Texture().m_fnRelease();
    EXPECT_FALSE(glIsTexture(uName));
    EXPECT_EQ(Texture().m_pNames, nullptr);
    u8* pPixels = nullptr;
    Texture().m_fnGetLevel(&pPixels, 0, 0);
    EXPECT_NE(pPixels, nullptr);
    Texture().m_fnRelease();
}

TEST_F(TextureGL, NamesDieWithTheObjectAndWithoutAContextNothingIsCalled) {
    ASSERT_TRUE(Texture().m_fnCreate(1, 1, g_uFormatRGBA8, 1, false));
    const Calls calls = CallsOf([&] { m_pTexture.reset(); });
    EXPECT_EQ(calls, Calls{Call("glDeleteTextures", 1, "ptr")});
    ASSERT_TRUE(Texture().m_fnCreate(1, 1, g_uFormatRGBA8, 1, false));
    m_context.MakeNoneCurrent();
    platform::headless::SetCurrentContext(nullptr);
    const Calls none = CallsOf([&] { m_pTexture.reset(); });
    EXPECT_TRUE(none.empty());
    platform::headless::UseRealSurface();
    ASSERT_TRUE(m_context.MakeCurrent());
}
