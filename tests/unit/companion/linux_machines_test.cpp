#include "companion/sensors/linux_cpu.h"
#include "companion/sensors/linux_gpu.h"
#include "companion/sensors/linux_hwmon.h"
#include "companion/sensors/linux_memory.h"
#include "machine_fixture.h"

namespace {

class LinuxMachines : public MachineTest {
  protected:
    static std::string Hwmon(u32 u) { return "sys/class/hwmon/hwmon" + std::to_string(u); }
    static std::string Card(u32 u) { return "sys/class/drm/card" + std::to_string(u); }

    Collector Whole() const {
        return Collect(std::make_unique<LinuxCpu>(Root()), std::make_unique<LinuxHwmon>(Root()),
                       std::make_unique<LinuxMemory>(Root()), std::make_unique<LinuxGpu>(Root()));
    }
    Collector Chips() const { return Collect(std::make_unique<LinuxHwmon>(Root())); }
    Collector Cards() const { return Collect(std::make_unique<LinuxGpu>(Root())); }

    void OnePackage(u32 uProcessors) const {
        std::string strStat = "cpu 0 0 0 0\n";
        for (u32 i = 0; i < uProcessors; ++i) {
            const std::string strCpu = "cpu" + std::to_string(i);
            strStat += strCpu + " 0 0 0 100\n";
            Write("sys/devices/system/cpu/" + strCpu + "/topology/physical_package_id", "0\n");
            Write("sys/devices/system/cpu/" + strCpu + "/cpufreq/scaling_cur_freq", "3600000\n");
        }
        Write("proc/stat", strStat);
        Write("proc/meminfo", "MemTotal: 4096 kB\nMemAvailable: 1024 kB\n");
    }

    void AmdCard(u32 uCard, u32 uHwmon, const std::string& strSlot, const std::string& strMemory) const {
        const std::string strDevice = Card(uCard) + "/device";
        WriteAll(strDevice, {{"uevent", "DRIVER=amdgpu\nPCI_CLASS=30000\nPCI_SLOT_NAME=" + strSlot},
                             {"gpu_busy_percent", "97"},
                             {"mem_info_vram_total", strMemory},
                             {"mem_info_vram_used", "4294967296"},
                             {"pp_dpm_sclk", "0: 500Mhz \n1: 2400Mhz *\n2: 2600Mhz "},
                             {"pp_dpm_mclk", "0: 96Mhz \n1: 1000Mhz *"}});
        WriteAll(strDevice + "/hwmon/hwmon" + std::to_string(uHwmon), {{"name", "amdgpu"},
                                                                       {"freq1_input", "2412000000"},
                                                                       {"freq1_label", "sclk"},
                                                                       {"freq2_input", "1000000000"},
                                                                       {"freq2_label", "mclk"},
                                                                       {"temp1_input", "61000"},
                                                                       {"temp1_label", "edge"},
                                                                       {"temp2_input", "74499"},
                                                                       {"temp2_label", "junction"},
                                                                       {"temp3_input", "70000"},
                                                                       {"temp3_label", "mem"},
                                                                       {"in0_input", "1087"},
                                                                       {"in0_label", "vddgfx"},
                                                                       {"fan1_input", "1480"},
                                                                       {"pwm1", "102"},
                                                                       {"pwm1_max", "255"},
                                                                       {"power1_average", "201500000"},
                                                                       {"power1_cap", "220000000"},
                                                                       {"power1_cap_default", "200000000"}});
        WriteAll(Hwmon(uHwmon), {{"name", "amdgpu"}, {"temp1_input", "61000"}, {"fan1_input", "1480"}});
    }

    void Board(u32 uHwmon) const {
        WriteAll(Hwmon(uHwmon), {{"name", "nct6798"},
                                 {"fan1_input", "0"},
                                 {"fan2_input", "1250"},
                                 {"fan7_input", "65535"},
                                 {"pwm1", "255"},
                                 {"pwm2", "128"},
                                 {"temp1_input", "38500"},
                                 {"temp2_input", "127500"},
                                 {"temp2_fault", "1"}});
    }
};

} // namespace

