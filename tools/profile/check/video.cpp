#include "tools/profile/check/video.h"

#include "config/settings/settings.h"
#include "shared/frame_sources.h"

#include <algorithm>
#include <string>

namespace companion {
namespace {

constexpr u8 c_u8DefaultAlpha = 255;
constexpr double c_fUnit = 1; // less is rounding

std::string SizeText(u32 uWidth, u32 uHeight) {
    return std::to_string(uWidth) + " by " + std::to_string(uHeight);
}

/// The picture keeps its proportion, and what is left of its box stays empty.
void CheckFit(const stVideoSource& st, const std::string& strTitle, Findings& findings) {
    if (st.uFrameSizeW == 0 || st.uFrameSizeH == 0) {
        findings.Warning(0, strTitle + "its box has no size");
        return;
    }
    const double fWide = f64{1} * st.uBufferSizeW * st.uFrameSizeH,
                 fHigh = f64{1} * st.uBufferSizeH * st.uFrameSizeW;
    const double fFreeW = (fHigh - fWide) / st.uBufferSizeH, fFreeH = (fWide - fHigh) / st.uBufferSizeW;
    if (std::max(fFreeW, fFreeH) > c_fUnit)
        findings.Note(0, strTitle + "frames of " + SizeText(st.uBufferSizeW, st.uBufferSizeH) +
                             " leave bars in the box of " + SizeText(st.uFrameSizeW, st.uFrameSizeH) + ": " +
                             std::to_string(static_cast<u32>(std::max(fFreeW, fFreeH))) + " units of its " +
                             (fFreeW > fFreeH ? "width" : "height") + " stay empty");
}

void CheckSource(u32 uSource, const stVideoSource& st, Findings& findings) {
    const std::string strTitle = "video source " + std::to_string(uSource) + ": ";
    if (!g_fnIsFrameSize(st.uBufferSizeW, st.uBufferSizeH)) {
        findings.Warning(0, strTitle + "frames of " + SizeText(st.uBufferSizeW, st.uBufferSizeH) +
                                " are not taken; they have 1 to " + std::to_string(g_uFrameBytesMax / 4) +
                                " pixels");
        return;
    }
    if (!st.wzFileMappingName[0]) findings.Warning(0, strTitle + "no FileMappingName: its box stays empty");
    if (st.uUpdateFrames == 0) findings.Warning(0, strTitle + "\"Update: F\" is 0: no frame is ever taken");
    if (st.uAlpha == c_u8DefaultAlpha)
        findings.Note(0, strTitle + "Alpha is a transparency in percent; 255 comes out half clear, 0 opaque");
    if (uSource == g_uVideoSources - 1) findings.Note(0, strTitle + "the last source's box is never drawn");
    CheckFit(st, strTitle, findings);
}

} // namespace

void CheckVideoSources(Findings& findings) {
    g_fnReadFeatureSwitches();
    g_fnReadVideoSources();
    findings.SetFile("settings of this machine");
    for (u32 u = 0; u < g_uVideoSources && g_stSettings.bVideoEnable; ++u)
        if (const stVideoSource& st = g_stSettings.aVideoSource[u]; st.uEnable) CheckSource(u, st, findings);
}

} // namespace companion
