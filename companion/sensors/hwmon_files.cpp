#include "companion/sensors/hwmon_files.h"
#include "companion/sensors/text_file.h"

namespace companion::sensors {

std::string HwmonFile(const std::string& strFolder, const char* szPrefix, u32 uChannel,
                      const char* szSuffix) {
    return strFolder + "/" + szPrefix + std::to_string(uChannel) + szSuffix;
}

std::vector<u32> HwmonChannels(const std::string& strFolder, const char* szPrefix) {
    std::vector<u32> listFound;
    for (const Entry& stEntry : NumberedEntries(strFolder, szPrefix, "_input")) {
        listFound.push_back(stEntry.uNumber);
    }
    return listFound;
}

std::string HwmonLabel(const std::string& strFolder, const char* szPrefix, u32 uChannel) {
    return ReadFirstLine(HwmonFile(strFolder, szPrefix, uChannel, "_label"));
}

std::optional<u32> HwmonChannelOf(const std::string& strFolder, const char* szPrefix,
                                  std::initializer_list<const char*> listLabels) {
    const auto listChannels = HwmonChannels(strFolder, szPrefix);
    for (const char* szLabel : listLabels) {
        for (const u32 uChannel : listChannels) {
            if (HwmonLabel(strFolder, szPrefix, uChannel) == szLabel) return uChannel;
        }
    }
    return listChannels.empty() ? std::nullopt : std::optional(listChannels.front());
}

} // namespace companion::sensors
