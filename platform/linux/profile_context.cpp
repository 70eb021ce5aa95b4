#include "platform/profile_context.h"
#include "platform/headless/egl_context.h"

namespace platform::tool {

struct OffscreenContext::Parts {
    headless::EglContext context;
};

OffscreenContext::OffscreenContext() : m_pParts(std::make_unique<Parts>()) {}
OffscreenContext::~OffscreenContext() = default;

Result OffscreenContext::Create(u32 uWidth, u32 uHeight) {
    headless::EglOptions stOptions;
    stOptions.m_uWidth = uWidth;
    stOptions.m_uHeight = uHeight;
    if (m_pParts->context.Create(stOptions)) return {};
    return Result::Fail("the graphics driver offers no off-screen context of " + std::to_string(uWidth) +
                        " x " + std::to_string(uHeight) + " pixels with OpenGL 3.2");
}

void* OffscreenContext::Surface() const { return m_pParts->context.Surface(); }

void OffscreenContext::Destroy() { m_pParts->context.Destroy(); }

} // namespace platform::tool
