#include "draw/pixel_guard.h"
#include "platform/gl_api.h"
#include "platform/types.h"

#include <iterator>

namespace {

struct stUnpackRow {
    GLenum eName;
    GLint iNeeded;
};
constexpr stUnpackRow g_astUnpack[] = {
    {GL_UNPACK_SWAP_BYTES, 0},   {GL_UNPACK_LSB_FIRST, 0},   {GL_UNPACK_ROW_LENGTH, 0},
    {GL_UNPACK_IMAGE_HEIGHT, 0}, {GL_UNPACK_SKIP_PIXELS, 0}, {GL_UNPACK_SKIP_ROWS, 0},
    {GL_UNPACK_SKIP_IMAGES, 0},  {GL_UNPACK_ALIGNMENT, 1},
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
    bool bUnpack = false, bTransfer = false, bRead = false; ///< saved and set this frame
    GLint iUnpackBuffer = 0, iReadFramebuffer = 0, iReadBuffer = 0;
    GLint aiUnpack[std::size(g_astUnpack)] = {};
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

void BeginUnpack() {
    stPixels& st = g_stPixels;
    st.bUnpack = true;
    st.iUnpackBuffer = Ask(GL_PIXEL_UNPACK_BUFFER_BINDING);
    if (st.iUnpackBuffer != 0) glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    for (std::size_t i = 0; i < std::size(g_astUnpack); ++i) {
        st.aiUnpack[i] = Ask(g_astUnpack[i].eName);
        if (st.aiUnpack[i] != g_astUnpack[i].iNeeded)
            glPixelStorei(g_astUnpack[i].eName, g_astUnpack[i].iNeeded);
    }
}

void EndUnpack() {
    const stPixels& st = g_stPixels;
    if (st.iUnpackBuffer != 0) glBindBuffer(GL_PIXEL_UNPACK_BUFFER, static_cast<GLuint>(st.iUnpackBuffer));
    for (std::size_t i = 0; i < std::size(g_astUnpack); ++i)
        if (st.aiUnpack[i] != g_astUnpack[i].iNeeded) glPixelStorei(g_astUnpack[i].eName, st.aiUnpack[i]);
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
    if (st.bUnpack) EndUnpack();
    if (st.bRead) EndRead();
    st.bActive = st.bTransfer = st.bUnpack = st.bRead = false;
}

void g_fnGuardUpload() noexcept {
    if (!g_stPixels.bActive) return;
    BeginTransfer();
    if (!g_stPixels.bUnpack) BeginUnpack();
}

void g_fnGuardRead() noexcept {
    if (!g_stPixels.bActive) return;
    BeginTransfer();
    if (!g_stPixels.bRead) BeginRead();
}
