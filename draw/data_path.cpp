#include "draw/data_path.h"

#include "platform/folders.h"

static constexpr const char16_t* g_awzFolders[] = {u"ZARN", u"Orvin Deck", u"ORVIN-OSD", u"Data"};

/// Appends text at uLength; false if it does not fit with its terminator.
static bool Append(char16_t (&wzOut)[g_uPathChars], u32& uLength, const char16_t* wzText) noexcept {
    for (; *wzText; ++wzText) {
        if (uLength + 1 >= g_uPathChars) return false;
        wzOut[uLength++] = *wzText;
    }
    wzOut[uLength] = 0;
    return true;
}

bool g_fnResolveDataPath(char16_t (&wzOut)[g_uPathChars], const char16_t* wzName) noexcept {
    const char16_t wzSeparator[2] = {platform::g_cPathSeparator, 0};
    u32 uLength = 0;
    bool bFits = platform::CommonDataFolder(wzOut, g_uPathChars);
    while (bFits && wzOut[uLength]) ++uLength;
    for (const char16_t* wzFolder : g_awzFolders)
        bFits = bFits && Append(wzOut, uLength, wzSeparator) && Append(wzOut, uLength, wzFolder);
    bFits = bFits && Append(wzOut, uLength, wzSeparator) && Append(wzOut, uLength, wzName);
    if (!bFits) wzOut[0] = 0;
    return bFits;
}

bool g_fnResolveDataPath(char (&szOut)[g_uPathChars], const char* szName) noexcept {
    char16_t wzName[g_uPathChars], wzPath[g_uPathChars];
    u32 i = 0;
    for (; szName[i] && i + 1 < g_uPathChars; ++i) wzName[i] = static_cast<u8>(szName[i]);
    wzName[i] = 0;
    const bool bFits = !szName[i] && g_fnResolveDataPath(wzPath, wzName) &&
                       platform::NarrowPath(wzPath, szOut, g_uPathChars);
    if (!bFits) szOut[0] = 0;
    return bFits;
}
