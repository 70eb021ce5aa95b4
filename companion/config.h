#pragma once
// Shows and changes the settings of setting_table.h where each of them stands.
#include "companion/options.h"
#include "companion/setting_table.h"
#include <functional>
#include <string>
#include <vector>

namespace companion {

/// What a setting is now; nothing where it is missing. Fails where its place cannot be read. strData: the
/// data folder of settings in OSD.ini; this machine's where it is empty.
Result ReadSetting(const SettingRow& row, std::optional<StoredValue>& stOut, const std::string& strData = "");
/// Writes it; an empty value takes it away. Windows: the store and OSD.ini take an administrator.
Result WriteSetting(const SettingRow& row, const StoredValue& stValue, const std::string& strData = "");
/// The value of a setting by name as it is shown, for other commands; its missing value where its place
/// cannot be read.
std::string SettingNow(const char* szName);
/// Whether a switch is on.
bool SwitchedOn(const char* szName);
/// Sets a setting by its text.
Result SetSetting(const char* szName, const std::string& strText);

/// OSD.ini's text with a value of three numbers, one, or a text; the value taken away if stValue is empty.
std::string IniWith(std::string strFile, const SettingRow& row, const StoredValue& stValue);
std::optional<StoredValue> ValueOfIni(const std::string& strFile, const SettingRow& row);

/// 'config'. fnReload: has programs show what was changed; called only after a change that they read.
Result Config(const Options& stOptions, const std::function<void()>& fnReload);

} // namespace companion
