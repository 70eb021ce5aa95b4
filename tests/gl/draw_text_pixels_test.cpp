// Text as it is seen, with real glyphs: colour, opacity, shadow, halo, order and direction.
#include "draw/canvas.h"
#include "platform/gl_api.h"
#include "tests/gl/text_fixture.h"

#include <algorithm>
#include <cmath>

namespace {

const char16_t* const g_wzBlock = u"\u2588";

struct stBox {
    u32 uLeft = 0xFFFF, uTop = 0xFFFF, uRight = 0, uBottom = 0; ///< inclusive
};

class DrawTextPixels : public TextFixture {
  protected:
    /// Box of all pixels with a red above uLevel.
    static stBox BoxAbove(const Picture& picture, u32 uLevel) {
        stBox box;
        for (u32 y = 0; y < picture.uHeight; ++y)
            for (u32 x = 0; x < picture.uWidth; ++x)
                if (picture.At(x, y)[0] > uLevel) {
                    box.uLeft = std::min(box.uLeft, x);
                    box.uTop = std::min(box.uTop, y);
                    box.uRight = std::max(box.uRight, x);
                    box.uBottom = std::max(box.uBottom, y);
                }
        return box;
    }
    /// A pixel in the middle of a white block at size 64, 100 from the left and 60 from the top.
    std::array<u32, 2> Middle(CFontUniCode& font) {
        AddText(font, g_wzBlock, 100, 60, 64, s_white);
        const stBox box = BoxAbove(DrawText(0), 254);
        Clear();
        EXPECT_LT(box.uLeft + 8, box.uRight);
        EXPECT_LT(box.uTop + 8, box.uBottom);
        return {(box.uLeft + box.uRight) / 2, (box.uTop + box.uBottom) / 2};
    }
    static u8 Byte(f32 f) { return static_cast<u8>(std::lround(std::clamp(f, 0.0f, 1.0f) * 255)); }
    static Pixel Over(const Color& color, f32 fGrey) {
        Pixel pixel = {0, 0, 0, 255};
        for (u32 c = 0; c < 3; ++c) pixel[c] = Byte(color[c] * color[3] + fGrey * (1 - color[3]));
        return pixel;
    }
    static f32 Part(const Picture& picture, i32 x, i32 y) {
        if (x < 0 || y < 0) return 0;
        return picture.At(static_cast<u32>(x), static_cast<u32>(y))[0] / 255.0f;
    }
    static Pixel OpaqueAt(const Picture& picture, const std::array<u32, 2>& at) {
        Pixel pixel = picture.At(at[0], at[1]);
        pixel[3] = 255;
        return pixel;
    }
};

} // namespace

TEST_F(DrawTextPixels, ColourAndOpacityAreExactlyWhatTheControlWasGiven) {
    CFontUniCode& font = AddFont();
    const auto at = Middle(font);
    const Color aColors[] = {{1, 0, 0, 1},     {0.2f, 0.6f, 1, 1},
                             {1, 1, 1, 0.5f},  {0.9f, 0.4f, 0.1f, 0.25f},
                             {0, 0, 0, 0.75f}, {0.5f, 0.5f, 0.5f, 0}};
    for (const Color& color : aColors) {
        AddText(font, g_wzBlock, 100, 60, 64, color);
        EXPECT_TRUE(Near(OpaqueAt(DrawText(0.5f), at), Over(color, 0.5f), 1)) << color[0] << " " << color[3];
        Clear();
    }
}

TEST_F(DrawTextPixels, SmallSizesKeepTheColourThroughTheLevelsOfTheAtlas) {
    CFontUniCode& font = AddFont();
    for (f32 fSize : {8.0f, 12.0f, 16.0f, 24.0f, 96.0f}) {
        AddText(font, g_wzBlock, 100, 60, fSize, s_white);
        const stBox box = BoxAbove(DrawText(0), 200);
        Clear();
        const std::array<u32, 2> at = {(box.uLeft + box.uRight) / 2, (box.uTop + box.uBottom) / 2};
        const Color color = {0.2f, 0.8f, 0.4f, 0.8f};
        AddText(font, g_wzBlock, 100, 60, fSize, color);
        EXPECT_TRUE(Near(OpaqueAt(DrawText(0.5f), at), Over(color, 0.5f), 1)) << fSize;
        Clear();
    }
}

