#include "platform/win32/detour_code.h"
#include "platform/win32/windows_api.h"
#include <Zydis/Zydis.h>
#include <cstring>

namespace platform {

namespace {

constexpr u32 kSweepBytes = 4096; // how far a function is searched for branches into its beginning
constexpr u32 kAbsoluteJumpBytes = 14;
constexpr u32 kAbsoluteCallBytes = 16;

/// One decoded instruction in place.
struct stDecoded {
    ZydisDecodedInstruction m_insn;
    const u8* m_pAt = nullptr;

    u32 Length() const { return m_insn.length; }
    const u8* Next() const { return m_pAt + m_insn.length; }
    bool IsRelativeBranch() const { return m_insn.raw.imm[0].is_relative; }
    const u8* BranchTarget() const { return Next() + m_insn.raw.imm[0].value.s; }
    bool IsCall() const { return m_insn.mnemonic == ZYDIS_MNEMONIC_CALL; }
    bool IsJump() const { return m_insn.mnemonic == ZYDIS_MNEMONIC_JMP; }
    bool IsConditional() const {
        return (m_insn.opcode_map == ZYDIS_OPCODE_MAP_DEFAULT && (m_insn.opcode & 0xF0) == 0x70) ||
               (m_insn.opcode_map == ZYDIS_OPCODE_MAP_0F && (m_insn.opcode & 0xF0) == 0x80);
    }
    /// Memory operand relative to the instruction pointer: the only meaning of this form in 64-bit code.
    bool IsRipRelative() const {
        return (m_insn.attributes & ZYDIS_ATTRIB_HAS_MODRM) && m_insn.raw.modrm.mod == 0 &&
               m_insn.raw.modrm.rm == 5;
    }
    bool EndsFlow() const {
        return IsJump() || m_insn.meta.category == ZYDIS_CATEGORY_RET ||
               m_insn.mnemonic == ZYDIS_MNEMONIC_INT3 || m_insn.mnemonic == ZYDIS_MNEMONIC_UD2;
    }
};

bool Decode(const u8* pAt, u32 uAvailable, stDecoded& decoded) {
    ZydisDecoder decoder;
    ZydisDecoderInit(&decoder, ZYDIS_MACHINE_MODE_LONG_64, ZYDIS_STACK_WIDTH_64);
    decoded.m_pAt = pAt;
    return ZYAN_SUCCESS(ZydisDecoderDecodeInstruction(&decoder, nullptr, pAt, uAvailable, &decoded.m_insn));
}

bool QueryCode(const void* pAddress, MEMORY_BASIC_INFORMATION& info) {
    constexpr DWORD uExecutable =
        PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    return VirtualQuery(pAddress, &info, sizeof(info)) && info.State == MEM_COMMIT &&
           (info.Protect & uExecutable) && !(info.Protect & PAGE_GUARD);
}

/// Bytes of code that may be read from here, at most kSweepBytes.
u32 ReadableBytes(const u8* pAt) {
    u32 uBytes = 0;
    MEMORY_BASIC_INFORMATION info{};
    while (uBytes < kSweepBytes && QueryCode(pAt + uBytes, info) && info.Protect != PAGE_EXECUTE) {
        const u8* pEnd = static_cast<const u8*>(info.BaseAddress) + info.RegionSize;
        uBytes = static_cast<u32>(pEnd - pAt < static_cast<i64>(kSweepBytes) ? pEnd - pAt : kSweepBytes);
    }
    return uBytes;
}

/// Appends to the copy and keeps count of its room.
class Emitter {
  public:
    Emitter(stTrampolinePlan& plan, const u8* pTrampoline) : m_plan(plan), m_pTrampoline(pTrampoline) {}
    const u8* Here() const { return m_pTrampoline + m_plan.m_uCodeBytes; }
    u8* Take(u32 uBytes) {
        if (m_plan.m_uCodeBytes + uBytes > g_uTrampolineBytes) return nullptr;
        u8* pOut = m_plan.m_abCode + m_plan.m_uCodeBytes;
        m_plan.m_uCodeBytes += uBytes;
        return pOut;
    }
    bool Jump(const void* pDestination) {
        u8* pOut = Take(kAbsoluteJumpBytes);
        return pOut && WriteAbsoluteJump(pOut, pDestination);
    }

