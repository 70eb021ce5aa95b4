// From the items of the custom style to what its controls are made of.
#include "base/log.h"
#include "config/custom/custom_layout.h"
#include "config/items/interner.h"
#include "config/items/item_graph.h"
#include "config/items/item_image.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_pie.h"
#include "config/items/item_text.h"
#include "config/items/kinds.h"
#include "config/make/character_sets.h"
#include "config/profile/profile_panel_keys.h"
#include "controls/control_ids.h"
#include "controls/panel.h"
#include "controls/text_file.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace {

/// An item on its way: where its controls go and what they share.
struct stBuild {
    const CItemProperty_Base& item;
    u32 uFont;
    stCustomInit& stInit;
    stAssembleInfo stInfo;
};

/// Enters the name of a control under the letter of its kind. False if another control has it already; that
/// one keeps it, and with it the id.
bool EnterName(char cLetter, const std::string& szName, u64& u64LB_ID) {
    u64LB_ID = g_fnInternName(szName.c_str());
    return g_fnControlNames(cLetter)->try_emplace(szName, u64LB_ID).second;
}

/// Gives a control its name and id. A second one of that name goes into the init list all the same, where its
/// registration is refused and logged, but it is no part of the item.
u64 Claim(stBuild& st, char cLetter, const char* szSuffix, std::vector<u64>& ids) {
    u64 u64LB_ID;
    if (EnterName(cLetter, g_fnItemControlName(st.item, szSuffix), u64LB_ID)) ids.push_back(u64LB_ID);
    return u64LB_ID;
}

// --- records -----------------------------------------------------------------------------------------------

i32 Length(u32 u) { return static_cast<i32>(u); }

/// What the records of all kinds take from the content of an item.
template <class Record> void TakeContent(Record& st, const CItemProperty_Base& item) {
    st.iAnchorCode = item.m_iContentAnchor;
    st.iX = item.m_iContentAnchorX;
    st.iY = item.m_iContentAnchorY;
    st.iWidth = Length(item.m_uContentSizeW);
    st.iHeight = Length(item.m_uContentSizeH);
}

/// The letters of texts and numbers.
template <class Record> void TakeLetters(Record& st, const stTextLook& stLook, u32 uFont) {
    st.uFont = uFont;
    st.stLook = stLook;
    st.stLook.m_bShadow = g_stLooks.bTextShadow;
}

stTextInit TextRecord(const CItemProperty_TextBox& item, u32 uFont) {
    stTextInit st{};
    const bool bMemo = item.m_bMemoFlagA != 0, bNoWidth = item.m_uContentSizeW == 0;
    TakeContent(st, item);
    TakeLetters(st, item, uFont);
    // A text box with a width cuts its text off there; a memo wraps.
    st.bAutoSize = !bMemo || bNoWidth;
    st.bFitToText = bMemo || bNoWidth;
    st.bMemo = bMemo && *item.m_wzText;
    st.wzText = item.m_wzText;
    return st;
}

stTextInit SeparatorRecord(const CItemProperty_NumBox& item, u32 uFont, const char16_t* wzText) {
    stTextInit st{};
    TakeContent(st, item);
    TakeLetters(st, item, uFont);
    st.bAutoSize = st.bFitToText = true;
    st.wzText = wzText;
    return st;
}

stNumInit NumberRecord(const CItemProperty_NumBox& item, u32 uFont) {
    stNumInit st{};
    TakeContent(st, item);
    TakeLetters(st, item, uFont);
    st.uHidePad = 1;
    st.uDataKind = g_uDataKindNone;
    return st;
}

stPanelInit FrameRecord(const CItemProperty_Base& item) {
    stPanelInit st{};
    st.iAnchorCode = item.m_iFrameAnchor;
    st.iX = item.m_iFrameAnchorX;
    st.iY = item.m_iFrameAnchorY;
    st.iWidth = Length(item.m_uFrameSizeW);
    st.iHeight = Length(item.m_uFrameSizeH);
    st.m_uPanelType = PANEL_TYPE_GELLOPHANE; // of no colour and alpha 0
    return st;
}

// --- controls by type --------------------------------------------------------------------------------------

void BuildText(stBuild& st) {
    stTextInit record = TextRecord(*g_fnAsTextBox(&st.item), st.uFont);
    record.u64LB_ID = Claim(st, 'T', "", st.stInfo.listTextBox);
    st.stInit.texts.push_back(record);
}

void BuildNumberPart(stBuild& st, const char* szSuffix) {
    stNumInit record = NumberRecord(*g_fnAsNumBox(&st.item), st.uFont);
    record.u64LB_ID = Claim(st, 'N', szSuffix, st.stInfo.listNumBox);
    st.stInit.numbers.push_back(record);
}

void BuildSeparator(stBuild& st, const char* szSuffix, const char16_t* wzText) {
    stTextInit record = SeparatorRecord(*g_fnAsNumBox(&st.item), st.uFont, wzText);
    record.u64LB_ID = Claim(st, 'T', szSuffix, st.stInfo.listTextBox);
    st.stInit.texts.push_back(record);
}

void BuildNumber(stBuild& st) { BuildNumberPart(st, ""); }

bool IsResolution(const CItemProperty_Base& item) {
    return std::string_view(g_fnItemDataName(item)) == "RESOLUTION";
}

