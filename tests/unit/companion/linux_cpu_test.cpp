#include "companion/sensors/linux_cpu.h"
#include "companion/sensors/linux_memory.h"
#include "machine_fixture.h"

namespace {

constexpr const char* kCpuFolder = "sys/devices/system/cpu/";

class LinuxCpuTest : public MachineTest {
  protected:
    void Package(u32 uCpu, const std::string& strId) const {
        Write(kCpuFolder + std::string("cpu") + std::to_string(uCpu) + "/topology/physical_package_id",
              strId + "\n");
    }
    void Clock(u32 uCpu, const std::string& strKilohertz) const {
        Write(kCpuFolder + std::string("cpu") + std::to_string(uCpu) + "/cpufreq/scaling_cur_freq",
              strKilohertz + "\n");
    }
    void Stat(const std::string& strLines) const {
        Write("proc/stat", "cpu  1 2 3 4 5 6 7 8 9 10\n" + strLines + "intr 12345 0 0\nctxt 1\n");
    }
    Collector Cpu() const { return Collect(std::make_unique<LinuxCpu>(Root())); }
};

} // namespace

TEST_F(LinuxCpuTest, LoadIsWhatWasNotIdleSinceTheLastLook) {
    Package(0, "0");
    Package(1, "0");
    Stat("cpu0 100 0 0 900 0 0 0 0 0 0\ncpu1 100 0 0 900 0 0 0 0 0 0\n");
    Collector collector = Cpu();
    EXPECT_EQ(Look(collector), (Values{{"CPU_USAGE#0", kNone}}));
    // 100 ticks each: cpu0 has 10 + 20 + 5 busy, cpu1 none; waiting for devices counts as idle.
    Stat("cpu0 110 0 20 950 15 5 0 0 0 0\ncpu1 100 0 0 1000 0 0 0 0 0 0\n");
    EXPECT_EQ(Again(collector), (Values{{"CPU_USAGE#0", 18}})); // 35 of 200, 17.5
    Stat("cpu0 210 0 20 950 15 5 0 0 0 0\ncpu1 200 0 0 1000 0 0 0 0 0 0\n");
    EXPECT_EQ(Again(collector), (Values{{"CPU_USAGE#0", 100}}));
}

TEST_F(LinuxCpuTest, GuestTimeIsNotCountedTwice) {
    Package(0, "0");
    Stat("cpu0 0 0 0 0 0 0 0 0 0 0\n");
    Collector collector = Cpu();
    Look(collector);
    Stat("cpu0 50 0 0 50 0 0 0 0 50 0\n"); // all user time was a guest's
    EXPECT_EQ(Again(collector), (Values{{"CPU_USAGE#0", 50}}));
}

TEST_F(LinuxCpuTest, PackagesAreToldApart) {
    for (u32 i = 0; i < 4; ++i) Package(i, i % 2 == 0 ? "0" : "1");
    for (u32 i = 0; i < 4; ++i) Clock(i, std::to_string(1000000 + i * 100000));
    const std::string strIdle = " 0 0 0 100 0 0 0 0\n";
    Stat("cpu0" + strIdle + "cpu1" + strIdle + "cpu2" + strIdle + "cpu3" + strIdle);
    Collector collector = Cpu();
    Look(collector);
    Stat("cpu0 100 0 0 100\ncpu1 0 0 0 200\ncpu2 0 0 0 200\ncpu3 25 0 0 175\n");
    EXPECT_EQ(Again(collector), (Values{{"CPU_USAGE#0", 50},
                                        {"CPU_USAGE#1", 13}, // 25 of 200
                                        {"CPU_CLK#0", 1200},
                                        {"CPU_CLK#1", 1300}}));
}

