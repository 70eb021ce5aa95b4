#pragma once
// Panel items: the element "Panel".
#include "config/items/item_property.h"

class CItemProperty_Panel : public virtual CItemProperty_Base {
  public:
    CItemProperty_Panel();
    void m_fnAttachComplete() override;
    void m_fnPrintData() const override;

    u8 m_u8PanelR = 0, m_u8PanelG = 0, m_u8PanelB = 0, m_u8PanelA = 0;
    u8 m_u8PanelOpacity = 0;  ///< percent
    u32 m_uPanelType = 0;     ///< 0 layout only, 1 flat, 2 frosted
    u32 m_uPanelScatter = 30; ///< blur diameter; kept as written, users hold it to 100
};

/// Registers each child "Panel". Always true.
bool g_fnReadPanelItems(const tinyxml2::XMLElement* pParent);

/// Works out the percentage and reports what is wrong; a panel is kept in any case.
void g_fnValidatePanel(CItemProperty_Panel& item);
/// Reports a percentage above 100; the item is kept.
void g_fnCheckPanelOpacity(const CItemProperty_Base& item, u32 uPercent);
