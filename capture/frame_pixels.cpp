#include "capture/frame_pixels.h"

#include "base/host_care.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr u32 c_uPixelBytes = 4;
constexpr u64 c_uMostBytes = 1ull << 31; ///< more than any window has

GLint Ask(GLenum eName) {
    GLint iValue = 0;
    glGetIntegerv(eName, &iValue);
    return iValue;
}

u64 Positive(GLint iValue) { return iValue > 0 ? static_cast<u64>(iValue) : 0; }

/// Bytes that a read may touch under the pack state of the moment: rows may be longer than the picture's and
/// begin behind others.
u64 BytesTouched(u32 uWidth, u32 uHeight) {
    const u64 uRow = std::max<u64>(Positive(Ask(GL_PACK_ROW_LENGTH)), uWidth),
              uRows = Positive(Ask(GL_PACK_SKIP_ROWS)) + uHeight,
              uSkipped = Positive(Ask(GL_PACK_SKIP_PIXELS)), uAlign = Positive(Ask(GL_PACK_ALIGNMENT));
    return (uRow * c_uPixelBytes + uAlign) * uRows + (uSkipped + uWidth) * c_uPixelBytes;
}

struct stPackRow {
    GLenum eName;
    GLint iNeeded;
};
constexpr stPackRow g_aPack[] = {
    {GL_PACK_SWAP_BYTES, 0},  {GL_PACK_LSB_FIRST, 0}, {GL_PACK_ROW_LENGTH, 0},
    {GL_PACK_SKIP_PIXELS, 0}, {GL_PACK_SKIP_ROWS, 0}, {GL_PACK_ALIGNMENT, 4},
};

/// They change the pixels of reads. Compatibility profile only.
struct stTransferRow {
    GLenum eName;
    GLfloat fNeeded;
};
constexpr stTransferRow g_aTransfer[] = {
    {GL_MAP_COLOR, 0.0f},   {GL_RED_SCALE, 1.0f},   {GL_RED_BIAS, 0.0f},
    {GL_GREEN_SCALE, 1.0f}, {GL_GREEN_BIAS, 0.0f},  {GL_BLUE_SCALE, 1.0f},
    {GL_BLUE_BIAS, 0.0f},   {GL_ALPHA_SCALE, 1.0f}, {GL_ALPHA_BIAS, 0.0f},
};

/// While it lives, the window's own picture is read, packed. Only what differs is set, and given back.
class CPlainRead {
  public:
    CPlainRead() {
        m_iBuffer = Ask(GL_PIXEL_PACK_BUFFER_BINDING);
        if (m_iBuffer != 0) glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        m_iFramebuffer = Ask(GL_READ_FRAMEBUFFER_BINDING);
        if (m_iFramebuffer != 0) glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        m_iNeeded = Ask(GL_DOUBLEBUFFER) ? GL_BACK : GL_FRONT;
        m_iRead = Ask(GL_READ_BUFFER);
        if (m_iRead != m_iNeeded) glReadBuffer(static_cast<GLenum>(m_iNeeded));
        for (std::size_t i = 0; i < std::size(g_aPack); ++i) {
            m_aiPack[i] = Ask(g_aPack[i].eName);
            if (m_aiPack[i] != g_aPack[i].iNeeded) glPixelStorei(g_aPack[i].eName, g_aPack[i].iNeeded);
        }
        if (HasTransfer()) BeginTransfer();
    }
    CPlainRead(const CPlainRead&) = delete;
    CPlainRead& operator=(const CPlainRead&) = delete;
    ~CPlainRead() {
        if (m_bTransfer) EndTransfer();
        for (std::size_t i = 0; i < std::size(g_aPack); ++i)
            if (m_aiPack[i] != g_aPack[i].iNeeded) glPixelStorei(g_aPack[i].eName, m_aiPack[i]);
        // The read buffer belongs to the framebuffer, so it comes back while that is bound.
        if (m_iRead != m_iNeeded) glReadBuffer(static_cast<GLenum>(m_iRead));
        if (m_iFramebuffer != 0) glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(m_iFramebuffer));
        if (m_iBuffer != 0) glBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<GLuint>(m_iBuffer));
    }

  private:
    static bool HasTransfer() {
        return !(Ask(GL_CONTEXT_PROFILE_MASK) & GL_CONTEXT_CORE_PROFILE_BIT) &&
               !(Ask(GL_CONTEXT_FLAGS) & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT);
    }
    void BeginTransfer() {
        m_bTransfer = true;
        for (std::size_t i = 0; i < std::size(g_aTransfer); ++i) {
            glGetFloatv(g_aTransfer[i].eName, &m_afTransfer[i]);
            if (m_afTransfer[i] != g_aTransfer[i].fNeeded)
                glPixelTransferf(g_aTransfer[i].eName, g_aTransfer[i].fNeeded);
        }
    }
    void EndTransfer() const {
        for (std::size_t i = 0; i < std::size(g_aTransfer); ++i)
            if (m_afTransfer[i] != g_aTransfer[i].fNeeded)
                glPixelTransferf(g_aTransfer[i].eName, m_afTransfer[i]);
    }

    GLint m_iBuffer, m_iFramebuffer, m_iNeeded, m_iRead;
    GLint m_aiPack[std::size(g_aPack)];
    bool m_bTransfer = false;
    GLfloat m_afTransfer[std::size(g_aTransfer)];
};

void Read(u8* pPixels, u32 uWidth, u32 uHeight) {
    glReadPixels(0, 0, static_cast<GLsizei>(uWidth), static_cast<GLsizei>(uHeight), GL_RGBA, GL_UNSIGNED_BYTE,
                 pPixels);
}

/// Zeroed, so that nothing of the process's memory gets into a file where nothing is read.
FramePixels Allocate(u64 uBytes) {
    return FramePixels(uBytes <= c_uMostBytes ? static_cast<u8*>(std::calloc(1, uBytes)) : nullptr);
}

} // namespace

FramePixels g_fnReadFrame(u32 uWidth, u32 uHeight) noexcept {
    const u64 uBytes = static_cast<u64>(uWidth) * uHeight * c_uPixelBytes;
    if (uBytes == 0 || uBytes > c_uMostBytes) return nullptr;
    if (g_stHostCare.bCarefulShots) {
        FramePixels pPixels = Allocate(uBytes);
        const CPlainRead state;
        if (pPixels) Read(pPixels.get(), uWidth, uHeight);
        return pPixels;
    }
    // KEEP(hosts): the read buffer and the pack state are the program's own, and so is what is read by them.
    // Only its end is looked after.
    FramePixels pPixels = Allocate(std::max(uBytes, BytesTouched(uWidth, uHeight)));
    if (pPixels) Read(pPixels.get(), uWidth, uHeight);
    return pPixels;
}

void g_fnFlipRows(u8* pPixels, u32 uWidth, u32 uHeight) noexcept {
    const std::size_t uRow = static_cast<std::size_t>(uWidth) * c_uPixelBytes;
    u8 *pUpper = pPixels, *pLower = pPixels + uRow * uHeight;
    for (u32 u = uHeight / 2; u > 0; --u, pUpper += uRow) {
        pLower -= uRow;
        std::swap_ranges(pUpper, pUpper + uRow, pLower);
    }
}
