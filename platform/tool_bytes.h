#pragma once
// Small readers whose input comes from other processes; apart from the system calls, so that tests reach
// them.
#include "platform/tool.h"
#include <optional>
#include <string_view>

namespace platform::tool {

/// True if strFile, the file part of a module's path, is an overlay of others; letters compared without case.
bool IsForeignOverlay(std::string_view strFile);

/// ASCII letters compared without case.
bool EqualFolded(std::string_view strA, std::string_view strB);

/// Fills the module facts from the text of a process's memory map, one mapping a line with the file's path
/// last. An empty text means that the map could not be read.
void ReadModuleFacts(std::string_view strMaps, ProcessFacts& stFacts);

/// What a file is to the system.
struct FileNumber {
    u32 uMajor = 0, uMinor = 0; ///< of its device
    u64 uNumber = 0;
};

/// A file that a process has mapped to share it.
struct SharedMap {
    u64 uAddress = 0;
    size_t uBytes = 0;
};
/// Finds a shared, writable mapping of a file, from its start, in the text of a process's memory map. By
/// device and number, since the file may have had another name when it was opened.
std::optional<SharedMap> FindSharedMap(std::string_view strMaps, const FileNumber& stFile);

/// Meaning of the first three bytes of a process's API block.
ApiClaim ClaimOfTag(const char* szTag);

/// The jump at the start of a function.
struct Jump {
    enum class Kind { None, Direct, ThroughPointer } eKind = Kind::None;
    u64 uAddress = 0; ///< where it leads, or where the pointer to that place stands
};

/// Reads the jump in pBytes, the first uCount bytes at uAddress: the short and near forms and the one through
/// a pointer beside the code.
Jump ReadJump(const u8* pBytes, size_t uCount, u64 uAddress);

} // namespace platform::tool
