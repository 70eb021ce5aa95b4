// The input as a font cache file: what is found to hold can be loaded or is refused whole, and what was
// loaded serves text and can be written and read again.
#include "font/font_file.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace {

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

/// Without faces: a file's glyphs are what is looked at, and opening a face takes long.
class CFaceless : public CFontUniCode {
  public:
    bool m_fnCreateGdiFont(platform::GlyphFont**, u32, const char16_t*) override { return false; }
};

/// Atlases of this size are quick to make; the reader holds larger ones to its own bounds.
bool IsQuick(const stFontFileHeader& st) { return static_cast<u64>(st.m_uTexW) * st.m_uTexH <= 1u << 18; }

std::string Saved(CFontUniCode& font) {
    char* pBytes = nullptr;
    std::size_t uBytes = 0;
    std::FILE* const pFile = open_memstream(&pBytes, &uBytes);
    Require(pFile && font.m_fnSaveToStream(pFile));
    std::fclose(pFile);
    std::string bytes(pBytes, uBytes);
    std::free(pBytes);
    return bytes;
}

void UseFont(CFontUniCode& font) {
    for (const auto& [uCode, uIndex] : font.m_mapCharIndex) {
        Require(uIndex < font.m_uNum_Characters + 2);
        f32 fW = 0, fH = 0;
        Require(font.m_fnGetCharInfo(uCode, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &fW, &fH));
        Require(std::isfinite(fW) && std::isfinite(fH));
    }
    g_fnFontAddText(&font, u"A\u4E2D");
    font.m_fnDumpCell(0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uSize) {
    stMemoryStream stream = {pData, static_cast<u32>(uSize), 0};
    stFontFileHeader st;
    CFaceless font;
    const i32 iCheck = font.m_fnCheckMemoryFile(&stream, nullptr);
    const i32 iText = font.m_fnCheckMemoryFile(&stream, u"AB\u4E2D");
    Require(iCheck <= 1 && (iCheck < 0 ? iText == iCheck : iText >= 0));
    Require(g_fnReadFontFileHeader(&stream, &st) == (uSize >= sizeof st));
    if (uSize < sizeof st || !IsQuick(st) || !font.m_fnLoadFromMemory(&stream)) return 0;
    Require(st.m_uVersion == g_uFontFileVersion && stream.m_uPosition <= uSize);
    UseFont(font);
    const std::string bytes = Saved(font);
    stMemoryStream again = {reinterpret_cast<const u8*>(bytes.data()), static_cast<u32>(bytes.size()), 0};
    CFaceless other;
    Require(other.m_fnCheckMemoryFile(&again, nullptr) >= 0 && other.m_fnLoadFromMemory(&again));
    return 0;
}
