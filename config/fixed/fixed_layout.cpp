#include "config/fixed/fixed_layout.h"

#include "base/layout_style.h"
#include "base/log.h"
#include "config/chain_report.h"
#include "config/fixed/attribute_value.h"
#include "config/fixed/classic_grid.h"
#include "config/fixed/group_walker.h"
#include "config/fixed/info_frame.h"
#include "config/fixed/info_place.h"
#include "config/fixed/language.h"
#include "config/fixed/row_links.h"
#include "config/fixed/style_captions.h"
#include "config/fixed/style_enable.h"
#include "config/fixed/style_records.h"
#include "config/fixed/style_rows.h"
#include "config/fixed/template_fonts.h"
#include "config/fixed/template_records.h"
#include "config/fixed/time_row.h"
#include "config/fixed/variables.h"
#include "config/make/flip_records.h"
#include "config/make/image_records.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_panel_keys.h"
#include "config/profile/profile_switches.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"
#include "controls/link_controls.h"
#include "draw/creation_table.h"
#include "shared/process_records.h"

#include <algorithm>

namespace {

/// The steps whose failure ends a creation, by the code that the user sees.
enum eChainStep : i32 { STEP_FONTS = 1, STEP_ITEMS = 2, STEP_ASSEMBLY = 3, STEP_INFO_FRAME = 4 };

/// What a creation knows of its style.
struct stChain {
    const char* szName; ///< of the creation, in reports
    const stStyleItems& style;
    void (*fnEnable)();
    bool bGrid; ///< rows stand in the blocks of a grid
    stClassicGrid stGrid = {};

    const stClassicGrid* Grid() const { return bGrid ? &stGrid : nullptr; }
};

stFontFilePlace FontPlace() { return {g_wzProfileFolder, g_uLayoutStyle}; }

void Demand(bool bDone, eChainStep eStep) {
    if (!bDone) throw static_cast<i32>(eStep);
}

// --- fonts and items ---------------------------------------------------------------------------------------

/// A flavour without fonts writes nothing.
bool MakeFonts(const stChain& chain) {
    const FontOverride fnFace = chain.bGrid ? g_fnOverrideLanguageFontClassic : g_fnOverrideLanguageFontRV5;
    return !g_stCreationTable.m_fnCreateFont ||
           g_fnMakeTemplateFonts(g_stProfile.pTemplate, fnFace, FontPlace());
}

bool ReadSettings() {
    g_fnReadProfileSwitches();
    if (!g_fnReadProfileCardOrder()) return false;
    g_fnReadProfileBatch();
    g_fnReadProfileTextStyles();
    g_fnReadFontScale(g_fnProfileInfo());
    return true;
}

/// Rows of sensors that no group names stand where the extension is.
void EnterSensors(const stStyleItems& style) {
    g_listGroupExtension.clear();
    for (const stSensorRow& st : g_stDisplay.listSensorRows) {
        g_fnEnterSensorNames(style, st.szBaseName, st.uOrdinal);
        g_listGroupExtension.push_back({st.szBaseName, st.uOrdinal, st.uGroup});
    }
    g_fnDropNamedExtensions(g_stProfile.pGroup, style.szPrefix, g_listGroupExtension);
}

void CountDisplay() {
    g_stVariables.uGPUNum = g_stDisplay.uCards;
    g_stVariables.uCPUNum = g_stDisplay.uCpus;
}

void MakeGrid(stChain& chain) {
    g_stVariables.iAlign2X = g_stVariables.iAlign2Y = 0;
    if (!chain.bGrid) return;
    chain.stGrid = g_fnMakeClassicGrid(g_fnCountClassicRows(g_stDisplay.uCards, g_stDisplay.uCpus),
                                       g_stFontScale.iPercent);
    g_stVariables.iAlign2Y = chain.stGrid.iThirdY;
}

bool ReadTemplates(const stStyleItems& style) {
    const tinyxml2::XMLElement* const pTemplate = g_stProfile.pTemplate;
    if (!g_fnReadTemplateStyles(pTemplate) || !g_fnReadTemplates(pTemplate)) return false;
    g_fnPrepareSensorRows(style);
    g_fnApplyFixedCaptions();
    g_fnApplyLanguageStrings();
    g_fnApplyDisplayTexts(style, g_fnProfileInfo());
    return true;
}

bool ReadItems(stChain& chain) {
    if (!ReadSettings()) return false;
    g_fnEnterStyleNames(chain.style);
    if (!g_fnReadProfileInfoBlock()) return false;
    CountDisplay();
    EnterSensors(chain.style);
    chain.fnEnable();
    MakeGrid(chain);
    if (!ReadTemplates(chain.style)) return false;
    g_fnApplyDisplayOrder(chain.style, g_fnProfileInfo(), g_fnProfileGroup());
    return true;
}

// --- assembly ----------------------------------------------------------------------------------------------

bool Assemble(const stChain& chain) {
    const stStyleItems& style = chain.style;
    if (g_stCreationTable.m_fnCreateFont && !g_fnMakeSettingsFonts(style, FontPlace())) return false;
    if (!g_fnCreateTextBoxes(g_fnMakeStyleTexts(style, chain.Grid()).records) ||
        !g_fnCreateNumBoxes(g_fnMakeStyleNumbers(style, chain.Grid())) ||
        !g_fnCreateFlipBoxes(g_fnMakeStyleFlips(style)))
        return false;
    g_fnCreatePhoto();
    g_fnCreateShutterImage();
    return g_fnCreatePanels(g_fnMakeStylePanels(style, chain.Grid()));
}

/// The clock and the row of the picture's size are the only rows of RV5 with several numbers.
void EndStep() {
    g_fnJoinTimeRow();
    g_stInfoPlace.iSizeRowAlignRV5 =
        g_fnRowAlign(g_fnItemBID(g_stRV5Items, eItem::Number, "RESOLUTION", "VALUE1"));
}

/// Numbers and further texts of a word, one link each: a link has room for one.
void AddLinks(const stStyleItems& style, const stStyleItem& title, std::vector<stRowLink>& links) {
    const auto Find = [&](eItem eKind, const char* szRole) {
        return g_fnItemBID(style, eKind, title.szWord, szRole);
    };
    u32 uData = Find(eItem::Panel, style.szValuePanel);
    if (uData == g_uNoBID) uData = Find(eItem::Panel, "VALUE");
    links.push_back({title.uBID, Find(eItem::Text, "TITLE"), uData, Find(eItem::Number, "VALUE"),
                     Find(eItem::Text, "UNIT")});
    for (const char* szRole : {"VALUE", "VALUE1", "VALUE2", "VALUE3"}) {
        const u32 uNumber = Find(eItem::Number, szRole), uText = Find(eItem::Text, szRole);
        if (uNumber != g_uNoBID || uText != g_uNoBID)
            links.push_back({g_uNoBID, g_uNoBID, uData, uNumber, uText});
    }
}

/// Every row that has a panel for its title; those of sensors are the extension's, so many numbers on.
std::vector<stRowLink> MakeLinks(const stStyleItems& style) {
    std::vector<stRowLink> links, extension;
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        if (item.eKind != eItem::Panel || item.szRole != std::string_view("TITLE")) return;
        AddLinks(style, item, item.szWord == std::string_view(g_szExtensionWord) ? extension : links);
    });
    const auto Shift = [](u32 uBID, u32 uBy) { return uBID == g_uNoBID ? uBID : uBID + uBy; };
    for (const stSensorRow& st : g_stDisplay.listSensorRows)
        for (const stRowLink& link : extension)
            links.push_back({Shift(link.uTitlePanel, st.uOrdinal), Shift(link.uTitleText, st.uOrdinal),
                             Shift(link.uDataPanel, st.uOrdinal), Shift(link.uNumber, st.uOrdinal),
                             Shift(link.uUnitText, st.uOrdinal)});
    return links;
}

