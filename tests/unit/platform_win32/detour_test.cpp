#include "platform/minhook.h"
#include "tests/unit/platform_win32/code_block.h"
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace {

struct stPrologue {
    const char* m_szName;
    std::vector<u8> m_abCode;
    i64 m_iResult; ///< for the argument 5
};

const std::vector<stPrologue>& Accepted() {
    static const std::vector<stPrologue> aPrologues = {
        {"long no-op", {0x48, 0x8D, 0xA4, 0x24, 0, 0, 0, 0, 0x48, 0x8D, 0x41, 0x01, 0xC3}, 6},
        {"push and frame",
         {0x53, 0x48, 0x83, 0xEC, 0x20, 0x48, 0x8D, 0x41, 0x02, 0x48, 0x83, 0xC4, 0x20, 0x5B, 0xC3},
         7},
        {"five single bytes", {0x55, 0x90, 0x90, 0x90, 0x90, 0x48, 0x8D, 0x41, 0x03, 0x5D, 0xC3}, 8},
        {"load relative to rip",
         {0x48, 0x8B, 0x05, 4, 0, 0, 0, 0x48, 0x01, 0xC8, 0xC3, 100, 0, 0, 0, 0, 0, 0, 0},
         105},
        {"store with immediate relative to rip",
         {0xC7, 0x05, 9, 0, 0, 0, 7, 0, 0, 0, 0x8B, 0x05, 3, 0, 0, 0, 0x01, 0xC8, 0xC3, 0, 0, 0, 0},
         12},
        {"compare relative to rip", {0x80, 0x3D, 5, 0, 0, 0, 1, 0x48, 0x8D, 0x41, 0x0D, 0xC3, 0x01}, 18},
        {"vector load relative to rip",
         {0xC5, 0xFA, 0x10, 0x05, 5, 0, 0, 0, 0x48, 0x8D, 0x41, 0x0E, 0xC3, 0, 0, 0, 0},
         19},
        {"call", {0xE8, 4, 0, 0, 0, 0x48, 0x01, 0xC8, 0xC3, 0xB8, 40, 0, 0, 0, 0xC3}, 45},
        {"jump", {0xE9, 3, 0, 0, 0, 0xCC, 0xCC, 0xCC, 0x48, 0x8D, 0x41, 0x09, 0xC3}, 14},
        {"jump through a pointer beside it", {0xFF, 0x25, 0xF2, 0xFF, 0xFF, 0xFF}, 17},
        {"short condition, not taken",
         {0x48, 0x85, 0xC9, 0x74, 0x05, 0x48, 0x8D, 0x41, 0x0A, 0xC3, 0xB8, 77, 0, 0, 0, 0xC3},
         15},
        {"short condition, taken",
         {0x48, 0x85, 0xC9, 0x75, 0x05, 0x48, 0x8D, 0x41, 0x0A, 0xC3, 0xB8, 77, 0, 0, 0, 0xC3},
         77},
        {"near condition, taken",
         {0x48, 0x85, 0xC9, 0x0F, 0x85, 5, 0, 0, 0, 0x48, 0x8D, 0x41, 0x0B, 0xC3, 0xB8, 78, 0, 0, 0, 0xC3},
         78},
        {"landing pad first", {0xF3, 0x0F, 0x1E, 0xFA, 0x55, 0x48, 0x8D, 0x41, 0x10, 0x5D, 0xC3}, 21},
        {"later loop that stays clear of the beginning",
         {0x48, 0x31, 0xC0, 0x90, 0x90, 0x48, 0x01, 0xC8, 0x48, 0xFF, 0xC9, 0x75, 0xF8, 0xC3},
         15},
    };
    return aPrologues;
}

const std::vector<stPrologue>& Refused() {
    static const std::vector<stPrologue> aPrologues = {
        {"returns at once", {0xC3}, 0},
        {"returns in three bytes", {0x31, 0xC0, 0xC3}, 0},
        {"short jump first", {0xEB, 0x10}, 0},
        {"loop", {0x90, 0xE2, 0x05, 0x90, 0x90, 0x90, 0xC3}, 0},
        {"jrcxz", {0xE3, 0x05, 0x90, 0x90, 0x90, 0x90, 0x90, 0x90, 0xC3}, 0},
        {"branch to its own start", {0x48, 0xFF, 0xC9, 0x75, 0xFB, 0xC3}, 0},
        {"later branch into the beginning",
         {0x31, 0xC0, 0x48, 0x01, 0xC8, 0x48, 0xFF, 0xC9, 0x75, 0xF8, 0xC3},
         0},
        {"branch into the beginning behind an early return",
         {0x48, 0x85, 0xC9, 0x90, 0x90, 0x74, 0x01, 0xC3, 0xEB, 0xF9},
         0},
        {"call that would return into the jump", {0xFF, 0xD0, 0x90, 0x90, 0x90, 0x90, 0xC3}, 0},
        {"not an instruction", {0x06, 0x06, 0x06, 0x06, 0x06, 0x06}, 0},
    };
    return aPrologues;
}

CodeFunction g_fnTrampoline = nullptr;
std::atomic<u32> g_uDetourCalls{0};

i64 Detour(i64 iValue) {
    ++g_uDetourCalls;
    return g_fnTrampoline(iValue) + 1000;
}

void* DetourAddress() { return reinterpret_cast<void*>(&Detour); }

MH_STATUS Lay(u8* pTarget) {
    void* pTrampoline = nullptr;
    const MH_STATUS status = MH_CreateHook(pTarget, DetourAddress(), &pTrampoline);
    if (status != MH_OK) return status;
    g_fnTrampoline = AsFunction(static_cast<u8*>(pTrampoline));
    return MH_EnableHook(pTarget);
}

class Detours : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(MH_Initialize(), MH_OK);
        g_uDetourCalls = 0;
    }
    void TearDown() override { MH_Uninitialize(); }
    CodeBlock m_block;
};

