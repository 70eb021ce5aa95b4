#pragma once
// The rows of the two styles with fixed tables, as a profile and this machine have them.
#include "companion/options.h"
#include "companion/result.h"
#include "platform/types.h"
#include <set>
#include <string>
#include <vector>

namespace companion {

/// What a part of a row takes of the canvas: left, top, width, height.
struct RowBox {
    const char* szPart; ///< "title", "value", "unit"; a literal
    f32 afBox[4];
};

/// One row of one owner.
struct RowState {
    std::string strRow;   ///< element in a profile
    std::string strOwner; ///< "program", "card 0", "CPU 1", "sensor 0"
    std::string strData;  ///< data full name
    std::string strCaption;
    bool bOn = false;        ///< the profile wants it
    bool bSupported = false; ///< the machine's settings say that it is there
    bool bPublished = false; ///< a value of that name is published, or each program has its own
    u32 uPlace = 0;          ///< among the rows that are shown, from 1; 0: not shown
    std::vector<RowBox> listBoxes = {};
};

/// All rows of the layout that is built at the moment. setPublished: full names.
std::vector<RowState> RowsOfLayout(const std::set<std::string>& setPublished);

std::string RowTableText(const std::vector<RowState>& listRows);
/// With the boxes of rows that are shown, of the block's ground and of the canvas.
std::string RowJson(const std::string& strProfile, const std::vector<RowState>& listRows);

} // namespace companion
