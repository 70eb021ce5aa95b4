// Whatever bytes stand in the segment: no operation leaves its block, loops or crashes.
#include "base/layout_style.h"
#include "entry/exports.h"
#include "frame/command_handler.h"
#include "tests/support/headless/shared_fixture.h"
#include <cstring>
#include <memory>
#include <random>

class HostileSegment : public SharedTest {
  protected:
    static void Fill(u32 uSeed) {
        std::mt19937 rng(uSeed);
        auto* pBytes = reinterpret_cast<unsigned char*>(&Segment());
        for (std::size_t u = 0; u + 4 <= sizeof(stSharedSegment); u += 4) {
            const u32 uValue = rng();
            std::memcpy(pBytes + u, &uValue, 4);
        }
    }
    static void FillConstant(u8 uByte) {
        std::memset(static_cast<void*>(&Segment()), uByte, sizeof(stSharedSegment));
    }

    static void RunRecordOperations() {
        u8 bChanged = 0;
        auto pCommand = std::make_unique<stSharedCommand>();
        RegisterProcess(c_uPid, c_uTid);
        ReadCommandRecord(c_uPid, c_uTid, 3, &bChanged, pCommand.get());
        WriteStatusRecord(c_uPid, c_uTid, *pCommand);
        WriteCommandRecord(c_uPid, c_uTid, 1, *pCommand, 3);
        WriteCommandRecord(c_uPid, 0, 1, *pCommand, 3);
        for (u32 uStyle = 0; uStyle < 4; ++uStyle) {
            g_uLayoutStyle = uStyle;
            g_fnTavo_ProcessCommand(*pCommand);
        }
        g_fnSelectProfileName();
        EXPECT_LT(std::u16string(g_wzProfileName).size(), g_uProfileNameUnits);
        UnregisterProcess(c_uPid, c_uTid);
    }

    static void RunExports() {
        for (u32 uCommand = 0; uCommand < 12; ++uCommand)
            sendCmd_GWDLL_GL(uCommand, c_uPid, uCommand & 1, -1);
        const u8 aData[64] = {};
        SetMonitorDataFromGWexeToGWDll_GL(aData, sizeof aData);
        SetMonitorDataOffsetFromGWexeToGWDll_GL({{"GPU_CLK#0", 4}}, aData, sizeof aData);
        GetFrameTimeByPID_GL(c_uPid);
        GetAPIVerByTID_GL(c_uTid);
        g_fnClearOnFirstAttach();
        g_fnDropRecordsOfProcess(c_uPid);
    }
};

TEST_F(HostileSegment, RandomBytes) {
    for (u32 uSeed = 1; uSeed <= 60; ++uSeed) {
        Fill(uSeed);
        RunRecordOperations();
        RunExports();
    }
}

TEST_F(HostileSegment, ConstantBytes) {
    for (const u8 uByte : {0x00, 0x01, 0x2E, 0x7F, 0x80, 0xFF}) {
        FillConstant(uByte);
        RunRecordOperations();
        RunExports();
    }
}

TEST_F(HostileSegment, RandomRecordsForThisProcess) {
    std::mt19937 rng(99);
    RegisterProcess(c_uPid, c_uTid);
    for (u32 uRound = 0; uRound < 20000; ++uRound) {
        stSharedCommand stBlock;
        for (u32 u = 0; u < sizeof stBlock / 4; ++u) {
            const u32 uValue = rng() & rng() & rng();
            std::memcpy(reinterpret_cast<unsigned char*>(&stBlock) + u * 4, &uValue, 4);
        }
        if (uRound & 1) stBlock.uTargetPid = c_uPid;
        if (uRound & 2) stBlock.bRelease = 0;
        g_uLayoutStyle = uRound % 3;
        WriteCommandRecord(c_uPid, c_uTid, 1, stBlock, 3);
        g_fnTavo_ProcessCommand(stBlock);
    }
    EXPECT_EQ(CommandSlot(0).uProcessId, c_uPid);
    EXPECT_EQ(CommandSlot(1).uThreadId, 0u);
}

TEST_F(HostileSegment, OnlyTheOwnFieldsChange) {
    Fill(7);
    auto pBefore = std::make_unique<stSharedSegment>(Segment());
    RunRecordOperations();
    EXPECT_EQ(std::memcmp(&Segment().MonitorPos, &pBefore->MonitorPos,
                          sizeof(stSharedSegment) - offsetof(stSharedSegment, MonitorPos)),
              0);
    EXPECT_EQ(std::memcmp(&Segment(), pBefore.get(), offsetof(stSharedSegment, CommandTable)), 0);
}
