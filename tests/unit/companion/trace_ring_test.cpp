// The reader of frames: what it takes, what it tells as lost, and that it takes any bytes.
#include "companion/recording/live_figures.h"
#include "companion/recording/trace_reader.h"
#include "companion/recording/trace_ring.h"
#include "platform/tool.h"
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

namespace {

using namespace companion::recording;

/// A block as an instance writes it, with a small ring.
class Block {
  public:
    explicit Block(u32 uFrames = 8)
        : m_vec(g_uTraceHeaderBytes + uFrames * sizeof(stTraceFrame)), m_uFrames(uFrames) {
        stTraceHeader& st = Head();
        std::memcpy(st.acTag, g_szTraceTag, sizeof st.acTag);
        st.uVersion = g_uTraceVersion;
        st.uHeaderBytes = g_uTraceHeaderBytes;
        st.uFrameBytes = sizeof(stTraceFrame);
        st.uFrames = uFrames;
        st.uProcessId = 77;
        st.iFrequency = 1000000;
    }
    stTraceHeader& Head() { return *reinterpret_cast<stTraceHeader*>(m_vec.data()); }
    stTraceFrame& Place(u64 uNumber) {
        return reinterpret_cast<stTraceFrame*>(m_vec.data() + g_uTraceHeaderBytes)[(uNumber - 1) % m_uFrames];
    }
    void Write(u32 uCount = 1) {
        for (u32 u = 0; u < uCount; ++u) {
            const u64 uNumber = ++Head().uWritten;
            Place(uNumber) = {uNumber, static_cast<i64>(uNumber) * 100, 10, 1, 0, 5};
        }
    }
    std::optional<TraceHead> Read() const { return ReadTraceHead(m_vec.data(), m_vec.size()); }
    const u8* Bytes() const { return m_vec.data(); }
    size_t Size() const { return m_vec.size(); }

  private:
    std::vector<u8> m_vec;
    u32 m_uFrames;
};

std::vector<u64> Numbers(const std::vector<stTraceFrame>& list) {
    std::vector<u64> listNumbers;
    for (const stTraceFrame& st : list) listNumbers.push_back(st.uNumber);
    return listNumbers;
}

std::vector<u64> Take(TraceRing& ring, bool bAll = false) {
    std::vector<stTraceFrame> list;
    ring.Read(bAll, list);
    return Numbers(list);
}

using Listed = std::vector<u64>;

} // namespace

TEST(TraceHead, TellsWhatTheBlockSaysOfItself) {
    Block block;
    std::strcpy(block.Head().szRenderer, "card");
    std::memset(block.Head().szVendor, 'v', g_uTraceTextBytes); // without an end
    block.Head().wzProfile[0] = u'ü';
    block.Head().uLimit = 60;
    const auto st = block.Read();
    ASSERT_TRUE(st);
    EXPECT_EQ(st->strRenderer, "card");
    EXPECT_EQ(st->strVendor, std::string(g_uTraceTextBytes, 'v'));
    EXPECT_EQ(st->strProfile, "ü");
    EXPECT_EQ(st->uLimit, 60u);
    EXPECT_FALSE(st->bEnded);
}

TEST(TraceHead, WhatIsNoSuchBlockIsNone) {
    EXPECT_FALSE(ReadTraceHead(nullptr, 0));
    const auto fnIsRefused = [](auto fnBreak) {
        Block block;
        fnBreak(block.Head());
        return !block.Read();
    };
    EXPECT_FALSE(fnIsRefused([](stTraceHeader&) {}));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.acTag[0] = 'X'; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.uVersion = 2; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.uHeaderBytes = 0; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.uFrameBytes = 31; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.uFrames = 0; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.uFrames = 7; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.uFrames = 16; })) << "more than there is";
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.uFrames = 0x80000000; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.iFrequency = 0; }));
    EXPECT_TRUE(fnIsRefused([](stTraceHeader& st) { st.iFrequency = INT64_MAX; }));
}

TEST(TraceRing, BeginsWithTheNextFrameAndHoldsTheNewestBack) {
    Block block;
    block.Write(3);
    TraceRing ring;
    ring.Begin(block.Bytes(), *block.Read());
    EXPECT_EQ(Take(ring), Listed{});
    block.Write();
    EXPECT_EQ(Take(ring), Listed{}) << "its swap may still run";
    block.Write(2);
    EXPECT_EQ(Take(ring), (Listed{4, 5}));
    EXPECT_EQ(Take(ring), Listed{});
    EXPECT_EQ(Take(ring, true), Listed{6});
    EXPECT_EQ(Take(ring, true), Listed{});
    EXPECT_EQ(ring.Lost(), 0u);
}

TEST(TraceRing, WhatWasOverwrittenIsToldAsLost) {
    Block block;
    TraceRing ring;
    ring.Begin(block.Bytes(), *block.Read());
    block.Write(20); // 13 to 20 are there, and the writer may be at the place of 13
    EXPECT_EQ(Take(ring, true), (Listed{14, 15, 16, 17, 18, 19, 20}));
    EXPECT_EQ(ring.Lost(), 13u);
}

TEST(TraceRing, FramesOutOfTheirPlaceOrTimeAreLost) {
    Block block;
    TraceRing ring;
    ring.Begin(block.Bytes(), *block.Read());
    block.Write(4);
    block.Place(2).uNumber = 99;
    block.Place(3).iBefore = -5;
    EXPECT_EQ(Take(ring, true), (Listed{1, 4}));
    EXPECT_EQ(ring.Lost(), 2u);
}

