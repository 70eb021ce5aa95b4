#pragma once
// Blocks that programs write and tools look at (own_block.h).
#include "platform/types.h"
#include <cstddef>
#include <string>

namespace platform::tool {

/// A read-only view; it does not fault, and stays when the program ends.
struct ForeignBlock {
    const u8* pView = nullptr;
    std::size_t uBytes = 0;
};

/// The block of that name which a process has made, if it has at least uBytes; else without a view.
ForeignBlock OpenForeignBlock(u32 uProcessId, const std::string& strName, std::size_t uBytes);
void CloseForeignBlock(ForeignBlock& st);

} // namespace platform::tool
