#pragma once
// Puts readings into the shared segment, through the exports of the overlay's library.
#include "companion/control_library.h"
#include "companion/sensors/published.h"
#include "companion/sensors/reading.h"
#include <map>
#include <string>
#include <vector>

namespace companion::sensors {

/// Names with their values, as published.
using ValueMap = std::map<std::string, i32>;

/// The exports that publication uses and the segment they write.
struct PublishTarget {
    decltype(&::SetMonitorDataOffsetFromGWexeToGWDll_GL) fnSetOffsets = nullptr;
    decltype(&::SetMonitorDataFromGWexeToGWDll_GL) fnSetData = nullptr;
    decltype(&::SetMonitorFilterDataFromGWexeToGWDll_GL) fnSetFilter = nullptr;
    decltype(&::sendCmd_GWDLL_GL) fnSendCommand = nullptr;
    const stSharedSegment* pSegment = nullptr;
};

PublishTarget TargetOf(const ControlLibrary& stLibrary);

/// This program as the one that keeps values moving, for a Publisher.
Publication ThisFeed();
/// Milliseconds since 1970 by the system's clock, which publications carry.
u64 TimeNow();

/// Owns the layout of the raw block: one i32 a name in ascending name order, then the names as text and who
/// published (see published.h). Names and values are published whole into the other bank when the set
/// changes, else the values go into the current bank. Nothing is assumed of an earlier companion: the first
/// publication is a whole one, and so is the next after another companion published.
class Publisher {
  public:
    /// stBy: who publishes; its time is filled in.
    explicit Publisher(const PublishTarget& stTarget, const Publication& stBy = {});

    enum class Outcome { Values, Names }; ///< what was written: values in place, or all anew
    /// Publishes all readings that have a value; of several with one name the first counts. Names that cannot
    /// stand in the tree, and those beyond its room, are left out.
    Outcome Publish(const std::vector<Reading>& listReadings);
    Outcome Publish(const ValueMap& mapValues);

    /// Names now published, with their values.
    const ValueMap& Values() const { return m_mapValues; }

  private:
    bool IsOursInPlace() const;
    void FillValues();
    void PublishNames();
    void PublishValues();

    PublishTarget m_stTarget;
    Publication m_stBy;
    ValueMap m_mapValues;
    std::map<std::string, u32> m_mapOffsets;
    std::vector<u8> m_aRaw;  ///< values, then the names and who published
    std::vector<u8> m_aTree; ///< the bank of the name tree as it was published
    bool m_bPublished = false;
};

/// Names of what the overlay measures in each program itself; a published value of such a name would never be
/// seen.
const std::vector<std::string>& OwnNames();

/// Why a name cannot be published; empty if it can: 1 to 255 printable characters of ASCII, no blank, not one
/// of the overlay's own names.
std::string NameFault(const std::string& strName);

} // namespace companion::sensors
