#include "batch/draw_basic.h"

#include "controls/control.h"
#include "controls/osd_manager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>

namespace {

std::string g_strDrawn;

/// Writes its letter down when it is drawn, and the batcher's count at that moment.
class CLetter : public virtual CControl {
  public:
    CLetter(char cName, DrawKey pKey) : m_cName(cName), m_pKey(pKey) {}
    virtual ~CLetter() = default;
    const void* m_fnGetDrawKey() override { return m_pKey; }
    void m_fnRender(CDraw_Base* pBatcher) override {
        g_strDrawn += m_cName;
        m_uIndexSeen = dynamic_cast<CDrawBasic_Base*>(pBatcher)->m_uItemIndex;
    }
    char m_cName;
    DrawKey m_pKey;
    u32 m_uIndexSeen = 99;
};

struct DrawBasic : ::testing::Test {
    void SetUp() override {
        g_strDrawn.clear();
        g_pOSDManager = &m_manager;
    }
    void TearDown() override { g_pOSDManager = nullptr; }
    CLetter& Add(char cName, DrawKey pKey, u32 uLayer) {
        m_apLetters.push_back(std::make_unique<CLetter>(cName, pKey));
        m_manager.m_fnAttachBack(m_apLetters.back().get(), uLayer);
        return *m_apLetters.back();
    }
    std::string ColorOrder() {
        g_strDrawn.clear();
        m_batcher.m_fnDrawPass(0);
        return g_strDrawn;
    }

    COSDManager m_manager;
    CDrawBasic_Base m_batcher;
    std::vector<std::unique_ptr<CLetter>> m_apLetters;
};

} // namespace

TEST(DrawKeys, AreAllDistinctAndTheDefaultIsTheEntryOf30) {
    std::set<DrawKey> keys(g_keyBlurByDiameter.begin(), g_keyBlurByDiameter.end());
    keys.insert(g_keyColorList);
    keys.insert(g_keyTextureList);
    EXPECT_EQ(g_keyBlurByDiameter.size(), 101u);
    EXPECT_EQ(keys.size(), 103u);
    EXPECT_FALSE(keys.contains(nullptr));
    EXPECT_EQ(g_keyBlurList, g_keyBlurByDiameter[30]);
}

TEST_F(DrawBasic, APassWalksItsListFromTheFront) {
    Add('a', g_keyColorList, 1);
    Add('b', g_keyColorList, 1);
    Add('t', g_keyTextureList, 2);
    Add('f', g_keyBlurList, 4);
    Add('g', g_keyBlurByDiameter[7], 4);
    m_batcher.m_fnDrawPass(0);
    EXPECT_EQ(g_strDrawn, "ab");
    m_batcher.m_fnDrawPass(1);
    EXPECT_EQ(g_strDrawn, "abt");
    m_batcher.m_fnDrawPass(2);
    EXPECT_EQ(g_strDrawn, "abtf");
    m_batcher.m_fnDrawBlurList();
    EXPECT_EQ(g_strDrawn, "abtff");
    m_batcher.m_fnDrawList(g_keyBlurByDiameter[7]);
    EXPECT_EQ(g_strDrawn, "abtffg");
    m_batcher.m_fnDrawPass(3);
    EXPECT_EQ(g_strDrawn, "abtffg");
}

TEST_F(DrawBasic, DiameterZeroIsAKeyOfItsOwn) {
    Add('z', g_keyBlurByDiameter[0], 4);
    m_batcher.m_fnDrawList(g_keyBlurByDiameter[0]);
    EXPECT_EQ(g_strDrawn, "z");
}

TEST_F(DrawBasic, TwoPanelsOfOneDiameterAreOneWalk) {
    const CLetter& first = Add('p', g_keyBlurByDiameter[12], 4);
    const CLetter& second = Add('q', g_keyBlurByDiameter[12], 4);
    m_batcher.m_fnDrawList(g_keyBlurByDiameter[12]);
    EXPECT_EQ(g_strDrawn, "pq");
    EXPECT_EQ(first.m_uIndexSeen, 0u);
    EXPECT_EQ(second.m_uIndexSeen, 1u);
    EXPECT_EQ(m_batcher.m_uItemIndex, 2u);
}

TEST_F(DrawBasic, TheFlatPassDoesNotCountAndTheTexturePassClears) {
    Add('a', g_keyColorList, 1);
    const CLetter& texture = Add('t', g_keyTextureList, 2);
    m_batcher.m_uItemIndex = 7;
    m_batcher.m_fnDrawColorList();
    EXPECT_EQ(m_batcher.m_uItemIndex, 7u);
    m_batcher.m_fnDrawTextureList();
    EXPECT_EQ(texture.m_uIndexSeen, 0u);
    EXPECT_EQ(m_batcher.m_uItemIndex, 0u);
}

TEST_F(DrawBasic, AKeyWithoutListAndNullEntriesDrawNothing) {
    for (u32 uPass = 0; uPass < 3; ++uPass) m_batcher.m_fnDrawPass(uPass);
    Add('a', g_keyColorList, 1);
    m_manager.m_fnGetDrawList(g_keyColorList)
        ->insert(m_manager.m_fnGetDrawList(g_keyColorList)->begin(), nullptr);
    m_batcher.m_fnDrawPass(0);
    EXPECT_EQ(g_strDrawn, "a");
    g_pOSDManager = nullptr;
    m_batcher.m_fnDrawPass(0);
    m_batcher.m_fnSetColorListOrder({m_apLetters[0].get()});
    EXPECT_EQ(g_strDrawn, "a");
}

TEST_F(DrawBasic, ColorOrderPutsTheNamedBehindTheOthers) {
    for (char c : {'a', 'b', 'c', 'd', 'e'}) Add(c, g_keyColorList, 1);
    m_batcher.m_fnSetColorListOrder({m_apLetters[3].get(), nullptr, m_apLetters[1].get()});
    EXPECT_EQ(ColorOrder(), "acedb");
}

TEST_F(DrawBasic, ColorOrderRemovesEveryOccurrence) {
    for (char c : {'a', 'b'}) Add(c, g_keyColorList, 1);
    m_manager.m_fnGetDrawList(g_keyColorList)->push_back(m_apLetters[0].get());
    ASSERT_EQ(ColorOrder(), "aba");
    m_batcher.m_fnSetColorListOrder({m_apLetters[0].get()});
    EXPECT_EQ(ColorOrder(), "ba");
}

TEST_F(DrawBasic, AnEmptyOrderLeavesTheListAsItWas) {
    for (char c : {'a', 'b', 'c'}) Add(c, g_keyColorList, 1);
    m_batcher.m_fnSetColorListOrder({});
    EXPECT_EQ(ColorOrder(), "abc");
}

TEST_F(DrawBasic, StartsOnTextureUnitZeroWithoutBlurPrograms) {
    EXPECT_EQ(m_batcher.m_fnGetTextureUnit(), 0u);
    EXPECT_EQ(m_batcher.m_uBlurProgramCount, 0u);
    EXPECT_TRUE(m_batcher.m_fnInitialize());
}
