// The status panels: moved by command, pulsing, hidden when the display is over, off the picture of a shot.
#include "frame/update/status_items.h"

#include "capture/shot_request.h"
#include "config/load.h"
#include "config/make/panel_records.h"
#include "controls/panel.h"
#include "platform/headless/test_controls.h"
#include "tests/unit/controls/manager_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace {

namespace headless = platform::headless;

class StatusItems : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        recording::Install();
        headless::SetClock(1000000000);
        MakeStatusPanels();
        g_bShotPending = 0;
        std::fill(std::begin(g_abStatusDue), std::end(g_abStatusDue), u8(0));
        std::fill(std::begin(g_auStatus), std::end(g_auStatus), 0u);
        std::fill(std::begin(g_abShutterMove), std::end(g_abShutterMove), u8(0));
        g_timerStatus.Restart();
    }
    void TearDown() override {
        g_bShotPending = 0;
        ManagerTest::TearDown();
        g_fnClearConfiguration();
        headless::ResetAll();
    }
    /// Those of the styles with fixed tables: they hang in the tree, so that commands move them, and stand in
    /// no draw list at first.
    static void MakeStatusPanels() {
        const std::pair<u32, i32> aCodes[] = {{1, 2}, {3, 3}, {5, 9}};
        for (const auto& [uPanel, iCode] : aCodes) {
            constexpr stPanelLook c_look{255, 255, 255, 0, PANEL_TYPE_GELLOPHANE, 30, g_uShapeRect, 0, 0};
            const stPanelInit st{c_look, uPanel, iCode, 24, 24, 96, 96, false};
            std::unique_ptr<CPanel_Base> pPanel;
            ASSERT_TRUE(g_fnMakePanel(st, pPanel) && pPanel);
            g_ppStylePanel[uPanel] = pPanel.release();
            g_pOSDManager->m_fnAddChild(nullptr, g_ppStylePanel[uPanel]);
        }
    }
    static bool Shown(u32 uPanel) {
        const ControlList* pList = g_pOSDManager->m_fnGetDrawList(g_ppStylePanel[uPanel]->m_fnGetDrawKey());
        return pList && std::find(pList->begin(), pList->end(), g_ppStylePanel[uPanel]) != pList->end();
    }
    static f32 Top(u32 uPanel) {
        f32 y = 0;
        g_ppStylePanel[uPanel]->m_fnGetPosition(nullptr, &y, nullptr);
        return y;
    }
};

TEST_F(StatusItems, OnlyChangedEntriesMoveAndOnlyTheThirdRaisesTheShutterMove) {
    const stStatusPosition aFirst[3] = {{1, 3, 10, 20}, {0, 9, 30, 40}, {0, 7, 50, 60}};
    g_fnMoveStatusItems(aFirst);
    i32 iCode = 0;
    f32 x = 0, y = 0;
    g_ppStylePanel[1]->m_fnGetAnchor(&iCode, &x, &y);
    EXPECT_EQ(iCode, 3);
    EXPECT_EQ(x, 10);
    EXPECT_EQ(y, 20);
    g_ppStylePanel[3]->m_fnGetAnchor(&iCode, &x, &y);
    EXPECT_NE(iCode, 9);
    EXPECT_EQ(g_abShutterMove[0], 0);
    const stStatusPosition aThird[3] = {{0, 1, 0, 0}, {0, 1, 0, 0}, {1, 7, 50, 60}};
    g_fnMoveStatusItems(aThird);
    EXPECT_EQ(g_abShutterMove[0], 1);
    EXPECT_EQ(g_abShutterMove[1], 0) << "slots without a manager are passed over";
}

TEST_F(StatusItems, APlaceThatIsTheSameMovesNothing) {
    i32 iCode = 0;
    f32 x = 0, y = 0;
    g_ppStylePanel[5]->m_fnGetAnchor(&iCode, &x, &y);
    const stStatusPosition aSame[3] = {
        {0, 0, 0, 0}, {0, 0, 0, 0}, {1, iCode, static_cast<i32>(x), static_cast<i32>(y)}};
    g_fnMoveStatusItems(aSame);
    EXPECT_EQ(g_abShutterMove[0], 0);
}

TEST_F(StatusItems, TheNamedPanelPulsesAroundTwoHundredAndTheOthersStayHidden) {
    g_auStatus[0] = 2;
    f32 fLowest = 1e9f, fHighest = -1e9f;
    for (u32 u = 0; u < 200; ++u) {
        g_fnStatusStep(0.016f);
        fLowest = std::min(fLowest, Top(3));
        fHighest = std::max(fHighest, Top(3));
    }
    EXPECT_TRUE(Shown(3));
    EXPECT_FALSE(Shown(1));
    EXPECT_FALSE(Shown(5));
    EXPECT_GE(fLowest, 0.0f);
    EXPECT_LT(fLowest, 10.0f);
    EXPECT_LE(fHighest, 400.0f);
    EXPECT_GT(fHighest, 390.0f);
}

TEST_F(StatusItems, ThePulseLeavesTheAnchorAsTheLastCommandSaidIt) {
    i32 iBefore = 0, iAfter = 0;
    f32 yBefore = 0, yAfter = 0;
    g_ppStylePanel[1]->m_fnGetAnchor(&iBefore, nullptr, &yBefore);
    g_auStatus[0] = 1;
    for (u32 u = 0; u < 20; ++u) g_fnStatusStep(0.016f);
    g_ppStylePanel[1]->m_fnGetAnchor(&iAfter, nullptr, &yAfter);
    EXPECT_EQ(iBefore, iAfter);
    EXPECT_EQ(yBefore, yAfter);
}

TEST_F(StatusItems, ADueDisplayHidesAllThreePanels) {
    g_auStatus[0] = 1;
    g_fnStatusStep(0.1f);
    ASSERT_TRUE(Shown(1));
    g_abStatusDue[0] = 1;
    g_fnStatusStep(0.1f);
    EXPECT_FALSE(Shown(1));
    EXPECT_EQ(g_ppStylePanel[1]->m_afColor[3], 0.0f);
    EXPECT_EQ(g_abStatusDue[0], 0);
}

TEST_F(StatusItems, AfterFifteenSecondsThePanelsStayHiddenUntilACommandRestartsTheTimer) {
    g_auStatus[0] = 1;
    g_fnStatusStep(0.1f);
    ASSERT_TRUE(Shown(1));
    headless::AdvanceClock(15100000000);
    for (u32 u = 0; u < 3; ++u) {
        g_fnStatusStep(0.1f);
        EXPECT_FALSE(Shown(1));
        EXPECT_EQ(g_auStatus[0], 1u) << "the status value is kept";
    }
    g_timerStatus.Restart();
    g_fnStatusStep(0.1f);
    EXPECT_TRUE(Shown(1));
}

TEST_F(StatusItems, APendingShotKeepsThePanelOffThePicture) {
    g_auStatus[0] = 1;
    g_fnStatusStep(0.1f);
    ASSERT_TRUE(Shown(1));
    g_bShotPending = 1;
    g_fnHideForShot();
    g_fnStatusStep(0.1f);
    EXPECT_FALSE(Shown(1));
    g_fnShowAfterShot();
    EXPECT_TRUE(Shown(1));
    EXPECT_TRUE(Shown(3));
    EXPECT_TRUE(Shown(5));
}

} // namespace
