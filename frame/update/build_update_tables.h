#pragma once
// Where the two styles with fixed ids show each data name. The layouts of these styles use these ids too.
#include "platform/types.h"

#include <span>

namespace tables {

constexpr u32 c_uNone = 0xFFFFFFFF;

/// Which instances of a run exist: the first card or CPU alone, all others, or every one.
enum class eInstances : u8 { First, Further, Every };

/// Ids of a row: number, unit text beside it, panel of the two. c_uNone: the number stands alone.
struct stIds {
    u32 uNumBox, uTextBox, uPanel;
};

/// Data names with consecutive ids.
struct stRun {
    std::span<const char* const> names;
    stIds stFirst;
    eInstances eWhere;
    std::span<const char* const> otherNames = {}; ///< asked where the first name is unknown
};

/// What a style writes without a record.
struct stDirectIds {
    stIds stFPS, stFrameTime;
    u32 auTime[3];
    u32 auSize[2], uSizeText, uSizePanel;
    u32 uDebugNumBox, uDebugPanel; ///< first of five; c_uNone: no panel to align in
};

struct stStyle {
    std::span<const stRun> cardRuns, cpuRuns;
    stRun stFigures; ///< of the process itself, always instance 0
    stIds stSensor;  ///< first of the extension
    stDirectIds stDirect;
};

extern const stStyle c_stClassic, c_stRV5;

/// Flip boxes of a card that show a named state, in both styles: the title and the value of the row.
constexpr u32 c_auDetectorFlips[] = {0, 1};
constexpr char c_szDetectorName[] = "POWER_DETECTOR";

} // namespace tables
