// Sensor definitions out of the registry.
#include "platform/profile_sensors.h"
#include "platform/headless/test_controls.h"
#include <windows.h>

namespace platform::tool {
namespace {

constexpr const wchar_t* kRoots[] = {L"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD", L"SOFTWARE\\Zarn\\ORVIN-OSD"};
constexpr const wchar_t* kBelow = L"Information Option\\Config\\Sensor";
constexpr const char16_t* kTarget = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\\Config\\Sensor\\";
constexpr DWORD kMostSensors = 4096, kMostValues = 64;

class Key {
  public:
    Key(HKEY hParent, const wchar_t* wzPath) {
        if (RegOpenKeyExW(hParent, wzPath, 0, KEY_READ, &m_hKey) != ERROR_SUCCESS) m_hKey = nullptr;
    }
    ~Key() {
        if (m_hKey) RegCloseKey(m_hKey);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    HKEY Get() const { return m_hKey; }

  private:
    HKEY m_hKey = nullptr;
};

std::u16string Units(const wchar_t* wz) { return {wz, wz + lstrlenW(wz)}; }

void TakeSensor(HKEY hSensor, const std::u16string& wstrPath) {
    headless::AddSettingsKey(wstrPath.c_str());
    for (DWORD u = 0; u < kMostValues; ++u) {
        wchar_t wzName[256], wzText[256] = L"";
        DWORD uUnits = 256, uType = 0, uBytes = sizeof wzText - sizeof(wchar_t);
        BYTE* const pBytes = reinterpret_cast<BYTE*>(wzText);
        const LONG iCode = RegEnumValueW(hSensor, u, wzName, &uUnits, nullptr, &uType, pBytes, &uBytes);
        if (iCode == ERROR_NO_MORE_ITEMS) return;
        if (iCode != ERROR_SUCCESS) continue;
        DWORD uNumber = 0, uNumberBytes = sizeof uNumber;
        if (uType == REG_SZ)
            headless::SetSettingsText(wstrPath.c_str(), Units(wzName).c_str(), Units(wzText).c_str());
        else if (uType == REG_DWORD &&
                 RegQueryValueExW(hSensor, wzName, nullptr, nullptr, reinterpret_cast<BYTE*>(&uNumber),
                                  &uNumberBytes) == ERROR_SUCCESS)
            headless::SetSettingsNumber(wstrPath.c_str(), Units(wzName).c_str(), uNumber);
    }
}

} // namespace

void TakeSensorsOfSystem() {
    // As the overlay looks: where the first key exists, the second one does not count.
    const Key wow(HKEY_LOCAL_MACHINE, kRoots[0]), plain(HKEY_LOCAL_MACHINE, kRoots[1]);
    const Key sensors(wow.Get() ? wow.Get() : plain.Get(), kBelow);
    if (!sensors.Get()) return;
    for (DWORD u = 0; u < kMostSensors; ++u) {
        wchar_t wzName[256];
        DWORD uUnits = 256;
        if (RegEnumKeyExW(sensors.Get(), u, wzName, &uUnits, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            return;
        const Key sensor(sensors.Get(), wzName);
        if (sensor.Get()) TakeSensor(sensor.Get(), kTarget + Units(wzName));
    }
}

} // namespace platform::tool
