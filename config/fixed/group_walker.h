#pragma once
// Places the controls of a style as its "Group" says: who hangs under whom, and rows and columns. Only the
// first letter of an element's tag counts:
//
//   without "ID": A repeats its children for the instances "StartIndex" to "EndIndex", C lines them up in a
//   column, R in a row, T groups, I asks its "Condition" first and hangs them from the root;
//   with "ID", the name of an item: F flip box, N number box, P panel, T text box; children hang under it.
//
// Everything else is passed over with all below it, as is an item that has no control.
#include "platform/types.h"

namespace tinyxml2 {
class XMLElement;
}
class CControl;

enum eGroupFlow : u32 {
    FLOW_NONE = 0,
    FLOW_ROW_START = 2,
    FLOW_COLUMN_START = 3,
    FLOW_ROW = 4, ///< something is placed: x, y is where the next control goes
    FLOW_COLUMN = 5
};

/// Elements deeper than this below the first are passed over.
constexpr u32 g_uGroupDepthMost = 128;
/// A walk ends after so many elements, repeats counted: nested loops multiply.
constexpr u32 g_uGroupVisitsMost = 100000;

/// Walks an element and all its following siblings. pParent: null is the root. uIndex: instance of the items.
/// x, y: canvas units. ppLastPlaced, or null, gets the control that this level placed last, and is left alone
/// if there was none. Always true; a null element is an empty walk.
bool g_fnWalkGroup(const tinyxml2::XMLElement* pElement, CControl* pParent, u32 uIndex, u32 uFlow, f32 x,
                   f32 y, CControl** ppLastPlaced);
/// Walks "Group" from its first child.
bool g_fnWalkWholeGroup(const tinyxml2::XMLElement* pGroup);
