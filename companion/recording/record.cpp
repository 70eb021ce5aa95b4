#include "companion/recording/record.h"
#include "companion/profile_commands.h"
#include "companion/profile_folder.h"
#include "companion/recording/output_file.h"
#include "companion/recording/recording.h"
#include "companion/recording/trace_reader.h"
#include "companion/sensors/collector.h"
#include "companion/target.h"
#include "companion/utf.h"
#include "platform/tool_about.h"
#include <algorithm>
#include <chrono>
#include <ctime>

namespace companion {
namespace {

using namespace recording;
using Clock = std::chrono::steady_clock;

constexpr u32 kPause = 50;         ///< milliseconds between two looks; the ring holds a thousand times that
constexpr u32 kSensorPause = 500;  ///< milliseconds, unless said otherwise
constexpr u32 kAnswerSeconds = 10; ///< until a program that does not answer is given up

/// The steady clock of this system counts from where the programs' performance counter does.
i64 NowNanoseconds() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
}

std::string TimeText(const char* szFormat) {
    const std::time_t tNow = std::time(nullptr);
    char sz[64] = {};
    if (const std::tm* const pTime = std::gmtime(&tNow)) std::strftime(sz, sizeof sz, szFormat, pTime);
    return sz;
}

/// One recording while it runs.
class Recorder {
  public:
    Recorder(const ControlLibrary& stLibrary, const Options& stOptions, u32 uProcessId)
        : m_stOptions(stOptions), m_uProcessId(uProcessId),
          m_strProgram(platform::tool::InspectProcess(uProcessId).strName),
          m_reader(*stLibrary.pSegment, uProcessId), m_collector(sensors::SystemSources()) {}

    Result Run();

  private:
    void Announce() const;
    Result AwaitAnswer();
    Result Begin();
    Result Turn(bool& bGoOn);
    Result Last();
    Head MakeHead() const;
    std::string OutputPath() const;
    void TakeFrames(bool bAll);
    void TakeFrame(const stTraceFrame& stFrame);
    void TakeSensors();
    std::string EndReason();
    bool IsStopped();
    f64 Milliseconds(i64 iTicks) const {
        return static_cast<f64>(iTicks) * 1000.0 / static_cast<f64>(m_reader.Head().iFrequency);
    }
    f64 Now() const { return static_cast<f64>(NowNanoseconds() - m_iBegin) / 1e6; }

