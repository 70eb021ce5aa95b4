#pragma once
// Panel items: the element "Panel".
#include "config/items/item_property.h"
#include "config/make/panel_look.h"

class CItemProperty_Panel : public virtual CItemProperty_Base, public stPanelLook {
  public:
    CItemProperty_Panel();
    void m_fnAttachComplete() override;
    void m_fnPrintData() const override;
};

/// Registers each child "Panel". Always true.
bool g_fnReadPanelItems(const tinyxml2::XMLElement* pParent);

/// Works out the percentage and reports what is wrong; a panel is kept in any case.
void g_fnValidatePanel(CItemProperty_Panel& item);
/// Reports a percentage above 100; the item is kept.
void g_fnCheckPanelOpacity(const CItemProperty_Base& item, u32 uPercent);
