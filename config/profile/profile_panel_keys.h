#pragma once
// How the parts of a profile's settings look: colours, panels behind them, places; the styles by number.
#include "base/color.h"
#include "config/make/text_look.h"
#include "config/settings/setting_binding.h"
#include "platform/types.h"

#include <map>

/// Panel behind a part.
struct stPanelKeys : stColor { // of which the alpha is the opacity as a byte
    u8 u8Opacity;              ///< percent, 0 to 100
    u32 uType;                 ///< 0 none, 1 plain, 2 frosted
    u32 uScattering;           ///< blur diameter, 0 to 100
    f32 fThick;                ///< kept, nothing reads it further
};

/// Place of a part on the canvas, in canvas pixels.
struct stPartPlace {
    i32 iAnchor; ///< anchor code
    i32 iX, iY;
};

/// "Info": what goes for all its rows.
struct stInfoKeys {
    u32 uIsShow;
    u32 uFontScale; ///< percent
    stPartPlace stPlace;
    stPanelKeys stPanel;
};

/// "Memo".
struct stMemoKeys {
    u32 uIsShow;
    char szTitle[g_uSettingText];
    char16_t wzFilename[g_uSettingText]; ///< relative to the profile folder
    stTextColors stColors;
    u32 uFontScale; ///< text size in percent of the canvas height
    u32 uFrameSizeW;
    stPartPlace stPlace;
    stPanelKeys stPanel;
};

/// "Watermark" and "SystemInfo".
struct stCaptionKeys {
    u32 uIsShow;
    char szTitle[g_uSettingText];
    char16_t wzFontName[g_uSettingText];
    char16_t wzText[g_uSettingText];
    stTextColors stColors;
    u32 uFontScale; ///< text size in percent of the canvas height
    stPartPlace stPlace;
    stPanelKeys stPanel;
};

/// "Photo".
struct stPhotoKeys {
    u32 uIsShow;
    char szTitle[g_uSettingText];
    char16_t wzFilename[g_uSettingText]; ///< relative to the profile folder
    u32 uFrameSizeW, uFrameSizeH;
    stPartPlace stPlace;
    u8 u8Opacity; ///< percent, 0 to 100
    u8 u8A;       ///< the opacity as a byte
    stPanelKeys stPanel;
};

constexpr u32 g_uStyleIds = 64;

struct stProfileLooks {
    stInfoKeys stInfo;
    stMemoKeys stMemo;
    stCaptionKeys stWatermark, stSystemInfo;
    stPhotoKeys stPhoto;
    /// "Camera": shadows under all texts, numbers and flips of a layout. Its other key is g_bTextGlow.
    bool bTextShadow;
    /// Colours and anchors (7, 8 or 9) that "CustomSettings" gives to styles, by style id.
    std::map<u32, stTextColors> mapTextColors;
    std::map<u32, i32> mapTextAligns;
};
extern stProfileLooks g_stLooks;

/// g_stPlainTextColors for a style without colours.
const stTextColors& g_fnTextColorsOf(u32 uStyleId);
/// 7 for a style without one.
i32 g_fnTextAlignOf(u32 uStyleId);

/// Number that the first run of digits in a title gives; g_uNoTitleNumber without one, or beyond 32 bits.
constexpr u32 g_uNoTitleNumber = 0xFFFFFFFF;
u32 g_fnTitleNumber(const char* szTitle);

/// All of these records from the active profile; what is missing has its defaults.
void g_fnReadProfilePanelKeys();
void g_fnReadProfileTextStyles();
/// g_fnReadProfilePanelKeys, then the settings batch, which needs the photo's size.
void g_fnReadProfileBatch();
