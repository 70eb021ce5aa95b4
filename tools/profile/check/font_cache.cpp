#include "tools/profile/check/font_cache.h"
#include "companion/profile_folder.h"
#include "companion/utf.h"
#include "font/font_file.h"
#include <algorithm>
#include <limits>
#include <new>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {
namespace {

constexpr const char* kExtension = ".fnt";

Result ReadWhole(const fs::path& path, std::string& strBytes) {
    std::error_code error;
    if (!ReadFile(path, g_uFontFileBytesMost + u64{1}, strBytes) || !fs::is_regular_file(path, error))
        return Result::NotFound("cannot open " + TextOfPath(path));
    if (strBytes.size() > g_uFontFileBytesMost)
        return Result::Fail(TextOfPath(path) + " is too large for a font cache file");
    const auto uSize = fs::file_size(path, error);
    return error || uSize == strBytes.size() ? Result{} : Result::Fail("cannot read " + TextOfPath(path));
}

void TakeHeader(stMemoryStream stream, FontFileFacts& stFacts) {
    stFontFileHeader st;
    if (!g_fnReadFontFileHeader(&stream, &st) || st.m_uVersion != g_uFontFileVersion) return;
    stFacts.strFace = Utf8FromUnits(st.m_wzFontName, g_uFontFileNameUnits - 1);
    stFacts.iWeight = st.m_iFontWeight;
    const u64 uCells = static_cast<u64>(st.m_uLayoutW) * st.m_uLayoutH;
    stFacts.uCells = static_cast<u32>(std::min<u64>(uCells, std::numeric_limits<u32>::max()));
    stFacts.uWidth = st.m_uTexW;
    stFacts.uHeight = st.m_uTexH;
}

/// The name of a file tells the face whose texts look for it; one of another face is passed over.
std::string NameFault(const FontFileFacts& stFacts) {
    const std::string strStem = TextOfPath(stFacts.path.stem());
    const size_t uDash = strStem.find('-');
    if (uDash == std::string::npos || strStem.substr(0, uDash) != "2") return {};
    const std::string strAsked = strStem.substr(uDash + 1);
    if (strAsked == stFacts.strFace) return {};
    return "is named for the face " + strAsked + ", but holds " + stFacts.strFace;
}

std::string LoadFault(stMemoryStream stream, FontFileFacts& stFacts) {
    CFontUniCode font;
    if (!font.m_fnLoadFromMemory(&stream)) return "no font can be made of its header";
    for (u32 u = 0; u < font.m_uNum_Characters; ++u)
        stFacts.uGlyphs += font.m_pChars[u].m_u32_Char_UTF32_LE != 0;
    return {};
}

} // namespace

std::string FontFileFault(i32 iCheck) {
    switch (iCheck) {
    case FONT_FILE_EMPTY:
        return "is empty";
    case FONT_FILE_SHORT_HEADER:
    case FONT_FILE_NO_HEADER:
        return "is too short for a header";
    case FONT_FILE_VERSION:
        return "is of another version than " + std::to_string(g_uFontFileVersion);
    case FONT_FILE_SHORT_RECORDS:
    case FONT_FILE_NO_RECORDS:
        return "is cut off in its glyph records";
    case FONT_FILE_SHORT_LEVELS:
        return "is cut off in its picture";
    default:
        return iCheck < 0 ? "cannot be read" : "";
    }
}

Result InspectFontFile(const fs::path& path, FontFileFacts& stFacts) {
    std::string strBytes;
    stFacts = {};
    stFacts.path = path;
    const Result stRead = ReadWhole(path, strBytes);
    if (!stRead) return stRead;
    stFacts.uBytes = strBytes.size();
    const stMemoryStream stream{reinterpret_cast<const u8*>(strBytes.data()),
                                static_cast<u32>(strBytes.size()), 0};
    TakeHeader(stream, stFacts);
    stMemoryStream checked = stream;
    CFontUniCode font;
    stFacts.strFault = FontFileFault(font.m_fnCheckMemoryFile(&checked, nullptr));
    if (stFacts.strFault.empty()) stFacts.strFault = LoadFault(stream, stFacts);
    if (stFacts.strFault.empty()) stFacts.strFault = NameFault(stFacts);
    return {};
}

std::vector<FontFileFacts> FontFilesIn(const fs::path& pathFolder) {
    std::vector<FontFileFacts> listFacts;
    std::error_code error;
    for (fs::directory_iterator it(pathFolder, error), end; !error && it != end; it.increment(error)) {
        if (it->path().extension() != kExtension) continue;
        FontFileFacts stFacts;
        const Result stRead = InspectFontFile(it->path(), stFacts);
        if (!stRead) stFacts.strFault = stRead.strError;
        listFacts.push_back(std::move(stFacts));
    }
    std::sort(listFacts.begin(), listFacts.end(),
              [](const FontFileFacts& a, const FontFileFacts& b) { return a.path < b.path; });
    return listFacts;
}

} // namespace companion
