#include "config/fixed/language.h"

#include "base/log.h"
#include "config/fixed/attribute_value.h"
#include "config/fixed/name_maps.h"
#include "config/fixed/template_records.h"
#include "config/profile/profile_document.h"
#include "config/settings/setting_binding.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"
#include "draw/data_path.h"
#include "platform/folders.h"
#include "platform/utf.h"
#include "shared/info_rows.h"

#include <algorithm>
#include <map>

#include <tinyxml2.h>

namespace {

using tinyxml2::XMLElement;

/// Slots of the fonts that captions are written with.
constexpr std::size_t c_uClassicSlot = 4, c_uRV5Slot = 0;
/// Room of a caption, as that of a sensor's.
constexpr u32 c_uCaptionUnits = 256;

// --- the file ----------------------------------------------------------------------------------------------

/// A machine without the suite has no install folder: there the shipped files count.
bool FindFile(const char16_t* wzName, char16_t* wzPath) {
    if (g_fnResolveInstallPath(wzPath, wzName)) return true;
    const std::u16string wzShipped = std::u16string(u"Languages") + platform::g_cPathSeparator + wzName;
    return g_fnResolveDataPath(wzPath, wzShipped.c_str());
}

/// "Lang" of the file that the settings name, or null.
const XMLElement* OpenLanguage(tinyxml2::XMLDocument& document) {
    char16_t wzPath[g_uDataPathCapacity];
    const char16_t* const wzName = g_stSettings.wzLanguageFileName;
    if (!wzName[0] || !FindFile(wzName, wzPath) || !g_fnOpenRootedDocument(wzPath, "Lang", document, nullptr))
        return nullptr;
    return document.FirstChildElement("Lang");
}

// --- its face ----------------------------------------------------------------------------------------------

void TakeFace(std::span<stFontRecord> slots, std::size_t uSlot) {
    tinyxml2::XMLDocument document;
    const XMLElement* const pLang = OpenLanguage(document);
    const char* const szFace = pLang ? pLang->Attribute("font") : nullptr;
    if (!szFace || uSlot >= slots.size()) return;
    stFontRecord& st = slots[uSlot];
    g_fnDecodeUtf8(szFace, st.m_wzFontName, static_cast<u32>(std::size(st.m_wzFontName)));
}

// --- its captions ------------------------------------------------------------------------------------------

using RegistryTag = char16_t[g_uRegistryTextUnits];

bool IsHighSurrogate(char16_t c) { return (c & 0xFC00) == 0xD800; }
bool IsLowSurrogate(char16_t c) { return (c & 0xFC00) == 0xDC00; }

/// Where the character before a place begins.
std::size_t CharacterBefore(std::u16string_view wz, std::size_t u) {
    const bool bPair = u >= 2 && IsLowSurrogate(wz[u - 1]) && IsHighSurrogate(wz[u - 2]);
    return u - (bPair ? 2 : 1);
}

/// Offset of a title as the file gives it, like those of templates.
i32 ReadOffset(const XMLElement& element, const char* szName) {
    const i32 iOffset = static_cast<i32>(g_fnReadXmlDecimal(&element, szName));
    return g_fnCutToWhole(g_fnScaleAttribute({static_cast<f64>(iOffset), false}));
}

i32 Add(i32 a, i32 b) { return static_cast<i32>(static_cast<u32>(a) + static_cast<u32>(b)); }

/// The children of the style's element in the file, and where titles stood before.
class CCaptions {
  public:
    explicit CCaptions(const XMLElement& texts) : m_texts(texts) {}

    /// The text of a tag to an item; an empty tag says nothing.
    void Give(const RegistryTag& wzTag, u32 uTextBID) {
        stTextTemplate* const p = g_stTemplates.poolTextBox.m_fnFind(uTextBID);
        const XMLElement* const pItem = wzTag[0] && p ? Find(wzTag) : nullptr;
        const char* const szText = pItem ? pItem->Attribute("En") : nullptr;
        if (!szText || !*szText) return;
        char16_t wzText[c_uCaptionUnits];
        g_fnDecodeUtf8(szText, wzText, c_uCaptionUnits);
        const stItemPlace& stBefore = m_mapBefore.try_emplace(uTextBID, *p).first->second;
        p->wzText = g_fnCleanCaption(wzText);
        p->iAnchorX = Add(stBefore.iAnchorX, ReadOffset(*pItem, "AlignLeftOffsetX"));
        p->iAnchorY = Add(stBefore.iAnchorY, ReadOffset(*pItem, "AlignOffsetY"));
    }
    /// The same to the title of a row by its built-in caption.
    void GiveTitle(const RegistryTag& wzTag, std::u16string_view wzCaption) {
        const auto it = g_stNameMaps.mapCaptionTitle.find(wzCaption);
        if (it != g_stNameMaps.mapCaptionTitle.end())
            Give(wzTag, g_fnFindBID(g_stNameMaps.mapTextBox, it->second));
    }

