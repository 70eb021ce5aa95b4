#include "companion/video_options.h"
#include "shared/frame_sources.h"
#include <CLI/CLI.hpp>
#include <charconv>

namespace companion {
namespace {

constexpr u32 kLongestSide = 16384;
constexpr u32 kMostFps = 100; // the overlay takes no more

bool TakeNumber(const char*& p, const char* pEnd, u32& uValue) {
    const auto [pStop, eError] = std::from_chars(p, pEnd, uValue);
    const bool bTaken = eError == std::errc() && pStop != p;
    p = pStop;
    return bTaken;
}

/// "640x360"; an empty text leaves the size as it is.
bool ParseSize(const std::string& strText, Size& st) {
    if (strText.empty()) return true;
    const char *p = strText.data(), *const pEnd = p + strText.size();
    if (!TakeNumber(p, pEnd, st.uWidth) || p == pEnd || *p++ != 'x') return false;
    return TakeNumber(p, pEnd, st.uHeight) && p == pEnd && st.uWidth > 0 && st.uHeight > 0 &&
           st.uWidth <= kLongestSide && st.uHeight <= kLongestSide;
}

/// "#RRGGBB" or "#RRGGBBAA".
bool ParseColor(const std::string& strText, u8 (&au8Color)[4]) {
    if ((strText.size() != 7 && strText.size() != 9) || strText[0] != '#') return false;
    au8Color[3] = 255;
    for (size_t u = 1; u < strText.size(); u += 2) {
        const char* const p = strText.data() + u;
        if (std::from_chars(p, p + 2, au8Color[u / 2], 16).ptr != p + 2) return false;
    }
    return true;
}

CLI::App* AddVerb(CLI::App& app, const char* szName, const char* szHelp) {
    return app.add_subcommand(szName, szHelp);
}

void AddPlace(CLI::App* pVideo, VideoOptions& st) {
    CLI::Option* const pSetup = pVideo->add_flag(
        "--setup", st.bSetup,
        "turn the source on, with the options that are given, in the settings of this machine; "
        "programs with the overlay reload");
    pVideo->add_flag("--disable", st.bDisable, "turn the source off in the settings and end")
        ->excludes(pSetup);
    pVideo
        ->add_option("--box", st.strBox,
                     "with --setup: size of the box on the canvas; the picture keeps its proportion in it")
        ->type_name("WxH");
    pVideo->add_option("--anchor", st.iAnchor, "with --setup: anchor code of the box, by the keypad")
        ->type_name("CODE")
        ->check(CLI::Range(-9, 9));
    pVideo->add_option("--position", st.listPosition, "with --setup: offset from the anchor")
        ->type_name("X,Y")
        ->delimiter(',')
        ->expected(2);
    pVideo->add_option("--transparency", st.uTransparency, "with --setup: percent, 0 to 100")
        ->type_name("P")
        ->check(CLI::Range(0, 100));
}

CLI::App* AddControl(CLI::App& app, VideoOptions& stVideo) {
    CLI::App* pControl = AddVerb(app, "control",
                                 "ask programs with the overlay for something by the control block, which "
                                 "needs no library");
    pControl->require_subcommand(1);
    AddVerb(*pControl, "rebuild",
            "let every overlay build itself anew from its files, and programs that "
            "start later once more, until 'control off'")
        ->callback([&stVideo] { stVideo.eControl = ControlVerb::Rebuild; });
    CLI::App* pRecolour = AddVerb(*pControl, "recolour",
                                  "hold a background panel of Classic and RV5 layouts in a colour, until "
                                  "'control off'");
    pRecolour->callback([&stVideo] { stVideo.eControl = ControlVerb::Recolour; });
    pRecolour->add_option("index", stVideo.uIndex, "0 watermark, 1 status, 2 system information")
        ->required()
        ->type_name("INDEX")
        ->check(CLI::Range(0, 2));
    pRecolour->add_option("colour", stVideo.strColor, "#RRGGBB or #RRGGBBAA")
        ->required()
        ->type_name("COLOUR");
    AddVerb(*pControl, "off", "take the request back; colours stay until an overlay is built anew")
        ->callback([&stVideo] { stVideo.eControl = ControlVerb::Off; });
    return pControl;
}

} // namespace

VideoVerbs AddVideoVerbs(CLI::App& app, VideoOptions& stVideo) {
    CLI::App* pVideo = AddVerb(app, "video",
                               "write raw frames from standard input into a video box of every program with "
                               "the overlay: ffmpeg ... -f rawvideo -pix_fmt rgba - | orvin-osd video 0");
    pVideo->add_option("source", stVideo.strSource, "a source, 0 to 7, or list")
        ->required()
        ->type_name("SOURCE|list");
    pVideo
        ->add_option("--size", stVideo.strSize,
                     "pixels of a frame; default, and without --setup the only one: the source's")
        ->type_name("WxH");
    pVideo->add_option("--fps", stVideo.uFps, "frames a second, 1 to 100; default: the source's")
        ->type_name("N")
        ->check(CLI::Range(1u, kMostFps));
    pVideo->add_option("--format", stVideo.strFormat, "order of the bytes of a pixel; default rgba")
        ->type_name("rgba|bgra")
        ->check(CLI::IsMember({"rgba", "bgra"}));
    pVideo->add_flag("--test-pattern", stVideo.bTestPattern, "a moving picture of its own, without input");
    pVideo->add_option("--frames", stVideo.uFrames, "end after so many frames")->type_name("N");
    AddPlace(pVideo, stVideo);
    return {pVideo, AddControl(app, stVideo)};
}

Result CheckVideoOptions(VideoOptions& st) {
    st.bList = st.strSource == "list";
    const char* const pEnd = st.strSource.data() + st.strSource.size();
    const char* p = st.strSource.data();
    if (!st.bList && (!TakeNumber(p, pEnd, st.uSource) || p != pEnd || st.uSource >= g_uFrameSources))
        return Result::Usage("video: SOURCE is a number from 0 to 7, or list");
    if (!ParseSize(st.strSize, st.stSize))
        return Result::Usage("video: --size is two numbers, such as 640x360");
    if (!ParseSize(st.strBox, st.stBox)) return Result::Usage("video: --box is two numbers, such as 640x360");
    if (st.stSize.uWidth != 0 && !g_fnIsFrameSize(st.stSize.uWidth, st.stSize.uHeight))
        return Result::Usage("video: a frame has at most " + std::to_string(g_uFrameBytesMax / 4) +
                             " pixels");
    const bool bPlaced = !st.strBox.empty() || st.iAnchor || st.uTransparency || !st.listPosition.empty();
    if (bPlaced && !st.bSetup) return Result::Usage("video: the place of the box is set with --setup");
    return {};
}

Result CheckControlOptions(VideoOptions& st) {
    if (st.eControl != ControlVerb::Recolour || ParseColor(st.strColor, st.au8Color)) return {};
    return Result::Usage("control recolour: COLOUR is #RRGGBB or #RRGGBBAA");
}

} // namespace companion
