#include "config/fixed/style_items.h"

#include "config/fixed/group_order.h"
#include "shared/info_rows.h"

namespace {

using enum eItem;
using Words = std::span<const char* const>;

// --- words -------------------------------------------------------------------------------------------------

/// Figures of the program in the order of their rows; the first and the last two have rows of their own kind
/// in Classic.
constexpr const char* c_aProgram[] = {"FPS",    "FPS_AVG", "FPS_MAX",   "FPS_MIN",    "FPS_50P",
                                      "FPS_1P", "FPS_01P", "FRAME_CNT", "FRAME_TIME", "SYSTEM_TIME"};
constexpr Words c_program = c_aProgram, c_figures = c_program.subspan(1, 7), c_measured = c_program.first(9),
                c_time = c_program.last(1);
constexpr const char* c_aWide[] = {"FPS", "FRAME_TIME", "SYSTEM_TIME", "GPU_FIRST", "CPU_FIRST"};
constexpr Words c_wide = c_aWide, c_gpuFirst = c_wide.subspan(3, 1), c_cpuFirst = c_wide.subspan(4, 1);
constexpr const char* c_aSecond[] = {"GPU_SECOND", "CPU_SECOND", "INFO_SECOND"};
constexpr Words c_second = c_aSecond;

constexpr const char* c_aGpu[] = {"GPU_CLK", "GPU_TEMP", "GPU_USAGE"};
constexpr const char* c_aCpu[] = {"CPU_CLK", "CPU_TEMP", "CPU_USAGE"};
constexpr const char* c_aUnits[] = {"GPU_CLK", "GPU_TEMP", "GPU_USAGE", "CPU_CLK", "CPU_TEMP", "CPU_USAGE"};
constexpr const char* c_aGpuFirst[] = {"GPU_FIRST_CLK", "GPU_FIRST_TEMP", "GPU_FIRST_USAGE"};
constexpr const char* c_aCpuFirst[] = {"CPU_FIRST_CLK", "CPU_FIRST_TEMP", "CPU_FIRST_USAGE"};
constexpr const char* c_aGpuSecond[] = {"GPU_SECOND_CLK", "GPU_SECOND_TEMP", "GPU_SECOND_USAGE"};
constexpr const char* c_aCpuSecond[] = {"CPU_SECOND_CLK", "CPU_SECOND_TEMP", "CPU_SECOND_USAGE"};

/// Further rows of a card, those of the power pins apart.
constexpr const char* c_aDetails[] = {
    "VRAM_CLK",     "VRAM_USAGE_P",  "VRAM_USAGE_MB", "FAN1_DUTY",   "FAN1_RPM",     "FAN2_DUTY",
    "FAN2_RPM",     "FAN3_DUTY",     "FAN3_RPM",      "FAN4_DUTY",   "FAN4_RPM",     "EXT_FAN1_DUTY",
    "EXT_FAN1_RPM", "EXT_FAN2_DUTY", "EXT_FAN2_RPM",  "GPU_VOLTAGE", "VRAM_VOLTAGE", "VDDCI_VOLTAGE",
    "VOLTAGE_0_95", "VOLTAGE_3_3",   "VOLTAGE_1_8",   "LOAD_LINE",   "POWER_TARGET"};
constexpr Words c_details = c_aDetails;
constexpr const char* c_aPins[] = {"POWER_PIN_1",    "POWER_PIN_2",    "POWER_PIN_3",    "POWER_PIN_4",
                                   "POWER_PIN_5",    "POWER_PIN_6",    "POWER_MB_PIN_1", "POWER_MB_PIN_2",
                                   "POWER_MB_PIN_3", "POWER_MB_PIN_4", "POWER_MB_PIN_5", "POWER_MB_PIN_6"};
constexpr const char* c_aDebug[] = {"DEBUG_PID", "DEBUG_TID", "DEBUG_ANCHOR", "DEBUG_ANCHOR_X",
                                    "DEBUG_ANCHOR_Y"};
constexpr const char* c_aDetector[] = {"POWER_DETECTOR"};
constexpr const char* c_aWeather[] = {"WEATHER"};
constexpr const char* c_aExtension[] = {g_szExtensionWord};
constexpr const char* c_aResolution[] = {"RESOLUTION"};
constexpr const char* c_aPoweredBy[] = {"POWERED_BY_ORVIN_DECK"};
constexpr const char* c_aSettings[] = {"MEMO0", "WATERMARK", "SYSTEMINFO"};

// --- Classic -----------------------------------------------------------------------------------------------

constexpr stItemRun c_aClassic[] = {
    {Text, 0, c_wide.first(2), "UNIT"},
    {Text, 2, c_time, "VALUE1"},
    {Text, 3, c_time, "VALUE2"},
    {Text, 4, c_gpuFirst, "TITLE"},
    {Text, 5, c_aGpuFirst, "UNIT"},
    {Text, 8, c_cpuFirst, "TITLE"},
    {Text, 9, c_aCpuFirst, "UNIT"},
    {Text, 12, c_details, "TITLE"},
    {Text, 35, c_aPins, "TITLE"},
    {Text, 47, c_aDetector, "TITLE"},
    {Text, 48, c_figures, "TITLE"},
    {Text, 55, c_aDebug, "TITLE"},
    {Text, 60, c_aExtension, "TITLE"},
    {Text, 1084, c_aResolution, "TITLE"},
    {Text, 1085, c_aResolution, "VALUE"},
    {Text, 1086, c_aPoweredBy, "TITLE"},
    {Text, 1087, c_aSettings, ""},
    {Text, 1091, c_second.first(1), "TITLE"},
    {Text, 1092, c_aGpuSecond, "UNIT"},
    {Text, 1095, c_second.subspan(1, 1), "TITLE"},
    {Text, 1096, c_aCpuSecond, "UNIT"},
    {Text, 1099, c_second.last(1), "TITLE"},
    {Text, 1100, c_details, "UNIT"},
    {Text, 1123, c_aPins, "UNIT"},
    {Text, 1135, c_figures, "UNIT"},
    {Text, 1142, c_aExtension, "UNIT"},
    {Number, 0, c_wide.first(2), "VALUE"},
    {Number, 2, c_time, "VALUE1"},
    {Number, 3, c_time, "VALUE2"},
    {Number, 4, c_time, "VALUE3"},
    {Number, 5, c_aResolution, "VALUE1"},
    {Number, 6, c_aResolution, "VALUE2"},
    {Number, 7, c_aGpuFirst, "VALUE"},
    {Number, 10, c_details, "VALUE"},
    {Number, 33, c_aPins, "VALUE"},
    {Number, 45, c_figures, "VALUE"},
    {Number, 52, c_aDebug, "VALUE"},
    {Number, 57, c_aExtension, "VALUE"},
    {Number, 1081, c_aCpuFirst, "VALUE"},
    {Number, 1084, c_aGpuSecond, "VALUE"},
    {Number, 1087, c_aCpuSecond, "VALUE"},
    {Flip, 0, c_aDetector, "TITLE"},
    {Flip, 1, c_aDetector, "VALUE"},
    {Flip, 2, c_aWeather, "VALUE"},
    {Panel, 0, c_wide, "INFO"},
    {Panel, 5, c_details, "TITLE"},
    {Panel, 28, c_aPins, "TITLE"},
    {Panel, 40, c_aDetector, "TITLE"},
    {Panel, 41, c_figures, "TITLE"},
    {Panel, 48, c_aDebug, "TITLE"},
    {Panel, 53, c_aExtension, "TITLE"},
    {Panel, 1077, c_aResolution, "TITLE"},
    {Panel, 1078, c_aResolution, "VALUE"},
    {Panel, 1079, c_aPoweredBy, "TITLE"},
    {Panel, 1080, c_second.first(2), "INFO"},
    {Panel, 1082, c_details, "DATA"},
    {Panel, 1105, c_aPins, "DATA"},
    {Panel, 1117, c_aDetector, "DATA"},
    {Panel, 1118, c_figures, "DATA"},
    {Panel, 1125, c_aDebug, "DATA"},
    {Panel, 1130, c_aExtension, "DATA"},
};

// --- RV5 ---------------------------------------------------------------------------------------------------

/// The unit of the last detail row was added later, behind those of the pins.
constexpr Words c_firstDetails = c_details.first(c_details.size() - 1), c_lastDetail = c_details.last(1);

constexpr stItemRun c_aRV5[] = {
    {Text, 0, c_program, "TITLE"},         {Text, 10, c_aDebug, "TITLE"},
    {Text, 15, c_aUnits, "TITLE"},         {Text, 21, c_details, "TITLE"},
    {Text, 44, c_aPins, "TITLE"},          {Text, 56, c_aDetector, "TITLE"},
    {Text, 57, c_aExtension, "TITLE"},     {Text, 1081, c_aResolution, "TITLE"},
    {Text, 1082, c_aPoweredBy, "TITLE"},   {Text, 1083, c_aSettings, ""},
    {Text, 1087, c_measured, "UNIT"},      {Text, 1096, c_time, "VALUE1"},
    {Text, 1097, c_time, "VALUE2"},        {Text, 1098, c_time, "UNIT"},
    {Text, 1104, c_aResolution, "VALUE"},  {Text, 1105, c_aGpu, "UNIT"},
    {Text, 1108, c_firstDetails, "UNIT"},  {Text, 1130, c_aPins, "UNIT"},
    {Text, 1142, c_lastDetail, "UNIT"},    {Text, 1143, c_aExtension, "UNIT"},
    {Text, 2167, c_aCpu, "UNIT"},          {Number, 0, c_measured, "VALUE"},
    {Number, 9, c_time, "VALUE1"},         {Number, 10, c_time, "VALUE2"},
    {Number, 11, c_time, "VALUE3"},        {Number, 12, c_aDebug, "VALUE"},
    {Number, 17, c_aResolution, "VALUE1"}, {Number, 18, c_aResolution, "VALUE2"},
    {Number, 19, c_aGpu, "VALUE"},         {Number, 22, c_details, "VALUE"},
    {Number, 45, c_aPins, "VALUE"},        {Number, 57, c_aExtension, "VALUE"},
    {Number, 1081, c_aCpu, "VALUE"},       {Flip, 0, c_aDetector, "TITLE"},
    {Flip, 1, c_aDetector, "VALUE"},       {Flip, 2, c_aWeather, "VALUE"},
    {Panel, 0, c_program, "TITLE"},        {Panel, 10, c_aDebug, "TITLE"},
    {Panel, 15, c_aUnits, "TITLE"},        {Panel, 21, c_details, "TITLE"},
    {Panel, 44, c_aPins, "TITLE"},         {Panel, 56, c_aDetector, "TITLE"},
    {Panel, 57, c_aExtension, "TITLE"},    {Panel, 1081, c_aResolution, "TITLE"},
    {Panel, 1082, c_aPoweredBy, "TITLE"},  {Panel, 1083, c_program, "VALUE"},
    {Panel, 1093, c_aDebug, "VALUE"},      {Panel, 1098, c_aResolution, "VALUE"},
    {Panel, 1099, c_aGpu, "VALUE"},        {Panel, 1102, c_details, "VALUE"},
    {Panel, 1125, c_aPins, "VALUE"},       {Panel, 1137, c_aDetector, "VALUE"},
    {Panel, 1138, c_aExtension, "VALUE"},  {Panel, 2162, c_aCpu, "VALUE"},
};

// --- names -------------------------------------------------------------------------------------------------

constexpr const char* KindWord(eItem eKind) {
    constexpr const char* c_aszKinds[] = {g_szTextBoxKind, g_szNumBoxKind, g_szFlipBoxKind, g_szPanelKind};
    return c_aszKinds[static_cast<u8>(eKind)];
}

NameMap& MapOf(eItem eKind) {
    stNameMaps& st = g_stNameMaps;
    NameMap* const apMaps[] = {&st.mapTextBox, &st.mapNumBox, &st.mapFlipBox, &st.mapPanel};
    return *apMaps[static_cast<u8>(eKind)];
}

/// Only rows whose title is a text of the style have a caption.
void EnterCaption(const stStyleItems& style, const char16_t* wzCaption, const char* szWord) {
    if (g_fnItemBID(style, Text, szWord, "TITLE") == g_uNoBID) return;
    g_stNameMaps.mapCaptionTitle.insert_or_assign(
        wzCaption, g_fnItemFullName(style.szPrefix, szWord, "TITLE", g_szTextBoxKind));
}

void EnterCaptions(const stStyleItems& style) {
    for (const stInfoRow& row : g_aCardRows) EnterCaption(style, row.wzRow, row.szDataName);
    for (const stInfoRow& row : g_aCpuRows) EnterCaption(style, row.wzRow, row.szDataName);
    EnterCaption(style, u"Frame Time", "FRAME_TIME");
    EnterCaption(style, u"System Time", "SYSTEM_TIME");
    EnterCaption(style, u"Resolution", "RESOLUTION");
}

} // namespace

