#pragma once
// The machine-wide settings that overlays read, for tools that show and change them. Keys are below the
// overlay's own, or, where they begin with a backslash, below the one that holds it, beside the overlay's;
// parts are separated by backslashes; keys and names are compared without case. All text is UTF-8.
#include "platform/tool_result.h"
#include "platform/types.h"
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::tool {

/// A value: a number, or a text. Removed: it is taken away, and one that is not there does no harm.
struct Setting {
    std::string strKey, strName;
    std::optional<u32> uNumber;
    std::string strText;
    bool bRemoved = false;
};

/// What a value is now; nothing where there is none of that kind.
std::optional<u32> SettingNumber(const std::string& strKey, const std::string& strName);
std::optional<std::string> SettingText(const std::string& strKey, const std::string& strName);
/// The value whatever its kind, fit to be stored again; removed where there is none (or one of bytes).
Setting CurrentSetting(const std::string& strKey, const std::string& strName);
/// Names of a key's own subkeys, in an order of the store's.
std::vector<std::string> SettingKeys(const std::string& strKey);

/// Writes and removes values, all of them or none. On Windows this takes an administrator.
Result StoreSettings(const std::vector<Setting>& listSettings);
/// Removes keys with all that is below them; one that is not there does no harm.
Result RemoveSettingKeys(const std::vector<std::string>& listKeys);

/// What cannot be stored says why: control characters, and names that would read as something else.
Result CheckSetting(const Setting& stSetting);

/// Other values for as long as it lives; what stood there comes back, however the program is told to stop.
/// One at a time on the machine: a second one waits, and heals what a killed one left.
class TemporarySettings {
  public:
    TemporarySettings();
    TemporarySettings(const TemporarySettings&) = delete;
    TemporarySettings& operator=(const TemporarySettings&) = delete;
    ~TemporarySettings();
    /// Once.
    Result Set(const std::vector<Setting>& listSettings);
    /// Gives back; a failure is told.
    Result Restore();

  private:
    struct Memory;
    std::unique_ptr<Memory> m_pMemory;
};

// --- on the text of a settings file, whose sections are keys with their whole path ---

/// The file with or without that value; what else it says stays.
std::string WithSetting(std::string strFile, const std::string& strPath, const Setting& stSetting);
/// What a file says of a name in a section, by the rules of settings files that are not the store: the first
/// section of a name and its first line of that name count. Nothing where it says nothing.
std::optional<std::string> ValueInFile(std::string_view strFile, std::string_view strSection,
                                       std::string_view strName);
/// The file without that section and those below it. Comments at a section's end stay.
std::string WithoutSettingKey(const std::string& strFile, const std::string& strPath);

} // namespace platform::tool
