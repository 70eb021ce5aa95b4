#include "frame/update/build_update_tables.h"

#include "shared/own_names.h"

namespace tables {

static constexpr const char* c_aCardNames[] = {"GPU_CLK", "GPU_TEMP", "GPU_USAGE"};
static constexpr const char* c_aCpuNames[] = {"CPU_CLK", "CPU_TEMP", "CPU_USAGE"};
static constexpr const char* c_aFigureNames[] = {g_aszOwnNames[OWN_FPS_AVG],  g_aszOwnNames[OWN_FPS_MAX],
                                                 g_aszOwnNames[OWN_FPS_MIN],  g_aszOwnNames[OWN_FPS_50P],
                                                 g_aszOwnNames[OWN_FPS_1P],   g_aszOwnNames[OWN_FPS_01P],
                                                 g_aszOwnNames[OWN_FRAME_CNT]};
/// Detail rows of a card, in the order of their ids.
static constexpr const char* c_aDetailNames[] = {
    "VRAM_CLK",     "VRAM_USAGE_P",  "VRAM_USAGE_MB", "FAN1_DUTY",   "FAN1_RPM",     "FAN2_DUTY",
    "FAN2_RPM",     "FAN3_DUTY",     "FAN3_RPM",      "FAN4_DUTY",   "FAN4_RPM",     "EXT_FAN1_DUTY",
    "EXT_FAN1_RPM", "EXT_FAN2_DUTY", "EXT_FAN2_RPM",  "GPU_VOLTAGE", "VRAM_VOLTAGE", "VDDCI_VOLTAGE",
    "VOLTAGE_0_95", "VOLTAGE_3_3",   "VOLTAGE_1_8",   "LOAD_LINE",   "POWER_TARGET"};
static constexpr const char* c_aPinNames[] = {"POWER_PIN_1",    "POWER_PIN_2",    "POWER_PIN_3",
                                              "POWER_PIN_4",    "POWER_PIN_5",    "POWER_PIN_6",
                                              "POWER_MB_PIN_1", "POWER_MB_PIN_2", "POWER_MB_PIN_3",
                                              "POWER_MB_PIN_4", "POWER_MB_PIN_5", "POWER_MB_PIN_6"};
static constexpr const char* c_aPinOtherNames[] = {"PIN_1",    "PIN_2",    "PIN_3",    "PIN_4",
                                                   "PIN_5",    "PIN_6",    "MB_PIN_1", "MB_PIN_2",
                                                   "MB_PIN_3", "MB_PIN_4", "MB_PIN_5", "MB_PIN_6"};
/// The last detail row; its unit text has an id of its own in RV5.
static constexpr std::size_t c_uPowerTarget = 22;
static_assert(std::size(c_aDetailNames) == c_uPowerTarget + 1);

using enum eInstances;

static constexpr stRun c_aClassicCards[] = {
    {c_aCardNames, {7, c_uNone, c_uNone}, First},
    {c_aCardNames, {1084, c_uNone, c_uNone}, Further},
    {c_aDetailNames, {10, 1100, 1082}, Every},
    {c_aPinNames, {33, 1123, 1105}, Every, c_aPinOtherNames},
};
static constexpr stRun c_aClassicCpus[] = {
    {c_aCpuNames, {1081, c_uNone, c_uNone}, First},
    {c_aCpuNames, {1087, c_uNone, c_uNone}, Further},
};
const stStyle c_stClassic = {
    .cardRuns = c_aClassicCards,
    .cpuRuns = c_aClassicCpus,
    .stFigures = {c_aFigureNames, {45, 1135, 1118}, First},
    .stSensor = {57, 1142, 1130},
    .stDirect = {.stFPS = {0, 0, 0},
                 .stFrameTime = {1, 1, 1},
                 .auTime = {2, 3, 4},
                 .auSize = {5, 6},
                 .uSizeText = 1085,
                 .uSizePanel = 1078,
                 .uDebugNumBox = 52,
                 .uDebugPanel = 1125},
};

static constexpr std::span<const char* const> c_detailNames = c_aDetailNames;
static constexpr stRun c_aRV5Cards[] = {
    {c_aCardNames, {19, 1105, 1099}, Every},
    {c_detailNames.first(c_uPowerTarget), {22, 1108, 1102}, Every},
    {c_detailNames.subspan(c_uPowerTarget), {44, 1142, 1124}, Every},
    {c_aPinNames, {45, 1130, 1125}, Every, c_aPinOtherNames},
};
static constexpr stRun c_aRV5Cpus[] = {{c_aCpuNames, {1081, 2167, 2162}, Every}};
const stStyle c_stRV5 = {
    .cardRuns = c_aRV5Cards,
    .cpuRuns = c_aRV5Cpus,
    .stFigures = {c_aFigureNames, {1, 1088, 1084}, First},
    .stSensor = {57, 1143, 1138},
    .stDirect = {.stFPS = {0, c_uNone, c_uNone},
                 .stFrameTime = {8, c_uNone, c_uNone},
                 .auTime = {9, 10, 11},
                 .auSize = {17, 18},
                 .uSizeText = 1104,
                 .uSizePanel = 1098,
                 .uDebugNumBox = 12,
                 .uDebugPanel = c_uNone},
};

} // namespace tables
