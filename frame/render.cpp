#include "frame/render.h"

#include "base/host_care.h"
#include "base/log.h"
#include "base/timer.h"
#include "batch/draw_basic.h"
#include "batch/draw_text.h"
#include "capture/shot_request.h"
#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "draw/backdrop.h"
#include "draw/batcher_slots.h"
#include "draw/canvas.h"
#include "draw/first_draws.h"
#include "draw/left_names.h"
#include "draw/pixel_guard.h"
#include "font/waiting_glyphs.h"
#include "frame/build_ahead.h"
#include "frame/context_state.h"
#include "frame/outer_guard.h"
#include "frame/parts.h"
#include "frame/resources.h"
#include "frame/state_guard.h"
#include "frame/update/update.h"
#include "platform/gl_api.h"

#include <cstdlib>
#include <cstring>

f32 g_fInitSeconds = 0.0f;

static const char* VersionString() {
    const GLubyte* pText = glGetString(GL_VERSION);
    return pText ? reinterpret_cast<const char*>(pText) : "";
}

/// The first two pieces of the version string between its dots. A driver below 3.0 answers no version query.
static void ParseVersionString(const char* szVersion) {
    g_iGL_Major = std::atoi(szVersion);
    const char* szDot = std::strchr(szVersion, '.');
    g_iGL_Minor = szDot ? std::atoi(szDot + 1) : 0;
}

static void QueryVersion() {
    // Older drivers leave the variables untouched.
    g_iGL_Major = 0;
    g_iGL_Minor = 0;
    glGetIntegerv(GL_MAJOR_VERSION, &g_iGL_Major);
    glGetIntegerv(GL_MINOR_VERSION, &g_iGL_Minor);
    if (g_iGL_Major == 0) ParseVersionString(VersionString());
    g_fnLog("OpenGL Version : %i.%i", g_iGL_Major, g_iGL_Minor);
}

/// 3.2 and above. An embedded-profile context answers the version query too, but is no OpenGL to draw with.
static bool IsVersionEnough() {
    if (std::strncmp(VersionString(), "OpenGL ES", 9) == 0) return false;
    return g_iGL_Major >= 4 || (g_iGL_Major == 3 && g_iGL_Minor >= 2);
}

static void GLAPIENTRY ProgramLocalParameters4fv(GLenum eTarget, GLuint uIndex, GLsizei iCount,
                                                 const GLfloat* pParams) {
    for (GLsizei i = 0; i < iCount; ++i)
        glProgramLocalParameter4fvARB(eTarget, uIndex + static_cast<GLuint>(i), pParams + i * 4);
}

static void FixUpGlew() {
    if (!glProgramLocalParameters4fvEXT && glProgramLocalParameter4fvARB)
        glProgramLocalParameters4fvEXT = ProgramLocalParameters4fv;
}

/// Logged only; no branch depends on it.
static void LogProfile() {
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &g_iGL_ContextProfileMask);
    if (g_iGL_ContextProfileMask & 1) g_fnLog("GL_CONTEXT_CORE_PROFILE_BIT");
    if (g_iGL_ContextProfileMask & 2) g_fnLog("GL_CONTEXT_COMPATIBILITY_PROFILE_BIT");
    glGetIntegerv(GL_CONTEXT_FLAGS, &g_iGL_ContextFlag);
    if (g_iGL_ContextFlag & 1) g_fnLog("GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT");
}

static bool SetUpContext() {
    QueryVersion();
    if (!IsVersionEnough()) {
        g_iInitFailCount = g_uInitFailForGood;
        return false;
    }
    if (!platform::InitGlew()) {
        ++g_iInitFailCount;
        g_fnLog("glewInit() Fail");
        return false;
    }
    FixUpGlew();
    g_bInitGLEW = true;
    g_fnForgetOuterGuard();
    g_fnDeleteLeftNames();
    LogProfile();
    return true;
}

static CTimer& InitTimer() {
    static CTimer timer;
    return timer;
}

static bool BuildResources() {
    CTimer& timer = InitTimer();
    if (g_bInitGL) return true;
    if (!g_fnInitGL_Resource()) {
        g_fnLog("g_fnInitGL_Resource() Fail");
        return false;
    }
    timer.Start();
    if (!g_fnTavo_Init_Resource()) {
        g_fnLog("g_fnTavo_Init_Resource() Fail");
        return false;
    }
    g_fInitSeconds = timer.Stop();
    g_fnEndPreparation();
    g_bInitGL = true;
    return true;
}

