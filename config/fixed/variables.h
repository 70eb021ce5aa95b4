#pragma once
// Names that stand for numbers: four of the program, used in expressions and in attributes of templates; a
// profile's own list, used in attributes; and the presets of the reference file. Render thread only.
#include "platform/types.h"

#include <map>
#include <string>
#include <string_view>

namespace tinyxml2 {
class XMLElement;
}

// --- variables of the program ------------------------------------------------------------------------------

/// Where a variable's value is, and its type by eSettingTarget.
struct stVariable {
    const void* pValue;
    u8 uTargetType;
};

struct stVariables {
    u32 uCPUNum = 0;                ///< "CPUNum": CPUs to show
    u32 uGPUNum = 0;                ///< "GPUNum": cards to show
    i32 iAlign2X = 0, iAlign2Y = 0; ///< "Align#2.x", "Align#2.y": second block, pixels, font scale included
    std::map<std::string, stVariable, std::less<>> mapByName;
};
extern stVariables g_stVariables;

/// Enters the four above and forgets all others, those of files included; the first step of every load.
void g_fnRegisterVariables();
/// Enters one more, in place of one of that name.
void g_fnRegisterVariable(std::string_view szName, const void* pValue, u8 uTargetType);
/// The value: 32 bits of whole ones, the part before the point of a floating one. 0 for an unknown name or
/// type.
i32 g_fnReadVariable(std::string_view szName);

// --- variables of files ------------------------------------------------------------------------------------

using ProfileVariables = std::map<std::string, std::string, std::less<>>;
using PresetVariables = std::map<std::u16string, std::u16string>;
struct stFileVariables {
    ProfileVariables mapProfile;
    PresetVariables mapPreset;
};
extern stFileVariables g_stFileVariables;

/// Entry that the profile's reader adds: the sum of the two parts of its name, in decimal.
constexpr char g_szColumnWidthSum[] = "ColumnWidth#1+ColumnWidth#2";

/// Reads each "Variable" of "CustomSettings" below the given "Info" in place of the former list; the later of
/// two of one name holds. Null reads as one without children.
void g_fnReadProfileVariables(const tinyxml2::XMLElement* pInfo);
/// Reads each "Variable" of "Preset" in place of the former list. Nothing but fonts asks for these.
void g_fnReadPresetVariables(const tinyxml2::XMLElement* pPreset);
/// Tells the fonts what the lists say of their faces: a variable whose name is a face's is its scale in
/// percent, and the profile's list goes before the presets. Both readers do this too.
void g_fnHandOverFontScales();
/// Forgets both lists and the fonts' scales.
void g_fnClearFileVariables();
