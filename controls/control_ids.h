#pragma once
// From a layout's ids to places in the manager's arrays: one table per kind of control.
#include "controls/osd_manager.h"
#include "platform/types.h"

#include <deque>
#include <map>
#include <string>
#include <string_view>

/// A place in an array that stands for none.
constexpr u32 g_uNoControl = 0xFFFFFFFF;

struct stControlIdTable {
    /// Place of an id, or g_uNoControl where it is unknown or was given back.
    u32 m_fnFind(u64 u64LB_ID) const;
    /// Next free place below uEntries, oldest one given back first; g_uNoControl when the array is full.
    u32 m_fnTake(u64 u64LB_ID, u32 uEntries);
    /// Frees an id's place for the next taker. False for an unknown id.
    bool m_fnGiveBack(u64 u64LB_ID);
    void m_fnClear();

    std::map<u64, u32> m_mapPtrId; ///< LB_ID to uPtr_ID; g_uNoControl after a give-back
    std::map<u32, u64> m_mapLB_ID; ///< the reverse
    u32 m_uNext = 0;
    std::deque<u32> m_listFree;
};

extern stControlIdTable g_stTextBoxIds, g_stNumBoxIds, g_stLineGraphIds, g_stPanelIds, g_stImgBoxIds,
    g_stFlipBoxIds, g_stPieChartIds;

/// Kinds as registration counts them; no other code is one.
enum ControlIdType : u32 {
    IdTextBox = 1,
    IdNumBox = 2,
    IdLineGraph = 3,
    IdPanel = 4,
    IdImgBox = 5,
    IdFlipBox = 8,
    IdPieChart = 9
};

/// Id of instance uIndex of the layout's element uBID.
constexpr u64 g_fnMakeLB_ID(u32 uIndex, u32 uBID) { return (static_cast<u64>(uIndex) << 32) | uBID; }

/// Puts the control into the array of its kind under the id. 1 on success; 0 for an unknown type, a null
/// control or one of another kind, a missing array, an id in use, or a full array; nothing is stored then.
i32 g_fnRegisterXCtrl(u32 uType, u64 u64LB_ID, CControl* pControl);
/// As g_fnRegisterXCtrl, for a text box.
i32 g_fnRegisterTextCtrl(u32 uIndex, u32 uBID, CTextBox_Base* pTextBox);

/// The control, or null.
template <class T> T* g_fnFindCtrlById(u64 u64LB_ID, const stControlIdTable& stTable, T* const* ppArray) {
    const u32 uPtr_ID = stTable.m_fnFind(u64LB_ID);
    return ppArray && uPtr_ID != g_uNoControl ? ppArray[uPtr_ID] : nullptr;
}
template <class T> T* g_fnFindCtrl(u32 uIndex, u32 uBID, const stControlIdTable& stTable, T* const* ppArray) {
    return g_fnFindCtrlById(g_fnMakeLB_ID(uIndex, uBID), stTable, ppArray);
}

/// Names of controls by kind letter C, I, L, N, P or T; null for any other letter.
std::map<std::string, u64, std::less<>>* g_fnControlNames(char cLetter);
/// The control of that name, or null. Letters as for g_fnControlNames.
CControl* g_fnFindCtrlByName(char cLetter, std::string_view szName);

/// Empties all id and name tables.
void g_fnClearControlIds();