  private:
    const XMLElement* Find(const RegistryTag& wzTag) const {
        char szTag[g_uSettingText];
        const bool bFits = platform::Utf16ToUtf8(wzTag, szTag, g_uSettingText);
        const XMLElement* const pItem = bFits ? m_texts.FirstChildElement(szTag) : nullptr;
        if (!pItem) g_fnLog("elementItem is NULL\n");
        return pItem;
    }

    const XMLElement& m_texts;
    std::map<u32, stItemPlace> m_mapBefore; ///< two tags of one title must not move it twice
};

void GiveCardRow(CCaptions& captions, const char16_t* wzRow, const char16_t* wzCaption) {
    RegistryTag wzTag;
    g_fnReadCardLanguageTag(wzRow, wzTag);
    captions.GiveTitle(wzTag, wzCaption);
}

/// A row's title serves all its cards: the tags of the first pass reach every position.
void GiveCardRows(CCaptions& captions) {
    for (const stInfoRow& row : g_aCardRows) GiveCardRow(captions, row.wzRow, row.wzRow);
    // One fan that stands for all has the title of the first.
    GiveCardRow(captions, u"Fan Duty", u"Fan1 Duty");
    GiveCardRow(captions, u"Fan RPM", u"Fan1 RPM");
}

void GiveRow(CCaptions& captions, const std::u16string& wzKey, const char16_t* wzCaption) {
    RegistryTag wzTag;
    g_fnReadRowLanguageTag(wzKey.c_str(), wzTag);
    captions.GiveTitle(wzTag, wzCaption);
}

void GiveSensors(CCaptions& captions) {
    for (const auto& [strName, st] : g_stSensors.mapByName) {
        const auto it = g_stSensors.mapLanguage.find(strName);
        if (it == g_stSensors.mapLanguage.end()) continue;
        if (st.iTitleTextId >= 0) captions.Give(it->second.wzCaptionTag, static_cast<u32>(st.iTitleTextId));
        if (st.iUnitTextId >= 0) captions.Give(it->second.wzUnitTag, static_cast<u32>(st.iUnitTextId));
    }
}

} // namespace

void g_fnOverrideLanguageFontClassic(std::span<stFontRecord> slots) { TakeFace(slots, c_uClassicSlot); }
void g_fnOverrideLanguageFontRV5(std::span<stFontRecord> slots) { TakeFace(slots, c_uRV5Slot); }

std::u16string g_fnCleanCaption(std::u16string_view wzText) {
    std::size_t uCharacters = 0;
    for (std::size_t u = wzText.size(); u > 0; u = CharacterBefore(wzText, u)) ++uCharacters;
    if (uCharacters >= 4 && wzText.back() == u'=')
        for (u32 u = 0; u < 3; ++u) wzText = wzText.substr(0, CharacterBefore(wzText, wzText.size()));
    if (!wzText.ends_with(u')')) return std::u16string(wzText);
    const std::size_t uOpen = wzText.rfind(u'(');
    if (uOpen == 0 || uOpen == wzText.npos) return std::u16string(wzText);
    return std::u16string(wzText.substr(0, CharacterBefore(wzText, uOpen)));
}

bool g_fnApplyLanguageStrings() {
    if (!g_stSettings.bUseLanguageXMLString) return false;
    tinyxml2::XMLDocument document;
    const XMLElement* const pLang = OpenLanguage(document);
    const XMLElement* const pTexts = pLang ? pLang->FirstChildElement("RV5") : nullptr;
    if (!pTexts) return false;
    CCaptions captions(*pTexts);
    GiveCardRows(captions);
    for (const stInfoRow& row : g_aCpuRows)
        GiveRow(captions, std::u16string(u"CPU\\") + row.wzRow, row.wzRow);
    GiveSensors(captions);
    for (const char16_t* wzRow : {u"Frame Time", u"System Time", u"Resolution"})
        GiveRow(captions, wzRow, wzRow);
    return true;
}
