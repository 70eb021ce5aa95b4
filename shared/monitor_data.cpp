#include "shared/monitor_data.h"

#include "base/log.h"
#include "base/numbers.h"
#include "platform/shared_block.h"
#include "shared/offset_tree.h"
#include <cstdio>

std::map<std::string, stAppData, std::less<>> g_mapAppData;

namespace {

/// Longer names than this are formed by nobody.
constexpr std::size_t c_uDataFullNameBytes = 512;

// KEEP(companions): the address belongs to this bank, also after a flip; lists built from it show its values
// until they are built again, which companions in use ask for behind each flip.
const u32* InRawData(const char* szName, u32 uBank, u32 uOffset) noexcept {
    if (uOffset > g_uMaxRawDataOffset) {
        g_fnLog("g_fnGetMonitorDataPtr szDataFullName: %s / pData: <error> - RV5 Data / DataOffset: %d",
                szName, static_cast<i32>(uOffset));
        return nullptr;
    }
    const void* pData = platform::SharedSegment()->RawData[uBank] + uOffset;
    g_fnLog("g_fnGetMonitorDataPtr szDataFullName: %s / pData: %#x - RV5 Data / DataOffset: %d", szName,
            g_fnLow32(pData), static_cast<i32>(uOffset));
    return static_cast<const u32*>(pData);
}

} // namespace

u32 g_fnCurrentDataBank() noexcept { return g_fnReadOnce(platform::SharedSegment()->uDataBank) > 0 ? 1 : 0; }

void g_fnRegisterAppData(const char* szName, u32 uDecimals, u32 uDivisor, const u32* pData) {
    g_mapAppData.insert_or_assign(szName, stAppData{uDecimals, uDivisor, pData});
}

const u32* g_fnGetMonitorDataPtr(const char* szDataFullName) noexcept {
    const u32 uBank = g_fnCurrentDataBank();
    if (!szDataFullName) return nullptr;
    if (const auto it = g_mapAppData.find(szDataFullName); it != g_mapAppData.end()) {
        g_fnLog("g_fnGetMonitorDataPtr szDataFullName: %s / pData: %#x - APP Data", szDataFullName,
                g_fnLow32(it->second.m_pData));
        return it->second.m_pData;
    }
    u32 uOffset = 0;
    if (g_fnFindInOffsetTree(platform::SharedSegment()->DataTable[uBank], g_uDataTableBytes, szDataFullName,
                             uOffset))
        return InRawData(szDataFullName, uBank, uOffset);
    g_fnLog("g_fnGetMonitorDataPtr szDataFullName: %s / pData: NULL - ???", szDataFullName);
    return nullptr;
}

bool g_fnGetDataFullName(i32 iIndex, const char* szBaseName, char* szBuffer, std::size_t uBytes) noexcept {
    const int iLength = std::snprintf(szBuffer, uBytes, "%s#%d", szBaseName, iIndex);
    return iLength >= 0 && static_cast<std::size_t>(iLength) < uBytes;
}

const u32* g_fnGetMonitorDataPtrByIndex(i32 iIndex, const char* szBaseName) noexcept {
    char szName[c_uDataFullNameBytes];
    if (!szBaseName || !g_fnGetDataFullName(iIndex, szBaseName, szName)) return nullptr;
    return g_fnGetMonitorDataPtr(szName);
}
