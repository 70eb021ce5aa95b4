#include "config/items/item_panel.h"

#include "base/log.h"
#include "config/items/item_reader.h"
#include "config/items/item_report.h"

namespace {

void ApplyOwnKeys(const tinyxml2::XMLElement& element, CItemProperty_Panel& item) {
    SettingTable table;
    g_fnAddPanelSettings(table, item);
    g_fnApplyXmlSettings(&element, table);
    g_fnFreeSettings(table);
}

constexpr const char* g_aszPanelTypes[] = {"PANEL_TYPE_INVISIBLE\n", "PANEL_TYPE_GELLOPHANE\n",
                                           "PANEL_TYPE_FROSTED\n"};

} // namespace

CItemProperty_Panel::CItemProperty_Panel() {
    m_pComplete = this;
    m_fnSetType(ITEM_PANEL);
}

void CItemProperty_Panel::m_fnAttachComplete() { m_pComplete = this; }

void CItemProperty_Panel::m_fnPrintData() const {
    CItemProperty_Base::m_fnPrintData();
    g_fnPrintColor("PANEL_COLOR:", m_u8PanelR, m_u8PanelG, m_u8PanelB, m_u8PanelA);
    g_fnLog("\n");
    g_fnLog("PANEL_TYPE: ");
    if (m_uPanelType < std::size(g_aszPanelTypes)) g_fnLog("%s", g_aszPanelTypes[m_uPanelType]);
    g_fnLog("PANEL_SCATTER: %i\n", static_cast<i32>(m_uPanelScatter));
}

bool g_fnReadPanelItems(const tinyxml2::XMLElement* pParent) {
    g_fnReadItems<CItemProperty_Panel>(pParent, g_fnItemType(ITEM_PANEL).szElement,
                                       [](const auto& element, auto& item) {
                                           ApplyOwnKeys(element, item);
                                           g_fnValidatePanel(item);
                                           return true;
                                       });
    return true;
}

void g_fnCheckPanelOpacity(const CItemProperty_Base& item, u32 uPercent) {
    if (uPercent > 100) g_fnReportError("item \"%s\" m_u8PanelOpacity", item.m_szItemName);
}

void g_fnValidatePanel(CItemProperty_Panel& item) {
    item.m_u8PanelOpacity = static_cast<u8>(g_fnAlphaToPercent(item.m_u8PanelOpacity));
    g_fnCheckPanelOpacity(item, item.m_u8PanelOpacity);
    // KEEP(profiles): reported, and the value stays.
    if (item.m_uPanelScatter > g_uScatterMax)
        g_fnReportError("item \"%s\" m_uPanelScatter", item.m_szItemName);
    item.m_u8PanelA = g_fnPercentToAlpha(item.m_u8PanelOpacity);
}
