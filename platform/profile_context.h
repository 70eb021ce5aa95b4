#pragma once
// A graphics context without a window on the screen, whose framebuffer 0 has any size. One implementation a
// system; the build chooses.
#include "platform/tool_result.h"
#include "platform/types.h"
#include <memory>

namespace platform::tool {

class OffscreenContext {
  public:
    OffscreenContext();
    ~OffscreenContext();
    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;

    /// Makes the context and makes it current on this thread; the overlay then sees it as a program's own.
    Result Create(u32 uWidth, u32 uHeight);
    /// What a program would hand over with each frame.
    void* Surface() const;
    void Destroy();

  private:
    struct Parts;
    std::unique_ptr<Parts> m_pParts;
};

} // namespace platform::tool
