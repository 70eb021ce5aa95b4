#pragma once
// Sensors that the companion publishes in the settings store, beyond those that the program knows by itself.
#include "config/settings/settings.h"

#include <map>
#include <string>

/// One sensor. The ids stay -1 until a layout shows it.
struct stSensorDefinition {
    char szDataName[g_uSettingText];   ///< base name of its values, UTF-8
    char szProfileTag[g_uSettingText]; ///< element that shows it in a profile, UTF-8
    char16_t wzCaption[g_uSettingText];
    char16_t wzUnit[g_uSettingText];
    u32 uDecimals; ///< 0 to 3
    u32 uDivisor;  ///< never 0
    i32 iTitleTextId, iValueNumberId, iUnitTextId;
};

/// Tags of a sensor's caption and unit in the language file, by data name.
struct stSensorLanguageTags {
    char16_t wzCaptionTag[g_uRegistryTextUnits];
    char16_t wzUnitTag[g_uRegistryTextUnits];
};

struct stSensorDefinitions {
    std::map<std::string, stSensorDefinition, std::less<>> mapByName;     ///< by data name
    std::map<std::string, std::string, std::less<>> mapTag;               ///< from profile tag to data name
    std::map<std::string, stSensorLanguageTags, std::less<>> mapLanguage; ///< by data name
};
extern stSensorDefinitions g_stSensors;

/// Fills the maps anew, and the formats of g_stDisplay with them. A sensor whose names are empty or beyond
/// 255 bytes of UTF-8 is left out; of two with one data name the later one counts.
void g_fnReadSensorDefinitions();
