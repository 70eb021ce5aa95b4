#include "frame/outer_guard.h"

#include "draw/canvas.h"
#include "draw/left_names.h"
#include "draw/pixel_guard.h"
#include "frame/context_state.h"
#include "platform/gl_api.h"
#include "platform/types.h"

#include <cstring>
#include <iterator>

namespace {

/// What a context offers; asked for once a context.
struct stOffers {
    bool bKnown = false;
    bool bCompatibility = false;
    bool bViewportArrays = false;
    bool bBlendOfBuffers = false; ///< factors and equations of single buffers
    bool bSamplers = false;
    bool bClipControl = false;
    bool bFeedbackObjects = false; ///< transform feedback can be asked for
    bool bAnySamples = false, bAnySamplesConservative = false;
    bool bDebugOutput = false;  ///< a debug context, whose messages can be switched off
    bool bMultisampled = false; ///< framebuffer 0 is
    bool bDepthBounds = false;
    bool bPipelineStatistics = false;
    bool bConservativeNV = false, bConservativeINTEL = false;
};
stOffers g_stOffers;
/// Kept from frame to frame, of the context that the offers are of.
GLuint g_uVertexArray = 0;

bool IsVersion(i32 iMajor, i32 iMinor) {
    return g_iGL_Major > iMajor || (g_iGL_Major == iMajor && g_iGL_Minor >= iMinor);
}

/// What came with a version of GL, or before that with an extension.
struct stOfferRow {
    bool stOffers::*pbOffer;
    i32 iMajor, iMinor;
    const char* szExtension;
};
constexpr i32 c_iNoVersion = 99;
constexpr stOfferRow g_astOffers[] = {
    {&stOffers::bViewportArrays, 4, 1, "GL_ARB_viewport_array"},
    {&stOffers::bSamplers, 3, 3, "GL_ARB_sampler_objects"},
    {&stOffers::bClipControl, 4, 5, "GL_ARB_clip_control"},
    {&stOffers::bFeedbackObjects, 4, 0, "GL_ARB_transform_feedback2"},
    {&stOffers::bAnySamples, 3, 3, "GL_ARB_occlusion_query2"},
    {&stOffers::bAnySamplesConservative, 4, 3, "GL_ARB_ES3_compatibility"},
    {&stOffers::bDebugOutput, 4, 3, "GL_KHR_debug"},
    {&stOffers::bDepthBounds, c_iNoVersion, 0, "GL_EXT_depth_bounds_test"},
    {&stOffers::bPipelineStatistics, 4, 6, "GL_ARB_pipeline_statistics_query"},
    {&stOffers::bConservativeNV, c_iNoVersion, 0, "GL_NV_conservative_raster"},
    {&stOffers::bConservativeINTEL, c_iNoVersion, 0, "GL_INTEL_conservative_rasterization"},
};

/// The driver's own list counts: GLEW's flags say only that entry points were found, which stubs are too.
void FindExtensions() {
    GLint iCount = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &iCount);
    for (GLint i = 0; i < iCount; ++i) {
        const GLubyte* pName = glGetStringi(GL_EXTENSIONS, static_cast<GLuint>(i));
        if (!pName) continue;
        for (const stOfferRow& row : g_astOffers)
            if (std::strcmp(reinterpret_cast<const char*>(pName), row.szExtension) == 0)
                g_stOffers.*row.pbOffer = true;
    }
}

void FindOffers() {
    g_stOffers = {};
    stOffers& st = g_stOffers;
    const bool bForwardOnly = (g_iGL_ContextFlag & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT) != 0;
    st.bCompatibility = !(g_iGL_ContextProfileMask & GL_CONTEXT_CORE_PROFILE_BIT) && !bForwardOnly;
    FindExtensions();
    for (const stOfferRow& row : g_astOffers)
        if (IsVersion(row.iMajor, row.iMinor)) st.*row.pbOffer = true;
    // Before that the functions bear other names.
    st.bBlendOfBuffers = IsVersion(4, 0);
    if (!(g_iGL_ContextFlag & GL_CONTEXT_FLAG_DEBUG_BIT)) st.bDebugOutput = false;
    st.bKnown = true;
}

bool Always(const stOffers&) { return true; }
bool OfCompatibility(const stOffers& st) { return st.bCompatibility; }
bool OfMultisampling(const stOffers& st) { return st.bMultisampled; }

