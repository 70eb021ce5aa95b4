#pragma once
// The commands about profiles, their rows and languages, and font cache files.
#include "companion/result.h"
#include "platform/types.h"
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace companion {

struct Options;

enum class ProfileVerb {
    None,
    List,
    Use,
    For,
    New,
    Check,
    Render,
    FontWrite,
    FontList,
    FontCheck,
    Rows,
    LanguageList,
    LanguageUse,
    LanguageOff
};

constexpr u32 g_uSmallestPicture = 16; ///< pixels a side
constexpr u32 g_uLargestPicture = 8192;
constexpr u32 g_uMostFrames = 100000;

/// What the commands about profiles take. A field belongs to the verbs that its option is offered for.
struct ProfileOptions {
    ProfileVerb eVerb = ProfileVerb::None;
    std::string strProfile; ///< name of a profile or path; for FontCheck the path of a file
    std::string strProgram; ///< process name or id
    std::string strFrom;
    std::string strStyle; ///< of a shipped profile to copy
    std::string strData;  ///< data folder; empty: the one of this machine
    std::string strOutput;
    std::string strBackground = "dark";
    std::string strValues = "sample";
    u32 uWidth = 1920, uHeight = 1080;
    u32 uFrames = 0;       ///< 0: as many as fill fSeconds
    double fSeconds = 0.0; ///< 0: the default
    bool bGlobal = false;
    bool bForce = false;
    bool bWatch = false;
    bool bVerbose = false;
    bool bTimes = false;
    bool bJson = false;
    bool bQuiet = false;
    bool bSilent = false;
};

/// Adds the two commands with their own commands to a parser that fills stOptions.
void AddProfileVerbs(CLI::App& app, Options& stOptions);
/// What the parser cannot judge.
Result CheckProfileOptions(const ProfileOptions& stOptions);

/// "1280x720". False for anything else, and for sides outside of the bounds above.
bool ParseSize(const std::string& strText, u32& uWidth, u32& uHeight);

/// True for the commands that need the overlay's own code, and so are done by the tool beside the companion.
bool IsToolVerb(ProfileVerb eVerb);

} // namespace companion
