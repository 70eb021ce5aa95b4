#pragma once
// From a data name, such as "GPU_CLK#0" or "FPS_AVG", to a pointer to its 32-bit value.
//
// Two sources: what the overlay measures in this process (APP data, ordinary variables) and what the
// companion publishes in the current data bank of the shared segment. Render thread only.
#include "platform/types.h"
#include <cstddef>
#include <cstring>
#include <functional>
#include <map>
#include <string>

/// Largest offset of a value in a raw data bank.
constexpr u32 g_uMaxRawDataOffset = 16380;

/// One APP value.
struct stAppData {
    u32 m_uDecimals; ///< decimals shown
    u32 m_uDivisor;  ///< the raw value is divided by it
    const u32* m_pData;
};

/// The APP values by name, a plain name without an index.
extern std::map<std::string, stAppData, std::less<>> g_mapAppData;

/// Enters a name; one that is known already gets the new record.
void g_fnRegisterAppData(const char* szName, u32 uDecimals, u32 uDivisor, const u32* pData);
/// Bank that is current now, 0 or 1. Read it once and go on with that.
u32 g_fnCurrentDataBank() noexcept;
/// Address of a name's value, or null. An address in a data bank stays valid for good but belongs to the bank
/// that was current now; it may be unaligned: read through g_fnReadData.
const u32* g_fnGetMonitorDataPtr(const char* szDataFullName) noexcept;
/// Writes "%s#%d" of the two, cut to the buffer. False if it was cut.
bool g_fnGetDataFullName(i32 iIndex, const char* szBaseName, char* szBuffer, std::size_t uBytes) noexcept;
template <std::size_t uBytes>
bool g_fnGetDataFullName(i32 iIndex, const char* szBaseName, char (&szBuffer)[uBytes]) noexcept {
    return g_fnGetDataFullName(iIndex, szBaseName, szBuffer, uBytes);
}
/// The value of a name that is given as base and index.
const u32* g_fnGetMonitorDataPtrByIndex(i32 iIndex, const char* szBaseName) noexcept;

/// The value behind such a pointer, which must not be null.
inline i32 g_fnReadData(const u32* pData) noexcept {
    i32 iValue;
    std::memcpy(&iValue, static_cast<const void*>(pData), sizeof iValue);
    return iValue;
}