TEST_F(LinuxMachines, IntelLaptopWithoutFans) {
    OnePackage(8);
    WriteAll(Hwmon(0), {{"name", "acpitz"}, {"temp1_input", "49000"}});
    WriteAll(Hwmon(1), {{"name", "BAT0"}, {"in0_input", "16900"}});
    WriteAll(Hwmon(2), {{"name", "nvme"}, {"temp1_input", "34850"}, {"temp1_label", "Composite"}});
    WriteAll(Hwmon(4), {{"name", "iwlwifi_1"}, {"temp1_input", "41000"}});
    WriteAll(Hwmon(5), {{"name", "coretemp"},
                        {"temp2_input", "51000"},
                        {"temp2_label", "Core 0"},
                        {"temp1_input", "55500"},
                        {"temp1_label", "Package id 0"}});
    WriteAll(Card(1), {{"gt_cur_freq_mhz", "1250"}, {"gt_act_freq_mhz", "0"}});
    WriteAll(Card(1) + "/device", {{"uevent", "DRIVER=i915\nPCI_SLOT_NAME=0000:00:02.0"}});
    Write("sys/class/drm/card1-eDP-1/status", "connected\n");
    Collector collector = Whole();
    EXPECT_EQ(Look(collector), (Values{{"CPU_USAGE#0", kNone},
                                       {"CPU_CLK#0", 3600},
                                       {"CPU_TEMP#0", 56},
                                       {"SYS_TEMP#0", 49},
                                       {"DRIVE_TEMP#0", 35},
                                       {"RAM_USAGE_MB#0", 3},
                                       {"RAM_USAGE_P#0", 75},
                                       {"GPU_CLK#0", 1250}}));
}

TEST_F(LinuxMachines, AmdDesktopWithBoardChipAndCard) {
    OnePackage(2);
    WriteAll(Hwmon(0), {{"name", "k10temp"},
                        {"temp1_input", "62125"},
                        {"temp1_label", "Tctl"},
                        {"temp3_input", "58750"},
                        {"temp3_label", "Tccd1"}});
    Board(1);
    AmdCard(0, 2, "0000:0b:00.0", "17163091968");
    Collector collector = Whole();
    EXPECT_EQ(Look(collector),
              (Values{{"CPU_USAGE#0", kNone},   {"CPU_CLK#0", 3600},        {"CPU_TEMP#0", 62},
                      {"SYS_TEMP#0", 39},       {"SYS_TEMP#1", kNone}, // faulty
                      {"SYS_FAN_RPM#0", 0},                            // stands still; the chip says so
                      {"SYS_FAN_DUTY#0", 100},  {"SYS_FAN_RPM#1", 1250},    {"SYS_FAN_DUTY#1", 50},
                      {"SYS_FAN_RPM#2", kNone}, // 65535 stands for unknown
                      {"RAM_USAGE_MB#0", 3},    {"RAM_USAGE_P#0", 75},      {"GPU_CLK#0", 2412},
                      {"GPU_TEMP#0", 61},       {"GPU_HOTSPOT_TEMP#0", 74}, {"GPU_USAGE#0", 97},
                      {"GPU_VOLTAGE#0", 1087},  {"GPU_POWER#0", 202},       {"POWER_TARGET#0", 110},
                      {"VRAM_CLK#0", 1000},     {"VRAM_TEMP#0", 70},        {"VRAM_USAGE_MB#0", 4096},
                      {"VRAM_USAGE_P#0", 25},   {"FAN1_RPM#0", 1480},       {"FAN1_DUTY#0", 40}}));
}

TEST_F(LinuxMachines, TheCardWithMostMemoryOfItsOwnComesFirst) {
    WriteAll(Card(0), {{"gt_cur_freq_mhz", "300"}});
    WriteAll(Card(0) + "/device", {{"uevent", "DRIVER=i915\nPCI_SLOT_NAME=0000:00:02.0"}});
    AmdCard(1, 7, "0000:03:00.0", "8589934592");
    AmdCard(2, 8, "0000:04:00.0", "17179869184");
    Write(Card(2) + "/device/gpu_busy_percent", "12\n");
    Collector collector = Cards();
    Values mapValues = Look(collector);
    EXPECT_EQ(mapValues["GPU_USAGE#0"], 12);
    EXPECT_EQ(mapValues["GPU_USAGE#1"], 97);
    EXPECT_EQ(mapValues["GPU_CLK#2"], 300);
    EXPECT_FALSE(mapValues.contains("GPU_USAGE#2"));
    // A card that leaves keeps its number for its return; the others keep theirs.
    std::filesystem::rename(m_pathRoot / Card(2), m_pathRoot / "away");
    mapValues = Look(collector);
    EXPECT_FALSE(mapValues.contains("GPU_USAGE#0"));
    EXPECT_EQ(mapValues["GPU_USAGE#1"], 97);
    std::filesystem::rename(m_pathRoot / "away", m_pathRoot / Card(2));
    EXPECT_EQ(Look(collector)["GPU_USAGE#0"], 12);
}

