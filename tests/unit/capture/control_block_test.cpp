// The control block: rebuilds by another generation, colours of panels, and what nobody should write.
#include "frame/command_handler.h"
#include "platform/shared_block.h"
#include "tests/unit/capture/capture_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

#include <cstring>

namespace {

using namespace capture_test;

class ControlBlock : public CaptureTest {
  protected:
    void SetUp() override {
        CaptureTest::SetUp();
        RegisterProcess(4242, 4343);
    }
    static void Write(const stControlBlock& st) {
        std::memcpy(headless::MappingContents("TavoCtrl"), &st, sizeof st);
    }
    static void Open() { g_fnOpenControlBlock(); }
    static stProcessRecord& Record() { return platform::SharedSegment()->CommandTable[0]; }
    /// Whether a release is waiting; takes it away.
    static bool TakeRelease() {
        const bool bWaiting = Record().bChanged && Record().Command.bRelease;
        Record().bChanged = Record().Command.bRelease = 0;
        return bWaiting;
    }
    static std::vector<f32> Color(const CPanel_Base* p) { return {p->m_afColor, p->m_afColor + 4}; }
};

constexpr std::array<f32, 4> c_afGrey = {0.5f, 0.5f, 0.5f, 1.0f};

TEST_F(ControlBlock, IsMadeOfZerosOf256BytesAndClosed) {
    EXPECT_EQ(g_uCtrlBlockSize, 0u);
    Open();
    Open();
    u32 uBytes = 0;
    const u8* const pBlock = headless::MappingContents("TavoCtrl", &uBytes);
    ASSERT_NE(pBlock, nullptr);
    EXPECT_EQ(uBytes, 256u);
    EXPECT_EQ(g_uCtrlBlockSize, 256u);
    EXPECT_EQ(std::count(pBlock, pBlock + uBytes, 0), 256);
    EXPECT_EQ(headless::OpenWatchedBlocks(), 1u);
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
    g_fnCloseControlBlock();
    g_fnCloseControlBlock();
    EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
    g_fnPollControlBlock();
}

TEST_F(ControlBlock, AnotherGenerationAsksForOneRebuild) {
    Open();
    Write({CONTROL_REBUILD, 5, 0, {}});
    g_fnPollControlBlock();
    EXPECT_TRUE(TakeRelease());
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease()) << "the same generation";
    Write({CONTROL_REBUILD, 4, 0, {}});
    g_fnPollControlBlock();
    EXPECT_TRUE(TakeRelease()) << "a smaller one is another one too";
    Write({CONTROL_NOTHING, 9, 0, {}});
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
}

TEST_F(ControlBlock, GenerationZeroIsNoRequestOfANewProgram) {
    Open();
    Write({CONTROL_REBUILD, 0, 0, {}});
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
}

TEST_F(ControlBlock, ARequestThatStoodThereBeforeBuildsANewProgramOnce) {
    u8 au8[256] = {};
    au8[0] = CONTROL_REBUILD;
    au8[4] = 7;
    headless::SeedMapping("TavoCtrl", au8, sizeof au8);
    Open();
    g_fnPollControlBlock();
    EXPECT_TRUE(TakeRelease());
    // The release closes the block and the build opens it again; the generation is remembered.
    g_fnCloseControlBlock();
    Open();
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
}

TEST_F(ControlBlock, TheRequestKeepsWhatElseStandsInTheRecord) {
    Open();
    Record().Command.uTargetPid = 99;
    Record().Command.uStatus = 3;
    Write({CONTROL_REBUILD, 1, 0, {}});
    g_fnPollControlBlock();
    EXPECT_EQ(Record().Command.uTargetPid, 99u);
    EXPECT_EQ(Record().Command.uStatus, 3u);
    EXPECT_TRUE(TakeRelease());
}

TEST_F(ControlBlock, WithoutARecordTheRequestIsOnlyRemembered) {
    Open();
    UnregisterProcess(4242, 4343);
    Write({CONTROL_REBUILD, 1, 0, {}});
    g_fnPollControlBlock();
    RegisterProcess(4242, 4343);
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
}

TEST_F(ControlBlock, ColoursThePanelOfItsIndexInEveryManager) {
    Open();
    auto* const pSecond = g_apOSDManager[19] = new COSDManager;
    ASSERT_TRUE(pSecond->m_fnInitialize());
    CPanel_Base* apPanels[2][8];
    for (u32 u = 0; u < 8; ++u) {
        apPanels[0][u] = m_pManager->m_stArrays.m_ppStylePanel[u] = new recording::CPanel;
        apPanels[1][u] = pSecond->m_stArrays.m_ppStylePanel[u] = new recording::CPanel;
    }
    const std::vector<f32> aGrey(c_afGrey.begin(), c_afGrey.end());
    for (u32 uIndex = 0; uIndex < 3; ++uIndex) {
        Write({CONTROL_RECOLOUR, 0, uIndex, {{255, 0, 51, 102}, {0, 255, 0, 255}, {1, 2, 3, 4}}});
        g_fnPollControlBlock();
    }
    for (auto& apOfManager : apPanels) {
        EXPECT_EQ(Color(apOfManager[4]), (std::vector<f32>{1, 0, 51 / 255.0f, 102 / 255.0f}));
        EXPECT_EQ(Color(apOfManager[5]), (std::vector<f32>{0, 1, 0, 1}));
        EXPECT_EQ(Color(apOfManager[6]), (std::vector<f32>{1 / 255.0f, 2 / 255.0f, 3 / 255.0f, 4 / 255.0f}));
        for (const u32 u : {0u, 1u, 2u, 3u, 7u}) EXPECT_EQ(Color(apOfManager[u]), aGrey) << u;
    }
    // It goes on with every frame.
    apPanels[0][4]->m_fnSetColorB(9, 9, 9, 9);
    Write({CONTROL_RECOLOUR, 0, 0, {{255, 0, 51, 102}}});
    g_fnPollControlBlock();
    EXPECT_EQ(Color(apPanels[0][4])[0], 1);
}