/// Places a function so that it starts at the wanted distance from an aligned word, the pointer of the jump
/// prologue eight bytes before it and its goal further on.
u8* Place(CodeBlock& block, const stPrologue& prologue, u32 uMisalignment) {
    u8* pTarget = block.Put(64 + uMisalignment, prologue.m_abCode);
    u8* pGoal = block.Put(512, {0x48, 0x8D, 0x41, 0x0C, 0xC3});
    std::memcpy(pTarget - 8, &pGoal, sizeof(pGoal));
    return pTarget;
}

constexpr u32 kNoOpBytes = 8; // the first instruction of the function below

std::vector<u8> OneInstructionFunction() {
    return {0x48, 0x8D, 0xA4, 0x24, 0, 0, 0, 0, 0x48, 0x8D, 0x41, 0x01, 0xC3};
}

/// Another engine's detour: five bytes of jump, a counter, and on to what stood there before.
class PlainJump {
  public:
    PlainJump(CodeBlock& block, u8* pTarget) : m_pTarget(pTarget) {
        m_pStub = block.Put(1024, {0xFF, 0x05, 0x1A, 0, 0, 0, 0xFF, 0x25, 0x0C, 0, 0, 0});
        std::memset(m_pStub + 32, 0, 4);
    }
    void Lay() {
        std::memcpy(m_abBefore, m_pTarget, 5);
        const u8* pNext = m_pTarget + kNoOpBytes;
        if (m_pTarget[0] == 0xE9) {
            i32 iDistance = 0;
            std::memcpy(&iDistance, m_pTarget + 1, 4);
            pNext = m_pTarget + 5 + iDistance;
        }
        std::memcpy(m_pStub + 24, &pNext, sizeof(pNext));
        const i32 iToStub = static_cast<i32>(m_pStub - (m_pTarget + 5));
        m_pTarget[0] = 0xE9;
        std::memcpy(m_pTarget + 1, &iToStub, 4);
    }
    void Undo() { std::memcpy(m_pTarget, m_abBefore, 5); }
    u32 Calls() const {
        u32 uCalls = 0;
        std::memcpy(&uCalls, m_pStub + 32, 4);
        return uCalls;
    }

