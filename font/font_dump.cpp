// Looking at a font from outside: pictures in the log, the atlas as a file.
#include "base/log.h"
#include "font/atlas_bitmap.h"
#include "font/font_unicode.h"
#include "platform/utf.h"

#include <string>
#include <vector>

void CFontUniCode::DumpRows(const u8* pFirst, u32 uWidth, u32 uHeight, u32 uPitch) {
    std::string line;
    for (u32 y = 0; pFirst && y < uHeight; ++y, pFirst += uPitch) {
        line.clear();
        for (u32 x = 0; x < uWidth; ++x) line += pFirst[x] > m_u8Threshold ? 'X' : ' ';
        g_fnLog("%02i\t%s\n", static_cast<i32>(y), line.c_str());
    }
}

void CFontUniCode::m_fnDumpBuffer(u32 uWhich) {
    if (!g_fnLogSink) return;
    g_fnLog("--------------------------------\n");
    g_fnLog(uWhich == 0 ? "Canvas\n" : "CharBuff\n");
    DumpRows(uWhich == 0 ? m_pCanvas : m_pCharBuff, static_cast<u32>(m_iCharBuffW),
             static_cast<u32>(m_iCharBuffH), static_cast<u32>(m_iCharBuffW));
    g_fnLog("--------------------------------\n");
}

void CFontUniCode::m_fnDumpCanvas() { m_fnDumpBuffer(0); }

void CFontUniCode::m_fnDumpCharBuff() { m_fnDumpBuffer(1); }

void CFontUniCode::m_fnDumpCell(u32 uIndex) {
    if (!g_fnLogSink || !m_fnTakeAtlas() || uIndex >= m_uNum_Characters) return;
    const u32 uCellW = m_uTexW / m_uLayoutW, uCellH = m_uTexH / m_uLayoutH;
    const u32 x = uIndex % m_uLayoutW * uCellW, y = uIndex / m_uLayoutW * uCellH;
    g_fnLog("----------------\n");
    DumpRows(m_pAtlas + static_cast<u64>(y) * m_uTexW + x, uCellW, uCellH, m_uTexW);
    g_fnLog("----------------\n");
}

/// A 32-bit bitmap file: header, then rows from the bottom up. Numbers have their low byte first.
static std::string BitmapFile(const u8* pPixels, u32 uWidth, u32 uHeight) {
    constexpr u32 uHeader = 54;
    std::string file;
    const auto put = [&file](u32 u, u32 uBytes) {
        for (u32 i = 0; i < uBytes; ++i) file += static_cast<char>(u >> (8 * i) & 0xFF);
    };
    const u32 uBytes = uWidth * uHeight * 4;
    file.reserve(uHeader + static_cast<u64>(uBytes));
    file += "BM";
    for (const u32 u : {uHeader + uBytes, 0u, uHeader, 40u, uWidth, uHeight}) put(u, 4);
    put(1, 2), put(32, 2); // planes, bits a pixel
    for (const u32 u : {0u, uBytes, 0u, 0u, 0u, 0u}) put(u, 4);
    for (u32 y = uHeight; y-- > 0;)
        for (u32 x = 0; x < uWidth; ++x)
            file.append(4, static_cast<char>(pPixels[static_cast<u64>(y) * uWidth + x]));
    return file;
}

static std::string Narrow(const char16_t* wzText) {
    char szText[512];
    return platform::Utf16ToUtf8(wzText, szText, sizeof szText) ? szText : "";
}

std::string g_fnNarrowFace(const CFontUniCode& font) { return Narrow(font.m_wzFontName.c_str()); }

bool g_fnSaveAtlasBitmap(const CFontUniCode& font, const std::string& szName) {
    constexpr u64 uMostPixels = 0x7FFFFFFF / 4 - 64; // the file's sizes are 32 bits wide
    if (!font.m_pAtlas || static_cast<u64>(font.m_uTexW) * font.m_uTexH > uMostPixels) return false;
    const std::string file = BitmapFile(font.m_pAtlas, font.m_uTexW, font.m_uTexH);
    std::FILE* const pFile = std::fopen(szName.c_str(), "wb");
    if (!pFile) return false;
    const bool bWritten = std::fwrite(file.data(), file.size(), 1, pFile) == 1;
    return std::fclose(pFile) == 0 && bWritten;
}

bool CFontUniCode::m_fnExportAtlas(const char16_t* wzPrefix) {
    m_fnTakeAtlas();
    const std::string prefix = wzPrefix && *wzPrefix ? Narrow(wzPrefix) + "-" : "";
    return g_fnSaveAtlasBitmap(*this, prefix + g_fnNarrowFace(*this) + "-" + std::to_string(m_uTexW) + "x" +
                                          std::to_string(m_uTexH) + ".bmp");
}
