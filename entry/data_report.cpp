#include "entry/data_report.h"

#include "entry/console.h"
#include "platform/shared_block.h"
#include "shared/monitor_data.h"
#include "shared/offset_tree.h"
#include <algorithm>
#include <cstdio>

namespace {

void PrintLine() noexcept { g_fnConsolePrint("--------------------------------\n"); }

/// A name comes from shared memory: no byte of it may steer the console.
void MakePrintable(std::string& szName) {
    for (char& c : szName)
        if (static_cast<u8>(c) < ' ' || c == 127) c = '?';
}

void PrintBank(u32 uBank) noexcept {
    g_fnConsolePrint("maximum allowable raw data offset: %i\n", static_cast<int>(g_uMaxRawDataOffset));
    g_fnConsolePrint("data table offset: %i\n", static_cast<int>(uBank * g_uDataTableBytes));
    g_fnConsolePrint("raw data table offset: %i\n", static_cast<int>(uBank * g_uRawDataBytes));
    g_fnConsolePrint("shift: %i\n", static_cast<int>(uBank));
    PrintLine();
}

void PrintTree(u32 uValuesStart, const std::vector<stOffsetTreeEntry>& vecEntries) noexcept {
    g_fnConsolePrint("header size: %i\n", static_cast<int>(uValuesStart - 1));
    g_fnConsolePrint("raw data offset: %i\n", static_cast<int>(uValuesStart));
    if (uValuesStart < g_uOffsetTreeHeaderBytes)
        g_fnConsolePrint("no data\n");
    else
        g_fnConsolePrint("offset map size: %i\n", static_cast<int>(vecEntries.size()));
    for (const auto& [szName, uOffset] : vecEntries)
        g_fnConsolePrint("%s: %i\n", szName.c_str(), static_cast<int>(uOffset));
    PrintLine();
}

void PrintValues(const u8* pRawData, const std::vector<stOffsetTreeEntry>& vecEntries) noexcept {
    for (const auto& [szName, uOffset] : vecEntries) {
        if (uOffset > g_uMaxRawDataOffset)
            g_fnConsolePrint("%s: <error>\n", szName.c_str());
        else
            g_fnConsolePrint("%s: %i\n", szName.c_str(),
                             g_fnReadData(reinterpret_cast<const u32*>(pRawData + uOffset)));
    }
    PrintLine();
}

} // namespace

void g_fnPrintDataReport() {
    const u32 uBank = g_fnCurrentDataBank();
    const stSharedSegment& stSegment = *platform::SharedSegment();
    const u8* pTable = stSegment.DataTable[uBank];
    std::vector<stOffsetTreeEntry> vecEntries = g_fnListOffsetTree(pTable, g_uDataTableBytes);
    for (stOffsetTreeEntry& stEntry : vecEntries) MakePrintable(stEntry.m_szName);
    PrintBank(uBank);
    PrintTree(g_fnOffsetTreeValuesStart(pTable, g_uDataTableBytes), vecEntries);
    PrintValues(stSegment.RawData[uBank], vecEntries);
    std::fflush(stdout);
}