  private:
    u8* m_pTarget;
    u8* m_pStub;
    u8 m_abBefore[5] = {};
};

/// Lays and undoes while another thread keeps calling; every call has to end with or without the detour.
void LayAndUndoUnderCalls(CodeFunction fnTarget, u8* pTarget, u32 uRounds) {
    const std::vector<u8> abBefore = BytesAt(pTarget);
    std::atomic<bool> bStop{false};
    std::atomic<u32> uCalls{0}, uWrong{0};
    std::thread caller([&] {
        while (!bStop || uCalls < 10000) {
            const i64 iResult = fnTarget(5);
            if (iResult != 6 && iResult != 1006) ++uWrong;
            ++uCalls;
        }
    });
    for (u32 i = 0; i < uRounds; ++i) {
        ASSERT_EQ(Lay(pTarget), MH_OK);
        ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
    }
    bStop = true;
    caller.join();
    EXPECT_EQ(uWrong, 0u);
    EXPECT_GE(uCalls, 10000u);
    EXPECT_EQ(BytesAt(pTarget), abBefore);
}

} // namespace

TEST_F(Detours, EveryPrologueRunsThroughTheDetourAndGetsItsBytesBack) {
    for (const stPrologue& prologue : Accepted()) {
        for (const u32 uMisalignment : {0u, 3u, 4u, 7u}) {
            SCOPED_TRACE(std::string(prologue.m_szName) + " at " + std::to_string(uMisalignment));
            CodeBlock block;
            u8* pTarget = Place(block, prologue, uMisalignment);
            const std::vector<u8> abBefore = BytesAt(block.Base(), 1024);
            ASSERT_EQ(AsFunction(pTarget)(5), prologue.m_iResult);
            ASSERT_EQ(Lay(pTarget), MH_OK);
            EXPECT_EQ(AsFunction(pTarget)(5), prologue.m_iResult + 1000);
            EXPECT_EQ(g_fnTrampoline(5), prologue.m_iResult);
            ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
            EXPECT_EQ(AsFunction(pTarget)(5), prologue.m_iResult);
            EXPECT_EQ(g_fnTrampoline(5), prologue.m_iResult) << "a thread may still be on its way through";
            // One of the functions writes into its own data; all else has to be as it was.
            EXPECT_EQ(BytesAt(pTarget, 10), std::vector<u8>(abBefore.begin() + 64 + uMisalignment,
                                                            abBefore.begin() + 74 + uMisalignment));
        }
    }
}

TEST_F(Detours, BothWaysOfADisplacedConditionWork) {
    u8* pTarget = m_block.Put(
        64, {0x48, 0x85, 0xC9, 0x74, 0x05, 0x48, 0x8D, 0x41, 0x0A, 0xC3, 0xB8, 77, 0, 0, 0, 0xC3});
    ASSERT_EQ(Lay(pTarget), MH_OK);
    EXPECT_EQ(AsFunction(pTarget)(5), 1015);
    EXPECT_EQ(AsFunction(pTarget)(0), 1077);
}

TEST_F(Detours, BeginningsThatCanNotBeMovedAreRefusedUntouched) {
    for (const stPrologue& prologue : Refused()) {
        SCOPED_TRACE(prologue.m_szName);
        CodeBlock block;
        u8* pTarget = block.Put(64, prologue.m_abCode);
        const std::vector<u8> abBefore = BytesAt(block.Base(), 1024);
        EXPECT_EQ(Lay(pTarget), MH_ERROR_UNSUPPORTED_FUNCTION);
        EXPECT_EQ(BytesAt(block.Base(), 1024), abBefore);
        EXPECT_EQ(MH_RemoveHook(pTarget), MH_ERROR_NOT_CREATED);
    }
}