void BuildMixed(stBuild& st) {
    if (IsResolution(st.item)) {
        BuildSeparator(st, "", u"x");
        for (const char* szSuffix : {"[0]", "[1]"}) BuildNumberPart(st, szSuffix);
        return;
    }
    for (const char* szSuffix : {"[0]", "[1]"}) BuildSeparator(st, szSuffix, u":");
    for (const char* szSuffix : {"[0]", "[1]", "[2]"}) BuildNumberPart(st, szSuffix);
}

void BuildPanel(stBuild& st) {
    const CItemProperty_Panel& item = *g_fnAsPanel(&st.item);
    stPanelInit record{};
    TakeContent(record, item);
    static_cast<stPanelLook&>(record) = item;
    record.u64LB_ID = Claim(st, 'P', "", st.stInfo.listPanel);
    st.stInit.panels.push_back(record);
}

void BuildImage(stBuild& st) {
    const CItemProperty_ImgBox& item = *g_fnAsImgBox(&st.item);
    stImageInit record{};
    TakeContent(record, item);
    static_cast<stColor&>(record) = {255, 255, 255, item.m_u8ImageA};
    g_fnResolveProfilePath(record.wzPath, item.m_wzImageFilename);
    record.bTilted = item.m_fTiltDegree != 0;
    record.fTiltDegree = item.m_fTiltDegree;
    record.u64LB_ID = Claim(st, 'I', "", st.stInfo.listImgBox);
    st.stInit.images.push_back(record);
}

void BuildLineGraph(stBuild& st) {
    const CItemProperty_LineGraph& item = *g_fnAsLineGraph(&st.item);
    stLineGraphInit record{};
    TakeContent(record, item);
    static_cast<stLineGraphLook&>(record) = item;
    record.u64LB_ID = Claim(st, 'L', "", st.stInfo.listLineGraph);
    st.stInit.lineGraphs.push_back(record);
}

void BuildPieChart(stBuild& st) {
    const CItemProperty_PieChart& item = *g_fnAsPieChart(&st.item);
    stPieChartInit record{};
    TakeContent(record, item);
    static_cast<stPieChartLook&>(record) = item;
    record.u64LB_ID = Claim(st, 'C', "", st.stInfo.listPieChart);
    st.stInit.pieCharts.push_back(record);
}

struct stBuilder {
    u32 uType;
    void (*fnBuild)(stBuild& st);
};
constexpr stBuilder g_aBuilders[] = {
    {ITEM_TEXTBOX, BuildText},        {ITEM_MEMO, BuildText},         {ITEM_NUMBOX, BuildNumber},
    {ITEM_MIXED, BuildMixed},         {ITEM_PANEL, BuildPanel},       {ITEM_IMAGE, BuildImage},
    {ITEM_LINEGRAPH, BuildLineGraph}, {ITEM_PIECHART, BuildPieChart},
};

// --- one item ----------------------------------------------------------------------------------------------

/// Null for what no control can be made of.
const stBuilder* BuilderOf(const CItemProperty_Base& item) {
    const auto* pFound = std::find_if(std::begin(g_aBuilders), std::end(g_aBuilders),
                                      [&](const stBuilder& st) { return st.uType == item.m_uItemType; });
    if (pFound == std::end(g_aBuilders)) return nullptr;
    const bool bUnknownMix = item.m_uItemType == ITEM_MIXED && !IsResolution(item) &&
                             std::string_view(g_fnItemDataName(item)) != "SYSTEM_TIME";
    return bUnknownMix ? nullptr : pFound;
}

/// Among the fonts that stand, then among those to be made; font 0 where neither has the face.
u32 FontOf(const CItemProperty_Base& item, const std::vector<stDynamicFont>& fonts) {
    std::u16string wzFace;
    u32 uFont = 0;
    if (!item.m_fnQueryString("TEXT_FONT", wzFace) || g_fnFontIdByName(wzFace.c_str(), &uFont)) return uFont;
    const auto it = std::find_if(fonts.begin(), fonts.end(),
                                 [&](const stDynamicFont& st) { return wzFace == st.stRecord.m_wzFontName; });
    if (it != fonts.end()) return it->uId;
    g_fnLog("Font error !\n");
    return 0;
}

void BuildFrame(stBuild& st) {
    stPanelInit record = FrameRecord(st.item);
    EnterName('P', g_fnItemControlName(st.item, "_F"), record.u64LB_ID);
    st.stInfo.u64FramePanelLB_ID = record.u64LB_ID;
    st.stInit.panels.push_back(record);
}

void BuildItem(CItemProperty_Base& item, stCustomInit& stInit) {
    const stBuilder* pBuilder = BuilderOf(item);
    if (!pBuilder) {
        g_fnLog("item \"%s\" is invalid", item.m_szItemName);
        return;
    }
    stBuild st{item, FontOf(item, stInit.fonts), stInit, {}};
    st.stInfo.u64ItemId = item.m_u64ItemId;
    std::snprintf(st.stInfo.m_szItemName, sizeof st.stInfo.m_szItemName, "%s", item.m_szItemName);
    st.stInfo.pItem = &item;
    BuildFrame(st);
    pBuilder->fnBuild(st);
    if (g_fnInsertAssembleInfo(st.stInfo)) stInit.infos.push_back(std::move(st.stInfo));
}

} // namespace

void g_fnInitItemByCustomStyle(const ItemMap& items, stCustomInit& stInit) {
    g_fnLog("g_fnInitItemByCustomStyle() start\n");
    g_fnCollectDynamicFonts(stInit.fonts);
    for (const auto& [szName, pItem] : items) BuildItem(*pItem, stInit);
    g_fnLog("g_fnInitItemByCustomStyle() end\n");
}
