#pragma once
// The command line of what concerns video and the control block.
#include "companion/result.h"
#include "platform/types.h"
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace companion {

enum class ControlVerb { Rebuild, Recolour, Off };

/// A size in pixels or canvas units; 0 by 0: not given.
struct Size {
    u32 uWidth = 0, uHeight = 0;
};

struct VideoOptions {
    std::string strSource; ///< number of a source, or "list"
    u32 uSource = 0;
    bool bList = false;
    std::string strSize, strBox, strFormat = "rgba";
    Size stSize, stBox;
    u32 uFps = 0;    ///< 0: the source's own
    u32 uFrames = 0; ///< 0: until the input ends or Ctrl-C
    bool bTestPattern = false;
    bool bSetup = false, bDisable = false;
    std::optional<i32> iAnchor;
    std::optional<u32> uTransparency; ///< percent
    std::vector<i32> listPosition;
    ControlVerb eControl = ControlVerb::Off;
    u32 uIndex = 0;
    std::string strColor;
    u8 au8Color[4] = {};
};

/// The two commands on the command line, for what all commands have.
struct VideoVerbs {
    CLI::App *pVideo, *pControl;
};
VideoVerbs AddVideoVerbs(CLI::App& app, VideoOptions& st);
/// What the parser cannot test; fills what follows from texts.
Result CheckVideoOptions(VideoOptions& st);
Result CheckControlOptions(VideoOptions& st);

} // namespace companion
