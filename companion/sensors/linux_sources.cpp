#include "companion/sensors/linux_cpu.h"
#include "companion/sensors/linux_gpu.h"
#include "companion/sensors/linux_hwmon.h"
#include "companion/sensors/linux_memory.h"
#include "companion/sensors/nvml_gpu.h"

namespace companion::sensors {

Sources SystemSources() {
    Sources listSources;
    listSources.push_back(std::make_unique<LinuxCpu>(""));
    listSources.push_back(std::make_unique<LinuxHwmon>(""));
    listSources.push_back(std::make_unique<LinuxMemory>(""));
    listSources.push_back(std::make_unique<NvmlGpu>());
    listSources.push_back(std::make_unique<LinuxGpu>(""));
    return listSources;
}

} // namespace companion::sensors
