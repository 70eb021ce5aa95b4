// Recordings as text, and their figures.
#include "companion/recording/charts.h"
#include "companion/recording/figures.h"
#include "companion/recording/output_file.h"
#include "companion/recording/recording.h"
#include "companion/recording/report.h"
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace {

using namespace companion;
using namespace companion::recording;

std::string Sample() {
    Frame st{12.5, 7, g_fUnknown, 1.25, 0.05, 0.0, 42};
    std::string str = HeadText({{"program", "game\nwith a line end"}, {"profile", "Mine"}}) + FrameText(st);
    st = {29.1, 8, 16.6, g_fUnknown, 0.07, 2.0, 42};
    str += SensorText(20.0, "ODD,\"NAME\"#0", 71.5, "C") + FrameText(st) + LostText(29.1, 3);
    return str + EndText(30.0, "stopped, by \"me\"");
}

Result Parse(const std::string& strText, Recording& st) {
    Parser parser(st);
    for (size_t u = 0; u < strText.size();) {
        const size_t uEnd = std::min(strText.find('\n', u), strText.size());
        const Result stLine = parser.Line(std::string_view(strText).substr(u, uEnd - u));
        if (!stLine) return stLine;
        u = uEnd + 1;
    }
    return parser.End();
}

std::string Fault(const std::string& strText) {
    Recording st;
    return Parse(strText, st).strError;
}

std::string With(const std::string& strRow) { return HeadText({}) + strRow + "\n"; }

class TempFile : public testing::Test {
  protected:
    void SetUp() override {
        m_path =
            std::filesystem::temp_directory_path() / ("orvin-recording-" + std::to_string(getpid()) + ".csv");
        std::filesystem::remove_all(m_path);
    }
    void TearDown() override { std::filesystem::remove_all(m_path); }
    void Write(const std::string& str) const { std::ofstream(m_path, std::ios::binary) << str; }
    std::string Path() const { return m_path.string(); }
    std::filesystem::path m_path;
};

class RecordingFile : public TempFile {};
class OutputFileTest : public TempFile {};

Reported Made(const std::string& strName, const std::vector<f64>& listFrames) {
    Reported st;
    st.stRecording.strName = strName;
    st.stRecording.strEnd = "stopped";
    f64 fTime = 0.0;
    u64 uNumber = 0;
    st.stRecording.listFrames.push_back({0.0, ++uNumber});
    for (const f64 f : listFrames)
        st.stRecording.listFrames.push_back({fTime += f, ++uNumber, f, 1.0, 0.1, 0.0, 1});
    st.stFigures = FiguresOf(FrameTimes(st.stRecording));
    return st;
}

} // namespace

TEST(Recording, ComesBackAsItWasWritten) {
    Recording st;
    const Result stRead = Parse(Sample(), st);
    ASSERT_TRUE(stRead) << stRead.strError;
    ASSERT_EQ(st.listHead.size(), 2u);
    EXPECT_EQ(st.listHead[0].second, "game\\x0Awith a line end");
    ASSERT_EQ(st.listFrames.size(), 2u);
    EXPECT_DOUBLE_EQ(st.listFrames[0].fTime, 12.5);
    EXPECT_EQ(st.listFrames[0].uNumber, 7u);
    EXPECT_LT(st.listFrames[0].fFrame, 0.0);
    EXPECT_DOUBLE_EQ(st.listFrames[0].fSwap, 1.25);
    EXPECT_EQ(st.listFrames[0].uThread, 42u);
    EXPECT_DOUBLE_EQ(st.listFrames[1].fFrame, 16.6);
    EXPECT_LT(st.listFrames[1].fSwap, 0.0);
    EXPECT_DOUBLE_EQ(st.listFrames[1].fWait, 2.0);
    EXPECT_EQ(FrameTimes(st), std::vector<f64>{16.6});
    ASSERT_EQ(st.listSensors.size(), 1u);
    EXPECT_EQ(st.listSensors[0].strName, "ODD,\"NAME\"#0");
    EXPECT_EQ(st.listSensors[0].strUnit, "C");
    EXPECT_EQ(st.listSensors[0].listValues, (std::vector<std::pair<f64, f64>>{{20.0, 71.5}}));
    EXPECT_EQ(st.uLost, 3u);
    EXPECT_EQ(st.strEnd, "stopped, by \"me\"");
}

TEST(Recording, TakesLineEndsOfWindowsAndEmptyLines) {
    std::string str;
    for (const char c : Sample()) str += c == '\n' ? std::string("\r\n") : std::string(1, c);
    Recording st;
    EXPECT_TRUE(Parse(str + "\r\n\r\n", st));
    EXPECT_EQ(st.listFrames.size(), 2u);
}

