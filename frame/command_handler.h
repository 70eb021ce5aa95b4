#pragma once
// Acts on a waiting command inside a process.
#include "platform/segment.h"

/// Handles one command block, a local copy of the record's: at most one of its flags is acted on and cleared,
/// the result goes back to the record. Render thread only.
void g_fnTavo_ProcessCommand(stSharedCommand& stBlock) noexcept;
/// True if this process and thread are meant by the block's target fields.
bool g_fnCommandIsForUs(const stSharedCommand& stBlock) noexcept;
