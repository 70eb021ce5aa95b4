#include "companion/sensors/publisher.h"
#include "companion/sensors/published.h"
#include "platform/tool.h"
#include "shared/commands.h"
#include "shared/own_names.h"
#include <algorithm>
#include <chrono>
#include <cstring>
#include <iterator>

namespace companion::sensors {
namespace {

constexpr size_t kMostNameBytes = 255;
constexpr size_t kMostNames = g_uRawDataBytes / sizeof(i32);
constexpr size_t kNodeBytes = 32; ///< more than a name adds to the tree beside its characters

/// What has a good name and room in block and tree.
ValueMap Publishable(const ValueMap& mapValues) {
    ValueMap mapGood;
    size_t uTreeBytes = sizeof(u32);
    for (const auto& [strName, iValue] : mapValues) {
        const size_t uBytes = strName.size() + kNodeBytes;
        if (mapGood.size() == kMostNames || uTreeBytes + uBytes > g_uDataTableBytes) break;
        if (!NameFault(strName).empty()) continue;
        mapGood.emplace_hint(mapGood.end(), strName, iValue);
        uTreeBytes += uBytes;
    }
    return mapGood;
}

} // namespace

const std::vector<std::string>& OwnNames() {
    static const std::vector<std::string> listNames(std::begin(g_aszOwnNames), std::end(g_aszOwnNames));
    return listNames;
}

std::string NameFault(const std::string& strName) {
    const auto& listOwn = OwnNames();
    if (strName.empty()) return "is empty";
    if (strName.size() > kMostNameBytes) return "is longer than 255 characters";
    if (std::any_of(strName.begin(), strName.end(), [](char c) { return c <= 32 || c >= 127; }))
        return "must be printable ASCII without blanks";
    if (std::find(listOwn.begin(), listOwn.end(), strName) != listOwn.end())
        return "is measured by the overlay itself";
    return {};
}

PublishTarget TargetOf(const ControlLibrary& st) {
    return {st.fnSetOffsets, st.fnSetData, st.fnSetFilter, st.fnSendCommand, st.pSegment};
}

u64 TimeNow() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<u64>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count());
}

Publication ThisFeed() { return {platform::tool::OwnProcessId(), platform::tool::OwnStamp(), 0}; }

Publisher::Publisher(const PublishTarget& stTarget, const Publication& stBy)
    : m_stTarget(stTarget), m_stBy(stBy) {}

Publisher::Outcome Publisher::Publish(const std::vector<Reading>& listReadings) {
    ValueMap mapValues;
    for (const Reading& st : listReadings) {
        if (st.iValue) mapValues.emplace(st.strName, *st.iValue);
    }
    return Publish(mapValues);
}

Publisher::Outcome Publisher::Publish(const ValueMap& mapValues) {
    ValueMap mapGood = Publishable(mapValues);
    const bool bSameNames = std::equal(mapGood.begin(), mapGood.end(), m_mapValues.begin(), m_mapValues.end(),
                                       [](const auto& a, const auto& b) { return a.first == b.first; });
    m_mapValues = std::move(mapGood);
    if (m_bPublished && bSameNames && IsOursInPlace()) {
        PublishValues();
        return Outcome::Values;
    }
    PublishNames();
    return Outcome::Names;
}

bool Publisher::IsOursInPlace() const {
    const u32 uBank = CurrentBank(*m_stTarget.pSegment);
    return std::memcmp(m_stTarget.pSegment->DataTable[uBank], m_aTree.data(), m_aTree.size()) == 0;
}

void Publisher::FillValues() {
    size_t uAt = 0;
    for (const auto& [strName, iValue] : m_mapValues) {
        std::memcpy(m_aRaw.data() + uAt, &iValue, sizeof(iValue));
        uAt += sizeof(iValue);
    }
}

/// The export writes the other bank whole before it becomes current, so nothing that an ended companion left
/// half written is ever seen. Running programs hold pointers into the bank before: command 9 makes them look
/// anew.
void Publisher::PublishNames() {
    m_mapOffsets.clear();
    u32 uOffset = 0;
    for (const auto& [strName, iValue] : m_mapValues) {
        m_mapOffsets.emplace_hint(m_mapOffsets.end(), strName, uOffset);
        uOffset += sizeof(i32);
    }
    m_aRaw.assign(uOffset, 0);
    FillValues();
    m_stBy.uTime = TimeNow();
    AppendNames(m_mapOffsets, m_stBy, m_aRaw);
    m_stTarget.fnSetOffsets(m_mapOffsets, m_aRaw.data(), static_cast<i32>(m_aRaw.size()));
    const u8* pTree = m_stTarget.pSegment->DataTable[CurrentBank(*m_stTarget.pSegment)];
    m_aTree.assign(pTree, pTree + g_uDataTableBytes);
    m_bPublished = true;
    const stMonitorFilter stEveryone{};
    m_stTarget.fnSetFilter(&stEveryone);
    m_stTarget.fnSendCommand(COMMAND_REBUILD, 0, 0, 0);
}

void Publisher::PublishValues() {
    FillValues();
    SetTime(TimeNow(), m_aRaw);
    m_stTarget.fnSetData(m_aRaw.data(), static_cast<i32>(m_aRaw.size()));
}

} // namespace companion::sensors
