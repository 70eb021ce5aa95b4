#include "batch/draw_text.h"

#include "controls/control.h"
#include "controls/num_box.h"
#include "controls/osd_manager.h"
#include "controls/text_box.h"
#include "font/font_unicode.h"
#include "frame/resources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

std::string g_strDrawn;

/// A digit for each bind of its atlas.
class CNotingFont : public CFontUniCode {
  public:
    explicit CNotingFont(char cName) : m_cName(cName) {}
    void m_fnBindTexture(u32 uUnit) override {
        g_strDrawn += m_cName;
        m_uUnit = uUnit;
    }
    char m_cName;
    u32 m_uUnit = 99;
};

/// Writes its letter down when it is drawn, and the batcher's counters at that moment.
class CLetter : public virtual CControl {
  public:
    CLetter(char cName, CFontUniCode* pFont) : m_cName(cName), m_pFont(pFont) {}
    virtual ~CLetter() = default;
    const void* m_fnGetDrawKey() override { return m_pFont; }
    void m_fnRender(CDraw_Base* pBatcher) override {
        const auto& batcher = dynamic_cast<CDrawText_Base&>(*pBatcher);
        g_strDrawn += m_cName;
        m_uFontIndex = batcher.m_uFontIndex;
        m_uControlIndex = batcher.m_uControlIndex;
    }
    void* m_fnGetVertexData() override { return m_aVertices.data(); }
    void* m_fnGetIndexData() override { return m_auIndices.data(); }
    /// A text box in a merged stream.
    void Fill(u8 u8Value, u32 uVertices, std::vector<u16> indices) {
        m_uType = g_uTypeTextBox;
        m_aVertices.assign(uVertices * sizeof(stTextVertex), u8Value);
        m_auIndices = std::move(indices);
        m_uVertexBytes = static_cast<u32>(m_aVertices.size());
        m_uIndexBytes = static_cast<u32>(m_auIndices.size() * sizeof(u16));
    }
    char m_cName;
    CFontUniCode* m_pFont;
    u32 m_uFontIndex = 99, m_uControlIndex = 99;
    std::vector<u8> m_aVertices;
    std::vector<u16> m_auIndices;
};

/// The batcher with a mark wherever it says that a texture was bound.
class CTestBatcher : public CDrawText_Base {
  public:
    void m_fnOnTextureBound(void*) override { g_strDrawn += '.'; }
    void m_fnRender() override { Walk(); }
};

struct DrawText : ::testing::Test {
    void SetUp() override {
        g_strDrawn.clear();
        g_pOSDManager = &m_manager;
        for (char c : {'1', '2', '3'}) AddFont(c);
    }
    void TearDown() override {
        g_pOSDManager = nullptr;
        g_fnClearFontsToStay();
    }
    CNotingFont& AddFont(char cName) {
        m_apFonts.push_back(std::make_unique<CNotingFont>(cName));
        m_manager.m_fnAddToLayer(static_cast<CFontUniCode*>(m_apFonts.back().get()), g_uLayerFont);
        return *m_apFonts.back();
    }
    CLetter& Add(char cName, u32 uFont) {
        m_apLetters.push_back(std::make_unique<CLetter>(cName, m_apFonts[uFont].get()));
        m_manager.m_fnAttachBack(m_apLetters.back().get(), g_uLayerFont);
        return *m_apLetters.back();
    }
    std::string Draw() {
        g_strDrawn.clear();
        static_cast<CDraw_Base&>(*m_pBatcher).m_fnRender();
        return g_strDrawn;
    }

    COSDManager m_manager;
    std::unique_ptr<CTestBatcher> m_pBatcher{new CTestBatcher};
    std::vector<std::unique_ptr<CNotingFont>> m_apFonts;
    std::vector<std::unique_ptr<CLetter>> m_apLetters;
};

/// Text and number boxes of known sizes in the manager's arrays.
struct DrawTextMerged : DrawText {
    void SetUp() override {
        DrawText::SetUp();
        ASSERT_TRUE(m_manager.m_fnInitialize());
        g_ppTextBox = m_manager.m_stArrays.m_ppTextBox;
        g_ppNumBox = m_manager.m_stArrays.m_ppNumBox;
    }
    void TearDown() override {
        m_manager.m_fnRelease();
        DrawText::TearDown();
    }
    /// As the merge sees it: fonts and their controls.
    void Merge() {
        m_pBatcher->m_fnBuildFontLists();
        m_pBatcher->m_fnMergeVertices();
    }
    template <class Box> void Put(Box** ppBoxes, u32 uAt, Box* pBox, u32 uVertexBytes, u32 uIndexBytes) {
        ppBoxes[uAt] = pBox;
        pBox->m_uVertexBytes = uVertexBytes;
        pBox->m_uIndexBytes = uIndexBytes;
    }
    u16 MergedIndex(u32 uAt) const {
        u16 uIndex;
        std::memcpy(&uIndex, m_pBatcher->m_pMergedIndices.get() + uAt * sizeof uIndex, sizeof uIndex);
        return uIndex;
    }
};

} // namespace

