#include "config/items/kinds.h"

#include "config/items/item_graph.h"
#include "config/items/item_image.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_pie.h"
#include "config/items/item_text.h"

#include <utility>

namespace {

using CloneFunction = std::unique_ptr<CItemProperty_Base> (*)(const CItemProperty_Base&);

/// Copy of the complete object that the base belongs to.
template <class T> std::unique_ptr<CItemProperty_Base> Clone(const CItemProperty_Base& item) {
    auto pCopy = std::make_unique<T>(*static_cast<const T*>(item.m_pComplete));
    pCopy->m_fnAttachComplete();
    return pCopy;
}

/// Record classes by type code.
constexpr std::pair<u32, CloneFunction> g_aClones[] = {
    {ITEM_TEXTBOX, Clone<CItemProperty_TextBox>},     {ITEM_MEMO, Clone<CItemProperty_TextBox>},
    {ITEM_NUMBOX, Clone<CItemProperty_NumBox>},       {ITEM_MIXED, Clone<CItemProperty_NumBox>},
    {ITEM_PANEL, Clone<CItemProperty_Panel>},         {ITEM_IMAGE, Clone<CItemProperty_ImgBox>},
    {ITEM_LINEGRAPH, Clone<CItemProperty_LineGraph>}, {ITEM_PIECHART, Clone<CItemProperty_PieChart>},
};

CloneFunction CloneOf(u32 uType) {
    for (const auto& [uCode, fnClone] : g_aClones)
        if (uCode == uType) return fnClone;
    return nullptr;
}

/// The complete record, if a copy of its type code is of that class.
template <class T> const T* As(const CItemProperty_Base* pItem) {
    if (!pItem || CloneOf(pItem->m_uItemType) != Clone<T>) return nullptr;
    return static_cast<const T*>(pItem->m_pComplete);
}

} // namespace

bool g_fnRegisterItemProperty(const CItemProperty_Base* pItem) {
    const CloneFunction fnClone = pItem ? CloneOf(pItem->m_uItemType) : nullptr;
    if (!fnClone || g_fnIsItemNameTaken(pItem->m_szItemName)) return false;
    return g_fnEnterItem(fnClone(*pItem));
}

const CItemProperty_NumBox* g_fnAsNumBox(const CItemProperty_Base* pItem) {
    return As<CItemProperty_NumBox>(pItem);
}
const CItemProperty_TextBox* g_fnAsTextBox(const CItemProperty_Base* pItem) {
    return As<CItemProperty_TextBox>(pItem);
}
const CItemProperty_Panel* g_fnAsPanel(const CItemProperty_Base* pItem) {
    return As<CItemProperty_Panel>(pItem);
}
const CItemProperty_ImgBox* g_fnAsImgBox(const CItemProperty_Base* pItem) {
    return As<CItemProperty_ImgBox>(pItem);
}
const CItemProperty_LineGraph* g_fnAsLineGraph(const CItemProperty_Base* pItem) {
    return As<CItemProperty_LineGraph>(pItem);
}
const CItemProperty_PieChart* g_fnAsPieChart(const CItemProperty_Base* pItem) {
    return As<CItemProperty_PieChart>(pItem);
}

const char* g_fnItemDataName(const CItemProperty_Base& item) {
    if (const auto* pNumber = g_fnAsNumBox(&item)) return pNumber->m_szDataFullName;
    if (const auto* pGraph = g_fnAsLineGraph(&item)) return pGraph->m_szDataFullName;
    if (const auto* pChart = g_fnAsPieChart(&item)) return pChart->m_szDataFullName;
    return nullptr;
}

stItemAlign g_fnItemAlign(const CItemProperty_NumBox& item) {
    return {static_cast<u32>(item.m_iContentAnchor), item.m_iContentAnchorX, item.m_iContentAnchorY,
            item.m_fTextSpacingX};
}
