// Faces and the letters that they have.
#include "companion/profile_folder.h"
#include "config/items/item_text.h"
#include "config/make/character_sets.h"
#include "controls/text_file.h"
#include "font/font_unicode.h"
#include "platform/glyph_rasterizer.h"
#include "platform/utf.h"
#include "tools/profile/check/writing.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>
#include <tinyxml2.h>
#include <utility>

namespace companion {
namespace {

namespace fs = std::filesystem;

/// Letters that are named in one finding.
constexpr std::size_t g_uLettersShown = 8;

struct DeviceEnd {
    void operator()(platform::GlyphDevice* p) const { platform::DestroyGlyphDevice(p); }
};
struct FontEnd {
    void operator()(platform::GlyphFont* p) const { platform::DestroyGlyphFont(p); }
};
using Device = std::unique_ptr<platform::GlyphDevice, DeviceEnd>;
using Font = std::unique_ptr<platform::GlyphFont, FontEnd>;

std::u16string ToUtf16(const std::string& str) {
    std::u16string wz(str.size() + 1, u'\0');
    platform::Utf8ToUtf16(str.c_str(), wz.data(), static_cast<u32>(wz.size()));
    return wz.c_str();
}

std::string ToUtf8(const std::u16string& wz) {
    std::string str(wz.size() * 3 + 1, '\0');
    platform::Utf16ToUtf8(wz.c_str(), str.data(), static_cast<u32>(str.size()));
    return str.c_str();
}

std::u16string FromCode(char32_t c) {
    char16_t wzUnits[2];
    return {wzUnits, platform::EncodeUtf16(c, wzUnits)};
}

/// "U+4E2D 中"
std::string LetterName(char32_t c) {
    char szCode[16];
    std::snprintf(szCode, sizeof szCode, "U+%04X ", static_cast<unsigned>(c));
    return szCode + ToUtf8(FromCode(c));
}

bool EqualNames(std::u16string_view a, std::u16string_view b) {
    const auto Fold = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char16_t x, char16_t y) { return Fold(x) == Fold(y); });
}

/// What an item may show, as far as it is known.
std::u16string TextOf(const ProfileItem& item, const fs::path& pathFolder) {
    const std::string_view szKind = item.pKind->szName;
    if (szKind == "NumBox") {
        const std::string strData = AttributeText(item, "DataFullName");
        const bool bMixed = strData == "SYSTEM_TIME" || strData == "RESOLUTION";
        return bMixed ? g_wzResolutionSet : g_wzNumberSet;
    }
    if (szKind == "TextBox") return ToUtf16(AttributeText(item, "Text"));
    const fs::path path = FileInProfile(pathFolder, AttributeText(item, "FileName"));
    const auto wzText = path.empty() ? nullptr : g_fnLoadTextFromFile(path.u16string().c_str());
    return wzText ? wzText.get() : u"";
}

class FaceCheck {
  public:
    FaceCheck(const fs::path& pathFolder, Findings& findings)
        : m_pathFolder(pathFolder), m_findings(findings), m_pDevice(platform::CreateGlyphDevice()) {}
    void Check(const ProfileItem& item);

  private:
    /// A face in use: its font, and which letters it has of those that were asked for.
    struct stFace {
        Font pFont;
        bool bToldInstalled = false;
        std::map<char32_t, bool> letters;
    };
    stFace& Open(const std::u16string& wzFace);
    void CheckInstalled(const ProfileItem& item, const std::u16string& wzFace, stFace& face);
    bool HasLetter(stFace& face, char32_t c);
    void CheckLetters(const ProfileItem& item, const std::u16string& wzFace, stFace& face);

    const fs::path& m_pathFolder;
    Findings& m_findings;
    Device m_pDevice;
    std::map<std::u16string, stFace> m_mapFaces;
};

FaceCheck::stFace& FaceCheck::Open(const std::u16string& wzFace) {
    const auto [it, bNew] = m_mapFaces.try_emplace(wzFace);
    if (bNew)
        it->second.pFont.reset(platform::CreateGlyphFont(m_pDevice.get(), {32, 43, 400, wzFace.c_str()}));
    return it->second;
}

void FaceCheck::CheckInstalled(const ProfileItem& item, const std::u16string& wzFace, stFace& face) {
    if (std::exchange(face.bToldInstalled, true)) return;
    char16_t wzDrawn[128];
    if (!platform::GlyphFontFamily(m_pDevice.get(), face.pFont.get(), wzDrawn, 128) ||
        EqualNames(wzFace, wzDrawn))
        return;
    std::error_code ignored;
    if (fs::exists(m_pathFolder / fs::path(u"2-" + wzFace + u".fnt"), ignored)) return;
    // A stand-in that the system has for this very face is less of a loss than its last resort.
    char16_t wzDefault[128] = u"";
    const Font pDefault(platform::CreateGlyphFont(m_pDevice.get(), {32, 43, 400, nullptr}));
    platform::GlyphFontFamily(m_pDevice.get(), pDefault.get(), wzDefault, 128);
    m_findings.Add(EqualNames(wzDrawn, wzDefault) ? Severity::Warning : Severity::Note,
                   AttributeLine(*item.pElement, "FontName"),
                   "the face \"" + ToUtf8(wzFace) + "\" is not installed here; \"" + ToUtf8(wzDrawn) +
                       "\" is drawn in its place");
}

bool FaceCheck::HasLetter(stFace& face, char32_t c) {
    const auto [it, bNew] = face.letters.try_emplace(c, false);
    const std::u16string wz = FromCode(c);
    if (bNew)
        it->second = platform::FontHasGlyph(m_pDevice.get(), face.pFont.get(), wz.c_str(),
                                            static_cast<u32>(wz.size()));
    return it->second;
}

void FaceCheck::CheckLetters(const ProfileItem& item, const std::u16string& wzFace, stFace& face) {
    std::u32string codes;
    g_fnToCodes(TextOf(item, m_pathFolder).c_str(), codes);
    std::set<char32_t> missing;
    for (const char32_t c : codes)
        if (!g_fnIsBlankCode(c) && !HasLetter(face, c)) missing.insert(c);
    if (missing.empty()) return;
    std::string strList;
    std::size_t uShown = 0;
    for (const char32_t c : missing)
        if (uShown++ < g_uLettersShown) strList += (strList.empty() ? "" : ", ") + LetterName(c);
    if (missing.size() > g_uLettersShown)
        strList += " and " + std::to_string(missing.size() - g_uLettersShown) + " more";
    m_findings.Warning(item.pElement->GetLineNum(), ItemTitle(item) + ": the face \"" + ToUtf8(wzFace) +
                                                        "\" lacks " + strList +
                                                        "; another face draws them, or a box stands there");
}

void FaceCheck::Check(const ProfileItem& item) {
    // As far as a record has room for it.
    const std::u16string wzFace = ToUtf16(AttributeText(item, "FontName")).substr(0, 127);
    stFace& face = Open(wzFace);
    if (!face.pFont)
        return m_findings.Error(AttributeLine(*item.pElement, "FontName"),
                                ItemTitle(item) + ": no font can be opened for \"" + ToUtf8(wzFace) + '"');
    CheckInstalled(item, wzFace, face);
    CheckLetters(item, wzFace, face);
}

} // namespace

void CheckFaces(const std::vector<const ProfileItem*>& taken, const fs::path& pathFolder,
                Findings& findings) {
    FaceCheck check(pathFolder, findings);
    // Items were counted before, so that there are no more than a layout can hold.
    for (const ProfileItem* p : taken)
        if (FindAttribute(*p->pKind, "FontName")) check.Check(*p);
}

} // namespace companion