TEST(Recording, EachFaultIsOneClearLine) {
    EXPECT_NE(Fault("").find("this is no recording"), std::string::npos);
    EXPECT_NE(Fault("a,b,c\n1,2,3\n").find("its first line"), std::string::npos);
    EXPECT_NE(Fault("# orvin-osd recording 1\nrow,time\n").find("columns"), std::string::npos);
    EXPECT_NE(Fault(HeadText({})).find("no frames"), std::string::npos);
    EXPECT_NE(Fault(With("frame,1,2")).find("11 fields"), std::string::npos);
    EXPECT_NE(Fault(With("frame,1,1,,,,,1,,,,")).find("11 fields"), std::string::npos);
    EXPECT_NE(Fault(With("frame,1,1,\"\",,,,1,,,\"")).find("11 fields"), std::string::npos);
    EXPECT_NE(Fault(With("frame,nan,1,,,,,1,,,")).find("no time: \"nan\""), std::string::npos);
    EXPECT_NE(Fault(With("frame,1,1,1e300,,,,1,,,")).find("no time of a frame"), std::string::npos);
    EXPECT_NE(Fault(With("frame,1,1,-1,,,,1,,,")).find("no time of a frame"), std::string::npos);
    EXPECT_NE(Fault(With("frame,1,x,,,,,1,,,")).find("no frame number"), std::string::npos);
    EXPECT_NE(Fault(With("frame,1,1,,,,,5000000000,,,")).find("no thread"), std::string::npos);
    EXPECT_NE(Fault(With("frame,2,1,,,,,1,,,\nframe,1,2,,,,,1,,,")).find("runs back"), std::string::npos);
    EXPECT_NE(Fault(With("sensor,1,,,,,,,A#0,inf,")).find("no value"), std::string::npos);
    EXPECT_NE(Fault(With("lost,1,,,,,,,,-4,")).find("no count"), std::string::npos);
    EXPECT_NE(Fault(With("\x1b[31m,1,,,,,,,,,")).find("no kind of row: \"\\x1B[31m\""), std::string::npos);
    EXPECT_NE(Fault(HeadText({}) + std::string(g_uLongestLine + 1, 'x')).find("too long"), std::string::npos);
}

TEST(Recording, WhatIsKeptIsBounded) {
    std::string str = HeadText({});
    for (size_t u = 0; u <= g_uMostSensors; ++u) str += SensorText(0.0, "N" + std::to_string(u), 1.0, "");
    EXPECT_NE(Fault(str).find("too many sensors"), std::string::npos);
    Head head;
    for (size_t u = 0; u <= g_uMostHeadLines; ++u) head.emplace_back("a", "b");
    EXPECT_NE(Fault(HeadText(head)).find("too many lines"), std::string::npos);
}

TEST_F(RecordingFile, IsReadAndAFaultNamesFileAndLine) {
    Write(Sample());
    Recording st;
    ASSERT_TRUE(ReadRecording(Path(), st));
    EXPECT_EQ(st.strName, m_path.filename().string());
    EXPECT_EQ(st.listFrames.size(), 2u);
    Write(With("frame,x,1,,,,,1,,,"));
    EXPECT_EQ(ReadRecording(Path(), st).strError, Path() + ": line 3: no time: \"x\"");
    Write(Sample() + "frame,29.2,9,0.1"); // the recorder was killed in the middle of a row
    EXPECT_TRUE(ReadRecording(Path(), st));
    Write(std::string(1 << 20, 'x'));
    EXPECT_EQ(ReadRecording(Path(), st).strError, Path() + ": line 1: the line is too long");
    EXPECT_EQ(ReadRecording(Path() + ".none", st).iCode, kNotFound);
    EXPECT_FALSE(ReadRecording(m_path.parent_path().string(), st));
}

TEST_F(OutputFileTest, WritesOverAFileOnlyWhereItIsToldTo) {
    OutputFile file;
    ASSERT_TRUE(file.Open(Path(), false));
    ASSERT_TRUE(file.Write("old"));
    ASSERT_TRUE(file.Close());
    EXPECT_EQ(OutputFile().Open(Path(), false).strError, Path() + " exists; --force writes over it");
    EXPECT_TRUE(OutputFile().Open(Path(), true));
    EXPECT_FALSE(OutputFile().Open(Path() + "/below", false));
}

#ifdef __linux__
TEST(OutputToADevice, AFullDiskIsSaid) {
    OutputFile file;
    ASSERT_TRUE(file.Open("/dev/full", false));
    const Result st = file.Write("text");
    EXPECT_EQ(st.iCode, kFailed);
    EXPECT_EQ(st.strError, "cannot write /dev/full: No space left on device");
}
#endif

