// Rows by hand: panel at (10, 50), 200 wide and 40 high; items 30, 20 and 10 wide.
#include "tests/unit/frame/update_fixture.h"

namespace {

class UpdateAlign : public UpdateTest {
  protected:
    void SetUp() override {
        UpdateTest::SetUp();
        m_pPanel = Panel(1);
        m_pPanel->m_fnSetAnchor(1, 10, 50);
        const f32 afWidths[3] = {30, 20, 10};
        for (u32 u = 0; u < 3; ++u) {
            m_apItems[u] = Text(u + 1, afWidths[u]);
            Hang(m_pPanel, {m_apItems[u]});
            m_apItems[u]->m_fnSetAnchor(7, 0, 4);
        }
    }
    void Row(i32 iMode, f32 fGapFactor) { g_fnAlignRow(m_pPanel, m_apItems, iMode, fGapFactor); }
    void Custom(i32 iMode, f32 fLeft, f32 fTop, f32 fGap) {
        g_fnAlignCustom(m_pPanel, m_apItems, iMode, fLeft, fTop, fGap);
    }
    void ExpectLefts(f32 a, f32 b, f32 c) {
        EXPECT_FLOAT_EQ(Left(m_apItems[0]), a);
        EXPECT_FLOAT_EQ(Left(m_apItems[1]), b);
        EXPECT_FLOAT_EQ(Left(m_apItems[2]), c);
    }
    CPanel_Base* m_pPanel = nullptr;
    CControl* m_apItems[3] = {};
};

TEST_F(UpdateAlign, Mode7StartsAtThePanelsLeftEdge) {
    Row(7, 6.0f);
    ExpectLefts(10, 10 + 36, 10 + 36 + 26);
    for (CControl* p : m_apItems) {
        EXPECT_EQ(Code(p), 7);
        EXPECT_FLOAT_EQ(Top(p), 50 + 40 - 20 - 4) << "the distance from the lower edge stays";
    }
}

TEST_F(UpdateAlign, Mode8PutsTheRowInTheMiddleWithoutTheLastGap) {
    Row(8, 5.0f);
    // 30 + 5 + 20 + 5 + 10 = 70; (200 - 70) / 2 = 65.
    ExpectLefts(10 + 65, 10 + 65 + 35, 10 + 65 + 35 + 25);
    f32 fOffset = 0;
    m_apItems[0]->m_fnGetAnchor(nullptr, &fOffset, nullptr);
    EXPECT_EQ(Code(m_apItems[0]), 8);
    EXPECT_FLOAT_EQ(fOffset, 65 + 15 - 100);
}

TEST_F(UpdateAlign, Mode9GivesTheSameEdgesByDistancesFromTheRight) {
    Row(9, 5.0f);
    ExpectLefts(10 + 65, 10 + 65 + 35, 10 + 65 + 35 + 25);
    f32 fOffset = 0;
    m_apItems[2]->m_fnGetAnchor(nullptr, &fOffset, nullptr);
    EXPECT_EQ(Code(m_apItems[2]), 9);
    EXPECT_FLOAT_EQ(fOffset, 200 - 125 - 10);
}

TEST_F(UpdateAlign, TheGapIsAFactorOfTheFontScale) {
    g_fGlyphGapUnit = 0.5f;
    Row(7, 6.0f);
    ExpectLefts(10, 10 + 33, 10 + 33 + 23);
}

TEST_F(UpdateAlign, AbsentItemsTakeNeitherWidthNorGap) {
    m_apItems[1] = nullptr;
    Row(8, 5.0f);
    // 30 + 5 + 10 = 45; (200 - 45) / 2 = 77.5.
    EXPECT_FLOAT_EQ(Left(m_apItems[0]), 87.5f);
    EXPECT_FLOAT_EQ(Left(m_apItems[2]), 87.5f + 35);
}

TEST_F(UpdateAlign, AnItemThatStandsRightIsLeftAlone) {
    m_apItems[0]->m_fnSetAnchor(4, 0, 3);
    const f32 fTop = Top(m_apItems[0]);
    Row(7, 6.0f);
    EXPECT_EQ(Code(m_apItems[0]), 4) << "its left edge is at 0 already";
    EXPECT_FLOAT_EQ(Top(m_apItems[0]), fTop);
    EXPECT_EQ(Code(m_apItems[1]), 7);
}

TEST_F(UpdateAlign, AnItemThatHungFromTheTopKeepsItsHeightOnThePicture) {
    m_apItems[1]->m_fnSetAnchor(1, 3, 6);
    Row(7, 6.0f);
    EXPECT_EQ(Code(m_apItems[1]), 7);
    EXPECT_FLOAT_EQ(Top(m_apItems[1]), 56);
    EXPECT_FLOAT_EQ(Left(m_apItems[1]), 46);
}

TEST_F(UpdateAlign, WithoutAPanelNothingMoves) {
    const f32 fLeft = Left(m_apItems[1]);
    g_fnAlignRow(nullptr, m_apItems, 7, 6.0f);
    g_fnAlignCustom(nullptr, m_apItems, 7, 40, 40, 4);
    EXPECT_FLOAT_EQ(Left(m_apItems[1]), fLeft);
}

TEST_F(UpdateAlign, CustomMode7GoesForwardFromTheLeftMargin) {
    Custom(7, 8, 6, 4);
    ExpectLefts(10 + 8, 10 + 8 + 34, 10 + 8 + 34 + 24);
    for (CControl* p : m_apItems) EXPECT_FLOAT_EQ(Top(p), 50 + 40 - 20 - 6);
}

TEST_F(UpdateAlign, CustomMode8PlacesCentresAroundTheMiddle) {
    Custom(8, 12, 6, 4);
    // Widths and gaps 68; the row starts 34 left of the middle, moved 12 right: 100 - 34 + 12 = 78.
    ExpectLefts(10 + 78, 10 + 78 + 34, 10 + 78 + 34 + 24);
    f32 fOffset = 0;
    m_apItems[1]->m_fnGetAnchor(nullptr, &fOffset, nullptr);
    EXPECT_FLOAT_EQ(fOffset, -34 + 12 + 34 + 10);
}

TEST_F(UpdateAlign, CustomMode9GoesBackwardFromTheRightMargin) {
    Custom(9, 8, 6, 4);
    ExpectLefts(10 + 200 - 8 - 14 - 24 - 30, 10 + 200 - 8 - 14 - 20, 10 + 200 - 8 - 10);
    for (CControl* p : m_apItems) EXPECT_EQ(Code(p), 9);
}

TEST_F(UpdateAlign, CustomTakesNegativeMarginsAndGaps) {
    Custom(7, -8, -6, -4);
    ExpectLefts(10 - 8, 10 - 8 + 26, 10 - 8 + 26 + 16);
    EXPECT_FLOAT_EQ(Top(m_apItems[0]), 50 + 40 - 20 + 6);
}

TEST_F(UpdateAlign, AnyOtherCustomModePlacesNothing) {
    Custom(7, 8, 6, 4);
    Custom(4, 100, 0, 50);
    ExpectLefts(18, 52, 76);
}

TEST_F(UpdateAlign, CustomSkipsAbsentItemsInBothDirections) {
    m_apItems[1] = nullptr;
    Custom(9, 8, 6, 4);
    EXPECT_FLOAT_EQ(Left(m_apItems[0]), 10 + 200 - 8 - 14 - 30);
    Custom(7, 8, 6, 4);
    EXPECT_FLOAT_EQ(Left(m_apItems[2]), 10 + 8 + 34);
}

} // namespace
