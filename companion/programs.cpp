#include "companion/programs.h"
#include "companion/utf.h"
#include "platform/tool.h"
#include "platform/tool_bytes.h"
#include "shared/commands.h"
#include "shared/dead_records.h"
#include <algorithm>
#include <iterator>

namespace companion {
namespace {

/// The field of a profile's name: cut, terminated, the rest zero.
void FillName(char16_t (&wzField)[g_uProfileNameUnits], const std::string& strName) {
    std::u16string wzName;
    UnitsFromUtf8(strName, wzName);
    const size_t uUnits = std::min<size_t>(wzName.size(), g_uProfileNameUnits - 1);
    std::fill(std::begin(wzField), std::end(wzField), u'\0');
    std::copy_n(wzName.begin(), uUnits, wzField);
}

} // namespace

bool IsCompanion(u32 uProcessId) {
    if (uProcessId == platform::tool::OwnProcessId()) return true;
    const ProcessFacts st = platform::tool::InspectProcess(uProcessId);
    return st.bExists && EqualFolded(st.strName, platform::tool::OwnName());
}

bool IsAlive(u32 uProcessId) { return platform::tool::InspectProcess(uProcessId).bExists; }

void ForgetDead(const ControlLibrary& stLibrary) {
    if (g_fnFreeDeadRecords(*stLibrary.pSegment, &platform::tool::IsProcessGone) > 0)
        platform::tool::RemoveDeadClaims();
}

std::vector<Instance> Programs(const ControlLibrary& stLibrary) {
    auto listInstances = Instances(*Snapshot(stLibrary.pSegment));
    std::erase_if(listInstances,
                  [](const Instance& st) { return !IsAlive(st.uProcessId) || IsCompanion(st.uProcessId); });
    return listInstances;
}

Result NeedPrograms(const ControlLibrary& stLibrary) {
    if (!Programs(stLibrary).empty()) return {};
    return Result::NotFound("no running program carries the overlay");
}

Result NeedHolder(const ControlLibrary& stLibrary) {
    for (const Instance& st : Instances(*Snapshot(stLibrary.pSegment)))
        if (st.uProcessId != platform::tool::OwnProcessId() && IsAlive(st.uProcessId)) return {};
    return NeedPrograms(stLibrary);
}

void WriteFilter(const ControlLibrary& stLibrary, u32 uPid, u32 uTid, const std::string& strProfile) {
    stMonitorFilter stFilter{};
    stFilter.uProcessId = uPid;
    stFilter.uThreadId = uTid;
    FillName(stFilter.wzProfileName, strProfile);
    stLibrary.fnSetFilter(&stFilter);
}

void ReloadAll(const ControlLibrary& stLibrary) {
    WriteFilter(stLibrary, 0, 0, "");
    stLibrary.fnSendCommand(COMMAND_RELEASE_ALL, 0, 0, 0);
}

Result ReloadProcess(const ControlLibrary& stLibrary, u32 uProcessId) {
    WriteFilter(stLibrary, uProcessId, 0, "");
    const auto pSnapshot = Snapshot(stLibrary.pSegment);
    const auto uSlot = FindRecord(pSnapshot->CommandTable, uProcessId);
    if (!uSlot) return Result::NotFound("process " + std::to_string(uProcessId) + " holds no record");
    stLibrary.fnSendCommand(COMMAND_RELEASE, uProcessId, pSnapshot->CommandTable[*uSlot].uThreadId, 0);
    return {};
}

void SetProfileOfAll(const ControlLibrary& stLibrary, const std::string& strName) {
    char16_t wzName[g_uProfileNameUnits]; // the library copies the whole field
    FillName(wzName, strName);
    stLibrary.fnSetGlobalProfile(wzName);
}

const stProcessProfile* FindProcessProfile(const ProfileTable& aTable, u32 uProcessId, u32 uThreadId) {
    for (const stProcessProfile& st : aTable) {
        if (st.uProcessId == uProcessId || st.uThreadId == uThreadId)
            return st.bUseGlobal != 0 ? nullptr : &st;
    }
    return nullptr;
}

bool SetProcessProfile(ProfileTable& aTable, u32 uProcessId, const std::string* pstrName,
                       bool (*fnIsAlive)(u32 uProcessId)) {
    for (stProcessProfile& st : aTable) {
        const bool bStale = st.uProcessId != 0 && !fnIsAlive(st.uProcessId);
        if (st.uProcessId == uProcessId || bStale) st = {};
    }
    if (pstrName == nullptr) return true;
    const auto it = std::find_if(std::begin(aTable), std::end(aTable), [](const stProcessProfile& st) {
        return st.uProcessId == 0 && st.uThreadId == 0;
    });
    if (it == std::end(aTable)) return false;
    it->uProcessId = uProcessId;
    FillName(it->wzProfileName, *pstrName);
    return true;
}

} // namespace companion