TEST_F(DrawTextPixels, ATintIsAFilterOverTextAndShadow) {
    CFontUniCode& font = AddFont();
    const auto at = Middle(font);
    const Color text = {0.8f, 0.6f, 0.4f, 0.9f}, shadow = {0.9f, 0.9f, 0.2f, 1};
    CTextBox_Base& box = AddText(font, g_wzBlock, 100, 60, 64, text, &shadow);
    CDrawText_GL& batcher = TextBatcher();
    const auto drawn = [&](const Color& tint) {
        glClearColor(0.5f, 0.5f, 0.5f, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        batcher.m_fnRender(); // what it sets stays set in the program
        glClear(GL_COLOR_BUFFER_BIT);
        batcher.m_pProgramText->m_fnUse();
        font.m_fnBindTexture(0);
        box.m_fnDrawText(&batcher, box.m_pEntity->m_fnGetWorldForDraw(), tint.data());
        return OpaqueAt(Read(), at);
    };
    const auto layered = [](const Color& lower, const Color& upper) {
        Pixel pixel = {0, 0, 0, 255};
        for (u32 c = 0; c < 3; ++c) {
            const f32 f = lower[c] * lower[3] + 0.5f * (1 - lower[3]);
            pixel[c] = Byte(upper[c] * upper[3] + f * (1 - upper[3]));
        }
        return pixel;
    };
    EXPECT_TRUE(Near(drawn(s_white), layered(shadow, text), 1));
    EXPECT_TRUE(Near(drawn({1, 0.5f, 0, 1}), layered({0.9f, 0.5f, 0, 1}, {0.8f, 0.5f, 0, 0.9f}), 1));
    EXPECT_TRUE(Near(drawn({1, 1, 1, 0.5f}), layered({0.9f, 0.9f, 0.2f, 0.5f}, {0.8f, 0.6f, 0.4f, 0.5f}), 1));
}

TEST_F(DrawTextPixels, TheShadowIsTheTextOnePixelDownAndRightAndNeverAboveIt) {
    CFontUniCode& font = AddFont();
    const char16_t* const wzText = u"WAgj\u2588i";
    AddText(font, wzText, 20, 40, 48, s_white);
    const Picture bare = DrawText(0);
    Clear();
    AddText(font, wzText, 20, 40, 48, s_white, &s_black);
    const Picture picture = DrawText(0.5f);
    picture.Save("text_shadow");
    u32 uShadowed = 0, uText = 0;
    for (i32 y = 0; y < static_cast<i32>(s_uHeight); ++y)
        for (i32 x = 0; x < static_cast<i32>(s_uWidth); ++x) {
            const f32 fText = Part(bare, x, y), fShadow = Part(bare, x - 1, y - 1);
            const f32 fExpected = 0.5f * (1 - fShadow) * (1 - fText) + fText;
            ASSERT_NEAR(Part(picture, x, y), fExpected, 3.0f / 255) << x << ", " << y;
            uShadowed += fShadow > 0.9f && fText < 0.1f;
            uText += fText == 1;
        }
    EXPECT_GT(uShadowed, 20u);
    EXPECT_GT(uText, 500u);
}

TEST_F(DrawTextPixels, AHaloComesWithTheGlowProgramOnlyAndIsAtMostHalf) {
    CFontUniCode& font = AddFont();
    AddText(font, u"W\u2588", 100, 60, 64, s_white);
    const Picture plain = DrawText(0);
    g_bTextGlow = true;
    const Picture glow = DrawText(0);
    glow.Save("text_glow");
    u32 uHalo = 0, uLeast = 255;
    for (u32 y = 0; y < s_uHeight; ++y)
        for (u32 x = 0; x < s_uWidth; ++x) {
            const u32 uPlain = plain.At(x, y)[0], uGlow = glow.At(x, y)[0];
            ASSERT_GE(uGlow + 1, uPlain) << x << ", " << y;
            if (uPlain == 255) uLeast = std::min(uLeast, uGlow);
            // Of two glyphs side by side both halos may lie on a pixel.
            if (uPlain == 0) {
                ASSERT_LE(uGlow, 192u) << x << ", " << y;
            }
            uHalo += uPlain == 0 && uGlow > 16;
        }
    EXPECT_EQ(uLeast, 255u);
    EXPECT_GT(uHalo, 300u);
    g_bTextGlow = false;
    EXPECT_EQ(DrawText(0).aBytes, plain.aBytes);
}

TEST_F(DrawTextPixels, AHaloOfOneGlyphIsAtMostHalfAndFadesOutwards) {
    CFontUniCode& font = AddFont();
    AddText(font, g_wzBlock, 100, 60, 64, s_white);
    const stBox box = BoxAbove(DrawText(0), 254);
    g_bTextGlow = true;
    const Picture glow = DrawText(0);
    const u32 y = (box.uTop + box.uBottom) / 2;
    u32 uFormer = 129;
    for (u32 x = box.uRight + 3; x < box.uRight + 40; ++x) {
        EXPECT_LE(glow.At(x, y)[0], uFormer) << x;
        uFormer = glow.At(x, y)[0];
    }
    EXPECT_GT(glow.At(box.uRight + 4, y)[0], 40u);
    EXPECT_EQ(uFormer, 0u);
}

TEST_F(DrawTextPixels, TheHaloHasTheColourOfItsText) {
    CFontUniCode& font = AddFont();
    AddText(font, g_wzBlock, 100, 60, 64, s_white);
    const stBox box = BoxAbove(DrawText(0), 254);
    Clear();
    g_bTextGlow = true;
    AddText(font, g_wzBlock, 100, 60, 64, {1, 0.5f, 0, 1});
    const Pixel pixel = DrawText(0).At(box.uRight + 4, (box.uTop + box.uBottom) / 2);
    EXPECT_GT(pixel[0], 40);
    EXPECT_NEAR(pixel[1], pixel[0] / 2, 2);
    EXPECT_EQ(pixel[2], 0);
}

TEST_F(DrawTextPixels, LaterControlsLieOverEarlierOnesOfTheirFontAndLaterFontsOverEarlierOnes) {
    CFontUniCode& first = AddFont();
    CFontUniCode& second = AddFont(u"DejaVu Sans Mono");
    const auto at = Middle(first);
    AddText(first, g_wzBlock, 100, 60, 64, {1, 0, 0, 1});
    AddText(first, g_wzBlock, 100, 60, 64, {0, 1, 0, 1});
    EXPECT_EQ(OpaqueAt(DrawText(0), at), (Pixel{0, 255, 0, 255}));
    m_pTextBatcher.reset();
    AddText(second, g_wzBlock, 100, 60, 64, {0, 0, 1, 1});
    AddText(first, g_wzBlock, 100, 60, 64, {1, 1, 0, 1});
    EXPECT_EQ(OpaqueAt(DrawText(0), at), (Pixel{0, 0, 255, 255}));
}

TEST_F(DrawTextPixels, GlyphsStandUprightAndReadFromTheLeft) {
    AddText(AddFont(), u"L.", 40, 40, 64, s_white);
    const Picture picture = DrawText(0);
    picture.Save("text_upright");
    const stBox box = BoxAbove(picture, 200);
    // The upright of the L on the left, its foot below; nothing at the top right.
    EXPECT_GT(picture.At(box.uLeft + 2, box.uTop + 4)[0], 200);
    EXPECT_GT(picture.At(box.uLeft + 12, box.uBottom - 2)[0], 200);
    EXPECT_EQ(picture.At(box.uLeft + 20, box.uTop + 4)[0], 0);
    EXPECT_EQ(picture.At(box.uRight - 2, box.uTop + 4)[0], 0) << "the full stop is at the right, and low";
    EXPECT_GT(box.uLeft, 38u);
    EXPECT_LT(box.uLeft, 60u);
}

TEST_F(DrawTextPixels, AGlyphThatIsNotInTheAtlasShowsOnTheFrameItIsAskedFor) {
    CFontUniCode& font = AddFont();
    CTextBox_Base& text = AddText(font, u"  ", 100, 60, 64, s_white);
    EXPECT_EQ(BoxAbove(DrawText(0), 0).uRight, 0u) << "blanks make no quad";
    Clear();
    CTextBox_Base& other = AddText(font, u"A", 100, 60, 64, s_white);
    EXPECT_GT(BoxAbove(DrawText(0), 200).uRight, 0u);
    EXPECT_LT(font.m_fnFindChar(0x416), 0);
    ASSERT_TRUE(other.m_fnSetTextW(u"\u0416"));
    other.m_fnFlush();
    EXPECT_GE(font.m_fnFindChar(0x416), 0);
    const stBox box = BoxAbove(DrawText(0), 200);
    EXPECT_GT(box.uRight - box.uLeft, 30u);
    (void)text;
}

TEST_F(DrawTextPixels, NumbersChangeOnThePictureWithoutAnUpload) {
    CFontUniCode& font = AddFont();
    CNumBox_Base& number = AddNumber(font, 1, 100, 60, 48, s_white);
    const Picture one = DrawText(0);
    number.m_fnSetInt(8, 0);
    const Picture eight = DrawText(0);
    eight.Save("text_number");
    EXPECT_NE(one.aBytes, eight.aBytes);
    number.m_fnSetInt(1, 0);
    EXPECT_EQ(DrawText(0).aBytes, one.aBytes);
}

TEST_F(DrawTextPixels, TheCanvasIsStretchedOverTheWindow) {
    CFontUniCode& font = AddFont();
    AddText(font, g_wzBlock, 100, 60, 64, s_white);
    const stBox box = BoxAbove(DrawText(0), 127);
    g_uCanvasW = s_uWidth * 2;
    g_uCanvasH = s_uHeight * 2;
    TextBatcher().m_fnOnResize();
    const stBox half = BoxAbove(DrawText(0), 127);
    EXPECT_NEAR(half.uLeft, box.uLeft / 2.0, 1);
    EXPECT_NEAR(half.uBottom, box.uBottom / 2.0, 1);
}

TEST_F(DrawTextPixels, ACompatibilityContextShowsTheSame) {
    AddText(AddFont(), u"Ag\u2588", 100, 60, 64, s_white, &s_black);
    const Picture core = DrawText(0.5f);
    Clear();
    m_apFonts.clear();
    UseContext(false);
    AddText(AddFont(), u"Ag\u2588", 100, 60, 64, s_white, &s_black);
    EXPECT_EQ(DrawText(0.5f).aBytes, core.aBytes);
}
