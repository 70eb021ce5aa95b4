#pragma once
// What can be told about an instance of the overlay from outside its process, and the conclusion drawn from
// it.
#include "platform/types.h"
#include <string>
#include <vector>

namespace companion {

/// What stands at the swap function of a process.
enum class Detour {
    Unknown, ///< cannot be told (no access, or no inline detours on this system and the library is not
             ///< mapped)
    NotLaid, ///< the function begins as its file does
    Ours,    ///< the way leads into the library
    Other,   ///< a jump stands there, but not visibly into the library
    Preload  ///< the library is mapped through preloading, which stands in for the detour
};

/// Tag in the block by which a process is claimed for one graphics API.
enum class ApiClaim { None, OpenGL, Direct3D, Unreadable };

/// Facts about one process as the operating system tells them.
struct ProcessFacts {
    bool bExists = false;
    bool bReadable = false; ///< modules could be listed
    bool bLibraryMapped = false;
    bool bGlMapped = false;
    Detour eDetour = Detour::Unknown;
    std::string strName;                   ///< file part of the image path
    std::vector<std::string> listOverlays; ///< mapped modules of the foreign overlay table
};

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
