#include "config/fixed/template_records.h"

#include "base/numbers.h"
#include "config/fixed/name_maps.h"
#include "config/fixed/template_attributes.h"
#include "config/fixed/template_fonts.h"
#include "config/items/item_reader.h"
#include "config/profile/profile_panel_keys.h"
#include "config/settings/settings.h"

static_assert(g_uNoTemplate == g_uNoTitleNumber, "a title without a number names no template");

stTemplates g_stTemplates;

namespace {

constexpr stTemplateKey g_aTextStyleKeys[] = {{"Enable", "0"},      {"Title", ""},     {"FontID", "0"},
                                              {"TextSize", "0"},    {"TextScale", ""}, {"TextSpacingX", "0"},
                                              {"TextSpacingY", "0"}};
constexpr stTemplateKey g_aNumStyleKeys[] = {
    {"Enable", "0"}, {"Title", ""}, {"FontID", "0"}, {"TextSize", "0"}, {"TextScale", ""}};
constexpr stTemplateKey g_aPanelStyleKeys[] = {{"Enable", "0"},       {"Title", ""},
                                               {"ConsoleSizeX", "0"}, {"ConsoleSizeY", "0"},
                                               {"ConsoleScaleX", ""}, {"ConsoleScaleY", ""}};
constexpr stTemplateKey g_aTextKeys[] = {
    {"Enable", "0"}, {"ReadTextFromINI", ""}, {"Title", ""},    {"StyleID", "0"},
    {"Anchor", "1"}, {"AnchorX", "0"},        {"AnchorY", "0"}, {"Text", ""}};
constexpr stTemplateKey g_aNumKeys[] = {{"Enable", "0"},       {"Title", ""},         {"StyleID", "0"},
                                        {"ConsoleSizeX", "0"}, {"ConsoleSizeY", "0"}, {"Anchor", "1"},
                                        {"AnchorX", "0"},      {"AnchorY", "0"},      {"DigitSpacing", "0"},
                                        {"DigitPadding", "0"}, {"HideDigitPad", "1"}};
constexpr stTemplateKey g_aFlipKeys[] = {{"Enable", "0"}, {"Title", ""},    {"StyleID", "0"},
                                         {"Anchor", "1"}, {"AnchorX", "0"}, {"AnchorY", "0"},
                                         {"Text0", ""},   {"Text1", ""},    {"Text2", ""}};
constexpr stTemplateKey g_aPanelKeys[] = {{"Enable", "0"},  {"Hidden", "0"},       {"Title", ""},
                                          {"StyleID", "0"}, {"ConsoleSizeX", "0"}, {"ConsoleSizeY", "0"},
                                          {"Anchor", "1"},  {"AnchorX", "0"},      {"AnchorY", "0"}};

/// Reads each child of that name which is enabled into the record that fnNumber finds for its title.
template <class Pool, class Number, class Read>
bool ReadPool(const tinyxml2::XMLElement* pTemplate, const char* szElement,
              std::span<const stTemplateKey> keys, Pool& pool, Number fnNumber, Read fnRead) {
    if (!pTemplate) return false;
    for (auto* p = g_fnFirstElement(pTemplate, szElement); p; p = g_fnNextElement(p, szElement)) {
        const CTemplateAttributes attributes(*p, keys);
        if (attributes.m_fnWhole("Enable") == 0) continue;
        if (auto* pRecord = pool.m_fnUse(fnNumber(attributes.m_fnText("Title"))))
            fnRead(attributes, *pRecord);
    }
    return true;
}

template <class Pool, class Read>
bool ReadItems(const tinyxml2::XMLElement* pTemplate, const char* szElement,
               std::span<const stTemplateKey> keys, const NameMap& map, Pool& pool, Read fnRead) {
    const auto fnNumber = [&](const char* szTitle) { return g_fnFindBID(map, szTitle); };
    return ReadPool(pTemplate, szElement, keys, pool, fnNumber, [&](const auto& attributes, auto& st) {
        st.uStyleID = attributes.m_fnWhole("StyleID");
        st.iAnchor = static_cast<i32>(attributes.m_fnWhole("Anchor"));
        st.iAnchorX = attributes.m_fnScaled("AnchorX");
        st.iAnchorY = attributes.m_fnScaled("AnchorY");
        fnRead(attributes, st);
    });
}

void ReadTextStyle(const CTemplateAttributes& attributes, stTextStyle& st) {
    st.uFontID = attributes.m_fnWhole("FontID");
    st.fTextSize = g_fnNarrow(attributes.m_fnScaledSize("TextSize", "TextScale"));
    st.fTextSpacingX = attributes.m_fnFloat("TextSpacingX");
    st.fTextSpacingY = attributes.m_fnFloat("TextSpacingY");
}

void ReadPanelStyle(const CTemplateAttributes& attributes, stPanelStyle& st) {
    st.iWidth = g_fnCutToWhole(attributes.m_fnScaledSize("ConsoleSizeX", "ConsoleScaleX"));
    st.iHeight = g_fnCutToWhole(attributes.m_fnScaledSize("ConsoleSizeY", "ConsoleScaleY"));
}

/// A text from the settings file takes the place of the template's own, also where the file has none.
std::u16string TemplateText(const CTemplateAttributes& attributes) {
    const char* szSection = attributes.m_fnText("ReadTextFromINI");
    if (!*szSection) return attributes.m_fnWide("Text");
    char16_t wzText[g_uDataPathCapacity];
    g_fnReadIniText(szSection, wzText, g_uDataPathCapacity);
    return wzText;
}

template <class T> void ReadConsoleSize(const CTemplateAttributes& attributes, T& st) {
    st.iWidth = static_cast<i32>(attributes.m_fnWhole("ConsoleSizeX"));
    st.iHeight = static_cast<i32>(attributes.m_fnWhole("ConsoleSizeY"));
}

void ReadNumber(const CTemplateAttributes& attributes, stNumTemplate& st) {
    ReadConsoleSize(attributes, st);
    st.fDigitSpacing = attributes.m_fnFloat("DigitSpacing");
    st.uDigitPadding = attributes.m_fnWhole("DigitPadding");
    st.uHideDigitPad = attributes.m_fnWhole("HideDigitPad");
}

void ReadPanel(const CTemplateAttributes& attributes, stPanelTemplate& st) {
    st.bHidden = attributes.m_fnWhole("Hidden") != 0;
    ReadConsoleSize(attributes, st);
}

} // namespace

