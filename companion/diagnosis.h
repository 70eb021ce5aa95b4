#pragma once
// What can be told about an instance of the overlay from outside its process, and the conclusion drawn from
// it.
#include "companion/result.h"
#include "platform/tool.h"
#include <string>
#include <vector>

namespace companion {

/// Everything that a diagnosis rests on.
struct Evidence {
    ProcessFacts stProcess;
    bool bCommandRecord = false;
    bool bStatusRecord = false;
    bool bTablesFull = false;
    bool bCommandWaiting = false;
    bool bGlobalEnable = true;
    bool bQueryFrameTime = false;
    bool bFramesSeen = false; ///< the status record was refreshed while we watched
    ApiClaim eClaim = ApiClaim::None;
    u32 uApiCode = 0;
    f32 fFrameTime = 0.0f; ///< milliseconds
};

enum class PipelineState {
    NoProcess,
    NotAdmitted,       ///< the library is not in the process
    Unknown,           ///< not enough can be seen
    Passive,           ///< switched off for everyone
    WaitingForOverlay, ///< a foreign overlay postpones the detour
    NoDetour,          ///< admitted, but no detour laid
    Foreign,           ///< another graphics API's flavour owns the process
    NoFrame,           ///< in place, but the program does not swap
    AwaitingGL,        ///< frames pass, no resources: waiting for a context or given up
    Running            ///< resources were made: building or drawing
};

struct Diagnosis {
    PipelineState eState = PipelineState::Unknown;
    std::string strSummary;
    std::vector<std::string> listNotes;
};

/// Pure: nothing but the evidence decides the answer.
Diagnosis Diagnose(const Evidence& stEvidence);

const char* StateName(PipelineState eState);
const char* DetourName(Detour eDetour);
const char* ClaimName(ApiClaim eClaim);
/// "OpenGL", "not seen", "none" or the number.
std::string ApiName(u32 uApiCode);

} // namespace companion
