// The language of captions: which there are, which one is chosen, and whether its letters can be drawn.
#include "tools/profile/language_command.h"
#include "companion/config.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "config/profile/profile_document.h"
#include "platform/glyph_rasterizer.h"
#include "platform/utf.h"
#include "tools/profile/program.h"
#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <tinyxml2.h>

namespace fs = std::filesystem;

namespace companion {
namespace {

constexpr const char* kFolder = "Languages";

std::u16string ToUtf16(const std::string& str) {
    std::u16string wstr(str.size() + 1, u'\0');
    platform::Utf8ToUtf16(str.c_str(), wstr.data(), static_cast<u32>(wstr.size()));
    return wstr.c_str();
}

std::string ToUtf8(const char16_t* wz) {
    std::string str(std::char_traits<char16_t>::length(wz) * 3 + 1, '\0');
    platform::Utf16ToUtf8(wz, str.data(), static_cast<u32>(str.size()));
    return str.c_str();
}

struct DeviceEnd {
    void operator()(platform::GlyphDevice* p) const { platform::DestroyGlyphDevice(p); }
};
struct BitmapEnd {
    void operator()(platform::GlyphBitmap* p) const { platform::DestroyGlyphBitmap(p); }
};
struct FontEnd {
    void operator()(platform::GlyphFont* p) const { platform::DestroyGlyphFont(p); }
};

/// Fonts of one face and of the last resort, to ask for letters.
class Face {
  public:
    explicit Face(const std::string& strFace) : m_wstrFace(ToUtf16(strFace)) {
        m_pFont.reset(platform::CreateGlyphFont(m_pDevice.get(), {32, 43, 400, m_wstrFace.c_str()}));
    }
    /// Name of the face that draws; the one asked for where it is installed.
    std::string Drawn() const {
        char16_t wzDrawn[128] = u"";
        platform::GlyphFontFamily(m_pDevice.get(), m_pFont.get(), wzDrawn, 128);
        return ToUtf8(wzDrawn);
    }
    /// False where a box stands for the letter, or nothing at all: other faces of the system may help out.
    bool Draws(const std::u16string& wstrLetter) const {
        if (platform::FontHasGlyph(m_pDevice.get(), m_pFont.get(), wstrLetter.c_str(),
                                   static_cast<u32>(wstrLetter.size())))
            return true;
        const std::vector<u8> aPicture = PictureOf(wstrLetter);
        return aPicture != PictureOf(u"") && aPicture != PictureOf(kNoLetter);
    }

  private:
    std::vector<u8> PictureOf(const std::u16string& wstr) const {
        platform::ClearGlyphBitmap(m_pDevice.get());
        platform::DrawGlyphs(m_pDevice.get(), m_pFont.get(), wstr.c_str(), static_cast<u32>(wstr.size()),
                             kSide * 3 / 4);
        std::vector<u8> aPicture(kSide * 3 * kSide);
        platform::ReadGlyphBitmap(m_pDevice.get(), kSide, kSide, aPicture.data());
        return aPicture;
    }

    static constexpr i32 kSide = 64;
    static constexpr const char16_t* kNoLetter = u"\xF1A7"; ///< in the private area of no common font
    std::u16string m_wstrFace;
    std::unique_ptr<platform::GlyphDevice, DeviceEnd> m_pDevice{platform::CreateGlyphDevice()};
    std::unique_ptr<platform::GlyphBitmap, BitmapEnd> m_pBitmap{
        platform::CreateGlyphBitmap(m_pDevice.get(), kSide, kSide)};
    std::unique_ptr<platform::GlyphFont, FontEnd> m_pFont;
};

std::u16string Letter(const std::u16string& wstr, size_t u) {
    const bool bPair = (wstr[u] & 0xFC00) == 0xD800 && u + 1 < wstr.size();
    return wstr.substr(u, bPair ? 2 : 1);
}

bool EqualNames(std::string_view a, std::string_view b) {
    const auto Fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return Fold(x) == Fold(y); });
}

/// Every letter of the captions, once.
std::set<std::u16string> LettersOf(const tinyxml2::XMLElement& texts) {
    std::set<std::u16string> setLetters;
    for (auto* p = texts.FirstChildElement(); p; p = p->NextSiblingElement()) {
        const char* const szText = p->Attribute("En");
        const std::u16string wstr = szText ? ToUtf16(szText) : u"";
        for (size_t u = 0; u < wstr.size(); u += Letter(wstr, u).size())
            if (wstr[u] > u' ') setLetters.insert(Letter(wstr, u));
    }
    return setLetters;
}

/// What the face of a language lacks. Without a face of its own a language is written with the styles'.
void JudgeFace(const tinyxml2::XMLElement& texts, LanguageRow& st) {
    constexpr const char* szStyles = "Arial";
    const Face face(st.strFace.empty() ? szStyles : st.strFace);
    st.strDrawn = face.Drawn();
    for (const std::u16string& wstrLetter : LettersOf(texts)) st.uMissing += !face.Draws(wstrLetter);
}

void ReadLanguage(const fs::path& path, LanguageRow& st) {
    tinyxml2::XMLDocument document;
    const std::u16string wzPath = path.u16string();
    if (!g_fnOpenRootedDocument(wzPath.c_str(), "Lang", document, nullptr)) return;
    const tinyxml2::XMLElement* const pLang = document.FirstChildElement("Lang");
    const tinyxml2::XMLElement* const pTexts = pLang->FirstChildElement("RV5");
    if (const char* szFace = pLang->Attribute("font")) st.strFace = szFace;
    if (!pTexts) return;
    st.bReadable = true;
    for (auto* p = pTexts->FirstChildElement(); p; p = p->NextSiblingElement()) ++st.uCaptions;
    JudgeFace(*pTexts, st);
}

