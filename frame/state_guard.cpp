#include "frame/state_guard.h"

#include "draw/canvas.h"
#include "draw/saved_state.h"
#include "frame/context_state.h"

/// Version conditions: 3.0 and above, 3.2 and above.
static bool HasVersion3() { return g_iGL_Major >= 3; }
static bool HasVersion32() { return (g_iGL_Major == 3 && g_iGL_Minor >= 2) || g_iGL_Major > 3; }

struct stEnableState {
    GLenum eCap;
    u8 stGLSavedState::*pbSaved;
};
static const stEnableState g_astEnables[] = {
    {GL_CULL_FACE, &stGLSavedState::CullFace},
    {GL_DEPTH_TEST, &stGLSavedState::DepthTest},
    {GL_SCISSOR_TEST, &stGLSavedState::ScissorTest},
    {GL_ALPHA_TEST, &stGLSavedState::AlphaTest},
    {GL_STENCIL_TEST, &stGLSavedState::StencilTest},
    {GL_LIGHTING, &stGLSavedState::Lighting},
    {GL_BLEND, &stGLSavedState::Blend},
};

struct stUnpackState {
    GLenum eName;
    i32 stGLSavedState::*piSaved;
};
/// The alignment stands apart: it is last, and 1 in place of 0 is its quiet value.
static const stUnpackState g_astUnpack[] = {
    {GL_UNPACK_SWAP_BYTES, &stGLSavedState::UnpackSwapBytes},
    {GL_UNPACK_LSB_FIRST, &stGLSavedState::UnpackLsbFirst},
    {GL_UNPACK_ROW_LENGTH, &stGLSavedState::UnpackRowLength},
    {GL_UNPACK_SKIP_PIXELS, &stGLSavedState::UnpackSkipPixels},
    {GL_UNPACK_SKIP_ROWS, &stGLSavedState::UnpackSkipRows},
};

static void GetUnsigned(GLenum eName, u32* puOut) { glGetIntegerv(eName, reinterpret_cast<GLint*>(puOut)); }

static void CaptureUnpack(stGLSavedState& st) {
    st.UnpackAlignment = 1;
    for (const stUnpackState& row : g_astUnpack) st.*row.piSaved = 0;
    for (const stUnpackState& row : g_astUnpack) glGetIntegerv(row.eName, &(st.*row.piSaved));
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &st.UnpackAlignment);
}

static void CaptureBlend(stGLSavedState& st) {
    glGetIntegerv(GL_BLEND_SRC_RGB, &st.BlendSrcRGB);
    glGetIntegerv(GL_BLEND_DST_RGB, &st.BlendDstRGB);
    glGetIntegerv(GL_BLEND_SRC_ALPHA, &st.BlendSrcAlpha);
    glGetIntegerv(GL_BLEND_DST_ALPHA, &st.BlendDstAlpha);
    glGetFloatv(GL_BLEND_COLOR, st.BlendColor);
}

void g_fnTavo_GL_CaptureState() {
    stGLSavedState& st = GLSavedState;
    // KEEP(hosts): exactly the twenty low bits, not GL_ALL_ATTRIB_BITS. A core profile rejects both pushes,
    // which only leaves an error behind.
    glPushAttrib(0xFFFFF);
    glPushClientAttrib(0xFFFFFFFF);
    glGetIntegerv(GL_VIEWPORT, st.Viewport);
    glGetIntegerv(GL_SCISSOR_BOX, st.ScissorBox);
    GetUnsigned(GL_TEXTURE_BINDING_2D, &st.TextureBinding2D);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &st.TextureMinFilter);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, &st.TextureMagFilter);
    glGetFloatv(GL_CURRENT_COLOR, st.CurrentColor);
    for (const stEnableState& row : g_astEnables) st.*row.pbSaved = glIsEnabled(row.eCap);
    CaptureBlend(st);
    GetUnsigned(GL_CURRENT_PROGRAM, &st.CurrentProgram);
    GetUnsigned(GL_ELEMENT_ARRAY_BUFFER_BINDING, &st.ElementArrayBufferBinding);
    CaptureUnpack(st);
}

static void SetupFixedState() {
    // KEEP(hosts): GL_FOG twice.
    static const GLenum aeDisabled[] = {GL_DEPTH_TEST,   GL_ALPHA_TEST, GL_CULL_FACE, GL_DITHER,
                                        GL_FOG,          GL_LOGIC_OP,   GL_FOG,       GL_STENCIL_TEST,
                                        GL_SCISSOR_TEST, GL_LIGHTING};
    for (GLenum eCap : aeDisabled) glDisable(eCap);
    glEnable(GL_BLEND);
    // KEEP(hosts): polygon mode and dither come back only where the attribute stack exists.
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    if (HasVersion3())
        glColorMaski(0, 1, 1, 1, 1);
    else
        glColorMask(1, 1, 1, 1);
    glDisable(GL_POINT_SPRITE);
    glDisable(GL_CLIP_DISTANCE0);
}

static void CaptureAttrib(u32 uIndex, stSavedAttrib& st) {
    if (HasVersion3()) {
        glGetVertexAttribIuiv(uIndex, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &st.AttribEnabled);
        glGetVertexAttribIuiv(uIndex, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &st.AttribBufferBinding);
        glGetVertexAttribIuiv(uIndex, GL_VERTEX_ATTRIB_ARRAY_SIZE, &st.AttribSize);
        glGetVertexAttribIuiv(uIndex, GL_VERTEX_ATTRIB_ARRAY_STRIDE, &st.AttribStride);
        glGetVertexAttribIuiv(uIndex, GL_VERTEX_ATTRIB_ARRAY_TYPE, &st.AttribType);
        glGetVertexAttribIuiv(uIndex, GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, &st.AttribNormalized);
        glGetVertexAttribIuiv(uIndex, GL_VERTEX_ATTRIB_ARRAY_DIVISOR, &st.AttribDivisor);
    }
    glGetVertexAttribPointerv(uIndex, GL_VERTEX_ATTRIB_ARRAY_POINTER, &st.AttribPointer);
}

