#pragma once
// What can be told of this machine without looking at a program: whether the overlay has all that it needs,
// and what is set so that it does not do what one would expect.
#include "companion/config.h"
#include "companion/control_library.h"
#include "companion/diagnosis.h"
#include "companion/feed_state.h"
#include <string>
#include <vector>

namespace companion {

/// One thing that was looked at.
struct MachineCheck {
    std::string strName;
    std::string strState; ///< "ok", or a few words; where there are remarks they tell
    bool bFault = false;  ///< the overlay does not show, or not as it is set
    std::vector<Remark> listRemarks;
};

/// All of them, in the order in which a person would mend them. Changes nothing.
std::vector<MachineCheck> CheckMachine(const ControlLibrary& stLibrary);
/// The remarks without which no program can show the overlay: data folder, shaders, segment.
std::vector<Remark> BasicRemarks(const ControlLibrary& stLibrary);

// Pieces that need no machine.

/// What is wrong with a value that is set; without a seen sentence if nothing is.
Remark JudgeSetting(const SettingRow& row, const StoredValue& stValue);
Remark JudgeFeed(const FeedState& st);

} // namespace companion