TEST_F(LinuxCpuTest, PackageIdsWithGapsAndMissingOnesAreNumberedFrom0) {
    Package(0, "36");
    Package(1, "4");
    Package(2, "-1");
    Stat("cpu0 0 0 0 1\ncpu1 0 0 0 1\ncpu2 0 0 0 1\ncpu3 0 0 0 1\n"); // cpu3 has no folder
    Collector collector = Cpu();
    Look(collector);
    Stat("cpu0 1 0 0 1\ncpu1 1 0 0 2\ncpu2 0 0 0 2\ncpu3 0 0 0 2\n");
    EXPECT_EQ(Again(collector), (Values{{"CPU_USAGE#0", 0}, {"CPU_USAGE#1", 50}, {"CPU_USAGE#2", 100}}));
}

TEST_F(LinuxCpuTest, TheFastestProcessorGivesTheClock) {
    for (u32 i = 0; i < 3; ++i) Package(i, "0");
    Clock(0, "800000");
    Clock(1, "4699600");
    Clock(2, "<unknown>");
    Stat("cpu0 0 0 0 1\ncpu1 0 0 0 1\ncpu2 0 0 0 1\n");
    Collector collector = Cpu();
    EXPECT_EQ(Look(collector)["CPU_CLK#0"], 4700);
    Clock(1, "99999999999");
    EXPECT_EQ(Again(collector)["CPU_CLK#0"], 800);
    MakeUnreadable(std::string(kCpuFolder) + "cpu0/cpufreq/scaling_cur_freq");
    EXPECT_EQ(Again(collector)["CPU_CLK#0"], kNone);
}

TEST_F(LinuxCpuTest, WithoutCpufreqTheClockStandsInCpuinfo) {
    Package(0, "0");
    Package(1, "1");
    Stat("cpu0 0 0 0 1\ncpu1 0 0 0 1\n");
    Write("proc/cpuinfo", "processor\t: 0\nmodel name\t: X @ 2.80GHz\ncpu MHz\t\t: 2793.436\n\n"
                          "processor\t: 1\ncpu MHz\t\t: 3100.5\n\nprocessor\t: 7\ncpu MHz\t\t: 9000\n");
    Collector collector = Cpu();
    Values mapValues = Look(collector);
    EXPECT_EQ(mapValues["CPU_CLK#0"], 2793);
    EXPECT_EQ(mapValues["CPU_CLK#1"], 3101);
    Write("proc/cpuinfo", "processor : 0\ncpu MHz : nan\nprocessor : 1\ncpu MHz : 1e99\n");
    mapValues = Again(collector);
    EXPECT_EQ(mapValues["CPU_CLK#0"], kNone);
    EXPECT_EQ(mapValues["CPU_CLK#1"], kNone);
}

TEST_F(LinuxCpuTest, WithoutAnyClockThereIsNoName) {
    Package(0, "0");
    Stat("cpu0 0 0 0 1\n");
    Write("proc/cpuinfo", "processor : 0\nBogoMIPS : 48.00\n");
    Collector collector = Cpu();
    EXPECT_EQ(Look(collector), (Values{{"CPU_USAGE#0", kNone}}));
}

TEST_F(LinuxCpuTest, GarbageInStatIsNoLoad) {
    Package(0, "0");
    Stat("cpu0 10 0 0 10\n");
    Collector collector = Cpu();
    Look(collector);
    for (const char* szBad : {"cpu0\n", "cpu0 x\n", "cpu0 1 2\n", "cpu0 99999999999999999999 0 0 0\n",
                              "cpu0 18446744073709551615 18446744073709551615 0 0\n", "cpu0 5 0 0 5\n", ""}) {
        Stat(szBad);
        EXPECT_EQ(Again(collector)["CPU_USAGE#0"], kNone) << szBad;
    }
}

TEST_F(LinuxCpuTest, WithoutATickTheLoadStays) {
    Package(0, "0");
    Stat("cpu0 0 0 0 0\n");
    Collector collector = Cpu();
    Look(collector);
    Stat("cpu0 30 0 0 70\n");
    EXPECT_EQ(Again(collector)["CPU_USAGE#0"], 30);
    EXPECT_EQ(Again(collector)["CPU_USAGE#0"], 30);
    EXPECT_EQ(Look(collector)["CPU_USAGE#0"], 30); // also over a new look for hardware
    Remove("proc/stat");
    EXPECT_EQ(Again(collector)["CPU_USAGE#0"], kNone);
}

