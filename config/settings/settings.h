#pragma once
// Machine-wide settings: OSD.ini of the data folder, and the values that the companion writes to the
// settings store. Read on the render thread while a layout is made; nothing watches them. A file, key or
// value that is missing is normal: its default applies and nobody is told. The limiter's and the intervals
// stand in files of their own.
#include "config/settings/setting_binding.h"
#include "draw/data_path.h"
#include "platform/types.h"

#include <string>
#include <vector>

/// Longest text value of the settings store with its end mark.
constexpr u32 g_uRegistryTextUnits = 128;

/// Colour of a warning's status, in both forms.
struct stStatusColor {
    u8 au8RGB[3];
    f32 afRGB[3]; ///< byte / 255
};

/// A source of video frames, as its key gives it.
struct stVideoSource {
    char16_t wzFileMappingName[g_uRegistryTextUnits];
    u32 uFrameSizeW, uFrameSizeH;   ///< box on the canvas
    u32 uBufferSizeW, uBufferSizeH; ///< pixels of a frame
    u32 uUpdateInterval, uUpdateFrames;
    u32 uEnable;
    i32 iAnchor; ///< anchor code
    i32 iPositionX, iPositionY;
    u8 uAlpha;
};
constexpr u32 g_uVideoSources = 8;

/// The companion's own photo, which replaces the profile's while uIsShow is not 0 and a path is given.
struct stCameraPhoto {
    char16_t wzFilePath[g_uRegistryTextUnits];
    u32 uIsShow;
    u32 uFrameSizeW, uFrameSizeH;
    i32 iAnchor;
    i32 iPositionX, iPositionY;
    u8 uAlpha;
};

/// Panel of the debug rows; kept, nothing reads it further.
struct stDebugPanel {
    u32 uRows;
    u32 uRed, uGreen, uBlue, uAlpha;
    u32 uPanelType;
};

/// The settings, with what holds before the first reading.
struct stSettings {
    // OSD.ini
    u32 uMinHookScreenWidth = 200, uMinHookScreenHeight = 200; ///< pixels; kept, nothing reads them further
    bool bDebugMode = false;            ///< the five debug rows of Classic and RV5 are shown
    bool bDebugMessageBox = false;      ///< failures of the load show a message box
    bool bDebugTime = false;            ///< running hundredths in place of the time of day
    bool bUseLanguageXMLString = false; ///< captions come from the language file
    f32 fPressDetachSeconds = 0.05f;    ///< 0.05 to 2.5; kept, nothing reads it further
    stStatusColor aStatusColor[2] = {{{0, 0, 0}, {0, 0, 0}},
                                     {{255, 201, 14}, {1, 201 / 255.0f, 14 / 255.0f}}};
    u32 auWarningColor[2] = {0x000000, 0xFFC90E}; ///< the banner's two colours, 0xRRGGBB
    bool bWarningTwinkle = true;                  ///< it changes between them
    f32 fWarningTwinkleSeconds = 1.0f;
    // Settings store
    u32 uWowKeys = 1;       ///< 1 while the 32-bit view of the keys is the one to read, and before the probe
    bool bClock12H = false; ///< hours from 1 to 12
    bool bVideoEnable = false, bGraphEnable = false; ///< master switches of video boxes and of graphs
    stVideoSource aVideoSource[g_uVideoSources] = {};
    stCameraPhoto stPhoto = {};
    stDebugPanel stDebugRows = {};
    char16_t wzLanguageFileName[g_uRegistryTextUnits] = u"X"; ///< relative to the suite's folder
};
extern stSettings g_stSettings;

extern u32 g_uCapMode; ///< a screenshot is taken 1: before the overlay is drawn, 2: after it
extern u32 g_uCapType; ///< file type of a screenshot
extern char16_t g_wzShotFolder[g_uDataPathCapacity]; ///< folder of screenshots; the data folder by default

// --- Readers -----------------------------------------------------------------------------------------------

/// Reads each row of a table from a section of OSD.ini, in key order. The row's map key is the file's key;
/// values are cut to 259 units. A row without a value takes its default.
void g_fnApplyIniSettings(const char16_t* wzSection, SettingTableW& table);
/// Reads each row of a table from a key of the settings store, in key order, by the row's name. Decimal rows
/// take 32-bit values, local text rows texts of up to 127 units; any other kind stores nothing. wzSubkey:
/// below the overlay's own root, or a full path. A key that cannot be opened leaves all rows on their
/// defaults.
void g_fnApplyRegistrySettings(const char16_t* wzSubkey, SettingTableW& table, bool bIsFullPath);
/// Appends the names of a key's subkeys and values; null skips either. At most g_uEnumNamesMax of each.
void g_fnEnumRegistrySubkeys(const char16_t* wzSubkey, std::vector<std::u16string>* pSubkeys,
                             std::vector<std::u16string>* pValues, bool bIsFullPath);
constexpr u32 g_uEnumNamesMax = 65536;

/// Path of a file in the suite's install folder, room g_uDataPathCapacity. False, with an empty path, if the
/// folder is unknown or the path does not fit.
bool g_fnResolveInstallPath(char16_t* wzOut, const char16_t* wzName) noexcept;

/// Decides which view of the keys is read; the first step of every load.
void g_fnProbeWowKeys();
/// The fixed sections of OSD.ini: Info, Settings, Warning. Always true.
bool g_fnReadGlobalSettingsINI();
/// g_fnReadGlobalSettingsINI with the report of its failure.
void g_fnLoadGlobalSettings();
/// Tells the user that OSD.ini could not be read, where message boxes are asked for.
void g_fnReportGlobalSettingsFailure();
/// "Text" of a section of OSD.ini that a template names, empty if missing. szSection is in the system's code
/// page. Cut to the room.
void g_fnReadIniText(const char* szSection, char16_t* wzOut, u32 uUnits);

/// Master switches of video and graphs.
void g_fnReadFeatureSwitches();
/// All eight video sources.
void g_fnReadVideoSources();
void g_fnReadDebugSettings();
/// Screenshots and the companion's photo, whose size defaults to that of the profile's photo.
void g_fnReadCameraSettings(u32 uPhotoW, u32 uPhotoH);
void g_fnReadLanguageFileName();
void g_fnReadClockSetting();
/// Both intervals, then what follows from them.
void g_fnReadIntervals();
void g_fnReadLimiterSettings();
/// Debug, camera, language file, clock, intervals and limiter, in this order.
void g_fnReadSettingsBatch(u32 uPhotoW, u32 uPhotoH);

/// Number of physical cards.
u32 g_fnReadCardNum();
/// Whether a row is supported: card rows by card number and row name, CPU rows by row name, sensors by group
/// and data name (UTF-8).
bool g_fnIsCardRowSupported(u32 uCard, const char16_t* wzRow);
bool g_fnIsCpuRowSupported(const char16_t* wzRow);
bool g_fnIsSensorSupported(u32 uGroup, const char* szDataName);
/// Tag of a row's caption in the language file, empty without one: of a card row, of any other row.
void g_fnReadCardLanguageTag(const char16_t* wzRow, char16_t (&wzTag)[g_uRegistryTextUnits]);
void g_fnReadRowLanguageTag(const char16_t* wzRow, char16_t (&wzTag)[g_uRegistryTextUnits]);
