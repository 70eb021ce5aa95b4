// The numbers that the update writes to against those that the layouts of both styles give out.
#include "config/fixed/style_items.h"
#include "frame/update/build_update_tables.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace tables;

namespace {

/// One style under both tables, and the words that differ between them.
struct stBoth {
    const stStyleItems& items;
    const stStyle& update;
    const char* szPanelRole;
    bool bFirstAndSecond; ///< first card and CPU have words of their own, as have the further ones
};

const stBoth c_aBoth[] = {{g_stClassicItems, c_stClassic, "DATA", true},
                          {g_stRV5Items, c_stRV5, "VALUE", false}};

/// GPU_CLK is GPU_FIRST_CLK where the first card has a word of its own.
std::string WordOf(const stBoth& both, std::string strName, eInstances eWhere) {
    if (!both.bFirstAndSecond || eWhere == eInstances::Every) return strName;
    return strName.insert(3, eWhere == eInstances::First ? "_FIRST" : "_SECOND");
}

class UpdateTables : public testing::TestWithParam<stBoth> {
  protected:
    void Expect(u32 uBID, eItem eKind, const std::string& strWord, const char* szRole) {
        EXPECT_EQ(uBID, g_fnItemBID(GetParam().items, eKind, strWord, szRole)) << strWord << " " << szRole;
        if (eKind == eItem::Number) {
            EXPECT_TRUE(m_setSeen.insert(uBID).second) << strWord << " is written twice";
        }
    }
    void ExpectRow(const stIds& ids, const std::string& strWord, const char* szPanelRole) {
        Expect(ids.uNumBox, eItem::Number, strWord, "VALUE");
        if (ids.uTextBox != c_uNone) Expect(ids.uTextBox, eItem::Text, strWord, "UNIT");
        if (ids.uPanel != c_uNone) Expect(ids.uPanel, eItem::Panel, strWord, szPanelRole);
    }
    void ExpectRun(const stRun& run, bool bFigures = false) {
        for (u32 u = 0; u < run.names.size(); ++u) {
            const auto At = [u](u32 uId) { return uId == c_uNone ? c_uNone : uId + u; };
            const stIds& first = run.stFirst;
            const std::string strWord =
                bFigures ? run.names[u] : WordOf(GetParam(), run.names[u], run.eWhere);
            ExpectRow({At(first.uNumBox), At(first.uTextBox), At(first.uPanel)}, strWord,
                      GetParam().szPanelRole);
        }
    }
    void ExpectDirect(const stDirectIds& ids) {
        ExpectRow(ids.stFPS, "FPS", "INFO");
        ExpectRow(ids.stFrameTime, "FRAME_TIME", "INFO");
        for (const u32 u : {0u, 1u, 2u})
            Expect(ids.auTime[u], eItem::Number, "SYSTEM_TIME", ("VALUE" + std::to_string(u + 1)).c_str());
        for (const u32 u : {0u, 1u})
            Expect(ids.auSize[u], eItem::Number, "RESOLUTION", ("VALUE" + std::to_string(u + 1)).c_str());
        Expect(ids.uSizeText, eItem::Text, "RESOLUTION", "VALUE");
        Expect(ids.uSizePanel, eItem::Panel, "RESOLUTION", "VALUE");
        u32 u = 0;
        for (const char* szWord :
             {"DEBUG_PID", "DEBUG_TID", "DEBUG_ANCHOR", "DEBUG_ANCHOR_X", "DEBUG_ANCHOR_Y"}) {
            const u32 uPanel = ids.uDebugPanel == c_uNone ? c_uNone : ids.uDebugPanel + u;
            ExpectRow({ids.uDebugNumBox + u++, c_uNone, uPanel}, szWord, GetParam().szPanelRole);
        }
    }
    std::set<u32> m_setSeen; ///< numbers that something writes to
};

TEST_P(UpdateTables, WriteToTheNumbersOfTheLayoutAndLeaveNoneOut) {
    const stStyle& update = GetParam().update;
    for (const stRun& run : update.cardRuns) ExpectRun(run);
    for (const stRun& run : update.cpuRuns) ExpectRun(run);
    ExpectRun(update.stFigures, true);
    ExpectRow(update.stSensor, "GROUP_EXTENSION_FIRST", GetParam().szPanelRole);
    ExpectDirect(update.stDirect);
    g_fnForEachItem(GetParam().items, [&](const stStyleItem& item) {
        if (item.eKind == eItem::Number) {
            EXPECT_TRUE(m_setSeen.contains(item.uBID)) << item.szWord << " gets no value";
        }
    });
    EXPECT_EQ(m_setSeen.size(), GetParam().bFirstAndSecond ? 67u : 61u);
}

TEST_P(UpdateTables, TheDetectorsFlipBoxesAreItsTitleAndValue) {
    u32 u = 0;
    for (const char* szRole : {"TITLE", "VALUE"})
        EXPECT_EQ(c_auDetectorFlips[u++],
                  g_fnItemBID(GetParam().items, eItem::Flip, c_szDetectorName, szRole));
}

INSTANTIATE_TEST_SUITE_P(Styles, UpdateTables, testing::ValuesIn(c_aBoth),
                         [](const auto& info) { return info.index ? "RV5" : "Classic"; });

} // namespace
