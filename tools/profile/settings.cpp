#include "tools/profile/settings.h"
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

void TakeSensorsOfFile(const fs::path& path) {
    const auto tree = platform::CSettingsTree::Load(path.u16string().c_str());
    const platform::SettingsNode* const pSensors = tree.FindKey(kSensors);
    if (!pSensors) return;
    for (const auto& [wstrName, node] : pSensors->m_mapSubkeys)
        TakeKey(std::u16string(kSensors) + u'\\' + wstrName, node);
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
    if (fs::is_regular_file(pathFile, error))
        TakeSensorsOfFile(pathFile);
    else if (!bNamed)
        platform::tool::TakeSensorsOfSystem();
}

std::vector<std::string> DefinedSensors() {
    g_fnProbeWowKeys(); // which of two roots counts
    g_fnReadSensorDefinitions();
    std::vector<std::string> listNames;
    for (const auto& [strName, st] : g_stSensors.mapByName) listNames.push_back(strName);
    return listNames;
}

} // namespace companion
