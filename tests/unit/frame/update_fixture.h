#pragma once
// A manager with number boxes, flip boxes, text boxes and panels under chosen ids and names, the virtual
// clock, and the log.
#include "base/layout_style.h"
#include "base/log.h"
#include "config/items/interner.h"
#include "config/items/item_number.h"
#include "config/items/kinds.h"
#include "config/settings/intervals.h"
#include "config/settings/sensor_table.h"
#include "config/settings/settings.h"
#include "controls/align_row.h"
#include "draw/canvas.h"
#include "entry/exports.h"
#include "frame/reset.h"
#include "frame/update/local_clock.h"
#include "frame/update/status_items.h"
#include "frame/update/timers.h"
#include "frame/update/update.h"
#include "frame/update/update_boxes.h"
#include "frame/update/update_flags.h"
#include "platform/headless/test_controls.h"
#include "shared/monitor_data.h"
#include "tests/unit/controls/text_fixture.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

class UpdateTest : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        platform::headless::ResetAll();
        platform::headless::SetClock(1'000'000'000);
        s_aLines.clear();
        g_fnLogSink = [](const char* szLine) { s_aLines.push_back(szLine); };
        Clean();
        fFPSInterval = 0.1f;
        fDataInterval = 0.5f;
        g_fnRestartTimers();
    }
    void TearDown() override {
        // The stopwatch's last state outlives a test: bring it back.
        g_bStopWatchOn = 0;
        g_fnUpdate_Tavo();
        g_fnLogSink = nullptr;
        Clean();
        TextTest::TearDown();
        platform::headless::ResetAll();
    }
    static void Clean() {
        g_fnResetFrame();
        g_fnClearItems();
        g_stDisplay = {};
        std::fill(std::begin(g_iCardOfDisplay), std::end(g_iCardOfDisplay), 0);
        g_stSettings = {};
        g_fGlyphGapUnit = 1.0f;
        g_uWidth = 1280;
        g_uHeight = 720;
    }

    /// Ten units a character at text size 20.
    CNumBox_Base* Number(u64 u64LB_ID, const char* szName = nullptr) {
        auto* p = new CLiveNumBox;
        p->m_fnSetFont(&m_font);
        p->m_fnSetTextSize(20);
        EXPECT_EQ(g_fnRegisterXCtrl(IdNumBox, u64LB_ID, p), 1);
        if (szName) (*g_fnControlNames('N'))[szName] = u64LB_ID;
        return p;
    }
    /// Four states: "a", "ab", "abc", "abcd".
    CFlipBox_Base* Flip(u64 u64LB_ID) {
        auto* p = new CLiveFlipBox;
        p->m_fnSetFont(&m_font);
        p->m_fnSetTextSize(20);
        const stFlipText aTexts[] = {{u"a", {}}, {u"ab", {}}, {u"abc", {}}, {u"abcd", {}}};
        EXPECT_TRUE(p->m_fnSetStates(aTexts));
        EXPECT_TRUE(p->m_fnInitialize());
        EXPECT_EQ(g_fnRegisterXCtrl(IdFlipBox, u64LB_ID, p), 1);
        return p;
    }
    CTextBox_Base* Text(u64 u64LB_ID, f32 fWidth = 20, const char* szName = nullptr) {
        auto* p = new CLiveTextBox;
        p->m_fnSetSize(fWidth, 20);
        EXPECT_EQ(g_fnRegisterXCtrl(IdTextBox, u64LB_ID, p), 1);
        if (szName) (*g_fnControlNames('T'))[szName] = u64LB_ID;
        return p;
    }
    CPanel_Base* Panel(u64 u64LB_ID, f32 fWidth = 200, const char* szName = nullptr) {
        auto* p = new recording::CPanel;
        p->m_fnSetSize(fWidth, 40);
        EXPECT_EQ(g_fnRegisterXCtrl(IdPanel, u64LB_ID, p), 1);
        if (szName) (*g_fnControlNames('P'))[szName] = u64LB_ID;
        m_pManager->m_fnAddChild(nullptr, p);
        return p;
    }
    void Hang(CControl* pPanel, std::initializer_list<CControl*> items) {
        for (CControl* p : items) m_pManager->m_fnAddChild(pPanel, p);
    }

    /// What a number box draws; "" while it is empty.
    static std::string Shown(const CNumBox_Base* p) {
        std::string sz;
        for (i32 i = 0; i < p->m_iDrawCount; ++i)
            sz += "0123456789.-% "[p->m_auDrawIndex[i] / p->m_uIndicesPerGlyph % p->m_uGlyphCount];
        return sz;
    }
    static f32 Left(CControl* p) {
        f32 x = 0;
        p->m_fnGetPosition(&x, nullptr, nullptr);
        return x;
    }
    static f32 Top(CControl* p) {
        f32 y = 0;
        p->m_fnGetPosition(nullptr, &y, nullptr);
        return y;
    }
    static i32 Code(CControl* p) {
        i32 iCode = 0;
        p->m_fnGetAnchor(&iCode, nullptr, nullptr);
        return iCode;
    }

    static void Pass(i64 iMilliseconds) { platform::headless::AdvanceClock(iMilliseconds * 1'000'000); }
    /// One update, that much later.
    static void Frame(i64 iMilliseconds = 0) {
        Pass(iMilliseconds);
        g_fnUpdate_Tavo();
    }
    /// Publishes names with their values as a companion does; the bank changes.
    static void Publish(const std::map<std::string, i32>& mapValues) {
        std::map<std::string, u32> mapOffsets;
        std::vector<i32> aData;
        for (const auto& [szName, iValue] : mapValues) {
            mapOffsets[szName] = static_cast<u32>(aData.size() * 4);
            aData.push_back(iValue);
        }
        SetMonitorDataOffsetFromGWexeToGWDll_GL(mapOffsets, aData.data(), static_cast<i32>(aData.size() * 4));
    }
    /// Writes the first values of the current bank anew, in name order.
    static void Change(std::initializer_list<i32> values) {
        SetMonitorDataFromGWexeToGWDll_GL(values.begin(), static_cast<i32>(values.size() * 4));
    }
    static bool Logged(const std::string& szLine) {
        return std::find(s_aLines.begin(), s_aLines.end(), szLine) != s_aLines.end();
    }
    static i64 CountLogged(const std::string& szLine) {
        return std::count(s_aLines.begin(), s_aLines.end(), szLine);
    }

    inline static std::vector<std::string> s_aLines;
};

/// The same in the custom style, with items.
class UpdateCustomTest : public UpdateTest {
  protected:
    void SetUp() override {
        UpdateTest::SetUp();
        g_uLayoutStyle = 2;
    }
    static CItemProperty_Base* Item(const char* szName, const char* szData, u32 uType = ITEM_NUMBOX) {
        CItemProperty_NumBox item;
        std::strcpy(item.m_szItemName, szName);
        if (const char* szAt = std::strrchr(szName, '@')) std::strcpy(item.m_szItemOwner, szAt + 1);
        std::strcpy(item.m_szDataFullName, szData);
        item.m_fnSetType(uType);
        item.m_u64ItemId = g_fnInternName(szName);
        item.m_iContentAnchor = 7;
        EXPECT_TRUE(g_fnRegisterItemProperty(&item));
        CItemProperty_Base* pItem = nullptr;
        EXPECT_TRUE(g_fnQueryItemProperty(szName, &pItem));
        return pItem;
    }
    static u64 Id(const std::string& szName) { return g_fnInternName(szName.c_str()); }
    /// A number item with its box.
    CNumBox_Base* NumberItem(const char* szName, const char* szData) {
        Item(szName, szData);
        return Number(Id(szName), szName);
    }
};