/// The two settings of it.
const SettingRow& File() { return *FindSetting("language"); }
const SettingRow& Switch() { return *FindSetting("language-captions"); }

/// The file in use; empty: the built-in captions.
std::string ChosenFile(const std::string& strData) {
    std::optional<StoredValue> stSwitch, stFile;
    ReadSetting(Switch(), stSwitch, strData);
    ReadSetting(File(), stFile, strData);
    return stSwitch && stSwitch->uNumber.value_or(0) != 0 && stFile ? stFile->strText : "";
}

/// No file: the built-in captions.
Result Choose(const std::string& strData, const std::string& strFile) {
    const Result stDone = WriteSetting(File(), {std::nullopt, strFile});
    return stDone ? WriteSetting(Switch(), {strFile.empty() ? 0u : 1u, {}}, strData) : stDone;
}

std::string WarningOf(const LanguageRow& st) {
    const std::string strFace = st.strFace.empty() ? st.strDrawn : st.strFace;
    if (st.uMissing == 0) return {};
    return std::to_string(st.uMissing) +
           " letters of its captions are in no font that is installed here; the "
           "language asks for the face \"" +
           strFace + "\"";
}

std::string FaceText(const LanguageRow& st) {
    if (!st.bReadable) return "unreadable";
    const std::string strFace = st.strFace.empty() ? "the styles' own" : st.strFace;
    if (st.uMissing > 0) return strFace + ": " + std::to_string(st.uMissing) + " letters missing";
    return st.strFace.empty() || EqualNames(st.strFace, st.strDrawn) ? strFace
                                                                     : strFace + " (" + st.strDrawn + ")";
}

} // namespace

std::vector<LanguageRow> LanguagesOf(const fs::path& pathData, const std::string& strChosen) {
    std::vector<LanguageRow> listRows;
    std::error_code error;
    for (fs::directory_iterator it(pathData / kFolder, error), end; !error && it != end;
         it.increment(error)) {
        if (it->path().extension() != ".xml") continue;
        LanguageRow& st = listRows.emplace_back();
        st.strName = TextOfPath(it->path().stem());
        st.bChosen = EqualNames(TextOfPath(it->path().filename()), strChosen);
        ReadLanguage(it->path(), st);
    }
    std::sort(listRows.begin(), listRows.end(),
              [](const LanguageRow& a, const LanguageRow& b) { return a.strName < b.strName; });
    return listRows;
}

std::string LanguageTableText(const std::vector<LanguageRow>& listRows) {
    std::vector<std::vector<std::string>> listCells;
    for (const LanguageRow& st : listRows)
        listCells.push_back(
            {st.strName, st.bChosen ? "yes" : "-", std::to_string(st.uCaptions), FaceText(st)});
    return FormatTable({{"LANGUAGE"}, {"IN USE"}, {"CAPTIONS", Align::Right}, {"FACE"}}, listCells);
}

std::string LanguageJson(const std::vector<LanguageRow>& listRows) {
    auto json = nlohmann::ordered_json::array();
    for (const LanguageRow& st : listRows)
        json.push_back({{"name", st.strName},
                        {"inUse", st.bChosen},
                        {"captions", st.uCaptions},
                        {"face", st.strFace},
                        {"drawnWith", st.strDrawn},
                        {"lettersMissing", st.uMissing},
                        {"readable", st.bReadable}});
    return PrintableJson(json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) + "\n";
}

Result ListLanguages(const Options& stOptions, int&) {
    fs::path pathData;
    const Result stFound = FindDataFolder(stOptions.stProfile.strData, pathData);
    if (!stFound) return stFound;
    const auto listRows = LanguagesOf(pathData, ChosenFile(stOptions.stProfile.strData));
    if (listRows.empty())
        return Result::NotFound("there are no languages in " + TextOfPath(pathData / kFolder));
    const bool bJson = stOptions.stProfile.bJson;
    std::fputs((bJson ? LanguageJson(listRows) : LanguageTableText(listRows)).c_str(), stdout);
    return {};
}

Result UseLanguage(const Options& stOptions, int&) {
    fs::path pathData;
    const Result stFound = FindDataFolder(stOptions.stProfile.strData, pathData);
    if (!stFound) return stFound;
    std::string strName = stOptions.stProfile.strProfile;
    if (EqualNames(fs::path(strName).extension().string(), ".xml")) strName.resize(strName.size() - 4);
    const auto listRows = LanguagesOf(pathData, "");
    const auto it = std::find_if(listRows.begin(), listRows.end(),
                                 [&](const LanguageRow& st) { return EqualNames(st.strName, strName); });
    if (it == listRows.end())
        return Result::NotFound("there is no language " + strName + "; 'language list' lists them");
    if (!it->bReadable) return Result::Fail("the file of " + it->strName + " is no language file");
    const Result stDone = Choose(stOptions.stProfile.strData, it->strName + ".xml");
    if (stDone && !WarningOf(*it).empty()) std::fprintf(stderr, "orvin-osd: %s\n", WarningOf(*it).c_str());
    return stDone;
}

Result LeaveLanguage(const Options& stOptions, int&) { return Choose(stOptions.stProfile.strData, ""); }

} // namespace companion
