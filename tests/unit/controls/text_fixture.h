#pragma once
// A font whose metrics are powers of two, and text, number and flip boxes of a flavour that writes down what
// it draws.
#include "controls/flip_box.h"
#include "controls/num_box.h"
#include "controls/text_box.h"
#include "font/font_unicode.h"
#include "tests/unit/controls/manager_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

#include <array>
#include <set>

/// Every glyph is 0.75 high and reaches 0.125 below the baseline; most are 0.5 wide. A glyph's texture starts
/// at its column and row of 16 and is 1/32 wide and 3/64 high.
class CTestFont : public CFontUniCode {
  public:
    static f32 Width(u32 uCode) {
        if (uCode == u'W' || uCode == 0x3000) return 1;
        if (uCode == u'%') return 0.75f;
        return uCode == u'.' || uCode == u'-' || uCode == u'i' || uCode == u' ' ? 0.25f : 0.5f;
    }
    static f32 Left(u32 uCode) { return static_cast<f32>(uCode % 16) / 16; }
    static f32 Top(u32 uCode) { return static_cast<f32>(uCode / 16 % 16) / 16; }

    bool m_fnGetCharInfo(u32 uCode, f32* pX, f32* pY, f32* pZ, f32* pXR, f32* pYB, f32* pYOff, f32* pW,
                         f32* pH) override {
        if (m_setMissing.contains(uCode)) return false;
        Put(pX, Left(uCode));
        Put(pY, Top(uCode));
        Put(pZ, 0);
        Put(pXR, Left(uCode) + 1 / 32.0f);
        Put(pYB, Top(uCode) + 3 / 64.0f);
        Put(pYOff, 0.125f);
        Put(pW, Width(uCode));
        Put(pH, m_setInkless.contains(uCode) ? -2.0f : 0.75f);
        return true;
    }
    std::set<u32> m_setMissing; ///< codes that the font can't give
    std::set<u32> m_setInkless; ///< codes with an advance and no picture

  private:
    static void Put(f32* pOut, f32 fValue) {
        if (pOut) *pOut = fValue;
    }
};

class CLiveTextBox : public virtual CControl, public virtual CTextBox_Base {
  public:
    CLiveTextBox() { ++s_iLive; }
    ~CLiveTextBox() override { --s_iLive; }
    void m_fnDrawText(CDraw_Base*, const f32* pWorld, const f32* pColor) override {
        recording::g_aEvents.push_back("text");
        m_pWorld = pWorld;
        m_pColor = pColor;
    }
    inline static i32 s_iLive = 0;
    const f32* m_pWorld = nullptr;
    const f32* m_pColor = nullptr;
};

class CLiveNumBox : public virtual CControl, public virtual CNumBox_Base {
  public:
    CLiveNumBox() { ++s_iLive; }
    ~CLiveNumBox() override { --s_iLive; }
    void m_fnDrawDigits(CDraw_Base*, CEntity_Base** ppEntities, const f32* pColor) override {
        recording::g_aEvents.push_back("digits");
        m_ppDrawn = ppEntities;
        m_pColor = pColor;
    }
    void m_fnBuildDrawList() override {
        ++m_iBuilds;
        CNumBox_Base::m_fnBuildDrawList();
    }
    inline static i32 s_iLive = 0;
    i32 m_iBuilds = 0;
    CEntity_Base** m_ppDrawn = nullptr;
    const f32* m_pColor = nullptr;
};

class CLiveFlipBox : public virtual CControl, public virtual CFlipBox_Base {
  public:
    CLiveFlipBox() { ++s_iLive; }
    ~CLiveFlipBox() override { --s_iLive; }
    void m_fnDrawText(CDraw_Base*, const f32* pWorld, const f32* pColor) override {
        recording::g_aEvents.push_back("flip");
        m_pWorld = pWorld;
        m_pColor = pColor;
    }
    inline static i32 s_iLive = 0;
    const f32* m_pWorld = nullptr;
    const f32* m_pColor = nullptr;
};

/// A manager, the recording flavour with the three boxes in it, and the font.
class TextTest : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        recording::Install();
        g_stCreationTable.m_fnCreateTextBox = []() -> CTextBox_Base* { return new CLiveTextBox; };
        g_stCreationTable.m_fnCreateNumBox = []() -> CNumBox_Base* { return new CLiveNumBox; };
        g_stCreationTable.m_fnCreateFlipBox = []() -> CFlipBox_Base* { return new CLiveFlipBox; };
    }
    void TearDown() override {
        g_stCreationTable = {};
        ManagerTest::TearDown();
    }
    template <class Array> static const stTextVertex* Quad(const Array& pVertices, u32 uQuad) {
        return g_fnVertexAt(pVertices.get(), uQuad * g_uQuadVertices);
    }
    /// Left, top, right, bottom of a quad; its corners must agree.
    static std::array<f32, 4> Rect(const stTextVertex* p) {
        EXPECT_EQ(p[0].x, p[3].x);
        EXPECT_EQ(p[1].x, p[2].x);
        EXPECT_EQ(p[0].y, p[1].y);
        EXPECT_EQ(p[2].y, p[3].y);
        return {p[0].x, p[0].y, p[2].x, p[2].y};
    }
    /// The same of its texture.
    static std::array<f32, 4> Texture(const stTextVertex* p) {
        EXPECT_EQ(p[0].u, p[3].u);
        EXPECT_EQ(p[1].u, p[2].u);
        EXPECT_EQ(p[0].v, p[1].v);
        EXPECT_EQ(p[2].v, p[3].v);
        return {p[0].u, p[0].v, p[2].u, p[2].v};
    }
    static std::array<f32, 4> ColorOf(const stTextVertex* p) { return {p->r, p->g, p->b, p->a}; }

    CTestFont m_font;
    recording::CBatcher m_batcher;
};

using Four = std::array<f32, 4>;
