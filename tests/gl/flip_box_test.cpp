// Flip boxes over OpenGL: each state against a text box, and what a selection costs.
#include "draw/creation_table.h"
#include "merged/flavour_merged.h"
#include "platform/gl_api.h"
#include "tests/gl/text_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>

namespace {

using Calls = std::vector<std::string>;

class FlipBoxGL : public TextFixture {
  protected:
    static constexpr Color s_red = {1, 0.2f, 0.1f, 1}, s_green = {0.2f, 1, 0.3f, 1},
                           s_blue = {0.3f, 0.4f, 1, 1};
    void SetUp() override {
        TextFixture::SetUp();
        gl_recorder::Install();
    }
    static stFlipText State(const char16_t* wzText, const Color& color) {
        return {wzText, {color[0], color[1], color[2], color[3]}};
    }
    static std::vector<stFlipText> Detector() {
        return {State(u"OK", s_green), State(u"Warning", s_blue), State(u"Power!", s_red)};
    }
    template <class Action> static Calls CallsOf(Action fnAction) {
        gl_recorder::Start();
        fnAction();
        return gl_recorder::Stop();
    }
    static i64 CountOf(const Calls& calls, const std::string& strPrefix) {
        return std::ranges::count_if(calls, [&](const auto& s) { return s.starts_with(strPrefix); });
    }
    /// Each state drawn as a flip box and as a text box of its colour: the same pixels.
    void ExpectEachStateLikeAText(f32 fGrey, const Color* pShadow, const char* szPicture) {
        CFontUniCode& font = AddFont();
        const std::vector<stFlipText> states = Detector();
        for (u32 u = 0; u < states.size(); ++u) {
            const Color color = {states[u].afColor[0], states[u].afColor[1], states[u].afColor[2], 1};
            AddText(font, states[u].wzText, 20, 40, 40, color, pShadow);
            const Picture text = DrawText(fGrey);
            Clear();
            AddFlip(font, states, 20, 40, 40, pShadow).m_fnSelectState(u);
            const Picture flip = DrawText(fGrey);
            Clear();
            flip.Save(szPicture + std::to_string(u));
            EXPECT_TRUE(flip.aBytes == text.aBytes) << "state " << u;
            EXPECT_TRUE(flip.aBytes != DrawText(fGrey).aBytes) << "state " << u;
            Clear(); // a batcher has taken its lists
        }
    }
};

TEST_F(FlipBoxGL, EachStateHasThePixelsOfATextBox) { ExpectEachStateLikeAText(0.2f, nullptr, "flip_"); }

TEST_F(FlipBoxGL, EachStateHasThePixelsOfATextBoxWithShadow) {
    ExpectEachStateLikeAText(0.7f, &s_black, "flip_shadow_");
}

TEST_F(FlipBoxGL, ASelectionMakesNoGlCallAndIsDrawnFromTheSameBuffers) {
    const auto states = Detector();
    CFlipBox_Base& flip = AddFlip(AddFont(), states, 20, 40, 40);
    CDrawText_GL& batcher = TextBatcher();
    batcher.m_fnRender();
    const u32 uVB = flip.m_pMesh->m_fnGetVB(), uIB = flip.m_pMesh->m_fnGetIB();
    EXPECT_EQ(CallsOf([&] {
                  for (u32 u = 0; u < 30; ++u) flip.m_fnSelectState(u % 4);
                  flip.m_fnSelectState(2);
              }),
              Calls());
    const Calls calls = CallsOf([&] { batcher.m_fnRender(); });
    EXPECT_EQ(flip.m_pMesh->m_fnGetVB(), uVB);
    EXPECT_EQ(flip.m_pMesh->m_fnGetIB(), uIB);
    EXPECT_EQ(CountOf(calls, "glBufferData"), 0);
    EXPECT_EQ(CountOf(calls, "glDrawRangeElements"), 1);
    EXPECT_EQ(CountOf(calls, "glBindBuffer"), 4);
}

TEST_F(FlipBoxGL, AStateWithBlanksOnlyShowsNothingAndALineEndEndsIt) {
    CFontUniCode& font = AddFont();
    const stFlipText aBlank[] = {State(u"  \x3000 ", s_red), State(u"AB\nCD", s_red)};
    const Picture ground = DrawText(0);
    CFlipBox_Base& flip = AddFlip(font, aBlank, 20, 40, 40);
    m_pTextBatcher.reset(); // it has taken its lists
    EXPECT_TRUE(DrawText(0).aBytes == ground.aBytes);
    ASSERT_TRUE(flip.m_fnSelectState(1));
    const Picture first = DrawText(0);
    Clear();
    AddText(font, u"AB", 20, 40, 40, s_red);
    EXPECT_TRUE(first.aBytes == DrawText(0).aBytes);
}

TEST_F(FlipBoxGL, TextsThatGrewAfterInitialisationDrawWithinTheBuffers) {
    CFontUniCode& font = AddFont();
    const stFlipText aShort[] = {State(u"A", s_red)};
    const stFlipText aLong[] = {State(u"ABCDEFGHIJ", s_red), State(u"KLMNOP", s_red)};
    CFlipBox_Base& flip = AddFlip(font, aShort, 20, 40, 40);
    ASSERT_TRUE(flip.m_fnSetStates(aLong));
    flip.m_fnFlush();
    for (u32 u = 0; u < 2; ++u) {
        ASSERT_TRUE(flip.m_fnSelectState(u));
        const Calls calls = CallsOf([&] { TextBatcher().m_fnRender(); });
        EXPECT_EQ(CountOf(calls, "glDrawRangeElements"), 1);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
    ASSERT_TRUE(flip.m_fnSelectState(0));
    const Picture shown = DrawText(0);
    Clear();
    AddText(font, u"A", 20, 40, 40, s_red);
    EXPECT_TRUE(shown.aBytes == DrawText(0).aBytes);
}

TEST_F(FlipBoxGL, BothFlavoursHaveTheirFlipBox) {
    ASSERT_NE(g_stCreationTable.m_fnCreateFlipBox, nullptr);
    auto* const fnPlain = g_stCreationTable.m_fnCreateFlipBox;
    g_fnFillCreationTable_Merged();
    EXPECT_NE(g_stCreationTable.m_fnCreateFlipBox, nullptr);
    EXPECT_NE(g_stCreationTable.m_fnCreateFlipBox, fnPlain);
}

} // namespace