TEST_F(LinuxMachines, CardsOfTheNvidiaDriverAreLeftToItsLibrary) {
    WriteAll(Card(0) + "/device",
             {{"uevent", "DRIVER=nvidia\nPCI_SLOT_NAME=0000:01:00.0"}, {"gpu_busy_percent", "1"}});
    WriteAll(Card(1), {{"gt_cur_freq_mhz", "300"}}); // no driver bound
    Collector collector = Cards();
    EXPECT_TRUE(Look(collector).empty());
}

TEST_F(LinuxMachines, OldCardWithoutChipLabelsOrFrequencyFiles) {
    WriteAll(Card(0) + "/device", {{"uevent", "DRIVER=amdgpu"},
                                   {"pp_dpm_sclk", "0: 300Mhz *\n1: 900Mhz"},
                                   {"pp_dpm_mclk", "0: 150Mhz\n1: 1375Mhz *"}});
    WriteAll(Card(0) + "/device/hwmon/hwmon3",
             {{"temp1_input", "44000"}, {"pwm1", "51"}, {"power1_input", "9600000"}});
    Collector collector = Cards();
    EXPECT_EQ(Look(collector), (Values{{"GPU_CLK#0", 300},
                                       {"VRAM_CLK#0", 1375},
                                       {"GPU_TEMP#0", 44},
                                       {"FAN1_DUTY#0", 20},
                                       {"GPU_POWER#0", 10}}));
}

TEST_F(LinuxMachines, NewerIntelDrivers) {
    WriteAll(Card(0), {{"gt/gt0/rps_cur_freq_mhz", "2050"}});
    WriteAll(Card(0) + "/device", {{"uevent", "DRIVER=i915\nPCI_SLOT_NAME=0000:03:00.0"}});
    WriteAll(Card(1) + "/device",
             {{"uevent", "DRIVER=xe\nPCI_SLOT_NAME=0000:04:00.0"}, {"tile0/gt0/freq0/cur_freq", "1900"}});
    Collector collector = Cards();
    EXPECT_EQ(Look(collector), (Values{{"GPU_CLK#0", 2050}, {"GPU_CLK#1", 1900}}));
}

TEST_F(LinuxMachines, ACardAsleepHasNoValues) {
    AmdCard(0, 1, "0000:03:00.0", "8589934592");
    Collector collector = Cards();
    EXPECT_EQ(Look(collector)["GPU_TEMP#0"], 61);
    for (const char* szFile : {"/gpu_busy_percent", "/hwmon/hwmon1/temp1_input", "/hwmon/hwmon1/freq1_input",
                               "/mem_info_vram_used"}) {
        MakeUnreadable(Card(0) + "/device" + szFile);
    }
    Values mapValues = Again(collector);
    for (const char* szName : {"GPU_TEMP#0", "GPU_USAGE#0", "GPU_CLK#0", "VRAM_USAGE_MB#0", "VRAM_USAGE_P#0"})
        EXPECT_EQ(mapValues[szName], kNone) << szName;
    EXPECT_EQ(mapValues["FAN1_RPM#0"], 1480);
}