static void Resize() {
    if (!g_bNeedOnResize) return;
    g_fnLog("g_fnTavo_GL_OnResize()");
    if (g_pDrawText) g_pDrawText->m_fnOnResize();
    if (g_pDrawBasic) g_pDrawBasic->m_fnOnResize();
    if (g_pOSDManager) g_pOSDManager->m_fnOnResize();
    g_bNeedOnResize = false;
}

static void TakeShot() {
    if (g_stParts.m_fnSaveScreenshot) g_stParts.m_fnSaveScreenshot();
    g_bShotPending = 0;
    g_fnStartShutter();
}

/// A shot of mode 2 is taken in this frame.
static bool g_bShotThisFrame = false;

/// One that can't be taken now stays pending, and this frame looks as any other.
static bool IsShotReady() {
    const bool bSaves = g_uCapMode == 1 || g_uCapMode == 2;
    return !bSaves || !g_stParts.m_fnIsShotReady || g_stParts.m_fnIsShotReady();
}

/// A shot of mode 1 is taken here; for any other, what must not be on it leaves the picture. While the
/// drawing is spread shots wait for the whole of it.
static void ShotBeforeDrawing() {
    g_bShotThisFrame = false;
    if (!g_bShotPending || g_fnAreDrawsSpread() || !IsShotReady()) return;
    if (g_uCapMode == 1) return TakeShot();
    g_bShotThisFrame = g_uCapMode == 2;
    g_fnHideForShot();
}

static void ShotAfterDrawing() {
    if (!g_bShotThisFrame) return;
    g_bShotThisFrame = false;
    g_fnShowAfterShot();
    TakeShot();
}

static void Unbind() {
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    if (!glBindBufferARB) return;
    glBindBufferARB(GL_ARRAY_BUFFER, 0);
    glBindBufferARB(GL_ELEMENT_ARRAY_BUFFER, 0);
}

static void CopyBackdrop() {
    if (g_bCaptureBackdrop && g_fnMayDraw(&g_uCopyTexture)) g_fnCopyBackdrop();
}

/// Seconds between two frames from which on nobody feels the first drawing, but many would wait for it.
static constexpr f32 g_fSlowFrame = 0.1f;

static void DrawOverlay() {
    if (g_fLastFrameSeconds > g_fSlowFrame) g_fnForgetFirstDraws();
    g_fnBeginDraws();
    Resize();
    ShotBeforeDrawing();
    g_fnLeaveUploads();
    g_fnUpdate_Tavo();
    g_fnTendGlyphs(g_ppFont, g_uFontEntries);
    CopyBackdrop();
    // Basic shapes go below text.
    if (g_pDrawBasic) static_cast<CDraw_Base*>(g_pDrawBasic)->m_fnRender();
    if (g_pDrawText && g_fnMayDraw(g_pDrawText)) static_cast<CDraw_Base*>(g_pDrawText)->m_fnRender();
}

/// The application gets its state back whatever went wrong in between.
static void TryDrawOverlay() {
    try {
        DrawOverlay();
    } catch (...) {
        g_fnLog("GLGraphics: g_fnTavo_GL_Render() - exception");
    }
}

static bool TryBuildResources() {
    try {
        return BuildResources();
    } catch (...) {
        g_fnLog("GLGraphics: g_fnTavo_GL_Render() - exception while building");
        g_fnAbandonBuild();
        return false;
    }
}

static void RestoreState() {
    Unbind();
    g_fnTavo_GL_RestoreState();
}

/// The frame that built has done enough.
static void BeginSpread() {
    g_fnSpreadFirstDraws();
    g_fnCountFrame();
}

/// A frame inside the outer guard. A build is spread over several.
static void RenderInOuterGuard() {
    // Nothing reaches the picture, but the frame counts.
    if (!g_fnBeginOuterGuard()) return g_fnCountFrame();
    const bool bDraw = g_bInitGL;
    if (bDraw)
        TryDrawOverlay();
    else if (TryBuildResources())
        BeginSpread();
    g_fnEndOuterGuard();
    if (bDraw) ShotAfterDrawing();
}

void g_fnTavo_GL_Render() {
    if (!g_bInitGLEW && !SetUpContext()) return;
    if (!g_bInitGL && !g_fnIsBuildPrepared()) return;
    if (g_stHostCare.bOuterGuard) return RenderInOuterGuard();
    g_fnTavo_GL_CaptureState();
    g_fnTavo_GL_SetupState();
    // KEEP(hosts): without the key a failed build leaves the state as it stands; it counts nowhere.
    if (!g_stHostCare.bRestoreAfterFailure && !BuildResources()) return;
    if (g_stHostCare.bRestoreAfterFailure && !TryBuildResources()) return RestoreState();
    TryDrawOverlay();
    RestoreState();
    ShotAfterDrawing();
}
