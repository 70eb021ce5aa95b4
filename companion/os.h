#pragma once
// What the companion needs of the operating system. One implementation a system; the build chooses.
// All text is UTF-8.
#include "companion/diagnosis.h"
#include "companion/result.h"
#include <string>
#include <vector>

namespace companion {
struct ControlLibrary;
}

namespace companion::os {

/// The arguments behind the program's name; prepares the console for UTF-8.
std::vector<std::string> Arguments(int argc, char** argv);

/// Folder of the companion's own file, without a trailing separator.
std::string OwnFolder();
std::string OwnName();
u32 OwnProcessId();
/// "ORVIN-OSD64-GL.dll" or its equal.
const char* LibraryName();
std::string JoinPath(const std::string& strFolder, const std::string& strFile);
bool FileExists(const std::string& strPath);
/// Folder of the data that programs share, without a trailing separator; empty if the system tells none. The
/// library looks there too.
std::string CommonDataFolder();
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
/// Processes whose file name equals strName, case folded, with or without ".exe". Never the companion itself.
std::vector<u32> FindProcesses(const std::string& strName);
ApiClaim ReadApiClaim(u32 uProcessId);

struct RunRequest {
    std::string strLibrary; ///< the library's file, in its folder the parts that travel with it
    std::string strProgram;
    std::vector<std::string> listArguments;
};
/// True if Run needs the library loaded into the companion.
bool RunNeedsLibrary();
/// Runs a program with the overlay; iExitCode receives the program's exit code. May not return at all.
Result Run(const RunRequest& stRequest, const ControlLibrary& stLibrary, int& iExitCode);

/// Runs a program that stands beside this one, by its name without an extension, to its end, with this one's
/// input and output; iExitCode receives its exit code. A stop that is asked for reaches it, and this program
/// outlives it.
Result RunBeside(const std::string& strName, const std::vector<std::string>& listArguments, int& iExitCode);

/// Lets the library into a running program; with bStay until it ends or Ctrl-C, else until it is mapped.
Result Attach(u32 uProcessId, bool bStay, const ControlLibrary& stLibrary);
/// Lets the library into every program until Ctrl-C or Unhook.
Result Hook(const ControlLibrary& stLibrary);
/// Ends the Hook of another companion.
Result Unhook();
/// Success where a running program can be entered at all; else the reason why not.
Result CanEnterRunningPrograms();

} // namespace companion::os
