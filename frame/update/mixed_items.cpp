#include "frame/update/mixed_items.h"

#include "base/log.h"
#include "config/items/item_number.h"
#include "config/items/kinds.h"
#include "controls/align_row.h"
#include "controls/control_ids.h"
#include "controls/num_box.h"
#include "controls/panel.h"
#include "controls/text_box.h"
#include "draw/canvas.h"
#include "frame/update/local_clock.h"
#include "frame/update/update_boxes.h"

#include <string_view>

namespace {

/// What a data name is made of.
struct stMixedKind {
    std::string_view szDataName;
    u32 uNumBoxes, uTextBoxes;
    void (*fnUpdate)(stUpdateMixedData& record);
};

void UpdateSystemTime(stUpdateMixedData& record) { g_fnFixSystemTimeAlignByCustomStyle_Hide(record); }
void UpdateResolution(stUpdateMixedData& record) { g_fnFixResolutionAlignByCustomStyle(record); }

constexpr stMixedKind c_aKinds[] = {
    {"SYSTEM_TIME", 3, 2, UpdateSystemTime},
    {"RESOLUTION", 2, 1, UpdateResolution},
};

const stMixedKind* FindKind(std::string_view szDataName) {
    for (const stMixedKind& kind : c_aKinds)
        if (kind.szDataName == szDataName) return &kind;
    return nullptr;
}

/// The words for one kind of control.
struct stPartWords {
    char cLetter;
    const char* szNoId;
    const char* szNoControl;
    i32 (*fnFind)(u64 u64LB_ID);
};
constexpr stPartWords c_stNumWords = {'N', "g_fnGetNumBoxBIDByName() fail\n", "pNumBox is NULL\n",
                                      boxes::FindNumBox};
constexpr stPartWords c_stTextWords = {'T', "g_fnGetTextBoxBIDByName() fail\n", "pTextBox is NULL\n",
                                       boxes::FindTextBox};
constexpr stPartWords c_stPanelWords = {'P', "g_fnGetPanelBIDByName() fail\n", "pPanel is NULL\n",
                                        boxes::FindPanel};

/// From a control's name to its id and its place.
bool FindPart(const stPartWords& words, const std::string& szName, u64& u64BID, i32& iIndex) {
    const auto& mapNames = *g_fnControlNames(words.cLetter);
    const auto it = mapNames.find(szName);
    if (it == mapNames.end()) {
        g_fnLog("%s", words.szNoId);
        return false;
    }
    u64BID = it->second;
    iIndex = words.fnFind(u64BID);
    if (iIndex == g_iNoIndex) g_fnLog("%s", words.szNoControl);
    return iIndex != g_iNoIndex;
}

std::string IndexedName(const CItemProperty_Base& item, u32 uIndex) {
    return g_fnItemControlName(item, ("[" + std::to_string(uIndex) + "]").c_str());
}

bool FindParts(const CItemProperty_Base& item, const stMixedKind& kind, stUpdateMixedData& record) {
    for (u32 u = 0; u < kind.uNumBoxes; ++u)
        if (!FindPart(c_stNumWords, IndexedName(item, u), record.m_auNumBoxBID[u], record.m_aiNumBox[u]))
            return false;
    // A single text bears the item's own name.
    for (u32 u = 0; u < kind.uTextBoxes; ++u)
        if (!FindPart(c_stTextWords,
                      kind.uTextBoxes > 1 ? IndexedName(item, u) : g_fnItemControlName(item, ""),
                      record.m_auTextBoxBID[u], record.m_aiTextBox[u]))
            return false;
    return FindPart(c_stPanelWords, g_fnItemControlName(item, "_F"), record.m_uPanelBID, record.m_iPanel);
}

/// Rows have a column only: the anchor's.
u32 ColumnMode(u32 uAnchor) { return uAnchor >= 1 && uAnchor <= 9 ? 7 + (uAnchor - 1) % 3 : 7; }

void TakeAlignment(const CItemProperty_NumBox& item, stUpdateMixedData& record) {
    const stItemAlign st = g_fnItemAlign(item);
    record.m_uAlignX = ColumnMode(st.m_uAlignX);
    record.m_uAlignOffsetX = st.m_uAlignOffsetX;
    record.m_uAlignOffsetY = st.m_uAlignOffsetY;
    record.m_uAlignGap = st.m_uAlignGap;
}

bool Refuse(const char* szWords) {
    g_fnLog("%s", szWords);
    return false;
}

/// Writes uCount values, each into its box. False if a box is missing; none is written then.
bool WriteNumbers(const stUpdateMixedData& record, const u32* pauValues, u32 uCount, u32 uDigits) {
    CNumBox_Base* apBoxes[3] = {};
    for (u32 u = 0; u < uCount; ++u)
        if (!(apBoxes[u] = boxes::NumBox(record.m_aiNumBox[u]))) return false;
    for (u32 u = 0; u < uCount; ++u)
        apBoxes[u]->m_fnSetIntEx(static_cast<i32>(pauValues[u]), uDigits, uDigits == 0);
    return true;
}

bool WriteTime(const stUpdateMixedData& record) {
    const u32 auValues[3] = {g_stLocalClock.uHour, g_stLocalClock.uMinute, g_stLocalClock.uSecond};
    return WriteNumbers(record, auValues, 3, 2);
}

bool WriteSize(const stUpdateMixedData& record) {
    const u32 auValues[2] = {g_uWidth, g_uHeight};
    return WriteNumbers(record, auValues, 2, 0);
}

bool Align(const stUpdateMixedData& record, std::span<CControl* const> items) {
    CControl* pPanel = boxes::Panel(record.m_iPanel);
    for (CControl* pItem : items)
        if (!pItem) return false;
    if (!pPanel) return false;
    g_fnAlignCustom(pPanel, items, static_cast<i32>(record.m_uAlignX),
                    static_cast<f32>(record.m_uAlignOffsetX), static_cast<f32>(record.m_uAlignOffsetY),
                    record.m_uAlignGap);
    return true;
}

} // namespace

