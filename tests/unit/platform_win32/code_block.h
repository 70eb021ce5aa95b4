#pragma once
// Executable memory with hand-written functions in it, for the detour tests.
#include "platform/types.h"
#include "platform/win32/windows_api.h"
#include <cstring>
#include <vector>

using CodeFunction = i64 (*)(i64 iValue);

/// One page that may be written and run; gone with the object.
class CodeBlock {
  public:
    CodeBlock()
        : m_pBase(static_cast<u8*>(
              VirtualAlloc(nullptr, 0x1000, MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE))) {
        std::memset(m_pBase, 0xCC, 0x1000);
    }
    CodeBlock(const CodeBlock&) = delete;
    CodeBlock& operator=(const CodeBlock&) = delete;
    // The memory stays: the detour engine remembers functions by address, and a new block at an old address
    // would be a different function there.
    ~CodeBlock() = default;

    u8* Put(u32 uOffset, const std::vector<u8>& abCode) {
        std::memcpy(m_pBase + uOffset, abCode.data(), abCode.size());
        FlushInstructionCache(GetCurrentProcess(), m_pBase, 0x1000);
        return m_pBase + uOffset;
    }
    u8* Base() const { return m_pBase; }

  private:
    u8* m_pBase;
};

inline CodeFunction AsFunction(const u8* pCode) {
    return reinterpret_cast<CodeFunction>(reinterpret_cast<u64>(pCode));
}

inline std::vector<u8> BytesAt(const u8* pAt, u32 uCount = 24) { return std::vector<u8>(pAt, pAt + uCount); }
