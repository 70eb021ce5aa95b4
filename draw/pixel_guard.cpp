#include "draw/pixel_guard.h"
#include "platform/gl_api.h"
#include "platform/types.h"

#include <iterator>
#include <span>

namespace {

struct stStoreRow {
    GLenum eName;
    GLint iNeeded;
};
constexpr stStoreRow g_astUnpack[] = {
    {GL_UNPACK_SWAP_BYTES, 0},   {GL_UNPACK_LSB_FIRST, 0},   {GL_UNPACK_ROW_LENGTH, 0},
    {GL_UNPACK_IMAGE_HEIGHT, 0}, {GL_UNPACK_SKIP_PIXELS, 0}, {GL_UNPACK_SKIP_ROWS, 0},
    {GL_UNPACK_SKIP_IMAGES, 0},  {GL_UNPACK_ALIGNMENT, 1},
};
constexpr stStoreRow g_astPack[] = {
    {GL_PACK_SWAP_BYTES, 0},  {GL_PACK_LSB_FIRST, 0}, {GL_PACK_ROW_LENGTH, 0},
    {GL_PACK_SKIP_PIXELS, 0}, {GL_PACK_SKIP_ROWS, 0}, {GL_PACK_ALIGNMENT, 4},
};

/// How pixels lie in memory on their way to the driver, or back.
struct stStore {
    GLenum eBinding, eTarget; ///< of the buffer that stands for the memory
    std::span<const stStoreRow> rows;
    bool bSet = false; ///< saved and set this frame
    GLint iBuffer = 0;
    GLint aiValue[std::size(g_astUnpack)] = {};
};

/// They change the pixels of uploads and of copies into textures alike.
struct stTransferRow {
    GLenum eName;
    GLfloat fNeeded;
};
constexpr stTransferRow g_astTransfer[] = {
    {GL_MAP_COLOR, 0.0f},   {GL_RED_SCALE, 1.0f},   {GL_RED_BIAS, 0.0f},
    {GL_GREEN_SCALE, 1.0f}, {GL_GREEN_BIAS, 0.0f},  {GL_BLUE_SCALE, 1.0f},
    {GL_BLUE_BIAS, 0.0f},   {GL_ALPHA_SCALE, 1.0f}, {GL_ALPHA_BIAS, 0.0f},
};

struct stPixels {
    bool bActive = false, bCompatibility = false;
    bool bTransfer = false, bRead = false; ///< saved and set this frame
    GLint iReadFramebuffer = 0, iReadBuffer = 0;
    stStore stUnpack{GL_PIXEL_UNPACK_BUFFER_BINDING, GL_PIXEL_UNPACK_BUFFER, g_astUnpack};
    stStore stPack{GL_PIXEL_PACK_BUFFER_BINDING, GL_PIXEL_PACK_BUFFER, g_astPack};
    GLfloat afTransfer[std::size(g_astTransfer)] = {};
};
stPixels g_stPixels;

GLint Ask(GLenum eName) {
    GLint iValue = 0;
    glGetIntegerv(eName, &iValue);
    return iValue;
}

void BeginTransfer() {
    stPixels& st = g_stPixels;
    if (st.bTransfer || !st.bCompatibility) return;
    st.bTransfer = true;
    for (std::size_t i = 0; i < std::size(g_astTransfer); ++i) {
        glGetFloatv(g_astTransfer[i].eName, &st.afTransfer[i]);
        if (st.afTransfer[i] != g_astTransfer[i].fNeeded)
            glPixelTransferf(g_astTransfer[i].eName, g_astTransfer[i].fNeeded);
    }
}

void EndTransfer() {
    for (std::size_t i = 0; i < std::size(g_astTransfer); ++i)
        if (g_stPixels.afTransfer[i] != g_astTransfer[i].fNeeded)
            glPixelTransferf(g_astTransfer[i].eName, g_stPixels.afTransfer[i]);
}

void BeginStore(stStore& st) {
    if (st.bSet) return;
    st.bSet = true;
    st.iBuffer = Ask(st.eBinding);
    if (st.iBuffer != 0) glBindBuffer(st.eTarget, 0);
    for (std::size_t i = 0; i < st.rows.size(); ++i) {
        st.aiValue[i] = Ask(st.rows[i].eName);
        if (st.aiValue[i] != st.rows[i].iNeeded) glPixelStorei(st.rows[i].eName, st.rows[i].iNeeded);
    }
}

void EndStore(stStore& st) {
    if (!st.bSet) return;
    st.bSet = false;
    if (st.iBuffer != 0) glBindBuffer(st.eTarget, static_cast<GLuint>(st.iBuffer));
    for (std::size_t i = 0; i < st.rows.size(); ++i)
        if (st.aiValue[i] != st.rows[i].iNeeded) glPixelStorei(st.rows[i].eName, st.aiValue[i]);
}

/// The read buffer belongs to the framebuffer, so it is asked for while that is bound. Without a second
/// buffer there is only one to read.
void BeginRead() {
    stPixels& st = g_stPixels;
    st.bRead = true;
    st.iReadFramebuffer = Ask(GL_READ_FRAMEBUFFER_BINDING);
    if (st.iReadFramebuffer != 0) glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    st.iReadBuffer = Ask(GL_DOUBLEBUFFER) ? Ask(GL_READ_BUFFER) : GL_BACK;
    if (st.iReadBuffer != GL_BACK) glReadBuffer(GL_BACK);
}

void EndRead() {
    const stPixels& st = g_stPixels;
    if (st.iReadBuffer != GL_BACK) glReadBuffer(static_cast<GLenum>(st.iReadBuffer));
    if (st.iReadFramebuffer != 0)
        glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(st.iReadFramebuffer));
}

} // namespace

void g_fnBeginGuardPixels(bool bCompatibility) noexcept {
    g_stPixels.bActive = true;
    g_stPixels.bCompatibility = bCompatibility;
}

void g_fnEndGuardPixels() noexcept {
    stPixels& st = g_stPixels;
    if (st.bTransfer) EndTransfer();
    EndStore(st.stUnpack);
    EndStore(st.stPack);
    if (st.bRead) EndRead();
    st.bActive = st.bTransfer = st.bRead = false;
}

void g_fnGuardUpload() noexcept {
    if (!g_stPixels.bActive) return;
    BeginTransfer();
    BeginStore(g_stPixels.stUnpack);
}

void g_fnGuardRead() noexcept {
    if (!g_stPixels.bActive) return;
    BeginTransfer();
    if (!g_stPixels.bRead) BeginRead();
}

bool g_fnGuardReadToMemory() noexcept {
    if (!g_stPixels.bActive) return false;
    g_fnGuardRead();
    BeginStore(g_stPixels.stPack);
    return true;
}
