#include "companion/sensors/linux_hwmon.h"
#include "companion/sensors/hwmon_files.h"
#include "companion/sensors/text_file.h"
#include <algorithm>
#include <iterator>

namespace companion::sensors {
namespace {

constexpr Quantity kCpuTemp = {"CPU_TEMP", "C", 1000, -60, 250};
constexpr Quantity kDriveTemp = {"DRIVE_TEMP", "C", 1000, -60, 250};
constexpr Quantity kBoardTemp = {"SYS_TEMP", "C", 1000, -60, 250};
constexpr Quantity kFanSpeed = {"SYS_FAN_RPM", "RPM", 1, 0, 30000};
constexpr Quantity kFanDuty = {"SYS_FAN_DUTY", "%", 255, 0, 100, Form::Share};

enum class Role { Graphics, Core, Processor, Drive, Board, FansOnly };

struct ChipRole {
    const char* szPrefix;
    Role eRole;
};

/// By the beginning of the chip's name; the first match counts.
constexpr ChipRole kRoles[] = {
    {"amdgpu", Role::Graphics},
    {"radeon", Role::Graphics},
    {"nouveau", Role::Graphics},
    {"i915", Role::Graphics},
    {"xe", Role::Graphics},
    {"coretemp", Role::Core},
    {"k10temp", Role::Processor},
    {"zenpower", Role::Processor},
    {"k8temp", Role::Processor},
    {"via_cputemp", Role::Processor},
    {"cpu_thermal", Role::Processor},
    {"nvme", Role::Drive},
    {"drivetemp", Role::Drive},
    {"nct", Role::Board},
    {"it8", Role::Board},
    {"w83", Role::Board},
    {"f71", Role::Board},
    {"f81", Role::Board},
    {"sch5", Role::Board},
    {"asus", Role::Board},
    {"dell_smm", Role::Board},
    {"thinkpad", Role::Board},
    {"applesmc", Role::Board},
    {"acpitz", Role::Board},
};

Role RoleOf(const std::string& strName) {
    const auto it = std::find_if(std::begin(kRoles), std::end(kRoles),
                                 [&](const ChipRole& st) { return strName.starts_with(st.szPrefix); });
    return it != std::end(kRoles) ? it->eRole : Role::FansOnly;
}

struct NumberedKind {
    const char* szKind;   ///< of the index
    const char* szPrefix; ///< of the file
    const Quantity* pQuantity;
    bool (*fnTakes)(Role);
};

bool IsDrive(Role e) { return e == Role::Drive; }
bool IsBoard(Role e) { return e == Role::Board; }
bool HasFans(Role e) { return e == Role::Board || e == Role::FansOnly; }

/// What is simply counted through over all chips.
constexpr NumberedKind kNumbered[] = {{"drive", "temp", &kDriveTemp, IsDrive},
                                      {"temp", "temp", &kBoardTemp, IsBoard},
                                      {"fan", "fan", &kFanSpeed, HasFans}};

std::string ChannelKey(const std::string& strChip, const char* szPrefix, u32 uChannel) {
    return strChip + "/" + szPrefix + std::to_string(uChannel);
}

} // namespace

void LinuxHwmon::Probe(Numbers& numbers) {
    m_listChips.clear();
    std::map<std::string, u32> mapPlaces;
    for (const Entry& stEntry : NumberedEntries(m_strRoot + "/sys/class/hwmon", "hwmon")) {
        const std::string strName = ReadFirstLine(stEntry.strPath + "/name");
        const Role eRole = RoleOf(strName);
        if (strName.empty() || eRole == Role::Graphics) continue;
        const u32 uPlace = mapPlaces[strName]++;
        m_listChips.push_back({stEntry.strPath, strName, strName + "@" + std::to_string(uPlace), uPlace});
        for (const NumberedKind& stKind : kNumbered) {
            if (!stKind.fnTakes(eRole)) continue;
            for (const u32 uChannel : HwmonChannels(stEntry.strPath, stKind.szPrefix))
                numbers.Propose(stKind.szKind,
                                ChannelKey(m_listChips.back().strKey, stKind.szPrefix, uChannel));
        }
    }
}

/// One value a package, by its label; processors without one show their first core.
void LinuxHwmon::ListCore(const Chip& stChip, const Numbers& numbers) {
    constexpr std::string_view strLabel = "Package id ";
    const auto listChannels = HwmonChannels(stChip.strFolder, "temp");
    if (listChannels.empty()) return;
    u32 uChannel = listChannels.front();
    std::string strPackage = std::to_string(stChip.uPlace);
    for (const u32 uCandidate : listChannels) {
        const std::string strFound = HwmonLabel(stChip.strFolder, "temp", uCandidate);
        if (!strFound.starts_with(strLabel)) continue;
        uChannel = uCandidate;
        strPackage = strFound.substr(strLabel.size());
        break;
    }
    Add(kCpuTemp, numbers.IndexOf("cpu", strPackage).value_or(stChip.uPlace),
        HwmonFile(stChip.strFolder, "temp", uChannel, "_input"));
}

/// One chip a die: the first die of each package counts.
void LinuxHwmon::ListProcessor(const Chip& stChip, const Numbers& numbers) {
    const auto uChips =
        static_cast<u32>(std::count_if(m_listChips.begin(), m_listChips.end(),
                                       [&](const Chip& st) { return st.strName == stChip.strName; }));
    const u32 uPackages = std::max(numbers.Count("cpu"), 1u);
    const u32 uPackage = uChips > uPackages ? stChip.uPlace * uPackages / uChips : stChip.uPlace;
    const auto uChannel = HwmonChannelOf(stChip.strFolder, "temp", {"Tdie", "Tctl"});
    if (!uChannel) return;
    Add(kCpuTemp, numbers.IndexOf("cpu", std::to_string(uPackage)).value_or(uPackage),
        HwmonFile(stChip.strFolder, "temp", *uChannel, "_input"));
}

void LinuxHwmon::ListNumbered(const Chip& stChip, const Numbers& numbers) {
    for (const NumberedKind& stKind : kNumbered) {
        if (!stKind.fnTakes(RoleOf(stChip.strName))) continue;
        for (const u32 uChannel : HwmonChannels(stChip.strFolder, stKind.szPrefix)) {
            const auto uIndex =
                numbers.IndexOf(stKind.szKind, ChannelKey(stChip.strKey, stKind.szPrefix, uChannel));
            if (!uIndex) continue;
            Add(*stKind.pQuantity, *uIndex, HwmonFile(stChip.strFolder, stKind.szPrefix, uChannel, "_input"));
            if (stKind.pQuantity == &kFanSpeed)
                Add(kFanDuty, *uIndex, HwmonFile(stChip.strFolder, "pwm", uChannel, ""),
                    HwmonFile(stChip.strFolder, "pwm", uChannel, "_max"));
        }
    }
}

void LinuxHwmon::List(const Numbers& numbers) {
    Clear();
    for (const Chip& stChip : m_listChips) {
        const Role eRole = RoleOf(stChip.strName);
        if (eRole == Role::Core) ListCore(stChip, numbers);
        if (eRole == Role::Processor) ListProcessor(stChip, numbers);
        ListNumbered(stChip, numbers);
    }
}

} // namespace companion::sensors
