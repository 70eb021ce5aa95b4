// Once a layout stands, an update allocates nothing: every allocation of this program is counted.
#include "base/layout_style.h"
#include "frame/update/statistics.h"
#include "frame/update/status_items.h"
#include "frame/update/update_flags.h"
#include "tests/support/allocation_count.h"
#include "tests/unit/frame/update_fixture.h"

namespace {

class UpdateAllocations : public UpdateTest {
  protected:
    void SetUp() override {
        if (!c_bCounting) GTEST_SKIP() << "the sanitizer counts on its own operators";
        UpdateTest::SetUp();
        m_aSamples.assign(g_uFrameSampleMax, 0);
        g_pFrameSamples = m_aSamples.data();
        g_uFrameSampleCount = 0;
    }
    void TearDown() override {
        if (!c_bCounting) return;
        g_pFrameSamples = nullptr;
        g_uFrameSampleCount = 0;
        g_auStatus[0] = 0;
        UpdateTest::TearDown();
    }
    /// A number, its unit text and their panel.
    void MakeRow(u32 uNumBox, u32 uTextBox, u32 uPanel) {
        m_apNumbers.push_back(Number(uNumBox));
        Hang(Panel(uPanel), {m_apNumbers.back(), Text(uTextBox)});
    }
    /// 42 rows of a Classic layout: details, pins, figures.
    void MakeRows() {
        for (u32 u = 0; u < 23; ++u) MakeRow(10 + u, 1100 + u, 1082 + u);
        for (u32 u = 0; u < 12; ++u) MakeRow(33 + u, 1123 + u, 1105 + u);
        for (u32 u = 0; u < 7; ++u) MakeRow(45 + u, 1135 + u, 1118 + u);
    }
    static std::map<std::string, i32> Values() {
        static const char* const aNames[] = {
            "VRAM_CLK",       "VRAM_USAGE_P",   "VRAM_USAGE_MB",  "FAN1_DUTY",      "FAN1_RPM",
            "FAN2_DUTY",      "FAN2_RPM",       "FAN3_DUTY",      "FAN3_RPM",       "FAN4_DUTY",
            "FAN4_RPM",       "EXT_FAN1_DUTY",  "EXT_FAN1_RPM",   "EXT_FAN2_DUTY",  "EXT_FAN2_RPM",
            "GPU_VOLTAGE",    "VRAM_VOLTAGE",   "VDDCI_VOLTAGE",  "VOLTAGE_0_95",   "VOLTAGE_3_3",
            "VOLTAGE_1_8",    "LOAD_LINE",      "POWER_TARGET",   "POWER_PIN_1",    "POWER_PIN_2",
            "POWER_PIN_3",    "POWER_PIN_4",    "POWER_PIN_5",    "POWER_PIN_6",    "POWER_MB_PIN_1",
            "POWER_MB_PIN_2", "POWER_MB_PIN_3", "POWER_MB_PIN_4", "POWER_MB_PIN_5", "POWER_MB_PIN_6"};
        std::map<std::string, i32> mapValues;
        for (const char* sz : aNames) mapValues[std::string(sz) + "#0"] = 1;
        return mapValues;
    }
    /// Frames at 60 a second with a new value of each name every frame; returns the allocations of all.
    u64 Run(u32 uFrames, bool bWalkEachFrame) {
        i32 aiData[35] = {};
        const u64 uBefore = g_uAllocations;
        for (u32 u = 0; u < uFrames; ++u) {
            for (u32 n = 0; n < 35; ++n) aiData[n] = static_cast<i32>((u * 37 + n * 1001) % 20000) - 500;
            SetMonitorDataFromGWexeToGWDll_GL(aiData, sizeof aiData);
            if (bWalkEachFrame) g_fnRaiseUpdateFlags();
            Frame(16);
        }
        return g_uAllocations - uBefore;
    }
    std::vector<CNumBox_Base*> m_apNumbers;
    std::vector<u32> m_aSamples;
};

TEST_F(UpdateAllocations, TheCounterCounts) {
    const u64 uBefore = g_uAllocations;
    std::vector<int> aNumbers(10);
    EXPECT_EQ(g_uAllocations, uBefore + 1);
    EXPECT_EQ(aNumbers.size(), 10u);
}

TEST_F(UpdateAllocations, AThousandUpdatesOfAClassicLayoutAllocateNothing) {
    g_uLayoutStyle = 0;
    MakeRows();
    for (u32 u = 2; u < 7; ++u) Number(u);
    g_ppStylePanel[1] = new recording::CPanel;
    g_auStatus[0] = 1;
    g_timerStatus.Restart();
    Publish(Values());
    g_fnResetUpdate();
    ASSERT_EQ(g_listUpdateData_N.size(), 35u);
    ASSERT_EQ(g_listUpdateFPS_N.size(), 7u);
    Run(20, true);
    const std::string szBefore = Shown(m_apNumbers[3]);
    EXPECT_EQ(Run(1000, true), 0u);
    EXPECT_NE(Shown(m_apNumbers[3]), szBefore);
    EXPECT_EQ(Run(1000, false), 0u) << "at the default intervals";
}

TEST_F(UpdateAllocations, AThousandUpdatesOfACustomLayoutAllocateNothing) {
    g_uLayoutStyle = 2;
    u32 uName = 0;
    for (const auto& [szData, iValue] : Values()) {
        CItemProperty_NumBox item;
        std::strcpy(item.m_szItemName, ("Item" + std::to_string(uName++)).c_str());
        std::strcpy(item.m_szDataFullName, szData.c_str());
        item.m_fnSetType(ITEM_NUMBOX);
        item.m_u64ItemId = g_fnInternName(item.m_szItemName);
        ASSERT_TRUE(g_fnRegisterItemProperty(&item));
        m_apNumbers.push_back(Number(item.m_u64ItemId, item.m_szItemName));
    }
    Publish(Values());
    g_fnResetUpdate();
    ASSERT_EQ(g_listUpdateData_N.size(), 35u);
    Run(20, true);
    EXPECT_EQ(Run(1000, true), 0u);
    EXPECT_EQ(Run(1000, false), 0u);
}

} // namespace
