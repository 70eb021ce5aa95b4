#include "draw/backdrop.h"

#include "draw/canvas.h"
#include "draw/left_names.h"
#include "draw/pixel_guard.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <string_view>

u32 g_uCopyTexture = 0;
bool g_bCaptureBackdrop = false;

namespace {

constexpr std::size_t c_uPixelBytes = 4;

/// Drivers that draw on the processor, by the start of their renderer's name. There a copy is a draw by a
/// program that the driver has to make first, and a read and an upload are two plain copies.
constexpr std::string_view c_astrOnProcessor[] = {"llvmpipe", "softpipe"};

/// The way through memory.
struct stThroughMemory {
    bool bWanted = false; ///< decided when the texture is made
    std::unique_ptr<u8[]> pPixels;
    u32 uWidth = 0, uHeight = 0; ///< of pixels and texture; 0: none yet
};
stThroughMemory g_stThroughMemory;

bool IsDrawnOnProcessor() {
    const auto* const sz = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return sz && std::ranges::any_of(c_astrOnProcessor, [sz](std::string_view strDriver) {
               return std::string_view(sz).starts_with(strDriver);
           });
}

/// Of more bits some would be lost. Both buffers of a window are alike.
bool HasBytes() {
    GLint iBits = 0;
    glGetFramebufferAttachmentParameteriv(GL_READ_FRAMEBUFFER, GL_FRONT_LEFT,
                                          GL_FRAMEBUFFER_ATTACHMENT_RED_SIZE, &iBits);
    return iBits == 8;
}

GLsizei Width() { return static_cast<GLsizei>(g_uWidth); }
GLsizei Height() { return static_cast<GLsizei>(g_uHeight); }

/// Room in memory and in the bound texture. Zeroed: where the window is smaller nothing is read.
bool MakeRoom() {
    stThroughMemory& st = g_stThroughMemory;
    if (st.pPixels && st.uWidth == g_uWidth && st.uHeight == g_uHeight) return true;
    st.pPixels.reset(new (std::nothrow) u8[g_uWidth * c_uPixelBytes * g_uHeight]());
    if (!st.pPixels) return false;
    st.uWidth = g_uWidth;
    st.uHeight = g_uHeight;
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, Width(), Height(), 0, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
    return true;
}

/// False where it cannot be.
bool CopyThroughMemory() {
    if (!g_stThroughMemory.bWanted || !g_fnGuardReadToMemory()) return false;
    g_fnGuardUpload();
    if (!MakeRoom()) return false;
    u8* const pPixels = g_stThroughMemory.pPixels.get();
    glReadPixels(0, 0, Width(), Height(), GL_BGRA, GL_UNSIGNED_BYTE, pPixels);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, Width(), Height(), GL_BGRA, GL_UNSIGNED_BYTE, pPixels);
    return true;
}

void MakeTexture() {
    glGenTextures(1, &g_uCopyTexture);
    g_stThroughMemory = {IsDrawnOnProcessor() && HasBytes(), nullptr, 0, 0};
}

} // namespace

void g_fnCopyBackdrop() {
    if (!g_bCaptureBackdrop) return;
    g_fnGuardRead();
    if (!g_uCopyTexture) MakeTexture();
    glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
    if (!CopyThroughMemory()) glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, Width(), Height(), 0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_R, GL_CLAMP_TO_BORDER);
    // KEEP(profiles): the border is red.
    static const GLfloat afBorder[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, afBorder);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void g_fnReleaseBackdrop() noexcept {
    g_stThroughMemory = {};
    if (!g_uCopyTexture) return;
    g_fnDeleteName(NAMES_TEXTURES, g_uCopyTexture);
    g_uCopyTexture = 0;
}
