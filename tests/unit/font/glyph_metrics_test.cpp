// Every platform's rasteriser is held to one table, within a pixel: what is laid out on one stands on the
// other.
#include "test_font.h"

#include <gtest/gtest.h>

#include <cstdlib>

/// Pixels; the ink's box as m_fnInkBox gives it.
struct stMetrics {
    char16_t m_wcCode;
    i32 m_iAdvance, m_iLeft, m_iTop, m_iWidth, m_iHeight;
};

static const stMetrics g_astSans64[] = {
#include "tests/support/glyph_metrics_sans_64.inc"
};
static const stMetrics g_astSans12[] = {
#include "tests/support/glyph_metrics_sans_12.inc"
};
static const stMetrics g_astMono64[] = {
#include "tests/support/glyph_metrics_mono_64.inc"
};
static const stMetrics g_astMono12[] = {
#include "tests/support/glyph_metrics_mono_12.inc"
};

static stMetrics Measure(CTestFont& font, char16_t wc) {
    stMetrics st = {wc, platform::GlyphExtent(font.m_hDC, font.m_hFont, &wc, 1), 0, 0, 0, 0};
    font.m_fnDrawCharMain(wc);
    font.m_fnInkBox(&st.m_iLeft, &st.m_iTop, &st.m_iWidth, &st.m_iHeight);
    return st;
}

template <std::size_t N> static void Compare(const stMetrics (&ast)[N], u32 uSize, const char16_t* wzFace) {
    ASSERT_EQ(N, 95u);
    auto pFont = ReadyFont(1, uSize * 2, wzFace);
    ASSERT_NE(pFont, nullptr);
    u32 uDifferent = 0;
    for (const stMetrics& stWanted : ast) {
        const stMetrics st = Measure(*pFont, stWanted.m_wcCode);
        const std::string where = "code " + std::to_string(stWanted.m_wcCode);
        EXPECT_LE(std::abs(st.m_iAdvance - stWanted.m_iAdvance), 1) << where;
        EXPECT_LE(std::abs(st.m_iLeft - stWanted.m_iLeft), 1) << where;
        EXPECT_LE(std::abs(st.m_iTop - stWanted.m_iTop), 1) << where;
        EXPECT_LE(std::abs(st.m_iWidth - stWanted.m_iWidth), 1) << where;
        EXPECT_LE(std::abs(st.m_iHeight - stWanted.m_iHeight), 1) << where;
        uDifferent += st.m_iAdvance != stWanted.m_iAdvance || st.m_iLeft != stWanted.m_iLeft ||
                      st.m_iTop != stWanted.m_iTop || st.m_iWidth != stWanted.m_iWidth ||
                      st.m_iHeight != stWanted.m_iHeight;
    }
    testing::Test::RecordProperty("codes that differ at all", static_cast<int>(uDifferent));
}

TEST(GlyphMetrics, PrintableAsciiOfSansAtSize64) { Compare(g_astSans64, 64, u"DejaVu Sans"); }
TEST(GlyphMetrics, PrintableAsciiOfSansAtSize12) { Compare(g_astSans12, 12, u"DejaVu Sans"); }
TEST(GlyphMetrics, PrintableAsciiOfMonoAtSize64) { Compare(g_astMono64, 64, u"DejaVu Sans Mono"); }
TEST(GlyphMetrics, PrintableAsciiOfMonoAtSize12) { Compare(g_astMono12, 12, u"DejaVu Sans Mono"); }
