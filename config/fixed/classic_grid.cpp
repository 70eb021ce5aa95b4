#include "config/fixed/classic_grid.h"

#include "config/fixed/attribute_value.h"
#include "config/fixed/enable_map.h"
#include "config/fixed/group_order.h"
#include "config/fixed/template_records.h"
#include "config/settings/sensor_table.h"

#include <algorithm>

namespace {

constexpr i32 c_iWideStep = 24, c_iStep = 15;
constexpr i32 c_iSecondGap = 4, c_iThirdGap = 4, c_iEndGap = 8;
constexpr i32 c_iFirstColumn = 39, c_iColumn = 44, c_iNarrowColumn = 30, c_iColumnGap = 3;

/// The lines of the first block: panels that share one follow each other on it.
struct stLine {
    std::span<const char* const> words;
};
constexpr const char* c_aFigures[] = {"FPS", "FRAME_TIME", "SYSTEM_TIME"};
constexpr const char* c_aGpu[] = {"GPU_FIRST"};
constexpr const char* c_aCpu[] = {"CPU_FIRST"};
constexpr stLine c_aLines[] = {{c_aFigures}, {c_aGpu}, {c_aCpu}};

u32 PanelBID(std::string_view szWord, std::string_view szRole) {
    return g_fnItemBID(g_stClassicItems, eItem::Panel, szWord, szRole);
}

bool IsPanelOn(u32 uInstance, std::string_view szWord) {
    return g_fnIsItemEnabled(ENABLE_PANEL, uInstance, PanelBID(szWord, "INFO"));
}

bool IsLineOn(const stLine& line) {
    return std::any_of(line.words.begin(), line.words.end(),
                       [](const char* szWord) { return IsPanelOn(0, szWord); });
}

/// Width of a panel that is on, else 0.
i32 WidthOf(u32 uInstance, const char* szWord) {
    if (!IsPanelOn(uInstance, szWord)) return 0;
    const stPanelTemplate* pTemplate = g_stTemplates.poolPanel.m_fnFind(PanelBID(szWord, "INFO"));
    const stPanelStyle* pStyle =
        pTemplate ? g_stTemplates.poolPanelStyle.m_fnFind(pTemplate->uStyleID) : nullptr;
    if (!pStyle) return 0;
    return pStyle->iWidth ? pStyle->iWidth : pTemplate->iWidth;
}

/// False for a panel of no line.
bool FirstBlockOrigin(const stClassicGrid& stGrid, std::string_view szWord, stOrigin& stOut) {
    i32 iY = 0;
    for (const stLine& line : c_aLines) {
        i32 iX = 0;
        for (const char* szOnLine : line.words) {
            if (szWord == szOnLine) {
                stOut = {iX, iY};
                return true;
            }
            iX += WidthOf(0, szOnLine);
        }
        if (IsLineOn(line)) iY += stGrid.iWideStep;
    }
    return false;
}

bool SecondBlockOrigin(const stClassicGrid& stGrid, std::string_view szWord, u32 uInstance, stOrigin& stOut) {
    if (szWord != "GPU_SECOND" && szWord != "CPU_SECOND") return false;
    stOut.iX = szWord == "CPU_SECOND" ? WidthOf(uInstance, "GPU_SECOND") : 0;
    stOut.iY = stGrid.iSecondY + (static_cast<i32>(uInstance) - 1) * stGrid.iStep;
    return true;
}

u32 CountInstances(u32 uBID) {
    u32 uCount = 0;
    for (u32 u = 0; u < g_uInstances; ++u) uCount += g_fnIsItemEnabled(ENABLE_PANEL, u, uBID);
    return uCount;
}

/// How often the title of a detail row is on; all sensors stand behind the extension.
u32 CountTitle(const stStyleItem& item) {
    if (item.szWord != std::string_view(g_szExtensionWord)) return CountInstances(item.uBID);
    u32 uCount = 0;
    for (const stSensorRow& st : g_stDisplay.listSensorRows)
        uCount += g_fnIsItemEnabled(ENABLE_PANEL, st.uGroup, item.uBID + st.uOrdinal);
    return uCount;
}

bool IsFooter(const stStyleItem& item) { return item.szWord == std::string_view("POWERED_BY_ORVIN_DECK"); }

} // namespace

