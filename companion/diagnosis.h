#pragma once
// What can be told about an instance of the overlay from outside its process, and the conclusion drawn from
// it: each state and each remark in three sentences, what is seen, why it usually happens, what to do next.
#include "companion/modules.h"
#include "companion/recording/trace_ring.h"
#include "companion/result.h"
#include "platform/tool.h"
#include "platform/tool_process.h"
#include <optional>
#include <string>
#include <vector>

namespace companion {

/// So many changes of its surface in one look are no window that was opened anew.
constexpr u32 g_uManySurfaces = 3;

/// What an instance answered that was asked for its frames.
struct TraceFacts {
    bool bAnswered = false;
    recording::TraceHead stHead;
    u32 uPassed = 0;   ///< swaps of other surfaces while it was watched
    u32 uSurfaces = 0; ///< times that the overlay changed its surface meanwhile
    u64 uFrames = 0;
    f64 fCostMedian = 0.0, fCostWorst = 0.0; ///< milliseconds of the overlay itself
};

/// Everything that a diagnosis rests on.
struct Evidence {
    u32 uProcessId = 0;
    ProcessFacts stProcess;
    platform::tool::ProcessTraits stTraits;
    ModuleFacts stModules;
    TraceFacts stTrace;
    std::string strProfile; ///< that it shows or would show
    bool bCanEnter = false; ///< running programs can be entered on this system
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
    Running,           ///< resources were made: building or drawing
    OtherUser,         ///< the program is another user's
    Bits32,            ///< a program of 32 bits
    Privileged,        ///< the loader preloads nothing into it
    Sandboxed,         ///< it is apart from this system's shared memory
    WindowsProgram,    ///< it wants the Windows companion
    Static,            ///< it has no loader
    Vulkan,            ///< it draws without OpenGL
    Direct3D,
    NotOpened,    ///< the preload part is in it, the library not yet
    OtherSegment, ///< it was told to use another segment
    Gles,         ///< its context is OpenGL ES
    OldContext,   ///< its context is below 3.2
    BadContext,   ///< given up on it for another reason
    LayoutFailed, ///< the last build came to nothing
    ShadersFailed,
    ManyWindows ///< the overlay moves from window to window and draws in none
};

/// A thing that was found, as people read it.
struct Remark {
    std::string strSeen;
    std::string strWhy;
    std::string strNext;
};

struct Diagnosis {
    PipelineState eState = PipelineState::Unknown;
    Remark stState;
    std::vector<Remark> listNotes;
};

/// Pure: nothing but the evidence decides the answer.
Diagnosis Diagnose(const Evidence& stEvidence);

/// As scripts read it: "running", "not admitted" ...
const char* StateName(PipelineState eState);
const char* DetourName(Detour eDetour);
const char* ClaimName(ApiClaim eClaim);
/// "OpenGL", "not seen", "none" or the number.
std::string ApiName(u32 uApiCode);

} // namespace companion
