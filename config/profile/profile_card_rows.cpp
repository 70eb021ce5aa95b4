#include "config/profile/profile_card_rows.h"

#include "config/profile/profile_cards.h"

const stInfoRow g_aCardRows[g_uCardRows] = {
    {"GPUClock", u"GPU Clock", "GPU_CLK"},
    {"GPUTemperature", u"GPU Temperature", "GPU_TEMP"},
    {"GPUUsage", u"GPU Usage", "GPU_USAGE"},
    {"VRAMClock", u"VRAM Clock", "VRAM_CLK"},
    {"VRAMUsageP", u"VRAM Usage (%)", "VRAM_USAGE_P"},
    {"VRAMUsageMB", u"VRAM Usage (MB)", "VRAM_USAGE_MB"},
    {"Fan1Duty", u"Fan1 Duty", "FAN1_DUTY"},
    {"Fan1RPM", u"Fan1 RPM", "FAN1_RPM"},
    {"Fan2Duty", u"Fan2 Duty", "FAN2_DUTY"},
    {"Fan2RPM", u"Fan2 RPM", "FAN2_RPM"},
    {"Fan3Duty", u"Fan3 Duty", "FAN3_DUTY"},
    {"Fan3RPM", u"Fan3 RPM", "FAN3_RPM"},
    {"Fan4Duty", u"Fan4 Duty", "FAN4_DUTY"},
    {"Fan4RPM", u"Fan4 RPM", "FAN4_RPM"},
    {"ExtFan1Duty", u"Ext. Fan1 Duty", "EXT_FAN1_DUTY"},
    {"ExtFan1RPM", u"Ext. Fan1 RPM", "EXT_FAN1_RPM"},
    {"ExtFan2Duty", u"Ext. Fan2 Duty", "EXT_FAN2_DUTY"},
    {"ExtFan2RPM", u"Ext. Fan2 RPM", "EXT_FAN2_RPM"},
    {"GPUVoltage", u"GPU Voltage", "GPU_VOLTAGE"},
    {"VRAMVoltage", u"VRAM Voltage", "VRAM_VOLTAGE"},
    {"VDDCIVoltage", u"VDDCI Voltage", "VDDCI_VOLTAGE"},
    {"Voltage0.95", u"0.95 Voltage", "VOLTAGE_0_95"},
    {"Voltage3.3", u"3.3 Voltage", "VOLTAGE_3_3"},
    {"Voltage1.8", u"1.8 Voltage", "VOLTAGE_1_8"},
    {"LoadLine", u"Load Line", "LOAD_LINE"},
    {"PowerTarget", u"Power Target", "POWER_TARGET"},
    {"Pin1", u"Pin 1", "POWER_PIN_1"},
    {"Pin2", u"Pin 2", "POWER_PIN_2"},
    {"Pin3", u"Pin 3", "POWER_PIN_3"},
    {"Pin4", u"Pin 4", "POWER_PIN_4"},
    {"Pin5", u"Pin 5", "POWER_PIN_5"},
    {"Pin6", u"Pin 6", "POWER_PIN_6"},
    {"MBPin1", u"MB Pin 1", "POWER_MB_PIN_1"},
    {"MBPin2", u"MB Pin 2", "POWER_MB_PIN_2"},
    {"MBPin3", u"MB Pin 3", "POWER_MB_PIN_3"},
    {"MBPin4", u"MB Pin 4", "POWER_MB_PIN_4"},
    {"MBPin5", u"MB Pin 5", "POWER_MB_PIN_5"},
    {"MBPin6", u"MB Pin 6", "POWER_MB_PIN_6"},
    {"PowerDetector", u"Power Detector", "POWER_DETECTOR"},
};

const stInfoRow g_aCpuRows[g_uCpuRows] = {
    {"CPUClock", u"CPU Clock", "CPU_CLK"},
    {"CPUTemperature", u"CPU Temperature", "CPU_TEMP"},
    {"CPUUsage", u"CPU Usage", "CPU_USAGE"},
};

const char* g_fnProgramRowElement(u32 uRow) {
    static constexpr const char* aszElements[ROW_COUNT] = {
        "FPS",    "FPSAvg",     "FPSMax",    "FPSMin",     "FPS50P",     "FPS1P",
        "FPS01P", "FrameCount", "Frametime", "SystemTime", "Resolution", "PoweredByOrvinDeck"};
    return aszElements[uRow];
}
