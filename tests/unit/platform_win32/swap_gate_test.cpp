// The gate between the detoured swap and the library.
#include "platform/clock.h"
#include "platform/swap_gate.h"
#include "platform/win32/windows_api.h"
#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

std::string g_strCalls;
DWORD g_uErrorAtSwap = 0;
std::atomic<bool> g_bStay{false}, g_bInside{false};
std::atomic<u32> g_uAhead{0};

void Ahead(void* hdc) noexcept {
    g_strCalls += hdc == reinterpret_cast<void*>(0x1234) ? "ahead " : "wrong ";
    SetLastError(1);
}
i32 Real(void* hdc) {
    g_strCalls += hdc == reinterpret_cast<void*>(0x1234) ? "real " : "wrong ";
    g_uErrorAtSwap = GetLastError();
    SetLastError(99);
    return 7;
}
i32 Throwing(void*) { throw 42; }
void Drain() {
    g_strCalls += "drain";
    SetLastError(3);
}
void StayAhead(void*) noexcept {
    ++g_uAhead;
    g_bInside = true;
    while (g_bStay) Sleep(1);
    g_bInside = false;
}
i32 Nothing(void*) { return 0; }
i32 Whole(void*) { return -1; }

using Swap = i32 (*)(void*);

Swap Gate(void (*fnAhead)(void*) noexcept, Swap fnReal) {
    const auto fnGate =
        reinterpret_cast<Swap>(platform::SwapGate({&Whole, fnAhead, reinterpret_cast<void*>(&Drain)}));
    platform::OpenSwapGate(reinterpret_cast<void*>(fnReal));
    return fnGate;
}

class SwapGate : public ::testing::Test {
  protected:
    void SetUp() override { g_strCalls.clear(); }
    void TearDown() override { platform::CloseSwapGate(); }
    void* const m_hdc = reinterpret_cast<void*>(0x1234);
};

} // namespace

TEST_F(SwapGate, GoesAheadThenSwapsThenDrainsAndAnswersWhatTheSwapDid) {
    const Swap fnGate = Gate(&Ahead, &Real);
    ASSERT_NE(fnGate, &Whole);
    SetLastError(77);
    EXPECT_EQ(fnGate(m_hdc), 7);
    EXPECT_EQ(GetLastError(), 99u);
    EXPECT_EQ(g_strCalls, "ahead real drain");
}

TEST_F(SwapGate, NotesTheEndOfTheRealSwapWhereItIsAskedTo) {
    static i64 s_iBefore, s_iStampAhead;
    const Swap fnGate = Gate(
        [](void*) noexcept {
            platform::StampSwap();
            s_iStampAhead = platform::SwapStamp();
            s_iBefore = platform::CounterNow();
        },
        [](void*) -> i32 {
            Sleep(20);
            SetLastError(99);
            return 7;
        });
    for (u32 u = 0; u < 2; ++u) {
        SetLastError(77);
        EXPECT_EQ(fnGate(m_hdc), 7);
        EXPECT_EQ(GetLastError(), 99u);
        EXPECT_EQ(s_iStampAhead, 0);
        EXPECT_GE(platform::SwapStamp() - s_iBefore, platform::CounterFrequency() / 100);
        EXPECT_LE(platform::SwapStamp(), platform::CounterNow());
    }
}

TEST_F(SwapGate, UnaskedItNotesNothing) {
    const Swap fnAsking = Gate([](void*) noexcept { platform::StampSwap(); }, &Nothing);
    fnAsking(m_hdc);
    const i64 iStamp = platform::SwapStamp();
    EXPECT_NE(iStamp, 0);
    const Swap fnGate = Gate(&Ahead, &Real);
    fnGate(m_hdc);
    platform::CloseSwapGate();
    fnGate(m_hdc);
    EXPECT_EQ(platform::SwapStamp(), iStamp);
}

TEST_F(SwapGate, ClosedItStillSwaps) {
    const Swap fnGate = Gate(&Ahead, &Real);
    platform::CloseSwapGate();
    SetLastError(77);
    EXPECT_EQ(fnGate(m_hdc), 7);
    EXPECT_EQ(g_uErrorAtSwap, 77u);
    EXPECT_EQ(g_strCalls, "real drain");
}

TEST_F(SwapGate, ClosingWaitsForWhoIsInside) {
    const Swap fnGate = Gate(&StayAhead, &Nothing);
    g_bStay = true;
    g_uAhead = 0;
    std::thread clSwapping([&] { fnGate(m_hdc); });
    while (!g_bInside) Sleep(1);
    std::atomic<bool> bClosed{false};
    std::thread clClosing([&] {
        platform::CloseSwapGate();
        EXPECT_FALSE(g_bInside);
        bClosed = true;
    });
    Sleep(50);
    EXPECT_FALSE(bClosed);
    fnGate(m_hdc); // nobody gets in any more
    g_bStay = false;
    clClosing.join();
    clSwapping.join();
    EXPECT_EQ(g_uAhead, 1u);
}

TEST_F(SwapGate, AnExceptionOfTheRealSwapReachesTheProgram) {
    const Swap fnGate = Gate(&Ahead, &Throwing);
    i32 iCaught = 0;
    try {
        fnGate(m_hdc);
    } catch (int i) {
        iCaught = i;
    }
    EXPECT_EQ(iCaught, 42);
}

TEST_F(SwapGate, TheLibraryIsNotHeldWhileAnotherThreadHasTheLoadersLock) {
    using LockLoader = LONG(NTAPI*)(ULONG, ULONG*, ULONG_PTR*);
    using UnlockLoader = LONG(NTAPI*)(ULONG, ULONG_PTR);
    const HMODULE hSystem = GetModuleHandleA("ntdll.dll");
    const auto fnLock =
        reinterpret_cast<LockLoader>(reinterpret_cast<void*>(GetProcAddress(hSystem, "LdrLockLoaderLock")));
    const auto fnUnlock = reinterpret_cast<UnlockLoader>(
        reinterpret_cast<void*>(GetProcAddress(hSystem, "LdrUnlockLoaderLock")));
    static std::atomic<i32> s_iHeld{-1};
    const Swap fnGate = Gate([](void*) noexcept { s_iHeld = platform::HoldLibraryForSwap(); }, &Nothing);
    std::thread clSwapping;
    std::atomic<u32> uStep{0};
    clSwapping = std::thread([&] {
        uStep = 1; // past the loader
        while (uStep != 2) Sleep(1);
        fnGate(m_hdc);
        uStep = 3;
        while (uStep != 4) Sleep(1);
        fnGate(m_hdc);
    });
    while (uStep != 1) Sleep(1);
    ULONG uState = 0;
    ULONG_PTR uCookie = 0;
    ASSERT_EQ(fnLock(0, &uState, &uCookie), 0);
    uStep = 2;
    while (uStep != 3) Sleep(1);
    EXPECT_EQ(s_iHeld, 0);
    fnUnlock(0, uCookie);
    uStep = 4;
    clSwapping.join();
    EXPECT_EQ(s_iHeld, 1);
}
