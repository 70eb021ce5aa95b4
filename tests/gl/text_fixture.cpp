#include "tests/gl/text_fixture.h"

#include "draw/creation_table.h"
#include "platform/gl_api.h"

void TextFixture::TearDown() {
    Clear();
    m_apFonts.clear();
    g_bTextGlow = false;
    DrawFixture::TearDown();
}

CFontUniCode& TextFixture::AddFont(const char16_t* wzFace) {
    CFontUniCode& font = *m_apFonts.emplace_back(g_stCreationTable.m_fnCreateFont());
    font.m_fnSetLayout(8, 8, 0);
    font.m_fnSetTexSize(1024, 1024);
    font.m_fnSetFontName(wzFace);
    font.m_fnSetFontWeight(400);
    EXPECT_TRUE(font.m_fnInitialize(false));
    return font;
}

CTextBox_Base& TextFixture::AddText(CFontUniCode& font, const char16_t* wzText, f32 x, f32 y, f32 fSize,
                                    const Color& color, const Color* pShadow) {
    CTextBox_Base& text = *m_apTexts.emplace_back(g_stCreationTable.m_fnCreateTextBox());
    text.m_fnSetFont(&font);
    text.m_fnSetTextSize(fSize);
    text.m_fnSetTextColorF(color[0], color[1], color[2], color[3]);
    text.m_fnSetShadow(pShadow != nullptr);
    if (pShadow) text.m_fnSetShadowColorF((*pShadow)[0], (*pShadow)[1], (*pShadow)[2], (*pShadow)[3]);
    EXPECT_TRUE(text.m_fnSetTextW(wzText));
    EXPECT_TRUE(text.m_fnInitialize());
    text.m_fnSetPosition(x, y, 0);
    EXPECT_TRUE(m_manager.m_fnAttachBack(&text, g_uLayerFont));
    return text;
}

CNumBox_Base& TextFixture::AddNumber(CFontUniCode& font, i32 iValue, f32 x, f32 y, f32 fSize,
                                     const Color& color) {
    CNumBox_Base& number = *m_apNumbers.emplace_back(g_stCreationTable.m_fnCreateNumBox());
    number.m_fnSetFont(&font);
    number.m_fnSetTextSize(fSize);
    number.m_fnSetTextColorF(color[0], color[1], color[2], color[3]);
    EXPECT_TRUE(number.m_fnInitialize());
    number.m_fnSetInt(iValue, 0);
    number.m_fnSetPosition(x, y, 0);
    EXPECT_TRUE(m_manager.m_fnAttachBack(&number, g_uLayerFont));
    return number;
}

CFlipBox_Base& TextFixture::AddFlip(CFontUniCode& font, std::span<const stFlipText> states, f32 x, f32 y,
                                    f32 fSize, const Color* pShadow) {
    CFlipBox_Base& flip = *m_apFlips.emplace_back(g_stCreationTable.m_fnCreateFlipBox());
    flip.m_fnSetFont(&font);
    flip.m_fnSetTextSize(fSize);
    flip.m_fnSetShadow(pShadow != nullptr);
    if (pShadow) flip.m_fnSetShadowColorF((*pShadow)[0], (*pShadow)[1], (*pShadow)[2], (*pShadow)[3]);
    EXPECT_TRUE(flip.m_fnSetStates(states));
    EXPECT_TRUE(flip.m_fnInitialize());
    flip.m_fnSetPosition(x, y, 0);
    EXPECT_TRUE(m_manager.m_fnAttachBack(&flip, g_uLayerFont));
    return flip;
}

CDrawText_GL& TextFixture::TextBatcher() {
    if (!m_pTextBatcher) {
        m_pTextBatcher.reset(dynamic_cast<CDrawText_GL*>(g_stCreationTable.m_fnCreateDrawText()));
        EXPECT_TRUE(m_pTextBatcher->m_fnInitialize());
    }
    return *m_pTextBatcher;
}

Picture TextFixture::DrawText(f32 fGrey) {
    glClearColor(fGrey, fGrey, fGrey, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    TextBatcher().m_fnRender();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    return Read();
}

void TextFixture::Clear() {
    m_pTextBatcher.reset();
    for (const auto& pText : m_apTexts) m_manager.m_fnDetach(pText.get(), g_uLayerFont);
    for (const auto& pNumber : m_apNumbers) m_manager.m_fnDetach(pNumber.get(), g_uLayerFont);
    for (const auto& pFlip : m_apFlips) m_manager.m_fnDetach(pFlip.get(), g_uLayerFont);
    m_apTexts.clear();
    m_apNumbers.clear();
    m_apFlips.clear();
}
