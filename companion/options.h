#pragma once
// The command line.
#include "companion/profile_options.h"
#include "companion/video_options.h"
#include "platform/types.h"
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace companion {

enum class Verb {
    None,
    Run,
    Attach,
    Hook,
    Unhook,
    Init,
    Status,
    On,
    Off,
    Reload,
    Send,
    ProfileName,
    FrameTime,
    Dump,
    Doctor,
    Feed,
    Sensors,
    Names,
    Set,
    Top,
    Setup,
    Shot,
    Video,
    Control,
    Config,
    Watch,
    Record,
    Report,
    Keys,
    ReportProblem,
    Profile ///< which command about profiles: stProfile.eVerb
};

constexpr u32 g_uShortestInterval = 50; ///< milliseconds
constexpr u32 g_uLongestInterval = 60000;
constexpr u32 g_uLongestFrameInterval = 5000; ///< where frames are read

/// What was asked for. A field belongs to the verbs that its option is offered for.
struct Options {
    Verb eVerb = Verb::None;
    std::string strLibrary;
    std::string strTarget; ///< program, process name or id, profile name, data name
    std::vector<std::string> listArguments;
    bool bYes = false;
    bool bInit = false;
    bool bStay = true;
    bool bJson = false;
    bool bText = false; ///< the default anyway
    bool bAll = false;
    bool bRaw = false;
    bool bEnable = false;
    bool bOnce = false;
    bool bRemove = false;
    bool bForce = false;
    bool bDefault = false;
    bool bWatch = false;                 ///< a feed watches programs too
    std::optional<std::string> strValue; ///< of a setting
    bool bWithoutOverlay = false;
    std::string strOutput;              ///< file of a recording or a report
    std::vector<std::string> listFiles; ///< recordings
    bool bKeys = false;                 ///< a feed listens to keys too
    bool bList = false;                 ///< keys and their commands, instead of listening
    std::string strWhile;               ///< a recording goes on while there is this file; empty: no such
    u32 uSeconds = 0;                   ///< of a recording; 0: until it is stopped
    std::string strFrames;              ///< program whose frames 'feed' reads; empty: none
    std::string strFolder;              ///< of screenshots; empty: that of the settings
    std::string strShotType;            ///< word of a type
    u32 uShotType = ~0u;                ///< that of the settings, unless a type was named
    u32 uTimeout = 30;                  ///< seconds
    u32 uInterval = 0;                  ///< milliseconds; 0: the command's own default
    i32 iValue = 0;
    u32 uCommand = 0;
    u32 uPid = 0;
    u32 uTid = 0;
    i64 iArgument = 0;
    u32 uFilterPid = 0;
    u32 uFilterTid = 0;
    std::string strFilterProfile;
    std::optional<u8> uByte;
    std::vector<u32> listPositions;
    ProfileOptions stProfile;
    VideoOptions stVideo;
};

/// Outcome of parsing: options, or a text to print and the exit code to leave with.
struct Parsed {
    Options stOptions;
    bool bLeave = false;
    int iExitCode = 0;
    std::string strText; ///< help for standard output when iExitCode is 0, else one line for standard error
};

/// listArguments without the program's own name.
Parsed ParseArguments(std::vector<std::string> listArguments);

} // namespace companion