/// A switch of glEnable and what the drawing needs of it. Those with arrays are set at index 0 only.
struct stSwitch {
    GLenum eCap;
    GLboolean bNeeded;
    bool (*fnIsOffered)(const stOffers&);
    bool (*fnHasArray)(const stOffers&);
};
bool Never(const stOffers&) { return false; }
constexpr stSwitch g_astSwitches[] = {
    {GL_SCISSOR_TEST, 0, Always, [](const stOffers& st) { return st.bViewportArrays; }},
    {GL_DEPTH_TEST, 0, Always, Never},
    {GL_STENCIL_TEST, 0, Always, Never},
    {GL_CULL_FACE, 0, Always, Never},
    {GL_BLEND, 1, Always, Always},
    {GL_COLOR_LOGIC_OP, 0, Always, Never},
    {GL_FRAMEBUFFER_SRGB, 0, Always, Never},
    {GL_PRIMITIVE_RESTART, 0, [](const stOffers&) { return IsVersion(3, 1); }, Never},
    {GL_RASTERIZER_DISCARD, 0, Always, Never},
    {GL_POLYGON_SMOOTH, 0, Always, Never},
    {GL_ALPHA_TEST, 0, OfCompatibility, Never},
    {GL_POLYGON_STIPPLE, 0, OfCompatibility, Never},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, 0, OfMultisampling, Never},
    {GL_SAMPLE_ALPHA_TO_ONE, 0, OfMultisampling, Never},
    {GL_SAMPLE_COVERAGE, 0, OfMultisampling, Never},
    {GL_SAMPLE_MASK, 0, OfMultisampling, Never},
    {GL_DEPTH_BOUNDS_TEST_EXT, 0, [](const stOffers& st) { return st.bDepthBounds; }, Never},
    {GL_CONSERVATIVE_RASTERIZATION_NV, 0, [](const stOffers& st) { return st.bConservativeNV; }, Never},
    {GL_CONSERVATIVE_RASTERIZATION_INTEL, 0, [](const stOffers& st) { return st.bConservativeINTEL; }, Never},
};

bool OfStatistics(const stOffers& st) { return st.bPipelineStatistics; }

/// Queries that count what is drawn while they are active. Of the statistics only those that our drawing adds
/// to: it has no tessellation, geometry or compute shaders.
struct stCountingQuery {
    GLenum eTarget;
    bool (*fnIsOffered)(const stOffers&);
};
constexpr stCountingQuery g_astQueries[] = {
    {GL_SAMPLES_PASSED, Always},
    {GL_ANY_SAMPLES_PASSED, [](const stOffers& st) { return st.bAnySamples; }},
    {GL_ANY_SAMPLES_PASSED_CONSERVATIVE, [](const stOffers& st) { return st.bAnySamplesConservative; }},
    {GL_PRIMITIVES_GENERATED, Always},
    {GL_VERTICES_SUBMITTED, OfStatistics},
    {GL_PRIMITIVES_SUBMITTED, OfStatistics},
    {GL_VERTEX_SHADER_INVOCATIONS, OfStatistics},
    {GL_FRAGMENT_SHADER_INVOCATIONS, OfStatistics},
    {GL_CLIPPING_INPUT_PRIMITIVES, OfStatistics},
    {GL_CLIPPING_OUTPUT_PRIMITIVES, OfStatistics},
};

constexpr GLenum g_aeFactors[] = {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA, GL_BLEND_DST_ALPHA};
constexpr GLenum g_aeEquations[] = {GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA};
constexpr GLint g_aiFactorsNeeded[] = {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA,
                                       GL_ONE_MINUS_SRC_ALPHA};
constexpr GLint g_aiEquationsNeeded[] = {GL_FUNC_ADD, GL_FUNC_ADD};

/// As many as framebuffer 0 can name: front and back, left and right.
constexpr u32 c_uDrawBuffers = 4;

/// The program's state, as begin found it.
struct stSaved {
    GLint iFramebuffer, iProgram, iTextureUnit, iTexture, iSampler, iVertexArray, iArrayBuffer;
    GLint aiFactors[4], aiEquations[2], aiPolygonMode[2];
    GLint iClipOrigin, iClipDepth;
    GLfloat afViewport[4];
    GLboolean abColorMask[4];
    GLboolean abSwitches[std::size(g_astSwitches)];
    GLboolean bDebugOutput;
    GLenum aeDrawBuffers[c_uDrawBuffers];
    bool bDrawBufferSet; ///< and the names above are known
};
stSaved g_stSaved;

GLuint Name(GLint iName) { return static_cast<GLuint>(iName); }
GLenum Enum(GLint iValue) { return static_cast<GLenum>(iValue); }

GLint Ask(GLenum eName) {
    GLint iValue = 0;
    glGetIntegerv(eName, &iValue);
    return iValue;
}