bool g_fnGetUpdateMixedDataByCustomStyle(CItemProperty_Base* pItemPty_N, stUpdateMixedData& record) {
    if (!pItemPty_N) return Refuse("pItemPty_N is NULL\n");
    const CItemProperty_NumBox* pItem =
        pItemPty_N->m_uItemType == ITEM_MIXED ? g_fnAsNumBox(pItemPty_N) : nullptr;
    if (!pItem) return Refuse("item type error !\n");
    const stMixedKind* pKind = FindKind(pItem->m_szDataFullName);
    if (!pKind) return Refuse("szDataFullName error !\n");
    if (!FindParts(*pItem, *pKind, record)) return false;
    TakeAlignment(*pItem, record);
    record.m_fn = pKind->fnUpdate;
    return true;
}

bool g_fnFixSystemTimeAlignByCustomStyle(stUpdateMixedData& record) {
    CControl* const apItems[] = {boxes::NumBox(record.m_aiNumBox[0]), boxes::TextBox(record.m_aiTextBox[0]),
                                 boxes::NumBox(record.m_aiNumBox[1]), boxes::TextBox(record.m_aiTextBox[1]),
                                 boxes::NumBox(record.m_aiNumBox[2])};
    return Align(record, apItems) || Refuse("g_fnFixSystemTimeAlignByCustomStyle() error !\n");
}

bool g_fnFixResolutionAlignByCustomStyle(stUpdateMixedData& record) {
    CControl* const apItems[] = {boxes::NumBox(record.m_aiNumBox[0]), boxes::TextBox(record.m_aiTextBox[0]),
                                 boxes::NumBox(record.m_aiNumBox[1])};
    return (WriteSize(record) && Align(record, apItems)) ||
           Refuse("g_fnFixResolutionAlignByCustomStyle() error !\n");
}

bool g_fnFixSystemTimeAlignByCustomStyle_Hide(stUpdateMixedData& record) {
    return WriteTime(record) || Refuse("g_fnFixSystemTimeAlignByCustomStyle_Hide() error !\n");
}

bool g_fnFixResolutionAlignByCustomStyle_Hide(stUpdateMixedData& record) {
    return WriteSize(record) || Refuse("g_fnFixResolutionAlignByCustomStyle_Hide() error !\n");
}

void g_fnHideMixedItems() {
    for (stUpdateMixedData& record : g_listUpdateMixed)
        record.m_fn == UpdateResolution ? g_fnFixResolutionAlignByCustomStyle_Hide(record)
                                        : g_fnFixSystemTimeAlignByCustomStyle_Hide(record);
}
