#pragma once
// Reads the beginning of a function and writes a copy of it that works elsewhere.
#include "platform/types.h"

namespace platform {

constexpr u32 g_uJumpBytes = 5;             ///< a relative jump, what the detour overwrites
constexpr u32 g_uTrampolineBytes = 112;     ///< room for a displaced beginning and the jump back
constexpr u32 g_uDisplacedMax = 4 + 15;     ///< four single bytes and the longest instruction
constexpr u32 g_uDisplacedInstructions = 5; ///< at most so many begin within five bytes

/// The displaced beginning of a function and its copy.
struct stTrampolinePlan {
    u8 m_abOriginal[g_uDisplacedMax] = {}; ///< bytes as found
    u32 m_uDisplaced = 0;                  ///< whole instructions, at least g_uJumpBytes
    u32 m_uInstructions = 0;
    u32 m_auOldOffset[g_uDisplacedInstructions] = {}; ///< of each instruction in the function
    u32 m_auNewOffset[g_uDisplacedInstructions] = {}; ///< and in the copy
    u8 m_abCode[g_uTrampolineBytes] = {};
    u32 m_uCodeBytes = 0;
};

/// True if the page of the address holds code that can run.
bool IsExecutable(const void* pAddress) noexcept;

/// Plans the copy of the function's beginning for a trampoline at pTrampoline. False if the beginning can't
/// be displaced: the function ends within it, it holds an instruction that can't be moved, or the function
/// branches back into it.
bool PlanTrampoline(const u8* pTarget, const u8* pTrampoline, stTrampolinePlan& plan) noexcept;

/// Writes FF 25: an absolute jump whose address follows it. Returns its length, 14.
u32 WriteAbsoluteJump(u8* pOut, const void* pDestination) noexcept;

} // namespace platform