TEST_F(DrawText, StartsWithEmptyListsOnUnitZero) {
    EXPECT_EQ(m_pBatcher->m_uTextureUnit, 0u);
    EXPECT_EQ(m_pBatcher->m_uFontCount, 0u);
    for (const CFontUniCode* pFont : m_pBatcher->m_pFonts) EXPECT_EQ(pFont, nullptr);
    EXPECT_TRUE(m_pBatcher->m_fnInitialize());
}

TEST_F(DrawText, FontsInTheManagersOrderControlsInOrderOfRegistration) {
    Add('x', 1);
    Add('a', 0);
    Add('b', 0);
    EXPECT_EQ(Draw(), "1.ab2.x");
    EXPECT_EQ(m_apFonts[0]->m_uUnit, 0u);
}

TEST_F(DrawText, CountersNameTheFontAndTheControlBeingDrawn) {
    Add('a', 0);
    const CLetter& x = Add('x', 2);
    const CLetter& y = Add('y', 2);
    Draw();
    EXPECT_EQ(x.m_uFontIndex, 1u); // font 2 has no controls and takes no place
    EXPECT_EQ(x.m_uControlIndex, 0u);
    EXPECT_EQ(y.m_uControlIndex, 1u);
    EXPECT_EQ(m_pBatcher->m_uFontIndex, 2u);
    EXPECT_EQ(m_pBatcher->m_uControlIndex, 2u);
}

TEST_F(DrawText, AFontWithoutControlsLeavesItsPlaceUnlessItIsToStay) {
    Add('x', 2);
    m_pBatcher->m_fnBuildFontLists();
    EXPECT_EQ(m_pBatcher->m_uFontCount, 1u);
    EXPECT_EQ(m_pBatcher->m_pFonts[0], m_apFonts[2].get());
    g_fnSetFontToStay(m_apFonts[1].get());
    m_pBatcher->m_fnBuildFontLists();
    EXPECT_EQ(m_pBatcher->m_uFontCount, 2u);
    EXPECT_EQ(m_pBatcher->m_pFonts[0], m_apFonts[1].get());
    EXPECT_EQ(m_pBatcher->m_uControlCounts[0], 0u);
    EXPECT_EQ(Draw(), "2.3.x");
}

TEST_F(DrawText, FontsToStayAreASetThatForgetsOnClear) {
    g_fnSetFontToStay(nullptr);
    EXPECT_FALSE(g_fnIsFontToStay(nullptr));
    g_fnSetFontToStay(m_apFonts[0].get());
    g_fnSetFontToStay(m_apFonts[0].get());
    EXPECT_TRUE(g_fnIsFontToStay(m_apFonts[0].get()));
    EXPECT_FALSE(g_fnIsFontToStay(m_apFonts[1].get()));
    g_fnClearFontsToStay();
    EXPECT_FALSE(g_fnIsFontToStay(m_apFonts[0].get()));
}

TEST_F(DrawText, ReleasingTheResourcesForgetsTheFontsToStay) {
    g_fnSetFontToStay(m_apFonts[0].get());
    g_fnReleaseResources();
    EXPECT_FALSE(g_fnIsFontToStay(m_apFonts[0].get()));
}

TEST_F(DrawText, ListsFreezeAtTheFirstDrawnFrame) {
    CLetter& a = Add('a', 0);
    EXPECT_EQ(Draw(), "1.a");
    Add('b', 0);
    Add('x', 1);
    m_manager.m_fnDetach(&a, g_uLayerFont);
    EXPECT_EQ(Draw(), "1.a");
    m_pBatcher.reset(new CTestBatcher);
    EXPECT_EQ(Draw(), "1.b2.x");
}

TEST_F(DrawText, FontsWithoutAnyControlFreezeTheListsToo) {
    EXPECT_EQ(Draw(), "");
    EXPECT_NE(m_pBatcher->m_pFonts[0], nullptr);
    Add('a', 0);
    EXPECT_EQ(Draw(), "");
}

TEST_F(DrawText, WithoutFontsTheListsAreAskedForAgain) {
    COSDManager empty;
    g_pOSDManager = &empty;
    EXPECT_EQ(Draw(), "");
    g_pOSDManager = &m_manager;
    Add('a', 0);
    EXPECT_EQ(Draw(), "1.a");
}