TEST(TraceRing, ACounterThatRunsBackOrFarAheadDoesNoHarm) {
    Block block;
    TraceRing ring;
    ring.Begin(block.Bytes(), *block.Read());
    block.Write(4);
    EXPECT_EQ(Take(ring).size(), 3u);
    block.Head().uWritten = 1;
    EXPECT_EQ(Take(ring), Listed{});
    block.Head().uWritten = ~0ull;
    EXPECT_EQ(Take(ring), Listed{});
    block.Head().uWritten = 0;
    EXPECT_EQ(Take(ring, true), Listed{});
}

TEST(TraceReader, AsksInAFreePlaceAndBeatsWithEveryLook) {
    const auto pSegment = std::make_unique<stSharedSegment>();
    const u32 uOwn = platform::tool::OwnProcessId(); // that exists, and answers nothing
    stTraceRequests& st = pSegment->TraceRequests;
    st.aRequest[0] = {uOwn, 9, 0, 0};
    TraceReader reader(*pSegment, uOwn + 1000000);
    std::vector<stTraceFrame> list;
    EXPECT_EQ(reader.Poll(false, list), TraceState::Waiting);
    EXPECT_EQ(st.aRequest[1].uProcessId, uOwn + 1000000);
    EXPECT_EQ(st.aRequest[1].uBeat, 1u);
    EXPECT_EQ(st.uChanges, 1u);
    for (u32 u = 0; u < 8; ++u) reader.Poll(false, list);
    EXPECT_EQ(st.aRequest[1].uBeat, 9u);
    EXPECT_GT(st.uChanges, 2u) << "asked again, as nobody answers";
    EXPECT_EQ(st.aRequest[0].uBeat, 9u) << "another's";
}

TEST(TraceReader, SharesThePlaceOfItsProcess) {
    const auto pSegment = std::make_unique<stSharedSegment>();
    stTraceRequests& st = pSegment->TraceRequests;
    st.aRequest[4] = {1000123, 9, 0, 0};
    TraceReader reader(*pSegment, 1000123);
    std::vector<stTraceFrame> list;
    reader.Poll(false, list);
    EXPECT_EQ(st.aRequest[4].uBeat, 10u);
    EXPECT_EQ(st.aRequest[0].uProcessId, 0u);
}

TEST(TraceReader, SaysThatAProgramHasNoMemoryAndThatAllPlacesAreTaken) {
    const auto pSegment = std::make_unique<stSharedSegment>();
    stTraceRequests& st = pSegment->TraceRequests;
    st.aRequest[0] = {1000123, 0, ~0u, 0};
    std::vector<stTraceFrame> list;
    EXPECT_EQ(TraceReader(*pSegment, 1000123).Poll(false, list), TraceState::Refused);
    for (stTraceRequest& stOne : st.aRequest) stOne.uProcessId = platform::tool::OwnProcessId();
    EXPECT_EQ(TraceReader(*pSegment, 1000123).Poll(false, list), TraceState::Full);
}

TEST(TraceReader, APlaceOfAProcessThatIsGoneIsFree) {
    const auto pSegment = std::make_unique<stSharedSegment>();
    stTraceRequests& st = pSegment->TraceRequests;
    for (stTraceRequest& stOne : st.aRequest) stOne.uProcessId = 0x7FFFFFF0;
    std::vector<stTraceFrame> list;
    EXPECT_EQ(TraceReader(*pSegment, 0x7FFFFFF1).Poll(false, list), TraceState::Waiting);
    EXPECT_EQ(st.aRequest[0].uProcessId, 0x7FFFFFF1u);
}

TEST(LiveFigures, AreThoseOfTheLastMinuteInTenths) {
    LiveFigures live;
    for (const auto& st : live.Readings()) EXPECT_FALSE(st.iValue) << st.strName;
    std::vector<stTraceFrame> list;
    i64 iNow = 0;
    for (u64 u = 1; u <= 1000; ++u) {
        iNow += u % 200 == 0 ? 100000 : 16600;
        list.push_back({u, iNow, 0, 0, 0, 1});
    }
    live.Take(list, 1000000);
    const auto listReadings = live.Readings();
    ASSERT_EQ(listReadings.size(), 4u);
    const f64 fMean = (994 * 16.6 + 5 * 100.0) / 999;
    EXPECT_EQ(listReadings[0].strName, "AVG_FRAME#0");
    EXPECT_EQ(listReadings[0].iValue, static_cast<i32>(std::lround(10000.0 / fMean)));
    EXPECT_EQ(listReadings[1].strName, "P1_FRAME#0");
    EXPECT_EQ(listReadings[1].iValue, 602) << "5 of 999 frames are fewer than one in a hundred";
    EXPECT_EQ(listReadings[2].strName, "P01_FRAME#0");
    EXPECT_EQ(listReadings[2].iValue, 100);
    EXPECT_EQ(listReadings[3].strName, "STUTTER_CNT#0");
    EXPECT_EQ(listReadings[3].iValue, 4) << "the last frame waits for those behind it";
}

TEST(LiveFigures, ForgetWhatIsOlderThanAMinuteAndSkipGaps) {
    LiveFigures live;
    std::vector<stTraceFrame> list;
    for (u64 u = 1; u <= 10; ++u) list.push_back({u, static_cast<i64>(u) * 1000000, 0, 0, 0, 1});
    for (u64 u = 1; u <= 7000; ++u)
        list.push_back({100 + u, 50000000 + static_cast<i64>(u) * 10000, 0, 0, 0, 1});
    live.Take(list, 1000000);
    EXPECT_EQ(live.Readings()[0].iValue, 1000);
    EXPECT_EQ(live.Readings()[2].iValue, 1000);
}
