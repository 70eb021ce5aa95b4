#pragma once
// Named blocks of shared memory that overlays watch, for the tool that writes them. One program at a time
// writes a block; it goes with the last program that has it open.
#include "platform/tool_result.h"
#include "platform/types.h"
#include <string>

namespace platform::tool {

class BlockWriter {
  public:
    BlockWriter() = default;
    BlockWriter(const BlockWriter&) = delete;
    BlockWriter& operator=(const BlockWriter&) = delete;
    ~BlockWriter();

    /// Opens the block or makes it, of zeros. Once.
    Result Open(const std::string& strName, u32 uBytes);
    /// Both within the block. False where memory ran out, or somebody has made the block smaller; on Linux
    /// writing makes it large again.
    bool Write(u32 uAt, const void* pFrom, u32 uBytes);
    bool Read(u32 uAt, void* pTo, u32 uBytes) const;
    /// Whether another program has the block open.
    bool IsWatched() const;

  private:
    struct State;
    State* m_pState = nullptr;
};

/// Who has a block open; asking makes none.
struct BlockUsers {
    bool bWritten = false, bWatched = false;
};
BlockUsers UsersOfBlock(const std::string& strName);

} // namespace platform::tool
