#pragma once
// Small readers whose input comes from other processes; apart from the system calls, so that tests reach
// them.
#include "companion/diagnosis.h"
#include <string_view>

namespace companion {

/// Fills the module facts from the text of a process's memory map, one mapping a line with the file's path
/// last. An empty text means that the map could not be read.
void ReadModuleFacts(std::string_view strMaps, ProcessFacts& stFacts);

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

} // namespace companion
