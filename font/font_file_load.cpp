// Fonts out of cache files. Nothing in a file is trusted: sizes are compared with what there is before
// anything is made, and numbers that text is laid out with are held to what glyphs have.
#include "base/log.h"
#include "font/atlas_bitmap.h"
#include "font/font_file.h"
#include "platform/input_file.h"
#include "platform/pages.h"
#include "platform/regular_file.h"
#include "platform/utf.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace {

/// Baselines further from the top of a cell are of no font.
constexpr i64 g_iBaselineMost = g_uFontFileSideMost;
/// Lengths in multiples of the nominal size, likewise.
constexpr f32 g_fGlyphMost = 1024.0f;

u64 Cells(const stFontFileHeader& st) { return static_cast<u64>(st.m_uLayoutW) * st.m_uLayoutH; }

/// All that follows divides by the nominal size. Its other values, and those of the size of the calibration,
/// are the file's business.
bool MetricsHold(const stFontFileHeader& st) {
    return st.m_uFontSize > 0 && std::abs(static_cast<i64>(st.iGDI_DrawRefY)) <= g_iBaselineMost;
}

/// A header of this version, with its records behind it, that a font can be made of.
bool CanBeLoaded(const stFontFileHeader& st, u32 uFileBytes) {
    return st.m_uVersion == g_uFontFileVersion && g_fnFontGridHolds(st) && MetricsHold(st) &&
           (Cells(st) + 2) * sizeof(stFontChar) <= uFileBytes - sizeof st;
}

/// Gives the font the sizes, name and metrics of the file, and its buffers.
bool Prepare(CFontUniCode& font, const stFontFileHeader& st) {
    font.m_fnSetFontName(st.m_wzFontName);
    font.m_fnSetFontWeight(st.m_iFontWeight);
    font.m_fnSetLayout(st.m_uLayoutW, st.m_uLayoutH, 0);
    font.m_fnSetTexSize(st.m_uTexW, st.m_uTexH);
    std::copy_n(st.m_uBlockBox, 4, font.m_uBlockBox);
    font.m_uFontSize = st.m_uFontSize;
    font.m_uCalibSize = st.m_uCalibSize;
    font.iGDI_DrawRefY = st.iGDI_DrawRefY;
    font.m_fnInitialize(true); // without its fonts or texture there still are glyphs
    return font.m_pChars && font.m_pAtlas;
}

/// NaN too becomes 0.
void HoldNumbers(stFontChar& st) {
    for (f32* p : {&st.m_fYOffset, &st.m_fTexX, &st.m_fTexY, &st.m_fTexZ, &st.m_fWScale, &st.m_fHScale})
        if (!(std::fabs(*p) <= g_fGlyphMost)) *p = 0.0f;
}

bool ReadRecords(CFontUniCode& font, stMemoryStream* pStream, u32 uCount) {
    if (g_fnReadStream(font.m_pChars, sizeof(stFontChar), uCount, pStream) != uCount) return false;
    for (u32 u = 0; u < uCount; ++u) HoldNumbers(font.m_pChars[u]);
    return true;
}

/// Copies uGiven pixels of a row and makes the rest black. What is as it has to be is not written, so that
/// blank rows stay without memory. True if the row has ink.
bool TakeRow(u8* pRow, const u8* pFrom, std::size_t uGiven, std::size_t uWidth) {
    if (uGiven && std::memcmp(pRow, pFrom, uGiven) != 0) std::memcpy(pRow, pFrom, uGiven);
    if (!platform::IsBlank(pRow + uGiven, uWidth - uGiven)) std::memset(pRow + uGiven, 0, uWidth - uGiven);
    return !platform::IsBlank(pRow, uWidth);
}

/// The picture of a file, from its first row on.
class CPictureSource {
  public:
    virtual ~CPictureSource() = default;
    /// The next uWanted bytes, which stay until the next call. What is missing of them is black.
    virtual std::span<const u8> m_fnNext(std::size_t uWanted) = 0;
};

