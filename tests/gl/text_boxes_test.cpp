// Text and number boxes over OpenGL: what a change costs, and how layout shows on the picture.
#include "draw/creation_table.h"
#include "platform/gl_api.h"
#include "tests/gl/text_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>

namespace {

using Calls = std::vector<std::string>;

class TextBoxesGL : public TextFixture {
  protected:
    void SetUp() override {
        TextFixture::SetUp();
        gl_recorder::Install();
    }
    template <class Action> static Calls CallsOf(Action fnAction) {
        gl_recorder::Start();
        fnAction();
        return gl_recorder::Stop();
    }
    static i64 CountOf(const Calls& calls, const std::string& strPrefix) {
        return std::ranges::count_if(calls, [&](const auto& s) { return s.starts_with(strPrefix); });
    }
    /// Left, top, right and bottom pixel that is brighter than the ground; right below left for none.
    static std::array<i32, 4> Ink(const Picture& picture) {
        std::array<i32, 4> aBox{static_cast<i32>(s_uWidth), static_cast<i32>(s_uHeight), -1, -1};
        for (i32 y = 0; y < static_cast<i32>(s_uHeight); ++y)
            for (i32 x = 0; x < static_cast<i32>(s_uWidth); ++x) {
                if (picture.At(static_cast<u32>(x), static_cast<u32>(y))[0] < 128) continue;
                aBox = {std::min(aBox[0], x), std::min(aBox[1], y), std::max(aBox[2], x),
                        std::max(aBox[3], y)};
            }
        return aBox;
    }
    CTextBox_Base& AddBox(CFontUniCode& font, void (*fnSetUp)(CTextBox_Base&), const char16_t* wzText) {
        CTextBox_Base& text = *m_apTexts.emplace_back(g_stCreationTable.m_fnCreateTextBox());
        text.m_fnSetFont(&font);
        text.m_fnSetTextSize(32);
        text.m_fnSetTextColorF(1, 1, 1, 1);
        fnSetUp(text);
        EXPECT_TRUE(text.m_fnSetTextW(wzText));
        EXPECT_TRUE(text.m_fnInitialize());
        EXPECT_TRUE(m_manager.m_fnAttachBack(&text, g_uLayerFont));
        return text;
    }
};

TEST_F(TextBoxesGL, AValueChangeOfANumberBoxMakesNoGlCall) {
    CNumBox_Base& number = AddNumber(AddFont(), 9, 10, 60, 32, s_white);
    number.m_fnFlush();
    const Calls calls = CallsOf([&] {
        for (i32 i = -300; i < 300; ++i) {
            number.m_fnSetInt(i * 7919, 0);
            number.m_fnSetIntEx(i, 5, i % 2 == 0);
            number.m_fnSetFloat(static_cast<f32>(i) * 0.731f, 3);
        }
        number.m_fnSetPercent(true);
        number.m_fnSetFloat(0.5f, 1);
        number.m_fnClear();
    });
    EXPECT_EQ(calls, Calls());
}

TEST_F(TextBoxesGL, AChangedValueIsDrawnFromTheSameBuffers) {
    CNumBox_Base& number = AddNumber(AddFont(), 9, 10, 60, 32, s_white);
    const u32 uVB = number.m_pMesh->m_fnGetVB(), uIB = number.m_pMesh->m_fnGetIB();
    CDrawText_GL& batcher = TextBatcher();
    batcher.m_fnRender();
    number.m_fnSetInt(1234567, 0);
    const Calls calls = CallsOf([&] { batcher.m_fnRender(); });
    EXPECT_EQ(number.m_pMesh->m_fnGetVB(), uVB);
    EXPECT_EQ(number.m_pMesh->m_fnGetIB(), uIB);
    EXPECT_EQ(CountOf(calls, "glBufferData"), 0);
    EXPECT_EQ(CountOf(calls, "glGenBuffers"), 0);
    EXPECT_EQ(CountOf(calls, "glBindBuffer"), 4);
    EXPECT_EQ(CountOf(calls, "glDrawRangeElements"), 7);
}

TEST_F(TextBoxesGL, ANumberWithoutAValueDrawsNothing) {
    CNumBox_Base& number = AddNumber(AddFont(), 9, 10, 60, 32, s_white);
    number.m_fnClear();
    CDrawText_GL& batcher = TextBatcher();
    EXPECT_EQ(CountOf(CallsOf([&] { batcher.m_fnRender(); }), "glDraw"), 0);
}

TEST_F(TextBoxesGL, AMoveMakesNoGlCall) {
    CFontUniCode& font = AddFont();
    CTextBox_Base& text = AddText(font, u"AB", 10, 10, 32, s_white);
    CNumBox_Base& number = AddNumber(font, 9, 10, 60, 32, s_white);
    text.m_fnFlush();
    number.m_fnFlush();
    EXPECT_EQ(CallsOf([&] {
                  text.m_fnMoveTo(50, 60, 0);
                  number.m_fnMoveTo(70, 80, 0);
                  text.m_fnFlush();
                  number.m_fnFlush();
              }),
              Calls());
}

TEST_F(TextBoxesGL, AChangedTextReplacesBothBuffersOnce) {
    CTextBox_Base& text = AddText(AddFont(), u"AB", 10, 10, 32, s_white);
    text.m_fnFlush();
    const Calls calls = CallsOf([&] {
        text.m_fnSetTextW(u"BA");
        text.m_fnFlush();
        text.m_fnFlush();
    });
    EXPECT_EQ(CountOf(calls, "glBufferData"), 2);
    EXPECT_EQ(CountOf(calls, "glGenBuffers"), 0);
    EXPECT_EQ(CallsOf([&] { text.m_fnFlush(); }), Calls());
}

TEST_F(TextBoxesGL, BoxesGiveTheirBuffersBack) {
    CFontUniCode& font = AddFont();
    AddText(font, u"AB", 10, 10, 32, s_white);
    AddNumber(font, 9, 10, 60, 32, s_white);
    EXPECT_EQ(CountOf(CallsOf([&] { Clear(); }), "glDeleteBuffers"), 4);
}

TEST_F(TextBoxesGL, TextShowsInsideItsWindowOnly) {
    CFontUniCode& font = AddFont();
    const f32 fWhole = AddText(font, u"HHHHHHHHHH", 0, 10, 32, s_white).m_fnGetTextWidth();
    ASSERT_GT(fWhole, 150);
    Clear();
    CTextBox_Base& text = AddBox(
        font,
        [](CTextBox_Base& box) {
            box.m_fnSetAnchor(7, 0, 0);
            box.m_fnSetFitToText(false);
            box.m_fnSetClipWidth(100);
        },
        u"HHHHHHHHHH");
    text.m_fnMoveTo(20, 40, 0);
    const Picture picture = DrawText(0);
    picture.Save("text_window");
    const std::array<i32, 4> aInk = Ink(picture);
    EXPECT_GE(aInk[0], 20);
    EXPECT_LT(aInk[2], 120);
    EXPECT_GT(aInk[2], 80);
    EXPECT_GE(aInk[1], 40);
    EXPECT_LE(aInk[3], 40 + 36);
}

TEST_F(TextBoxesGL, LongTextWrapsAtItsBoxsWidth) {
    CTextBox_Base& text = AddBox(
        AddFont(),
        [](CTextBox_Base& box) {
            box.m_fnSetAutoSize(false);
            box.m_fnSetSize(110, 32);
        },
        u"HHHHHHHHHH");
    text.m_fnMoveTo(20, 40, 0);
    EXPECT_GE(text.m_fSizeH, 64);
    const Picture picture = DrawText(0);
    picture.Save("text_wrap");
    const std::array<i32, 4> aInk = Ink(picture);
    EXPECT_LT(aInk[2], 130);
    EXPECT_GT(aInk[3], 40 + 32);
    EXPECT_LE(aInk[3], 40 + static_cast<i32>(text.m_fSizeH) + 4);
}

TEST_F(TextBoxesGL, ARightAnchoredNumberKeepsItsRightEdgeFrom9To10) {
    CNumBox_Base& number = AddNumber(AddFont(u"DejaVu Sans Mono"), 8, 0, 0, 32, s_white);
    number.m_fnSetAnchor(3, 40, 30);
    number.m_fnResolvePosition(nullptr);
    const std::array<i32, 4> aOne = Ink(DrawText(0));
    ASSERT_GE(aOne[2], aOne[0]);
    const Calls calls = CallsOf([&] {
        number.m_fnSetInt(88, 0);
        number.m_fnResolvePosition(nullptr); // the manager's part, for a box in the tree
    });
    EXPECT_EQ(calls, Calls());
    const std::array<i32, 4> aTwo = Ink(DrawText(0));
    EXPECT_EQ(aTwo[2], aOne[2]);
    EXPECT_NEAR(aOne[0] - aTwo[0], number.m_fNumberW / 2, 1);
    EXPECT_EQ(aTwo[1], aOne[1]);
}

TEST_F(TextBoxesGL, NumbersShowPaddingSignDecimalsAndPercent) {
    CFontUniCode& font = AddFont(u"DejaVu Sans Mono");
    AddNumber(font, 0, 20, 10, 32, s_white).m_fnSetIntEx(5, 3, false);
    AddNumber(font, 0, 20, 45, 32, s_white).m_fnSetInt(5, 3);
    AddNumber(font, 0, 20, 80, 32, s_white).m_fnSetFloat(-0.5f, 1);
    CNumBox_Base& percent = AddNumber(font, 0, 20, 115, 32, s_white);
    percent.m_fnSetPercent(true);
    percent.m_fnSetFloat(0.25f, 0);
    AddNumber(font, 0, 20, 150, 32, s_white).m_fnSetInt(123456789, 0);
    const Picture picture = DrawText(0);
    picture.Save("numbers");
    const f32 fCell = percent.m_fCellWidth * 32;
    // Whether a cell of a row holds ink: its glyph stands well inside it.
    const auto HasInk = [&](u32 uRow, u32 uCell) {
        const u32 uLeft = static_cast<u32>(20 + fCell * static_cast<f32>(uCell)) + 3;
        for (u32 y = 10 + 35 * uRow; y < 45 + 35 * uRow; ++y)
            for (u32 x = uLeft; x < uLeft + static_cast<u32>(fCell) - 6; ++x)
                if (picture.At(x, y)[0] > 128) return true;
        return false;
    };
    const char* const aszExpected[] = {"###     ", "  #     ", "####    ", "###     ", "########"};
    for (u32 uRow = 0; uRow < 5; ++uRow) {
        std::string strShown;
        for (u32 uCell = 0; uCell < 8; ++uCell) strShown += HasInk(uRow, uCell) ? '#' : ' ';
        EXPECT_EQ(strShown, aszExpected[uRow]) << "row " << uRow;
    }
}

} // namespace
