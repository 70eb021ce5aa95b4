#include "config/custom/custom_layout.h"

#include "base/log.h"
#include "config/items/item_graph.h"
#include "config/items/item_image.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_pie.h"
#include "config/items/item_text.h"
#include "config/make/video_boxes.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_panel_keys.h"
#include "config/profile/profile_switches.h"
#include "controls/link_controls.h"
#include "draw/creation_table.h"
#include "shared/process_records.h"

std::vector<CControl*> g_listColorOrder;

namespace {

/// Number in the names of the font files of layouts with own fonts.
constexpr u32 g_uFontFileStyle = 2;

/// The profile's own font files come before the shared ones. A flavour without fonts writes nothing.
bool MakeFonts(const std::vector<stDynamicFont>& fonts) {
    const stFontFilePlace aPlaces[] = {{g_wzProfileFolder, g_uFontFileStyle},
                                       {u"Profiles\\Default", g_uFontFileStyle}};
    const bool bMade = !g_stCreationTable.m_fnCreateFont || g_fnMakeDynamicFonts(fonts, aPlaces);
    g_fnEndFontAssembly();
    return bMade;
}

bool CreateGraphs(const stCustomInit& st) {
    if (!g_fnCreateLineGraphs(st.lineGraphs)) return false;
    g_fnLog("lstPieChartInit size: %d", static_cast<i32>(st.pieCharts.size()));
    return g_fnCreatePieCharts(st.pieCharts);
}

} // namespace

void g_fnReadCustomItems(const tinyxml2::XMLElement* pInfo) {
    if (!pInfo) return;
    g_fnReadTextBoxItems(pInfo, false);
    g_fnReadTextBoxItems(pInfo, true);
    g_fnReadNumBoxItems(pInfo);
    g_fnReadPanelItems(pInfo);
    g_fnReadImgBoxItems(pInfo);
    g_fnReadLineGraphItems(pInfo);
    g_fnReadPieChartItems(pInfo);
}

bool g_fnCreateCustomControls() {
    stCustomInit st;
    g_fnInitItemByCustomStyle(g_mapItemByName, st);
    if (!MakeFonts(st.fonts)) return false;
    if (!g_fnCreateTextBoxes(st.texts) || !g_fnCreateNumBoxes(st.numbers) || !g_fnCreatePanels(st.panels))
        return false;
    g_fnCreateImages(st.images);
    if (!CreateGraphs(st)) return false;
    g_fnCreatePhoto();
    g_fnCreateShutterImage();
    g_fnCreateVideoBoxes();
    g_fnAttachByAssembly(st.texts, st.infos);
    return true;
}

bool g_fnCreateCustomLayout() {
    g_fnReadProfileSwitches();
    g_fnReadProfileBatch();
    g_fnClearItems();
    g_mapAssembleInfo.clear();
    g_fnReadCustomItems(g_fnProfileInfo());
    if (!g_fnCreateCustomControls()) return false;
    g_fnLinkControls();
    g_listColorOrder = g_fnColorListOrder(g_fnProfileInfo());
    return true;
}