class CPictureInMemory : public CPictureSource {
  public:
    explicit CPictureInMemory(stMemoryStream* pStream) : m_pStream(pStream) {}
    std::span<const u8> m_fnNext(std::size_t uWanted) override {
        const std::size_t uLeft = m_pStream->m_pData ? m_pStream->m_uSize - m_pStream->m_uPosition : 0;
        const u8* const pFirst = m_pStream->m_pData + m_pStream->m_uPosition;
        const std::size_t uGiven = std::min(uWanted, uLeft);
        m_pStream->m_uPosition += static_cast<u32>(uGiven);
        return {pFirst, uGiven};
    }

  private:
    stMemoryStream* m_pStream;
};

/// Parts that the file system knows to be blank are not read: they give no bytes.
class CPictureInFile : public CPictureSource {
  public:
    CPictureInFile(std::FILE* pFile, u64 uAt) : m_pFile(pFile), m_uAt(uAt) {}
    std::span<const u8> m_fnNext(std::size_t uWanted) override {
        if (m_uAt >= m_uData) m_uData = platform::DataFrom(m_pFile, m_uAt);
        const bool bBlank = m_uData >= m_uAt + uWanted;
        const u64 uFrom = m_uAt;
        m_uAt += uWanted;
        if (bBlank) return {};
        if (m_piece.size() < uWanted) m_piece.resize(uWanted);
        if (m_uStands != uFrom && std::fseek(m_pFile, static_cast<long>(uFrom), SEEK_SET) != 0) return {};
        m_uStands = m_uAt;
        return {m_piece.data(), std::fread(m_piece.data(), 1, uWanted, m_pFile)};
    }

  private:
    std::FILE* m_pFile;
    u64 m_uAt;                              ///< place in the file, below g_uFontFileBytesMost
    u64 m_uStands = m_uAt, m_uData = m_uAt; ///< of the stream; from where on there are bytes
    std::vector<u8> m_piece;
};

/// So much of a picture is looked at in one go: it stays in the processor's cache.
constexpr u32 g_uPieceBytes = 65536;

/// Takes uRows rows from uTop on. bBlank: the atlas is, there, so that what is blank too need not be looked
/// at, which would cost a page of the system's for each row.
void TakeRows(CFontUniCode& font, std::span<const u8> piece, u32 uTop, u32 uRows, bool bBlank) {
    const std::size_t uWidth = font.m_uTexW;
    for (u32 u = 0; u < uRows; ++u) {
        const std::span<const u8> row = piece.subspan(std::min(piece.size(), u * uWidth));
        const std::size_t uGiven = std::min(row.size(), uWidth);
        u8* const pRow = font.m_pAtlas + (uTop + u) * uWidth;
        if (bBlank && platform::IsBlank(row.data(), uGiven)) continue;
        if (bBlank) std::memcpy(pRow, row.data(), uGiven);
        if (bBlank || TakeRow(pRow, row.data(), uGiven, uWidth)) font.m_uAtlasRows = uTop + u + 1;
    }
}

/// The first level, up to where the source ends.
void TakeAtlas(CFontUniCode& font, CPictureSource& source) {
    font.m_fnTakeAtlas();
    const u32 uPieceRows = std::max(1u, g_uPieceBytes / font.m_uTexW), uHadRows = font.m_uAtlasRows;
    font.m_uAtlasRows = 0;
    for (u32 y = 0; y < font.m_uTexH; y += uPieceRows) {
        const u32 uRows = std::min(uPieceRows, font.m_uTexH - y);
        const std::span<const u8> piece = source.m_fnNext(std::size_t{uRows} * font.m_uTexW);
        const bool bBlank = y >= uHadRows;
        if (!bBlank || !platform::IsBlank(piece.data(), piece.size()))
            TakeRows(font, piece, y, uRows, bBlank);
    }
}

void UploadTaken(CFontUniCode& font) {
    font.m_fnUploadAtlasAll(nullptr);
    font.m_bDirty = false;
}

/// Takes the first level, black where the file ends, and passes over the others: the upload makes its own.
void ReadLevels(CFontUniCode& font, stMemoryStream* pStream) {
    const u32 uPixels = font.m_uTexW * font.m_uTexH;
    CPictureInMemory source(pStream);
    TakeAtlas(font, source);
    const u64 uRest = g_fnFontLevelsBytes(font.m_uTexW, font.m_uTexH) - uPixels;
    pStream->m_uPosition += static_cast<u32>(std::min<u64>(uRest, pStream->m_uSize - pStream->m_uPosition));
    UploadTaken(font);
}