// --- where the drawing would reach the program
// ---------------------------------------------------------------

/// Feedback or selection take the place of pixels, or a display list is being compiled.
bool GoesElsewhere() { return Ask(GL_RENDER_MODE) != GL_RENDER || Ask(GL_LIST_INDEX) != 0; }

bool IsCaptured() {
    return Ask(GL_TRANSFORM_FEEDBACK_BUFFER_ACTIVE) != 0 && Ask(GL_TRANSFORM_FEEDBACK_BUFFER_PAUSED) == 0;
}

bool IsCounted() {
    for (const stCountingQuery& row : g_astQueries) {
        if (!row.fnIsOffered(g_stOffers)) continue;
        GLint iQuery = 0;
        glGetQueryiv(row.eTarget, GL_CURRENT_QUERY, &iQuery);
        if (iQuery != 0) return true;
    }
    return false;
}

/// A program that was deleted while it is current ends when another takes its place.
bool IsProgramDoomed() {
    g_stSaved.iProgram = Ask(GL_CURRENT_PROGRAM);
    if (g_stSaved.iProgram == 0) return false;
    GLint iDeleted = 0;
    glGetProgramiv(Name(g_stSaved.iProgram), GL_DELETE_STATUS, &iDeleted);
    return iDeleted != 0;
}

bool WouldReachProgram() {
    return (g_stOffers.bCompatibility && GoesElsewhere()) || (g_stOffers.bFeedbackObjects && IsCaptured()) ||
           IsCounted() || IsProgramDoomed();
}

// --- one state each: asked for and set, or given back
// --------------------------------------------------------

void SetSwitch(const stSwitch& row, GLboolean bOn) {
    if (row.fnHasArray(g_stOffers)) return bOn ? glEnablei(row.eCap, 0) : glDisablei(row.eCap, 0);
    bOn ? glEnable(row.eCap) : glDisable(row.eCap);
}

void BeginSwitches() {
    for (std::size_t i = 0; i < std::size(g_astSwitches); ++i) {
        const stSwitch& row = g_astSwitches[i];
        g_stSaved.abSwitches[i] = row.bNeeded;
        if (!row.fnIsOffered(g_stOffers)) continue;
        g_stSaved.abSwitches[i] = glIsEnabled(row.eCap);
        if (g_stSaved.abSwitches[i] != row.bNeeded) SetSwitch(row, row.bNeeded);
    }
}

void EndSwitches() {
    for (std::size_t i = 0; i < std::size(g_astSwitches); ++i) {
        const stSwitch& row = g_astSwitches[i];
        if (g_stSaved.abSwitches[i] != row.bNeeded) SetSwitch(row, g_stSaved.abSwitches[i]);
    }
}

void SetFactors(const GLint* pi) {
    if (g_stOffers.bBlendOfBuffers)
        glBlendFuncSeparatei(0, Enum(pi[0]), Enum(pi[1]), Enum(pi[2]), Enum(pi[3]));
    else
        glBlendFuncSeparate(Enum(pi[0]), Enum(pi[1]), Enum(pi[2]), Enum(pi[3]));
}

/// Equal ones go by one call: some equations are allowed only for both.
void SetEquations(const GLint* pi) {
    if (!g_stOffers.bBlendOfBuffers) return glBlendEquationSeparate(Enum(pi[0]), Enum(pi[1]));
    if (pi[0] == pi[1]) return glBlendEquationi(0, Enum(pi[0]));
    glBlendEquationSeparatei(0, Enum(pi[0]), Enum(pi[1]));
}

bool HasOwnFactors() {
    return std::memcmp(g_stSaved.aiFactors, g_aiFactorsNeeded, sizeof g_aiFactorsNeeded) != 0;
}
bool HasOwnEquations() {
    return std::memcmp(g_stSaved.aiEquations, g_aiEquationsNeeded, sizeof g_aiEquationsNeeded) != 0;
}

void BeginBlending() {
    for (std::size_t i = 0; i < std::size(g_aeFactors); ++i) g_stSaved.aiFactors[i] = Ask(g_aeFactors[i]);
    for (std::size_t i = 0; i < std::size(g_aeEquations); ++i)
        g_stSaved.aiEquations[i] = Ask(g_aeEquations[i]);
    if (HasOwnFactors()) SetFactors(g_aiFactorsNeeded);
    if (HasOwnEquations()) SetEquations(g_aiEquationsNeeded);
}

void EndBlending() {
    if (HasOwnFactors()) SetFactors(g_stSaved.aiFactors);
    if (HasOwnEquations()) SetEquations(g_stSaved.aiEquations);
}

