#pragma once
// From a layout's ids to places in the manager's arrays: one table per kind of control.
#include "controls/control_id_table.h"
#include "controls/osd_manager.h"
#include "platform/types.h"

#include <map>
#include <string>
#include <string_view>

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
ControlNames* g_fnControlNames(char cLetter);
/// The control of that name, or null. Letters as for g_fnControlNames.
CControl* g_fnFindCtrlByName(char cLetter, std::string_view szName);

/// Empties all id and name tables.
void g_fnClearControlIds();
