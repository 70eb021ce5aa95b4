#include "entry/hooking.h"
#include "frame/frame_driver.h"
#include "frame/real_swap.h"
#include "platform/process.h"
#include "shared/dead_records.h"
#include "tests/support/headless/shared_fixture.h"

class DeadRecords : public SharedTest {
  protected:
    /// Processes 1001 to 1100, stamped with their id, hold all slots of both tables.
    static void FillTables() {
        for (u32 u = 1; u <= g_uProcessRecordCount; ++u) {
            platform::headless::SetProcessStamp(1000 + u, 1000 + u);
            RegisterProcess(1000 + u, 5000 + u);
        }
    }
    static void End(u32 uProcessId) { platform::headless::SetProcessStamp(uProcessId, 0); }
};

TEST_F(DeadRecords, ANewProcessTakesOverTheRecordOfAKilledOne) {
    FillTables();
    CommandSlot(41).Command.uStatus = 7;
    End(1042);
    RegisterProcess(2000, 6000);
    EXPECT_EQ(CommandSlot(41).uProcessId, 2000u);
    EXPECT_EQ(CommandSlot(41).uThreadId, 6000u);
    EXPECT_EQ(CommandSlot(41).Command.uStatus, 7u); // as in any record that was given back
    EXPECT_EQ(StatusSlot(41).uProcessId, 2000u);
}

TEST_F(DeadRecords, AReusedIdIsToldApartByItsStamp) {
    FillTables();
    platform::headless::SetProcessStamp(1050, 99);
    RegisterProcess(2000, 6000);
    EXPECT_EQ(CommandSlot(49).uProcessId, 2000u);
    EXPECT_EQ(StatusSlot(49).uProcessId, 2000u);
}

TEST_F(DeadRecords, WithAllProcessesAliveTheNextOneHasNoRecord) {
    FillTables();
    RegisterProcess(2000, 6000);
    u8 bChanged = 0;
    EXPECT_FALSE(ReadCommandRecord(2000, 6000, g_uRecordChanged, &bChanged, nullptr));
    for (u32 u = 0; u < g_uProcessRecordCount; ++u) EXPECT_EQ(CommandSlot(u).uProcessId, 1001 + u);
}

TEST_F(DeadRecords, ARecordWithoutAStampStaysAsLongAsSomebodyHasItsId) {
    FillTables();
    Segment().aCommandStamp[0] = Segment().aStatusStamp[0] = 0;
    platform::headless::SetProcessStamp(1001, 99);
    RegisterProcess(2000, 6000);
    EXPECT_EQ(CommandSlot(0).uProcessId, 1001u);
    End(1001);
    RegisterProcess(2000, 6000);
    EXPECT_EQ(CommandSlot(0).uProcessId, 2000u);
}

TEST_F(DeadRecords, NothingIsTakenOverWhileASlotIsFree) {
    RegisterProcess(10, 11);
    End(10);
    RegisterProcess(20, 21);
    EXPECT_EQ(CommandSlot(0).uProcessId, 10u);
    EXPECT_EQ(CommandSlot(1).uProcessId, 20u);
}

TEST_F(DeadRecords, ASlotThatIsFreeInOneTableOnlyMakesRoomInTheOther) {
    FillTables();
    StatusSlot(70).uThreadId = StatusSlot(70).uProcessId = 0;
    End(1003);
    RegisterProcess(2000, 6000);
    EXPECT_EQ(CommandSlot(2).uProcessId, 2000u);
    EXPECT_EQ(StatusSlot(2).uProcessId, 2000u);
}

TEST_F(DeadRecords, AFreedRecordLeavesNoStamp) {
    platform::headless::SetProcessStamp(10, 99);
    RegisterProcess(10, 11);
    EXPECT_EQ(Segment().aCommandStamp[0], 99u);
    EXPECT_EQ(Segment().aStatusStamp[0], 99u);
    UnregisterProcess(10, 11);
    EXPECT_EQ(Segment().aCommandStamp[0], 0u);
    EXPECT_EQ(Segment().aStatusStamp[0], 0u);
}

TEST_F(DeadRecords, FreeingTellsHowManyAndLeavesTheLivingAlone) {
    FillTables();
    for (u32 u = 0; u < 30; ++u) End(1001 + u);
    EXPECT_EQ(g_fnFreeDeadRecords(Segment(), &platform::IsProcessGone), 60u);
    EXPECT_EQ(g_fnFreeDeadRecords(Segment(), &platform::IsProcessGone), 0u);
    EXPECT_EQ(CommandSlot(29).uThreadId, 0u);
    EXPECT_EQ(CommandSlot(30).uProcessId, 1031u);
}

TEST_F(DeadRecords, AForkedCopyTakesItsRecordAtItsFirstSwapAndOnlyOne) {
    g_fnOweRecord();
    g_bHooked = true;
    EXPECT_EQ(CommandSlot(0).uThreadId, 0u);
    GL_wglSwapBuffers(nullptr);
    EXPECT_EQ(CommandSlot(0).uProcessId, c_uPid);
    EXPECT_EQ(CommandSlot(0).uThreadId, c_uTid);
    EXPECT_EQ(StatusSlot(0).uProcessId, c_uPid);
    GL_wglSwapBuffers(nullptr);
    EXPECT_EQ(CommandSlot(1).uThreadId, 0u);
}
