#pragma once
// Standard input as bytes, for tools that read what another program pipes into them. One implementation a
// system, beside that of stops.
#include "platform/types.h"

namespace platform::tool {

/// True if a person types there, and no program or file gives bytes.
bool IsInputTerminal();
/// Reads until there are uBytes, the input ends, or a stop is asked for (see CatchStop), which also ends a
/// read that waits; the bytes read. An input that is closed has ended.
u32 ReadInput(void* pTo, u32 uBytes);

} // namespace platform::tool
