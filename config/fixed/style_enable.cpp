#include "config/fixed/style_enable.h"

#include "config/fixed/enable_map.h"
#include "config/fixed/style_rows.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_switches.h"
#include "config/settings/sensor_table.h"
#include "config/settings/settings.h"

#include <bit>
#include <map>
#include <string_view>

namespace {

/// Instances as bits, instance 0 lowest.
using Instances = u64;
/// Instances in which the rows of words are on; a word that is missing is off.
using WordInstances = std::map<std::string_view, Instances>;

constexpr Instances c_uFirst = 1;
/// Rows of a card that Classic has in its first two blocks.
constexpr u32 c_uBlockRows = 3;

constexpr Instances Bit(u32 uInstance) { return c_uFirst << uInstance; }

u32 Cards() { return g_stInfoBlock.stCards.uDisplayCount; }
u32 Cpus() { return g_stInfoBlock.stCpu.bExists ? g_stInfoBlock.stCpu.uDisplayCount : 0; }

/// Display positions at which a row of cards is on, and CPUs with a row.
Instances CardRow(u32 uRow) {
    Instances on = 0;
    for (u32 u = 0; u < Cards(); ++u)
        if (g_fnIsCardRowVisible(g_stInfoBlock.stCards, u, uRow)) on |= Bit(u);
    return on;
}
Instances CpuRow(u32 uRow) {
    Instances on = 0;
    for (u32 u = 0; u < Cpus(); ++u)
        if (g_fnIsCpuRowVisible(g_stInfoBlock.stCpu, u, uRow)) on |= Bit(u);
    return on;
}

Instances InstancesOf(const stDisplayRow& row) {
    switch (row.eOf) {
    case eRowOf::Program:
        return g_stInfoBlock.auProgramRow[row.uIndex] ? c_uFirst : 0;
    case eRowOf::Card:
        return CardRow(row.uIndex);
    case eRowOf::Cpu:
        return CpuRow(row.uIndex);
    default:
        return g_stSettings.bDebugMode ? c_uFirst : 0;
    }
}

void AddRows(WordInstances& on) {
    for (const stDisplayRow& row : g_fnDisplayRows()) on[row.szWord] = InstancesOf(row);
    on[g_fnProgramRowWord(ROW_POWERED_BY)] = g_stInfoBlock.auProgramRow[ROW_POWERED_BY] ? c_uFirst : 0;
}

/// The texts that no row of "Info" is, each with a switch of its own.
void AddSettings(WordInstances& on) {
    on["MEMO0"] = g_stProfileSwitches.uMemo ? c_uFirst : 0;
    on["WATERMARK"] = g_stProfileSwitches.uWatermark ? c_uFirst : 0;
    on["SYSTEMINFO"] = g_stProfileSwitches.uSystemInfo ? c_uFirst : 0;
}

/// Words of a card's or CPU's three rows in the first block and in the second.
struct stBlockWords {
    const char *szFirst, *szSecond;
    const char* aszFirst[c_uBlockRows];
    const char* aszSecond[c_uBlockRows];
};
constexpr stBlockWords c_stGpu = {"GPU_FIRST",
                                  "GPU_SECOND",
                                  {"GPU_FIRST_CLK", "GPU_FIRST_TEMP", "GPU_FIRST_USAGE"},
                                  {"GPU_SECOND_CLK", "GPU_SECOND_TEMP", "GPU_SECOND_USAGE"}};
constexpr stBlockWords c_stCpu = {"CPU_FIRST",
                                  "CPU_SECOND",
                                  {"CPU_FIRST_CLK", "CPU_FIRST_TEMP", "CPU_FIRST_USAGE"},
                                  {"CPU_SECOND_CLK", "CPU_SECOND_TEMP", "CPU_SECOND_USAGE"}};

/// The title and the panel of a block's line are on with any of its rows.
void AddBlocks(WordInstances& on, const stBlockWords& words, Instances (*fnRow)(u32)) {
    Instances any = 0;
    for (u32 u = 0; u < c_uBlockRows; ++u) {
        const Instances row = fnRow(u);
        on[words.aszFirst[u]] = row & c_uFirst;
        on[words.aszSecond[u]] = row & ~c_uFirst;
        any |= row;
    }
    on[words.szFirst] = any & c_uFirst;
    on[words.szSecond] = any & ~c_uFirst;
}

void Enable(eItem eKind, u32 uBID, Instances on) {
    constexpr eEnableKind c_aeKinds[] = {ENABLE_TEXT, ENABLE_NUMBER, ENABLE_PANEL, ENABLE_PANEL};
    for (; eKind != eItem::Flip && on; on &= on - 1)
        g_fnSetItemEnable(c_aeKinds[static_cast<u8>(eKind)], static_cast<u32>(std::countr_zero(on)), uBID,
                          true);
}

void EnableSensors(const stStyleItems& style) {
    for (const stSensorRow& st : g_stDisplay.listSensorRows) {
        if (st.uOrdinal >= g_uExtensionRows || st.uGroup >= g_uInstances) continue;
        g_fnForEachSensorItem(style, st.szBaseName, st.uOrdinal, [&](const stStyleItem& item) {
            Enable(item.eKind, item.uBID, Bit(st.uGroup));
        });
    }
}

template <class Where> void EnableAll(const stStyleItems& style, const WordInstances& on, Where fnWhere) {
    g_fnClearItemEnable();
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        if (const auto it = on.find(item.szWord); it != on.end())
            Enable(item.eKind, item.uBID, fnWhere(item, it->second));
    });
    if (g_stProfileSwitches.uInfo) EnableSensors(style);
}

bool IsRowOfCards(std::string_view szWord) {
    for (const stInfoRow& row : g_aCardRows)
        if (szWord == row.szDataName) return true;
    return false;
}

/// A detail row of Classic has one title for all cards, and a place for each: a card that lacks the row
/// leaves its place empty, so that those behind it stay in their columns.
Instances ClassicInstances(const stStyleItem& item, Instances on) {
    const std::string_view szRole = item.szRole;
    if (!on || !IsRowOfCards(item.szWord)) return on;
    if (szRole == "TITLE") return c_uFirst;
    return szRole == "DATA" ? Bit(Cards()) - 1 : on;
}

} // namespace

void g_fnEnableClassicItems() {
    WordInstances on;
    if (g_stProfileSwitches.uInfo) {
        AddRows(on);
        AddBlocks(on, c_stGpu, CardRow);
        AddBlocks(on, c_stCpu, CpuRow);
    }
    AddSettings(on);
    EnableAll(g_stClassicItems, on, ClassicInstances);
}

void g_fnEnableRV5Items() {
    WordInstances on;
    if (g_stProfileSwitches.uInfo) AddRows(on);
    AddSettings(on);
    EnableAll(g_stRV5Items, on, [](const stStyleItem&, Instances instances) { return instances; });
}