TEST_F(DrawText, WithoutManagerOneBuildClearsTheCountAndTheOtherLeavesIt) {
    Add('a', 0);
    m_pBatcher->m_fnBuildFontListsIfAny();
    EXPECT_EQ(m_pBatcher->m_uFontCount, 1u);
    m_pBatcher->m_fnBuildFontListsIfAny();
    EXPECT_EQ(m_pBatcher->m_uFontCount, 1u);
    g_pOSDManager = nullptr;
    m_pBatcher->m_fnBuildFontListsIfAny();
    EXPECT_EQ(m_pBatcher->m_uFontCount, 1u);
    m_pBatcher->m_fnBuildFontLists();
    EXPECT_EQ(m_pBatcher->m_uFontCount, 0u);
}

TEST_F(DrawText, NullEntriesAreSkippedWithTheCountersInStep) {
    Add('a', 0);
    const CLetter& x = Add('x', 1);
    ControlList* pList = m_manager.m_fnGetDrawList(static_cast<CFontUniCode*>(m_apFonts[0].get()));
    pList->insert(pList->begin(), nullptr);
    m_pBatcher->m_fnBuildFontLists();
    EXPECT_EQ(m_pBatcher->m_uControlCounts[0], 1u);
    m_pBatcher->m_uFontCount = 3;
    m_pBatcher->m_pFonts[2] = m_pBatcher->m_pFonts[1];
    m_pBatcher->m_pFonts[1] = nullptr;
    m_pBatcher->m_pControls[2][0] = m_pBatcher->m_pControls[1][0];
    m_pBatcher->m_uControlCounts[2] = 1;
    EXPECT_EQ(Draw(), "1.a2.x");
    EXPECT_EQ(x.m_uFontIndex, 2u);
    EXPECT_EQ(m_pBatcher->m_uFontIndex, 3u);
}

TEST_F(DrawText, OneFontCanBeDrawnAlone) {
    Add('a', 0);
    Add('x', 1);
    m_pBatcher->m_fnBuildFontLists();
    m_pBatcher->m_uFontIndex = 1;
    m_pBatcher->m_fnDrawFont(m_apFonts[1].get());
    EXPECT_EQ(g_strDrawn, "2.x");
    m_pBatcher->m_fnDrawFont(nullptr);
    m_pBatcher->m_uFontIndex = g_uMaxTextFonts;
    m_pBatcher->m_fnDrawFont(m_apFonts[1].get());
    EXPECT_EQ(g_strDrawn, "2.x");
}

TEST_F(DrawText, CopyingStopsAt1024ControlsAFont) {
    for (u32 i = 0; i < g_uMaxFontControls + 1; ++i) Add('a', 0);
    Add('x', 1);
    m_pBatcher->m_fnBuildFontLists();
    EXPECT_EQ(m_pBatcher->m_uControlCounts[0], 1024u);
    EXPECT_EQ(m_pBatcher->m_pControls[0][1023], m_apLetters[1023].get());
    EXPECT_EQ(m_pBatcher->m_pControls[1][0], m_apLetters.back().get());
}

TEST_F(DrawText, CopyingStopsAt64Fonts) {
    for (u32 i = 3; i < g_uMaxTextFonts + 1; ++i) AddFont('f');
    for (u32 i = 0; i < g_uMaxTextFonts + 1; ++i) Add('a', i);
    m_pBatcher->m_fnBuildFontLists();
    EXPECT_EQ(m_pBatcher->m_uFontCount, 64u);
    EXPECT_EQ(m_pBatcher->m_pFonts[63], m_apFonts[63].get());
    EXPECT_EQ(m_pBatcher->m_uControlCounts[63], 1u);
    const std::string strDrawn = Draw();
    EXPECT_EQ(std::count(strDrawn.begin(), strDrawn.end(), 'a'), 64);
}

TEST_F(DrawText, ResetForgetsFontsCountsAndControls) {
    Add('a', 0);
    m_pBatcher->m_fnBuildFontLists();
    m_pBatcher->m_fnResetFontLists();
    EXPECT_EQ(m_pBatcher->m_pFonts[0], nullptr);
    EXPECT_EQ(m_pBatcher->m_uControlCounts[0], 0u);
    EXPECT_EQ(m_pBatcher->m_pControls[0][0], nullptr);
}

TEST_F(DrawText, ResetForgetsControlsOfAListThatWasOnceLonger) {
    for (u32 i = 0; i < 3; ++i) Add('a', 0);
    m_pBatcher->m_fnBuildFontLists();
    g_pOSDManager->m_fnDetach(m_apLetters[0].get(), g_uLayerFont);
    m_pBatcher->m_fnBuildFontLists();
    ASSERT_EQ(m_pBatcher->m_uControlCounts[0], 2u);
    m_pBatcher->m_fnResetFontLists();
    for (u32 i = 0; i < 3; ++i) EXPECT_EQ(m_pBatcher->m_pControls[0][i], nullptr) << i;
}

