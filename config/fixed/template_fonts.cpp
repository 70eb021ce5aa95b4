#include "config/fixed/template_fonts.h"

#include "config/fixed/template_attributes.h"
#include "config/fixed/template_records.h"
#include "config/fixed/variables.h"
#include "config/items/item_reader.h"
#include "config/profile/profile_panel_keys.h"
#include "config/settings/settings.h"

#include <string_view>

stFontSlots g_stFontSlots;

namespace {

constexpr stTemplateKey g_aFontKeys[] = {{"Title", ""},         {"ReadFontNameFromVariable", ""},
                                         {"Dynamic", "0"},      {"FontName", ""},
                                         {"FontTexW", "0"},     {"FontTexH", "0"},
                                         {"FontWeight", "400"}, {"FontLayoutX", "8"}};

void SetFace(stFontRecord& st, std::u16string_view wzFace) {
    constexpr std::size_t uRoom = sizeof st.m_wzFontName / sizeof(char16_t) - 1;
    std::size_t u = wzFace.copy(st.m_wzFontName, uRoom);
    if (wzFace.size() > uRoom && (st.m_wzFontName[u - 1] & 0xFC00) == 0xD800) --u; // no half of a pair
    st.m_wzFontName[u] = 0;
}

/// Face of a "Font": that of the variable it names, if that has one, else its own.
std::u16string FaceOf(const CTemplateAttributes& attributes) {
    const auto it =
        g_stFileVariables.mapProfile.find(std::string_view(attributes.m_fnText("ReadFontNameFromVariable")));
    if (it == g_stFileVariables.mapProfile.end() || it->second.empty())
        return attributes.m_fnWide("FontName");
    char16_t wzFace[g_uSettingText];
    g_fnDecodeUtf8(it->second.c_str(), wzFace, g_uSettingText);
    return wzFace;
}

stFontRecord ReadSlot(const CTemplateAttributes& attributes) {
    stFontRecord st;
    SetFace(st, FaceOf(attributes));
    st.m_bDynamic = attributes.m_fnWhole("Dynamic") != 0;
    st.m_uFontTexW = attributes.m_fnWhole("FontTexW");
    st.m_uFontTexH = attributes.m_fnWhole("FontTexH");
    st.m_iFontWeight = static_cast<i32>(attributes.m_fnWhole("FontWeight"));
    st.m_uFontLayoutX = attributes.m_fnWhole("FontLayoutX");
    return st;
}

void MarkUsedSlots() {
    for (u32 u = 0; u < g_uFixedFonts; ++u)
        g_stFontSlots.bitsUsed.set(u, g_stFontSlots.aRecord[u].m_wzFontName[0] != 0);
}

} // namespace

void g_fnClearFontSlots() {
    g_stFontSlots.aRecord.fill({});
    g_stFontSlots.bitsUsed.reset();
}

bool g_fnReadFontSlots(const tinyxml2::XMLElement* pTemplate) {
    if (!pTemplate) return false;
    for (auto* p = g_fnFirstElement(pTemplate, "Font"); p; p = g_fnNextElement(p, "Font")) {
        const CTemplateAttributes attributes(*p, g_aFontKeys);
        const u32 uSlot = g_fnTitleNumber(attributes.m_fnText("Title"));
        if (uSlot >= g_uFixedFonts) continue;
        g_stFontSlots.aRecord[uSlot] = ReadSlot(attributes);
    }
    MarkUsedSlots();
    return true;
}

bool g_fnMakeTemplateFonts(const tinyxml2::XMLElement* pTemplate, FontOverride fnOverride,
                           const stFontFilePlace& stPlace) {
    g_fnReadLanguageFileName(); // the override goes by it, long before the other settings are read
    g_fnClearFontSlots();
    if (!g_fnReadFontSlots(pTemplate)) return false;
    if (fnOverride) fnOverride(g_stFontSlots.aRecord);
    MarkUsedSlots();
    FontIdsByName ids;
    return g_fnMakeFixedFonts(g_stFontSlots.aRecord, stPlace, ids);
}

u32 g_fnTextItemFont(u32 uTextBID) {
    const stTextTemplate* pTemplate = g_stTemplates.poolTextBox.m_fnFind(uTextBID);
    const stTextStyle* pStyle =
        pTemplate ? g_stTemplates.poolTextBoxStyle.m_fnFind(pTemplate->uStyleID) : nullptr;
    return pStyle ? pStyle->uFontID : g_uNoFont;
}

bool g_fnMakeTemplateTextFont(u32 uTextBID, const char16_t* wzText, const char16_t* wzFace,
                              const stFontFilePlace& stPlace) {
    const u32 uFont = g_fnTextItemFont(uTextBID);
    if (uFont >= g_uFixedFonts || !g_stFontSlots.aRecord[uFont].m_bDynamic) return true;
    stFontRecord st = g_stFontSlots.aRecord[uFont];
    if (wzFace && *wzFace) SetFace(st, wzFace);
    if (!st.m_wzFontName[0] || st.m_uFontTexW == 0 || st.m_uFontLayoutX == 0) return true;
    return g_fnMakeTextFont(uFont, st, wzText ? wzText : u"", stPlace);
}
