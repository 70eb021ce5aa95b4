#include "capture/shutter.h"

#include "base/numbers.h"
#include "capture/shot_request.h"
#include "draw/data_path.h"
#include "platform/input_file.h"

#include <algorithm>

namespace {

constexpr u32 c_uHeadBytes = 8, c_uStepBytes = 4;
constexpr u64 c_uMostBytes = 1u << 20; ///< of a file; no animation has that many steps

stShutterSteps g_stSteps;

u32 Number(const std::string& str, std::size_t uAt) {
    u32 uValue = 0;
    for (u32 i = 0; i < 4; ++i) uValue |= static_cast<u32>(static_cast<u8>(str[uAt + i])) << (8 * i);
    return uValue;
}

std::string ReadFile() {
    char16_t wzPath[g_uDataPathCapacity];
    std::string strBytes;
    if (!g_fnResolveDataPath(wzPath, u"Screenshot.anm") ||
        !platform::ReadWholeFile(platform::OpenInput(wzPath), c_uMostBytes, strBytes))
        strBytes.clear();
    return strBytes;
}

void End() {
    g_timerShutter.Reset();
    g_bShutter = false;
    g_fnShowShutter({});
}

} // namespace

stShutterSteps g_fnParseShutter(const std::string& strBytes) {
    stShutterSteps st;
    st.bLoaded = true;
    if (strBytes.size() < c_uHeadBytes) return st;
    const u32 uSteps = Number(strBytes, 4);
    if (strBytes.size() != c_uHeadBytes + static_cast<u64>(uSteps) * c_uStepBytes) return st;
    st.uDurationMs = Number(strBytes, 0);
    for (u32 u = 0; u < uSteps; ++u) st.vecSides.push_back(Number(strBytes, c_uHeadBytes + u * c_uStepBytes));
    return st;
}

void g_fnLoadShutter() {
    if (!g_stSteps.bLoaded) g_stSteps = g_fnParseShutter(ReadFile());
}

void g_fnFreeShutter() noexcept { g_stSteps = {}; }

bool g_fnShutterAt(const stShutterSteps& st, f32 fSeconds, stShutterView& stView) noexcept {
    const f32 fDuration = static_cast<f32>(st.uDurationMs);
    if (fSeconds * 1000.0f >= fDuration) return false;
    stView = {};
    const u32 uSteps = static_cast<u32>(st.vecSides.size());
    if (uSteps == 0) return true;
    const i32 iStep = g_fnTruncate<i32>(static_cast<f32>(uSteps) * 1000.0f / fDuration * fSeconds);
    stView.uFrame = std::min(static_cast<u32>(std::max(iStep, 0)), uSteps - 1);
    stView.uSide = st.vecSides[stView.uFrame];
    return true;
}

void g_fnStepShutter() {
    if (!g_stSteps.bLoaded) return;
    stShutterView stView;
    if (!g_fnShutterAt(g_stSteps, g_timerShutter.Elapsed(), stView)) return End();
    // Shown only while the flag is up; without it the image keeps no size.
    g_fnShowShutter(g_bShutter ? stView : stShutterView{});
}