bool MasksColor() {
    const GLboolean* p = g_stSaved.abColorMask;
    return !(p[0] && p[1] && p[2] && p[3]);
}

void BeginColorMask() {
    glGetBooleanv(GL_COLOR_WRITEMASK, g_stSaved.abColorMask);
    if (MasksColor()) glColorMaski(0, 1, 1, 1, 1);
}

void EndColorMask() {
    const GLboolean* p = g_stSaved.abColorMask;
    if (MasksColor()) glColorMaski(0, p[0], p[1], p[2], p[3]);
}

/// Some core drivers answer one value, since both faces share it there.
void BeginPolygonMode() {
    GLint* pi = g_stSaved.aiPolygonMode;
    pi[0] = pi[1] = 0;
    glGetIntegerv(GL_POLYGON_MODE, pi);
    if (pi[1] == 0 || !g_stOffers.bCompatibility) pi[1] = pi[0];
    if (pi[0] != GL_FILL || pi[1] != GL_FILL) glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

void EndPolygonMode() {
    const GLint* pi = g_stSaved.aiPolygonMode;
    if (pi[0] == GL_FILL && pi[1] == GL_FILL) return;
    if (pi[0] == pi[1]) return glPolygonMode(GL_FRONT_AND_BACK, Enum(pi[0]));
    glPolygonMode(GL_FRONT, Enum(pi[0]));
    glPolygonMode(GL_BACK, Enum(pi[1]));
}

/// The depth convention does not matter to the drawing, but goes by the same call.
void BeginClipControl() {
    if (!g_stOffers.bClipControl) return;
    g_stSaved.iClipOrigin = Ask(GL_CLIP_ORIGIN);
    if (g_stSaved.iClipOrigin != GL_UPPER_LEFT) return;
    g_stSaved.iClipDepth = Ask(GL_CLIP_DEPTH_MODE);
    glClipControl(GL_LOWER_LEFT, Enum(g_stSaved.iClipDepth));
}

void EndClipControl() {
    if (g_stOffers.bClipControl && g_stSaved.iClipOrigin == GL_UPPER_LEFT)
        glClipControl(GL_UPPER_LEFT, Enum(g_stSaved.iClipDepth));
}

bool IsClientArea(const GLfloat* pf) {
    return pf[0] == 0.0f && pf[1] == 0.0f && pf[2] == static_cast<GLfloat>(g_uWidth) &&
           pf[3] == static_cast<GLfloat>(g_uHeight);
}

/// The plain call sets all viewports, where there are several.
void SetViewport(const GLfloat* pf) {
    if (g_stOffers.bViewportArrays) return glViewportIndexedfv(0, pf);
    glViewport(static_cast<GLint>(pf[0]), static_cast<GLint>(pf[1]), static_cast<GLsizei>(pf[2]),
               static_cast<GLsizei>(pf[3]));
}

/// True where it was changed; the size may be another at the end of the frame.
bool g_bViewportSet = false;

void BeginViewport() {
    glGetFloatv(GL_VIEWPORT, g_stSaved.afViewport);
    g_bViewportSet = !IsClientArea(g_stSaved.afViewport);
    const GLfloat af[4] = {0.0f, 0.0f, static_cast<GLfloat>(g_uWidth), static_cast<GLfloat>(g_uHeight)};
    if (g_bViewportSet) SetViewport(af);
}

void EndViewport() {
    if (g_bViewportSet) SetViewport(g_stSaved.afViewport);
}

void BeginFramebuffer() {
    g_stSaved.iFramebuffer = Ask(GL_DRAW_FRAMEBUFFER_BINDING);
    if (g_stSaved.iFramebuffer != 0) glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
}

/// Framebuffer 0 with a second buffer swaps that one in; with one buffer only that can be drawn to.
GLint DrawBufferNeeded() { return Ask(GL_DOUBLEBUFFER) ? GL_BACK : GL_FRONT; }

/// All of a program's draw buffers of framebuffer 0: setting one of them lays the others down.
void SaveDrawBuffers() {
    for (GLenum e = 0; e < c_uDrawBuffers; ++e) g_stSaved.aeDrawBuffers[e] = Enum(Ask(GL_DRAW_BUFFER0 + e));
}

/// The draw buffers belong to the framebuffer, so they are asked for while that is bound. Nearly all programs
/// draw to the back one, so the rest is asked for only where one does not.
void BeginDrawBuffer() {
    g_stSaved.bDrawBufferSet = false;
    const GLint iBuffer = Ask(GL_DRAW_BUFFER);
    if (iBuffer == GL_BACK || iBuffer == DrawBufferNeeded()) return;
    SaveDrawBuffers();
    g_stSaved.bDrawBufferSet = true;
    glDrawBuffer(Enum(DrawBufferNeeded()));
}

/// The plural call does not take the names that stand for several buffers.
void EndDrawBuffer() {
    if (!g_stSaved.bDrawBufferSet) return;
    const GLenum* pe = g_stSaved.aeDrawBuffers;
    GLsizei iCount = c_uDrawBuffers;
    while (iCount > 0 && pe[iCount - 1] == GL_NONE) --iCount;
    if (iCount < 2) return glDrawBuffer(pe[0]);
    glDrawBuffers(iCount, pe);
}

void EndFramebuffer() {
    if (g_stSaved.iFramebuffer != 0) glBindFramebuffer(GL_DRAW_FRAMEBUFFER, Name(g_stSaved.iFramebuffer));
}

void BeginTexture() {
    g_stSaved.iTextureUnit = Ask(GL_ACTIVE_TEXTURE);
    if (g_stSaved.iTextureUnit != GL_TEXTURE0) glActiveTexture(GL_TEXTURE0);
    g_stSaved.iTexture = Ask(GL_TEXTURE_BINDING_2D);
    g_stSaved.iSampler = g_stOffers.bSamplers ? Ask(GL_SAMPLER_BINDING) : 0;
    if (g_stSaved.iSampler != 0) glBindSampler(0, 0);
}

void EndTexture() {
    glBindTexture(GL_TEXTURE_2D, Name(g_stSaved.iTexture));
    if (g_stSaved.iSampler != 0) glBindSampler(0, Name(g_stSaved.iSampler));
    if (g_stSaved.iTextureUnit != GL_TEXTURE0) glActiveTexture(Enum(g_stSaved.iTextureUnit));
}

void BeginVertexArray() {
    g_stSaved.iVertexArray = Ask(GL_VERTEX_ARRAY_BINDING);
    g_stSaved.iArrayBuffer = Ask(GL_ARRAY_BUFFER_BINDING);
    if (g_uVertexArray == 0) glGenVertexArrays(1, &g_uVertexArray);
    glBindVertexArray(g_uVertexArray);
}

/// The element array buffer belongs to the array, so it comes back along.
void EndVertexArray() {
    glBindVertexArray(Name(g_stSaved.iVertexArray));
    glBindBuffer(GL_ARRAY_BUFFER, Name(g_stSaved.iArrayBuffer));
}

/// A driver's remarks on our objects are nothing to the program.
void BeginDebugOutput() {
    g_stSaved.bDebugOutput = g_stOffers.bDebugOutput ? glIsEnabled(GL_DEBUG_OUTPUT) : GL_FALSE;
    if (g_stSaved.bDebugOutput) glDisable(GL_DEBUG_OUTPUT);
}

void EndDebugOutput() {
    if (g_stSaved.bDebugOutput) glEnable(GL_DEBUG_OUTPUT);
}

} // namespace

