#pragma once
// What is special about a program, as far as the system tells it from outside: what keeps the overlay out of
// it, or apart from the rest.
#include "platform/types.h"
#include <string>
#include <string_view>
#include <vector>

namespace platform::tool {

struct ProcessTraits {
    bool b32Bit = false;
    bool bOtherUser = false;    ///< runs for another user than this tool
    bool bPrivileged = false;   ///< has more rights than its user, so the loader preloads nothing into it
    bool bStatic = false;       ///< has no dynamic loader, so nothing can be preloaded into it
    bool bOtherMemory = false;  ///< does not see the folder of shared memory that this tool sees
    bool bOtherSegment = false; ///< was told to use another segment (ORVIN_OSD_SEGMENT)
    std::string strSandbox;     ///< what it is locked into, by its name; empty: nothing known
    std::vector<std::string> listModules; ///< paths of mapped files, each once
};

ProcessTraits InspectTraits(u32 uProcessId);

// Readers of what systems tell, without system calls.

/// Paths of the files in the text of a process's memory map, each once and in its order.
std::vector<std::string> ModulePaths(std::string_view strMaps);
/// True if a file that begins with these bytes is a program of 32 bits (ELF).
bool Is32BitElf(std::string_view strBegin);
/// True if a process status text shows other effective than real ids.
bool HasBorrowedRights(std::string_view strStatus);
/// The real user's id of a process status text; false if it tells none.
bool UserOfStatus(std::string_view strStatus, u32& uUser);
/// The value of a variable in the bytes of an environment; false if it is not there.
bool VariableIn(std::string_view strEnvironment, std::string_view strName, std::string& strValue);
/// "name" of section [Application] in the note that Flatpak leaves; empty without one.
std::string FlatpakName(std::string_view strInfo);

} // namespace platform::tool
