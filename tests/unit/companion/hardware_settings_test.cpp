// Which settings the sensors of a machine mean.
#include "companion/hardware_settings.h"
#include "companion/sensors/linux_cpu.h"
#include "companion/sensors/linux_gpu.h"
#include "machine_fixture.h"
#include "shared/info_rows.h"

#include <algorithm>
#include <set>

namespace {

using companion::HardwareSettings;
using platform::tool::Setting;

/// "KEY/NAME" below "Information Option" with the value as text.
std::map<std::string, std::string> Made(const std::vector<Reading>& listReadings,
                                        const std::vector<Hardware>& listHardware = {}) {
    const std::string strRoot = "Information Option\\";
    std::map<std::string, std::string> map;
    for (const Setting& st : HardwareSettings(listReadings, listHardware)) {
        EXPECT_TRUE(st.strKey.starts_with(strRoot)) << st.strKey;
        EXPECT_TRUE(platform::tool::CheckSetting(st)) << st.strKey;
        const bool bNew = map.emplace(st.strKey.substr(strRoot.size()) + "/" + st.strName,
                                      st.uNumber ? std::to_string(*st.uNumber) : st.strText)
                              .second;
        EXPECT_TRUE(bNew) << st.strKey << " twice";
    }
    return map;
}

Reading Of(const std::string& strName, const char* szUnit = "", std::optional<i32> iValue = 1) {
    return {strName, szUnit, "", iValue};
}

using Expected = std::map<std::string, std::string>;

} // namespace

TEST(HardwareSettings, AMachineWithoutSensorsHasNone) { EXPECT_TRUE(Made({}).empty()); }

TEST(HardwareSettings, RowsOfCardsAndProcessors) {
    EXPECT_EQ(Made({Of("GPU_CLK#0"), Of("VRAM_USAGE_P#1"), Of("CPU_USAGE#0"), Of("CPU_USAGE#1")}),
              (Expected{{"Card/Card Num", "2"},
                        {"Card\\0\\GPU Clock/IsSupport", "1"},
                        {"Card\\1\\VRAM Usage (%)/IsSupport", "1"},
                        {"CPU\\CPU Usage/IsSupport", "1"}}));
}

TEST(HardwareSettings, EveryRowOfTheTableIsKnown) {
    for (const stInfoRow& row : g_aCardRows) {
        const auto map = Made({Of(std::string(row.szDataName) + "#0")});
        const std::u16string wstrRow = row.wzRow;
        const std::string strKey = "Card\\0\\" + std::string(wstrRow.begin(), wstrRow.end()) + "/IsSupport";
        EXPECT_EQ(map.count(strKey), 1u) << strKey;
    }
}

TEST(HardwareSettings, ASensorBeyondTheRowsIsDefinedOnceForAllItsIndexes) {
    EXPECT_EQ(Made({Of("VRAM_TEMP#0", "C"), Of("VRAM_TEMP#3", "C", std::nullopt)}),
              (Expected{{"Config\\Sensor\\VRAM_TEMP/Title", "VRAM temperature"},
                        {"Config\\Sensor\\VRAM_TEMP/Unit", "\xC2\xB0"
                                                           "C"},
                        {"Config\\Sensor\\VRAM_TEMP/Title LanguageXML TagName", "VRAMTemperature"},
                        {"Sensor\\0\\VRAM_TEMP/IsSupport", "1"},
                        {"Sensor\\3\\VRAM_TEMP/IsSupport", "1"}}));
}

TEST(HardwareSettings, ASensorThatNobodyHasAWordForIsCalledAsItsData) {
    EXPECT_EQ(Made({Of("PUMP_RPM#0", "RPM")}), (Expected{{"Config\\Sensor\\PUMP_RPM/Title", "PUMP_RPM"},
                                                         {"Config\\Sensor\\PUMP_RPM/Unit", "RPM"},
                                                         {"Sensor\\0\\PUMP_RPM/IsSupport", "1"}}));
}

TEST(HardwareSettings, NamesOfTheHardware) {
    EXPECT_EQ(Made({}, {{"gpu", 1, "Card X"}, {"cpu", 0, "CPU Y"}, {"cpu", 1, ""}}),
              (Expected{{"Card/Card Num", "2"}, {"Card\\1/Name", "Card X"}, {"CPU\\0/Name", "CPU Y"}}));
}

TEST(HardwareSettings, WhatOverlaysCannotShowIsLeftOut) {
    EXPECT_TRUE(Made({Of("GPU_CLK"), Of("GPU_CLK#"), Of("GPU_CLK#x"), Of("#1"), Of("GPU_CLK#20"),
                      Of("PUMP#64"), Of("GPU_CLK#99999999999")},
                     {{"gpu", 20, "Card"}})
                    .empty());
}

TEST_F(MachineTest, ACardAndTwoProcessorsMakeTheirRowsAndNamesKnown) {
    Write("usr/share/misc/pci.ids",
          "# list\n1002  Maker\n\t73be  Other\n\t73bf  Chip 21 [Model 6800 / 6900]\n"
          "\t\t1002 73bf  Board\n8086  Second\n\t73bf  Wrong\n");
    WriteAll("sys/class/drm/card0/device",
             {{"uevent", "DRIVER=amdgpu\nPCI_ID=1002:73BF\nPCI_SLOT_NAME=0:3"}, {"gpu_busy_percent", "97"}});
    Write("proc/stat", "cpu0 0 0 0 1\ncpu1 0 0 0 1\n");
    Write("sys/devices/system/cpu/cpu1/topology/physical_package_id", "1\n");
    Write("proc/cpuinfo",
          "processor : 0\nmodel name : First CPU\n\nprocessor : 1\nmodel name : Second CPU\n");
    auto collector = Collect(std::make_unique<LinuxCpu>(Root()), std::make_unique<LinuxGpu>(Root()));
    collector.Probe();
    EXPECT_EQ(Made(collector.Readings(), collector.Machine()),
              (Expected{{"Card/Card Num", "1"},
                        {"Card\\0/Name", "Model 6800 / 6900"},
                        {"Card\\0\\GPU Usage/IsSupport", "1"},
                        {"CPU\\0/Name", "First CPU"},
                        {"CPU\\1/Name", "Second CPU"},
                        {"CPU\\CPU Usage/IsSupport", "1"}}));
    Remove("sys/class/drm/card0");
    collector.Probe();
    EXPECT_EQ(Made(collector.Readings(), collector.Machine()).count("Card/Card Num"), 0u);
}

TEST_F(MachineTest, TheDriversOwnWordForAModelCounts) {
    Write("usr/share/hwdata/pci.ids", "1002  Maker\n\t73bf  Plain name\n");
    WriteAll("sys/class/drm/card0/device",
             {{"uevent", "DRIVER=amdgpu\nPCI_ID=1002:73BF\nPCI_SLOT_NAME=0:3"}});
    WriteAll("sys/class/drm/card1/device", {{"uevent", "DRIVER=amdgpu\nPCI_ID=1002:73BF\nPCI_SLOT_NAME=0:4"},
                                            {"product_name", "Own word"}});
    WriteAll("sys/class/drm/card2/device", {{"uevent", "DRIVER=amdgpu\nPCI_ID=12\nPCI_SLOT_NAME=0:5"}});
    auto collector = Collect(std::make_unique<LinuxGpu>(Root()));
    collector.Probe();
    std::vector<std::string> listNames;
    for (const Hardware& st : collector.Machine()) listNames.push_back(st.strName);
    EXPECT_EQ(listNames, (std::vector<std::string>{"Plain name", "Own word", ""}));
}
