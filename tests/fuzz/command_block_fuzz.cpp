// The input is a play in the shared segment: records come and go, the companion sends commands and data, a
// hostile program writes anywhere, and this process polls and handles what it finds.
#include "base/layout_style.h"
#include "entry/exports.h"
#include "frame/command_handler.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/monitor_data.h"
#include "shared/process_records.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr u32 c_uPid = 4242, c_uTid = 4343; // as the back-end reports them
constexpr u32 c_uStepsMax = 64;

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

/// Takes the input from its front; zeros when it is used up.
class Script {
  public:
    Script(const u8* pData, std::size_t uBytes) : m_pData(pData), m_uLeft(uBytes) {}
    bool IsOver() const { return m_uLeft == 0; }
    void Take(void* pTo, std::size_t uBytes) {
        std::memset(pTo, 0, uBytes);
        const std::size_t uTaken = std::min(uBytes, m_uLeft);
        std::memcpy(pTo, m_pData, uTaken);
        m_pData += uTaken;
        m_uLeft -= uTaken;
    }
    template <class T> T Take() {
        T value;
        Take(&value, sizeof value);
        return value;
    }
    /// Mostly this process, else one of a few others.
    u32 Pid() { return Take<u8>() % 4 ? c_uPid : Take<u8>(); }
    u32 Tid() { return Take<u8>() % 4 ? c_uTid : Take<u8>(); }

  private:
    const u8* m_pData;
    std::size_t m_uLeft;
};

stSharedSegment& Segment() { return *platform::SharedSegment(); }

void WriteAnywhere(Script& script) {
    const u32 uAt = script.Take<u32>() % sizeof(stSharedSegment);
    const u32 uBytes = std::min<u32>(script.Take<u8>(), sizeof(stSharedSegment) - uAt);
    script.Take(reinterpret_cast<u8*>(&Segment()) + uAt, uBytes);
}

void SendBlock(Script& script) {
    const auto stBlock = script.Take<stSharedCommand>();
    const u32 uPid = script.Pid(), uTid = script.Take<u8>() & 1 ? script.Tid() : 0;
    WriteCommandRecord(uPid, uTid, script.Take<u8>(), stBlock, script.Take<u8>());
}

void SendCommand(Script& script) {
    const u32 uCommand = script.Take<u8>() % 12, uPid = script.Pid(),
              uTid = script.Take<u8>() & 1 ? script.Tid() : 0;
    const u32 uResult = sendCmd_GWDLL_GL(uCommand, uPid, uTid, script.Take<i64>());
    Require(uResult == 0 || uResult == g_uSendCmdFailed);
}

/// What the swap does with its record. A handled block carries at most what the handler left standing.
void Poll(Script& script) {
    g_uLayoutStyle = script.Take<u8>() % 8;
    u8 bChanged = 0;
    stSharedCommand stBlock{};
    if (!ReadCommandRecord(c_uPid, c_uTid, g_uRecordChanged | g_uRecordCommand, &bChanged, &stBlock)) return;
    const bool bOurs = g_fnCommandIsForUs(stBlock);
    const stSharedCommand stBefore = stBlock;
    g_fnTavo_ProcessCommand(stBlock);
    Require(stBlock.uTargetPid == stBefore.uTargetPid && stBlock.uTargetTid == stBefore.uTargetTid);
    if (!bOurs) Require(!stBlock.bRelease && !stBlock.u8Screenshot && !stBlock.bRebuildUpdate);
    if (bOurs && stBefore.bRelease) Require(!stBlock.bRelease);
    WriteStatusRecord(c_uPid, c_uTid, stBlock);
}

void SelectProfile(Script&) {
    g_fnSelectProfileName();
    Require(std::find(std::begin(g_wzProfileName), std::end(g_wzProfileName), u'\0') !=
            std::end(g_wzProfileName));
    Require(std::find(std::begin(g_wzProfileFolder), std::end(g_wzProfileFolder), u'\0') !=
            std::end(g_wzProfileFolder));
}

void LookUp(const char* szName) {
    const u32* pData = g_fnGetMonitorDataPtr(szName);
    if (!pData) return;
    g_fnReadData(pData);
    const auto* pBytes = reinterpret_cast<const u8*>(pData);
    const u8* pBank = Segment().RawData[g_fnCurrentDataBank()];
    Require(pBytes >= pBank && pBytes <= pBank + g_uMaxRawDataOffset);
}

void PublishData(Script& script) {
    std::map<std::string, u32> mapNames;
    for (u32 u = script.Take<u8>() % 8; u; --u) {
        char szName[9] = {};
        script.Take(szName, script.Take<u8>() % sizeof szName);
        szName[8] = 0;
        mapNames[szName] = script.Take<u16>();
    }
    u8 aData[64];
    script.Take(aData, sizeof aData);
    SetMonitorDataOffsetFromGWexeToGWDll_GL(mapNames, aData, sizeof aData);
    SetMonitorDataFromGWexeToGWDll_GL(aData, static_cast<i32>(script.Take<u8>() % 65));
    for (const auto& [szName, uOffset] : mapNames) {
        const u32* pData = g_fnGetMonitorDataPtr(szName.c_str());
        Require((pData != nullptr) == (uOffset <= g_uMaxRawDataOffset));
        LookUp(szName.c_str());
    }
}

void LookUpAny(Script& script) {
    char szName[17] = {};
    script.Take(szName, 16);
    LookUp(szName);
    LookUp("GPU_CLK#0");
}

void AskStatus(Script& script) {
    GetFrameTimeByPID_GL(script.Pid());
    const u32 uApi = GetAPIVerByTID_GL(script.Tid());
    Require(uApi == 0 || uApi == g_uApiCodeUnseen);
}

void Register(Script& script) { RegisterProcess(script.Pid(), script.Tid()); }
void Unregister(Script& script) { UnregisterProcess(script.Pid(), script.Tid()); }
void DropRecords(Script& script) { g_fnDropRecordsOfProcess(script.Pid()); }
void Initial(Script&) { InitialSharedSegmentData_GL(); }
void FirstAttach(Script&) {
    g_fnClearOnFirstAttach();
    Require(Segment().bSegmentReady != 0);
}

constexpr void (*c_afnSteps[])(Script&) = {WriteAnywhere, SendBlock, SendCommand, Poll,      SelectProfile,
                                           PublishData,   LookUpAny, AskStatus,   Register,  Unregister,
                                           DropRecords,   Initial,   FirstAttach, SendBlock, Poll};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    platform::headless::ResetSegment();
    g_uLayoutStyle = 0;
    g_fnSetProfileName(u"Default");
    RegisterProcess(c_uPid, c_uTid);
    Script script(pData, uBytes);
    for (u32 u = 0; u < c_uStepsMax && !script.IsOver(); ++u)
        c_afnSteps[script.Take<u8>() % std::size(c_afnSteps)](script);
    return 0;
}
