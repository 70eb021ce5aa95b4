#include "companion/hardware_settings.h"
#include "shared/info_rows.h"
#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>

namespace companion {
namespace {

using platform::tool::Setting;

constexpr u32 kMostCards = 20, kMostGroups = 64; ///< overlays know no more
const std::string kInfo = "Information Option";

/// What people call a sensor that the styles have no row of their own for.
struct Words {
    std::string_view strBase;
    const char* szTitle;
    const char* szLanguageTag;
};
constexpr Words kWords[] = {
    {"RAM_USAGE_MB", "RAM", "RAMUsageMB"},
    {"RAM_USAGE_P", "RAM", "RAMUsageP"},
    {"GPU_POWER", "GPU power", "GPUPower"},
    {"GPU_HOTSPOT_TEMP", "GPU hot spot", "GPUHotSpot"},
    {"VRAM_TEMP", "VRAM temperature", "VRAMTemperature"},
    {"SYS_FAN_RPM", "Fan", "SystemFanRPM"},
    {"SYS_FAN_DUTY", "Fan", "SystemFanDuty"},
    {"SYS_TEMP", "Mainboard", "MainboardTemperature"},
    {"DRIVE_TEMP", "Drive", "DriveTemperature"},
};

struct Name {
    std::string strBase;
    u32 uIndex = 0;
};

/// "BASE#INDEX" in its parts.
std::optional<Name> Split(const std::string& strName) {
    const size_t uMark = strName.rfind('#');
    if (uMark == 0 || uMark == std::string::npos) return std::nullopt;
    Name st{strName.substr(0, uMark), 0};
    const char* const pEnd = strName.data() + strName.size();
    const auto [pStop, eError] = std::from_chars(strName.data() + uMark + 1, pEnd, st.uIndex);
    return eError == std::errc() && pStop == pEnd ? std::optional(st) : std::nullopt;
}

/// Rows have plain names.
std::string Narrow(const char16_t* wz) {
    std::string str;
    for (; *wz; ++wz) str += static_cast<char>(*wz);
    return str;
}

template <size_t N> const stInfoRow* RowOf(const stInfoRow (&aRows)[N], const std::string& strBase) {
    const auto it = std::find_if(std::begin(aRows), std::end(aRows),
                                 [&](const stInfoRow& row) { return strBase == row.szDataName; });
    return it != std::end(aRows) ? it : nullptr;
}

Setting Number(const std::string& strKey, const char* szName, u32 uValue) {
    return {strKey, szName, uValue, {}, false};
}
Setting Text(const std::string& strKey, const char* szName, const std::string& strText) {
    return {strKey, szName, std::nullopt, strText, false};
}
Setting Support(const std::string& strKey) { return Number(kInfo + "\\" + strKey, "IsSupport", 1); }

/// Units as people write them.
std::string UnitOf(std::string_view strUnit) {
    return strUnit == "C" ? "\xC2\xB0"
                            "C"
                          : std::string(strUnit);
}

/// Collects, each setting once.
class Settings {
  public:
    void Add(Setting st) {
        const std::string strPlace = st.strKey + "\n" + st.strName;
        m_map.try_emplace(strPlace, std::move(st));
    }
    void AddReading(const sensors::Reading& st, const Name& name) {
        if (const stInfoRow* pRow = RowOf(g_aCardRows, name.strBase))
            AddCardRow(*pRow, name.uIndex);
        else if (const stInfoRow* pCpu = RowOf(g_aCpuRows, name.strBase))
            Add(Support("CPU\\" + Narrow(pCpu->wzRow)));
        else if (name.uIndex < kMostGroups)
            AddSensor(st, name);
    }
    void AddHardware(const sensors::Hardware& st) {
        const bool bCard = st.szKind == std::string_view("gpu");
        if (st.uIndex >= kMostCards) return;
        if (bCard) m_uCards = std::max(m_uCards, st.uIndex + 1);
        if (!st.strName.empty())
            Add(Text(kInfo + (bCard ? "\\Card\\" : "\\CPU\\") + std::to_string(st.uIndex), "Name",
                     st.strName));
    }
    std::vector<Setting> Take() {
        if (m_uCards > 0) Add(Number(kInfo + "\\Card", "Card Num", m_uCards));
        std::vector<Setting> list;
        for (auto& [strPlace, st] : m_map) list.push_back(std::move(st));
        return list;
    }

  private:
    void AddCardRow(const stInfoRow& row, u32 uCard) {
        if (uCard >= kMostCards) return;
        m_uCards = std::max(m_uCards, uCard + 1);
        Add(Support("Card\\" + std::to_string(uCard) + "\\" + Narrow(row.wzRow)));
    }
    void AddSensor(const sensors::Reading& st, const Name& name) {
        const std::string strKey = kInfo + "\\Config\\Sensor\\" + name.strBase;
        const auto it = std::find_if(std::begin(kWords), std::end(kWords),
                                     [&](const Words& words) { return words.strBase == name.strBase; });
        Add(Support("Sensor\\" + std::to_string(name.uIndex) + "\\" + name.strBase));
        Add(Text(strKey, "Title", it != std::end(kWords) ? it->szTitle : name.strBase));
        Add(Text(strKey, "Unit", UnitOf(st.szUnit)));
        if (it != std::end(kWords)) Add(Text(strKey, "Title LanguageXML TagName", it->szLanguageTag));
    }

    std::map<std::string, Setting> m_map;
    u32 m_uCards = 0;
};

} // namespace

std::vector<Setting> HardwareSettings(const std::vector<sensors::Reading>& listReadings,
                                      const std::vector<sensors::Hardware>& listHardware) {
    Settings settings;
    for (const sensors::Reading& st : listReadings)
        if (const auto name = Split(st.strName)) settings.AddReading(st, *name);
    for (const sensors::Hardware& st : listHardware) settings.AddHardware(st);
    return settings.Take();
}

} // namespace companion
