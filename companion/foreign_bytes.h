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

/// Where a jump at the start of a function leads, pBytes being its first uCount bytes at uAddress. False if
/// no jump stands there. Understood are the short and near jump and the jump through a pointer that follows
/// it.
bool JumpTarget(const u8* pBytes, size_t uCount, u64 uAddress, u64& uTarget);

} // namespace companion
