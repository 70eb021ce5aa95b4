// What a font cache file is, whether it holds, and where it is found.
#include "font/font_file.h"

#include "draw/data_path.h"
#include "platform/folders.h"
#include "platform/input_file.h"
#include "platform/regular_file.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>

static_assert(std::endian::native == std::endian::little, "files are read as they are");

u32 g_fnReadStream(void* pOut, u32 uElement, u32 uCount, stMemoryStream* pStream) noexcept {
    if (!pStream->m_pData || pStream->m_uPosition > pStream->m_uSize || uElement == 0) return 0;
    const u64 uLeft = pStream->m_uSize - pStream->m_uPosition;
    const u64 uBytes = std::min(static_cast<u64>(uElement) * uCount, uLeft);
    if (uBytes) std::memcpy(pOut, pStream->m_pData + pStream->m_uPosition, uBytes);
    pStream->m_uPosition += static_cast<u32>(uBytes);
    return static_cast<u32>(uBytes / uElement);
}

bool g_fnReadFontFileHeader(stMemoryStream* pStream, stFontFileHeader* pOut) noexcept {
    pStream->m_uPosition = 0;
    if (g_fnReadStream(pOut, sizeof *pOut, 1, pStream) != 1) return false;
    pOut->m_wzFontName[g_uFontFileNameUnits - 1] = 0;
    return true;
}

u32 g_fnFontLevels(u32 uWidth, u32 uHeight) noexcept {
    const u32 uSide = std::max({uWidth, uHeight, 1u});
    return static_cast<u32>(std::bit_width(uSide));
}

u64 g_fnFontLevelBytes(u32 uWidth, u32 uHeight, u32 uLevel) noexcept {
    // KEEP(files): not the product of the halved sides, which differs for sides that are no powers of two.
    return uLevel < 32 ? static_cast<u64>(uWidth) * uHeight >> 2 * uLevel : 0;
}

u64 g_fnFontLevelsBytes(u32 uWidth, u32 uHeight) noexcept {
    const u64 uFirst = g_fnFontLevelBytes(uWidth, uHeight, 0);
    if (uFirst >> 62) return uFirst; // more than any file has; the sum would not fit
    u64 uBytes = 0;
    for (u32 u = 0; u < g_fnFontLevels(uWidth, uHeight); ++u)
        uBytes += g_fnFontLevelBytes(uWidth, uHeight, u);
    return uBytes;
}

namespace {

constexpr u64 g_uFileBytesEver = 0xFFFFFFFF;

u64 Cells(const stFontFileHeader& st) { return static_cast<u64>(st.m_uLayoutW) * st.m_uLayoutH; }

/// Header and records; a count that no file can have gives a size that none has.
u64 BytesToLevels(u64 uCells) {
    return uCells > g_uFileBytesEver ? 2 * g_uFileBytesEver
                                     : sizeof(stFontFileHeader) + (uCells + 2) * sizeof(stFontChar);
}

/// The tests that need no more than the header and the size of the whole.
i32 CheckSizes(stMemoryStream* pStream, u64 uFileBytes, stFontFileHeader& st) {
    if (!pStream) return FONT_FILE_NO_STREAM;
    if (uFileBytes == 0) return FONT_FILE_EMPTY;
    if (uFileBytes < sizeof st) return FONT_FILE_SHORT_HEADER;
    if (!g_fnReadFontFileHeader(pStream, &st)) return FONT_FILE_NO_HEADER;
    if (st.m_uVersion != g_uFontFileVersion) return FONT_FILE_VERSION;
    const u64 uBytes = BytesToLevels(Cells(st));
    if (uFileBytes < uBytes) return FONT_FILE_SHORT_RECORDS;
    if (uFileBytes - uBytes < g_fnFontLevelsBytes(st.m_uTexW, st.m_uTexH)) return FONT_FILE_SHORT_LEVELS;
    return 0;
}

/// Walks the records of the grid. pNeeded null: any code is one too many.
i32 CheckCells(stMemoryStream* pStream, u64 uCells, const std::set<u32>* pNeeded) {
    bool bMore = false;
    for (u64 u = 0; u < uCells; ++u) {
        stFontChar st;
        if (g_fnReadStream(&st, sizeof st, 1, pStream) != 1) return FONT_FILE_NO_RECORDS;
        const u32 uCode = st.m_u32_Char_UTF32_LE;
        bMore = bMore || (uCode != 0 && !(pNeeded && pNeeded->contains(uCode)));
    }
    return bMore ? FONT_FILE_HAS_MORE : FONT_FILE_HAS_NO_MORE;
}

bool ResolveName(char16_t* wzOut, const stFontFilePlace& stPlace, const std::u16string& wzFile) {
    std::u16string wzName = stPlace.wzFolder ? stPlace.wzFolder : u"";
    wzName += wzFile;
    std::replace(wzName.begin(), wzName.end(), u'\\', platform::g_cPathSeparator);
    return g_fnResolveDataPath(wzOut, wzName.c_str());
}

std::u16string Decimal(u32 u) {
    const std::string sz = std::to_string(static_cast<i32>(u));
    return {sz.begin(), sz.end()};
}

bool HasRoomFor(const stFontFileHeader& st, u32 uNeeded) {
    // KEEP(files): the count in the header is that of all cells, used or not, so a file serves no text at all
    // here.
    return static_cast<i64>(Cells(st)) - static_cast<i64>(st.m_uNum_Characters) >= static_cast<i64>(uNeeded);
}

} // namespace