/// From controls to a tree, and rows that have no room below into columns beside.
void Arrange(const stChain& chain) {
    g_fnLinkControls();
    g_fnWalkWholeGroup(g_stProfile.pGroup);
    g_fnLinkRows(MakeLinks(chain.style));
    const u32 uFooter = g_fnItemBID(chain.style, eItem::Panel, "POWERED_BY_ORVIN_DECK", "TITLE");
    CControl* const pFooter =
        chain.bGrid ? g_fnFindCtrlById(g_fnMakeLB_ID(0, uFooter), g_fnKind<KIND_PANEL>()) : nullptr;
    g_fnWrapInfoRows(chain.bGrid ? static_cast<f32>(chain.stGrid.iThirdY) : 0, pFooter);
}

void RunSteps(stChain& chain) {
    g_fnClearTemplates();
    g_fnReadProfileVariables(g_fnProfileInfo());
    Demand(MakeFonts(chain), STEP_FONTS);
    Demand(ReadItems(chain), STEP_ITEMS);
    Demand(Assemble(chain), STEP_ASSEMBLY);
    if (!chain.bGrid) EndStep();
    Arrange(chain);
    Demand(g_fnFrameInfo(chain.style), STEP_INFO_FRAME);
}

bool Run(stChain chain) {
    try {
        RunSteps(chain);
        return true;
    } catch (i32 iStep) {
        g_fnLog("%s - step %i\n", chain.szName, iStep);
        g_fnReportChainFailure(chain.szName, iStep);
    }
    return false;
}

} // namespace

bool g_fnCreate_Tavo_ResourceByClassicStyle() {
    return Run({"g_fnCreate_Tavo_ResourceByClassicStyle", g_stClassicItems, g_fnEnableClassicItems, true});
}

bool g_fnCreate_Tavo_ResourceByRV5Style() {
    return Run({"g_fnCreate_Tavo_ResourceByRV5Style", g_stRV5Items, g_fnEnableRV5Items, false});
}
