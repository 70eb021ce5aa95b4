#include "companion/video.h"
#include "companion/table.h"
#include "companion/test_pattern.h"
#include "platform/tool.h"
#include "platform/tool_block.h"
#include "platform/tool_input.h"
#include "platform/tool_settings.h"
#include "shared/frame_sources.h"
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

namespace companion {
namespace {

using platform::tool::BlockWriter;
using platform::tool::Setting;
using Clock = std::chrono::steady_clock;

const std::vector<Column> kColumns = {{"SOURCE"}, {"STATE"},  {"FRAME"},  {"FPS", Align::Right},
                                      {"BOX"},    {"ANCHOR"}, {"WRITER"}, {"READER"},
                                      {"BLOCK"}};

std::string KeyOf(u32 uSource) { return "Video\\" + std::to_string(uSource); }

u32 NumberOf(const std::string& strKey, const char* szName, u32 uDefault) {
    return platform::tool::SettingNumber(strKey, szName).value_or(uDefault);
}

Setting Number(const std::string& strKey, const char* szName, u32 uValue) {
    return {strKey, szName, uValue, {}};
}

/// Red and blue change places.
void SwapRedAndBlue(std::vector<u8>& aPixels) {
    for (size_t u = 0; u + 2 < aPixels.size(); u += 4) std::swap(aPixels[u], aPixels[u + 2]);
}

/// Waits for the time of a frame; true if a stop was asked for.
bool WaitFor(Clock::time_point due) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(due - Clock::now()).count();
    return platform::tool::WaitForStop(static_cast<u32>(std::max<long long>(left, 0)));
}

std::string SizeText(u32 uWidth, u32 uHeight) {
    return std::to_string(uWidth) + "x" + std::to_string(uHeight);
}

/// Where frames come from, one after the other.
struct Frames {
    const VideoOptions& st;
    Size stSize;
    std::vector<u8> aPixels;
    u32 uTaken = 0, uLeftOver = 0; ///< frames that were there, and the bytes behind the last whole one
};

/// The next frame into memory. False at the end of the input, or where a stop was asked for.
bool NextFrame(Frames& frames) {
    if (frames.st.bTestPattern) {
        DrawTestPattern(frames.aPixels.data(), frames.stSize.uWidth, frames.stSize.uHeight, frames.uTaken++);
        return true;
    }
    const u32 uBytes = static_cast<u32>(frames.aPixels.size());
    frames.uLeftOver = platform::tool::ReadInput(frames.aPixels.data(), uBytes);
    if (frames.uLeftOver != uBytes) return false;
    frames.uLeftOver = 0;
    ++frames.uTaken;
    if (frames.st.strFormat == "bgra") SwapRedAndBlue(frames.aPixels);
    return true;
}

/// An input that has no frame, or ends within one, is mostly one of another size or of no raw pixels at all.
Result JudgeEnd(const Frames& frames) {
    if (platform::tool::WaitForStop(0) || (frames.uTaken > 0 && frames.uLeftOver == 0)) return {};
    const std::string strSize = SizeText(frames.stSize.uWidth, frames.stSize.uHeight);
    if (frames.uTaken == 0 && frames.uLeftOver == 0) return Result::Fail("no frame came by standard input");
    return Result::Fail("the input ended " + std::to_string(frames.uLeftOver) + " bytes into a frame; are " +
                        "its frames " + strSize + " with four bytes a pixel?");
}

Result WriteFrames(Frames& frames, double fFps, BlockWriter& block) {
    const auto period = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1 / fFps));
    const u32 uEnough = frames.st.uFrames;
    auto due = Clock::now();
    while (uEnough == 0 || frames.uTaken < uEnough) {
        if (!NextFrame(frames)) return JudgeEnd(frames);
        if (WaitFor(due)) break;
        if (!block.Write(0, frames.aPixels.data(), static_cast<u32>(frames.aPixels.size())))
            return Result::Fail("the source's block cannot be written; is memory full?");
        due = std::max(due + period, Clock::now() - period); // one that is late is not made up for
    }
    return {};
}

/// The size that frames have to have.
Result FrameSize(const VideoOptions& st, const VideoSource& stSource, Size& stSize) {
    stSize = {stSource.uFrameW, stSource.uFrameH};
    if (!g_fnIsFrameSize(stSize.uWidth, stSize.uHeight))
        return Result::Fail("the source's frames have a size that no overlay takes; give --setup --size");
    const bool bOther =
        st.stSize.uWidth != 0 && (st.stSize.uWidth != stSize.uWidth || st.stSize.uHeight != stSize.uHeight);
    if (!bOther) return {};
    return Result::Fail("the source's frames are " + SizeText(stSize.uWidth, stSize.uHeight) +
                        "; --setup makes them " + st.strSize);
}

Result CheckSource(const VideoOptions& st, const VideoSource& stSource) {
    if (!stSource.bOn || stSource.strName.empty())
        return Result::Fail("source " + std::to_string(st.uSource) + " is off; --setup turns it on");
    if (st.bTestPattern || !platform::tool::IsInputTerminal()) return {};
    return Result::Usage(
        "video: frames come by standard input, which is a terminal; --test-pattern needs none");
}

std::string RateText(const VideoSource& st) {
    char szText[32];
    std::snprintf(szText, sizeof szText, "%.1f", FramesASecond(st));
    return szText;
}

nlohmann::ordered_json JsonOf(u32 uSource, const VideoSource& st, const platform::tool::BlockUsers& stUsers) {
    return {{"source", uSource},
            {"on", st.bOn},
            {"block", st.strName},
            {"frame_width", st.uFrameW},
            {"frame_height", st.uFrameH},
            {"frames_a_second", FramesASecond(st)},
            {"box_width", st.uBoxW},
            {"box_height", st.uBoxH},
            {"anchor", st.iAnchor},
            {"x", st.iX},
            {"y", st.iY},
            {"alpha", st.uAlpha},
            {"writer", stUsers.bWritten},
            {"reader", stUsers.bWatched}};
}

} // namespace