TEST_F(LinuxCpuTest, WaitingTimeThatRunsBackwardsStaysWithinBounds) {
    Package(0, "0");
    Stat("cpu0 0 0 0 100 900\n");
    Collector collector = Cpu();
    Look(collector);
    Stat("cpu0 950 0 0 100 0\n"); // total up by 50, idle down by 900
    EXPECT_EQ(Again(collector)["CPU_USAGE#0"], 100);
}

TEST_F(LinuxCpuTest, ProcessorsMayComeAndGo) {
    Package(0, "0");
    Package(1, "0");
    Stat("cpu0 0 0 0 100\ncpu1 0 0 0 100\n");
    Collector collector = Cpu();
    Look(collector);
    Stat("cpu0 50 0 0 150\n");
    EXPECT_EQ(Again(collector)["CPU_USAGE#0"], 50);
    Look(collector);
    // cpu1 is back: unknown to the last look for hardware, and its first count is no load.
    Stat("cpu0 50 0 0 250\ncpu1 5000 0 0 100\n");
    EXPECT_EQ(Look(collector)["CPU_USAGE#0"], 0);
}

TEST_F(LinuxCpuTest, NoProcFileSystemNoReadings) {
    Collector collector = Cpu();
    EXPECT_TRUE(Look(collector).empty());
}

TEST_F(LinuxCpuTest, ManyProcessors) {
    std::string strLines;
    for (u32 i = 0; i < 512; ++i) {
        Package(i, std::to_string(i / 256));
        strLines += "cpu" + std::to_string(i) + " 0 0 0 0\n";
    }
    Stat(strLines);
    Collector collector = Cpu();
    Look(collector);
    strLines.clear();
    for (u32 i = 0; i < 512; ++i)
        strLines += "cpu" + std::to_string(i) + (i < 256 ? " 1 0 0 3\n" : " 3 0 0 1\n");
    Stat(strLines);
    EXPECT_EQ(Again(collector), (Values{{"CPU_USAGE#0", 25}, {"CPU_USAGE#1", 75}}));
}

using LinuxMemoryTest = MachineTest;

TEST_F(LinuxMemoryTest, UsedIsWhatIsNotAvailable) {
    Write("proc/meminfo",
          "MemTotal:       16384000 kB\nMemFree:          100000 kB\nMemAvailable:   12288000 kB\n");
    Collector collector = Collect(std::make_unique<LinuxMemory>(Root()));
    EXPECT_EQ(Look(collector), (Values{{"RAM_USAGE_MB#0", 4000}, {"RAM_USAGE_P#0", 25}}));
    Write("proc/meminfo", "MemTotal: 2048 kB\nMemFree: 1024 kB\n");
    EXPECT_EQ(Again(collector), (Values{{"RAM_USAGE_MB#0", 1}, {"RAM_USAGE_P#0", 50}}));
}

TEST_F(LinuxMemoryTest, OddFilesGiveNoValue) {
    Write("proc/meminfo", "");
    Collector collector = Collect(std::make_unique<LinuxMemory>(Root()));
    const Values mapNothing{{"RAM_USAGE_MB#0", kNone}, {"RAM_USAGE_P#0", kNone}};
    EXPECT_EQ(Look(collector), mapNothing);
    for (const char* szBad :
         {"MemTotal: 10 kB\n", "MemTotal: 10 kB\nMemAvailable: 11 kB\n", "MemTotal: x\nMemAvailable: 1 kB\n",
          "MemTotal: 18446744073709551615 kB\nMemFree: 0 kB\n"}) {
        Write("proc/meminfo", szBad);
        EXPECT_EQ(Again(collector), mapNothing) << szBad;
    }
    Remove("proc/meminfo");
    EXPECT_EQ(Again(collector), mapNothing);
    EXPECT_TRUE(Look(collector).empty());
}