  private:
    stTrampolinePlan& m_plan;
    const u8* m_pTrampoline;
};

bool EmitCall(Emitter& out, const u8* pDestination) {
    // call [next + 2]; jmp over the address; the address
    static constexpr u8 abCall[8] = {0xFF, 0x15, 0x02, 0, 0, 0, 0xEB, 0x08};
    u8* pOut = out.Take(kAbsoluteCallBytes);
    if (!pOut) return false;
    std::memcpy(pOut, abCall, sizeof(abCall));
    std::memcpy(pOut + sizeof(abCall), &pDestination, sizeof(pDestination));
    return true;
}

bool EmitConditional(Emitter& out, const stDecoded& decoded) {
    u8* pOut = out.Take(2);
    if (!pOut) return false;
    pOut[0] =
        static_cast<u8>(0x70 | ((decoded.m_insn.opcode & 0x0F) ^ 1)); // the opposite condition skips the jump
    pOut[1] = kAbsoluteJumpBytes;
    return out.Jump(decoded.BranchTarget());
}

bool EmitBranch(Emitter& out, const stDecoded& decoded) {
    if (decoded.m_insn.attributes & ZYDIS_ATTRIB_HAS_OPERANDSIZE)
        return false; // 16-bit target on some processors
    if (decoded.IsCall()) return EmitCall(out, decoded.BranchTarget());
    if (decoded.IsJump()) return out.Jump(decoded.BranchTarget());
    return decoded.IsConditional() &&
           EmitConditional(out, decoded); // loop, jrcxz and xbegin stay where they are
}

bool EmitRipRelative(Emitter& out, const stDecoded& decoded) {
    const i64 iNew = decoded.Next() + decoded.m_insn.raw.disp.value - (out.Here() + decoded.Length());
    const i32 iShort = static_cast<i32>(iNew);
    u8* pOut = iShort == iNew ? out.Take(decoded.Length()) : nullptr;
    if (!pOut) return false;
    std::memcpy(pOut, decoded.m_pAt, decoded.Length());
    std::memcpy(pOut + decoded.m_insn.raw.disp.offset, &iShort, sizeof(iShort));
    return true;
}

bool EmitInstruction(Emitter& out, const stDecoded& decoded) {
    if (decoded.IsRelativeBranch()) return EmitBranch(out, decoded);
    if (decoded.IsRipRelative()) return EmitRipRelative(out, decoded);
    u8* pOut = out.Take(decoded.Length());
    if (pOut) std::memcpy(pOut, decoded.m_pAt, decoded.Length());
    return pOut != nullptr;
}

bool Displace(const u8* pTarget, u32 uReadable, Emitter& out, stTrampolinePlan& plan) {
    while (plan.m_uDisplaced < g_uJumpBytes) {
        stDecoded decoded;
        if (!Decode(pTarget + plan.m_uDisplaced, uReadable - plan.m_uDisplaced, decoded)) return false;
        plan.m_auOldOffset[plan.m_uInstructions] = plan.m_uDisplaced;
        plan.m_auNewOffset[plan.m_uInstructions++] = plan.m_uCodeBytes;
        plan.m_uDisplaced += decoded.Length();
        // A call would return into the jump; a function that ends here has no room for one.
        const bool bLast = plan.m_uDisplaced >= g_uJumpBytes;
        if (!bLast && (decoded.EndsFlow() || decoded.IsCall())) return false;
        if (!EmitInstruction(out, decoded)) return false;
    }
    std::memcpy(plan.m_abOriginal, pTarget, plan.m_uDisplaced);
    return out.Jump(pTarget + plan.m_uDisplaced);
}

/// A branch from anywhere in the function into the displaced bytes would land inside the jump. Only a call of
/// the function by itself may name its first byte.
bool BranchesInto(const stDecoded& decoded, const u8* pTarget, u32 uDisplaced) {
    if (!decoded.IsRelativeBranch()) return false;
    const u8* pTo = decoded.BranchTarget();
    return pTo >= pTarget + (decoded.IsCall() ? 1 : 0) && pTo < pTarget + uDisplaced;
}

/// Follows the code from its first byte to the end that no forward branch passes over.
bool IsBeginningPrivate(const u8* pTarget, u32 uReadable, u32 uDisplaced) {
    const u8* pEnd = pTarget + uReadable;
    const u8* pFurthest = pTarget;
    stDecoded decoded;
    for (const u8* pAt = pTarget; pAt < pEnd; pAt = decoded.Next()) {
        if (!Decode(pAt, static_cast<u32>(pEnd - pAt), decoded))
            return true; // data: the code ended before it
        if (BranchesInto(decoded, pTarget, uDisplaced)) return false;
        if (decoded.IsRelativeBranch() && !decoded.IsCall() && decoded.BranchTarget() > pFurthest &&
            decoded.BranchTarget() < pEnd)
            pFurthest = decoded.BranchTarget();
        if (decoded.EndsFlow() && decoded.Next() > pFurthest) return true;
    }
    return true;
}

} // namespace

bool IsExecutable(const void* pAddress) noexcept {
    MEMORY_BASIC_INFORMATION info{};
    return QueryCode(pAddress, info);
}

bool PlanTrampoline(const u8* pTarget, const u8* pTrampoline, stTrampolinePlan& plan) noexcept {
    plan = {};
    Emitter out(plan, pTrampoline);
    const u32 uReadable = ReadableBytes(pTarget);
    return Displace(pTarget, uReadable, out, plan) &&
           IsBeginningPrivate(pTarget, uReadable, plan.m_uDisplaced);
}

u32 WriteAbsoluteJump(u8* pOut, const void* pDestination) noexcept {
    static constexpr u8 abJump[6] = {0xFF, 0x25, 0, 0, 0, 0};
    std::memcpy(pOut, abJump, sizeof(abJump));
    std::memcpy(pOut + sizeof(abJump), &pDestination, sizeof(pDestination));
    return kAbsoluteJumpBytes;
}

} // namespace platform
