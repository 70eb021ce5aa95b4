#include "config/settings/setting_binding.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <tinyxml2.h>

namespace {

template <class T, std::size_t N> void CutInto(T (&out)[N], std::basic_string_view<T> in) {
    const std::size_t u = std::min(in.size(), N - 1);
    std::copy_n(in.data(), u, out);
    std::fill(out + u, out + N, T{});
}

template <class T> std::basic_string_view<T> ViewOf(const T* text) {
    return text ? std::basic_string_view<T>(text) : std::basic_string_view<T>();
}

/// Length of the sequence that a UTF-8 lead byte announces; 1 for all other bytes.
std::size_t SequenceBytes(u8 c) { return c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1; }

/// Drops a code point whose last bytes the cut took away.
void DropOpenSequence(char* szText) {
    const std::size_t uLength = std::strlen(szText);
    for (std::size_t uBack = 1; uBack <= std::min<std::size_t>(3, uLength); ++uBack) {
        const u8 c = static_cast<u8>(szText[uLength - uBack]);
        if ((c & 0xC0) == 0x80) continue;
        if (SequenceBytes(c) > uBack) szText[uLength - uBack] = 0;
        return;
    }
}

} // namespace

void g_fnAddSettings(SettingTable& table, std::span<const stSettingRow> rows) {
    stSettingBinding stScratch{};
    for (const stSettingRow& row : rows) {
        CutInto(stScratch.szName, ViewOf(row.szKey));
        CutInto(stScratch.szDefault, ViewOf(row.szDefault));
        stScratch.uKind = row.uKind;
        stScratch.uTargetType = row.uType;
        stScratch.pTarget = row.pTarget;
        stScratch.uTargetUnits = static_cast<u32>(row.uUnits);
        table.insert_or_assign(row.szKey, stScratch);
    }
}

void g_fnAddSettingsW(SettingTableW& table, std::span<const stSettingRowW> rows) {
    stSettingBindingW stScratch{};
    for (const stSettingRowW& row : rows) {
        CutInto(stScratch.wzName, ViewOf(row.wzName ? row.wzName : row.wzKey));
        CutInto(stScratch.wzDefault, ViewOf(row.wzDefault));
        stScratch.uKind = row.uKind;
        stScratch.uTargetType = row.uType;
        stScratch.pTarget = row.pTarget;
        stScratch.uTargetUnits = static_cast<u32>(row.uUnits);
        table.insert_or_assign(row.wzKey, stScratch);
    }
}

void g_fnApplyXmlSettings(const tinyxml2::XMLElement* pElement, SettingTable& table) {
    char szText[g_uSettingText];
    for (auto& [szKey, row] : table) {
        const char* szFound = pElement ? pElement->Attribute(row.szName) : nullptr;
        if (szFound) {
            // KEEP(files): also where the target has room for more.
            CutInto(szText, std::string_view(szFound));
            if (std::strlen(szFound) >= sizeof szText) DropOpenSequence(szText);
        }
        g_fnStoreSetting(row, szFound ? szText : nullptr);
    }
}

void g_fnReadXmlSettings(const tinyxml2::XMLElement* pElement, std::span<const stSettingRow> rows) {
    SettingTable table;
    g_fnAddSettings(table, rows);
    g_fnApplyXmlSettings(pElement, table);
    g_fnFreeSettings(table);
}

u32 g_fnReadXmlDecimal(const tinyxml2::XMLElement* pElement, const char* szKey, const char* szDefault) {
    u32 uValue = 0;
    const stSettingRow aRows[] = {{szKey, szDefault, SETTING_DECIMAL, TARGET_U32, &uValue}};
    g_fnReadXmlSettings(pElement, aRows);
    return uValue;
}

void g_fnFreeSettings(SettingTable& table) { table.clear(); }

void g_fnFreeSettingsW(SettingTableW& table) { table.clear(); }
