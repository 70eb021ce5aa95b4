#include "tools/profile/settings.h"
#include "shared/info_rows.h"
#include "config/settings/settings_sensors.h"
#include "platform/headless/test_controls.h"
#include "platform/profile_sensors.h"
#include "platform/settings_tree.h"
#include <cstring>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

constexpr const char16_t* kSensors = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\\Config\\Sensor";

/// The pace of shipped settings, milliseconds.
constexpr const char16_t* kPace = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option";
constexpr u32 kFramePace = 100, kSensorPace = 500;

void TakeKey(const std::u16string& wstrPath, const platform::SettingsNode& node) {
    platform::headless::AddSettingsKey(wstrPath.c_str());
    for (const auto& [wstrName, value] : node.m_mapValues)
        platform::headless::SetSettingsBytes(wstrPath.c_str(), wstrName.c_str(), value.m_eType,
                                             value.m_vecBytes);
}

void TakeSensorsOfFile(const platform::CSettingsTree& tree) {
    const platform::SettingsNode* const pSensors = tree.FindKey(kSensors);
    if (!pSensors) return;
    for (const auto& [wstrName, node] : pSensors->m_mapSubkeys)
        TakeKey(std::u16string(kSensors) + u'\\' + wstrName, node);
}

/// A key with all below it.
void TakeTree(const std::u16string& wstrPath, const platform::SettingsNode& node) {
    TakeKey(wstrPath, node);
    for (const auto& [wstrName, child] : node.m_mapSubkeys) TakeTree(wstrPath + u'\\' + wstrName, child);
}

/// What cards, CPUs and sensors of a machine report. False if the file says nothing of cards.
bool TakeHardwareOfFile(const platform::CSettingsTree& tree) {
    if (!tree.FindKey((std::u16string(kPace) + u"\\Card").c_str())) return false;
    for (const char16_t* wzKey : {u"\\Card", u"\\CPU", u"\\Sensor"}) {
        const std::u16string wstrPath = std::u16string(kPace) + wzKey;
        if (const platform::SettingsNode* p = tree.FindKey(wstrPath.c_str())) TakeTree(wstrPath, *p);
    }
    return true;
}

void Support(const std::u16string& wstrPath) {
    platform::headless::SetSettingsNumber((std::u16string(kPace) + u'\\' + wstrPath).c_str(), u"IsSupport",
                                          1);
}

/// A machine to draw with where nothing is known of one: a card that reports everything, a CPU, and every
/// sensor that is defined.
void TakeSampleHardware() {
    platform::headless::SetSettingsNumber((std::u16string(kPace) + u"\\Card").c_str(), u"Card Num", 1);
    for (const stInfoRow& row : g_aCardRows) Support(std::u16string(u"Card\\0\\") + row.wzRow);
    for (const stInfoRow& row : g_aCpuRows) Support(std::u16string(u"CPU\\") + row.wzRow);
    for (const std::string& strName : DefinedSensors()) {
        char16_t wzName[g_uSettingText];
        g_fnDecodeUtf8(strName.c_str(), wzName, g_uSettingText);
        Support(std::u16string(u"Sensor\\0\\") + wzName);
    }
}

} // namespace

void TakeMachineSettings(const fs::path& pathData, bool bNamed) {
    std::error_code error;
    const fs::path pathWhole = fs::absolute(pathData, error).lexically_normal();
    const fs::path pathFolder =
        pathWhole.has_filename() ? pathWhole.parent_path() : pathWhole.parent_path().parent_path();
    const fs::path pathFile = pathFolder / "Settings" / "settings.ini";
    platform::headless::ClearSettings();
    platform::headless::SetSettingsNumber(kPace, u"UpdateFrameDataInterval", kFramePace);
    platform::headless::SetSettingsNumber(kPace, u"UpdateStatisticInterval", kSensorPace);
    bool bHardware = false;
    if (fs::is_regular_file(pathFile, error)) {
        const auto tree = platform::CSettingsTree::Load(pathFile.u16string().c_str());
        TakeSensorsOfFile(tree);
        bHardware = TakeHardwareOfFile(tree);
    } else if (!bNamed) {
        platform::tool::TakeSensorsOfSystem();
    }
    if (!bHardware) TakeSampleHardware();
}

std::vector<std::string> DefinedSensors() {
    g_fnProbeWowKeys(); // which of two roots counts
    g_fnReadSensorDefinitions();
    std::vector<std::string> listNames;
    for (const auto& [strName, st] : g_stSensors.mapByName) listNames.push_back(strName);
    return listNames;
}

} // namespace companion