const stStyleItems g_stClassicItems = {g_szClassicPrefix, c_aClassic, "DATA"};
const stStyleItems g_stRV5Items = {g_szRV5Prefix, c_aRV5, "VALUE"};

void g_fnForEachItem(const stStyleItems& style, const std::function<void(const stStyleItem&)>& fnDo) {
    for (const stItemRun& run : style.runs)
        for (u32 u = 0; u < run.words.size(); ++u)
            fnDo({run.eKind, run.uFirst + u, run.words[u], run.szRole});
}

u32 g_fnItemBID(const stStyleItems& style, eItem eKind, std::string_view szWord, std::string_view szRole) {
    for (const stItemRun& run : style.runs) {
        if (run.eKind != eKind || szRole != run.szRole) continue;
        for (u32 u = 0; u < run.words.size(); ++u)
            if (szWord == run.words[u]) return run.uFirst + u;
    }
    return g_uNoBID;
}

std::string g_fnItemName(const stStyleItems& style, const stStyleItem& item) {
    return *item.szRole ? g_fnItemFullName(style.szPrefix, item.szWord, item.szRole, KindWord(item.eKind))
                        : g_fnItemFullName(style.szPrefix, item.szWord, KindWord(item.eKind));
}

void g_fnForEachSensorItem(const stStyleItems& style, std::string_view szWord, u32 uRow,
                           const std::function<void(const stStyleItem&)>& fnDo) {
    const std::string strWord(szWord);
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        if (item.szWord == std::string_view(g_szExtensionWord))
            fnDo({item.eKind, item.uBID + uRow, strWord.c_str(), item.szRole});
    });
}

void g_fnEnterStyleNames(const stStyleItems& style) {
    g_fnClearNameMaps();
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        MapOf(item.eKind).insert_or_assign(g_fnItemName(style, item), item.uBID);
    });
    EnterCaptions(style);
}

void g_fnEnterSensorNames(const stStyleItems& style, std::string_view szWord, u32 uRow) {
    // A sensor that is called like a row of the style does not take its names.
    g_fnForEachSensorItem(style, szWord, uRow, [&](const stStyleItem& item) {
        MapOf(item.eKind).try_emplace(g_fnItemName(style, item), item.uBID);
    });
}