TEST_F(LinuxMachines, GarbageInACardsFiles) {
    AmdCard(0, 1, "0000:03:00.0", "8589934592");
    Collector collector = Cards();
    Look(collector);
    const std::string strChip = Card(0) + "/device/hwmon/hwmon1/";
    Write(Card(0) + "/device/gpu_busy_percent", "101\n");
    Write(Card(0) + "/device/mem_info_vram_used", "-1\n");
    Write(strChip + "freq1_input", "99999999999999999999\n");
    Write(strChip + "freq2_input", "9223372036854775807\n");
    Write(strChip + "temp1_input", "warm\n");
    Write(strChip + "temp2_input", "-273150\n");
    Write(strChip + "pwm1", "256\n");
    Write(strChip + "fan1_input", "-5\n");
    Write(strChip + "power1_cap_default", "0\n");
    Values mapValues = Again(collector);
    for (const char* szName :
         {"GPU_USAGE#0", "VRAM_USAGE_MB#0", "VRAM_USAGE_P#0", "GPU_CLK#0", "VRAM_CLK#0", "GPU_TEMP#0",
          "GPU_HOTSPOT_TEMP#0", "FAN1_DUTY#0", "FAN1_RPM#0", "POWER_TARGET#0"}) {
        EXPECT_EQ(mapValues[szName], kNone) << szName;
    }
    EXPECT_EQ(mapValues["VRAM_TEMP#0"], 70);
}

TEST_F(LinuxMachines, StarredLinesThatAreNone) {
    WriteAll(Card(0) + "/device", {{"uevent", "DRIVER=amdgpu"}, {"pp_dpm_sclk", "0: 300Mhz *"}});
    Collector collector = Cards();
    EXPECT_EQ(Look(collector)["GPU_CLK#0"], 300);
    for (const char* szBad : {"", "0: 300Mhz\n", "*\n", ":*\n", "0: *\n", "0: 300 *\n",
                              "0: 99999999999999999999Mhz *\n", "0: 30000Mhz *\n"}) {
        Write(Card(0) + "/device/pp_dpm_sclk", szBad);
        EXPECT_EQ(Again(collector)["GPU_CLK#0"], kNone) << szBad;
    }
}

TEST_F(LinuxMachines, HotUnpluggedChipLeavesAndComesBackUnderItsNumbers) {
    Board(3);
    WriteAll(Hwmon(4), {{"name", "corsairpsu"}, {"fan1_input", "700"}, {"temp1_input", "40000"}});
    Collector collector = Chips();
    Values mapValues = Look(collector);
    EXPECT_EQ(mapValues["SYS_FAN_RPM#1"], 1250);
    EXPECT_EQ(mapValues["SYS_FAN_RPM#3"], 700);
    EXPECT_FALSE(mapValues.contains("SYS_TEMP#2")); // what the chip's temperature belongs to is not known
    Remove(Hwmon(3));
    mapValues = Again(collector); // still listed, without a value
    EXPECT_EQ(mapValues["SYS_FAN_RPM#1"], kNone);
    EXPECT_EQ(mapValues["SYS_FAN_RPM#3"], 700);
    EXPECT_EQ(Look(collector), (Values{{"SYS_FAN_RPM#3", 700}}));
    Board(9);
    mapValues = Look(collector);
    EXPECT_EQ(mapValues["SYS_FAN_RPM#1"], 1250);
    EXPECT_EQ(mapValues["SYS_FAN_RPM#3"], 700);
}

TEST_F(LinuxMachines, NewDriveTakesTheNextNumber) {
    WriteAll(Hwmon(0), {{"name", "nvme"}, {"temp1_input", "30000"}});
    Collector collector = Chips();
    EXPECT_EQ(Look(collector), (Values{{"DRIVE_TEMP#0", 30}}));
    WriteAll(Hwmon(1), {{"name", "drivetemp"}, {"temp1_input", "25000"}});
    EXPECT_EQ(Look(collector), (Values{{"DRIVE_TEMP#0", 30}, {"DRIVE_TEMP#1", 25}}));
}

TEST_F(LinuxMachines, TwoPackagesTwoTemperatures) {
    Write("proc/stat", "cpu0 0 0 0 1\ncpu1 0 0 0 1\n");
    Write("sys/devices/system/cpu/cpu1/topology/physical_package_id", "1\n");
    WriteAll(Hwmon(0), {{"name", "coretemp"}, {"temp1_input", "41000"}, {"temp1_label", "Package id 1"}});
    WriteAll(Hwmon(1), {{"name", "coretemp"}, {"temp1_input", "40000"}, {"temp1_label", "Package id 0"}});
    Collector collector = Collect(std::make_unique<LinuxCpu>(Root()), std::make_unique<LinuxHwmon>(Root()));
    Values mapValues = Look(collector);
    EXPECT_EQ(mapValues["CPU_TEMP#0"], 40);
    EXPECT_EQ(mapValues["CPU_TEMP#1"], 41);
}

