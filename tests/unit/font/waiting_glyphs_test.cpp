// Glyphs of sets that are drawn when they are asked for, or a few a frame.
#include "base/host_care.h"
#include "font/kept_glyphs.h"
#include "font/waiting_glyphs.h"
#include "test_font.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr const char16_t* g_wzSet = u"AyQ|abcdefghij"; // more than a frame's share

struct WaitingGlyphs : ::testing::Test {
    void SetUp() override { g_stHostCare.bOuterGuard = true; }
    void TearDown() override {
        g_stHostCare = {};
        g_fnResetWaitingGlyphs();
        g_fnDropKeptGlyphs();
    }
    static void Tend(CTestFont& font) {
        CFontUniCode* apFont[] = {nullptr, &font};
        g_fnTendGlyphs(apFont, 2);
    }
    static void Ask(CTestFont& font, u32 uCode) {
        f32 fWidth = 0.0f;
        EXPECT_TRUE(font.m_fnGetCharInfo(uCode, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &fWidth,
                                         nullptr));
        EXPECT_GT(fWidth, 0.0f);
    }
    static std::unique_ptr<CTestFont> AllAtOnce() {
        g_stHostCare.bOuterGuard = false;
        auto pFont = ReadyFont(4, 128);
        g_fnFontAddText(pFont.get(), g_wzSet);
        g_stHostCare.bOuterGuard = true;
        return pFont;
    }
};

} // namespace

TEST_F(WaitingGlyphs, ASetTakesItsCellsAndDrawsNothing) {
    const auto pFont = ReadyFont(4, 128);
    pFont->m_aDrawn.clear();
    g_fnFontAddText(pFont.get(), g_wzSet);
    EXPECT_TRUE(pFont->m_aDrawn.empty());
    EXPECT_EQ(pFont->m_vecWaiting.size(), std::char_traits<char16_t>::length(g_wzSet));
    EXPECT_GE(pFont->m_fnFindChar('j'), 0);
}

TEST_F(WaitingGlyphs, OneThatIsAskedForIsDrawnThen) {
    const auto pFont = ReadyFont(4, 128);
    g_fnFontAddText(pFont.get(), g_wzSet);
    pFont->m_aDrawn.clear();
    Ask(*pFont, 'Q');
    Ask(*pFont, 'Q');
    EXPECT_EQ(pFont->m_aDrawn, std::vector<std::u16string>{u"Q"});
    f32 fW = 0.0f, fH = 0.0f;
    pFont->m_fnGetCharSize('g', &fW, &fH);
    EXPECT_GT(fW, 0.0f);
    EXPECT_FALSE(pFont->m_fnIsWaiting('Q'));
    EXPECT_FALSE(pFont->m_fnIsWaiting('g'));
    EXPECT_TRUE(pFont->m_fnIsWaiting('A'));
}

TEST_F(WaitingGlyphs, AFewAFrameAndInTheEndAllAreAsIfDrawnAtOnce) {
    const auto pWhole = AllAtOnce();
    const auto pFont = ReadyFont(4, 128);
    g_fnFontAddText(pFont.get(), g_wzSet);
    Ask(*pFont, 'g');
    const std::size_t uBefore = pFont->m_vecWaiting.size();
    Tend(*pFont);
    EXPECT_LT(pFont->m_vecWaiting.size(), uBefore);
    EXPECT_FALSE(pFont->m_vecWaiting.empty());
    for (u32 u = 0; u < 10; ++u) Tend(*pFont);
    EXPECT_TRUE(pFont->m_vecWaiting.empty());
    EXPECT_TRUE(AreAlike(*pWhole, *pFont));
    EXPECT_EQ(pWhole->m_uAtlasRows, pFont->m_uAtlasRows);
}

TEST_F(WaitingGlyphs, OneUploadTakesAllOfAFrameAndBehindItEachItsOwn) {
    const auto pFont = ReadyFont(4, 128);
    g_fnFontAddText(pFont.get(), g_wzSet);
    const u32 uBefore = pFont->m_uUploads;
    for (const u32 uCode : {'A', 'g', 'Q'}) Ask(*pFont, uCode);
    EXPECT_EQ(pFont->m_uUploads, uBefore) << "ahead of the first frame";
    Tend(*pFont);
    EXPECT_EQ(pFont->m_uUploads, uBefore + 1);
    const u32 uLeft = pFont->m_vecWaiting.back();
    Ask(*pFont, uLeft); // while the frame is drawn: what is drawn next must have it
    EXPECT_EQ(pFont->m_uUploads, uBefore + 2);
    g_fnLeaveUploads();
    Ask(*pFont, pFont->m_vecWaiting.back());
    EXPECT_EQ(pFont->m_uUploads, uBefore + 2);
    Tend(*pFont);
    EXPECT_EQ(pFont->m_uUploads, uBefore + 3);
    for (u32 u = 0; u < 10; ++u) Tend(*pFont);
    const u32 uDone = pFont->m_uUploads;
    for (u32 u = 0; u < 10; ++u) Tend(*pFont);
    EXPECT_EQ(pFont->m_uUploads, uDone) << "nothing is left to do";
}

TEST_F(WaitingGlyphs, OneThatIsRemovedWaitsNoMoreAndAFileHasThemAll) {
    const auto pWhole = AllAtOnce();
    const auto pFont = ReadyFont(4, 128);
    g_fnFontAddText(pFont.get(), g_wzSet);
    std::FILE* const pFile = std::tmpfile();
    ASSERT_TRUE(pFile && pFont->m_fnSaveToStream(pFile));
    std::fclose(pFile);
    EXPECT_TRUE(pFont->m_vecWaiting.empty());
    EXPECT_TRUE(AreAlike(*pWhole, *pFont));
    const auto pOther = ReadyFont(4, 128);
    g_fnFontAddText(pOther.get(), u"Ag");
    EXPECT_TRUE(g_fnFontRemoveChar(pOther.get(), 'A'));
    EXPECT_EQ(pOther->m_vecWaiting, std::vector<u32>{'g'});
}

TEST_F(WaitingGlyphs, TheyAreNotKeptOverAReload) {
    {
        const auto pFont = ReadyFont(4, 128);
        g_fnFontAddText(pFont.get(), u"AgQ");
        Ask(*pFont, 'g');
        g_fnKeepGlyphs(*pFont);
    }
    const auto pFont = ReadyFont(4, 128);
    pFont->m_aDrawn.clear();
    g_fnFontAddText(pFont.get(), u"AgQ");
    EXPECT_EQ(pFont->m_vecWaiting, (std::vector<u32>{'A', 'Q'})) << "the one that was drawn came along";
}

TEST_F(WaitingGlyphs, WithoutTheKeyAllAreDrawnAsTheyAreAdded) {
    g_stHostCare.bOuterGuard = false;
    const auto pFont = ReadyFont(4, 128);
    pFont->m_aDrawn.clear();
    g_fnFontAddText(pFont.get(), u"AgQ");
    EXPECT_EQ(pFont->m_aDrawn, (std::vector<std::u16string>{u"A", u"g", u"Q"}));
    EXPECT_TRUE(pFont->m_vecWaiting.empty());
}
