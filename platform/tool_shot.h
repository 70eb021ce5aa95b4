#pragma once
// What the companion needs to ask for screenshots: the settings that say how one is taken, and what can be
// written here. One implementation a system.
#include "platform/tool_result.h"
#include "platform/types.h"
#include <optional>
#include <string>
#include <string_view>

namespace platform::tool {

/// Settings of screenshots, as programs read them; a value that is missing has its default.
struct ShotSettings {
    std::string strFolder; ///< empty: the data folder
    u32 uMode = 2;         ///< 1 without the overlay, 2 with it, anything else saves nothing
    u32 uType = 2;         ///< 0 BMP, 1 JPEG, 2 PNG, 3 HEIF, 4 and above BMP, JPEG and PNG
};

ShotSettings ReadShotSettings();

/// Other settings for as long as it lives; what stood there comes back, however the program is told to stop.
class ShotSettingsChange {
  public:
    ShotSettingsChange();
    ShotSettingsChange(const ShotSettingsChange&) = delete;
    ShotSettingsChange& operator=(const ShotSettingsChange&) = delete;
    ~ShotSettingsChange();
    Result Set(const ShotSettings& st);
    /// Gives back; a failure is told.
    Result Restore();

  private:
    struct Memory;
    Memory* m_pMemory;
};

bool HasHeifEncoder();
bool IsFolder(const std::string& strPath);
/// A file can be made in a folder.
bool CanWriteTo(const std::string& strFolder);

// --- the text of the settings file, for systems that keep them in one
// ------------------------------------------------------------------

/// Reads the three values of a file's text: sections of one name count together, and the first value of a
/// name counts.
ShotSettings ParseShotSettings(std::string_view text);
/// The text with the settings in front, where they win over what stands behind. Nothing for a text that is
/// not of bytes (UTF-16).
std::optional<std::string> TextWithShotSettings(std::string_view text, const ShotSettings& st,
                                                u32 uProcessId);
/// The text without such settings of that process.
std::string TextWithoutShotSettings(std::string_view text, u32 uProcessId);

} // namespace platform::tool