i32 g_fnCheckFontFileHead(stMemoryStream* pHead, u64 uFileBytes) noexcept {
    stFontFileHeader st;
    const i32 iSizes = CheckSizes(pHead, uFileBytes, st);
    return iSizes < 0 ? iSizes : CheckCells(pHead, Cells(st), nullptr);
}

i32 CFontUniCode::m_fnCheckMemoryFile(stMemoryStream* pStream, const char16_t* wzRequired) {
    stFontFileHeader st;
    const i32 iSizes = CheckSizes(pStream, pStream ? pStream->m_uSize : 0, st);
    if (iSizes < 0) return iSizes;
    if (!wzRequired) return CheckCells(pStream, Cells(st), nullptr);
    std::u32string codes;
    std::set<u32> needed;
    const bool bHasCodes = g_fnToCodes(wzRequired, codes);
    for (const u32 uCode : codes)
        if (!g_fnIsBlankCode(uCode)) needed.insert(uCode);
    const i32 iCells = CheckCells(pStream, Cells(st), &needed);
    if (iCells < 0) return iCells;
    if (!bHasCodes) return FONT_FILE_NO_TEXT;
    return needed.size() > Cells(st) ? FONT_FILE_HAS_MORE : iCells;
}

bool g_fnFontFilePath(char16_t* wzOut, const stFontFilePlace& stPlace, u32 uFontId) {
    const bool bProfile = stPlace.wzFolder && *stPlace.wzFolder;
    return ResolveName(wzOut, stPlace,
                       (bProfile ? u"\\" : u"") + Decimal(stPlace.uStyle) + u"-" + Decimal(uFontId) +
                           u".fnt");
}

bool g_fnFontFilePath(char16_t* wzOut, const stFontFilePlace& stPlace, const char16_t* wzFace) {
    const std::u16string_view face(wzFace);
    wzOut[0] = 0;
    // A face name comes from a profile: it must not lead out of the folder.
    if (face.find_first_of(u"\\/:") != face.npos) return false;
    return ResolveName(wzOut, stPlace, u"\\" + Decimal(stPlace.uStyle) + u"-" + wzFace + u".fnt");
}

bool g_fnLoadFontFile(CFontUniCode* pFont, const char16_t* wzPath, const char16_t* wzFace,
                      const u32* pNeeded) {
    const platform::InputFile pFile = platform::OpenInputAlone(wzPath);
    if (!pFile) return false;
    const std::vector<u8> head = g_fnReadFontFileHead(pFile.get());
    const u64 uFileBytes = std::min<u64>(platform::SizeOfFile(pFile.get()), g_uFontFileBytesMost);
    stMemoryStream stream = {head.data(), static_cast<u32>(head.size()), 0};
    stFontFileHeader st;
    return g_fnCheckFontFileHead(&stream, uFileBytes) >= 0 && g_fnReadFontFileHeader(&stream, &st) &&
           std::u16string_view(st.m_wzFontName) == wzFace && (!pNeeded || HasRoomFor(st, *pNeeded)) &&
           pFont->m_fnLoadFromOpenFile(&stream, pFile.get());
}
