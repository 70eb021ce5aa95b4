#pragma once
// The custom style: the profile itself lists every item, and each becomes a frame panel and its controls.
#include "config/custom/assemble_info.h"
#include "config/items/item_map.h"
#include "config/make/graph_records.h"
#include "config/make/image_records.h"
#include "config/make/number_records.h"
#include "config/make/panel_records.h"
#include "config/make/profile_fonts.h"
#include "config/make/text_records.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class CControl;

/// What a creation makes controls of; it dies with the creation.
struct stCustomInit {
    std::vector<stTextInit> texts;
    std::vector<stNumInit> numbers;
    std::vector<stPanelInit> panels; ///< of each item the frame, then its own
    std::vector<stImageInit> images;
    std::vector<stLineGraphInit> lineGraphs;
    std::vector<stPieChartInit> pieCharts;
    std::vector<stAssembleInfo> infos;
    std::vector<stDynamicFont> fonts;
};

using ItemMap = std::map<std::string, std::unique_ptr<CItemProperty_Base>, std::less<>>;

/// From items, in name order, to init records, the fonts that they need, the names of the controls to come
/// and g_mapAssembleInfo. Bad items are reported and dropped. The records point into the items.
void g_fnInitItemByCustomStyle(const ItemMap& items, stCustomInit& stInit);

/// The whole chain of the style, from the open documents to the update lists. False if a step fails.
bool g_fnCreateCustomLayout();
/// Reads all items of a profile's list; null holds none.
void g_fnReadCustomItems(const tinyxml2::XMLElement* pInfo);
/// Makes the controls of the items that were read. False if one can't be initialised or a font not be made.
bool g_fnCreateCustomControls();

/// Line graphs and pie charts of the layout from bottom to top: by "ZIndex", then by place under pInfo.
std::vector<CControl*> g_fnColorListOrder(const tinyxml2::XMLElement* pInfo);
/// That order as the last creation worked it out; for the batcher that draws it.
extern std::vector<CControl*> g_listColorOrder;