bool g_fnBeginOuterGuard() {
    // Until the overlay stands, another context may come at any time.
    const bool bFirst = !g_stOffers.bKnown || !g_bInitGL;
    if (bFirst) FindOffers();
    if (WouldReachProgram()) return false;
    BeginDebugOutput();
    BeginFramebuffer();
    BeginDrawBuffer();
    if (bFirst) g_stOffers.bMultisampled = Ask(GL_SAMPLE_BUFFERS) != 0;
    BeginSwitches();
    BeginBlending();
    BeginColorMask();
    BeginPolygonMode();
    BeginClipControl();
    BeginViewport();
    BeginTexture();
    BeginVertexArray();
    g_fnBeginGuardPixels(g_stOffers.bCompatibility);
    return true;
}

void g_fnEndOuterGuard() noexcept {
    g_fnEndGuardPixels();
    glUseProgram(Name(g_stSaved.iProgram));
    EndVertexArray();
    EndTexture();
    EndViewport();
    EndClipControl();
    EndPolygonMode();
    EndColorMask();
    EndBlending();
    EndSwitches();
    EndDrawBuffer();
    EndFramebuffer();
    if (!g_bInitGL) g_fnReleaseOuterGuard();
    EndDebugOutput();
}

void g_fnReleaseOuterGuard() noexcept {
    if (g_uVertexArray != 0) g_fnDeleteName(NAMES_VERTEX_ARRAYS, g_uVertexArray);
    g_uVertexArray = 0;
    g_stOffers.bKnown = false;
}

void g_fnForgetOuterGuard() noexcept {
    g_uVertexArray = 0;
    g_stOffers.bKnown = false;
}
