#pragma once
// What a command-line tool needs of the operating system; a library of its own, which no game links. One
// implementation a system; the build chooses. All text is UTF-8.
#include "platform/tool_result.h"
#include "platform/types.h"
#include <functional>
#include <string>
#include <vector>

namespace platform::tool {

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

/// The arguments behind the program's name; prepares the console for UTF-8.
std::vector<std::string> Arguments(int argc, char** argv);

/// Folder of this program's own file, without a trailing separator.
std::string OwnFolder();
std::string OwnName();
u32 OwnProcessId();
/// What tells this process from a later one of its id; see IsProcessGone.
u32 OwnStamp();
/// "ORVIN-OSD64-GL.dll" or its equal.
const char* LibraryName();
std::string JoinPath(const std::string& strFolder, const std::string& strFile);
bool FileExists(const std::string& strPath);
/// Folder of the data that programs share, without a trailing separator; empty if the system tells none. The
/// library looks there too.
std::string CommonDataFolder();
/// Folder of a user's settings of this program ($ORVIN_OSD_CONFIG, else "orvin-osd" beside data of one's own,
/// else in the one that the system keeps for such); empty if the system tells none.
std::string ConfigFolder();
/// Folder for files of a moment, in characters that every file call takes.
std::string TempFolder();

/// Loads a shared library; null and a reason on failure.
void* LoadSharedLibrary(const std::string& strPath, std::string& strError);
void* FindExport(void* hModule, const char* szName);
/// The shared segment of the loaded library, uBytes long.
struct Segment {
    void* pView = nullptr;
    std::string strPlace; ///< the file that it lies in; empty where it is part of the library
    std::string strNote;  ///< what is odd about the place
};
/// Finds it; pView is null, and strError tells the reason, where the library shares none.
Segment FindSegment(void* hModule, size_t uBytes, std::string& strError);
/// True once somebody has shortened the segment's file while it was in use here. Reading it then gives zeros.
bool SegmentWasCut();

/// True if no process has that id, or another one than that of the stamp beside its record.
bool IsProcessGone(u32 uProcessId, u32 uStamp) noexcept;
/// Removes the API claims of programs that were killed, where nothing else would free them.
void RemoveDeadClaims();

void SleepMilliseconds(u32 uMilliseconds);
/// From now on Ctrl-C, termination and the closing of the console only ask to stop; see WaitForStop.
void CatchStop();
/// Waits; true as soon as a stop was asked for, also before the call.
bool WaitForStop(u32 uMilliseconds);
/// True if standard output is a terminal that obeys escape sequences.
bool IsTerminal();
/// The NVML library of the installed graphics driver, which then stays open; null without one.
void* OpenNvmlLibrary();
ProcessFacts InspectProcess(u32 uProcessId);
/// Processes whose file name equals strName, case folded, with or without ".exe". Never this program itself.
std::vector<u32> FindProcesses(const std::string& strName);
ApiClaim ReadApiClaim(u32 uProcessId);

struct RunRequest {
    std::string strLibrary; ///< the library's file, in its folder the parts that travel with it
    std::string strProgram;
    std::vector<std::string> listArguments;
    bool bBare = false; ///< without the overlay after all
    /// Called with the program's process id ahead of its first instruction; may be empty.
    std::function<void(u32 uProcessId)> fnAhead = {};
};
/// The overlay's library, loaded here, with which other programs are entered.
struct EnteringLibrary {
    void* hModule = nullptr;
    void* fnHookCallback = nullptr; ///< of message hooks
};
/// Success if programs can be started with the library of that file, as far as its own files matter; else the
/// reason why not.
Result CanRunWithOverlay(const std::string& strLibrary);
/// True if Run needs the library loaded into this program.
bool RunNeedsLibrary();
/// Runs a program with the overlay, unless it is to be bare; iExitCode receives the program's exit code. May
/// not return at all.
Result Run(const RunRequest& stRequest, const EnteringLibrary& stLibrary, int& iExitCode);

/// Runs a program that stands beside this one, by its name without an extension, to its end, with this one's
/// input and output; iExitCode receives its exit code. A stop that is asked for reaches it, and this program
/// outlives it. With pOutput, what it prints goes there, up to a MiB of it.
Result RunBeside(const std::string& strName, const std::vector<std::string>& listArguments, int& iExitCode,
                 std::string* pOutput = nullptr);
/// What RunBeside keeps of an output, bytes.
constexpr size_t g_uMostOutput = 1024 * 1024;

/// Lets the library into a running program; with bStay until it ends or Ctrl-C, else until it is mapped.
Result Attach(u32 uProcessId, bool bStay, const EnteringLibrary& stLibrary);
/// Lets the library into every program until Ctrl-C or Unhook; calls fnTurn every two seconds.
Result Hook(const EnteringLibrary& stLibrary, const std::function<void()>& fnTurn);
/// Ends the Hook of another such tool.
Result Unhook();
/// Success where a running program can be entered at all; else the reason why not.
Result CanEnterRunningPrograms();

} // namespace platform::tool
