#pragma once
// Which controls an item of the custom layout is made of, and how they hang together.
#include "config/items/item_property.h"
#include "config/make/text_records.h"

#include <map>
#include <span>
#include <vector>

/// One per item: its frame panel and the controls that hang in it, in creation order.
struct stAssembleInfo {
    u64 u64ItemId = 0;
    char m_szItemName[g_uItemNameBytes] = "";
    CItemProperty_Base* pItem = nullptr; ///< of g_mapItemById
    u64 u64FramePanelLB_ID = 0;
    std::vector<u64> listTextBox, listNumBox, listPanel, listImgBox, listLineGraph, listPieChart;
};

/// Records by item id, for as long as the layout stands.
extern std::map<u64, stAssembleInfo> g_mapAssembleInfo;

/// False, with a line in the log, if a record of that id is there already, which then stays.
bool g_fnInsertAssembleInfo(const stAssembleInfo& stInfo);

/// Hangs the texts from the root, then for each record in list order the frame from the root, or from its
/// owner's frame, and its controls from the frame. What is missing is reported and passed over; the item of a
/// missing owner hangs from nothing.
void g_fnAttachByAssembly(std::span<const stTextInit> texts, std::span<const stAssembleInfo> infos);
