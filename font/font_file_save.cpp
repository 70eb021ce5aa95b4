// Cache files out of fonts. The overlay writes none itself; whoever prepares a profile does.
#include "draw/texture_reduce.h"
#include "font/font_file.h"
#include "platform/folders.h"
#include "platform/regular_file.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

namespace {

/// Whole size of the file, the blanks' records included.
u64 FileBytes(const CFontUniCode& font) {
    return sizeof(stFontFileHeader) + (static_cast<u64>(font.m_uNum_Characters) + 2) * sizeof(stFontChar) +
           g_fnFontLevelsBytes(font.m_uTexW, font.m_uTexH);
}

stFontFileHeader MakeHeader(const CFontUniCode& font) {
    stFontFileHeader st = {};
    st.m_uVersion = g_uFontFileVersion;
    font.m_wzFontName.copy(st.m_wzFontName, g_uFontFileNameUnits - 1);
    st.m_iFontWeight = font.m_iFontWeight;
    st.m_uLayoutW = font.m_uLayoutW;
    st.m_uLayoutH = font.m_uLayoutH;
    st.m_uTexW = font.m_uTexW;
    st.m_uTexH = font.m_uTexH;
    std::copy_n(font.m_uBlockBox, 4, st.m_uBlockBox);
    st.m_uFontSize = font.m_uFontSize;
    st.m_uCalibSize = font.m_uCalibSize;
    st.iGDI_DrawRefY = font.iGDI_DrawRefY;
    st.m_uNum_Characters = font.m_uNum_Characters;
    return st;
}

/// Largest first. Each level is cut or filled with 0 to the size that files have for it.
void PutLevels(const CFontUniCode& font, u8* pOut) {
    u32 uWidth = font.m_uTexW, uHeight = font.m_uTexH;
    std::vector<u8> level(font.m_pAtlas, font.m_pAtlas + static_cast<u64>(uWidth) * uHeight), next;
    const u32 uLevels = g_fnFontLevels(uWidth, uHeight);
    for (u32 u = 0; u < uLevels; ++u) {
        const u64 uBytes = g_fnFontLevelBytes(font.m_uTexW, font.m_uTexH, u);
        std::copy_n(level.data(), std::min<u64>(uBytes, level.size()), pOut);
        pOut += uBytes;
        const u32 uHalfW = std::max(1u, uWidth / 2), uHalfH = std::max(1u, uHeight / 2);
        next.assign(static_cast<u64>(uHalfW) * uHalfH, 0);
        // KEEP(files): without the gain of the levels that the graphics card gets, so these are darker.
        g_fnReduceLevel(level.data(), uWidth, uHeight, 1, false, next.data());
        level.swap(next);
        uWidth = uHalfW;
        uHeight = uHalfH;
    }
}

bool SaveAndClose(CFontUniCode& font, std::FILE* pFile) {
    const bool bSaved = font.m_fnSaveToStream(pFile);
    // Most of an atlas is blank: neither the disk nor who reads the file needs to bother.
    if (bSaved) platform::FreeBlankParts(pFile);
    return pFile && std::fclose(pFile) == 0 && bSaved;
}

} // namespace

u32 CFontUniCode::m_fnGetFileSize() {
    // KEEP(files): without the two records of the blanks, which a file has too.
    const u64 uBytes = FileBytes(*this) - 2 * sizeof(stFontChar);
    return static_cast<u32>(std::min<u64>(uBytes, std::numeric_limits<u32>::max()));
}

bool CFontUniCode::m_fnSaveToStream(std::FILE* pFile) {
    const u64 uBytes = FileBytes(*this);
    u32 uMost = ~0u;
    m_fnDrawSomeWaiting(&uMost);
    if (!pFile || !m_pChars || !m_fnTakeAtlas() || uBytes > g_uFontFileBytesMost) return false;
    const std::unique_ptr<u8[]> pBytes(new (std::nothrow) u8[uBytes]());
    if (!pBytes) return false;
    const stFontFileHeader st = MakeHeader(*this);
    const u64 uRecords = (static_cast<u64>(m_uNum_Characters) + 2) * sizeof(stFontChar);
    std::memcpy(pBytes.get(), &st, sizeof st);
    std::memcpy(pBytes.get() + sizeof st, m_pChars, uRecords);
    PutLevels(*this, pBytes.get() + sizeof st + uRecords);
    return std::fwrite(pBytes.get(), uBytes, 1, pFile) == 1;
}

bool CFontUniCode::m_fnSaveToFile(const char16_t* wzPath) {
    return SaveAndClose(*this, wzPath ? platform::OpenFileForWrite(wzPath) : nullptr);
}

bool CFontUniCode::m_fnSaveToFileA(const char* szPath) {
    return SaveAndClose(*this, szPath ? std::fopen(szPath, "wb+") : nullptr);
}
