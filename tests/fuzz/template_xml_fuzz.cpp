// The input once as a document, once as the attribute values of templates and groups, since few changes of a
// text leave it well formed. Both are read as templates, made into records, and walked as a group over real
// panels.
#include "config/fixed/attribute_value.h"
#include "config/fixed/group_order.h"
#include "config/fixed/group_walker.h"
#include "config/fixed/name_maps.h"
#include "config/fixed/template_fonts.h"
#include "config/fixed/template_init.h"
#include "config/fixed/variables.h"
#include "controls/control_ids.h"
#include "tests/fuzz/safe_division.h"
#include "tests/unit/controls/recording_flavour.h"

#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string>

#include <tinyxml2.h>

namespace {

constexpr u32 c_uItems = 5, c_uCopies = 3, c_uAttributeMost = 255;
constexpr const char* c_aszNames[c_uItems] = {"A", "B", "C", "D", "X_GROUP_EXTENSION_FIRST_TITLE_PANELID"};

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

void EnterNames() {
    for (NameMap* p : {&g_stNameMaps.mapTextBox, &g_stNameMaps.mapNumBox, &g_stNameMaps.mapFlipBox,
                       &g_stNameMaps.mapPanel})
        for (u32 u = 0; u < c_uItems; ++u) (*p)[c_aszNames[u]] = u;
    g_listGroupExtension = {{"PUMP", 0, 0}, {"PUMP", 0, 2}, {"FLOW", 1, 0}};
}

/// A manager with a panel for each item's instance.
void MakePanels() {
    if (!g_apOSDManager[0]) {
        recording::Install();
        g_apOSDManager[0] = new COSDManager;
        Require(g_apOSDManager[0]->m_fnInitialize());
    } else {
        Require(g_apOSDManager[0]->m_fnStartOver());
    }
    g_fnSelectManager();
    g_fnClearControlIds();
    for (u32 u = 0; u < c_uItems * c_uCopies; ++u) {
        auto* p = new recording::CPanel;
        p->m_fnSetGeometry(static_cast<f32>(u), 10);
        Require(g_fnRegisterXCtrl(IdPanel, g_fnMakeLB_ID(u % c_uCopies, u / c_uCopies), p) == 1);
    }
}

void CheckPlaces() {
    for (u32 u = 0; u < c_uItems * c_uCopies; ++u) {
        CControl* const pControl = g_fnFindCtrl(u % c_uCopies, u / c_uCopies, g_stPanelIds, g_ppPanel);
        f32 x, y;
        pControl->m_fnGetPosition(&x, &y, nullptr);
        Require(std::isfinite(x) && std::isfinite(y));
        u32 uAbove = 0;
        for (CControl* p = pControl; p; p = g_pOSDManager->m_fnGetParent(p))
            Require(++uAbove <= c_uItems * c_uCopies);
    }
}

void CheckRecords() {
    for (u32 uBID = 0; uBID < c_uItems; ++uBID) {
        const stItemInstance st{1, uBID};
        stTextInit stText{};
        stNumInit stNum{};
        stFlipInit stFlip{};
        stPanelInit stPanel{};
        if (g_fnMakeTextInit(st, {}, true, stText))
            Require(std::isfinite(stText.stLook.m_fTextSize) &&
                    std::isfinite(stText.stLook.m_fTextSpacingX) && stText.wzText);
        if (g_fnMakeNumInit(st, {}, true, stNum))
            Require(std::isfinite(stNum.stLook.m_fTextSize) && std::isfinite(stNum.stLook.m_fTextSpacingX));
        if (g_fnMakeFlipInit(st, {}, true, stFlip)) Require(stFlip.awzText[0] && stFlip.awzText[2]);
        if (g_fnMakePanelInit(st, {}, stPanel)) Require(stPanel.u64LB_ID == g_fnMakeLB_ID(1, uBID));
    }
    for (const stFontRecord& st : g_stFontSlots.aRecord)
        Require(std::char_traits<char16_t>::find(st.m_wzFontName, std::size(st.m_wzFontName), u'\0') !=
                nullptr);
}

void ReadTemplates(const tinyxml2::XMLElement* pRoot) {
    g_fnRegisterVariables();
    g_fnReadPresetVariables(pRoot);
    g_fnReadProfileVariables(pRoot);
    g_fnReadFontScale(pRoot);
    g_fnClearTemplates();
    const bool bRoot = pRoot != nullptr;
    Require(g_fnReadFontSlots(pRoot) == bRoot && g_fnReadTemplateStyles(pRoot) == bRoot);
    Require(g_fnReadTemplates(pRoot) == bRoot);
    CheckRecords();
}

void MakeExpressionsSafe(tinyxml2::XMLElement* pElement) {
    for (const char* szKey : {"Condition", "StartIndex", "EndIndex"}) {
        if (!pElement->Attribute(szKey)) continue;
        std::string szText = std::string(pElement->Attribute(szKey)).substr(0, c_uAttributeMost);
        MakeDivisionsSafe(szText);
        pElement->SetAttribute(szKey, szText.c_str());
    }
    for (auto* p = pElement->FirstChildElement(); p; p = p->NextSiblingElement()) MakeExpressionsSafe(p);
}

void Walk(tinyxml2::XMLElement* pRoot) {
    if (pRoot) MakeExpressionsSafe(pRoot);
    MakePanels();
    Require(g_fnWalkWholeGroup(pRoot));
    CheckPlaces();
    g_fnReorderGroup(pRoot, [](const char* szId) { return static_cast<i32>(*szId % 7) - 1; });
    Require(g_fnWalkWholeGroup(pRoot));
    CheckPlaces();
}

constexpr const char* c_aszElements[] = {"TextBoxStyle",
                                         "NumBoxStyle",
                                         "FlipBoxStyle",
                                         "PanelStyle",
                                         "TextBox",
                                         "NumBox",
                                         "FlipBox",
                                         "Panel",
                                         "Font",
                                         "Variable",
                                         "A",
                                         "I",
                                         "R",
                                         "C",
                                         "T"};
constexpr const char* c_aszKeys[] = {
    "ID",       "Title",     "Name",         "Value",         "StyleID",      "FontID",
    "TextSize", "TextScale", "ConsoleSizeX", "ConsoleScaleX", "AnchorX",      "AnchorY",
    "Anchor",   "Text",      "Text0",        "FontName",      "FontTexW",     "FontLayoutX",
    "Dynamic",  "Condition", "EndIndex",     "StartIndex",    "DigitSpacing", "FontScale"};

/// Values end at line ends of the input; keys go round until there are no more values. Every third element
/// begins a new branch.
void Fill(tinyxml2::XMLElement* pRoot, const std::string& szInput) {
    tinyxml2::XMLElement* pElement = pRoot;
    std::size_t uValue = 0;
    for (std::size_t uFrom = 0; uFrom <= szInput.size(); ++uValue) {
        const std::size_t uTo = std::min(szInput.find('\n', uFrom), szInput.size());
        if (uValue % 4 == 0) {
            tinyxml2::XMLElement* pParent = uValue / 4 % 3 == 0 ? pRoot : pElement;
            pElement = pParent->InsertNewChildElement(c_aszElements[uValue / 4 % std::size(c_aszElements)]);
            pElement->SetAttribute("Enable", 1);
        }
        pElement->SetAttribute(c_aszKeys[uValue % std::size(c_aszKeys)],
                               szInput.substr(uFrom, uTo - uFrom).c_str());
        uFrom = uTo + 1;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    EnterNames();
    tinyxml2::XMLDocument asText, asValues;
    asText.Parse(reinterpret_cast<const char*>(pData), uBytes);
    ReadTemplates(asText.RootElement());
    Walk(asText.RootElement());
    tinyxml2::XMLElement* const pRoot = asValues.NewElement("Template");
    asValues.InsertEndChild(pRoot);
    Fill(pRoot, std::string(reinterpret_cast<const char*>(pData), uBytes));
    ReadTemplates(pRoot);
    Walk(pRoot);
    return 0;
}