TEST_F(ControlBlock, AnyOtherIndexColoursNothing) {
    Open();
    for (u32 u = 0; u < 64; ++u) g_ppStylePanel[u] = new recording::CPanel;
    for (const u32 uIndex : {3u, 4u, 63u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFCu, 0xFFFFFFFFu}) {
        Write({CONTROL_RECOLOUR, 0, uIndex, {{255, 0, 51, 102}, {255, 0, 51, 102}, {255, 0, 51, 102}}});
        g_fnPollControlBlock();
    }
    for (u32 u = 0; u < 64; ++u) EXPECT_EQ(Color(g_ppStylePanel[u])[0], 0.5f) << u;
    EXPECT_FALSE(TakeRelease());
}

TEST_F(ControlBlock, PanelsAndManagersThatAreMissingAreSkipped) {
    Open();
    Write({CONTROL_RECOLOUR, 0, 1, {}});
    g_fnPollControlBlock();
    g_apOSDManager[3] = new COSDManager; // has no arrays yet
    g_fnPollControlBlock();
    g_fnDestroyManagers();
    g_fnPollControlBlock();
}

TEST_F(ControlBlock, OtherOperationsDoNothing) {
    Open();
    g_ppStylePanel[4] = new recording::CPanel;
    for (const u32 uOp : {0u, 3u, 4u, 256u, 0xFFFFFFFFu, 0x80000001u}) {
        Write({static_cast<eControlOp>(uOp), 77, 0, {{1, 1, 1, 1}}});
        g_fnPollControlBlock();
    }
    EXPECT_EQ(Color(g_ppStylePanel[4])[0], 0.5f);
    EXPECT_FALSE(TakeRelease());
}

TEST_F(ControlBlock, AShorterOrCutBlockTurnsThePollOff) {
    const u8 au8[255] = {1, 0, 0, 0, 1};
    headless::SeedMapping("TavoCtrl", au8, sizeof au8);
    Open();
    EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
    const u8 au8Whole[256] = {};
    headless::SeedMapping("TavoCtrl", au8Whole, sizeof au8Whole);
    Open();
    Write({CONTROL_REBUILD, 1, 0, {}});
    headless::CutMapping("TavoCtrl", 23);
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
    headless::CutMapping("TavoCtrl", 256);
    g_fnPollControlBlock();
    EXPECT_TRUE(TakeRelease());
}

TEST_F(ControlBlock, WhereReadingIsACallOfTheSystemItIsReadTwentyTimesASecondAndActedOnInEachFrame) {
    headless::SetWatchedReadIsCall(true);
    Open();
    g_ppStylePanel[4] = new recording::CPanel;
    Write({CONTROL_RECOLOUR, 0, 0, {{255, 0, 0, 255}}});
    for (u32 u = 0; u < 100; ++u) {
        g_ppStylePanel[4]->m_fnSetColorB(9, 9, 9, 9);
        g_fnPollControlBlock();
        EXPECT_EQ(Color(g_ppStylePanel[4])[0], 1) << u;
        Wait(10);
    }
    EXPECT_LE(headless::WatchedReads(), 20u);
    EXPECT_GE(headless::WatchedReads(), 16u);
    Write({CONTROL_REBUILD, 1, 0, {}});
    Wait(51);
    g_fnPollControlBlock();
    g_fnPollControlBlock();
    EXPECT_TRUE(TakeRelease());
    g_fnPollControlBlock();
    EXPECT_FALSE(TakeRelease());
}

TEST_F(ControlBlock, HostileBytesDoNoHarm) {
    Open();
    for (u32 u = 0; u < 8; ++u) g_ppStylePanel[u] = new recording::CPanel;
    u32 uState = 12345;
    for (u32 uRound = 0; uRound < 20000; ++uRound) {
        u8* const pBlock = headless::MappingContents("TavoCtrl");
        for (u32 u = 0; u < 24; ++u) {
            uState = uState * 1664525 + 1013904223;
            pBlock[u] =
                u % 4 == 0 && uRound % 2 ? static_cast<u8>(uState >> 30) : static_cast<u8>(uState >> 24);
            if (uRound % 2 && u % 4 != 0 && u < 12) pBlock[u] = 0;
        }
        g_fnPollControlBlock();
        Record().bChanged = 0;
    }
    EXPECT_EQ(Color(g_ppStylePanel[3])[0], 0.5f);
    EXPECT_EQ(Color(g_ppStylePanel[7])[0], 0.5f);
}

TEST(ControlNames, ReservedNamesStand) {
    EXPECT_EQ(Narrow(g_wzControlBlock), "TavoCtrl");
    EXPECT_EQ(Narrow(g_wzPreviewEvent), "Global\\Event_FromVelmar_TimeToUpdate_OSD_Preview");
    EXPECT_EQ(Narrow(g_wzPreviewBlock), "Global\\SharedMem_FromVelmar_OSD_Preview");
    EXPECT_EQ(Narrow(g_wzToolboxBlock), "Global\\TavoToolboxSharedMem");
    EXPECT_EQ(g_uToolboxBlockBytes, 4096u);
}

} // namespace
