#pragma once
// A recording: frames, sensors and what was lost, and its text as lines of comma-separated values
// (docs/recording.md tells of the columns).
#include "companion/result.h"
#include "platform/types.h"
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace companion::recording {

constexpr f64 g_fUnknown = -1.0;

/// Times are milliseconds; g_fUnknown where nobody knows.
struct Frame {
    f64 fTime = 0.0;                 ///< since the recording began, ahead of the swap
    u64 uNumber = 0;                 ///< counted by the program
    f64 fFrame = g_fUnknown;         ///< since the frame before
    f64 fSwap = g_fUnknown;          ///< in the real swap
    f64 fOverlay = 0.0, fWait = 0.0; ///< of the overlay itself, and of its limiter
    u32 uThread = 0;
};

struct Sensor {
    std::string strName, strUnit;
    std::vector<std::pair<f64, f64>> listValues; ///< time and value
};

using Head = std::vector<std::pair<std::string, std::string>>;

struct Recording {
    std::string strName; ///< of the file
    Head listHead;
    std::vector<Frame> listFrames;
    std::vector<Sensor> listSensors;
    u64 uLost = 0;      ///< frames that the program wrote and nobody read
    std::string strEnd; ///< why it ended; empty: the file breaks off
    f64 fEnd = 0.0;
};

/// Times between frames, as far as they are known.
std::vector<f64> FrameTimes(const Recording& st);

std::string HeadText(const Head& listHead);
std::string FrameText(const Frame& st);
std::string SensorText(f64 fTime, const std::string& strName, f64 fValue, const std::string& strUnit);
std::string LostText(f64 fTime, u64 uFrames);
std::string EndText(f64 fTime, const std::string& strWhy);

/// Takes a recording line by line; anything may stand there, and what is kept is bounded.
class Parser {
  public:
    explicit Parser(Recording& st) : m_st(st) {}
    /// A line without its end. Fails with what is wrong with it.
    Result Line(std::string_view szLine);
    /// Fails if there was no recording at all.
    Result End() const;

  private:
    Result HeadLine(std::string_view szLine);
    Result Row(const std::vector<std::string>& listFields);
    Result FrameRow(f64 fTime, const std::vector<std::string>& listFields);
    Result SensorRow(f64 fTime, const std::vector<std::string>& listFields);

    Recording& m_st;
    std::map<std::string, size_t> m_mapSensors;
    size_t m_uLines = 0, m_uValues = 0;
    bool m_bColumns = false;
    f64 m_fLast = 0.0; ///< time of the last frame
};

constexpr size_t g_uLongestLine = 4096;
constexpr size_t g_uMostFrames = 10'000'000;
constexpr size_t g_uMostSensors = 500;
constexpr size_t g_uMostSensorValues = 5'000'000;
constexpr size_t g_uMostHeadLines = 100;

/// Reads a file; the failure is one line that names it.
Result ReadRecording(const std::string& strPath, Recording& st);

} // namespace companion::recording