stClassicGrid g_fnMakeClassicGrid(const stClassicRows& st, i32 iFontScale) {
    const auto Scaled = [iFontScale](i64 iLength) {
        return g_fnCutToWhole(static_cast<f64>(iLength * iFontScale) / 100.0);
    };
    stClassicGrid grid;
    grid.iWideStep = Scaled(c_iWideStep);
    grid.iStep = Scaled(c_iStep);
    grid.iSecondY = Scaled(i64{c_iWideStep} * st.uWide + c_iSecondGap);
    grid.iThirdY = grid.iSecondY + (st.bSecond ? Scaled(i64{c_iStep} * st.uFurther + c_iThirdGap) : 0);
    grid.iEndY = grid.iThirdY + Scaled(i64{c_iStep} * st.uDetails + c_iEndGap);
    grid.aiValueX[0] = Scaled(c_iFirstColumn);
    grid.aiValueX[1] = grid.aiValueX[0] + Scaled(c_iColumn) + Scaled(c_iColumnGap);
    grid.aiValueX[2] = grid.aiValueX[1] + Scaled(c_iNarrowColumn) + Scaled(c_iColumnGap);
    for (u32 u = 0; u < g_uClassicColumns; ++u) grid.aiUnitX[u] = grid.aiValueX[u] + Scaled(c_iColumn);
    return grid;
}

stClassicRows g_fnCountClassicRows(u32 uCards, u32 uCpus) {
    stClassicRows st;
    for (const stLine& line : c_aLines) st.uWide += IsLineOn(line);
    st.bSecond = g_fnIsItemEnabledAnywhere(ENABLE_PANEL, PanelBID("GPU_SECOND", "INFO")) ||
                 g_fnIsItemEnabledAnywhere(ENABLE_PANEL, PanelBID("CPU_SECOND", "INFO"));
    if (st.bSecond) st.uFurther = std::max(std::max(uCards, uCpus), 1u) - 1;
    g_fnForEachItem(g_stClassicItems, [&](const stStyleItem& item) {
        if (item.eKind == eItem::Panel && item.szRole == std::string_view("TITLE") && !IsFooter(item))
            st.uDetails += CountTitle(item);
    });
    return st;
}

stOrigin g_fnClassicOrigin(const stClassicGrid& stGrid, const stStyleItem& item, u32 uInstance) {
    stOrigin st;
    const std::string_view szRole = item.szRole;
    if (szRole == "INFO") {
        if (!FirstBlockOrigin(stGrid, item.szWord, st)) SecondBlockOrigin(stGrid, item.szWord, uInstance, st);
    } else if (szRole == "TITLE") {
        st.iY = IsFooter(item) ? stGrid.iEndY : stGrid.iThirdY;
    }
    return st;
}

bool g_fnClassicColumn(const stClassicGrid& stGrid, const stStyleItem& item, i32& iX) {
    constexpr const char* c_aszWords[] = {"CLK", "TEMP", "USAGE"};
    std::string_view szWord = item.szWord;
    if (!szWord.starts_with("GPU_SECOND_") && !szWord.starts_with("CPU_SECOND_")) return false;
    szWord.remove_prefix(sizeof "GPU_SECOND_" - 1);
    for (u32 u = 0; u < g_uClassicColumns; ++u)
        if (szWord == c_aszWords[u]) {
            iX = item.eKind == eItem::Number ? stGrid.aiValueX[u] : stGrid.aiUnitX[u];
            return true;
        }
    return false;
}
