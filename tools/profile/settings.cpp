#include "tools/profile/settings.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"
#include "platform/headless/test_controls.h"
#include "platform/profile_sensors.h"
#include "platform/settings_tree.h"
#include "platform/tool_settings.h"
#include "shared/info_rows.h"
#include <cstring>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

/// The pace of shipped settings, milliseconds.
constexpr const char16_t* kPace = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option";
constexpr const char16_t* kLanguage = u"LanguageXMLFileName";
constexpr u32 kFramePace = 100, kSensorPace = 500;

void TakeKey(const std::u16string& wstrPath, const platform::SettingsNode& node) {
    platform::headless::AddSettingsKey(wstrPath.c_str());
    for (const auto& [wstrName, value] : node.m_mapValues)
        platform::headless::SetSettingsBytes(wstrPath.c_str(), wstrName.c_str(), value.m_eType,
                                             value.m_vecBytes);
}

/// A key with all below it. True if a card, CPU or sensor says there what it has.
bool TakeTree(const std::u16string& wstrPath, const platform::SettingsNode& node) {
    TakeKey(wstrPath, node);
    bool bHardware = node.m_mapValues.contains(u"IsSupport");
    for (const auto& [wstrName, child] : node.m_mapSubkeys)
        bHardware |= TakeTree(wstrPath + u'\\' + wstrName, child);
    return bHardware;
}

/// Hardware, sensors and languages of a machine. False if the file says nothing of its hardware.
bool TakeMachineOfFile(const platform::CSettingsTree& tree) {
    const platform::SettingsNode* const pInfo = tree.FindKey(kPace);
    if (!pInfo) return false;
    if (const auto it = pInfo->m_mapValues.find(kLanguage); it != pInfo->m_mapValues.end())
        platform::headless::SetSettingsBytes(kPace, kLanguage, it->second.m_eType, it->second.m_vecBytes);
    bool bHardware = false;
    for (const auto& [wstrName, node] : pInfo->m_mapSubkeys)
        bHardware |= TakeTree(std::u16string(kPace) + u'\\' + wstrName, node);
    return bHardware;
}

constexpr const char16_t* kVideo = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Video";

void TakeVideoOfFile(const platform::CSettingsTree& tree) {
    if (const platform::SettingsNode* p = tree.FindKey(kVideo)) TakeTree(kVideo, *p);
}

std::u16string WideText(const std::string& str) {
    char16_t wz[g_uSettingText];
    g_fnDecodeUtf8(str.c_str(), wz, g_uSettingText);
    return wz;
}

void TakeSettingOfSystem(const std::string& strKey, const char* szName) {
    const platform::tool::Setting st = platform::tool::CurrentSetting(strKey, szName);
    const std::u16string wstrPath = u"SOFTWARE\\Zarn\\ORVIN-OSD\\" + WideText(strKey);
    if (st.bRemoved) return;
    if (st.uNumber)
        platform::headless::SetSettingsNumber(wstrPath.c_str(), WideText(szName).c_str(), *st.uNumber);
    else
        platform::headless::SetSettingsText(wstrPath.c_str(), WideText(szName).c_str(),
                                            WideText(st.strText).c_str());
}

void TakeVideoOfSystem() {
    TakeSettingOfSystem("Video", "Enable");
    for (u32 u = 0; u < g_uVideoSources; ++u)
        for (const char* szName :
             {"Enable", "FileMappingName", "FrameSize: W", "FrameSize: H", "BufferSize: W", "BufferSize: H",
              "Update: I", "Update: F", "Anchor", "Position: X", "Position: Y", "Alpha"})
            TakeSettingOfSystem("Video\\" + std::to_string(u), szName);
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
    for (const std::string& strName : DefinedSensors()) Support(u"Sensor\\0\\" + WideText(strName));
}

} // namespace

bool TakeMachineSettings(const fs::path& pathData, bool bNamed) {
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
        TakeVideoOfFile(tree);
        bHardware = TakeMachineOfFile(tree);
    } else if (!bNamed) {
        TakeVideoOfSystem();
        bHardware = platform::tool::TakeMachineOfSystem();
    }
    if (!bHardware) TakeSampleHardware();
    return bHardware;
}

std::vector<std::string> DefinedSensors() {
    g_fnProbeWowKeys(); // which of two roots counts
    g_fnReadSensorDefinitions();
    std::vector<std::string> listNames;
    for (const auto& [strName, st] : g_stSensors.mapByName) listNames.push_back(strName);
    return listNames;
}

} // namespace companion