VideoSource ReadVideoSource(u32 uSource) {
    const std::string strKey = KeyOf(uSource);
    VideoSource st;
    st.bOn = NumberOf("Video", "Enable", 0) != 0 && NumberOf(strKey, "Enable", 0) != 0;
    st.strName = platform::tool::SettingText(strKey, "FileMappingName").value_or("");
    st.uBoxW = NumberOf(strKey, "FrameSize: W", st.uBoxW);
    st.uBoxH = NumberOf(strKey, "FrameSize: H", st.uBoxH);
    st.uFrameW = NumberOf(strKey, "BufferSize: W", st.uFrameW);
    st.uFrameH = NumberOf(strKey, "BufferSize: H", st.uFrameH);
    st.uInterval = NumberOf(strKey, "Update: I", st.uInterval);
    st.uFrames = NumberOf(strKey, "Update: F", st.uFrames);
    st.iAnchor = static_cast<i32>(NumberOf(strKey, "Anchor", 9));
    st.iX = static_cast<i32>(NumberOf(strKey, "Position: X", 0));
    st.iY = static_cast<i32>(NumberOf(strKey, "Position: Y", 0));
    st.uAlpha = NumberOf(strKey, "Alpha", st.uAlpha) & 0xFF;
    return st;
}

double FramesASecond(const VideoSource& st) {
    if (st.uFrames == 0) return 0;
    constexpr double fMost = 100;
    return st.uInterval == 0 ? fMost : std::min(1000.0 * st.uFrames / st.uInterval, fMost);
}

Result SetUpVideo(const VideoOptions& st) {
    const VideoSource stNow = ReadVideoSource(st.uSource);
    const std::string strKey = KeyOf(st.uSource);
    const bool bNew = stNow.strName.empty();
    std::vector<Setting> list = {Number("Video", "Enable", 1), Number(strKey, "Enable", 1)};
    if (bNew)
        list.push_back(
            {strKey, "FileMappingName", std::nullopt, "ORVIN-OSD-Video-" + std::to_string(st.uSource)});
    if (st.stSize.uWidth != 0) {
        list.push_back(Number(strKey, "BufferSize: W", st.stSize.uWidth));
        list.push_back(Number(strKey, "BufferSize: H", st.stSize.uHeight));
    }
    if (st.uFps != 0) {
        list.push_back(Number(strKey, "Update: I", 1000));
        list.push_back(Number(strKey, "Update: F", st.uFps));
    }
    if (st.stBox.uWidth != 0) {
        list.push_back(Number(strKey, "FrameSize: W", st.stBox.uWidth));
        list.push_back(Number(strKey, "FrameSize: H", st.stBox.uHeight));
    }
    if (st.iAnchor) list.push_back(Number(strKey, "Anchor", static_cast<u32>(*st.iAnchor)));
    if (!st.listPosition.empty()) {
        list.push_back(Number(strKey, "Position: X", static_cast<u32>(st.listPosition[0])));
        list.push_back(Number(strKey, "Position: Y", static_cast<u32>(st.listPosition[1])));
    }
    if (st.uTransparency || bNew) list.push_back(Number(strKey, "Alpha", st.uTransparency.value_or(0)));
    return platform::tool::StoreSettings(list);
}

Result DisableVideo(u32 uSource) {
    return platform::tool::StoreSettings({Number(KeyOf(uSource), "Enable", 0)});
}

Result WriteVideo(const VideoOptions& st) {
    const VideoSource stSource = ReadVideoSource(st.uSource);
    Size stSize;
    Result stResult = CheckSource(st, stSource);
    if (stResult) stResult = FrameSize(st, stSource, stSize);
    if (!stResult) return stResult;
    const double fFps = st.uFps != 0 ? st.uFps : FramesASecond(stSource);
    if (fFps == 0) return Result::Fail("the source is set to no frames a second; give --setup --fps");
    BlockWriter block;
    stResult = block.Open(stSource.strName, g_uFrameBlockBytes);
    if (!stResult) return stResult;
    std::printf("source %u: %s, %.1f frames a second\n", st.uSource,
                SizeText(stSize.uWidth, stSize.uHeight).c_str(), fFps);
    std::fflush(stdout);
    platform::tool::CatchStop();
    Frames frames{st, stSize, std::vector<u8>(size_t{stSize.uWidth} * stSize.uHeight * 4)};
    return WriteFrames(frames, fFps, block);
}

void PrintVideoSources(bool bJson) {
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    std::vector<std::vector<std::string>> listRows;
    for (u32 u = 0; u < g_uFrameSources; ++u) {
        const VideoSource st = ReadVideoSource(u);
        const auto stUsers =
            st.strName.empty() ? platform::tool::BlockUsers{} : platform::tool::UsersOfBlock(st.strName);
        json.push_back(JsonOf(u, st, stUsers));
        listRows.push_back({std::to_string(u), st.bOn ? "on" : "off", SizeText(st.uFrameW, st.uFrameH),
                            RateText(st), SizeText(st.uBoxW, st.uBoxH), std::to_string(st.iAnchor),
                            stUsers.bWritten ? "yes" : "-", stUsers.bWatched ? "yes" : "-", st.strName});
    }
    constexpr auto eReplace = nlohmann::ordered_json::error_handler_t::replace;
    const std::string strText =
        bJson ? json.dump(2, ' ', false, eReplace) + "\n" : FormatTable(kColumns, listRows);
    std::fputs(strText.c_str(), stdout);
}

} // namespace companion
