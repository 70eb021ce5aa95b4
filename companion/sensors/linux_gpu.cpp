#include "companion/sensors/linux_gpu.h"
#include "companion/sensors/hwmon_files.h"
#include "companion/sensors/text_file.h"

namespace companion::sensors {
namespace {

constexpr Quantity kClock = {"GPU_CLK", "MHz", 1, 0, 20000};
constexpr Quantity kClockHertz = {"GPU_CLK", "MHz", 1000000, 0, 20000};
constexpr Quantity kClockStarred = {"GPU_CLK", "MHz", 1, 0, 20000, Form::Starred};
constexpr Quantity kMemoryHertz = {"VRAM_CLK", "MHz", 1000000, 0, 40000};
constexpr Quantity kMemoryStarred = {"VRAM_CLK", "MHz", 1, 0, 40000, Form::Starred};
constexpr Quantity kUsage = {"GPU_USAGE", "%", 1, 0, 100};
constexpr Quantity kMemoryUsed = {"VRAM_USAGE_MB", "MB", 1 << 20, 0, 16 << 20};
constexpr Quantity kMemoryShare = {"VRAM_USAGE_P", "%", 1, 0, 100, Form::Share};
constexpr Quantity kTemp = {"GPU_TEMP", "C", 1000, -60, 250};
constexpr Quantity kHotspot = {"GPU_HOTSPOT_TEMP", "C", 1000, -60, 250};
constexpr Quantity kMemoryTemp = {"VRAM_TEMP", "C", 1000, -60, 250};
constexpr Quantity kVoltage = {"GPU_VOLTAGE", "mV", 1, 0, 20000};
constexpr Quantity kPower = {"GPU_POWER", "W", 1000000, 0, 5000};
constexpr Quantity kPowerTarget = {"POWER_TARGET", "%", 1, 0, 1000, Form::Share};

struct CardFile {
    const Quantity* pQuantity;
    const char* szFile; ///< in the card's folder
    const char* szWhole;
};

/// What a card's own folder offers. The first file of a name that exists counts.
constexpr CardFile kCardFiles[] = {
    {&kUsage, "/device/gpu_busy_percent", ""},
    {&kClockStarred, "/device/pp_dpm_sclk", ""},
    {&kMemoryStarred, "/device/pp_dpm_mclk", ""},
    {&kMemoryUsed, "/device/mem_info_vram_used", ""},
    {&kMemoryShare, "/device/mem_info_vram_used", "/device/mem_info_vram_total"},
    {&kClock, "/gt_cur_freq_mhz", ""},
    {&kClock, "/gt/gt0/rps_cur_freq_mhz", ""},
    {&kClock, "/device/tile0/gt0/freq0/cur_freq", ""},
};

struct LabelledFile {
    const Quantity* pQuantity;
    const char* szPrefix;
    const char* szLabel;
};

/// What a card's chip offers under a label.
constexpr LabelledFile kLabelled[] = {{&kClockHertz, "freq", "sclk"},
                                      {&kMemoryHertz, "freq", "mclk"},
                                      {&kHotspot, "temp", "junction"},
                                      {&kMemoryTemp, "temp", "mem"}};

/// Fans of one card that have names in the layouts.
constexpr Quantity kFanSpeeds[] = {{"FAN1_RPM", "RPM", 1, 0, 30000},
                                   {"FAN2_RPM", "RPM", 1, 0, 30000},
                                   {"FAN3_RPM", "RPM", 1, 0, 30000},
                                   {"FAN4_RPM", "RPM", 1, 0, 30000}};
constexpr Quantity kFanDuties[] = {{"FAN1_DUTY", "%", 255, 0, 100, Form::Share},
                                   {"FAN2_DUTY", "%", 255, 0, 100, Form::Share},
                                   {"FAN3_DUTY", "%", 255, 0, 100, Form::Share},
                                   {"FAN4_DUTY", "%", 255, 0, 100, Form::Share}};

/// Value of a line "KEY=value" of a device's uevent file.
std::string EventValue(const std::string& strText, std::string_view strKey) {
    std::string_view strLine;
    for (size_t uFrom = 0; TakeLine(strText, uFrom, strLine);) {
        if (strLine.starts_with(strKey) && strLine.substr(strKey.size()).starts_with('='))
            return std::string(Trimmed(strLine.substr(strKey.size() + 1)));
    }
    return {};
}

u64 OwnMemory(const std::string& strCard) {
    const auto iBytes = ReadNumber(strCard + "/device/mem_info_vram_total");
    return iBytes && *iBytes > 0 ? static_cast<u64>(*iBytes) : 0;
}

} // namespace

void LinuxGpu::Probe(Numbers& numbers) {
    m_listCards.clear();
    std::string strEvent;
    for (const Entry& stEntry : NumberedEntries(m_strRoot + "/sys/class/drm", "card")) {
        ReadText(stEntry.strPath + "/device/uevent", strEvent);
        const std::string strDriver = EventValue(strEvent, "DRIVER");
        if (strDriver.empty() || strDriver == "nvidia") continue;
        std::string strKey = EventValue(strEvent, "PCI_SLOT_NAME");
        if (strKey.empty()) strKey = "card" + std::to_string(stEntry.uNumber);
        const auto listChips = NumberedEntries(stEntry.strPath + "/device/hwmon", "hwmon");
        m_listCards.push_back({stEntry.strPath, listChips.empty() ? std::string() : listChips.front().strPath,
                               strKey, ModelName(stEntry.strPath, EventValue(strEvent, "PCI_ID"))});
        numbers.Propose("gpu", strKey, OwnMemory(stEntry.strPath));
    }
}

void LinuxGpu::ListChip(const Card& stCard, u32 uIndex) {
    const std::string& strChip = stCard.strHwmon;
    for (const LabelledFile& st : kLabelled) {
        for (const u32 uChannel : HwmonChannels(strChip, st.szPrefix)) {
            if (HwmonLabel(strChip, st.szPrefix, uChannel) == st.szLabel)
                Add(*st.pQuantity, uIndex, HwmonFile(strChip, st.szPrefix, uChannel, "_input"));
        }
    }
    if (const auto uChannel = HwmonChannelOf(strChip, "temp", {"edge", "pkg"}))
        Add(kTemp, uIndex, HwmonFile(strChip, "temp", *uChannel, "_input"));
    if (const auto uChannel = HwmonChannelOf(strChip, "in", {"vddgfx", "pkg"}))
        Add(kVoltage, uIndex, HwmonFile(strChip, "in", *uChannel, "_input"));
    for (u32 i = 0; i < std::size(kFanSpeeds); ++i) {
        Add(kFanSpeeds[i], uIndex, HwmonFile(strChip, "fan", i + 1, "_input"));
        Add(kFanDuties[i], uIndex, HwmonFile(strChip, "pwm", i + 1, ""),
            HwmonFile(strChip, "pwm", i + 1, "_max"));
    }
    Add(kPower, uIndex, strChip + "/power1_average");
    Add(kPower, uIndex, strChip + "/power1_input");
    Add(kPowerTarget, uIndex, strChip + "/power1_cap", strChip + "/power1_cap_default");
}

/// The driver's own word for the model, else that of the system's list of devices.
std::string LinuxGpu::ModelName(const std::string& strCard, const std::string& strPciId) {
    const std::string strOwn = ReadFirstLine(strCard + "/device/product_name");
    return strOwn.empty() ? m_pciNames.Find(m_strRoot, strPciId) : strOwn;
}

void LinuxGpu::List(const Numbers& numbers) {
    Clear();
    m_listHardware.clear();
    for (const Card& stCard : m_listCards) {
        const auto uIndex = numbers.IndexOf("gpu", stCard.strKey);
        if (!uIndex) continue;
        m_listHardware.push_back({"gpu", *uIndex, stCard.strName});
        if (!stCard.strHwmon.empty()) ListChip(stCard, *uIndex);
        for (const CardFile& st : kCardFiles)
            Add(*st.pQuantity, *uIndex, stCard.strFolder + st.szFile, stCard.strFolder + st.szWhole);
    }
}

} // namespace companion::sensors
