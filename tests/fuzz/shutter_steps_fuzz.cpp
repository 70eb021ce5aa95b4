// The input as the file of the shutter animation: it is taken whole or is empty, and no moment shows a step
// that it does not have.
#include "capture/shutter.h"

#include <cstdlib>
#include <string>

namespace {

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

void LookAt(const stShutterSteps& st, f32 fSeconds) {
    stShutterView stView;
    if (!g_fnShutterAt(st, fSeconds, stView)) return;
    Require(st.vecSides.empty()
                ? stView.uFrame == 0 && stView.uSide == 0
                : stView.uFrame < st.vecSides.size() && stView.uSide == st.vecSides[stView.uFrame]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uSize) {
    const stShutterSteps st = g_fnParseShutter(std::string(pData, pData + uSize));
    Require(st.bLoaded && (st.vecSides.empty() || 8 + st.vecSides.size() * 4 == uSize));
    const f32 fEnd = static_cast<f32>(st.uDurationMs) / 1000.0f;
    for (const f32 f : {0.0f, 0.25f, 0.5f, 0.999999f, 1.0f, 1.5f}) LookAt(st, fEnd * f);
    for (const f32 f : {1e-30f, 0.001f, 60.0f, 1e9f, 3e38f}) LookAt(st, f);
    return 0;
}
