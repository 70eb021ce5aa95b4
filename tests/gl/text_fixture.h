#pragma once
// A context, a manager, the text batcher and real fonts. One canvas unit is one pixel.
#include "batch/draw_text_gl.h"
#include "controls/flip_box.h"
#include "controls/num_box.h"
#include "controls/text_box.h"
#include "font/font_unicode.h"
#include "tests/gl/draw_fixture.h"

#include <array>
#include <memory>
#include <vector>

using Color = std::array<f32, 4>;

class TextFixture : public DrawFixture {
  protected:
    static constexpr Color s_white = {1, 1, 1, 1}, s_black = {0, 0, 0, 1};

    void TearDown() override;
    /// An atlas of 8 by 8 cells of 128 pixels.
    CFontUniCode& AddFont(const char16_t* wzFace = u"DejaVu Sans");
    CTextBox_Base& AddText(CFontUniCode& font, const char16_t* wzText, f32 x, f32 y, f32 fSize,
                           const Color& color, const Color* pShadow = nullptr);
    CNumBox_Base& AddNumber(CFontUniCode& font, i32 iValue, f32 x, f32 y, f32 fSize, const Color& color);
    CFlipBox_Base& AddFlip(CFontUniCode& font, std::span<const stFlipText> states, f32 x, f32 y, f32 fSize,
                           const Color* pShadow = nullptr);
    CDrawText_GL& TextBatcher();
    /// Clears to a grey and draws all text.
    Picture DrawText(f32 fGrey);
    /// Forgets all boxes, and with them the lists of the batcher.
    void Clear();

    std::vector<std::unique_ptr<CFontUniCode>> m_apFonts;
    std::vector<std::unique_ptr<CTextBox_Base>> m_apTexts;
    std::vector<std::unique_ptr<CNumBox_Base>> m_apNumbers;
    std::vector<std::unique_ptr<CFlipBox_Base>> m_apFlips;
    std::unique_ptr<CDrawText_GL> m_pTextBatcher;
};
