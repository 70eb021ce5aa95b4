#include "draw/data_path.h"

#include "platform/folders.h"
#include "platform/input_file.h"

#include <cstring>
#include <string>

/// Folders between the common application data folder and the data files.
static const char16_t* const g_awzDataFolders[] = {u"ZARN", u"Orvin Deck", u"ORVIN-OSD", u"Data"};

static bool Append(char16_t* wzOut, std::size_t& uLength, const char16_t* wzText) {
    const std::size_t uAdded = std::char_traits<char16_t>::length(wzText);
    if (uLength + uAdded >= g_uDataPathCapacity) return false;
    std::char_traits<char16_t>::copy(wzOut + uLength, wzText, uAdded + 1);
    uLength += uAdded;
    return true;
}

/// The data folder with a trailing separator.
static bool DataFolder(char16_t* wzOut, std::size_t& uLength) {
    if (!platform::CommonDataFolder(wzOut, g_uDataPathCapacity)) return false;
    const char16_t wzSeparator[2] = {platform::g_cPathSeparator, 0};
    uLength = std::char_traits<char16_t>::length(wzOut);
    bool bFits = Append(wzOut, uLength, wzSeparator);
    for (const char16_t* wzFolder : g_awzDataFolders)
        bFits = bFits && Append(wzOut, uLength, wzFolder) && Append(wzOut, uLength, wzSeparator);
    return bFits;
}

bool g_fnResolveDataPath(char16_t* wzOut, const char16_t* wzName) noexcept {
    std::size_t uLength = 0;
    if (DataFolder(wzOut, uLength) && Append(wzOut, uLength, wzName)) return true;
    wzOut[0] = 0;
    return false;
}

bool g_fnResolveDataPath(char* szOut, const char* szName) noexcept {
    char16_t wzFolder[g_uDataPathCapacity];
    std::size_t uLength = 0;
    szOut[0] = 0;
    if (!DataFolder(wzFolder, uLength)) return false;
    if (!platform::NarrowPath(wzFolder, szOut, g_uDataPathCapacity)) {
        szOut[0] = 0;
        return false;
    }
    uLength = std::strlen(szOut);
    const std::size_t uName = std::strlen(szName);
    const bool bFits = uLength + uName < g_uDataPathCapacity;
    if (bFits)
        std::memcpy(szOut + uLength, szName, uName + 1);
    else
        szOut[0] = 0;
    return bFits;
}

bool g_fnCheckFileExistence(const char16_t* wzPath) noexcept {
    return static_cast<bool>(platform::OpenInput(wzPath));
}