static void SetupUnpack(const stGLSavedState& st) {
    for (const stUnpackState& row : g_astUnpack)
        if (st.*row.piSaved != 0) glPixelStorei(row.eName, 0);
    if (st.UnpackAlignment > 1) glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
}

void g_fnTavo_GL_SetupState() {
    stGLSavedState& st = GLSavedState;
    const GLsizei iWidth = static_cast<GLsizei>(g_uWidth), iHeight = static_cast<GLsizei>(g_uHeight);
    glViewport(0, 0, iWidth, iHeight);
    glScissor(0, 0, iWidth, iHeight);
    SetupFixedState();
    for (u32 u = 0; u < 2; ++u) CaptureAttrib(u, st.Attrib[u]);
    // KEEP(hosts): framebuffer 0 stays bound afterwards. The overlay always draws to the default framebuffer.
    if (HasVersion3()) glBindFramebuffer(GL_FRAMEBUFFER, 0);
    GetUnsigned(GL_VERTEX_ARRAY_BINDING, &st.VertexArrayBinding);
    glGenVertexArrays(1, &st.TemporaryVertexArray);
    glBindVertexArray(st.TemporaryVertexArray);
    // KEEP(hosts): read after the mask was set to all ones, so the application's own mask is not preserved
    // this way.
    glGetIntegerv(GL_COLOR_WRITEMASK, st.ColorWriteMask);
    if (HasVersion3()) glGetIntegeri_v(GL_SAMPLER_BINDING, 0, reinterpret_cast<GLint*>(&st.SamplerBinding0));
    // A 3.2 driver need not have sampler objects.
    if (HasVersion32() && glBindSampler) glBindSampler(0, 0);
    glEnable(GL_TEXTURE_2D);
    SetupUnpack(st);
}

static void RestoreBlend(const stGLSavedState& st) {
    if (glBlendFuncSeparate)
        glBlendFuncSeparate(static_cast<GLenum>(st.BlendSrcRGB), static_cast<GLenum>(st.BlendDstRGB),
                            static_cast<GLenum>(st.BlendSrcAlpha), static_cast<GLenum>(st.BlendDstAlpha));
    if (glBlendColor) glBlendColor(st.BlendColor[0], st.BlendColor[1], st.BlendColor[2], st.BlendColor[3]);
}

static void RestoreAttrib(u32 uIndex, const stSavedAttrib& st) {
    if (st.AttribEnabled)
        glEnableVertexAttribArray(uIndex);
    else
        glDisableVertexAttribArray(uIndex);
    // KEEP(hosts): size 2, never the saved size. It reaches the temporary array, so it has no lasting effect.
    glVertexAttribPointer(uIndex, 2, st.AttribType, static_cast<GLboolean>(st.AttribNormalized),
                          static_cast<GLsizei>(st.AttribStride), st.AttribPointer);
    if (glVertexAttribDivisor) glVertexAttribDivisor(uIndex, st.AttribDivisor);
}

static void RestoreUnpack(const stGLSavedState& st) {
    for (const stUnpackState& row : g_astUnpack)
        if (st.*row.piSaved != 0) glPixelStorei(row.eName, st.*row.piSaved);
    if (st.UnpackAlignment > 1) glPixelStorei(GL_UNPACK_ALIGNMENT, st.UnpackAlignment);
}

static void RestoreTextureAndColor(const stGLSavedState& st) {
    glBindTexture(GL_TEXTURE_2D, st.TextureBinding2D);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, st.TextureMinFilter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, st.TextureMagFilter);
    glColor4f(st.CurrentColor[0], st.CurrentColor[1], st.CurrentColor[2], st.CurrentColor[3]);
}

static void RestoreEnables(const stGLSavedState& st) {
    for (const stEnableState& row : g_astEnables) {
        if (st.*row.pbSaved)
            glEnable(row.eCap);
        else
            glDisable(row.eCap);
    }
}

static void RestoreVertexArray(stGLSavedState& st) {
    // Where the client attribute stack exists, its pop has brought back the application's array by now. Its
    // attributes must not meet what follows.
    glBindVertexArray(st.TemporaryVertexArray);
    for (u32 u = 0; u < 2; ++u) RestoreAttrib(u, st.Attrib[u]);
    glBindVertexArray(st.VertexArrayBinding);
    glDeleteVertexArrays(1, &st.TemporaryVertexArray);
}

void g_fnTavo_GL_RestoreState() {
    stGLSavedState& st = GLSavedState;
    glPopAttrib();
    glPopClientAttrib();
    glViewport(st.Viewport[0], st.Viewport[1], st.Viewport[2], st.Viewport[3]);
    glScissor(st.ScissorBox[0], st.ScissorBox[1], st.ScissorBox[2], st.ScissorBox[3]);
    RestoreTextureAndColor(st);
    RestoreEnables(st);
    glUseProgram(st.CurrentProgram);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, st.ElementArrayBufferBinding);
    RestoreBlend(st);
    RestoreVertexArray(st);
    const i32* pMask = st.ColorWriteMask;
    glColorMask(static_cast<GLboolean>(pMask[0]), static_cast<GLboolean>(pMask[1]),
                static_cast<GLboolean>(pMask[2]), static_cast<GLboolean>(pMask[3]));
    if (HasVersion32() && glBindSampler) glBindSampler(0, st.SamplerBinding0);
    RestoreUnpack(st);
}
