#pragma once
// A manager in slot 0, selected, and controls that count themselves.
#include "base/layout_style.h"
#include "base/slots.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"
#include "controls/osd_manager.h"
#include "draw/canvas.h"

#include <gtest/gtest.h>

/// A control of the kind Base as a GL class would be: both bases virtual.
template <class Base> class CCounted : public virtual CControl, public virtual Base {
  public:
    CCounted() {
        ++s_iLive;
        this->m_fnSetPosition(0, 0, 0);
        m_iMoved = 0;
    }
    ~CCounted() override { --s_iLive; }
    void m_fnOnMoved() override { ++m_iMoved; }
    const void* m_fnGetDrawKey() override { return m_pKey; }

    inline static i32 s_iLive = 0;
    const void* m_pKey = nullptr;
    i32 m_iMoved = 0;
};
using TestControl = CCounted<CTextBox_Base>;

/// Runs without a current manager, at the default canvas.
class CanvasTest : public testing::Test {
  protected:
    void SetUp() override {
        g_uCanvasW = 1920;
        g_uCanvasH = 1080;
        g_uLayoutStyle = 2;
    }
    void TearDown() override {
        g_fnDestroyManagers();
        g_fnClearControlIds();
        g_uManagerSlot = 0;
    }
};

class ManagerTest : public CanvasTest {
  protected:
    void SetUp() override {
        CanvasTest::SetUp();
        m_pManager = g_apOSDManager[0] = new COSDManager;
        ASSERT_TRUE(m_pManager->m_fnInitialize());
        g_fnSelectManager();
    }
    /// A control that the manager owns, under the next id.
    TestControl* Make() {
        auto* p = new TestControl;
        EXPECT_EQ(g_fnRegisterXCtrl(IdTextBox, ++m_uLastId, p), 1);
        return p;
    }
    COSDManager* m_pManager = nullptr;
    u64 m_uLastId = 0;
};