// The nearest-rank examples that encyclopedias print.
TEST(Figures, NearestRankIsThePublishedOne) {
    const std::vector<f64> a{15, 20, 35, 40, 50};
    EXPECT_EQ(NearestRank(a, 50), 15);
    EXPECT_EQ(NearestRank(a, 300), 20);
    EXPECT_EQ(NearestRank(a, 400), 20);
    EXPECT_EQ(NearestRank(a, 500), 35);
    EXPECT_EQ(NearestRank(a, 1000), 50);
    const std::vector<f64> b{3, 6, 7, 8, 8, 10, 13, 15, 16, 20};
    EXPECT_EQ(NearestRank(b, 250), 7);
    EXPECT_EQ(NearestRank(b, 500), 8);
    EXPECT_EQ(NearestRank(b, 750), 15);
    const std::vector<f64> c{3, 6, 7, 8, 8, 9, 10, 13, 15, 16, 20};
    EXPECT_EQ(NearestRank(c, 250), 7);
    EXPECT_EQ(NearestRank(c, 500), 9);
    EXPECT_EQ(NearestRank(c, 750), 15);
    EXPECT_EQ(NearestRank(c, 1000), 20);
}

// Likewise of the interpolated kind: place (count - 1) * share.
TEST(Figures, InterpolationIsThePublishedOne) {
    const std::vector<f64> a{15, 20, 35, 40, 50};
    EXPECT_DOUBLE_EQ(Interpolated(a, 0.4), 29);
    const std::vector<f64> b{1, 2, 3, 4};
    EXPECT_DOUBLE_EQ(Interpolated(b, 0.75), 3.25);
    EXPECT_DOUBLE_EQ(Interpolated(b, 1.0), 4);
    EXPECT_DOUBLE_EQ(Interpolated(b, 0.0), 1);
}

// Certified values of the Statistical Reference Datasets NumAcc1 to NumAcc3.
TEST(Figures, MeanAndDeviationHoldTheCertifiedValues) {
    const Figures st1 = FiguresOf({10000001, 10000003, 10000002});
    EXPECT_DOUBLE_EQ(st1.fMean, 10000002);
    EXPECT_DOUBLE_EQ(st1.fDeviation, 1);
    std::vector<f64> list2{1.2}, list3{1000000.2};
    for (u32 u = 0; u < 500; ++u) {
        for (const f64 f : {1.1, 1.3}) list2.push_back(f);
        for (const f64 f : {1000000.1, 1000000.3}) list3.push_back(f);
    }
    const Figures st2 = FiguresOf(list2), st3 = FiguresOf(list3);
    EXPECT_NEAR(st2.fMean, 1.2, 1e-14);
    EXPECT_NEAR(st2.fDeviation, 0.1, 1e-13);
    EXPECT_NEAR(st3.fMean, 1000000.2, 1e-9);
    EXPECT_NEAR(st3.fDeviation, 0.1, 1e-8);
}

TEST(Figures, LowsOfAHandfulByHand) {
    // 1 to 100 ms, one frame each: 5050 ms in all.
    std::vector<f64> list;
    for (u32 u = 1; u <= 100; ++u) list.push_back(u);
    EXPECT_EQ(Low(list, LOW_PERCENTILE, 10), 99);
    EXPECT_DOUBLE_EQ(Low(list, LOW_INTERPOLATED, 10), 99.01);
    EXPECT_EQ(Low(list, LOW_MEAN_OF_WORST, 10), 100);
    EXPECT_EQ(Low(list, LOW_INTEGRAL, 10), 100) << "one frame is more than 1 % of the time";
    EXPECT_EQ(Low(list, LOW_PERCENTILE, 1), 100);
    EXPECT_DOUBLE_EQ(Low(list, LOW_INTERPOLATED, 1), 99.901);
    // 300 frames of 10 ms and 100 of 20 ms: the longest hundredth are 4 frames of 20.
    list.assign(300, 10.0);
    list.insert(list.end(), 100, 20.0);
    EXPECT_EQ(Low(list, LOW_MEAN_OF_WORST, 10), 20);
    EXPECT_EQ(Low(list, LOW_INTEGRAL, 10), 20);
    EXPECT_EQ(Low(list, LOW_PERCENTILE, 10), 20);
    for (u32 uKind = 0; uKind < LOW_KINDS; ++uKind) {
        EXPECT_EQ(Low({7.0}, static_cast<LowKind>(uKind), 1), 7.0);
        EXPECT_EQ(Low({}, static_cast<LowKind>(uKind), 1), 0.0);
        EXPECT_EQ(LowWords(static_cast<LowKind>(uKind), "1 %").find("%s"), std::string::npos);
    }
}

TEST(Figures, FindEveryStutterOfAPattern) {
    std::vector<f64> list;
    for (u32 u = 1; u <= 2000; ++u) list.push_back(u % 200 == 0 ? 100.0 : 16.6);
    const Figures st = FiguresOf(list);
    ASSERT_EQ(st.listStutters.size(), 10u);
    for (size_t u = 0; u < 10; ++u) {
        EXPECT_EQ(st.listStutters[u].uIndex, 200 * (u + 1) - 1);
        EXPECT_EQ(st.listStutters[u].fMedian, 16.6);
    }
    EXPECT_NEAR(st.fStutterShare, 1000.0 / (1990 * 16.6 + 1000.0) * 100.0, 1e-9);
}

