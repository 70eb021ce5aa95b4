#include "platform/gl_api.h"
#include "platform/headless/egl_context.h"
#include "platform/headless/test_controls.h"
#include "platform/surface.h"
#include <gtest/gtest.h>

namespace {

namespace headless = platform::headless;

class EglContextTest : public testing::Test {
  protected:
    void SetUp() override { headless::ResetAll(); }
    headless::EglContext m_context;
};

TEST_F(EglContextTest, CoreContextHasItsProfileAndLoadsEveryEntryPoint) {
    ASSERT_TRUE(m_context.Create({.m_uWidth = 32, .m_uHeight = 16}));
    ASSERT_TRUE(platform::InitGlew());
    GLint iMask = 0, iMajor = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &iMask);
    glGetIntegerv(GL_MAJOR_VERSION, &iMajor);
    EXPECT_EQ(iMask, GL_CONTEXT_CORE_PROFILE_BIT);
    EXPECT_GE(iMajor, 3);
    EXPECT_NE(glVertexAttribDivisor, nullptr);
}

TEST_F(EglContextTest, CompatibilityContextKeepsTheOldCalls) {
    ASSERT_TRUE(m_context.Create({.m_bCore = false}));
    GLint iMask = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &iMask);
    EXPECT_EQ(iMask, GL_CONTEXT_COMPATIBILITY_PROFILE_BIT);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPopAttrib();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(EglContextTest, ForwardCompatibleFlagIsSet) {
    ASSERT_TRUE(m_context.Create({.m_bForwardCompatible = true}));
    GLint iFlags = 0;
    glGetIntegerv(GL_CONTEXT_FLAGS, &iFlags);
    EXPECT_TRUE(iFlags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT);
}

TEST_F(EglContextTest, PixelsComeTopRowFirst) {
    ASSERT_TRUE(m_context.Create({.m_uWidth = 8, .m_uHeight = 4}));
    glClearColor(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 3, 8, 1);
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glPixelStorei(GL_PACK_ROW_LENGTH, 100);
    const auto vecPixels = m_context.ReadPixels();
    ASSERT_EQ(vecPixels.size(), 8u * 4 * 4);
    EXPECT_EQ(vecPixels[0], 255);
    EXPECT_EQ(vecPixels[2], 0);
    EXPECT_EQ(vecPixels[8 * 4 + 2], 255);
    GLint iRowLength = 0;
    glGetIntegerv(GL_PACK_ROW_LENGTH, &iRowLength);
    EXPECT_EQ(iRowLength, 100);
}

TEST_F(EglContextTest, CurrentContextIsWhatThePlatformReports) {
    ASSERT_TRUE(m_context.Create({.m_uWidth = 40, .m_uHeight = 30}));
    u32 uWidth = 0, uHeight = 0;
    EXPECT_EQ(platform::CurrentSurface(), m_context.Surface());
    EXPECT_EQ(platform::CurrentContext(), m_context.Context());
    EXPECT_TRUE(platform::ClientSize(platform::WindowFromSurface(m_context.Surface()), &uWidth, &uHeight));
    EXPECT_EQ(uWidth, 40u);
    EXPECT_EQ(uHeight, 30u);
    void* const hOld = m_context.Surface();
    ASSERT_TRUE(m_context.ReplaceSurface(50, 20));
    EXPECT_NE(platform::CurrentSurface(), hOld);
    EXPECT_TRUE(platform::ClientSize(platform::CurrentSurface(), &uWidth, &uHeight));
    EXPECT_EQ(uWidth, 50u);
    m_context.MakeNoneCurrent();
    EXPECT_EQ(platform::CurrentContext(), reinterpret_cast<void*>(0x2000));
}

TEST_F(EglContextTest, OverridesWinOverTheRealSurface) {
    ASSERT_TRUE(m_context.Create({}));
    headless::SetCurrentSurface(reinterpret_cast<void*>(0x99));
    EXPECT_EQ(platform::CurrentSurface(), reinterpret_cast<void*>(0x99));
    headless::UseRealSurface();
    EXPECT_EQ(platform::CurrentSurface(), m_context.Surface());
}

} // namespace
