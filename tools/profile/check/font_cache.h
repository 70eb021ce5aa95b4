#pragma once
// Font cache files as their maker sees them.
#include "companion/result.h"
#include "platform/types.h"
#include <filesystem>
#include <string>
#include <vector>

namespace companion {

/// What a file says of itself, and whether the overlay would load it.
struct FontFileFacts {
    std::filesystem::path path;
    u64 uBytes = 0;
    std::string strFace;
    i32 iWeight = 0;
    u32 uCells = 0;              ///< of the grid
    u32 uGlyphs = 0;             ///< cells in use
    u32 uWidth = 0, uHeight = 0; ///< of the atlas, pixels
    std::string strFault;        ///< empty: it would be loaded
};

/// Reads a file and has the overlay's own checker and loader judge it. kNotFound if it cannot be opened; a
/// file that is no good is no failure.
Result InspectFontFile(const std::filesystem::path& path, FontFileFacts& stFacts);
/// What a result of the checker means, empty for a file that holds.
std::string FontFileFault(i32 iCheck);

/// The cache files in a folder, by name.
std::vector<FontFileFacts> FontFilesIn(const std::filesystem::path& pathFolder);

} // namespace companion
