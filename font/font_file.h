#pragma once
// Font cache files (".fnt"): a finished atlas with its records and metrics, so that a layout can start
// without drawing glyphs. Numbers have their low byte first. Header, records (those of the grid, then the two
// blanks), then the atlas and its smaller levels, a byte a pixel.
#include "font/font_unicode.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

constexpr u32 g_uFontFileVersion = 5;
constexpr u32 g_uFontFileNameUnits = 64;
/// Larger atlases are not loaded: no graphics driver takes them.
constexpr u32 g_uFontFileSideMost = 16384;
/// Larger files are not read.
constexpr u32 g_uFontFileBytesMost = 512u << 20;

/// The first bytes of a file.
struct stFontFileHeader {
    u32 m_uVersion;
    char16_t m_wzFontName[g_uFontFileNameUnits]; ///< terminated; the last unit counts as 0
    i32 m_iFontWeight;
    u32 m_uLayoutW, m_uLayoutH;
    u32 m_uTexW, m_uTexH;
    u32 m_uBlockBox[4];
    u32 m_uFontSize;
    u32 m_uCalibSize;
    i32 iGDI_DrawRefY;
    u32 m_uNum_Characters; ///< cells of the grid; the loader counts them itself
};
static_assert(sizeof(stFontFileHeader) == 184, "the header of font cache files");

/// What m_fnCheckMemoryFile finds, in the order of its tests.
enum eFontFileCheck : i32 {
    FONT_FILE_NO_STREAM = -1,
    FONT_FILE_EMPTY = -2,
    FONT_FILE_SHORT_HEADER = -3, ///< fewer bytes than a header
    FONT_FILE_NO_HEADER = -4,    ///< the header could not be read
    FONT_FILE_VERSION = -5,
    FONT_FILE_SHORT_RECORDS = -6,
    FONT_FILE_SHORT_LEVELS = -7,
    FONT_FILE_NO_RECORDS = -8, ///< the records could not be read
    FONT_FILE_NO_TEXT = -9,    ///< the text has no code points or is no UTF-16
    FONT_FILE_HAS_MORE = 0, ///< holds; some cell has a code that the text lacks. Null text: a cell is in use
    FONT_FILE_HAS_NO_MORE = 1 ///< holds; no cell has such a code
};

/// Reads up to uCount elements of uElement bytes; returns how many came whole.
u32 g_fnReadStream(void* pOut, u32 uElement, u32 uCount, stMemoryStream* pStream) noexcept;
/// Reads the header from the beginning, of whatever version. False if it is not there.
bool g_fnReadFontFileHeader(stMemoryStream* pStream, stFontFileHeader* pOut) noexcept;
/// Sides of which a grid of cells with at least one pixel can be made.
bool g_fnFontGridHolds(const stFontFileHeader& st) noexcept;
/// An open file's bytes as far as its header asks for them; the header alone if it is of no font, and nothing
/// if it is not whole.
std::vector<u8> g_fnReadFontFile(std::FILE* pFile);
/// Its header and records only, likewise. The file then stands at its picture.
std::vector<u8> g_fnReadFontFileHead(std::FILE* pFile);
/// The tests of m_fnCheckMemoryFile without a text, for the header and records of a file of uFileBytes.
i32 g_fnCheckFontFileHead(stMemoryStream* pHead, u64 uFileBytes) noexcept;
/// Levels down to one pixel, the first one included.
u32 g_fnFontLevels(u32 uWidth, u32 uHeight) noexcept;
/// Bytes of a level: the first one's by four each time, whatever its sides.
u64 g_fnFontLevelBytes(u32 uWidth, u32 uHeight, u32 uLevel) noexcept;
/// Bytes of all levels.
u64 g_fnFontLevelsBytes(u32 uWidth, u32 uHeight) noexcept;

/// Where the cache files of a layout are.
struct stFontFilePlace {
    const char16_t* wzFolder; ///< profile folder below the data folder, or null or empty
    u32 uStyle;               ///< layout style number
};

/// Path of a fixed font's file, by font id, and of a dynamic one's, by face name. wzOut: g_uDataPathCapacity
/// units. False, with an empty path, if it does not fit, the data folder is unknown, or the face name cannot
/// be part of a file name.
bool g_fnFontFilePath(char16_t* wzOut, const stFontFilePlace& stPlace, u32 uFontId);
bool g_fnFontFilePath(char16_t* wzOut, const stFontFilePlace& stPlace, const char16_t* wzFace);

/// Loads a font from a file if that exists, is whole and belongs to the face (case counts). pNeeded, unless
/// null, is a number of characters for which the file must have free cells by its own count. False: the font
/// is to be set up by drawing; nothing is reported.
bool g_fnLoadFontFile(CFontUniCode* pFont, const char16_t* wzPath, const char16_t* wzFace,
                      const u32* pNeeded = nullptr);