void IndexUsedCells(CFontUniCode& font) {
    u32 uUsed = 0;
    font.m_mapCharIndex.clear();
    // KEEP(files): counted, not placed: behind a hole every code gets the record before its own.
    for (u32 u = 0; u < font.m_uNum_Characters; ++u)
        if (const u32 uCode = font.m_pChars[u].m_u32_Char_UTF32_LE) font.m_mapCharIndex[uCode] = uUsed++;
    font.m_mapCharIndex[32] = font.m_uNum_Characters;
    font.m_mapCharIndex[12288] = font.m_uNum_Characters + 1;
}

void IndexFirstCells(CFontUniCode& font) {
    font.m_mapCharIndex.clear();
    // KEEP(files): up to the first hole, and without the blanks.
    for (u32 u = 0; u < font.m_uNum_Characters && font.m_pChars[u].m_u32_Char_UTF32_LE; ++u)
        font.m_mapCharIndex[font.m_pChars[u].m_u32_Char_UTF32_LE] = u;
}

void ReportDashes() { g_fnLog("%s\n", std::string(128, '-').c_str()); }

void ReportSizes(const CFontUniCode& font) {
    g_fnLog("m_wzFontName\t\t\t: %s\n", g_fnNarrowFace(font).c_str());
    g_fnLog("m_iFontWeight\t\t\t: %i\n", font.m_iFontWeight);
    g_fnLog("m_uLayoutW\t\t\t: %i\n", static_cast<i32>(font.m_uLayoutW));
    g_fnLog("m_uLayoutH\t\t\t: %i\n", static_cast<i32>(font.m_uLayoutH));
    g_fnLog("m_uTexW\t\t\t\t: %i\n", static_cast<i32>(font.m_uTexW));
    g_fnLog("m_uTexH\t\t\t\t: %i\n", static_cast<i32>(font.m_uTexH));
    g_fnLog("m_uNum_Characters\t\t: %i\n", static_cast<i32>(font.m_uNum_Characters));
}

std::string CodeAsText(u32 uCode) {
    const char16_t wzPair[3] = {static_cast<char16_t>(0xD7C0 + (uCode >> 10)),
                                static_cast<char16_t>(0xDC00 + (uCode & 0x3FF)), 0};
    const char16_t wzOne[2] = {static_cast<char16_t>(uCode), 0};
    char szText[8] = "";
    if (uCode > 0x10FFFF) return "";
    platform::Utf16ToUtf8(uCode > 0xFFFF ? wzPair : wzOne, szText, sizeof szText);
    return szText;
}

void ReportCells(const CFontUniCode& font) {
    g_fnLog("Char [####]\tm_u32_Char_UTF32_LE\t\"\"\tm_fTexX\tm_fTexY\tm_fTexZ\t\tm_fWScale\tm_fHScale\n");
    for (u32 u = 0; u < font.m_uNum_Characters; ++u) {
        const stFontChar& st = font.m_pChars[u];
        if (st.m_u32_Char_UTF32_LE == 0) continue;
        g_fnLog("Char [%04i]\t%#x\t\"%s\"\t%2.4f\t%2.4f\t%2.4f\t\t%2.4f\t\t%2.4f\n", static_cast<i32>(u),
                st.m_u32_Char_UTF32_LE, CodeAsText(st.m_u32_Char_UTF32_LE).c_str(), st.m_fTexX, st.m_fTexY,
                st.m_fTexZ, st.m_fWScale, st.m_fHScale);
    }
}

void ExportAtlas(const CFontUniCode& font) {
    std::string szFace = g_fnNarrowFace(font);
    // The name is a file's: it must not lead out of the folder.
    std::replace_if(
        szFace.begin(), szFace.end(), [](char c) { return c == '/' || c == '\\' || c == ':'; }, '_');
    const std::string szName = szFace + "-" + std::to_string(font.m_iFontWeight) + "-" +
                               std::to_string(font.m_uTexW) + "x" + std::to_string(font.m_uTexH) + ".bmp";
    g_fnLog("Export texture file to \"%s\"\n", szName.c_str());
    g_fnSaveAtlasBitmap(font, szName);
}

} // namespace

