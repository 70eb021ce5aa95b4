// Programs that outlive a reload.
#include "draw/kept_programs.h"
#include "draw/own_context.h"
#include "merged/merged_programs.h"
#include "platform/gl_api.h"
#include "tests/gl/draw_fixture.h"

namespace {

struct KeptPrograms : DrawFixture {
    void TearDown() override {
        g_fnDeleteKeptPrograms();
        DrawFixture::TearDown();
    }
    static KeptProgram Flat() { return g_fnBuildMergedProgram("DrawMerged_GL_C.vs", "DrawMerged_GL_C.fs"); }
    static KeptProgram Blurred(const char* szDiameter) {
        const ShaderDefines defines{{"_CIRCLE_BLUR_DIAMETER_", szDiameter}};
        return g_fnBuildMergedProgram("DrawMerged_GL_Tex.vs", "DrawMerged_GL_CB.fs", &defines);
    }
};

} // namespace

TEST_F(KeptPrograms, TheNextOneOfThoseSourcesIsTheOneThatWasLetGo) {
    KeptProgram pFirst = Flat();
    const u32 uObject = pFirst->m_fnGetObject();
    const KeptProgram pBeside = Flat();
    EXPECT_NE(pBeside->m_fnGetObject(), uObject) << "one that is held is nobody else's";
    pFirst.reset();
    EXPECT_TRUE(glIsProgram(uObject));
    EXPECT_EQ(Flat()->m_fnGetObject(), uObject);
}

TEST_F(KeptPrograms, OtherSourcesOrDefinesMakeAnotherOne) {
    KeptProgram pFirst = Blurred("9");
    const u32 uObject = pFirst->m_fnGetObject();
    pFirst.reset();
    EXPECT_NE(Blurred("11")->m_fnGetObject(), uObject);
    m_folder.Write("DrawMerged_GL_CB.fs", m_folder.Read("DrawMerged_GL_CB.fs") + "\n// changed\n");
    EXPECT_NE(Blurred("9")->m_fnGetObject(), uObject);
}

TEST_F(KeptPrograms, TheEndOfTheOverlayDeletesThem) {
    KeptProgram pFirst = Flat();
    const u32 uObject = pFirst->m_fnGetObject();
    pFirst.reset();
    glUseProgram(0); // one in use lives on
    g_fnDeleteKeptPrograms();
    EXPECT_FALSE(glIsProgram(uObject));
}

TEST_F(KeptPrograms, InAnotherContextNothingIsTakenAndNothingOfItsOwnIsDeleted) {
    KeptProgram pFirst = Flat();
    pFirst.reset();
    platform::headless::EglContext other;
    ASSERT_TRUE(other.Create({}));
    other.MakeCurrent();
    const u32 uOwn = glCreateProgram(); // the same number as likely as not
    KeptProgram pSecond = Flat();
    EXPECT_NE(pSecond->m_fnGetObject(), uOwn);
    EXPECT_TRUE(glIsProgram(pSecond->m_fnGetObject()));
    pSecond.reset();
    g_fnDeleteKeptPrograms();
    EXPECT_TRUE(glIsProgram(uOwn));
    other.Destroy();
    m_context.MakeCurrent();
}

TEST_F(KeptPrograms, OneWhoseContextIsGoneIsForgotten) {
    KeptProgram pFirst = Flat();
    const u32 uObject = pFirst->m_fnGetObject();
    pFirst.reset();
    g_fnNoteContextGone(platform::CurrentContext());
    const KeptProgram pSecond = Flat();
    EXPECT_NE(pSecond->m_fnGetObject(), uObject);
    EXPECT_TRUE(glIsProgram(uObject)) << "nothing may be done to what another context could have";
}