    const Options& m_stOptions;
    const u32 m_uProcessId;
    const std::string m_strProgram;
    TraceReader m_reader;
    sensors::Collector m_collector;
    OutputFile m_output;
    std::string m_strPath;
    std::string m_strText; ///< that is to be written next
    i64 m_iBegin = 0;      ///< nanoseconds
    f64 m_fSensors = 0.0;  ///< when they are due
    f64 m_fLast = 0.0;     ///< time of the last frame
    u64 m_uFrames = 0, m_uLost = 0;
    u64 m_uLastNumber = 0; ///< of the last frame; 0: the next one has no neighbour
    i64 m_iLastTicks = 0;
    f64 m_fSilentSince = -1.0;
    u32 m_uMissing = 0; ///< looks in which the file was missing that this goes on by
    TraceState m_eState = TraceState::Waiting;
};

std::string Recorder::OutputPath() const {
    if (!m_stOptions.strOutput.empty()) return m_stOptions.strOutput;
    return RecordingName(m_strProgram) + ".csv";
}

Head Recorder::MakeHead() const {
    const TraceHead& st = m_reader.Head();
    const std::string strLimit = st.uLimit ? std::to_string(st.uLimit) + " frames a second" : "none";
    return {{"program", m_strProgram},
            {"process", std::to_string(m_uProcessId)},
            {"started", TimeText("%Y-%m-%dT%H:%M:%SZ")},
            {"recorder", std::string("orvin-osd ") + ORVIN_VERSION},
            {"system", platform::tool::SystemText()},
            {"processor", platform::tool::ProcessorText()},
            {"gl vendor", st.strVendor},
            {"gl renderer", st.strRenderer},
            {"gl version", st.strVersion},
            {"size", std::to_string(st.uWidth) + "x" + std::to_string(st.uHeight)},
            {"profile", st.strProfile},
            {"limit", strLimit}};
}

void Recorder::Announce() const {
    std::printf("recording %s (%u); end with Ctrl-C\n", Printable(m_strProgram).c_str(), m_uProcessId);
    std::fflush(stdout);
}

/// One look alone may fall between a file and the one that takes its place.
bool Recorder::IsStopped() {
    std::error_code error;
    const bool bThere = m_stOptions.strWhile.empty() ||
                        std::filesystem::exists(PathOfText(m_stOptions.strWhile), error) || error;
    m_uMissing = bThere ? 0 : m_uMissing + 1;
    return m_uMissing > 1 || platform::tool::WaitForStop(kPause);
}

Result Recorder::AwaitAnswer() {
    std::vector<stTraceFrame> listNone;
    for (u32 u = 0; u < kAnswerSeconds * 1000 / kPause; ++u) {
        m_eState = m_reader.Poll(false, listNone);
        if (u == 0) Announce();
        if (m_eState == TraceState::Running) return {};
        if (m_eState == TraceState::Refused)
            return Result::Fail(m_strProgram + " has no memory for a recording");
        if (m_eState == TraceState::Full)
            return Result::Fail("other companions record " + std::to_string(g_uTraceRequests) +
                                " programs already");
        if (IsStopped()) return Result::Fail("stopped");
        if (platform::tool::IsProcessGone(m_uProcessId, 0)) return Result::Fail(m_strProgram + " has ended");
    }
    return Result::Fail(m_strProgram +
                        " does not answer: it presents no frames, the overlay is switched off, or it is "
                        "an older one");
}

Result Recorder::Begin() {
    m_strPath = OutputPath();
    m_collector.Probe();
    m_collector.Read();
    Result st = AwaitAnswer();
    if (st) st = m_output.Open(m_strPath, m_stOptions.bForce);
    if (!st) return st;
    m_iBegin = NowNanoseconds();
    return m_output.Write(HeadText(MakeHead()));
}

/// Times between neighbours only: what was lost is no long frame.
void Recorder::TakeFrame(const stTraceFrame& stFrame) {
    Frame st;
    const i64 iFrequency = m_reader.Head().iFrequency;
    const i64 iBegin =
        m_iBegin / 1'000'000'000 * iFrequency + m_iBegin % 1'000'000'000 * iFrequency / 1'000'000'000;
    st.fTime = std::max(Milliseconds(stFrame.iBefore - iBegin), m_fLast);
    st.uNumber = stFrame.uNumber;
    if (m_uLastNumber != 0 && stFrame.uNumber == m_uLastNumber + 1)
        st.fFrame = Milliseconds(stFrame.iBefore - m_iLastTicks);
    if (stFrame.uSwap != 0) st.fSwap = Milliseconds(stFrame.uSwap);
    st.fOverlay = Milliseconds(stFrame.uCost);
    st.fWait = Milliseconds(stFrame.uWait);
    st.uThread = stFrame.uThreadId;
    m_uLastNumber = stFrame.uNumber;
    m_iLastTicks = stFrame.iBefore;
    m_fLast = st.fTime;
    ++m_uFrames;
    m_strText += FrameText(st);
}

void Recorder::TakeFrames(bool bAll) {
    std::vector<stTraceFrame> listFrames;
    const u64 uLost = m_reader.Lost();
    m_eState = m_reader.Poll(bAll, listFrames);
    if (m_reader.Lost() != uLost) {
        m_strText += LostText(m_fLast, m_reader.Lost() - uLost);
        m_uLost += m_reader.Lost() - uLost;
    }
    for (const stTraceFrame& st : listFrames) TakeFrame(st);
    if (m_eState == TraceState::Ended) m_uLastNumber = 0; // another block counts anew
}

void Recorder::TakeSensors() {
    const f64 fNow = Now();
    if (fNow < m_fSensors) return;
    m_fSensors = fNow + (m_stOptions.uInterval ? m_stOptions.uInterval : kSensorPause);
    m_collector.Read();
    for (const sensors::Reading& st : m_collector.Readings())
        if (st.iValue) m_strText += SensorText(fNow, st.strName, *st.iValue, st.szUnit);
}

/// Empty while the recording goes on.
std::string Recorder::EndReason() {
    if (platform::tool::SegmentWasCut()) return "segment cut";
    if (m_stOptions.uSeconds != 0 && Now() >= m_stOptions.uSeconds * 1000.0) return "time over";
    if (platform::tool::IsProcessGone(m_uProcessId, 0)) return "program ended";
    if (m_eState == TraceState::Running) m_fSilentSince = -1.0;
    if (m_eState != TraceState::Running && m_fSilentSince < 0.0) m_fSilentSince = Now();
    // A reader that was stopped for long is given another block; an overlay that left gives none.
    return m_fSilentSince >= 0.0 && Now() - m_fSilentSince > kAnswerSeconds * 1000.0 ? "overlay left" : "";
}

Result Recorder::Turn(bool& bGoOn) {
    TakeFrames(false);
    TakeSensors();
    const std::string strWhy = IsStopped() ? "stopped" : EndReason();
    if (!strWhy.empty()) {
        bGoOn = false;
        TakeFrames(true);
        m_strText += EndText(std::max(m_fLast, Now()), strWhy);
    }
    const Result st = m_output.Write(m_strText);
    m_strText.clear();
    return st;
}

Result Recorder::Last() {
    const Result st = m_output.Close();
    if (!st) return st;
    std::printf("%s: %llu frames, %llu lost, %.1f seconds\n", Printable(m_strPath).c_str(),
                static_cast<unsigned long long>(m_uFrames), static_cast<unsigned long long>(m_uLost),
                Now() / 1000.0);
    return {};
}

Result Recorder::Run() {
    platform::tool::CatchStop();
    Result st = Begin();
    for (bool bGoOn = true; st && bGoOn;) st = Turn(bGoOn);
    return st ? Last() : st;
}

} // namespace

std::string RecordingName(const std::string& strProgram) {
    return PlainFileName(strProgram) + TimeText("-%Y%m%d-%H%M%S");
}

Result FindCarrier(const ControlLibrary& stLibrary, const std::string& strTarget, u32& uProcessId) {
    const auto listPrograms = Programs(stLibrary);
    if (listPrograms.empty()) return Result::NotFound("no running program carries the overlay");
    if (strTarget.empty() && listPrograms.size() > 1)
        return Result::Fail("several programs carry the overlay: name one");
    if (strTarget.empty()) {
        uProcessId = listPrograms.front().uProcessId;
        return {};
    }
    const Result st = ResolveTarget(strTarget, uProcessId);
    if (!st) return st;
    const bool bCarries =
        std::any_of(listPrograms.begin(), listPrograms.end(),
                    [&](const Instance& stInstance) { return stInstance.uProcessId == uProcessId; });
    return bCarries ? Result{} : Result::NotFound(Printable(strTarget) + " does not carry the overlay");
}

Result RecordFrames(const ControlLibrary& stLibrary, const Options& stOptions) {
    u32 uProcessId = 0;
    const Result st = FindCarrier(stLibrary, stOptions.strTarget, uProcessId);
    return st ? Recorder(stLibrary, stOptions, uProcessId).Run() : st;
}

} // namespace companion