/// Sides of which a grid of cells with at least one pixel can be made.
bool g_fnFontGridHolds(const stFontFileHeader& st) noexcept {
    const auto isSide = [](u32 u) { return u > 0 && u <= g_uFontFileSideMost; };
    return isSide(st.m_uLayoutW) && isSide(st.m_uLayoutH) && isSide(st.m_uTexW) && isSide(st.m_uTexH) &&
           st.m_uTexW >= st.m_uLayoutW && st.m_uTexH >= std::max(st.m_uLayoutW, st.m_uLayoutH);
}

static std::vector<u8> ReadFile(std::FILE* pFile, bool bPicture) {
    std::vector<u8> bytes;
    stFontFileHeader st;
    platform::AppendBytes(pFile, sizeof st, bytes);
    if (bytes.size() < sizeof st) return {};
    std::memcpy(&st, bytes.data(), sizeof st);
    if (st.m_uVersion != g_uFontFileVersion || !g_fnFontGridHolds(st)) return bytes;
    u64 uRest = (Cells(st) + 2) * sizeof(stFontChar);
    if (bPicture) uRest += g_fnFontLevelsBytes(st.m_uTexW, st.m_uTexH);
    platform::AppendBytes(pFile, std::min<u64>(uRest, g_uFontFileBytesMost), bytes);
    return bytes;
}

std::vector<u8> g_fnReadFontFile(std::FILE* pFile) { return ReadFile(pFile, true); }

std::vector<u8> g_fnReadFontFileHead(std::FILE* pFile) { return ReadFile(pFile, false); }

bool CFontUniCode::m_fnLoadFromMemory(stMemoryStream* pStream) {
    stFontFileHeader st;
    if (!pStream || !g_fnReadFontFileHeader(pStream, &st) || !CanBeLoaded(st, pStream->m_uSize)) return false;
    if (!Prepare(*this, st) || !ReadRecords(*this, pStream, m_uNum_Characters + 2)) return false;
    ReadLevels(*this, pStream);
    IndexUsedCells(*this);
    return true;
}

bool CFontUniCode::m_fnLoadFromOpenFile(stMemoryStream* pHead, std::FILE* pPicture) {
    stFontFileHeader st;
    if (!pHead || !g_fnReadFontFileHeader(pHead, &st) || !CanBeLoaded(st, pHead->m_uSize)) return false;
    if (!Prepare(*this, st) || !ReadRecords(*this, pHead, m_uNum_Characters + 2)) return false;
    CPictureInFile source(pPicture, pHead->m_uSize);
    TakeAtlas(*this, source);
    UploadTaken(*this);
    IndexUsedCells(*this);
    return true;
}

bool CFontUniCode::m_fnLoadFromStream(std::FILE* pFile) {
    if (!pFile) return false;
    const std::vector<u8> bytes = g_fnReadFontFile(pFile);
    stMemoryStream stream = {bytes.data(), static_cast<u32>(bytes.size()), 0};
    stFontFileHeader st;
    if (!g_fnReadFontFileHeader(&stream, &st) || !CanBeLoaded(st, stream.m_uSize)) return false;
    if (!Prepare(*this, st) || !ReadRecords(*this, &stream, m_uNum_Characters)) return false;
    stream.m_uPosition += 2 * sizeof(stFontChar); // KEEP(files): the blanks' records stay out
    ReportDashes();
    ReportSizes(*this);
    ReportCells(*this);
    ReportDashes();
    ReadLevels(*this, &stream);
    ExportAtlas(*this);
    IndexFirstCells(*this);
    return true;
}

bool CFontUniCode::m_fnLoadFromFile(const char16_t* wzPath) {
    return m_fnLoadFromStream(platform::OpenInput(wzPath).get());
}

bool CFontUniCode::m_fnLoadFromFileA(const char* szPath) {
    return m_fnLoadFromStream(platform::OpenInput(szPath).get());
}