TEST(Figures, ASlowerStretchIsNoStutterAndNorIsWhatNobodySees) {
    std::vector<f64> list(100, 8.0);
    list.insert(list.end(), 100, 33.0);
    EXPECT_LE(FiguresOf(list).listStutters.size(), 1u);
    list.assign(100, 1.0);
    list[50] = 4.9; // less than 4 ms more
    EXPECT_TRUE(FiguresOf(list).listStutters.empty());
    list[50] = 5.0;
    EXPECT_EQ(FiguresOf(list).listStutters.size(), 1u);
    EXPECT_TRUE(FiguresOf({}).listStutters.empty());
    EXPECT_TRUE(FiguresOf({5.0, 50.0}).listStutters.empty()) << "nothing to hold it against";
}

TEST(Report, SaysTheSameInJsonAsInText) {
    const std::vector<Reported> list{Made("a.csv", std::vector<f64>(200, 20.0)),
                                     Made("a.csv", {10, 10, 60, 10})};
    const auto js = nlohmann::json::parse(ReportJson(list));
    ASSERT_EQ(js.size(), 2u);
    EXPECT_EQ(js[0]["frames"], 200);
    EXPECT_DOUBLE_EQ(js[0]["fps"]["average"], 50.0);
    EXPECT_DOUBLE_EQ(js[1]["fps"]["minimum"], 16.666667);
    EXPECT_DOUBLE_EQ(js[1]["lows"]["mean_of_worst"]["0.1%"]["frame_ms"], 60.0);
    EXPECT_DOUBLE_EQ(js[1]["stutters"][0]["time_ms"], 80.0);
    const std::string strText = ReportText(list);
    EXPECT_NE(strText.find("50.0 fps"), std::string::npos);
    EXPECT_NE(strText.find("a (2)"), std::string::npos);
    EXPECT_NE(strText.find("16.7 fps (60.00 ms)"), std::string::npos);
}

TEST(Report, ThePageNeedsNothingFromElsewhereAndEscapesWhatItIsTold) {
    Reported st = Made("<script>.csv", {10, 10, 60, 10});
    st.stRecording.listHead = {{"program", "<b>&\"'"}, {"gl vendor", "</dl>"}};
    st.stRecording.listSensors = {{"X<Y#0", "C", {{0.0, 1.0}, {5.0, 2.0}}}, {"ONE#0", "", {{0.0, 0.0}}}};
    st.stRecording.uLost = 5;
    const std::string strPage = ReportPage({st, Made("b.csv", std::vector<f64>(5000, 16.6))});
    for (const char* szForeign : {"<script", "http", "src=", "@import", "url(", "<b>&\"'", "X<Y"})
        EXPECT_EQ(strPage.find(szForeign),
                  szForeign == std::string("http") ? strPage.find("http-equiv") : std::string::npos)
            << szForeign;
    EXPECT_NE(strPage.find("5 frames were lost"), std::string::npos);
    EXPECT_EQ(strPage.find("nan"), std::string::npos);
    EXPECT_EQ(strPage.find("inf"), std::string::npos);
    EXPECT_NE(strPage.find("2 recordings compared"), std::string::npos);
}

TEST(Report, OddRecordingsGiveAPageToo) {
    for (const std::vector<f64>& list :
         {std::vector<f64>{0.0, 0.0}, {1e12}, {0.0001}, {5.0, 1e9}, std::vector<f64>(3000, 0.0)}) {
        const std::string strPage = ReportPage({Made("odd", list)});
        EXPECT_EQ(strPage.find("nan"), std::string::npos) << list[0];
        EXPECT_EQ(strPage.find("\"inf"), std::string::npos) << list[0];
        ReportText({Made("odd", list)});
        EXPECT_EQ(nlohmann::json::parse(ReportJson({Made("odd", list)})).size(), 1u);
    }
}

TEST(Charts, TicksAreRound) {
    EXPECT_EQ(Ticks(0.0, 100.0, 5), (std::vector<f64>{0, 20, 40, 60, 80, 100}));
    EXPECT_EQ(Ticks(3.0, 11.0, 4), (std::vector<f64>{4, 6, 8, 10}));
    EXPECT_TRUE(Ticks(1.0, 1.0, 5).empty());
    for (const f64 f : {1e-6, 0.7, 12345.0, 1e12}) {
        EXPECT_GE(Ticks(0.0, f, 5).size(), 3u) << f;
        EXPECT_LE(Ticks(0.0, f, 5).size(), 7u) << f;
    }
}