TEST_F(Detours, DataIsNotAFunction) {
    static u8 abData[64] = {0x90, 0x90, 0x90, 0x90, 0x90, 0x90, 0xC3};
    EXPECT_EQ(MH_CreateHook(abData, DetourAddress(), nullptr), MH_ERROR_NOT_EXECUTABLE);
    EXPECT_EQ(MH_CreateHook(nullptr, DetourAddress(), nullptr), MH_ERROR_NOT_EXECUTABLE);
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    EXPECT_EQ(MH_CreateHook(pTarget, abData, nullptr), MH_ERROR_NOT_EXECUTABLE);
}

TEST_F(Detours, LaidTwiceAndUndoneTwiceIsReportedAndHarmless) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    const std::vector<u8> abBefore = BytesAt(pTarget);
    ASSERT_EQ(Lay(pTarget), MH_OK);
    EXPECT_EQ(MH_CreateHook(pTarget, DetourAddress(), nullptr), MH_ERROR_ALREADY_CREATED);
    EXPECT_EQ(MH_EnableHook(pTarget), MH_ERROR_ENABLED);
    EXPECT_EQ(AsFunction(pTarget)(5), 1006);
    EXPECT_EQ(MH_RemoveHook(pTarget), MH_OK);
    EXPECT_EQ(MH_RemoveHook(pTarget), MH_ERROR_NOT_CREATED);
    EXPECT_EQ(BytesAt(pTarget), abBefore);
    EXPECT_EQ(AsFunction(pTarget)(5), 6);
}

TEST_F(Detours, DisabledAndEnabledAgain) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    ASSERT_EQ(Lay(pTarget), MH_OK);
    EXPECT_EQ(MH_DisableHook(pTarget), MH_OK);
    EXPECT_EQ(MH_DisableHook(pTarget), MH_ERROR_DISABLED);
    EXPECT_EQ(AsFunction(pTarget)(5), 6);
    EXPECT_EQ(MH_EnableHook(pTarget), MH_OK);
    EXPECT_EQ(AsFunction(pTarget)(5), 1006);
}

TEST_F(Detours, UninitializeUndoesEverything) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    const std::vector<u8> abBefore = BytesAt(pTarget);
    ASSERT_EQ(Lay(pTarget), MH_OK);
    EXPECT_EQ(MH_Initialize(), MH_ERROR_ALREADY_INITIALIZED);
    EXPECT_EQ(MH_Uninitialize(), MH_OK);
    EXPECT_EQ(MH_Uninitialize(), MH_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(MH_EnableHook(pTarget), MH_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(BytesAt(pTarget), abBefore);
    EXPECT_EQ(AsFunction(pTarget)(5), 6);
}

TEST_F(Detours, ManyLayingsOfOneFunctionUseOneTrampoline) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    ASSERT_EQ(Lay(pTarget), MH_OK);
    const CodeFunction fnFirst = g_fnTrampoline;
    for (u32 i = 0; i < 1000; ++i) {
        ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
        ASSERT_EQ(Lay(pTarget), MH_OK);
        ASSERT_EQ(g_fnTrampoline, fnFirst);
    }
}

TEST_F(Detours, UndoneTenThousandTimesWhileAnotherThreadCalls) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    LayAndUndoUnderCalls(AsFunction(pTarget), pTarget, 10000);
}

TEST_F(Detours, UndoneWhileAnotherThreadCallsWithManyInstructionsAcrossWords) {
    u8* pTarget = m_block.Put(64 + 6, {0x90, 0x90, 0x90, 0x90, 0x90, 0x48, 0x8D, 0x41, 0x01, 0xC3});
    LayAndUndoUnderCalls(AsFunction(pTarget), pTarget, 100);
}

TEST_F(Detours, ForeignDetourLaidBeforeOursIsRestoredExactly) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    PlainJump foreign(m_block, pTarget);
    foreign.Lay();
    const std::vector<u8> abForeign = BytesAt(pTarget);
    ASSERT_EQ(Lay(pTarget), MH_OK);
    EXPECT_EQ(AsFunction(pTarget)(5), 1006);
    EXPECT_EQ(foreign.Calls(), 1u);
    ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
    EXPECT_EQ(BytesAt(pTarget), abForeign);
    EXPECT_EQ(AsFunction(pTarget)(5), 6);
    EXPECT_EQ(foreign.Calls(), 2u);
}