bool g_fnReadTextBoxStyles(const tinyxml2::XMLElement* pTemplate) {
    return ReadPool(pTemplate, "TextBoxStyle", g_aTextStyleKeys, g_stTemplates.poolTextBoxStyle,
                    g_fnTitleNumber, ReadTextStyle);
}

bool g_fnReadNumBoxStyles(const tinyxml2::XMLElement* pTemplate) {
    return ReadPool(pTemplate, "NumBoxStyle", g_aNumStyleKeys, g_stTemplates.poolNumBoxStyle, g_fnTitleNumber,
                    ReadTextStyle);
}

bool g_fnReadFlipBoxStyles(const tinyxml2::XMLElement* pTemplate) {
    return ReadPool(pTemplate, "FlipBoxStyle", g_aTextStyleKeys, g_stTemplates.poolFlipBoxStyle,
                    g_fnTitleNumber, ReadTextStyle);
}

bool g_fnReadPanelStyles(const tinyxml2::XMLElement* pTemplate) {
    return ReadPool(pTemplate, "PanelStyle", g_aPanelStyleKeys, g_stTemplates.poolPanelStyle, g_fnTitleNumber,
                    ReadPanelStyle);
}

bool g_fnReadTemplateStyles(const tinyxml2::XMLElement* pTemplate) {
    return g_fnReadTextBoxStyles(pTemplate) && g_fnReadNumBoxStyles(pTemplate) &&
           g_fnReadFlipBoxStyles(pTemplate) && g_fnReadPanelStyles(pTemplate);
}

bool g_fnReadTextBoxTemplates(const tinyxml2::XMLElement* pTemplate) {
    return ReadItems(pTemplate, "TextBox", g_aTextKeys, g_stNameMaps.mapTextBox, g_stTemplates.poolTextBox,
                     [](const CTemplateAttributes& attributes, stTextTemplate& st) {
                         st.wzText = TemplateText(attributes);
                     });
}

bool g_fnReadNumBoxTemplates(const tinyxml2::XMLElement* pTemplate) {
    return ReadItems(pTemplate, "NumBox", g_aNumKeys, g_stNameMaps.mapNumBox, g_stTemplates.poolNumBox,
                     ReadNumber);
}

bool g_fnReadFlipBoxTemplates(const tinyxml2::XMLElement* pTemplate) {
    return ReadItems(pTemplate, "FlipBox", g_aFlipKeys, g_stNameMaps.mapFlipBox, g_stTemplates.poolFlipBox,
                     [](const CTemplateAttributes& attributes, stFlipTemplate& st) {
                         constexpr const char* aszKeys[g_uFlipTexts] = {"Text0", "Text1", "Text2"};
                         for (u32 u = 0; u < g_uFlipTexts; ++u)
                             st.awzText[u] = attributes.m_fnWide(aszKeys[u]);
                     });
}

bool g_fnReadPanelTemplates(const tinyxml2::XMLElement* pTemplate) {
    return ReadItems(pTemplate, "Panel", g_aPanelKeys, g_stNameMaps.mapPanel, g_stTemplates.poolPanel,
                     ReadPanel);
}

bool g_fnReadTemplates(const tinyxml2::XMLElement* pTemplate) {
    return g_fnReadTextBoxTemplates(pTemplate) && g_fnReadNumBoxTemplates(pTemplate) &&
           g_fnReadFlipBoxTemplates(pTemplate) && g_fnReadPanelTemplates(pTemplate);
}

void g_fnClearTemplates() {
    g_stTemplates.poolTextBoxStyle.m_fnClear();
    g_stTemplates.poolFlipBoxStyle.m_fnClear();
    g_stTemplates.poolNumBoxStyle.m_fnClear();
    g_stTemplates.poolPanelStyle.m_fnClear();
    g_stTemplates.poolTextBox.m_fnClear();
    g_stTemplates.poolNumBox.m_fnClear();
    g_stTemplates.poolFlipBox.m_fnClear();
    g_stTemplates.poolPanel.m_fnClear();
    g_fnClearFontSlots();
}
