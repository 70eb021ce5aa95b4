#include "companion/segment_view.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace companion {

std::unique_ptr<stSharedSegment> Snapshot(const void* pSegment) {
    auto pCopy = std::make_unique<stSharedSegment>();
    std::memcpy(pCopy.get(), pSegment, sizeof(stSharedSegment));
    return pCopy;
}

std::optional<u32> FindRecord(const RecordTable& aTable, u32 uProcessId) {
    if (uProcessId == 0) return std::nullopt;
    for (u32 i = 0; i < g_uProcessRecordCount; ++i) {
        if (aTable[i].uThreadId != 0 && aTable[i].uProcessId == uProcessId) return i;
    }
    return std::nullopt;
}

u32 LiveCount(const RecordTable& aTable) {
    return static_cast<u32>(std::count_if(std::begin(aTable), std::end(aTable),
                                          [](const stProcessRecord& st) { return st.uThreadId != 0; }));
}

bool IsFull(const RecordTable& aTable) { return LiveCount(aTable) == g_uProcessRecordCount; }

namespace {

Instance FromStatus(const stProcessRecord& stRecord, u32 uSlot) {
    Instance stInstance;
    stInstance.uProcessId = stRecord.uProcessId;
    stInstance.uThreadId = stRecord.uThreadId;
    stInstance.uStatusSlot = uSlot;
    stInstance.uApiCode = stRecord.Command.uApiCode;
    stInstance.fFrameTime = stRecord.Command.fFrameTime;
    return stInstance;
}

Instance& FindOrAdd(std::vector<Instance>& listInstances, const stProcessRecord& stRecord) {
    const auto it = std::find_if(listInstances.begin(), listInstances.end(),
                                 [&](const Instance& st) { return st.uProcessId == stRecord.uProcessId; });
    if (it != listInstances.end()) return *it;
    Instance& stNew = listInstances.emplace_back();
    stNew.uProcessId = stRecord.uProcessId;
    stNew.uThreadId = stRecord.uThreadId;
    stNew.uApiCode = g_uApiCodeUnseen;
    return stNew;
}

} // namespace

std::vector<Instance> Instances(const stSharedSegment& stSegment) {
    std::vector<Instance> listInstances;
    for (u32 i = 0; i < g_uProcessRecordCount; ++i) {
        const stProcessRecord& stRecord = stSegment.StatusTable[i];
        if (stRecord.uThreadId == 0) continue;
        Instance& stInstance = FindOrAdd(listInstances, stRecord);
        if (!stInstance.uStatusSlot) stInstance = FromStatus(stRecord, i);
    }
    for (u32 i = 0; i < g_uProcessRecordCount; ++i) {
        const stProcessRecord& stRecord = stSegment.CommandTable[i];
        if (stRecord.uThreadId == 0) continue;
        Instance& stInstance = FindOrAdd(listInstances, stRecord);
        if (stInstance.uCommandSlot) continue;
        stInstance.uCommandSlot = i;
        stInstance.bCommandWaiting = stRecord.bChanged != 0;
    }
    return listInstances;
}

void AddSegmentEvidence(const stSharedSegment& stSegment, u32 uProcessId, Evidence& stEvidence) {
    const auto uCommand = FindRecord(stSegment.CommandTable, uProcessId);
    const auto uStatus = FindRecord(stSegment.StatusTable, uProcessId);
    stEvidence.bCommandRecord = uCommand.has_value();
    stEvidence.bStatusRecord = uStatus.has_value();
    stEvidence.bTablesFull = IsFull(stSegment.CommandTable) || IsFull(stSegment.StatusTable);
    stEvidence.bCommandWaiting = uCommand && stSegment.CommandTable[*uCommand].bChanged != 0;
    stEvidence.bGlobalEnable = stSegment.bGlobalEnable != 0;
    stEvidence.bQueryFrameTime = stSegment.bEnableQueryFrameTime != 0;
    if (uStatus) {
        stEvidence.uApiCode = stSegment.StatusTable[*uStatus].Command.uApiCode;
        stEvidence.fFrameTime = stSegment.StatusTable[*uStatus].Command.fFrameTime;
    }
}

std::string FrameTimeText(f32 fMilliseconds) {
    if (!std::isfinite(fMilliseconds) || fMilliseconds <= 0.0f || fMilliseconds >= 1.0e7f) return "-";
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%.2f", static_cast<f64>(fMilliseconds));
    return szText;
}

} // namespace companion
