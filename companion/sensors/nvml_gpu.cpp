#include "companion/sensors/nvml_gpu.h"
#include "platform/tool.h"
#include <algorithm>

namespace companion::sensors {
namespace {

constexpr unsigned kMostCards = 64;
constexpr u32 kMostFans = 4; ///< fans of one card that have names in the layouts
constexpr int kGraphicsClock = 0, kMemoryClock = 2, kCoreSensor = 0;

template <class T> void Find(void* hModule, const char* szName, T& fnOut) {
    fnOut = reinterpret_cast<T>(platform::tool::FindExport(hModule, szName));
}

/// A number that one call answers, if there is the call and it succeeds.
template <class F, class... Arguments> std::optional<i64> Ask(F fn, Arguments... arguments) {
    unsigned uValue = 0;
    if (fn == nullptr || fn(arguments..., &uValue) != 0) return std::nullopt;
    return uValue;
}

template <class T, class F> std::optional<T> AskRecord(F fn, NvmlCalls::Device hDevice) {
    T st{};
    if (fn == nullptr || fn(hDevice, &st) != 0) return std::nullopt;
    return st;
}

std::optional<i32> Within(std::optional<i64> iValue, i64 iLowest, i64 iHighest) {
    return iValue ? Plausible(*iValue, iLowest, iHighest) : std::nullopt;
}

std::optional<i32> FanSpeed(const NvmlCalls& st, NvmlCalls::Device hDevice, u32 uFan) {
    NvmlCalls::FanSpeed stSpeed{sizeof(NvmlCalls::FanSpeed) | (1u << 24), uFan, 0};
    if (st.fnGetFanSpeed == nullptr || st.fnGetFanSpeed(hDevice, &stSpeed) != 0) return std::nullopt;
    return Plausible(stSpeed.uSpeed, 0, 30000);
}

std::optional<i32> PowerTarget(const NvmlCalls& st, NvmlCalls::Device hDevice) {
    const auto iLimit = Ask(st.fnGetPowerLimit, hDevice);
    const auto iDefault = Ask(st.fnGetPowerDefault, hDevice);
    if (!iLimit || !iDefault || *iDefault == 0) return std::nullopt;
    return Plausible((*iLimit * 100 + *iDefault / 2) / *iDefault, 0, 1000);
}

std::optional<i32> MemoryUsed(const NvmlCalls& st, NvmlCalls::Device hDevice, bool bShare) {
    const auto stMemory = AskRecord<NvmlCalls::Memory>(st.fnGetMemory, hDevice);
    if (!stMemory || stMemory->uUsed > stMemory->uTotal) return std::nullopt;
    if (bShare) return Percent(stMemory->uUsed, stMemory->uTotal);
    return Plausible(static_cast<i64>(stMemory->uUsed >> 20), 0, 16 << 20);
}

std::optional<i32> Power(const NvmlCalls& st, NvmlCalls::Device hDevice) {
    const auto iMilliwatts = Ask(st.fnGetPower, hDevice);
    return iMilliwatts ? Plausible((*iMilliwatts + 500) / 1000, 0, 5000) : std::nullopt;
}

struct Row {
    NvmlGpu::What eWhat;
    const char* szBase;
    const char* szUnit;
};
using What = NvmlGpu::What;
constexpr Row kRows[] = {{What::Clock, "GPU_CLK", "MHz"},           {What::Temp, "GPU_TEMP", "C"},
                         {What::Usage, "GPU_USAGE", "%"},           {What::MemoryClock, "VRAM_CLK", "MHz"},
                         {What::MemoryUsed, "VRAM_USAGE_MB", "MB"}, {What::MemoryShare, "VRAM_USAGE_P", "%"},
                         {What::Power, "GPU_POWER", "W"},           {What::PowerTarget, "POWER_TARGET", "%"}};

/// "00000000:01:00.0" as the kernel writes it, "0000:01:00.0".
std::string BusKey(const NvmlCalls::PciInfo& st) {
    char szKey[64];
    std::snprintf(szKey, sizeof(szKey), "%04x:%02x:%02x.0", st.uDomain, st.uBus, st.uDevice);
    return szKey;
}

} // namespace

bool OpenNvml(NvmlCalls& st) {
    void* hModule = platform::tool::OpenNvmlLibrary();
    if (hModule == nullptr) return false;
    Find(hModule, "nvmlInit_v2", st.fnInit);
    Find(hModule, "nvmlShutdown", st.fnShutdown);
    Find(hModule, "nvmlDeviceGetCount_v2", st.fnGetCount);
    Find(hModule, "nvmlDeviceGetHandleByIndex_v2", st.fnGetHandle);
    Find(hModule, "nvmlDeviceGetPciInfo_v3", st.fnGetPciInfo);
    Find(hModule, "nvmlDeviceGetName", st.fnGetName);
    Find(hModule, "nvmlDeviceGetClockInfo", st.fnGetClock);
    Find(hModule, "nvmlDeviceGetTemperature", st.fnGetTemperature);
    Find(hModule, "nvmlDeviceGetUtilizationRates", st.fnGetUtilization);
    Find(hModule, "nvmlDeviceGetMemoryInfo", st.fnGetMemory);
    Find(hModule, "nvmlDeviceGetNumFans", st.fnGetFanCount);
    Find(hModule, "nvmlDeviceGetFanSpeed_v2", st.fnGetFanDuty);
    Find(hModule, "nvmlDeviceGetFanSpeedRPM", st.fnGetFanSpeed);
    Find(hModule, "nvmlDeviceGetPowerUsage", st.fnGetPower);
    Find(hModule, "nvmlDeviceGetPowerManagementLimit", st.fnGetPowerLimit);
    Find(hModule, "nvmlDeviceGetPowerManagementDefaultLimit", st.fnGetPowerDefault);
    return st.fnInit != nullptr && st.fnGetCount != nullptr && st.fnGetHandle != nullptr;
}

NvmlGpu::~NvmlGpu() {
    if (m_bStarted && m_stCalls.fnShutdown != nullptr) m_stCalls.fnShutdown();
}

bool NvmlGpu::Start() {
    if (!m_bOpen) m_bOpen = m_fnOpen(m_stCalls);
    if (m_bOpen && !m_bStarted) m_bStarted = m_stCalls.fnInit() == 0;
    return m_bStarted;
}

NvmlGpu::Card NvmlGpu::Describe(NvmlCalls::Device hDevice, unsigned uPlace) const {
    char szName[96] = {};
    const bool bNamed =
        m_stCalls.fnGetName != nullptr && m_stCalls.fnGetName(hDevice, szName, sizeof(szName) - 1) == 0;
    const auto stPci = AskRecord<NvmlCalls::PciInfo>(m_stCalls.fnGetPciInfo, hDevice);
    const auto stMemory = AskRecord<NvmlCalls::Memory>(m_stCalls.fnGetMemory, hDevice);
    return {hDevice, stPci ? BusKey(*stPci) : "nvml" + std::to_string(uPlace),
            std::string("NVML") + (bNamed ? ", " : "") + szName, szName, stMemory ? stMemory->uTotal : 0};
}

void NvmlGpu::Probe(Numbers& numbers) {
    m_listCards.clear();
    unsigned uCount = 0;
    if (!Start() || m_stCalls.fnGetCount(&uCount) != 0) return;
    for (unsigned i = 0; i < std::min(uCount, kMostCards); ++i) {
        NvmlCalls::Device hDevice = nullptr;
        if (m_stCalls.fnGetHandle(i, &hDevice) != 0) continue;
        m_listCards.push_back(Describe(hDevice, i));
        numbers.Propose("gpu", m_listCards.back().strKey, m_listCards.back().uMemory);
    }
}

/// Lists only what the card answers now: NVML knows all names, most cards not all of them.
void NvmlGpu::Add(const Card& stCard, What eWhat, u32 uFan, const std::string& strBase, const char* szUnit,
                  u32 uIndex) {
    const Channel stChannel{stCard.hDevice, eWhat, uFan};
    if (!ReadChannel(stChannel)) return;
    m_listChannels.push_back(stChannel);
    m_listReadings.push_back({FullName(strBase, uIndex), szUnit, stCard.strTitle, {}});
}

void NvmlGpu::ListFans(const Card& stCard, u32 uIndex) {
    const auto iFans = Ask(m_stCalls.fnGetFanCount, stCard.hDevice);
    const u32 uFans = iFans ? static_cast<u32>(std::min<i64>(*iFans, kMostFans)) : 0;
    for (u32 i = 0; i < uFans; ++i) {
        const std::string strFan = "FAN" + std::to_string(i + 1);
        Add(stCard, What::Duty, i, strFan + "_DUTY", "%", uIndex);
        Add(stCard, What::Speed, i, strFan + "_RPM", "RPM", uIndex);
    }
}

void NvmlGpu::List(const Numbers& numbers) {
    m_listReadings.clear();
    m_listHardware.clear();
    m_listChannels.clear();
    for (const Card& stCard : m_listCards) {
        const auto uIndex = numbers.IndexOf("gpu", stCard.strKey);
        if (!uIndex) continue;
        m_listHardware.push_back({"gpu", *uIndex, stCard.strName});
        for (const Row& st : kRows) Add(stCard, st.eWhat, 0, st.szBase, st.szUnit, *uIndex);
        ListFans(stCard, *uIndex);
    }
}

std::optional<i32> NvmlGpu::ReadChannel(const Channel& st) const {
    const NvmlCalls& calls = m_stCalls;
    switch (st.eWhat) {
    case What::Clock:
        return Within(Ask(calls.fnGetClock, st.hDevice, kGraphicsClock), 0, 20000);
    case What::MemoryClock:
        return Within(Ask(calls.fnGetClock, st.hDevice, kMemoryClock), 0, 40000);
    case What::Temp:
        return Within(Ask(calls.fnGetTemperature, st.hDevice, kCoreSensor), 0, 250);
    case What::MemoryUsed:
        return MemoryUsed(calls, st.hDevice, false);
    case What::MemoryShare:
        return MemoryUsed(calls, st.hDevice, true);
    case What::Power:
        return Power(calls, st.hDevice);
    case What::PowerTarget:
        return PowerTarget(calls, st.hDevice);
    case What::Duty:
        return Within(Ask(calls.fnGetFanDuty, st.hDevice, st.uFan), 0, 1000);
    case What::Speed:
        return FanSpeed(calls, st.hDevice, st.uFan);
    case What::Usage:
        break;
    }
    const auto stLoad = AskRecord<NvmlCalls::Utilization>(calls.fnGetUtilization, st.hDevice);
    return stLoad ? Plausible(stLoad->uGpu, 0, 100) : std::nullopt;
}

void NvmlGpu::Read() {
    for (size_t i = 0; i < m_listChannels.size(); ++i)
        m_listReadings[i].iValue = ReadChannel(m_listChannels[i]);
}

} // namespace companion::sensors