TEST_F(LinuxMachines, SeveralDiesOfOnePackageShowTheFirst) {
    Write("proc/stat", "cpu0 0 0 0 1\n");
    for (u32 i = 0; i < 4; ++i)
        WriteAll(Hwmon(i), {{"name", "k10temp"}, {"temp1_input", std::to_string(50000 + i * 1000)}});
    Collector collector = Collect(std::make_unique<LinuxCpu>(Root()), std::make_unique<LinuxHwmon>(Root()));
    Values mapValues = Look(collector);
    EXPECT_EQ(mapValues["CPU_TEMP#0"], 50);
    EXPECT_FALSE(mapValues.contains("CPU_TEMP#1"));
}

TEST_F(LinuxMachines, TheDieItselfIsPreferredToTheControlValue) {
    WriteAll(Hwmon(0), {{"name", "zenpower"},
                        {"temp1_input", "70000"},
                        {"temp1_label", "Tctl"},
                        {"temp2_input", "60000"},
                        {"temp2_label", "Tdie"}});
    Collector collector = Chips();
    EXPECT_EQ(Look(collector), (Values{{"CPU_TEMP#0", 60}}));
}

TEST_F(LinuxMachines, OldProcessorWithCoreLabelsOnly) {
    WriteAll(Hwmon(0), {{"name", "coretemp"},
                        {"temp2_input", "47000"},
                        {"temp2_label", "Core 0"},
                        {"temp3_input", "52000"},
                        {"temp3_label", "Core 1"}});
    Collector collector = Chips();
    EXPECT_EQ(Look(collector), (Values{{"CPU_TEMP#0", 47}}));
}

TEST_F(LinuxMachines, ChipsWithoutNameOrChannels) {
    Write(Hwmon(0) + "/temp1_input", "40000\n");
    WriteAll(Hwmon(1), {{"name", "coretemp"}});
    WriteAll(Hwmon(2), {{"name", "k10temp"}});
    MakeUnreadable(Hwmon(3) + "/name");
    Collector collector = Chips();
    EXPECT_TRUE(Look(collector).empty());
}

TEST_F(LinuxMachines, TemperaturesAreRoundedAwayFromZero) {
    WriteAll(Hwmon(0), {{"name", "nvme"}, {"temp1_input", "45500"}});
    Collector collector = Chips();
    EXPECT_EQ(Look(collector)["DRIVE_TEMP#0"], 46);
    const std::pair<const char*, std::optional<i32>> aCases[] = {
        {"45499", 45},   {"-499", 0},       {"-500", -1},     {"0", 0},
        {"250000", 250}, {"250500", kNone}, {"-61000", kNone}};
    for (const auto& [szText, iExpected] : aCases) {
        Write(Hwmon(0) + "/temp1_input", szText);
        EXPECT_EQ(Again(collector)["DRIVE_TEMP#0"], iExpected) << szText;
    }
}

TEST_F(LinuxMachines, EverySensorTellsItsSource) {
    OnePackage(1);
    Board(1);
    AmdCard(0, 2, "0000:0b:00.0", "17163091968");
    Collector collector = Whole();
    Look(collector);
    for (const Reading& st : collector.Readings()) {
        EXPECT_TRUE(st.strSource.starts_with(Root())) << st.strName;
        EXPECT_STRNE(st.szUnit, "") << st.strName;
    }
}

TEST(SystemSensors, ThisMachineHasProcessorAndMemory) {
    Collector collector(SystemSources());
    collector.Probe();
    collector.Read();
    std::map<std::string, std::optional<i32>> mapValues;
    for (const Reading& st : collector.Readings()) mapValues[st.strName] = st.iValue;
    EXPECT_TRUE(mapValues.contains("CPU_USAGE#0"));
    ASSERT_TRUE(mapValues["RAM_USAGE_MB#0"].has_value());
    EXPECT_GT(*mapValues["RAM_USAGE_MB#0"], 0);
    ASSERT_TRUE(mapValues["RAM_USAGE_P#0"].has_value());
    EXPECT_LE(*mapValues["RAM_USAGE_P#0"], 100);
}