TEST_F(DrawTextMerged, SumsCountTheTextBoxesIndicesAs16Bit) {
    Put<CTextBox_Base>(g_ppTextBox, 0, new CTextBox_Base, 128, 24);
    Put<CTextBox_Base>(g_ppTextBox, 680, new CTextBox_Base, 256, 48);
    Put<CNumBox_Base>(g_ppNumBox, 709, new CNumBox_Base, 1000, 500);
    m_pBatcher->m_fnAllocMergedBuffers();
    EXPECT_EQ(m_pBatcher->m_uMergedIndexCount, 36u); // 72 bytes of 4-byte indices are 18
    EXPECT_EQ(m_pBatcher->m_uMergedVertexBytes, 1384u);
    EXPECT_EQ(m_pBatcher->m_uMergedIndexBytes, 572u);
    const u8* pVertices = m_pBatcher->m_pMergedVertices.get();
    ASSERT_NE(pVertices, nullptr);
    m_pBatcher->m_fnAllocMergedBuffers();
    EXPECT_EQ(m_pBatcher->m_pMergedVertices.get(), pVertices);
    EXPECT_EQ(m_pBatcher->m_uMergedVertexBytes, 1384u);
    m_pBatcher->m_fnFreeMergedBuffers();
    EXPECT_EQ(m_pBatcher->m_pMergedVertices, nullptr);
    EXPECT_EQ(m_pBatcher->m_pMergedIndices, nullptr);
}

TEST_F(DrawTextMerged, EveryTextBoxGetsItsPlaceAndItsIndicesTheBase) {
    Put<CTextBox_Base>(g_ppTextBox, 0, new CTextBox_Base, 6 * 32, 12 * 2);
    m_pBatcher->m_fnAllocMergedBuffers();
    CLetter& a = Add('a', 0);
    CLetter& n = Add('n', 0);
    CLetter& b = Add('b', 1);
    a.Fill(7, 4, {0, 1, 2, 0, 2, 3});
    n.Fill(8, 4, {0, 0, 0, 0, 0, 0});
    n.m_uType = g_uTypeNumBox;
    b.Fill(9, 2, {0, 1, 0, 65535});
    Merge();
    EXPECT_EQ(a.m_uVertexBase, 0u);
    EXPECT_EQ(b.m_uVertexBase, 4u);
    EXPECT_EQ(b.m_uIndexBase, 6u);
    EXPECT_EQ(m_pBatcher->m_pMergedVertices[0], 7);
    EXPECT_EQ(m_pBatcher->m_pMergedVertices[127], 7);
    EXPECT_EQ(m_pBatcher->m_pMergedVertices[128], 9);
    const u16 auExpected[] = {0, 1, 2, 0, 2, 3, 4, 5, 4, 3};
    for (u32 i = 0; i < 10; ++i) EXPECT_EQ(MergedIndex(i), auExpected[i]) << i;
    EXPECT_EQ(b.m_auIndices[1], 1); // the control's own stay
}

TEST_F(DrawTextMerged, WhatDoesNotFitIsNotCopied) {
    Put<CTextBox_Base>(g_ppTextBox, 0, new CTextBox_Base, 3 * 32, 12);
    m_pBatcher->m_fnAllocMergedBuffers();
    CLetter& a = Add('a', 0);
    a.Fill(7, 4, {0, 1, 2});
    CLetter& b = Add('b', 0);
    b.Fill(8, 1, {0, 0, 0});
    Merge();
    EXPECT_EQ(m_pBatcher->m_pMergedVertices[0], 0);
    EXPECT_EQ(m_pBatcher->m_pMergedVertices[95], 0);
    EXPECT_EQ(b.m_uVertexBase, 4u); // places are counted all the same
    // A later sum does not enlarge arrays that exist.
    g_ppTextBox[0]->m_uVertexBytes = 1 << 20;
    m_pBatcher->m_fnAllocMergedBuffers();
    Merge();
    EXPECT_EQ(m_pBatcher->m_pMergedVertices[95], 0);
}

TEST_F(DrawTextMerged, WithoutArraysOrDataNothingIsMerged) {
    CLetter& a = Add('a', 0);
    a.Fill(7, 1, {0});
    Merge();
    EXPECT_EQ(m_pBatcher->m_pMergedVertices, nullptr);
    g_ppTextBox = nullptr;
    g_ppNumBox = nullptr;
    m_pBatcher->m_fnAllocMergedBuffers();
    EXPECT_EQ(m_pBatcher->m_uMergedVertexBytes, 0u);
    Merge();
    EXPECT_EQ(a.m_uVertexBase, 0u);
}