TEST_F(Detours, ForeignDetourLaidAfterOursStaysAndWorksAfterUndo) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    PlainJump foreign(m_block, pTarget);
    ASSERT_EQ(Lay(pTarget), MH_OK);
    foreign.Lay();
    const std::vector<u8> abForeign = BytesAt(pTarget);
    EXPECT_EQ(AsFunction(pTarget)(5), 1006);
    ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
    EXPECT_EQ(BytesAt(pTarget), abForeign);
    EXPECT_EQ(AsFunction(pTarget)(5), 6) << "through the other engine, our relay and the trampoline";
    EXPECT_EQ(foreign.Calls(), 2u);
    EXPECT_EQ(g_uDetourCalls, 1u);
    foreign.Undo(); // brings our jump back
    EXPECT_EQ(AsFunction(pTarget)(5), 6);
    ASSERT_EQ(Lay(pTarget), MH_OK);
    EXPECT_EQ(AsFunction(pTarget)(5), 1006);
}

TEST_F(Detours, LaidAgainOverAForeignDetourThatBuriedTheFirstOne) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    PlainJump foreign(m_block, pTarget);
    ASSERT_EQ(Lay(pTarget), MH_OK);
    foreign.Lay();
    ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
    const std::vector<u8> abForeign = BytesAt(pTarget);
    ASSERT_EQ(Lay(pTarget), MH_OK);
    EXPECT_EQ(AsFunction(pTarget)(5), 1006);
    EXPECT_EQ(foreign.Calls(), 1u);
    ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
    EXPECT_EQ(BytesAt(pTarget), abForeign);
    EXPECT_EQ(AsFunction(pTarget)(5), 6);
}

TEST_F(Detours, ForeignDetourThatLeavesUnderOursKeepsItsBytes) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    const std::vector<u8> abBefore = BytesAt(pTarget);
    PlainJump foreign(m_block, pTarget);
    foreign.Lay();
    ASSERT_EQ(Lay(pTarget), MH_OK);
    foreign.Undo();
    ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
    EXPECT_EQ(BytesAt(pTarget), abBefore);
    EXPECT_EQ(AsFunction(pTarget)(5), 6);
}

TEST_F(Detours, ForeignDetourBetweenCreationAndEnablingIsTakenIn) {
    u8* pTarget = m_block.Put(64, OneInstructionFunction());
    PlainJump foreign(m_block, pTarget);
    void* pTrampoline = nullptr;
    ASSERT_EQ(MH_CreateHook(pTarget, DetourAddress(), &pTrampoline), MH_OK);
    g_fnTrampoline = AsFunction(static_cast<u8*>(pTrampoline));
    foreign.Lay();
    const std::vector<u8> abForeign = BytesAt(pTarget);
    ASSERT_EQ(MH_EnableHook(pTarget), MH_OK);
    EXPECT_EQ(AsFunction(pTarget)(5), 1006);
    EXPECT_EQ(foreign.Calls(), 1u);
    ASSERT_EQ(MH_RemoveHook(pTarget), MH_OK);
    EXPECT_EQ(BytesAt(pTarget), abForeign);
}

TEST_F(Detours, FunctionWhoseMemoryWentAwayIsUndoneWithoutTouchingIt) {
    void* pPage = VirtualAlloc(nullptr, 0x1000, MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE);
    const std::vector<u8> abCode = OneInstructionFunction();
    std::memcpy(pPage, abCode.data(), abCode.size());
    ASSERT_EQ(Lay(static_cast<u8*>(pPage)), MH_OK);
    VirtualFree(pPage, 0, MEM_RELEASE);
    EXPECT_EQ(MH_RemoveHook(pPage), MH_OK);
}
