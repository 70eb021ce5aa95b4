#include "companion/sensors/nvml_gpu.h"
#include "companion/sensors/windows_machine.h"

namespace companion::sensors {

Sources SystemSources() {
    Sources listSources;
    listSources.push_back(std::make_unique<WindowsCpu>());
    listSources.push_back(std::make_unique<WindowsMemory>());
    listSources.push_back(std::make_unique<NvmlGpu>());
    return listSources;
}

} // namespace companion::sensors
